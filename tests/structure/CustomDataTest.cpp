#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <map>
#include <stdexcept>

#include "structure/XMLUniverse.h"
#include "tests/structure/Answers.h"
#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::ThrowsMessage;

std::string ItemsText(std::string const& items)
{
    return "<IUniverse><CustomData>" + items + "</CustomData></IUniverse>";
}

// A universe with custom data, read outside of any scene.
class CustomData : public testing::Test
{
protected:
    void Read(std::string const& items)
    {
        ParsedDocument const document(ItemsText(items));
        ASSERT_TRUE(m_universe.ReadFromXML(document.Root()));
    }

    std::string KeyAt(unsigned long long index) const
    {
        UTF8String key("unwritten");
        Variant value;
        m_universe.CustomDataAt(index, key, value);
        return Text(key);
    }

    // Of no kind when there is none.
    Variant ValueAt(unsigned long long index) const
    {
        UTF8String key;
        Variant value;
        bool const isSpecified = m_universe.CustomDataAt(index, key, value) == kIsValueSpecified_Yes;
        EXPECT_EQ(isSpecified, value.Kind() != Variant::kKind_None);
        return value;
    }

    std::string TextAt(unsigned long long index) const
    {
        Variant const value = ValueAt(index);
        return value.AStringValue() ? Text(*value.AStringValue()) : "no text";
    }

    XMLUniverse m_universe{UTF16String()};
};

}  // namespace

TEST_F(CustomData, AnItemOfType5HoldsItsText)
{
    Read("<CustomDataItem Type='5' Key='Supplier' Value='ACME &amp; S&#xF6;hne &#x1F600;'/>");
    ASSERT_EQ(m_universe.CustomDataCount(), 1u);
    EXPECT_EQ(KeyAt(0), "Supplier");
    EXPECT_EQ(ValueAt(0).Kind(), Variant::kKind_AString);
    EXPECT_EQ(TextAt(0), "ACME & S\u00F6hne \U0001F600");
}

TEST_F(CustomData, AMissingKeyOrValueIsEmpty)
{
    Read("<CustomDataItem Type='5'/>");
    ASSERT_EQ(m_universe.CustomDataCount(), 1u);
    EXPECT_EQ(KeyAt(0), "");
    EXPECT_EQ(TextAt(0), "");
}

TEST_F(CustomData, AnItemOfType9HoldsItsIdsInDocumentOrderWithRepeats)
{
    Read(
        "<CustomDataItem Type='9' Key='k'><ID Value='b'/><Id Value='x'/>ID<Other Value='x'/><ID Value='a'/>"
        "<ID Value='b'/><ID/></CustomDataItem>");
    Variant const value = ValueAt(0);
    ASSERT_NE(value.IdSetValue(), nullptr);
    EXPECT_THAT(Ids(*value.IdSetValue()), ElementsAre("b", "a", "b", ""));
}

TEST_F(CustomData, AnItemOfType9WithoutAnIDChildAddsAKeyWithoutAValue)
{
    Read("<CustomDataItem Type='9' Key='k'><Other Value='a'/></CustomDataItem><CustomDataItem Type='9' Key='l'/>");
    ASSERT_EQ(m_universe.CustomDataCount(), 2u);
    EXPECT_EQ(KeyAt(0), "k");
    EXPECT_EQ(ValueAt(0).Kind(), Variant::kKind_None);
    EXPECT_EQ(KeyAt(1), "l");
}

TEST_F(CustomData, AnItemWhoseTypeIsNoIntegerAddsNoKey)
{
    Read(
        "<CustomDataItem Type='abc' Key='a' Value='v'/><CustomDataItem Type='' Key='b' Value='v'/>"
        "<CustomDataItem Key='c' Value='v'/><CustomDataItem Type='5.0' Key='d' Value='v'/>"
        "<CustomDataItem Type='99999999999' Key='e' Value='v'/><CustomDataItem type='5' Key='f' Value='v'/>");
    EXPECT_EQ(m_universe.CustomDataCount(), 0u);
}

TEST_F(CustomData, AnItemOfAnUnknownTypeAddsAKeyWithoutAValue)
{
    int const types[] = {7, 0, -1, 4, 6, 10, 58, 1000};
    std::string items;
    for (int const type : types)
    {
        std::string const number = std::to_string(type);
        items += "<CustomDataItem Type='" + number + "' Key='" + number + "' Value='v'/>";
    }
    Read(items);
    ASSERT_EQ(m_universe.CustomDataCount(), std::size(types));
    for (std::size_t i = 0; i < std::size(types); ++i)
    {
        EXPECT_EQ(KeyAt(i), std::to_string(types[i]));
        EXPECT_EQ(ValueAt(i).Kind(), Variant::kKind_None);
    }
}

