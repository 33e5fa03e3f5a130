#include "geometry/ChildIds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <memory>

#include "framework/gmk_interface/DetachableGMKBrep.h"
#include "framework/kernel/entity.h"
#include "framework/xml_util/XMLUtils.h"
#include "geometry/BundleBuilder.h"
#include "geometry/XMLExtensionGeometry.h"
#include "geometry/XMLGeometricSet.h"
#include "geometry/XMLPoint.h"
#include "tests/support/ReadElement.h"
#include "tests/support/Shapes.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

bool AddItsId(ChildContext const&, xercesc::DOMNode* node, std::vector<UTF8String>& ids)
{
    XMLUtils::GetNodeAttribute(node, u"ID", ids.emplace_back());
    return true;
}

bool Fail(ChildContext const&, xercesc::DOMNode*, std::vector<UTF8String>&)
{
    return false;
}

constexpr ChildIdRow kRows[] = {
    {{u"Good", "Good"}, &AddItsId, kOnFailure_Abort}, {{u"Next", "Next"}, &Fail, kOnFailure_Next},
    {{u"Stop", "Stop"}, &Fail, kOnFailure_Stop},      {{u"Abort", "Abort"}, &Fail, kOnFailure_Abort},
    {Names::IBrep, &AddBrep, kOnFailure_Stop},
};

class ChildIds : public testing::Test
{
protected:
    ChildSetEnd Read(std::string const& content)
    {
        SideFileIndex& index = m_reading.Index();
        ChildContext const context{&m_reading.Producer(), index.bodyEntities, index.curveEntities, index.meshStore,
                                   index.curveStore};
        return ReadChildIds(kRows, context, m_reading.Parse("<ChildSet>" + content + "</ChildSet>"), m_ids);
    }

    ReadElement m_reading;
    IdSet m_ids;
};

}  // namespace

TEST_F(ChildIds, AreListedOnceInTheOrderInWhichTheyCame)
{
    EXPECT_EQ(Read("<Good ID='b'/><Good ID='a'/><Good ID='b'/><Other ID='c'/>"), ChildSetEnd::kDone);
    EXPECT_THAT(Ids(m_ids), ElementsAre("b", "a"));
}

TEST_F(ChildIds, OfAFurtherSetJoinTheFirst)
{
    EXPECT_EQ(Read("<Good ID='b'/>"), ChildSetEnd::kDone);
    EXPECT_EQ(Read("<Good ID='a'/><Good ID='b'/>"), ChildSetEnd::kDone);
    EXPECT_THAT(Ids(m_ids), ElementsAre("b", "a"));
}

TEST_F(ChildIds, AFailureDoesWhatItsRowSaysAndKeepsWhatWasRead)
{
    EXPECT_EQ(Read("<Good ID='a'/><Next/><Good ID='b'/>"), ChildSetEnd::kDone);
    EXPECT_EQ(Read("<Good ID='c'/><Stop/><Good ID='x'/>"), ChildSetEnd::kStopped);
    EXPECT_EQ(Read("<Good ID='d'/><Abort/><Good ID='x'/>"), ChildSetEnd::kAborted);
    EXPECT_THAT(Ids(m_ids), ElementsAre("a", "b", "c", "d"));
}

TEST_F(ChildIds, AReaderThatFailsLeavesWhatItRegisteredOnTheWay)
{
    // Registers a child and then says that it is nothing itself.
    class FailingOwner : public XMLPoint
    {
    public:
        explicit FailingOwner(XMLProducerImpl* producer) : XMLPoint(producer), m_of(producer) {}
        bool ReadFromXML(xercesc::DOMNode* node)
        {
            EXPECT_NE(ReadAndRegister<XMLPoint>(m_of, node), nullptr);
            return false;
        }

    private:
        XMLProducerImpl* m_of;
    };
    EXPECT_EQ(ReadAndRegister<FailingOwner>(&m_reading.Producer(), m_reading.Parse("<IPoint ID='p'/>")), nullptr);
    EXPECT_TRUE(m_reading.Has("p"));
}

TEST_F(ChildIds, OfBodiesAreTheMappedOnesUnderAPrefix)
{
    auto* const body = new BODY(BoxShape(1, 2, 3));
    m_reading.Index().bodyEntities["b"] = body;
    m_reading.Producer().SetNewObjectIdPrefix("n");
    EXPECT_EQ(Read("<IBrep ID='a'/><IBrep ID='b'/><IBrep ID='a' Label='again'/>"), ChildSetEnd::kDone);
    EXPECT_THAT(Ids(m_ids), ElementsAre("n1", "n2"));
    EXPECT_FALSE(m_reading.Has("a"));
    EXPECT_FALSE(m_reading.Has("b"));
    auto const* const first = dynamic_cast<DetachableGMKBrep*>(m_reading.Producer().Load("n1"));
    auto* const second = dynamic_cast<DetachableGMKBrep*>(m_reading.Producer().Load("n2"));
    ASSERT_TRUE(first && second);
    EXPECT_EQ(Text(first->Label()), "");
    EXPECT_EQ(first->Body(), nullptr);
    std::unique_ptr<BODY> const detached(second->DetachBody());
    EXPECT_EQ(detached.get(), body) << "looked up by the id of the document";
}

TEST_F(ChildIds, ManyAreListedInLinearTime)
{
    std::string content;
    for (int i = 0; i < 200000; ++i)
        content += "<Good ID='" + std::to_string(i % 100000) + "'/>";
    EXPECT_EQ(Read(content), ChildSetEnd::kDone);
    EXPECT_EQ(m_ids.Size(), 100000U);
}

TEST_F(ChildIds, AreNotThoseOfObjectsThatRefuseTheirElement)
{
    SideFileIndex& index = m_reading.Index();
    ChildContext const context{&m_reading.Producer(), index.bodyEntities, index.curveEntities, index.meshStore,
                               index.curveStore};
    std::vector<UTF8String> ids;
    EXPECT_FALSE(AddObject<XMLPoint>(context, nullptr, ids));
    EXPECT_FALSE(AddKernelCurve(context, nullptr, ids));
    EXPECT_FALSE(AddBundle<XMLGeometricSet>(context, nullptr, ids));
    EXPECT_FALSE(AddBundle<XMLExtensionGeometry>(context, nullptr, ids));
    EXPECT_TRUE(ids.empty());
    EXPECT_TRUE(AddObject<XMLPoint>(context, m_reading.Parse("<IPoint ID='p'/>"), ids));
    EXPECT_EQ(ids, std::vector<UTF8String>{"p"});
}

}  // namespace KVR::Test
