#include <gtest/gtest.h>

#include <string>

#include "tests/host/OrganisationScene.h"
#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

// Asks an object of organisation everything; the sum keeps the answers from being dropped.
class Asker : public ObjectVisitor
{
public:
    using ObjectVisitor::Visit;

    void Visit(ILayer* layer) override
    {
        Count(layer->GeometryItems());
        Count(layer->Styles());
        sum += Text(layer->Description()).size() + (layer->IsVisible() ? 1 : 0);
        sum += layer->LayerNumber() > 0 ? 1 : 0;
    }
    void Visit(IGroup* group) override { Count(group->GeometryItems()); }
    void Visit(ILod* lod) override { sum += Text(lod->Description()).size(); }
    void Visit(ICamera* camera) override
    {
        sum += camera->CameraType();
        sum += AnswerOf(*camera, &ICamera::NearPlane).has_value() ? 1 : 0;
        sum += AnswerOf(*camera, &ICamera::ViewAngle).has_value() ? 1 : 0;
        if (auto* const section = dynamic_cast<ISectionCamera*>(camera))
        {
            for (unsigned long long i = 0; i < section->SectionPlaneCount(); ++i)
                sum += section->SectionPlaneAt(i).Origin().X() > 0 ? 1 : 0;
            sum += section->SectioningOperations().Size();
        }
    }
    void Visit(IView* view) override
    {
        Count(view->CameraSet());
        for (unsigned long long i = 0; i < view->ViewMemberCount(); ++i)
        {
            Count(view->OccurrencePathAt(i));
            Count(view->EntityStylesAt(i));
            sum += view->EntityVisibilityAt(i) ? 1 : 0;
            sum += view->EntityTransformAt(i).IsIdentity() ? 1 : 0;
        }
    }
    void Visit(IAssemblyFeatureOverride* featureOverride) override
    {
        OccurrencePathCollection paths;
        featureOverride->BaseOccPaths(paths);
        sum += paths.Size() + featureOverride->ChildCount();
    }

    unsigned long long sum = 0;

private:
    void Count(IdSet const& ids) { sum += ids.Size(); }
};

constexpr char const* kIds[] = {"layer", "group", "lod", "k1", "k2", "v1", "v2", "o", ""};

// Reads the scene and asks what is there of it; how many objects that was.
int Ask(std::string const& xml)
{
    TestScene scene(xml);
    scene.Begin();
    Asker asker;
    int objects = 0;
    for (char const* const id : kIds)
    {
        if (IObject* const object = scene.Producer().Load(id))
        {
            object->AcceptVisitor(&asker);
            ++objects;
        }
    }
    return objects;
}

// The scene with one attribute after the other replaced by the text.
void ForEachAttributeReplacedBy(std::string const& text)
{
    std::string const xml = kOrganisationScene;
    int count = 0;
    for (std::size_t equals = xml.find("=\""); equals != std::string::npos; equals = xml.find("=\"", equals + 1))
    {
        std::size_t const begin = xml.rfind(' ', equals);
        std::size_t const end = xml.find('"', equals + 2) + 1;
        std::string const name = xml.substr(begin, equals - begin);
        std::string const by = text.empty() ? "" : name + "=\"" + text + "\"";
        // An object is lost with its id at most, but an instance without its target ends its assembly.
        EXPECT_GE(Ask(xml.substr(0, begin) + by + xml.substr(end)), name == " ID" ? 2 : 8)
            << xml.substr(begin, end - begin);
        ++count;
    }
    EXPECT_GT(count, 60);
}

}  // namespace

TEST(HostileOrganisation, TheSceneAsItStandsServesAllObjects)
{
    EXPECT_EQ(Ask(kOrganisationScene), 8);
}

TEST(HostileOrganisation, AnyAttributeMayBeMissing)
{
    ForEachAttributeReplacedBy("");
}

TEST(HostileOrganisation, AnyAttributeMayHaveATextThatMeansNothing)
{
    ForEachAttributeReplacedBy("]]],[[,, 999999999999999999999 \xC3\xB6");
}

TEST(HostileOrganisation, AnyElementMayBeEmpty)
{
    for (char const* const set : {"LayerSet", "GroupSet", "LodSet", "CameraSet", "ViewSet", "Other"})
    {
        std::string const open = std::string("<") + set + ">";
        std::string const close = std::string("</") + set + ">";
        TestScene scene(InScene("<IPart ID='p'><AttributeSet/><AttributeSet>" + open + close + open +
                                "<?ILayer ID='x'?><!-- c -->text" + close + "</AttributeSet></IPart>"));
        scene.Begin();
        IPart const& part = scene.Get<IPart>("p");
        EXPECT_TRUE(part.LayerSet().IsEmpty() && part.GroupSet().IsEmpty() && part.LodSet().IsEmpty() &&
                    part.CameraSet().IsEmpty() && part.ViewSet().IsEmpty())
            << set;
    }
}

TEST(HostileOrganisation, ManyGroupsWithoutItemsBehindALongOneTakeNoMoreThanTheLongOne)
{
    // 20,000 groups of 20,000 members would be 16 GB.
    std::string xml = "<GroupSet><G ID='g' Label=''><GeometryItems Items='";
    for (int i = 0; i < 20'000; ++i)
        xml += "i" + std::to_string(i) + ",";
    xml += "'/></G>";
    for (int i = 0; i < 20'000; ++i)
        xml += "<G ID='g" + std::to_string(i) + "' Label=''/>";
    TestScene scene(InScene("<IPart ID='p'><AttributeSet>" + xml + "</GroupSet></AttributeSet></IPart>"));
    scene.Begin();
    EXPECT_EQ(scene.Get<IGroup>("g19999").GeometryItems().Size(), 20'000U);
}

}  // namespace KVR::Test
