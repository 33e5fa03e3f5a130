#include "framework/xml_util/PropertyStream.h"

#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "framework/api/IProperty.h"
#include "framework/api/PropertyDatabase.h"
#include "framework/xml_util/PropertyReader.h"
#include "tests/framework/xml_util/AllocationMeter.h"
#include "tests/support/TempFolder.h"

namespace
{

using namespace KVR;
using Test::TempFolder;

constexpr std::ptrdiff_t kMiB = 1024 * 1024;

// Notes what it is given: the id of the property, or "none", and of the object.
class Notes final : public PropertyReceiver
{
public:
    void Receive(IProperty* property, UTF8String const& objectId) override
    {
        texts.push_back((property ? std::string(property->Id().View()) : "none") + " of " +
                        std::string(objectId.View()));
    }
    std::vector<std::string> texts;
};

// Keeps what it is given, as a scene does.
class Keeper final : public PropertyReceiver
{
public:
    void Receive(IProperty* property, UTF8String const&) override { database.AddProperty(property); }
    PropertyDatabase database;
};

class Dropper final : public PropertyReceiver
{
public:
    void Receive(IProperty* property, UTF8String const&) override { count += property ? 1 : 0; }
    unsigned long long count = 0;
};

TEST(StreamProperties, GivesEachElementInOrderAndItsObject)
{
    TempFolder const folder;
    folder.Write("s.kvrproperty",
                 R"(<P><Property ID="a" ObjectID="m"/><Other/><Property ID="b"/><Property ObjectID="m"/>
        <Property ID="c" ObjectID="m"/><Property ID="d" ObjectID="n" Type="kInt" Value="x"/><Property ID="" ObjectID=""/>
        <Deep><Property ID="e" ObjectID="m"/></Deep></P>)");
    Notes notes;
    StreamProperties(folder.PathOf("s.xml"), notes);
    EXPECT_EQ(notes.texts, (std::vector<std::string>{"a of m", "none of ", "none of ", "c of m", "none of ", " of "}));
}

TEST(StreamProperties, NamesWithAPrefixAreOtherNames)
{
    TempFolder const folder;
    folder.Write("s.kvrproperty", R"(<P xmlns:x="u"><x:Property ID="a" ObjectID="m"/><Property x:ID="b" ObjectID="m"/>
        <Property ID="c" x:ObjectID="m"/><Property ID="d" ObjectID="m" x:Value="v" xmlns:y="u" y:Type="kInt"/></P>)");
    Notes notes;
    StreamProperties(folder.PathOf("s.xml"), notes);
    EXPECT_EQ(notes.texts, (std::vector<std::string>{"none of ", "none of ", "d of m"}));
}

TEST(StreamProperties, AMissingFileGivesNothing)
{
    TempFolder const folder;
    Notes notes;
    StreamProperties(folder.PathOf("s.xml"), notes);
    EXPECT_TRUE(notes.texts.empty());
}

TEST(StreamProperties, WhatStoodBeforeABadByteCounts)
{
    TempFolder const folder;
    std::string const good = R"(<P><Property ID="a" ObjectID="m"/><Property ID="b" ObjectID="m"/>)";
    for (std::string const& bad : {std::string("<Property ID=\"\xFF\" ObjectID=\"m\"/>"), std::string("\x01"),
                                   std::string("<Property ID=\"c\" ObjectID=\"m\""), std::string("\xC3")})
    {
        folder.Write("s.kvrproperty", good + bad);
        Notes notes;
        StreamProperties(folder.PathOf("s.xml"), notes);
        EXPECT_EQ(notes.texts, (std::vector<std::string>{"a of m", "b of m"})) << bad;
    }
}

TEST(StreamProperties, TextBeyondAsciiIsReadWhereverItStands)
{
    TempFolder const folder;
    std::string xml = "<P>";
    std::vector<std::string> expected;
    // Far more than one portion of the file, with plain stretches of every length between the others.
    for (int i = 0; i < 2000; ++i)
    {
        std::string const id =
            i % 7 == 0 ? "Räder" + std::to_string(i) : std::string(static_cast<std::size_t>(i % 97), 'x');
        xml += "<Property ID=\"" + id + "\" ObjectID=\"o" + (i % 11 == 0 ? "\xF0\x9F\x98\x80" : "") + "\"/>";
        expected.push_back(id + " of o" + (i % 11 == 0 ? "\xF0\x9F\x98\x80" : ""));
    }
    folder.Write("s.kvrproperty", xml + "</P>");
    Notes notes;
    StreamProperties(folder.PathOf("s.xml"), notes);
    EXPECT_EQ(notes.texts, expected);
}

TEST(StreamProperties, ReadsWiderEncodings)
{
    TempFolder const folder;
    std::u16string const text =
        u"\uFEFF<P><Property ID=\"a\" ObjectID=\"R\u00E4der\"/><Property ID=\"b\" ObjectID=\"m\"/></P>";
    std::string bytes;
    for (char16_t const unit : text)
    {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    folder.Write("s.kvrproperty", bytes);
    Notes notes;
    StreamProperties(folder.PathOf("s.xml"), notes);
    EXPECT_EQ(notes.texts, (std::vector<std::string>{"a of R\xC3\xA4"
                                                     "der",
                                                     "b of m"}));
}

TEST(StreamProperties, WhatTheReceiverThrowsGoesOnAndNothingLeaks)
{
    class Thrower final : public PropertyReceiver
    {
    public:
        void Receive(IProperty*, UTF8String const&) override { throw std::length_error("full"); }
    } thrower;
    TempFolder const folder;
    folder.Write("s.kvrproperty", R"(<P><Property ID="a" ObjectID="m"/></P>)");
    EXPECT_THROW(StreamProperties(folder.PathOf("s.xml"), thrower), std::length_error);
}

TEST(StreamProperties, APropertyThatNobodyRetainsEndsWithTheCall)
{
    class Taker final : public PropertyReceiver
    {
    public:
        void Receive(IProperty* property, UTF8String const&) override
        {
            if (property->Id() == UTF8String("b"))
            {
                property->Retain();
                taken = property;
            }
        }
        IProperty* taken = nullptr;
    } taker;
    TempFolder const folder;
    folder.Write("s.kvrproperty",
                 R"(<P><Property ID="a" ObjectID="m"/><Property ID="b" ObjectID="m" Value="kept"/></P>)");
    StreamProperties(folder.PathOf("s.xml"), taker);
    ASSERT_NE(taker.taken, nullptr);
    UTF16String value;
    EXPECT_EQ(taker.taken->Value(value), kIsValueSpecified_Yes);
    EXPECT_EQ(value, UTF16String(L"kept"));
    taker.taken->Release();
}

// A file of a million properties.
class MillionProperties : public testing::Test
{
protected:
    static constexpr unsigned long long kCount = 1'000'000;

    MillionProperties()
    {
        std::ofstream file(m_folder.NarrowPathOf("s.kvrproperty"), std::ios::binary);
        file << "<P>";
        for (unsigned long long i = 0; i < kCount; ++i)
            file << "<Property ID=\"p" << i << "\" ObjectID=\"o" << i / 100
                 << "\" Name=\"n\" Value=\"a value of some length\"/>\n";
        file << "</P>";
    }

    TempFolder m_folder;
};

TEST_F(MillionProperties, ThatNobodyKeepsTakeNoMemoryToSpeakOf)
{
    AllocationMeter const meter;
    Dropper dropper;
    StreamProperties(m_folder.PathOf("s.xml"), dropper);
    EXPECT_EQ(dropper.count, kCount);
    EXPECT_LT(meter.Peak(), 16 * kMiB);
}

TEST_F(MillionProperties, ThatAreKeptTakeLittleBeyondThemselves)
{
    AllocationMeter const meter;
    Keeper keeper;
    StreamProperties(m_folder.PathOf("s.xml"), keeper);
    EXPECT_LT(meter.Peak() - meter.Live(), 16 * kMiB);
    IProperty const* property = nullptr;
    ASSERT_EQ(keeper.database.PropertyAt("p999999", property), kIsValueSpecified_Yes);
    EXPECT_EQ(property->Id(), UTF8String("p999999"));
}

}  // namespace
