#include "framework/xml_util/SideFilePath.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "framework/api/UTF8String.h"

namespace
{

using namespace KVR;

UTF16String Text(char const* text)
{
    return UTF16String(UTF8String(text));
}
std::string Narrow(UTF16String const& text)
{
    return UTF8String(text).Value();
}
std::string Resolve(char const* scene, char const* path)
{
    return Narrow(ResolveSideFilePath(Text(scene), Text(path)));
}
std::string WithExtension(char const* path)
{
    return Narrow(ReplaceExtension(Text(path), Text(".kvrproperty")));
}

TEST(SideFilePath, IsAppendedToTheFolderOfTheScene)
{
    EXPECT_EQ(Resolve("/a/b/scene.xml", "side.bin"), "/a/b/side.bin");
    EXPECT_EQ(Resolve("/a/b/scene.xml", "c/side.bin"), "/a/b/c/side.bin");
    EXPECT_EQ(Resolve("a/scene.xml", "side.bin"), "a/side.bin");
    EXPECT_EQ(Resolve("/scene.xml", "side.bin"), "/side.bin");
}

TEST(SideFilePath, IsAppendedEvenWhenItIsAbsolute)
{
    EXPECT_EQ(Resolve("/a/b/scene.xml", "/x"), "/a/b/x");
    EXPECT_EQ(Resolve("/a/b/scene.xml", "/x/y.bin"), "/a/b/x/y.bin");
    EXPECT_EQ(Resolve("scene.xml", "/x"), "/x");
}

TEST(SideFilePath, IsTheFolderOfTheSceneWhenItIsEmpty)
{
    EXPECT_EQ(Resolve("/a/b/scene.xml", ""), "/a/b");
    EXPECT_EQ(Resolve("scene.xml", ""), "");
}

TEST(SideFilePath, LetsTwoPointsPass)
{
    EXPECT_EQ(Resolve("/a/b/scene.xml", "../side.bin"), "/a/b/../side.bin");
    EXPECT_EQ(Resolve("/a/../b/scene.xml", "./side.bin"), "/a/../b/./side.bin");
    EXPECT_EQ(Resolve("/a/scene.xml", "../../../side.bin"), "/a/../../../side.bin");
}

TEST(SideFilePath, StandsAloneBesideASceneWithoutAFolder)
{
    EXPECT_EQ(Resolve("scene.xml", "side.bin"), "side.bin");
    EXPECT_EQ(Resolve("scene.xml", "../side.bin"), "../side.bin");
    EXPECT_EQ(Resolve("", "side.bin"), "side.bin");
}

TEST(SideFilePath, KeepsBlanksAndOtherScripts)
{
    EXPECT_EQ(Resolve("/my models/scene.xml", " a b.bin "), "/my models/ a b.bin ");
    EXPECT_EQ(Resolve("/Räder 😀/scene.xml", "日本.bin"), "/Räder 😀/日本.bin");
}

TEST(PathFromSceneFolder, LetsAnAbsolutePathStandAndAnEmptyOneStayEmpty)
{
    UTF16String const scene = Text("/a/b/scene.xml");
    EXPECT_EQ(Narrow(PathFromSceneFolder(scene, Text("/x/y.bin"))), "/x/y.bin");
    EXPECT_EQ(Narrow(PathFromSceneFolder(scene, Text("y.bin"))), "/a/b/y.bin");
    EXPECT_EQ(Narrow(PathFromSceneFolder(scene, Text("../y.bin"))), "/a/b/../y.bin");
    EXPECT_EQ(Narrow(PathFromSceneFolder(scene, Text(""))), "");
}

TEST(ReplacedExtension, StandsBehindTheLastPointOfTheName)
{
    EXPECT_EQ(WithExtension("scene.xml"), "scene.kvrproperty");
    EXPECT_EQ(WithExtension("/a/b/scene.xml"), "/a/b/scene.kvrproperty");
    EXPECT_EQ(WithExtension("scene.v2.xml"), "scene.v2.kvrproperty");
    EXPECT_EQ(WithExtension("scene."), "scene.kvrproperty");
    EXPECT_EQ(WithExtension("Räder 日本 😀.xml"), "Räder 日本 😀.kvrproperty");
}

TEST(ReplacedExtension, IsAppendedToANameWithoutOne)
{
    EXPECT_EQ(WithExtension("scene"), "scene.kvrproperty");
    EXPECT_EQ(WithExtension("/a.b/scene"), "/a.b/scene.kvrproperty");
}

TEST(AbsolutePath, StartsFromTheCurrentFolder)
{
    std::string const current = std::filesystem::current_path();
    EXPECT_EQ(Narrow(AbsolutePath(Text("a/Räder b.xml"))), current + "/a/Räder b.xml");
    EXPECT_EQ(Narrow(AbsolutePath(Text("/a/../b.xml"))), "/a/../b.xml");
}

}  // namespace