TEST_F(CustomData, TheTypeIsReadAsADecimalInteger)
{
    Read(
        "<CustomDataItem Type=' 5 ' Key='a' Value='1'/><CustomDataItem Type='05' Key='b' Value='2'/>"
        "<CustomDataItem Type='+5' Key='c' Value='3'/>");
    ASSERT_EQ(m_universe.CustomDataCount(), 3u);
    EXPECT_EQ(TextAt(0), "1");
    EXPECT_EQ(TextAt(1), "2");
    EXPECT_EQ(TextAt(2), "3");
}

TEST_F(CustomData, OfTwoItemsWithOneKeyBothAreListedWithTheFirstValue)
{
    Read("<CustomDataItem Type='5' Key='k' Value='first'/><CustomDataItem Type='5' Key='k' Value='second'/>");
    ASSERT_EQ(m_universe.CustomDataCount(), 2u);
    EXPECT_EQ(KeyAt(0), "k");
    EXPECT_EQ(KeyAt(1), "k");
    EXPECT_EQ(TextAt(0), "first");
    EXPECT_EQ(TextAt(1), "first");
}

TEST_F(CustomData, AKeyThatStandsFirstWithoutAValueAnswersALaterOnesInBothPlaces)
{
    Read("<CustomDataItem Type='7' Key='k'/><CustomDataItem Type='5' Key='k' Value='late'/>");
    EXPECT_EQ(TextAt(0), "late");
    EXPECT_EQ(TextAt(1), "late");
}

TEST_F(CustomData, KeysAreComparedExactly)
{
    Read(
        "<CustomDataItem Type='5' Key='k' Value='1'/><CustomDataItem Type='5' Key='K' Value='2'/>"
        "<CustomDataItem Type='5' Key='k ' Value='3'/>");
    EXPECT_EQ(TextAt(0), "1");
    EXPECT_EQ(TextAt(1), "2");
    EXPECT_EQ(TextAt(2), "3");
}

TEST_F(CustomData, ASecondCustomDataElementAppends)
{
    ParsedDocument const document(
        "<IUniverse><CustomData><CustomDataItem Type='5' Key='a' Value='1'/></CustomData>"
        "<CustomData><CustomDataItem Type='5' Key='b' Value='2'/><CustomDataItem Type='5' Key='a' Value='3'/>"
        "</CustomData></IUniverse>");
    ASSERT_TRUE(m_universe.ReadFromXML(document.Root()));
    ASSERT_EQ(m_universe.CustomDataCount(), 3u);
    EXPECT_EQ(TextAt(1), "2");
    EXPECT_EQ(TextAt(2), "1");
}

TEST_F(CustomData, AKeyWithoutAValueWritesTheKeyAndLeavesTheValue)
{
    Read("<CustomDataItem Type='7' Key='k'/>");
    UTF8String key("before");
    Variant value;
    value.SetAStringValue("before");
    EXPECT_EQ(m_universe.CustomDataAt(0, key, value), kIsValueSpecified_No);
    EXPECT_EQ(Text(key), "k");
    ASSERT_NE(value.AStringValue(), nullptr);
    EXPECT_EQ(Text(*value.AStringValue()), "before");
}

TEST_F(CustomData, AnIndexAtOrBeyondTheCountThrowsOutOfRangeAndWritesNothing)
{
    Read("<CustomDataItem Type='5' Key='k' Value='v'/>");
    for (unsigned long long const index : {m_universe.CustomDataCount(), 2ull, ~0ull})
    {
        UTF8String key("before");
        Variant value;
        EXPECT_THAT([&] { m_universe.CustomDataAt(index, key, value); },
                    ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"));
        EXPECT_EQ(Text(key), "before");
        EXPECT_EQ(value.Kind(), Variant::kKind_None);
    }
}

RC_GTEST_FIXTURE_PROP(CustomData, EveryItemIsListedAndTheFirstValueOfAKeyStays, ())
{
    struct Item
    {
        int type;
        int key;
        int value;
    };
    auto const items = *rc::gen::container<std::vector<Item>>(
        rc::gen::construct<Item>(rc::gen::element(5, 7, 9), rc::gen::inRange(0, 5), rc::gen::inRange(0, 1000)));
    std::string text;
    std::map<int, std::pair<int, std::string>> first;
    for (auto const& [type, key, number] : items)
    {
        std::string const value = std::to_string(number);
        text += "<CustomDataItem Type='" + std::to_string(type) + "' Key='" + std::to_string(key) + "' Value='" +
                value + "'><ID Value='" + value + "'/></CustomDataItem>";
        if (type != 7)
            first.try_emplace(key, type, value);
    }
    Read(text);
    RC_ASSERT(m_universe.CustomDataCount() == items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
    {
        RC_ASSERT(KeyAt(i) == std::to_string(items[i].key));
        Variant const value = ValueAt(i);
        auto const found = first.find(items[i].key);
        RC_ASSERT(value.Kind() == (found == first.end() ? 0 : found->second.first));
        if (value.AStringValue())
            RC_ASSERT(Text(*value.AStringValue()) == found->second.second);
        if (value.IdSetValue())
            RC_ASSERT(Ids(*value.IdSetValue()) == std::vector{found->second.second});
    }
}

}  // namespace KVR::Test
