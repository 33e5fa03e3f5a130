#include "framework/gmk_interface/GMKHistoryUtil.h"

#include <gtest/gtest.h>

#include <Geom_Line.hxx>
#include <TopoDS_Shape.hxx>
#include <gp_Dir.hxx>
#include <gp_Pnt.hxx>
#include <memory>
#include <thread>
#include <vector>

#include "framework/gmk_interface/GMKGlobalDataSaveRestore.h"
#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/history_stream.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

// A stream made by the operations under test.
class GMKHistoryUtilOf : public testing::Test
{
protected:
    GMKHistoryUtilOf() { GMKHistoryUtil::CreateHistoryStream(m_stream); }
    ~GMKHistoryUtilOf() override
    {
        GMKHistoryUtil::DeleteHistoryStream(m_stream);
        gki_global_data() = GLOBAL_DATA();
    }

    ENTITY* NewBody()
    {
        auto* const body = new BODY(BoxShape(1, 1, 1));
        m_stream->Add(body);
        return body;
    }
    curve* NewCurve()
    {
        ActiveStreamScope const active(m_stream);
        return curve::Make(new Geom_Line(gp_Pnt(), gp_Dir(1, 0, 0)), 0, 1);
    }

    HISTORY_STREAM* m_stream = nullptr;
};

using GMKHistoryUtilTest = GMKHistoryUtilOf;

TEST_F(GMKHistoryUtilTest, AStreamIsOneUntilItIsDeleted)
{
    HISTORY_STREAM* stream = nullptr;
    GMKHistoryUtil::CreateHistoryStream(stream);
    ASSERT_NE(stream, nullptr);
    EXPECT_NE(stream, m_stream);
    EXPECT_TRUE(gki_is_history_stream(stream));
    GMKHistoryUtil::DeleteHistoryStream(stream);
    EXPECT_FALSE(gki_is_history_stream(stream));
    GMKHistoryUtil::DeleteHistoryStream(nullptr);
}

TEST_F(GMKHistoryUtilTest, TheActiveStreamIsTheCallingThreads)
{
    EXPECT_EQ(GMKHistoryUtil::ActiveHistoryStream(), nullptr);
    GMKHistoryUtil::SetActiveHistoryStream(m_stream);
    EXPECT_EQ(GMKHistoryUtil::ActiveHistoryStream(), m_stream);
    HISTORY_STREAM* ofOther = m_stream;
    std::thread([&] { ofOther = GMKHistoryUtil::ActiveHistoryStream(); }).join();
    EXPECT_EQ(ofOther, nullptr);
    GMKHistoryUtil::SetActiveHistoryStream(nullptr);
    EXPECT_EQ(GMKHistoryUtil::ActiveHistoryStream(), nullptr);
}

TEST_F(GMKHistoryUtilTest, ADeletedStreamIsActiveNoMore)
{
    HISTORY_STREAM* stream = nullptr;
    GMKHistoryUtil::CreateHistoryStream(stream);
    GMKHistoryUtil::SetActiveHistoryStream(stream);
    GMKHistoryUtil::DeleteHistoryStream(stream);
    EXPECT_EQ(GMKHistoryUtil::ActiveHistoryStream(), nullptr);
}

TEST_F(GMKHistoryUtilTest, ASeparateStreamTakesTheEntitiesAndBelongsToTheFirst)
{
    std::vector<ENTITY*> const bodies = {NewBody(), NewBody(), NewBody()};
    ENTITY* const separated[] = {bodies[2], nullptr, bodies[0]};
    GMKHistoryUtil::CreateSeparateHistoryStream(3, separated);
    HISTORY_STREAM* const separate = bodies[0]->Stream();
    ASSERT_NE(separate, nullptr);
    EXPECT_NE(separate, m_stream);
    EXPECT_EQ(bodies[2]->Stream(), separate);
    EXPECT_EQ(bodies[1]->Stream(), m_stream);
    EXPECT_EQ(separate->EntityCount(), 2U);
    EXPECT_EQ(m_stream->EntityCount(), 3U) << "with what was split off";
    EXPECT_EQ(m_stream->StreamCount(), 1U);
    GMKHistoryUtil::Clear(m_stream);
    EXPECT_FALSE(gki_is_history_stream(separate)) << "it ended with the one it was split off from";
}

