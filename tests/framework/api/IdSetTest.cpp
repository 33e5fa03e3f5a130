#include "framework/api/IdSet.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "framework/api/OccurrencePathCollection.h"

namespace
{

using namespace KVR;

static_assert(sizeof(IdSet) == sizeof(void*));
static_assert(std::is_nothrow_default_constructible_v<IdSet>);
static_assert(std::is_nothrow_move_constructible_v<IdSet>);
static_assert(std::is_nothrow_move_assignable_v<IdSet>);

UTF8String Id(std::size_t number)
{
    return UTF8String("id" + std::to_string(number));
}

IdSet Ids(std::initializer_list<char const*> ids)
{
    IdSet set;
    for (char const* const id : ids)
        set.AddWithoutUniquenessCheck(id);
    return set;
}

IdSet Numbered(std::size_t count)
{
    IdSet set;
    for (std::size_t i = 0; i < count; ++i)
        set.AddWithUniquenessCheck(Id(i));
    return set;
}

template <class Call>
void ExpectInvalidSubscript(Call call)
{
    try
    {
        call();
        FAIL() << "no exception";
    }
    catch (std::out_of_range const& error)
    {
        EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
    }
}

TEST(IdSet, IsEmptyUntilFilled)
{
    IdSet const set;
    EXPECT_TRUE(set.IsEmpty());
    EXPECT_EQ(set.Size(), 0U);
    EXPECT_FALSE(set.Contains("a"));
    EXPECT_EQ(set, IdSet());
}

TEST(IdSet, KeepsInsertionOrder)
{
    IdSet set;
    for (char const* const id : {"c", "a", "b", "", "\xFF"})
        set.AddWithUniquenessCheck(UTF8String(id));
    ASSERT_EQ(set.Size(), 5U);
    EXPECT_EQ(set.At(0), UTF8String("c"));
    EXPECT_EQ(set[1], UTF8String("a"));
    EXPECT_EQ(set[2], UTF8String("b"));
    EXPECT_EQ(set[3], UTF8String(""));
    EXPECT_EQ(set[4], UTF8String("\xFF"));
}

TEST(IdSet, ASecondAddOfAnEqualIdChangesNothing)
{
    IdSet set;
    UTF8String const id("a");
    set.AddWithUniquenessCheck(id);
    set.AddWithUniquenessCheck(id);
    set.AddWithUniquenessCheck(UTF8String("a"));
    EXPECT_EQ(set, Ids({"a"}));
    set.AddWithUniquenessCheck(set.At(0));
    EXPECT_EQ(set.Size(), 1U);
}

TEST(IdSet, AddWithoutCheckKeepsRepeats)
{
    IdSet set;
    UTF8String const id("a");
    set.AddWithoutUniquenessCheck(id);
    set.AddWithoutUniquenessCheck(UTF8String("a"));
    EXPECT_EQ(set, Ids({"a", "a"}));
    EXPECT_FALSE(set == Ids({"a"}));
}

TEST(IdSet, AddsIdsOfItsOwn)
{
    IdSet set = Ids({"a"});
    for (int i = 0; i < 100; ++i)
        set.AddWithoutUniquenessCheck(set.At(set.Size() - 1));
    ASSERT_EQ(set.Size(), 101U);
    for (unsigned long long i = 0; i < set.Size(); ++i)
        EXPECT_EQ(set[i], UTF8String("a"));
}

TEST(IdSet, AddedIdsAreMovedIn)
{
    UTF8String unchecked(std::string(1000, 'u'));
    char const* const uncheckedStorage = unchecked.Value();
    UTF8String checked(std::string(1000, 'c'));
    char const* const checkedStorage = checked.Value();
    IdSet set;
    set.AddWithoutUniquenessCheck(std::move(unchecked));
    set.AddWithUniquenessCheck(std::move(checked));
    EXPECT_EQ(set[0].Value(), uncheckedStorage);
    EXPECT_EQ(set[1].Value(), checkedStorage);
}

TEST(IdSet, UniquenessHoldsAtEveryLengthAroundTheOneWhereTheIndexIsMade)
{
    for (std::size_t count = 0; count < 70; ++count)
    {
        IdSet set = Numbered(count);
        ASSERT_EQ(set.Size(), count);
        for (std::size_t i = 0; i < count; ++i)
        {
            set.AddWithUniquenessCheck(Id(i));
            ASSERT_TRUE(set.Contains(Id(i)));
        }
        ASSERT_EQ(set.Size(), count);
        ASSERT_FALSE(set.Contains(Id(count)));
        set.AddWithUniquenessCheck(Id(count));
        ASSERT_EQ(set.Size(), count + 1);
        for (std::size_t i = 0; i <= count; ++i)
            ASSERT_EQ(set[i], Id(i));
    }
}

TEST(IdSet, UniquenessKnowsWhatCameWithoutACheck)
{
    // The two kinds of add take turns, before and behind the length at which the index is made.
    IdSet set;
    for (std::size_t i = 0; i < 1000; ++i)
    {
        set.AddWithoutUniquenessCheck(Id(i));
        if (i % 3 == 0)
            set.AddWithoutUniquenessCheck(Id(i));
        auto const size = set.Size();
        set.AddWithUniquenessCheck(Id(i));
        set.AddWithUniquenessCheck(Id(i / 2));
        ASSERT_EQ(set.Size(), size);
    }
    EXPECT_EQ(set.Size(), 1334U);
}

TEST(IdSet, AMillionUniqueAddsTakeLinearTime)
{
    // Searching the list each time would take hours and run into the time limit.
    constexpr std::size_t kCount = 1000000;
    IdSet set = Numbered(kCount);
    for (std::size_t i = 0; i < kCount; ++i)
        set.AddWithUniquenessCheck(Id(i));
    ASSERT_EQ(set.Size(), kCount);
    for (std::size_t i = 0; i < kCount; i += 997)
        ASSERT_EQ(set[i], Id(i));
    EXPECT_FALSE(set.Contains(Id(kCount)));
}

TEST(IdSet, AMillionRepeatsInFrontOfAUniqueAddTakeLinearTime)
{
    IdSet set;
    for (int i = 0; i < 1000000; ++i)
        set.AddWithoutUniquenessCheck("same");
    set.AddWithUniquenessCheck("same");
    EXPECT_EQ(set.Size(), 1000000U);
    set.AddWithUniquenessCheck("other");
    EXPECT_EQ(set.Size(), 1000001U);
}

TEST(IdSet, ACopyIsIndependent)
{
    for (std::size_t const count : {1U, 5U, 16U, 17U, 500U})
    {
        IdSet const original = Numbered(count);
        IdSet copy(original);
        EXPECT_EQ(copy, original);
        copy.AddWithUniquenessCheck(Id(0));
        EXPECT_EQ(copy.Size(), count);
        copy.AddWithUniquenessCheck("new");
        EXPECT_EQ(copy.Size(), count + 1);
        EXPECT_EQ(original.Size(), count);
        EXPECT_FALSE(original.Contains("new"));
    }
}

TEST(IdSet, CopyAssignmentReplacesWhatWasThere)
{
    IdSet set = Numbered(100);
    set = Ids({"x", "y"});
    EXPECT_EQ(set, Ids({"x", "y"}));
    set.AddWithUniquenessCheck(Id(3));
    EXPECT_EQ(set.Size(), 3U);
    IdSet const empty;
    set = empty;
    EXPECT_TRUE(set.IsEmpty());
}

TEST(IdSet, AssignmentToItselfChangesNothing)
{
    IdSet set = Numbered(40);
    IdSet& same = set;
    set = same;
    EXPECT_EQ(set, Numbered(40));
    set = std::move(same);
    EXPECT_EQ(set, Numbered(40));
}

TEST(IdSet, AMovedFromSetIsEmptyAndUsable)
{
    IdSet from = Numbered(40);
    UTF8String const* const first = &from.At(0);
    IdSet to(std::move(from));
    EXPECT_EQ(&to.At(0), first);
    EXPECT_TRUE(from.IsEmpty());  // NOLINT(bugprone-use-after-move): the state after a move is what is tested.
    from.AddWithUniquenessCheck("again");
    EXPECT_EQ(from, Ids({"again"}));
    from = std::move(to);
    EXPECT_EQ(from, Numbered(40));
}

TEST(IdSet, AnIndexAtOrBeyondTheSizeIsOutOfRange)
{
    IdSet const empty;
    ExpectInvalidSubscript([&] { static_cast<void>(empty.At(0)); });
    ExpectInvalidSubscript([&] { static_cast<void>(empty[0]); });
    IdSet const set = Ids({"a", "b"});
    ExpectInvalidSubscript([&] { static_cast<void>(set.At(2)); });
    ExpectInvalidSubscript([&] { static_cast<void>(set[2]); });
    ExpectInvalidSubscript([&] { static_cast<void>(set.At(~0ULL)); });
}

TEST(IdSet, EqualityIsEqualIdsInEqualOrder)
{
    EXPECT_EQ(Ids({"a", "b"}), Ids({"a", "b"}));
    EXPECT_FALSE(Ids({"a", "b"}) == Ids({"b", "a"}));
    EXPECT_FALSE(Ids({"a"}) == Ids({"a", "b"}));
    EXPECT_FALSE(Ids({"a"}) == Ids({"b"}));
    EXPECT_FALSE(Ids({}) == Ids({""}));
    // A set that found nothing to add owns storage and is empty all the same.
    IdSet touched = Ids({"a"});
    touched = IdSet();
    EXPECT_EQ(touched, IdSet());
}

TEST(IdSet, ManyIdsAddedTogetherAreThoseAddedOneByOne)
{
    // Lists that stay short, that grow long on the way, and that were long before; repeats within and across.
    for (std::size_t const before : {0, 3, 100})
    {
        for (std::size_t const count : {0, 1, 10, 17, 1000})
        {
            IdSet together;
            IdSet oneByOne;
            for (std::size_t i = 0; i < before; ++i)
            {
                together.AddWithoutUniquenessCheck(Id(i));
                oneByOne.AddWithoutUniquenessCheck(Id(i));
            }
            std::vector<UTF8String> added;
            for (std::size_t i = 0; i < count; ++i)
                added.push_back(Id(i % 700 * 2));
            for (UTF8String const& id : added)
                oneByOne.AddWithUniquenessCheck(id);
            together.Reserve(before + count);
            together.AddAllWithUniquenessCheck(added);
            EXPECT_EQ(together, oneByOne) << before << ' ' << count;
            EXPECT_TRUE(added.empty());
            together.AddWithUniquenessCheck(Id(0));
            oneByOne.AddWithUniquenessCheck(Id(0));
            EXPECT_EQ(together, oneByOne) << before << ' ' << count;
        }
    }
}

TEST(IdSet, EqualSetsHashEqually)
{
    EXPECT_EQ(Ids({"a", "b"}).Hash(), Ids({"a", "b"}).Hash());
    EXPECT_EQ(IdSet().Hash(), Ids({}).Hash());
    EXPECT_NE(Ids({"a", "b"}).Hash(), Ids({"b", "a"}).Hash());
}

TEST(OccurrencePathCollection, KeepsPathsInOrderWithRepeats)
{
    OccurrencePathCollection paths;
    EXPECT_TRUE(paths.IsEmpty());
    paths.AddPath(Ids({"i1", "i2"}));
    paths.AddPath(Ids({"i1"}));
    paths.AddPath(Ids({"i1", "i2"}));
    paths.AddPath(IdSet());
    ASSERT_EQ(paths.Size(), 4U);
    EXPECT_EQ(paths.At(0), Ids({"i1", "i2"}));
    EXPECT_EQ(paths.At(1), Ids({"i1"}));
    EXPECT_EQ(paths.At(2), Ids({"i1", "i2"}));
    EXPECT_EQ(paths.At(3), IdSet());
    ExpectInvalidSubscript([&] { static_cast<void>(paths.At(4)); });
}

TEST(OccurrencePathCollection, CopiesAreIndependent)
{
    OccurrencePathCollection paths;
    paths.AddPath(Ids({"i1"}));
    OccurrencePathCollection copy;
    copy = paths;
    copy.AddPath(Ids({"i2"}));
    EXPECT_EQ(copy.Size(), 2U);
    EXPECT_EQ(paths.Size(), 1U);
}

}  // namespace
