#include "annotation/XMLAnnotationCallout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "annotation/XMLAnnotationCalloutElement.h"
#include "geometry/XMLCurve.h"
#include "producer/ElementReaders.h"
#include "tests/structure/Answers.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/ReadElement.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

constexpr char kBadIndex[] = "invalid vector<T> subscript";

template <class Owner>
std::vector<std::string> ChildrenOf(Owner const& owner)
{
    std::vector<std::string> ids;
    for (unsigned long long i = 0; i < owner.ChildCount(); ++i)
        ids.push_back(Text(owner.ChildAt(i).Id()));
    return ids;
}

// A callout "n", behind what else the scene holds. Ids in front of "n" have been read before it.
struct CalloutElement
{
    explicit CalloutElement(std::string const& children, std::string const& attributes = "",
                            std::string const& around = "")
        : scene(
              InScene(around + "<IAnnotationCallout ID='n' " + attributes + ">" + children + "</IAnnotationCallout>")),
          callout(scene.Begin().Get<IAnnotationCallout>("n"))
    {
    }
    std::optional<std::string> Plane() const { return TextOf(callout, &IAnnotationCallout::AnnotationPlaneId); }

    TestScene scene;
    IAnnotationCallout& callout;
};

std::string ElementOf(std::string const& children, std::string const& id = "e")
{
    return "<IAnnotationCalloutElement ID='" + id + "'>" + children + "</IAnnotationCalloutElement>";
}

// A callout with one element, and the element.
struct CalloutElementElement
{
    explicit CalloutElementElement(std::string const& children, std::string const& around = "")
        : callout("<ChildSet>" + ElementOf(children) + "</ChildSet>", "", around),
          element(callout.scene.Get<IAnnotationCalloutElement>("e"))
    {
    }
    CalloutElement callout;
    IAnnotationCalloutElement& element;
};

}  // namespace

TEST(XMLAnnotationCallout, AttributesAndExtensionDataAreRead)
{
    CalloutElement const test(
        "<ExtensionData TypeId='t' Content='1'/><ExtensionData TypeId='t' Content='2'/><ExtensionData Content='3'/>",
        "Label='L' VersionPersistentId='v'");
    EXPECT_EQ(Text(test.callout.Label()), "L");
    EXPECT_EQ(TextOf(test.callout, &IObject::VersionPersistentId), "v");
    EXPECT_EQ(ExtensionTextOf(test.callout, "t"), "1");
    EXPECT_EQ(ExtensionTextOf(test.callout, ""), "3");
    EXPECT_TRUE(test.callout.PropertyIds().IsEmpty());
}

TEST(XMLAnnotationCallout, WithoutVisibilityItIsShown)
{
    EXPECT_TRUE(CalloutElement("").callout.IsVisible());
    EXPECT_TRUE(CalloutElement("", "Visibility='tRue'").callout.IsVisible());
    EXPECT_FALSE(CalloutElement("", "Visibility='0'").callout.IsVisible());
}

TEST(XMLAnnotationCallout, AChangeKeyIsNotRead)
{
    EXPECT_EQ(ChangeKeyOf(CalloutElement("<ChangeKey>k</ChangeKey>").callout), std::nullopt);
}

TEST(XMLAnnotationCallout, ItsChildrenAreListedOnceInOrder)
{
    CalloutElement const test("<ChildSet><Child ID='b'/><Child ID='a'/><Child ID='b'/><Child ID='lost'/>" +
                                  ElementOf("") + "<IPoint ID='p'/></ChildSet><ChildSet><Child ID='c'/>" +
                                  ElementOf("", "f") + ElementOf("", "g") + "</ChildSet>",
                              "", "<IPart ID='a'/><IPart ID='b'/><IPart ID='c'/>");
    EXPECT_EQ(test.callout.ChildCount(), 6U);
    EXPECT_THAT(ChildrenOf(test.callout), ElementsAre("b", "a", "e", "c", "f", "g"));
}

TEST(XMLAnnotationCallout, ItsNamesAreExact)
{
    CalloutElement test(
        "<childset><Child ID='a'/></childset><ITEXT/><annotationplane><IWorkPlane ID='w'/>"
        "</annotationplane><AnnotationPlane><iworkplane ID='w'/></AnnotationPlane>",
        "", "<IPart ID='a'/>");
    EXPECT_EQ(test.callout.ChildCount(), 0U);
    EXPECT_EQ(test.callout.Text(), nullptr);
    EXPECT_EQ(test.Plane(), std::nullopt);
    EXPECT_FALSE(test.scene.Has("w"));
}

