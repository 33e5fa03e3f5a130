// Which kinds of objects hold properties, each kind by itself.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>

#include "framework/xml_util/XMLBrep.h"
#include "geometry/XMLCurve.h"
#include "geometry/XMLGeometricSet.h"
#include "mesh/XMLPolygonMesh.h"
#include "producer/PropertyAttachment.h"
#include "producer/XMLProducerImpl.h"
#include "structure/XMLInstance.h"
#include "tests/support/FullScene.h"
#include "tests/support/ParsedDocument.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

// How many properties the object that `make` gives, of the id "o", lists of a file with two for it.
template <class Make>
unsigned long long CountHeldBy(Make make)
{
    TempFolder const folder;
    folder.Write("s.kvrproperty", R"(<P><Property ID="a" ObjectID="o"/><Property ID="b" ObjectID="o"/></P>)");
    XMLProducerImpl producer(folder.PathOf("s.xml"), nullptr);
    IObject* const object = make(producer);
    producer.objectCollector->AddObject(object);
    AttachProperties(folder.PathOf("s.xml"), producer);
    return object->PropertyIds().Size();
}

TEST(PropertyHolder, MeshesInstancesSetsAndBodiesAreOnes)
{
    EXPECT_EQ(CountHeldBy([](XMLProducerImpl& producer) { return new XMLPolygonMesh("o", &producer); }), 2U);
    EXPECT_EQ(CountHeldBy(
                  [](XMLProducerImpl& producer)
                  {
                      return new XMLInstance("o", UTF8String(), Matrix3d(), ChangeKeyText(),
                                             static_cast<IFile const*>(nullptr), &producer);
                  }),
              2U);
    EXPECT_EQ(CountHeldBy([](XMLProducerImpl&)
                          { return new XMLBrep("o", UTF16String(), nullptr, IBrep::kProducerGeometryType_Unknown); }),
              2U);
    ParsedDocument const document("<IGeometricSet ID='o'/>");
    auto const makeSet = [&](XMLProducerImpl& producer)
    {
        auto set = std::make_unique<XMLGeometricSet>(&producer);
        BodyEntities bodyEntities;
        CurveEntities curveEntities;
        MeshStore meshStore;
        CurveStore curveStore;
        EXPECT_TRUE(set->ReadFromXML(document.Root(), bodyEntities, curveEntities, meshStore, curveStore));
        return set.release();
    };
    EXPECT_EQ(CountHeldBy(makeSet), 2U);
}

std::string BytesOf(std::filesystem::path const& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

template <class Interface>
bool Is(IObject const* object)
{
    return dynamic_cast<Interface const*>(object) != nullptr;
}

struct Kind
{
    char const* name;
    bool (*is)(IObject const* object);
    bool holdsProperties;
};

// Kinds that are special cases of others stand in front of them.
constexpr Kind kKinds[] = {
    {"mesh", &Is<IPolygonMesh>, true},
    {"instance", &Is<IInstance>, true},
    {"set", &Is<IGeometricSet>, true},
    {"body", &Is<IBrep>, true},
    {"file", &Is<IFile>, false},
    {"assembly", &Is<IAssembly>, false},
    {"part", &Is<IPart>, false},
    {"feature override", &Is<IAssemblyFeatureOverride>, false},
    {"curve", &Is<ICurve>, false},
    {"point", &Is<IPoint>, false},
    {"cloud", &Is<IPointCloud>, false},
    {"sketch", &Is<ISketch>, false},
    {"extension", &Is<IExtensionGeometry>, false},
    {"axis", &Is<IWorkAxis>, false},
    {"plane", &Is<IWorkPlane>, false},
    {"work point", &Is<IWorkPoint>, false},
    {"callout", &Is<IAnnotationCallout>, false},
    {"callout element", &Is<IAnnotationCalloutElement>, false},
    {"library style", &Is<IVitreolRenderStyle>, false},
    {"style", &Is<IRenderStyle>, false},
    {"texture", &Is<IMaterialTexture>, false},
    {"layer", &Is<ILayer>, false},
    {"group", &Is<IGroup>, false},
    {"level of detail", &Is<ILod>, false},
    {"section camera", &Is<ISectionCamera>, false},
    {"camera", &Is<ICamera>, false},
    {"view", &Is<IView>, false},
};

// A scene with an object of every kind, and a property for each.
class EveryKindScene : public TestScene
{
public:
    EveryKindScene() : TestScene(Xml(), "complete.xml")
    {
        for (auto const& entry : std::filesystem::directory_iterator(Folder()))
        {
            if (entry.path().filename() != "complete.xml")
                WithFile(entry.path().filename().string(), BytesOf(entry.path()));
        }
        std::string const xml = Xml();
        std::string const attribute = "ID=\"";
        std::string properties = "<P>";
        for (std::size_t at = xml.find(attribute); at != std::string::npos; at = xml.find(attribute, at))
        {
            at += attribute.size();
            std::string const id = xml.substr(at, xml.find('"', at) - at);
            if (!id.empty() && ids.insert(id).second)
                properties.append("<Property ID=\"of ").append(id).append("\" ObjectID=\"").append(id).append("\"/>");
        }
        WithFile("complete.kvrproperty", properties + "</P>").Begin();
    }

    bool IsInDatabase(std::string const& property)
    {
        IProperty const* found = nullptr;
        return Producer().LoadUniverse()->PropertyDatabaseOf()->PropertyAt(property.c_str(), found) ==
               kIsValueSpecified_Yes;
    }

    // All that the document has, of objects and of other things.
    std::set<std::string> ids;

private:
    static std::filesystem::path Folder() { return std::filesystem::path(KVR_EXAMPLES_DIR) / "complete"; }
    // Its one camera cuts; a plain one is added.
    static std::string Xml()
    {
        std::string const camera = "<ICamera ID=\"camera\"";
        return Replaced(BytesOf(Folder() / "complete.xml"), camera, "<ICamera ID=\"plain\"/>" + camera);
    }
};

TEST(PropertyHolder, OfAllObjectsOfTheCompleteSceneTheFourKindsAlone)
{
    EveryKindScene scene;
    std::set<std::string> met;
    for (std::string const& id : scene.ids)
    {
        IObject const* const object = scene.Producer().Load(id.c_str());
        auto const* const kind =
            std::find_if(std::begin(kKinds), std::end(kKinds), [&](Kind const& row) { return row.is(object); });
        ASSERT_TRUE(!object || kind != std::end(kKinds)) << id;
        std::string const property = "of " + id;
        bool const holds = object && kind->holdsProperties;
        EXPECT_EQ(scene.IsInDatabase(property), holds) << id;
        if (!object)
            continue;
        met.insert(kind->name);
        EXPECT_EQ(Ids(object->PropertyIds()), holds ? std::vector{property} : std::vector<std::string>()) << id;
    }
    for (Kind const& kind : kKinds)
        EXPECT_EQ(met.count(kind.name), 1U) << kind.name;
}

}  // namespace

}  // namespace KVR::Test
