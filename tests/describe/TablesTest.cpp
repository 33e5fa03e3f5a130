// The tables themselves, and what asking by them answers.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "describe/AskEverything.h"
#include "describe/SilentAnswers.h"
#include "tests/support/FullScene.h"
#include "tests/support/TestScene.h"
#include "tests/support/TextAnswers.h"

namespace KVR::Test
{

namespace
{

using testing::HasSubstr;
using testing::Not;

template <class Use>
void ForEachRow(Interface const& table, Use const& use)
{
    for (Row const& row : table.rows)
    {
        if (row.base)
            ForEachRow(*row.base, use);
        else
            use(row);
    }
}

// A part whose answers throw.
class ThrowingPart final : public IPart
{
public:
    UTF8String Id() const override { return "p"; }
    UTF16String Label() const override { throw std::runtime_error("no label"); }
    IsValueSpecifiedEnum ChangeKey(SnapshotVersionEnum, UTF8String&) const override { throw 7; }
    IsValueSpecifiedEnum VersionPersistentId(UTF8String&) const override { return kIsValueSpecified_No; }
    KVR::FileProperties* FileProperties() const override { return nullptr; }
    IdSet Styles() const override { return {}; }
    bool IsSingleUnderRoot() const override { return true; }
    unsigned long long ChildCount() const override { return 1; }
    PartChildId ChildAt(unsigned long long index) const override
    {
        if (index == 0)
            throw std::logic_error("no child");
        throw std::out_of_range("index");
    }
    IdSet StyleSet() const override { return {}; }
    IdSet TextureSet() const override { return {}; }
    IdSet LayerSet() const override { return {}; }
    IdSet GroupSet() const override { return {}; }
    IdSet LodSet() const override { return {}; }
    IdSet CameraSet() const override { return {}; }
    IdSet ViewSet() const override { return {}; }
};

}  // namespace

TEST(Tables, HaveEachNameOnceWithATypeAndAnAsker)
{
    for (Interface const* const table : kObjectTables)
    {
        std::set<std::string_view> names;
        ForEachRow(*table,
                   [&](Row const& row)
                   {
                       EXPECT_TRUE(names.insert(row.name).second) << table->name << ' ' << row.name;
                       EXPECT_FALSE(row.name.empty()) << table->name;
                       EXPECT_NE(row.type, nullptr) << row.name;
                       EXPECT_NE(row.tell, nullptr) << row.name;
                   });
        EXPECT_EQ(table->form, Interface::Form::Named) << table->name;
        EXPECT_TRUE(IsA(*table, TableOf<IObject>::kTable)) << table->name;
    }
}

TEST(Tables, ALongListNamesTheMemberThatCountsIt)
{
    int longOnes = 0;
    for (Interface const* const table : {&TableOf<IPolygonMesh>::kTable, &TableOf<IPointCloud>::kTable,
                                         &TableOf<IPolyLineData>::kTable, &TableOf<ITextureVertexSet>::kTable})
    {
        std::set<std::string_view> names;
        ForEachRow(*table, [&](Row const& row) { names.insert(row.name); });
        ForEachRow(*table,
                   [&](Row const& row)
                   {
                       longOnes += row.isLong;
                       EXPECT_EQ(row.isLong, !row.countName.empty()) << row.name;
                       EXPECT_TRUE(row.countName.empty() || names.contains(row.countName)) << row.name;
                   });
    }
    EXPECT_EQ(longOnes, 11);
}

TEST(Tables, BasesAreKnown)
{
    EXPECT_TRUE(IsA(TableOf<IWorkPlane>::kTable, TableOf<IGeometry>::kTable));
    EXPECT_TRUE(IsA(TableOf<IAssembly>::kTable, TableOf<IUnit>::kTable));
    EXPECT_FALSE(IsA(TableOf<IAssembly>::kTable, TableOf<IGeometry>::kTable));
}

TEST(Tables, AnObjectIsDescribedByItsMostSpecialInterface)
{
    TestScene scene(FullScene());
    WriteSideFiles(scene);
    scene.Begin();
    EXPECT_EQ(DescribedObject::Of(scene.Get<IObject>("i1")).interface, &TableOf<IInstance>::kTable);
    EXPECT_EQ(DescribedObject::Of(scene.Get<IObject>("s1")).interface, &TableOf<IVitreolRenderStyle>::kTable);
    EXPECT_EQ(DescribedObject::Of(scene.Get<IObject>("s2")).interface, &TableOf<IRenderStyle>::kTable);
}

TEST(Asking, WhatAGetterThrowsIsNull)
{
    ThrowingPart part;
    TextAnswers text;
    TellObject(TableOf<IPart>::kTable, static_cast<IPart const*>(&part), Telling{.to = text});
    std::string const answers = text.Take();
    EXPECT_THAT(answers, HasSubstr("Id: 'p'"));
    EXPECT_THAT(answers, HasSubstr("Label: null"));
    EXPECT_THAT(answers, HasSubstr("ChangeKey: null"));
    EXPECT_THAT(answers, HasSubstr("Children: [null ]"));
    EXPECT_THAT(answers, Not(HasSubstr("beyond")));
}

TEST(Asking, ForEverythingLetsExceptionsOutThatAreNoRefusedIndex)
{
    ThrowingPart part;
    SilentAnswers silent;
    Telling const telling{.to = silent, .everything = true};
    Row const& children = TableOf<IPart>::kTable.rows.back();
    ASSERT_EQ(children.name, "Children");
    EXPECT_THROW(children.tell(static_cast<IPart const*>(&part), telling), std::logic_error);
    EXPECT_NO_THROW(children.tellBeyond(static_cast<IPart const*>(&part), telling));
}

TEST(Asking, ForEverythingAsksForItemsThatAListDoesNotHave)
{
    TestScene scene(FullScene());
    WriteSideFiles(scene);
    scene.Begin();
    TextAnswers text;
    std::size_t objects = 0;
    AskEverything(scene.Producer(), {}, {}, text,
                  [&](UTF8String const&, IObject* object, Interface const*) { objects += object ? 1 : 0; });
    std::string const answers = text.Take();
    EXPECT_EQ(objects, 10U);
    EXPECT_THAT(answers, HasSubstr("Children beyond: ["));
    EXPECT_THAT(answers, HasSubstr("RefFiles beyond: ["));
    EXPECT_THAT(answers, HasSubstr("ExtensionDataChangeKey: "));
}

}  // namespace KVR::Test
