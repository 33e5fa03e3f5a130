#include "framework/xml_util/PropertyReader.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <ctime>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "framework/api/IProperty.h"
#include "framework/api/PropertyDatabase.h"
#include "framework/xml_util/XMLPlatform.h"
#include "tests/framework/xml_util/AllocationMeter.h"
#include "tests/framework/xml_util/CommaLocale.h"
#include "tests/support/TempFolder.h"

namespace
{

using namespace KVR;
using Test::TempFolder;

class PropertyFile : public testing::Test
{
protected:
    // A reader of the property file with that text.
    std::unique_ptr<PropertyReader> Read(std::string_view xml)
    {
        m_folder.Write("scene.kvrproperty", xml);
        return std::make_unique<PropertyReader>(m_folder.PathOf("scene.xml"));
    }
    // The same, the text being what stands in the root element.
    std::unique_ptr<PropertyReader> ReadElements(std::string const& xml)
    {
        return Read("<Properties>" + xml + "</Properties>");
    }

    // The property at the index; null when the reader answers none, which must leave the outputs alone.
    static IProperty* At(PropertyReader const& reader, unsigned long long index)
    {
        IProperty* property = nullptr;
        UTF8String objectId("former");
        if (reader.PropertyAndObjectIdAt(index, property, objectId))
            return property;
        EXPECT_EQ(property, nullptr);
        EXPECT_EQ(objectId, UTF8String("former"));
        return nullptr;
    }
    static std::string ObjectIdAt(PropertyReader const& reader, unsigned long long index)
    {
        IProperty* property = nullptr;
        UTF8String objectId;
        EXPECT_TRUE(reader.PropertyAndObjectIdAt(index, property, objectId));
        return objectId.Value();
    }

