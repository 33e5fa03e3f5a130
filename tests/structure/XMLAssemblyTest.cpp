#include "structure/XMLAssembly.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "producer/ObjectNodeIndex.h"
#include "producer/SideFileIndex.h"
#include "producer/XMLProducerImpl.h"
#include "tests/structure/Answers.h"
#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::ThrowsMessage;

constexpr char kBadIndex[] = "invalid vector<T> subscript";

std::string AssemblyText(std::string const& content)
{
    return "<IAssembly ID='m' Label='L'>" + content + "</IAssembly>";
}

std::string InstanceText(char const* id, char const* target)
{
    return std::string("<IInstance ID='") + id + "'><Child ID='" + target + "'/></IInstance>";
}

std::string SetText(std::string const& children)
{
    return "<ChildSet>" + children + "</ChildSet>";
}

constexpr char const* kParts = "<IPart ID='p'/><IPart ID='q'/>";

// A producer and an assembly of it, outside of any document.
class LoneAssembly
{
public:
    // The index is given its producer, as at the start of a scene's reading.
    LoneAssembly() { m_producer.objectNodeIndex->ReadAllNodes(&m_producer); }

    bool Read(xercesc::DOMNode* node)
    {
        return m_assembly.ReadFromXML(node, m_index.bodyEntities, m_index.curveEntities, m_index.meshStore,
                                      m_index.curveStore);
    }
    XMLAssembly& operator*() { return m_assembly; }

private:
    XMLProducerImpl m_producer{UTF16String(), nullptr};
    SideFileIndex m_index;
    XMLAssembly m_assembly{&m_producer};
};

}  // namespace

TEST(XMLAssembly, ChildrenStandInDocumentOrderOverAllSets)
{
    TestScene scene(InScene(kParts + AssemblyText(SetText(InstanceText("z", "p") + InstanceText("a", "q")) +
                                                  SetText("<Child ID='a'/>" + InstanceText("k", "p")))));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("z", "a", "a", "k"));
    EXPECT_EQ(Text(scene.Get<IInstance>("k").TargetId().Id()), "p");
}

TEST(XMLAssembly, UnknownChildrenTextAndInstructionsAreSkipped)
{
    TestScene scene(
        InScene(kParts + AssemblyText(SetText("text<Unknown ID='x'><IInstance ID='y'/></Unknown><iinstance/>"
                                              "<?IInstance ID='w'?><!-- c -->" +
                                              InstanceText("i", "p")))));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("i"));
    EXPECT_FALSE(scene.Has("x"));
    EXPECT_FALSE(scene.Has("y"));
}

TEST(XMLAssembly, AChildReferenceFindsAnInstanceOfItsOwnThatStandsAbove)
{
    TestScene scene(
        InScene(kParts + AssemblyText(SetText("<Child ID='i'/>" + InstanceText("i", "p") + "<Child ID='i'/>"))));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("i", "i"));
}

TEST(XMLAssembly, AChildReferenceFindsALaterIdThatAnInstanceAboveItHadReadOnDemand)
{
    TestScene scene(
        InScene(AssemblyText(SetText("<Child ID='q'/>" + InstanceText("i", "q") + "<Child ID='q'/>")) + kParts));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("i", "q"));
}

