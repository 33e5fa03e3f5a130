// DataIdToPersistentIdMap and SubEntityToStylesMap.

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "framework/api/DataIdToPersistentIdMap.h"
#include "framework/api/SubEntityToStylesMap.h"

namespace
{

using namespace KVR;

IdSet Ids(char const* id)
{
    IdSet set;
    set.AddWithUniquenessCheck(id);
    return set;
}

// "data=persistent" of each entry, in order; each is found by its data id as well.
std::string TextOf(DataIdToPersistentIdMap const& map)
{
    std::string text;
    for (unsigned long long i = 0; i < map.Size(); ++i)
    {
        UTF8String found;
        EXPECT_EQ(map.PersistentId(map.DataIdAt(i), found), kIsValueSpecified_Yes);
        EXPECT_EQ(found, map.PersistentIdAt(i));
        text += std::string(map.DataIdAt(i).View()) + "=" + std::string(map.PersistentIdAt(i).View()) + " ";
    }
    return text;
}

std::string TextOf(SubEntityToStylesMap const& map)
{
    std::string text;
    for (unsigned long long i = 0; i < map.Size(); ++i)
    {
        IdSet found;
        EXPECT_EQ(map.Styles(map.DataIdAt(i), found), kIsValueSpecified_Yes);
        EXPECT_EQ(found, map.StylesAt(i));
        text += std::string(map.DataIdAt(i).View()) + "=";
        text += (found.IsEmpty() ? std::string() : std::string(found[0].View())) + " ";
    }
    return text;
}

TEST(DataIdToPersistentIdMap, KeepsInsertionOrderAndAnswersByDataId)
{
    EditableDataIdToPersistentIdMap map;
    EXPECT_EQ(map.Size(), 0U);
    map.Add("face2", "p2");
    map.Add("face1", "p1");
    map.Add("", "");
    EXPECT_EQ(TextOf(map), "face2=p2 face1=p1 = ");
}

TEST(DataIdToPersistentIdMap, ARepeatedDataIdKeepsItsFirstValue)
{
    EditableDataIdToPersistentIdMap map;
    map.Add("a", "first");
    map.Add("b", "other");
    map.Add("a", "second");
    EXPECT_EQ(TextOf(map), "a=first b=other ");
}

TEST(DataIdToPersistentIdMap, LeavesTheOutputAloneForAnUnknownDataId)
{
    EditableDataIdToPersistentIdMap map;
    map.Add("a", "1");
    UTF8String found("before");
    EXPECT_EQ(map.PersistentId("b", found), kIsValueSpecified_No);
    EXPECT_EQ(found, UTF8String("before"));
}

TEST(DataIdToPersistentIdMap, AnIndexAtOrBeyondTheSizeIsOutOfRange)
{
    EditableDataIdToPersistentIdMap map;
    EXPECT_THROW(map.DataIdAt(0), std::out_of_range);
    map.Add("a", "1");
    EXPECT_THROW(map.DataIdAt(1), std::out_of_range);
    EXPECT_THROW(map.PersistentIdAt(1), std::out_of_range);
    EXPECT_THROW(map.PersistentIdAt(~0ULL), std::out_of_range);
}

TEST(DataIdToPersistentIdMap, ARemovedEntryIsGoneAndTheOthersAreStillFound)
{
    EditableDataIdToPersistentIdMap map;
    for (char const* const id : {"a", "b", "c", "d"})
        map.Add(id, id);
    map.Remove("b");
    map.Remove("unknown");
    EXPECT_EQ(TextOf(map), "a=a c=c d=d ");
    map.Add("b", "again");
    EXPECT_EQ(TextOf(map), "a=a c=c d=d b=again ");
    map.Clear();
    EXPECT_EQ(map.Size(), 0U);
    map.Add("c", "new");
    EXPECT_EQ(TextOf(map), "c=new ");
}

TEST(DataIdToPersistentIdMap, CopiesAreIndependent)
{
    auto map = std::make_unique<EditableDataIdToPersistentIdMap>();
    map->Add("a", "1");
    EditableDataIdToPersistentIdMap const copy(*map);
    EditableDataIdToPersistentIdMap assigned;
    assigned = *map;
    map->Clear();
    map.reset();
    assigned.Add("b", "2");
    EXPECT_EQ(TextOf(copy), "a=1 ");
    EXPECT_EQ(TextOf(assigned), "a=1 b=2 ");
}

TEST(SubEntityToStylesMap, KeepsTheOrderOfTheFirstSetting)
{
    SubEntityToStylesMap map;
    EXPECT_EQ(map.Size(), 0U);
    map.SetStyles("face2", Ids("red"));
    map.SetStyles("face1", Ids("blue"));
    EXPECT_EQ(TextOf(map), "face2=red face1=blue ");
}

TEST(SubEntityToStylesMap, ALaterSettingReplacesTheStylesInPlace)
{
    SubEntityToStylesMap map;
    map.SetStyles("a", Ids("red"));
    map.SetStyles("b", Ids("blue"));
    map.SetStyles("a", Ids("green"));
    EXPECT_EQ(TextOf(map), "a=green b=blue ");
    map.SetStyles("a", IdSet());
    EXPECT_EQ(TextOf(map), "a= b=blue ") << "an empty set counts";
}

TEST(SubEntityToStylesMap, LeavesTheOutputAloneForAnUnknownDataId)
{
    SubEntityToStylesMap const map;
    IdSet styles = Ids("before");
    EXPECT_EQ(map.Styles("a", styles), kIsValueSpecified_No);
    EXPECT_EQ(styles, Ids("before"));
}

TEST(SubEntityToStylesMap, AnIndexAtOrBeyondTheSizeIsOutOfRange)
{
    SubEntityToStylesMap map;
    EXPECT_THROW(map.DataIdAt(0), std::out_of_range);
    map.SetStyles("a", IdSet());
    EXPECT_THROW(map.DataIdAt(1), std::out_of_range);
    EXPECT_THROW(map.StylesAt(1), std::out_of_range);
}

TEST(SubEntityToStylesMap, ARemovedEntryIsGoneAndTheOthersAreStillFound)
{
    SubEntityToStylesMap map;
    for (char const* const id : {"a", "b", "c"})
        map.SetStyles(id, Ids(id));
    map.Remove("a");
    map.Remove("unknown");
    EXPECT_EQ(TextOf(map), "b=b c=c ");
    map.SetStyles("a", Ids("again"));
    EXPECT_EQ(TextOf(map), "b=b c=c a=again ");
    SubEntityToStylesMap const copy(map);
    map.Clear();
    EXPECT_EQ(map.Size(), 0U);
    EXPECT_EQ(TextOf(copy), "b=b c=c a=again ");
}

}  // namespace
