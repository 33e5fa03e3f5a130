// Points, clouds, sketches, sets, work features and callouts as elements under the root.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "producer/ObjectNodeIndex.h"
#include "tests/structure/Answers.h"
#include "tests/support/ReadElement.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

// An index of elements without a scan around it.
class GeometryDispatch : public testing::Test
{
protected:
    void Note(std::string const& elements)
    {
        auto* const root = m_reading.Parse("<Scene>" + elements + "</Scene>");
        for (auto* node = root->getFirstChild(); node; node = node->getNextSibling())
            Index().AddNode(node);
    }
    ObjectNodeIndex& Index() { return *m_reading.Producer().objectNodeIndex; }
    void ReadAll() { Index().ReadAllNodes(&m_reading.Producer()); }

    ReadElement m_reading;
};

}  // namespace

TEST_F(GeometryDispatch, EachKindIsReadOnceAndThenDone)
{
    Note(
        "<IPoint ID='a'/><IPointCloud ID='b'/><IGeometricSet ID='c'/><ISketch ID='d' SketchTypeEnum='kSketchType_2D'/>"
        "<IExtensionGeometry ID='e'/><IWorkAxis ID='f'/><IWorkPlane ID='g'/><IWorkPoint ID='h'/>"
        "<IAnnotationCallout ID='i'/><IAnnotationCalloutElement ID='j'/>");
    ReadAll();
    for (char const* const id : {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"})
    {
        EXPECT_TRUE(m_reading.Has(id)) << id;
        EXPECT_FALSE(Index().ReadNodeById(id)) << id;
    }
}

TEST_F(GeometryDispatch, InAnotherCaseNoKindIsRead)
{
    std::string elements;
    std::vector<std::string> ids;
    for (char const* const name :
         {"iFile", "iAssembly", "iPart", "iInstance", "iBrep", "iCurve", "iPolygonMesh", "iPoint", "iPointCloud",
          "iGeometricSet", "iSketch", "iExtensionGeometry", "iWorkAxis", "iWorkPlane", "iWorkPoint",
          "iAnnotationCallout", "iAnnotationCalloutElement"})
    {
        ids.push_back(std::string("id-") + name);
        elements += std::string("<") + name + " ID='" + ids.back() + "' SketchTypeEnum='kSketchType_2D'>" +
                    "<Child ID='target'/></" + name + ">";
    }
    Note("<IPart ID='target'/>" + elements);
    m_reading.AddKernelEntry("kernel");
    ReadAll();
    ASSERT_TRUE(m_reading.Has("target"));
    for (std::string const& id : ids)
    {
        EXPECT_FALSE(m_reading.Has(id.c_str())) << id;
        EXPECT_TRUE(Index().ReadNodeById(UTF8String(id.c_str()))) << id << " would be read again";
    }
}

TEST_F(GeometryDispatch, ReadingOneAheadAnswersTrue)
{
    Note("<IFile ID='0'/>");
    ReadAll();
    Note(
        "<IPoint ID='a'/><IPointCloud ID='b'/><IGeometricSet ID='c'/><ISketch ID='d' SketchTypeEnum='kSketchType_2D'/>"
        "<IExtensionGeometry ID='e'/><IWorkAxis ID='f'/><IWorkPlane ID='g'/><IWorkPoint ID='h'/>"
        "<IAnnotationCallout ID='i'/>");
    for (char const* const id : {"a", "b", "c", "d", "e", "f", "g", "h", "i"})
        EXPECT_TRUE(Index().ReadNodeById(id)) << id;
}

TEST_F(GeometryDispatch, ACurveOfTheKernelIsReadOnceUnderAPrefixToo)
{
    m_reading.Producer().SetNewObjectIdPrefix("n");
    m_reading.AddKernelEntry("kernel");
    Note("<ICurve ID='c'/>");
    ReadAll();
    ASSERT_TRUE(m_reading.Has("n1"));
    EXPECT_FALSE(Index().ReadNodeById("c"));
}

TEST_F(GeometryDispatch, AFailedSketchAnswersFalseAndLeavesItsPoints)
{
    Note("<ISketch ID='s'><ChildSet><IPoint ID='p'/></ChildSet></ISketch>");
    ReadAll();
    EXPECT_FALSE(m_reading.Has("s"));
    ASSERT_TRUE(m_reading.Has("p"));
    IObject* const point = m_reading.Producer().Load("p");
    EXPECT_FALSE(Index().ReadNodeById("s"));
    EXPECT_EQ(m_reading.Producer().Load("p"), point);
}

TEST_F(GeometryDispatch, AFailedSketchThatManyNameTakesLinearTime)
{
    constexpr int kCount = 20000;
    std::string xml = "<IFile ID='0'><ChildSet>";
    for (int i = 0; i < kCount; ++i)
        xml += "<A ID='s'/>";
    xml += "</ChildSet></IFile><ISketch ID='s'><ChildSet>";
    for (int i = 0; i < kCount; ++i)
        xml += "<IPoint ID='p" + std::to_string(i) + "'/>";
    Note(xml + "</ChildSet></ISketch>");
    ReadAll();
    EXPECT_FALSE(m_reading.Has("s"));
    EXPECT_TRUE(m_reading.Has("p19999"));
}

TEST(GeometryUnderRoot, AFileAndACalloutListWhatStandsThere)
{
    TestScene scene(
        InScene("<IFile ID='f'><ChildSet><A ID='p'/><A ID='k'/><A ID='n'/></ChildSet></IFile>"
                "<IAnnotationCallout ID='n'><ChildSet><Child ID='p'/><Child ID='z'/></ChildSet></IAnnotationCallout>"
                "<IPoint ID='p'/><IPoint ID='z'/><ISketch ID='k'/>"));
    scene.Begin();
    EXPECT_THAT(scene.ChildIds("f"), ElementsAre("p", "n")) << "a sketch that failed is left out";
    auto const& callout = scene.Get<IAnnotationCallout>("n");
    ASSERT_EQ(callout.ChildCount(), 1U) << "z comes later";
    EXPECT_EQ(Text(callout.ChildAt(0).Id()), "p");
}

}  // namespace KVR::Test