TEST(XMLAssembly, AnInstanceWhoseTargetCannotBeFoundEndsTheWholeElement)
{
    TestScene scene(InScene(
        kParts +
        AssemblyText("<Unit LengthUnit='kUnitType_Inch'/><ChangeKey>before</ChangeKey>"
                     "<Styles><StyleRef ID='s1'/></Styles><ExtensionData TypeId='t1'/>" +
                     SetText(InstanceText("i1", "p") + InstanceText("i2", "nowhere") + InstanceText("i3", "q")) +
                     SetText(InstanceText("i4", "q")) +
                     "<ChangeKey>behind</ChangeKey><Styles><StyleRef ID='s2'/></Styles>"
                     "<ExtensionData TypeId='t2'/><FileProperties/><CrossLevelAttributes><Visibilities>"
                     "<EntityVisibility Path='[i1]'/></Visibilities></CrossLevelAttributes>")));
    scene.Begin();
    // What stood in front of the failure stays, and the assembly and its first instance are registered.
    auto& assembly = scene.Get<IAssembly>("m");
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("i1"));
    EXPECT_TRUE(scene.Has("i1"));
    EXPECT_EQ(AnswerOf(assembly, &IUnit::LengthUnit), kUnitType_Inch);
    EXPECT_EQ(ChangeKeyOf(assembly), "before");
    EXPECT_THAT(Ids(assembly.Styles()), ElementsAre("s1"));
    EXPECT_TRUE(ExtensionOf(assembly, "t1"));
    // Nothing behind it was read.
    for (char const* const id : {"i2", "i3", "i4"})
        EXPECT_FALSE(scene.Has(id)) << id;
    EXPECT_FALSE(ExtensionOf(assembly, "t2"));
    EXPECT_EQ(assembly.FileProperties(), nullptr);
    EXPECT_EQ(assembly.CrossLevelVisibilityCount(), 0u);
}

TEST(XMLAssembly, AnAbortedReadingDoesNotResolveTheOlderFormOfUnits)
{
    TestScene scene(InScene(
        AssemblyText("<UnitAndTolerance LengthUnit='kUnitType_Inch'/>" + SetText(InstanceText("i", "nowhere")))));
    scene.Begin();
    EXPECT_EQ(UnitsOf(scene.Get<IAssembly>("m")),
              (UnitAnswers{kUnitType_Unknown, kUnitType_Unknown, kUnitType_Unknown}));
}

TEST(XMLAssembly, AnAbortedAssemblyIsAGoodTargetAndDoesNotAbortItsOwner)
{
    TestScene scene(InScene(AssemblyText(SetText(InstanceText("i", "z") + InstanceText("j", "p"))) +
                            "<IAssembly ID='z'>" + SetText(InstanceText("bad", "nowhere")) + "</IAssembly>" + kParts));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("i", "j"));
    EXPECT_THAT(scene.ChildIds("z"), ElementsAre());
}

TEST(XMLAssembly, AnAbortedAssemblyIsReadOnceAndIsAChildOfItsFile)
{
    TestScene scene(InScene("<IFile ID='f'><ChildSet><Child ID='m'/></ChildSet></IFile>" + std::string(kParts) +
                            AssemblyText(SetText(InstanceText("i", "p") + InstanceText("bad", "nowhere")))));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("f"), ElementsAre("m"));
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("i"));
    scene.Producer().Dispose("m");
    EXPECT_FALSE(scene.Has("m"));
}

TEST(XMLAssembly, AnElementIsReadAndAnythingElseIsNot)
{
    ParsedDocument const good("<IAssembly ID='a'><ChildSet><Child ID='nowhere'/></ChildSet></IAssembly>");
    LoneAssembly read;
    EXPECT_TRUE(read.Read(good.Root()));
    EXPECT_EQ(Text((*read).Id()), "a");
    ParsedDocument const instruction("<r><?IAssembly ID='a'?></r>");
    LoneAssembly unread;
    EXPECT_FALSE(unread.Read(nullptr));
    EXPECT_FALSE(unread.Read(instruction.FirstNamed(u"IAssembly")));
    EXPECT_EQ(Text((*unread).Id()), "");
}

TEST(XMLAssembly, AReadingThatAnInstanceAbortsAnswersFalse)
{
    ParsedDocument const document("<IAssembly ID='a'><ChildSet><IInstance ID='i'/></ChildSet></IAssembly>");
    LoneAssembly aborted;
    EXPECT_FALSE(aborted.Read(document.Root()));
    EXPECT_EQ(Text((*aborted).Id()), "a");
    EXPECT_EQ((*aborted).ChildCount(), 0u);
}

