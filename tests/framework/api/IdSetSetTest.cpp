#include "framework/api/IdSetSet.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <utility>

namespace
{

using namespace KVR;

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

TEST(IdSetSet, KeepsDifferentSetsInInsertionOrder)
{
    IdSetSet sets;
    EXPECT_TRUE(sets.IsEmpty());
    sets.AddWithUniquenessCheck(Ids({"b"}));
    sets.AddWithUniquenessCheck(Ids({"a", "b"}));
    sets.AddWithUniquenessCheck(Ids({"b", "a"}));
    sets.AddWithUniquenessCheck(Ids({}));
    ASSERT_EQ(sets.Size(), 4U);
    EXPECT_FALSE(sets.IsEmpty());
    EXPECT_EQ(sets.At(0), Ids({"b"}));
    EXPECT_EQ(sets[1], Ids({"a", "b"}));
    EXPECT_EQ(sets[2], Ids({"b", "a"}));
    EXPECT_EQ(sets[3], IdSet());
}

TEST(IdSetSet, ASecondAddOfAnEqualSetChangesNothing)
{
    IdSetSet sets;
    for (int i = 0; i < 3; ++i)
    {
        sets.AddWithUniquenessCheck(Ids({"a", "b"}));
        sets.AddWithUniquenessCheck(IdSet());
    }
    EXPECT_EQ(sets.Size(), 2U);
    sets.AddWithUniquenessCheck(sets.At(0));
    EXPECT_EQ(sets.Size(), 2U);
}

TEST(IdSetSet, HoldsManySetsInLinearTime)
{
    IdSetSet sets;
    for (int round = 0; round < 2; ++round)
    {
        for (std::size_t i = 0; i < 300000; ++i)
        {
            IdSet set;
            set.AddWithoutUniquenessCheck(Id(i));
            sets.AddWithUniquenessCheck(set);
        }
    }
    EXPECT_EQ(sets.Size(), 300000U);
}

TEST(IdSetSet, CopiesAreIndependent)
{
    IdSetSet sets;
    sets.AddWithUniquenessCheck(Ids({"a"}));
    IdSetSet copy;
    copy = sets;
    copy.AddWithUniquenessCheck(Ids({"a"}));
    copy.AddWithUniquenessCheck(Ids({"b"}));
    EXPECT_EQ(copy.Size(), 2U);
    EXPECT_EQ(sets.Size(), 1U);
}

IdSetSet NumberedSets(std::size_t count)
{
    IdSetSet sets;
    for (std::size_t i = 0; i < count; ++i)
    {
        IdSet set;
        set.AddWithoutUniquenessCheck(Id(i));
        sets.AddWithUniquenessCheck(set);
    }
    return sets;
}

TEST(IdSetSet, WhatWasMovedFromIsEmptyAndKnowsWhatIsAddedToIt)
{
    constexpr std::size_t kMany = 100;
    IdSetSet const many = NumberedSets(kMany);
    IdSetSet sets = many;
    IdSetSet* const from = &sets;
    IdSetSet to(std::move(sets));
    EXPECT_EQ(to.Size(), kMany);
    for (int moves = 0; moves < 2; ++moves)
    {
        EXPECT_TRUE(from->IsEmpty());
        for (int round = 0; round < 2; ++round)
        {
            for (std::size_t i = 0; i < kMany; ++i)
                from->AddWithUniquenessCheck(many.At(i));
        }
        EXPECT_EQ(from->Size(), kMany) << "each once, by construction and by assignment";
        to = std::move(*from);
        EXPECT_EQ(to.Size(), kMany);
        to.AddWithUniquenessCheck(many.At(kMany - 1));
        EXPECT_EQ(to.Size(), kMany);
    }
}

TEST(IdSetSet, AssignmentToItselfChangesNothing)
{
    IdSetSet sets = NumberedSets(100);
    IdSetSet& same = sets;
    sets = std::move(same);
    EXPECT_EQ(sets.Size(), 100U);
    sets.AddWithUniquenessCheck(NumberedSets(1).At(0));
    EXPECT_EQ(sets.Size(), 100U);
}

TEST(IdSetSet, AnIndexAtOrBeyondTheSizeIsOutOfRange)
{
    IdSetSet sets;
    ExpectInvalidSubscript([&] { static_cast<void>(sets.At(0)); });
    sets.AddWithUniquenessCheck(Ids({"a"}));
    ExpectInvalidSubscript([&] { static_cast<void>(sets.At(1)); });
    ExpectInvalidSubscript([&] { static_cast<void>(sets[~0ULL]); });
}

}  // namespace
