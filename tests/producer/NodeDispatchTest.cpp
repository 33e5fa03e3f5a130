#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "producer/ObjectNodeIndex.h"
#include "producer/XMLProducerImpl.h"
#include "tests/support/ParsedDocument.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using List = std::vector<std::string>;

std::string LabelOf(TestScene& scene, char const* id)
{
    return Text(scene.Get<IObject>(id).Label());
}

// The index of a document's own, without a scan around it.
class DispatchOf : public testing::Test
{
protected:
    void Note(std::string const& elements)
    {
        m_document = std::make_unique<ParsedDocument>("<Scene>" + elements + "</Scene>");
        for (auto* node = m_document->Root()->getFirstChild(); node; node = node->getNextSibling())
            Index().AddNode(node);
    }
    ObjectNodeIndex& Index() { return *m_producer.objectNodeIndex; }
    void ReadAll() { Index().ReadAllNodes(&m_producer); }
    bool Has(char const* id) const { return m_producer.Load(id) != nullptr; }

    std::unique_ptr<ParsedDocument> m_document;
    XMLProducerImpl m_producer{UTF16String(), nullptr};
};

}  // namespace

TEST(NodeDispatch, ReadsIdsInTheOrderOfTheirTexts)
{
    TestScene scene(R"(<Scene><IPart ID="9" Label="9"/><IPart ID="b" Label="b"/><IPart ID="10" Label="10"/>
        <IPart ID="B" Label="B"/><IPart ID="&#xE4;" Label="umlaut"/><IPart ID="ab" Label="ab"/>
        <IPart ID="a" Label="a"/></Scene>)");
    scene.WithPrefix("P").Begin();
    List order;
    for (char const* const id : {"P1", "P2", "P3", "P4", "P5", "P6", "P7"})
        order.push_back(LabelOf(scene, id));
    EXPECT_EQ(order, (List{"10", "9", "B", "a", "ab", "b", "umlaut"}));
}

TEST(NodeDispatch, BuildsOnlyTheLaterOfTwoElementsWithOneId)
{
    TestScene scene(R"(<Scene><IPart ID="p" Label="first"/><IPart ID="p" Label="second"/>
        <IPart ID="q" Label="part"/><IAssembly ID="q" Label="assembly"/></Scene>)");
    scene.WithPrefix("P").Begin();
    EXPECT_EQ(LabelOf(scene, "P1"), "second");
    EXPECT_EQ(Text(scene.Get<IAssembly>("P2").Label()), "assembly");
    scene.Producer().Dispose("P1");
    EXPECT_FALSE(scene.Has("P1")) << "there was one";
    EXPECT_FALSE(scene.Has("P3"));
}

TEST(NodeDispatch, LeavesAnIdToItsObjectWhenAnotherElementHasItToo)
{
    for (char const* const other : {"ipart", "IPARTS", "Reference", "IMaterialTexture"})
    {
        TestScene scene(std::string("<Scene><IPart ID='p'/><") + other + " ID='p'/></Scene>");
        EXPECT_TRUE(scene.Begin().Has("p")) << other;
    }
}

TEST(NodeDispatch, LetsElementsWithoutAnIdAllFallOnTheEmptyOne)
{
    TestScene scene(R"(<Scene><IPart Label="first"/><IAssembly Label="second"/><IPart ID="" Label="third"/>
                       <IPart id="x" Label="last"/></Scene>)");
    scene.Begin();
    EXPECT_EQ(LabelOf(scene, ""), "last");
    EXPECT_FALSE(scene.Has("x"));
}

TEST(NodeDispatch, PullsForwardWhatAFileOrAnInstanceNames)
{
    TestScene scene(R"(<Scene><IFile ID="1"><ChildSet><A ID="3"/><A ID="2"/></ChildSet></IFile>
        <IPart ID="2"/><IAssembly ID="3"><ChildSet><IInstance ID="i"><Child ID="4"/></IInstance></ChildSet></IAssembly>
        <IPart ID="4"/></Scene>)");
    scene.WithPrefix("P").Begin();
    // Met in this order: file 1, its child 3, the instance in it, that one's target 4, and then child 2.
    EXPECT_NO_THROW(scene.Get<IFile>("P1"));
    EXPECT_NO_THROW(scene.Get<IAssembly>("P2"));
    EXPECT_NO_THROW(scene.Get<IInstance>("P3"));
    EXPECT_NO_THROW(scene.Get<IPart>("P4"));
    EXPECT_NO_THROW(scene.Get<IPart>("P5"));
    EXPECT_EQ(scene.ChildIds("P1"), (List{"P2", "P5"})) << "in the order of the file's set";
    EXPECT_FALSE(scene.Has("P6"));
}