TEST(XMLAssembly, AChildAtOrBeyondTheCountThrowsItsOwnMessage)
{
    TestScene scene(InScene(kParts + AssemblyText(SetText(InstanceText("i", "p"))) + "<IAssembly ID='empty'/>"));
    scene.Begin();
    IAssembly const& one = scene.Get<IAssembly>("m");
    IAssembly const& empty = scene.Get<IAssembly>("empty");
    EXPECT_EQ(Text(one.ChildAt(0).Id()), "i");
    for (unsigned long long const index : {1ull, 2ull, ~0ull})
    {
        EXPECT_THAT([&] { one.ChildAt(index); },
                    ThrowsMessage<GeneralException>("Invalid index to child of XMLAssembly."));
        EXPECT_THAT([&] { empty.ChildAt(index - 1); },
                    ThrowsMessage<GeneralException>("Invalid index to child of XMLAssembly."));
    }
}

TEST(XMLAssembly, ABadCrossLevelIndexThrowsOutOfRangeAndWritesNothing)
{
    TestScene scene(
        InScene(AssemblyText("<CrossLevelAttributes><Styles><EntityStyles Path='[a]'/></Styles>"
                             "<Visibilities><EntityVisibility/></Visibilities><Transformations>"
                             "<EntityTransformation/></Transformations></CrossLevelAttributes>")));
    scene.Begin();
    IAssembly const& assembly = scene.Get<IAssembly>("m");
    IdSet path;
    path.AddWithUniquenessCheck("before");
    IdSet styles = path;
    bool visible = true;
    Matrix3d transform;
    for (unsigned long long const index : {1ull, 2ull, ~0ull})
    {
        EXPECT_THAT([&] { assembly.CrossLevelVisibilityAt(index, path, visible); },
                    ThrowsMessage<std::out_of_range>(kBadIndex));
        EXPECT_THAT([&] { assembly.CrossLevelStyleAt(index, path, styles); },
                    ThrowsMessage<std::out_of_range>(kBadIndex));
        EXPECT_THAT([&] { assembly.CrossLevelTransformAt(index, path, transform); },
                    ThrowsMessage<std::out_of_range>(kBadIndex));
    }
    EXPECT_THAT(Ids(path), ElementsAre("before"));
    EXPECT_THAT(Ids(styles), ElementsAre("before"));
    EXPECT_TRUE(visible);
}

TEST(XMLAssembly, WithoutCrossLevelAttributesItsThreeListsAreEmpty)
{
    TestScene scene(InScene(AssemblyText("")));
    scene.Begin();
    IAssembly const& assembly = scene.Get<IAssembly>("m");
    EXPECT_EQ(assembly.CrossLevelVisibilityCount(), 0u);
    EXPECT_EQ(assembly.CrossLevelStyleCount(), 0u);
    EXPECT_EQ(assembly.CrossLevelTransformCount(), 0u);
    IdSet path;
    bool visible = false;
    EXPECT_THAT([&] { assembly.CrossLevelVisibilityAt(0, path, visible); },
                ThrowsMessage<std::out_of_range>(kBadIndex));
}

TEST(XMLAssembly, TwoElementsOfOneIdAreOneObjectOfTheSecond)
{
    TestScene scene(InScene("<IAssembly ID='m' Label='first'/><IAssembly ID='m' Label='second'/>"));
    scene.Begin();
    EXPECT_EQ(Text(scene.Get<IAssembly>("m").Label()), "second");
    scene.Producer().Dispose("m");
    EXPECT_FALSE(scene.Has("m"));
}

TEST(XMLAssembly, AnAssemblyThatReachesItselfThroughAnInstanceEnds)
{
    TestScene scene(InScene(
        kParts + AssemblyText(SetText(InstanceText("i", "p") + InstanceText("loop", "m") + InstanceText("j", "p")))));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("m"), ElementsAre("i"));
    EXPECT_FALSE(scene.Has("loop"));
}

}  // namespace KVR::Test