TEST_F(GMKHistoryUtilTest, WithoutEntitiesOfAStreamNoneIsMade)
{
    GMKHistoryUtil::CreateSeparateHistoryStream(0, nullptr);
    auto const free = std::make_unique<BODY>(BoxShape(1, 1, 1));
    ENTITY* const entities[] = {nullptr, free.get()};
    GMKHistoryUtil::CreateSeparateHistoryStream(2, entities);
    EXPECT_EQ(free->Stream(), nullptr) << "it stays its maker's";
    EXPECT_EQ(m_stream->StreamCount(), 0U);
}

TEST_F(GMKHistoryUtilTest, ClearFreesWhatIsInAStreamAndInThoseSplitOff)
{
    ENTITY* const separated = NewBody();
    NewBody();
    ASSERT_NE(NewCurve(), nullptr);
    GMKHistoryUtil::CreateSeparateHistoryStream(1, &separated);
    EXPECT_EQ(m_stream->EntityCount(), 2U);
    EXPECT_EQ(m_stream->CurveCount(), 1U);
    GMKHistoryUtil::Clear(m_stream);
    EXPECT_EQ(m_stream->EntityCount(), 0U);
    EXPECT_EQ(m_stream->CurveCount(), 0U);
    EXPECT_EQ(m_stream->StreamCount(), 0U);
    EXPECT_TRUE(gki_is_history_stream(m_stream)) << "the stream itself stays";
    GMKHistoryUtil::Clear(nullptr);
}

TEST_F(GMKHistoryUtilTest, ADestroyedCurveIsNotCountedAndStaysUntilTheStreamIsCleared)
{
    curve* const made = NewCurve();
    GMK::curve_xs(made).destroy();
    EXPECT_TRUE(made->IsDestroyed());
    EXPECT_EQ(m_stream->CurveCount(), 0U);
    GMK::curve_xs(made).destroy();
    GMK::curve_xs(nullptr).destroy();
    EXPECT_TRUE(made->IsDestroyed());
}

using GMKGlobalDataSaveRestoreTest = GMKHistoryUtilOf;

TEST_F(GMKGlobalDataSaveRestoreTest, PutsStreamAndTolerancesBack)
{
    GMKHistoryUtil::SetActiveHistoryStream(m_stream);
    gki_global_data().resabs = 0.5;
    gki_global_data().resnor = 0.25;
    HISTORY_STREAM other;
    {
        GMKGlobalDataSaveRestore const guard;
        EXPECT_EQ(GMKHistoryUtil::ActiveHistoryStream(), m_stream) << "the guard itself changes nothing";
        GMKHistoryUtil::SetActiveHistoryStream(&other);
        gki_global_data().resabs = 1.0;
        gki_global_data().resnor = 2.0;
    }
    EXPECT_EQ(GMKHistoryUtil::ActiveHistoryStream(), m_stream);
    EXPECT_EQ(gki_global_data().resabs, 0.5);
    EXPECT_EQ(gki_global_data().resnor, 0.25);
}

TEST_F(GMKGlobalDataSaveRestoreTest, GuardsNest)
{
    {
        GMKGlobalDataSaveRestore const outer;
        GMKHistoryUtil::SetActiveHistoryStream(m_stream);
        {
            GMKGlobalDataSaveRestore const inner;
            GMKHistoryUtil::SetActiveHistoryStream(nullptr);
        }
        EXPECT_EQ(GMKHistoryUtil::ActiveHistoryStream(), m_stream);
    }
    EXPECT_EQ(GMKHistoryUtil::ActiveHistoryStream(), nullptr);
}

TEST_F(GMKGlobalDataSaveRestoreTest, AStreamThatEndedMeanwhileIsNotPutBack)
{
    auto stream = std::make_unique<HISTORY_STREAM>();
    GMKHistoryUtil::SetActiveHistoryStream(stream.get());
    gki_global_data().resabs = 0.5;
    {
        GMKGlobalDataSaveRestore const guard;
        stream.reset();
        gki_global_data().resabs = 1.0;
    }
    EXPECT_EQ(GMKHistoryUtil::ActiveHistoryStream(), nullptr);
    EXPECT_EQ(gki_global_data().resabs, 0.5) << "all else is";
}

}  // namespace

}  // namespace KVR::Test
