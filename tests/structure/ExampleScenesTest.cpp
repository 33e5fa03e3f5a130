// The scenes that come with the project, compared with their own documents.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <charconv>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "tests/structure/Answers.h"
#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

std::string PathOf(std::string const& name)
{
    return std::string(KVR_EXAMPLES_DIR) + "/" + name + "/" + name + ".xml";
}

std::string ContentOf(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

std::string AttributeOf(xercesc::DOMNode const* node, AttributeName name)
{
    return Text(XMLStrUtil::XMLStrToAStr(AttributeText(node, name)));
}

// Sixteen numbers between single blanks, as the scenes write them.
std::array<double, 16> NumbersOf(std::string const& text)
{
    std::array<double, 16> numbers{};
    char const* at = text.data();
    char const* const end = at + text.size();
    for (double& number : numbers)
    {
        at += at != end && *at == ' ';
        auto const result = std::from_chars(at, end, number);
        EXPECT_EQ(result.ec, std::errc()) << text;
        at = result.ptr;
    }
    EXPECT_EQ(at, end) << text;
    return numbers;
}

// A scene of the project, read, with its document beside it.
class ExampleScene
{
public:
    explicit ExampleScene(std::string const& name)
        : m_path(PathOf(name)), m_document(ContentOf(m_path)), m_producer(Wide(m_path.c_str()), nullptr)
    {
        m_producer.BeginProcess(IdSet(), nullptr, nullptr);
    }

    XMLProducer& Producer() { return m_producer; }
    ParsedDocument const& Document() const { return m_document; }

    template <class Interface>
    Interface* Find(std::string const& id)
    {
        return dynamic_cast<Interface*>(m_producer.Load(id.c_str()));
    }

    /// Calls the action for every element of that name in the document.
    void ForEach(ElementName name, std::function<void(xercesc::DOMNode*)> const& action) const
    {
        std::vector<xercesc::DOMNode*> open{m_document.Root()};
        while (!open.empty())
        {
            xercesc::DOMNode* const node = open.back();
            open.pop_back();
            if (IsNamed(node, name))
                action(node);
            for (xercesc::DOMNode* const child : Children(node))
                open.push_back(child);
        }
    }

    /// How many objects of that element's interface the producer serves with the label of their elements.
    template <class Interface>
    int CountServed(ElementName name)
    {
        int count = 0;
        ForEach(name,
                [&](xercesc::DOMNode* node)
                {
                    auto* const object = Find<Interface>(AttributeOf(node, Names::ID));
                    ASSERT_NE(object, nullptr) << AttributeOf(node, Names::ID);
                    EXPECT_EQ(Text(object->Label()), AttributeOf(node, Names::Label));
                    ++count;
                });
        return count;
    }

private:
    std::string m_path;
    ParsedDocument m_document;
    XMLProducer m_producer;
};

// How often parts occur below a component, and how deep; each component is counted once.
class Occurrences
{
public:
    explicit Occurrences(ExampleScene& scene) : m_scene(scene) {}

    long PartsBelow(std::string const& id)
    {
        auto const known = m_parts.find(id);
        if (known != m_parts.end())
            return known->second;
        long parts = m_scene.Find<IPart>(id) ? 1 : 0;
        if (auto const* const assembly = m_scene.Find<IAssembly>(id))
        {
            for (unsigned long long i = 0; i < assembly->ChildCount(); ++i)
            {
                auto const* const instance = m_scene.Find<IInstance>(Text(assembly->ChildAt(i).Id()));
                if (instance)
                    parts += PartsBelow(Text(instance->TargetId().Id()));
            }
        }
        m_parts[id] = parts;
        return parts;
    }

private:
    ExampleScene& m_scene;
    std::map<std::string, long> m_parts;
};

// Every instance of the document is served with what its element says.
void ExpectInstancesAsWritten(ExampleScene& scene)
{
    scene.ForEach(Names::IInstance,
                  [&](xercesc::DOMNode* node)
                  {
                      std::string const id = AttributeOf(node, Names::ID);
                      auto const* const instance = scene.Find<IInstance>(id);
                      ASSERT_NE(instance, nullptr) << id;
                      xercesc::DOMNode const* const child = *Children(node).begin();
                      EXPECT_EQ(Text(instance->TargetId().Id()), AttributeOf(child, Names::ID)) << id;
                      EXPECT_EQ(instance->Transform()->Elements(), NumbersOf(AttributeOf(child, Names::Transformation)))
                          << id;
                      EXPECT_TRUE(instance->IsVisible()) << id;
                      EXPECT_TRUE(instance->IsNetVisible()) << id;
                  });
}

// The instances of every assembly are served in document order.
void ExpectAssembliesAsWritten(ExampleScene& scene)
{
    scene.ForEach(Names::IAssembly,
                  [&](xercesc::DOMNode* node)
                  {
                      std::vector<std::string> written;
                      for (xercesc::DOMNode const* const set : Children(node))
                      {
                          for (xercesc::DOMNode const* const child : Children(set))
                          {
                              if (IsNamed(child, Names::IInstance))
                                  written.push_back(AttributeOf(child, Names::ID));
                          }
                      }
                      auto const* const assembly = scene.Find<IAssembly>(AttributeOf(node, Names::ID));
                      ASSERT_NE(assembly, nullptr);
                      std::vector<std::string> served;
                      for (unsigned long long i = 0; i < assembly->ChildCount(); ++i)
                          served.push_back(Text(assembly->ChildAt(i).Id()));
                      EXPECT_EQ(served, written);
                  });
}

std::string DateOf(Time const& time)
{
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &time.Value());
    return text.data();
}

}  // namespace

