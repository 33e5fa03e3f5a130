#include "framework/gmk_interface/GMKUtil.h"

#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <string>

#include "framework/kernel/entity.h"
#include "tests/support/Shapes.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

std::string DxidOf(ENTITY& entity)
{
    return Text(GMKUtil::EntityDxid(&entity));
}

TEST(GMKUtil, TheDataIdOfAnEntityIsTheOneGivenLast)
{
    BODY body(BoxShape(1, 2, 3));
    EXPECT_EQ(DxidOf(body), "");
    body.AddDataId("first");
    EXPECT_EQ(DxidOf(body), "first");
    body.AddDataId("last");
    EXPECT_EQ(DxidOf(body), "last");
    body.AddDataId("");
    EXPECT_EQ(DxidOf(body), "") << "also when that is empty";
}

TEST(GMKUtil, EdgesAndFacesHaveDataIdsOfTheirOwnAndNullHasNone)
{
    BODY body(BoxShape(1, 2, 3));
    body.AddDataId("body");
    body.AddFaceDataId(2, "face");
    body.AddEdgeDataId(3, "edge");
    EXPECT_EQ(DxidOf(*body.FaceList()[2]), "face");
    EXPECT_EQ(DxidOf(*body.FaceList()[0]), "");
    EXPECT_EQ(DxidOf(*body.EdgeList()[3]), "edge");
    EXPECT_TRUE(GMKUtil::EntityDxid(nullptr).IsEmpty());
}

TEST(GMKUtil, OpensRegularFilesToBeReadAndNothingElse)
{
    TempFolder const folder;
    folder.Write("s.sab", "bytes");
    folder.MakeFolder("folder");
    folder.MakeFifo("fifo");
    std::FILE* const file = GMKUtil::OpenGmkFile(folder.NarrowPathOf("s.sab").c_str(), "rb");
    ASSERT_NE(file, nullptr);
    char read[6] = {};
    EXPECT_EQ(std::fread(read, 1, 5, file), 5U);
    EXPECT_STREQ(read, "bytes");
    GMKUtil::CloseGmkFile(file);
    for (char const* const name : {"none", "folder", "fifo"})
        EXPECT_EQ(GMKUtil::OpenGmkFile(folder.NarrowPathOf(name).c_str(), "rb"), nullptr) << name;
    GMKUtil::CloseGmkFile(nullptr);
}

}  // namespace

}  // namespace KVR::Test