    TempFolder m_folder;
};

template <class Value>
std::optional<Value> ValueOf(IProperty const* property)
{
    Value value{};
    if (!property || property->Value(value) != kIsValueSpecified_Yes)
        return {};
    return value;
}

std::string TextOf(IProperty const* property)
{
    auto const value = ValueOf<UTF16String>(property);
    return value ? UTF8String(*value).Value() : "no text";
}

TEST_F(PropertyFile, GivesIdNameTypeValueAndObject)
{
    auto const reader =
        ReadElements(R"(<Property ID="p1" ObjectID="mesh1" Name="Supplier" Type="kString" Value="ACME"/>)");
    ASSERT_EQ(reader->PropertyCount(), 1U);
    IProperty const* const property = At(*reader, 0);
    ASSERT_NE(property, nullptr);
    EXPECT_EQ(property->Id(), UTF8String("p1"));
    EXPECT_EQ(property->Name(), UTF16String(L"Supplier"));
    EXPECT_EQ(property->Type(), kPropertyType_String);
    EXPECT_EQ(TextOf(property), "ACME");
    EXPECT_EQ(ObjectIdAt(*reader, 0), "mesh1");
}

TEST_F(PropertyFile, GivesAValueOfEachType)
{
    auto const reader = ReadElements(R"(
        <Property ID="a" ObjectID="o" Type="kString" Value="Räder 😀"/>
        <Property ID="b" ObjectID="o" Type="kInt" Value=" -17 "/>
        <Property ID="c" ObjectID="o" Type="kDouble" Value="1.5e3"/>
        <Property ID="d" ObjectID="o" Type="kBool" Value="True"/>
        <Property ID="e" ObjectID="o" Type="kTime" Value="2024-03-01T12:30:05"/>)");
    ASSERT_EQ(reader->PropertyCount(), 5U);
    constexpr PropertyTypeEnum kTypes[] = {kPropertyType_String, kPropertyType_Int, kPropertyType_Double,
                                           kPropertyType_Bool, kPropertyType_Time};
    for (unsigned i = 0; i < 5; ++i)
    {
        ASSERT_NE(At(*reader, i), nullptr);
        EXPECT_EQ(At(*reader, i)->Type(), kTypes[i]);
    }
    EXPECT_EQ(TextOf(At(*reader, 0)), "Räder 😀");
    EXPECT_EQ(ValueOf<int>(At(*reader, 1)), -17);
    EXPECT_EQ(ValueOf<double>(At(*reader, 2)), 1500.0);
    EXPECT_EQ(ValueOf<bool>(At(*reader, 3)), true);
    auto const time = ValueOf<struct tm>(At(*reader, 4));
    ASSERT_TRUE(time);
    EXPECT_EQ(time->tm_year, 124);
    EXPECT_EQ(time->tm_mon, 2);
    EXPECT_EQ(time->tm_mday, 1);
    EXPECT_EQ(time->tm_hour, 12);
    EXPECT_EQ(time->tm_min, 30);
    EXPECT_EQ(time->tm_sec, 5);
    EXPECT_EQ(time->tm_wday, 5);
    EXPECT_EQ(time->tm_yday, 60);
}

TEST_F(PropertyFile, GivesAValueInItsOwnTypeAlone)
{
    constexpr char const* kRows[] = {R"(Type="kString" Value="1")", R"(Type="kInt" Value="1")",
                                     R"(Type="kDouble" Value="1")", R"(Type="kBool" Value="True")",
                                     R"(Type="kTime" Value="2024-03-01")"};
    for (int type = 0; type < 5; ++type)
    {
        auto const reader = ReadElements("<Property ID='a' ObjectID='o' " + std::string(kRows[type]) + "/>");
        IProperty const* const property = At(*reader, 0);
        ASSERT_NE(property, nullptr);
        EXPECT_EQ(ValueOf<UTF16String>(property).has_value(), type == 0);
        EXPECT_EQ(ValueOf<int>(property).has_value(), type == 1);
        EXPECT_EQ(ValueOf<double>(property).has_value(), type == 2);
        EXPECT_EQ(ValueOf<bool>(property).has_value(), type == 3);
        EXPECT_EQ(ValueOf<struct tm>(property).has_value(), type == 4);
    }
}

TEST_F(PropertyFile, TakesAnAbsentOrUnknownTypeForAString)
{
    for (char const* const type : {"", "Type=''", "Type='kint'", "Type='Int'", "Type='int'", "Type=' kInt'",
                                   "Type='kFloat'", "Type='1'", "type='kInt'"})
    {
        auto const reader = ReadElements("<Property ID='a' ObjectID='o' Value=' 1 ' " + std::string(type) + "/>");
        ASSERT_NE(At(*reader, 0), nullptr) << type;
        EXPECT_EQ(At(*reader, 0)->Type(), kPropertyType_String) << type;
        EXPECT_EQ(TextOf(At(*reader, 0)), " 1 ") << type;
    }
}

TEST_F(PropertyFile, TakesExactlyTrueForAFlagThatIsSet)
{
    for (char const* const text : {"true", "TRUE", "1", "", " True", "True ", "False", "yes"})
    {
        auto const reader =
            ReadElements("<Property ID='a' ObjectID='o' Type='kBool' Value='" + std::string(text) + "'/>");
        EXPECT_EQ(ValueOf<bool>(At(*reader, 0)), false) << text;
    }
    EXPECT_EQ(ValueOf<bool>(At(*ReadElements("<Property ID='a' ObjectID='o' Type='kBool'/>"), 0)), false);
}

TEST_F(PropertyFile, CountsButDoesNotAnswerAValueThatDoesNotConvert)
{
    constexpr char const* kRows[] = {
        "Type='kInt' Value='one'",
        "Type='kInt' Value=''",
        "Type='kInt'",
        "Type='kInt' Value='1.0'",
        "Type='kInt' Value='2147483648'",
        "Type='kInt' Value='1 2'",
        "Type='kInt' Value='0x10'",
        "Type='kInt' Value='１'",
        "Type='kDouble' Value='one'",
        "Type='kDouble' Value=''",
        "Type='kDouble'",
        "Type='kDouble' Value='1,5'",
        "Type='kDouble' Value='inf'",
        "Type='kDouble' Value='1e400'",
        "Type='kTime' Value=''",
        "Type='kTime'",
        "Type='kTime' Value='yesterday'",
        "Type='kTime' Value='2024-02-30'",
        "Type='kTime' Value='2024-13-01'",
        "Type='kTime' Value='2024-03-01T24:00:00'",
    };
    for (char const* const row : kRows)
    {
        auto const reader = ReadElements("<Property ID='a' ObjectID='o' " + std::string(row) +
                                         "/><Property ID='b' ObjectID='o' Value='behind'/>");
        EXPECT_EQ(reader->PropertyCount(), 2U) << row;
        EXPECT_EQ(At(*reader, 0), nullptr) << row;
        EXPECT_EQ(TextOf(At(*reader, 1)), "behind") << row;
    }
}

TEST_F(PropertyFile, CountsButDoesNotAnswerAnElementWithoutItsIds)
{
    auto const reader = ReadElements(R"(
        <Property ObjectID="o" Value="v"/>
        <Property ID="a" Value="v"/>
        <Property/>
        <Property id="a" objectid="o"/>
        <Property ID="a" ObjectID="o" Value="v"/>)");
    ASSERT_EQ(reader->PropertyCount(), 5U);
    for (unsigned i = 0; i < 4; ++i)
        EXPECT_EQ(At(*reader, i), nullptr) << i;
    EXPECT_NE(At(*reader, 4), nullptr);
}

TEST_F(PropertyFile, TakesIdsThatAreEmptyAndAnAbsentNameAndText)
{
    auto const reader = ReadElements("<Property ID='' ObjectID=''/>");
    IProperty const* const property = At(*reader, 0);
    ASSERT_NE(property, nullptr);
    EXPECT_TRUE(property->Id().IsEmpty());
    EXPECT_TRUE(property->Name().IsEmpty());
    EXPECT_EQ(TextOf(property), "");
    EXPECT_EQ(ObjectIdAt(*reader, 0), "");
}

TEST_F(PropertyFile, KeepsFileOrderAndRepeatedIds)
{
    auto const reader = ReadElements(R"(
        <Property ID="b" ObjectID="o2" Value="1"/>
        <Property ID="a" ObjectID="o1" Value="2"/>
        <Property ID="b" ObjectID="o1" Value="3"/>)");
    ASSERT_EQ(reader->PropertyCount(), 3U);
    EXPECT_EQ(TextOf(At(*reader, 0)), "1");
    EXPECT_EQ(TextOf(At(*reader, 1)), "2");
    EXPECT_EQ(TextOf(At(*reader, 2)), "3");
    EXPECT_EQ(ObjectIdAt(*reader, 0), "o2");
    EXPECT_EQ(ObjectIdAt(*reader, 2), "o1");
}

TEST_F(PropertyFile, CountsTheRootsOwnPropertyElementsAlone)
{
    auto const reader = Read(R"(<Property ID="root" ObjectID="o"><!--<Property ID="x" ObjectID="o"/>-->
        <?Property ID="x" ObjectID="o"?><Group><Property ID="deep" ObjectID="o"/></Group>
        <property ID="case" ObjectID="o"/><Properties/>text<![CDATA[<Property ID="x" ObjectID="o"/>]]>
        <Property ID="own" ObjectID="o"><Property ID="inner" ObjectID="o"/></Property>
        <Property ID="last" ObjectID="o"/></Property>)");
    ASSERT_EQ(reader->PropertyCount(), 2U);
    EXPECT_EQ(At(*reader, 0)->Id(), UTF8String("own"));
    EXPECT_EQ(At(*reader, 1)->Id(), UTF8String("last"));
}

TEST_F(PropertyFile, MayHaveAnyNameForItsRoot)
{
    EXPECT_EQ(Read("<x:Whatever xmlns:x='urn:x'><Property ID='a' ObjectID='o'/></x:Whatever>")->PropertyCount(), 1U);
}

TEST_F(PropertyFile, AnswersNothingAtOrBeyondTheCount)
{
    auto const reader = ReadElements("<Property ID='a' ObjectID='o'/>");
    EXPECT_NE(At(*reader, 0), nullptr);
    EXPECT_EQ(At(*reader, 1), nullptr);
    EXPECT_EQ(At(*reader, std::numeric_limits<unsigned long long>::max()), nullptr);
}

TEST_F(PropertyFile, ThatIsMissingIsAnEmptyOne)
{
    PropertyReader const reader(m_folder.PathOf("scene.xml"));
    EXPECT_EQ(reader.PropertyCount(), 0U);
    EXPECT_EQ(At(reader, 0), nullptr);
}

TEST_F(PropertyFile, IsFoundBesideAnyScene)
{
    m_folder.Write("my models/Räder 😀.v2.kvrproperty", "<P><Property ID='a' ObjectID='o'/></P>");
    EXPECT_EQ(PropertyReader(m_folder.PathOf("my models/Räder 😀.v2.xml")).PropertyCount(), 1U);
    EXPECT_EQ(PropertyReader(m_folder.PathOf("my models/Räder 😀.v2.kvrproperty")).PropertyCount(), 1U);
    EXPECT_EQ(PropertyReader(m_folder.PathOf("my models/Räder 😀.xml")).PropertyCount(), 0U);
    EXPECT_EQ(PropertyReader(UTF16String()).PropertyCount(), 0U);
}

using PropertyFileUnderACommaLocale = UnderACommaLocale;

TEST_F(PropertyFileUnderACommaLocale, IsReadAsEver)
{
    TempFolder const folder;
    folder.Write("scene.kvrproperty",
                 "<P><Property ID='a' ObjectID='o' Type='kDouble' Value='1.5'/>"
                 "<Property ID='b' ObjectID='o' Type='kDouble' Value='1,5'/></P>");
    PropertyReader const reader(folder.PathOf("scene.xml"));
    IProperty* property = nullptr;
    UTF8String objectId;
    ASSERT_TRUE(reader.PropertyAndObjectIdAt(0, property, objectId));
    EXPECT_EQ(ValueOf<double>(property), 1.5);
    EXPECT_FALSE(reader.PropertyAndObjectIdAt(1, property, objectId));
}

TEST_F(PropertyFile, FreesWithItsReaderThePropertiesThatNobodyTook)
{
    XMLPlatformScope const platform;
    std::string elements;
    for (int i = 0; i < 100; ++i)
        elements += "<Property ID='property that nobody took' ObjectID='o' Value='a value that takes memory'/>";
    m_folder.Write("scene.kvrproperty", "<P>" + elements + "</P>");
    UTF16String const scene = m_folder.PathOf("scene.xml");
    AllocationMeter const meter;
    auto reader = std::make_unique<PropertyReader>(scene);
    std::ptrdiff_t const held = meter.Live();
    reader.reset();
    std::ptrdiff_t const left = meter.Live();
    EXPECT_GT(held, 100 * 100);
    EXPECT_EQ(left, 0);
}

TEST_F(PropertyFile, LeavesToADatabaseThePropertiesThatItTook)
{
    XMLPlatformScope const platform;
    auto reader = ReadElements(R"(
        <Property ID="kept" ObjectID="o" Name="n" Value="v"/><Property ID="dropped" ObjectID="o" Value="w"/>)");
    auto database = std::make_unique<PropertyDatabase>();
    database->AddProperty(At(*reader, 0));
    reader.reset();
    IProperty const* kept = nullptr;
    ASSERT_EQ(database->PropertyAt("kept", kept), kIsValueSpecified_Yes);
    EXPECT_EQ(TextOf(kept), "v");
    EXPECT_EQ(kept->Name(), UTF16String(L"n"));
    IProperty const* dropped = nullptr;
    EXPECT_EQ(database->PropertyAt("dropped", dropped), kIsValueSpecified_No);
}

TEST_F(PropertyFile, SharesItsPropertiesWithADatabaseThatEndsFirst)
{
    auto const reader = ReadElements("<Property ID='a' ObjectID='o' Value='v'/>");
    {
        PropertyDatabase database;
        database.AddProperty(At(*reader, 0));
    }
    EXPECT_EQ(TextOf(At(*reader, 0)), "v");
}

TEST_F(PropertyFile, LeavesAPropertyToWhoeverRetainedIt)
{
    auto reader = ReadElements("<Property ID='a' ObjectID='o' Value='v'/>");
    IProperty const* const property = At(*reader, 0);
    property->Retain();
    reader.reset();
    EXPECT_EQ(TextOf(property), "v");
    property->Release();
}

TEST_F(PropertyFile, IsStreamedAndNotHeld)
{
    constexpr unsigned kCount = 200000;
    std::string xml = "<Properties>";
    for (unsigned i = 0; i < kCount; ++i)
        xml += "<Property ID=\"property-" + std::to_string(i) + "\" ObjectID=\"mesh-" + std::to_string(i % 1000) +
               "\" Name=\"Mass\" Type=\"kDouble\" Value=\"" + std::to_string(i) + ".5\"/>\n";
    xml += "</Properties>";
    m_folder.Write("scene.kvrproperty", xml);
    UTF16String const scene = m_folder.PathOf("scene.xml");

    AllocationMeter const meter;
    PropertyReader const reader(scene);
    std::ptrdiff_t const beyond = meter.Peak() - meter.Live();
    std::ptrdiff_t const perProperty = meter.Live() / kCount;
    ASSERT_EQ(reader.PropertyCount(), kCount);
    EXPECT_EQ(ValueOf<double>(At(reader, 123456)), 123456.5);
    EXPECT_EQ(ObjectIdAt(reader, 123456), "mesh-456");
    EXPECT_LT(beyond, 16 * 1024 * 1024);
    EXPECT_LT(perProperty, 400);
}

TEST_F(PropertyFile, TakesLittleMemoryForElementsThatMakeNoProperty)
{
    std::string xml = "<Properties>";
    for (int i = 0; i < 200000; ++i)
        xml += "<Group Name=\"n\"><Property ID=\"a\" ObjectID=\"o\" Value=\"v\"/>text</Group>";
    xml += "</Properties>";
    m_folder.Write("scene.kvrproperty", xml);
    UTF16String const scene = m_folder.PathOf("scene.xml");
    AllocationMeter const meter;
    PropertyReader const reader(scene);
    EXPECT_EQ(reader.PropertyCount(), 0U);
    // Xerces itself remembers four bytes for each attribute.
    EXPECT_LT(static_cast<std::size_t>(meter.Peak()), xml.size() / 2);
}

}  // namespace