TEST(NodeDispatch, BuildsAnObjectOnceHoweverOftenItIsNamed)
{
    TestScene scene(R"(<Scene><IFile ID="f"><ChildSet><A ID="p"/><A ID="p"/></ChildSet></IFile>
        <IAssembly ID="a"><ChildSet><IInstance ID="i"><Child ID="p"/></IInstance><IInstance ID="j"><Child ID="p"/>
        </IInstance></ChildSet></IAssembly><IPart ID="p"/></Scene>)");
    scene.Begin();
    EXPECT_EQ(scene.ChildIds("f"), (List{"p", "p"}));
    EXPECT_EQ(scene.Get<IInstance>("i").TargetId().Id(), scene.Get<IInstance>("j").TargetId().Id());
    IObject* const part = scene.Producer().Load("p");
    EXPECT_EQ(scene.Producer().Load("p"), part);
}

TEST(NodeDispatch, LeavesAMissingObjectAsTheOnlyTraceOfAFailure)
{
    // The instance finds no target, which is told to nobody.
    TestScene scene(R"(<Scene><IFile ID="f"><ChildSet><A ID="i"/><A ID="p"/></ChildSet></IFile>
        <IInstance ID="i"><Child ID="nowhere"/></IInstance><IPart ID="p"/></Scene>)");
    EXPECT_NO_THROW(scene.Begin());
    EXPECT_FALSE(scene.Has("i"));
    EXPECT_EQ(scene.ChildIds("f"), (List{"", "p"})) << "a child id without an object behind it";
}

TEST(NodeDispatch, KeepsAnAssemblyRegisteredWhoseReadingBrokeOff)
{
    TestScene scene(R"(<Scene><IAssembly ID="a" Label="A"><ChildSet><IInstance ID="i"><Child ID="p"/></IInstance>
        <IInstance ID="j"/><IInstance ID="k"><Child ID="p"/></IInstance></ChildSet><Unit LengthUnit="kUnitType_Meter"/>
        </IAssembly><IPart ID="p"/></Scene>)");
    scene.Begin();
    EXPECT_EQ(scene.ChildIds("a"), List{"i"});
    EXPECT_FALSE(scene.Has("k"));
    UnitTypeEnum unit = kUnitType_Inch;
    EXPECT_EQ(scene.Get<IAssembly>("a").LengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Unknown) << "what stands behind the failure was not read";
}

TEST_F(DispatchOf, ReadNodeByIdAnswersTrueForAnIdThatWasNeverNoted)
{
    Note("<IPart ID='p'/>");
    ReadAll();
    EXPECT_TRUE(Index().ReadNodeById("never"));
    EXPECT_FALSE(Has("never"));
}

TEST_F(DispatchOf, ReadNodeByIdAnswersFalseForWhatIsDone)
{
    Note(
        "<IFile ID='f'/><IAssembly ID='a'/><IPart ID='p'/><IInstance ID='i'><Child ID='p'/></IInstance>"
        "<IInstance ID='j'/>");
    ReadAll();
    for (char const* const id : {"f", "a", "p", "i"})
    {
        EXPECT_TRUE(Has(id)) << id;
        EXPECT_FALSE(Index().ReadNodeById(id)) << id;
    }
    EXPECT_FALSE(Has("j")) << "it has no target";
    EXPECT_FALSE(Index().ReadNodeById("j")) << "it is done all the same";
}

TEST_F(DispatchOf, ANameThatNoRowKnowsMakesNoObject)
{
    Note("<Other ID='o'/>");
    ReadAll();
    EXPECT_FALSE(Has("o"));
}

TEST_F(DispatchOf, TextAndInstructionsAmongTheNotedMakeNoObject)
{
    Note("<IPart ID='p'/>text<?IPart ID='x'?><!--c-->");
    EXPECT_NO_THROW(ReadAll());
    EXPECT_TRUE(Has("p"));
    EXPECT_FALSE(Has("x"));
    EXPECT_FALSE(Has(""));
}

TEST_F(DispatchOf, ASecondPassReadsNothingAgain)
{
    Note("<IPart ID='p' Label='first'/>");
    ReadAll();
    m_producer.Dispose("p");
    ReadAll();
    EXPECT_FALSE(Has("p"));
}

}  // namespace KVR::Test