TEST(ExampleAs1, HasItsFourAssembliesFivePartsAndThirteenInstances)
{
    ExampleScene scene("as1-oc-214");
    EXPECT_EQ(scene.CountServed<IFile>(Names::IFile), 1);
    EXPECT_EQ(scene.CountServed<IAssembly>(Names::IAssembly), 4);
    EXPECT_EQ(scene.CountServed<IPart>(Names::IPart), 5);
    EXPECT_EQ(scene.CountServed<IInstance>(Names::IInstance), 13);
}

TEST(ExampleAs1, MakesEighteenSolidsOutOfItsParts)
{
    ExampleScene scene("as1-oc-214");
    Occurrences occurrences(scene);
    EXPECT_EQ(occurrences.PartsBelow("asm1"), 18);
    EXPECT_EQ(occurrences.PartsBelow("asm2"), 3);
    EXPECT_EQ(occurrences.PartsBelow("asm3"), 7);
    EXPECT_EQ(occurrences.PartsBelow("asm7"), 2);
}

TEST(ExampleAs1, ServesEveryInstanceAndAssemblyAsWritten)
{
    ExampleScene scene("as1-oc-214");
    ExpectInstancesAsWritten(scene);
    ExpectAssembliesAsWritten(scene);
}

TEST(ExampleAs1, PlacesTheRodAndTheBrackets)
{
    ExampleScene scene("as1-oc-214");
    auto const* const rod = scene.Find<IInstance>("inst1");
    ASSERT_NE(rod, nullptr);
    EXPECT_EQ(Text(rod->Label()), "rod-assembly_1");
    EXPECT_EQ(Text(rod->TargetId().Id()), "asm2");
    EXPECT_EQ(rod->Transform()->Elements(),
              (std::array<double, 16>{0, 0, 1, -10, 0, 1, 0, 75, -1, 0, 0, 60, 0, 0, 0, 1}));
    auto const* const bolt = scene.Find<IInstance>("inst9");
    ASSERT_NE(bolt, nullptr);
    EXPECT_EQ(bolt->Transform()->Element(1, 3), -52.990381059999997);
    EXPECT_TRUE(scene.Find<IInstance>("inst7")->Transform()->IsIdentity());
}

TEST(ExampleAs1, ItsRootFileNamesTheAssemblyAndSaysWhatItIs)
{
    ExampleScene scene("as1-oc-214");
    EXPECT_EQ(Text(scene.Producer().RootObjectId().Id()), "file1");
    auto* const file = scene.Find<IFile>("file1");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(Text(file->Label()), "as1-oc-214");
    ASSERT_EQ(file->ChildCount(), 1u);
    EXPECT_EQ(Text(file->ChildAt(0).Id()), "asm1");
    EXPECT_EQ(UnitsOf(*file), (UnitAnswers{std::nullopt, std::nullopt, kUnitType_Millimeter}));
    FileProperties const* const properties = file->FileProperties();
    ASSERT_NE(properties, nullptr);
    EXPECT_EQ(TextOf(*properties, &FileProperties::Title), "AS1: a plate with two brackets and a rod, bolted together");
    EXPECT_EQ(TextOf(*properties, &FileProperties::SendingSystem), "Open CASCADE 6.1");
    EXPECT_EQ(TextOf(*properties, &FileProperties::PartNumber), "AS1-OC-214");
    EXPECT_EQ(TextOf(*properties, &FileProperties::Revision), "1");
    EXPECT_EQ(TextOf(*properties, &FileProperties::Authorisation), std::nullopt);
    EXPECT_EQ(AnswerOf(*properties, &FileProperties::MassUnit), kUnitType_Kilogram);
    EXPECT_EQ(AnswerOf(*properties, &FileProperties::TimeUnit), kUnitType_Second);
    auto const date = AnswerOf(*properties, &FileProperties::CreationDate);
    ASSERT_TRUE(date);
    EXPECT_EQ(DateOf(*date), "2008-07-24T15:00:20");
    auto const view = AnswerOf(*properties, &FileProperties::ViewDataOf);
    ASSERT_TRUE(view);
    EXPECT_THAT(ComponentsOf(view->UpVector()), ElementsAre(0, 0, 1));
    EXPECT_THAT(ComponentsOf(view->FrontVector()), ElementsAre(0, -1, 0));
}

