#include "authoring/SubObjectPersistentIdWriter.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "framework/api/Exception.h"
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

TEST(SubObjectPersistentIdWriter, WhatIsWrittenIsServed)
{
    TestScene scene(
        "<Scene><SubObjectPersistentIdInfo GenerateSubObjectPersistentId='True' Path='ids.xml'/><IBrep ID='&lt;b&gt;'/>"
        "<IBrep ID='c'/></Scene>");
    SubObjectPersistentIdWriter writer(PathIn(scene.Folder(), "ids.xml"));
    EditableDataIdToPersistentIdMap ids;
    ids.Add("face \"1\"", "a<b>&c");
    ids.Add("\xC3\xA9", "line\nend\ttab");
    writer.Object("<b>", ids);
    writer.Object("c", EditableDataIdToPersistentIdMap());
    writer.Finish();
    DataIdToPersistentIdMap const& served = *scene.Begin().Get<IBrep>("<b>").PersistentIDsMap();
    ASSERT_EQ(served.Size(), 2U);
    EXPECT_EQ(Text(served.DataIdAt(0)), "face \"1\"");
    EXPECT_EQ(Text(served.PersistentIdAt(0)), "a<b>&c");
    EXPECT_EQ(Text(served.DataIdAt(1)), "\xC3\xA9");
    EXPECT_EQ(Text(served.PersistentIdAt(1)), "line\nend\ttab");
    EXPECT_EQ(scene.Get<IBrep>("c").PersistentIDsMap()->Size(), 0U);
}

TEST(SubObjectPersistentIdWriter, TextsThatXmlCannotHoldAreRefused)
{
    TempFolder folder;
    SubObjectPersistentIdWriter writer(PathIn(folder.Path(), "ids.xml"));
    EditableDataIdToPersistentIdMap ids;
    ids.Add("f", "\x01");
    EXPECT_THROW(writer.Object("b", ids), GeneralException);
    EXPECT_THROW(writer.Object("\xFF", EditableDataIdToPersistentIdMap()), GeneralException);
}

TEST(SubObjectPersistentIdWriter, AFileAppearsWholeOrNotAtAll)
{
    TempFolder folder;
    {
        SubObjectPersistentIdWriter unfinished(PathIn(folder.Path(), "ids.xml"));
        unfinished.Object("b", EditableDataIdToPersistentIdMap());
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
    EXPECT_THROW(SubObjectPersistentIdWriter(PathIn(folder.Path(), "none/ids.xml")), FileException);
}

}  // namespace

}  // namespace KVR::Test
