#include "authoring/KernelStoreWriter.h"

#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <filesystem>

#include "framework/api/Exception.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/gmk_array.h"
#include "tests/support/Shapes.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using namespace Authoring;

UTF16String PathIn(std::string const& folder, char const* name)
{
    return UTF16String(UTF8String(folder + "/" + name));
}

TEST(KernelStoreWriter, WhatIsWrittenIsServedInBothForms)
{
    for (bool const isText : {false, true})
    {
        char const* const name = isText ? "s.sat" : "s.sab";
        TestScene scene("<Scene><SatInfo Path='" + std::string(name) +
                        "'/><IBrep ID='box'/><ICurve ID='c'><GMKEntity EntityId='arc'/></ICurve></Scene>");
        KernelStoreWriter writer(PathIn(scene.Folder(), name),
                                 isText ? KernelStoreForm::kText : KernelStoreForm::kBinary);
        writer.Body(UTF8String("box"), BoxShape(1, 2, 3), {{0, UTF8String("f0")}}, {{11, UTF8String("e11")}});
        writer.Edge(UTF8String("arc"), ArcEdge());
        writer.Finish();
        BODY const* const body = scene.Begin().Get<IBrep>("box").Body();
        ASSERT_TRUE(body);
        EXPECT_EQ(body->FaceList()[0]->DataIds(), std::vector<std::string>{"f0"});
        EXPECT_EQ(body->EdgeList()[11]->DataIds(), std::vector<std::string>{"e11"});
        EXPECT_EQ(scene.Get<ICurve>("c").KernelCurves().count(), 1);
    }
}

TEST(KernelStoreWriter, WhatDoesNotFitIsRefused)
{
    TempFolder folder;
    KernelStoreWriter writer(PathIn(folder.Path(), "s.sab"), KernelStoreForm::kBinary);
    EXPECT_THROW(writer.Body(UTF8String("b"), TopoDS_Shape()), GeneralException);
    EXPECT_THROW(writer.Edge(UTF8String("e"), BoxShape(1, 1, 1)), GeneralException);
    EXPECT_THROW(writer.Edge(UTF8String("e"), TopoDS_Shape()), GeneralException);
}

TEST(KernelStoreWriter, AFileAppearsWholeOrNotAtAll)
{
    TempFolder folder;
    {
        KernelStoreWriter unfinished(PathIn(folder.Path(), "s.sab"), KernelStoreForm::kBinary);
        unfinished.Body(UTF8String("b"), BoxShape(1, 1, 1));
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
    EXPECT_THROW(KernelStoreWriter(PathIn(folder.Path(), "none/s.sab"), KernelStoreForm::kBinary), FileException);
}

}  // namespace

}  // namespace KVR::Test
