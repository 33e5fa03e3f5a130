#include "framework/gmk_interface/DetachableGMKBrep.h"

#include <gtest/gtest.h>

#include <memory>

#include "framework/kernel/history_stream.h"
#include "tests/framework/gmk_interface/PlainBrep.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

TEST(DetachableGMKBrep, GivesItsBodyAwayOnceOutOfItsStream)
{
    HISTORY_STREAM stream;
    auto* const body = new BODY(BoxShape(1, 2, 3));
    stream.Add(body);
    std::unique_ptr<BODY> detached;
    {
        PlainBrep brep(body);
        EXPECT_FALSE(brep.IsBodyDetached());
        detached.reset(brep.DetachBody());
        EXPECT_EQ(detached.get(), body);
        EXPECT_TRUE(brep.IsBodyDetached());
        EXPECT_EQ(brep.Body(), nullptr);
        EXPECT_EQ(brep.BrepType_ex(), IBrep::kBrepType_Unknown);
        EXPECT_EQ(brep.DetachBody(), nullptr);
        EXPECT_EQ(brep.DetachGMKBody(), nullptr);
        EXPECT_TRUE(brep.IsBodyDetached()) << "it stays so";
    }
    EXPECT_EQ(body->Stream(), nullptr);
    EXPECT_EQ(stream.EntityCount(), 0U);
    stream.Clear();
    EXPECT_EQ(FactsOf(detached->Shape()).faces, 6) << "it outlives object and stream";
}

TEST(DetachableGMKBrep, BothOperationsDetach)
{
    PlainBrep brep(new BODY(BoxShape(1, 2, 3)));
    std::unique_ptr<BODY> const detached(brep.DetachGMKBody());
    EXPECT_NE(detached, nullptr);
    EXPECT_TRUE(brep.IsBodyDetached());
    EXPECT_EQ(brep.Body(), nullptr);
}

TEST(DetachableGMKBrep, WithoutABodyNothingIsDetached)
{
    PlainBrep brep;
    EXPECT_EQ(brep.DetachBody(), nullptr);
    EXPECT_FALSE(brep.IsBodyDetached());
}

}  // namespace

}  // namespace KVR::Test