TEST(XMLAnnotationCallout, ABadIndexThrowsAndTheCountItselfIsOutOfRange)
{
    CalloutElement const test("<ChildSet><Child ID='a'/></ChildSet>", "", "<IPart ID='a'/>");
    ASSERT_EQ(test.callout.ChildCount(), 1U);
    EXPECT_THAT([&] { static_cast<void>(test.callout.ChildAt(1)); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_THAT([&] { static_cast<void>(test.callout.ChildAt(2)); },
                ThrowsMessage<GeneralException>("Invalid index to child of XMLAnnotationCallout."));
}

TEST(XMLAnnotationCallout, AChildThatIsGoneHasAnEmptyId)
{
    CalloutElement test("<ChildSet><Child ID='a'/></ChildSet>", "", "<IPart ID='a'/>");
    test.scene.Producer().Dispose("a");
    EXPECT_THAT(ChildrenOf(test.callout), ElementsAre(""));
}

TEST(XMLAnnotationCallout, WithoutAUsablePlaneItHasNone)
{
    EXPECT_EQ(CalloutElement("").Plane(), std::nullopt);
    EXPECT_EQ(CalloutElement("<AnnotationPlane/>").Plane(), std::nullopt);
    EXPECT_EQ(CalloutElement("<AnnotationPlane><Child ID='lost'/><IWorkPoint ID='w'/></AnnotationPlane>").Plane(),
              std::nullopt);
}

TEST(XMLAnnotationCallout, APlaneIsReadInPlaceAndRegistered)
{
    CalloutElement test("<AnnotationPlane><IWorkPlane ID='w'><Origin X='1'/></IWorkPlane></AnnotationPlane>");
    EXPECT_EQ(test.Plane(), "w");
    double x = 0;
    double y = 0;
    double z = 0;
    test.scene.Get<IWorkPlane>("w").Origin(x, y, z);
    EXPECT_EQ(x, 1.0);
}

TEST(XMLAnnotationCallout, OfTwoUsablePlanesTheLaterOneCounts)
{
    std::string const around = "<IWorkPlane ID='a'/>";
    std::string const named = "<Child ID='a'/>";
    std::string const own = "<IWorkPlane ID='w'/>";
    EXPECT_EQ(CalloutElement("<AnnotationPlane>" + named + own + "</AnnotationPlane>", "", around).Plane(), "w");
    EXPECT_EQ(
        CalloutElement("<AnnotationPlane>" + own + named + "<Child ID='lost'/></AnnotationPlane>", "", around).Plane(),
        "a");
    EXPECT_EQ(CalloutElement("<AnnotationPlane>" + own + "</AnnotationPlane><AnnotationPlane>" + named +
                                 "</AnnotationPlane><AnnotationPlane/>",
                             "", around)
                  .Plane(),
              "a");
}

TEST(XMLAnnotationCallout, WithoutTextItAnswersNull)
{
    EXPECT_EQ(CalloutElement("").callout.Text(), nullptr);
}

TEST(XMLAnnotationCallout, OfTwoTextsTheLaterOneCounts)
{
    CalloutElement const test("<IText><ITextLine/></IText><IText><ITextLine/><ITextLine/></IText>");
    ASSERT_NE(test.callout.Text(), nullptr);
    EXPECT_EQ(test.callout.Text()->LineCount(), 2U);
}

TEST(XMLAnnotationCallout, IdsAreMapped)
{
    TestScene scene(
        InScene("<IPart ID='a'/><IAnnotationCallout ID='n'><AnnotationPlane><IWorkPlane ID='w'/></AnnotationPlane>"
                "<ChildSet><Child ID='a'/><Child ID='never'/>" +
                ElementOf("<ChildSet><IPoint ID='p'/></ChildSet><Styles><StyleRef ID='s'/></Styles>") +
                "</ChildSet></IAnnotationCallout>"));
    scene.WithPrefix("P").Begin();
    auto const& callout = scene.Get<IAnnotationCallout>("P2");
    EXPECT_EQ(TextOf(callout, &IAnnotationCallout::AnnotationPlaneId), "P3");
    EXPECT_THAT(ChildrenOf(callout), ElementsAre("P1", "P4"));
    auto const& element = scene.Get<IAnnotationCalloutElement>("P4");
    EXPECT_THAT(ChildrenOf(element), ElementsAre("P5"));
    EXPECT_THAT(Ids(element.Styles()), ElementsAre("P6"));
}

TEST(XMLAnnotationCalloutElement, AttributesStylesAndExtensionDataAreRead)
{
    CalloutElement test(
        "<ChildSet><IAnnotationCalloutElement ID='e' Label='L' VersionPersistentId='v' Visibility='0'>"
        "<Styles><StyleRef ID='s'/></Styles><ExtensionData TypeId='t' Content='c'/>"
        "</IAnnotationCalloutElement></ChildSet>");
    auto const& element = test.scene.Get<IAnnotationCalloutElement>("e");
    EXPECT_EQ(Text(element.Label()), "L");
    EXPECT_EQ(TextOf(element, &IObject::VersionPersistentId), "v");
    EXPECT_THAT(Ids(element.Styles()), ElementsAre("s"));
    EXPECT_EQ(ExtensionTextOf(element, "t"), "c");
}

TEST(XMLAnnotationCalloutElement, StylesInAnotherCaseMatchAndReadNothing)
{
    EXPECT_TRUE(CalloutElementElement("<STYLES><StyleRef ID='s'/></STYLES>").element.Styles().IsEmpty());
    EXPECT_TRUE(CalloutElementElement("<NetStyles><StyleRef ID='s'/></NetStyles>").element.Styles().IsEmpty());
}

TEST(XMLAnnotationCalloutElement, ItsChildrenAreListedOnceInOrder)
{
    CalloutElementElement const test(
        "<ChildSet><IPoint ID='p'/><Child ID='a'/><IPoint ID='p'/><Child ID='lost'/><IPolygonMesh ID='none'/>"
        "<IPointCloud ID='c'/></ChildSet><ChildSet><IPoint ID='q'/></ChildSet>",
        "<IPart ID='a'/>");
    EXPECT_THAT(ChildrenOf(test.element), ElementsAre("p", "a", "q"));
}

TEST(XMLAnnotationCalloutElement, AChildSetInAnotherCaseIsNotRead)
{
    CalloutElementElement test("<childset><IPoint ID='p'/></childset>");
    EXPECT_EQ(test.element.ChildCount(), 0U);
    EXPECT_FALSE(test.callout.scene.Has("p"));
}

TEST(XMLAnnotationCalloutElement, ACurveWithoutAnyStoreIsPassedOver)
{
    CalloutElementElement test("<ChildSet><ICurve ID='c'/><IPoint ID='p'/></ChildSet>");
    EXPECT_THAT(ChildrenOf(test.element), ElementsAre("p"));
    EXPECT_FALSE(test.callout.scene.Has("c"));
}

TEST(XMLAnnotationCalloutElement, MeshesAndCurvesComeFromTheirStores)
{
    TestScene scene(std::string("<Scene>") + kMeshInfo + "<IAnnotationCallout ID='n'><ChildSet>" +
                    ElementOf("<ChildSet><ICurve ID='lost'/><ICurve ID='c'/><IPolygonMesh ID='none'/><IPolygonMesh "
                              "ID='m'/></ChildSet>") +
                    "</ChildSet></IAnnotationCallout></Scene>");
    scene.WithFile("s.mesh", MeshInfoHeader(2).Bytes() + RecordFront(2, "c") + VertexBytes(2) + TriangleRecord("m"))
        .Begin();
    EXPECT_THAT(ChildrenOf(scene.Get<IAnnotationCalloutElement>("e")), ElementsAre("c", "m"));
    EXPECT_NE(scene.Get<ICurve>("c").CurveDataAt(0), nullptr);
}

TEST(XMLAnnotationCalloutElement, ABadIndexThrowsAndTheCountItselfIsOutOfRange)
{
    CalloutElementElement const test("<ChildSet><IPoint ID='p'/></ChildSet>");
    EXPECT_THAT([&] { static_cast<void>(test.element.ChildAt(1)); }, ThrowsMessage<std::out_of_range>(kBadIndex));
    EXPECT_THAT([&] { static_cast<void>(test.element.ChildAt(2)); },
                ThrowsMessage<GeneralException>("Invalid index to child of XMLAnnotationCalloutElement."));
}

TEST(XMLAnnotationCalloutElement, UnderTheRootItIsNoObject)
{
    TestScene scene(InScene(ElementOf("<ChildSet><IPoint ID='p'/></ChildSet>")));
    scene.Begin();
    EXPECT_FALSE(scene.Has("e"));
    EXPECT_FALSE(scene.Has("p"));
}

namespace
{

class AnnotationReading : public testing::Test
{
protected:
    template <class Object>
    bool Read(Object& object, xercesc::DOMNode* node)
    {
        SideFileIndex& index = m_reading.Index();
        return object.ReadFromXML(node, index.curveEntities, index.meshStore, index.curveStore);
    }
    template <class Object>
    bool ReadSet(Object& object, xercesc::DOMNode* node)
    {
        SideFileIndex& index = m_reading.Index();
        return object.ReadChildSet(node, index.curveEntities, index.meshStore, index.curveStore);
    }

    ReadElement m_reading;
    XMLAnnotationCallout m_callout{&m_reading.Producer()};
    XMLAnnotationCalloutElement m_element{&m_reading.Producer()};
};

}  // namespace

TEST_F(AnnotationReading, NullNodesFail)
{
    SideFileIndex& index = m_reading.Index();
    EXPECT_FALSE(Read(m_callout, nullptr));
    EXPECT_FALSE(Read(m_element, nullptr));
    EXPECT_FALSE(ReadSet(m_callout, nullptr));
    EXPECT_FALSE(ReadSet(m_element, nullptr));
    EXPECT_FALSE(
        ReadAnnotationCallout(&m_reading.Producer(), nullptr, index.curveEntities, index.meshStore, index.curveStore));
    EXPECT_FALSE(ReadAnnotationCalloutElement(&m_reading.Producer(), nullptr, index.curveEntities, index.meshStore,
                                              index.curveStore));
}

TEST_F(AnnotationReading, ASetWithoutChildrenIsRead)
{
    EXPECT_TRUE(ReadSet(m_callout, m_reading.Parse("<ChildSet/>")));
    EXPECT_TRUE(ReadSet(m_element, m_reading.Parse("<ChildSet/>")));
    EXPECT_EQ(m_callout.ChildCount(), 0U);
}

TEST_F(AnnotationReading, ACurveOfTheKernelIsRegisteredAndListed)
{
    m_reading.AddKernelEntry("edge");
    EXPECT_TRUE(ReadSet(m_element, m_reading.Parse("<ChildSet><ICurve ID='c'/></ChildSet>")));
    EXPECT_THAT(ChildrenOf(m_element), ElementsAre("c"));
}

TEST_F(AnnotationReading, ACurveOfBothStoresIsTakenFromBothAndListedOnce)
{
    m_reading.AddKernelEntry("edge");
    auto stored = std::make_unique<XMLCurve>(&m_reading.Producer());
    XMLCurve* const first = stored.get();
    m_reading.Index().curveStore["c"] = {std::move(stored), first};
    EXPECT_TRUE(ReadSet(m_element, m_reading.Parse("<ChildSet><ICurve ID='c'/></ChildSet>")));
    EXPECT_THAT(ChildrenOf(m_element), ElementsAre("c"));
    EXPECT_EQ(m_reading.Producer().Load("c"), first);
}

TEST_F(AnnotationReading, TheWrappersRegisterWhatTheyRead)
{
    SideFileIndex& index = m_reading.Index();
    EXPECT_TRUE(ReadAnnotationCallout(&m_reading.Producer(), m_reading.Parse("<IAnnotationCallout ID='n'/>"),
                                      index.curveEntities, index.meshStore, index.curveStore));
    EXPECT_TRUE(ReadAnnotationCalloutElement(&m_reading.Producer(),
                                             m_reading.Parse("<IAnnotationCalloutElement ID='e'/>"),
                                             index.curveEntities, index.meshStore, index.curveStore));
    EXPECT_TRUE(m_reading.Has("n"));
    EXPECT_TRUE(m_reading.Has("e"));
}

}  // namespace KVR::Test