TEST(ExampleAs1, HasFiveCustomPropertiesOfFiveTypes)
{
    ExampleScene scene("as1-oc-214");
    FileProperties const* const properties = scene.Find<IFile>("file1")->FileProperties();
    ASSERT_NE(properties, nullptr);
    ASSERT_EQ(properties->CustomPropertyCount(), 5u);
    CustomProperty property;
    ASSERT_EQ(properties->CustomPropertyAt(1, property), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(property.Name()), "Solids");
    EXPECT_EQ(AnswerOf<int>(property, &CustomProperty::Value), 18);
    ASSERT_EQ(properties->CustomPropertyAt(2, property), kIsValueSpecified_Yes);
    EXPECT_EQ(AnswerOf<double>(property, &CustomProperty::Value), 103394.241339);
    for (unsigned long long i = 0; i < 5; ++i)
    {
        ASSERT_EQ(properties->CustomPropertyAt(i, property), kIsValueSpecified_Yes);
        EXPECT_EQ(property.Type(), static_cast<PropertyTypeEnum>(i));
    }
}

TEST(ExampleAs1, ItsComponentsAreMeasuredInMillimetres)
{
    ExampleScene scene("as1-oc-214");
    for (char const* const id : {"asm1", "asm2", "asm3", "asm7", "part4", "part5", "part6", "part8", "part9"})
        EXPECT_EQ(AnswerOf(*scene.Find<IComponent>(id), &IUnit::LengthUnit), kUnitType_Millimeter) << id;
}

TEST(ExampleAs1, ItsUniverseHasTwoDirectionsAndASurfaceColor)
{
    ExampleScene scene("as1-oc-214");
    IUniverse const* const universe = scene.Producer().LoadUniverse();
    ASSERT_NE(universe, nullptr);
    auto const view = AnswerOf(*universe, &IUniverse::ViewingDataOf);
    ASSERT_TRUE(view);
    EXPECT_THAT(ComponentsOf(view->UpVector()), ElementsAre(0, 0, 1));
    EXPECT_THAT(ComponentsOf(view->FrontVector()), ElementsAre(0, -1, 0));
    EXPECT_FALSE(AnswerOf(*universe, &IUniverse::DefaultCurveColor));
    EXPECT_TRUE(AnswerOf(*universe, &IUniverse::DefaultSurfaceColor));
    EXPECT_EQ(universe->CustomDataCount(), 0u);
    EXPECT_EQ(AnswerOf(*scene.Producer().QueryFile(), &FileQueryResult::HasAssemblyStructure), true);
}

TEST(ExampleFollowerArm, HasItsEighteenAssembliesThirtyTwoPartsAndItsInstances)
{
    ExampleScene scene("lcr_follower_arm");
    EXPECT_EQ(scene.CountServed<IFile>(Names::IFile), 1);
    EXPECT_EQ(scene.CountServed<IAssembly>(Names::IAssembly), 18);
    EXPECT_EQ(scene.CountServed<IPart>(Names::IPart), 32);
    EXPECT_EQ(scene.CountServed<IInstance>(Names::IInstance), 138);
}

TEST(ExampleFollowerArm, ServesEveryInstanceAndAssemblyAsWritten)
{
    ExampleScene scene("lcr_follower_arm");
    ExpectInstancesAsWritten(scene);
    ExpectAssembliesAsWritten(scene);
}

TEST(ExampleFollowerArm, KeepsMatricesThatAreAlmostARotation)
{
    ExampleScene scene("lcr_follower_arm");
    auto const* const instance = scene.Find<IInstance>("inst1");
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->Transform()->Element(0, 1), -6.1232339957380294e-17);
    EXPECT_EQ(instance->Transform()->Element(0, 2), 1.0733153316870599e-47);
    EXPECT_FALSE(instance->Transform()->IsIdentity());
    EXPECT_EQ(Text(scene.Find<IInstance>("inst2")->Label()), "XL,XC-330 v1:6");
}

TEST(ExampleFollowerArm, ItsRootFileHasNoPropertiesAndNoUnitsAnd161PartsBelowIt)
{
    ExampleScene scene("lcr_follower_arm");
    EXPECT_EQ(Text(scene.Producer().RootObjectId().Id()), "file1");
    auto const* const file = scene.Find<IFile>("file1");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->FileProperties(), nullptr);
    EXPECT_EQ(UnitsOf(*file), UnitAnswers());
    Occurrences occurrences(scene);
    EXPECT_EQ(occurrences.PartsBelow(Text(file->ChildAt(0).Id())), 161);
}

}  // namespace KVR::Test
