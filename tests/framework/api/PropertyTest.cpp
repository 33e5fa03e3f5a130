// CustomProperty, IProperty and PropertyDatabase.

#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <utility>
#include <vector>

#include "framework/api/CustomProperty.h"
#include "framework/api/IProperty.h"
#include "framework/api/PropertyDatabase.h"

namespace
{

using namespace KVR;

// Each of the five getters with its former output in place; which of them answered is the result.
std::string AnsweredBy(CustomProperty const& property)
{
    UTF16String text(L"before");
    int whole = -7;
    double real = -7.5;
    bool flag = true;
    struct tm time = {};
    time.tm_mday = 31;

    std::string answered;
    auto const note = [&](IsValueSpecifiedEnum specified, char const* name, bool untouched)
    {
        if (specified == kIsValueSpecified_Yes)
            answered += name;
        else
            EXPECT_TRUE(untouched) << name;
    };
    note(property.Value(text), "text", text == UTF16String(L"before"));
    note(property.Value(whole), "int", whole == -7);
    note(property.Value(real), "double", real == -7.5);
    note(property.Value(flag), "bool", flag);
    note(property.Value(time), "time", time.tm_mday == 31);
    return answered;
}

TEST(CustomProperty, IsANamelessEmptyTextUntilSet)
{
    CustomProperty const property;
    UTF16String text(L"before");
    EXPECT_TRUE(property.Name().IsEmpty());
    EXPECT_EQ(property.Type(), kPropertyType_String);
    EXPECT_EQ(AnsweredBy(property), "text");
    EXPECT_EQ(property.Value(text), kIsValueSpecified_Yes);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(CustomProperty, HoldsAValueOfEachTypeAndAnswersToThatTypeAlone)
{
    CustomProperty property;

    property.SetProperty(L"i", 42);
    int whole = 0;
    EXPECT_EQ(property.Type(), kPropertyType_Int);
    EXPECT_EQ(AnsweredBy(property), "int");
    EXPECT_EQ(property.Value(whole), kIsValueSpecified_Yes);
    EXPECT_EQ(whole, 42);
    EXPECT_EQ(property.Name(), UTF16String(L"i"));

    property.SetProperty(L"d", 0.1);
    double real = 0.0;
    EXPECT_EQ(property.Type(), kPropertyType_Double);
    EXPECT_EQ(AnsweredBy(property), "double");
    EXPECT_EQ(property.Value(real), kIsValueSpecified_Yes);
    EXPECT_EQ(real, 0.1);

    property.SetProperty(L"b", false);
    bool flag = true;
    EXPECT_EQ(property.Type(), kPropertyType_Bool);
    EXPECT_EQ(AnsweredBy(property), "bool");
    EXPECT_EQ(property.Value(flag), kIsValueSpecified_Yes);
    EXPECT_FALSE(flag);

    property.SetProperty(L"s", UTF16String(L"value"));
    UTF16String text;
    EXPECT_EQ(property.Type(), kPropertyType_String);
    EXPECT_EQ(AnsweredBy(property), "text");
    EXPECT_EQ(property.Value(text), kIsValueSpecified_Yes);
    EXPECT_EQ(text, UTF16String(L"value"));

    struct tm given = {};
    given.tm_year = 124;
    given.tm_yday = 60;
    property.SetProperty(L"t", given);
    struct tm time = {};
    EXPECT_EQ(property.Type(), kPropertyType_Time);
    EXPECT_EQ(AnsweredBy(property), "time");
    EXPECT_EQ(property.Value(time), kIsValueSpecified_Yes);
    EXPECT_EQ(time.tm_year, 124);
    EXPECT_EQ(time.tm_yday, 60);
    EXPECT_EQ(property.Name(), UTF16String(L"t"));
}

TEST(CustomProperty, CopiesAreIndependent)
{
    CustomProperty property;
    property.SetProperty(L"a", 1);
    CustomProperty copy(property);
    property.SetProperty(L"b", 2);
    int value = 0;
    EXPECT_EQ(copy.Value(value), kIsValueSpecified_Yes);
    EXPECT_EQ(value, 1);
    copy = property;
    EXPECT_EQ(copy.Name(), UTF16String(L"b"));
}

// Counts its end.
class CountedProperty final : public IProperty
{
public:
    CountedProperty(char const* id, int& ended) : m_id(id), m_ended(ended) {}

    UTF8String Id() const override { return m_id; }
    UTF16String Name() const override { return {}; }
    PropertyTypeEnum Type() const override { return kPropertyType_String; }
    IsValueSpecifiedEnum Value(UTF16String&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum Value(int&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum Value(double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum Value(bool&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum Value(struct tm&) const override { return kIsValueSpecified_No; }

private:
    ~CountedProperty() override { ++m_ended; }

    UTF8String m_id;
    int& m_ended;
};

TEST(IProperty, EndsWithItsLastHolder)
{
    int ended = 0;
    IProperty const* const property = new CountedProperty("p", ended);
    property->Retain();
    property->Release();
    EXPECT_EQ(ended, 0);
    property->Release();
    EXPECT_EQ(ended, 1);
}

TEST(PropertyDatabase, APropertyLivesAsLongAsTheDatabase)
{
    int ended = 0;
    {
        PropertyDatabase database;
        IProperty const* const property = new CountedProperty("p", ended);
        database.AddProperty(property);
        property->Release();
        EXPECT_EQ(ended, 0);
        IProperty const* found = nullptr;
        EXPECT_EQ(database.PropertyAt("p", found), kIsValueSpecified_Yes);
        EXPECT_EQ(found, property);
    }
    EXPECT_EQ(ended, 1);
}

TEST(PropertyDatabase, APropertyWithAnotherHolderOutlivesTheDatabase)
{
    int ended = 0;
    IProperty const* const property = new CountedProperty("p", ended);
    {
        PropertyDatabase database;
        database.AddProperty(property);
    }
    EXPECT_EQ(ended, 0);
    EXPECT_EQ(property->Id(), UTF8String("p"));
    property->Release();
    EXPECT_EQ(ended, 1);
}

TEST(PropertyDatabase, OfSeveralPropertiesWithOneIdTheFirstIsAnsweredAndAllAreKept)
{
    int ended = 0;
    {
        PropertyDatabase database;
        IProperty const* const first = new CountedProperty("p", ended);
        for (IProperty const* const property : {first, static_cast<IProperty const*>(new CountedProperty("p", ended))})
        {
            database.AddProperty(property);
            property->Release();
        }
        IProperty const* found = nullptr;
        EXPECT_EQ(database.PropertyAt("p", found), kIsValueSpecified_Yes);
        EXPECT_EQ(found, first);
        EXPECT_EQ(ended, 0);
    }
    EXPECT_EQ(ended, 2);
}

TEST(PropertyDatabase, TakesOnePropertyTwice)
{
    int ended = 0;
    {
        PropertyDatabase database;
        IProperty const* const property = new CountedProperty("p", ended);
        database.AddProperty(property);
        database.AddProperty(property);
        property->Release();
    }
    EXPECT_EQ(ended, 1);
}

TEST(PropertyDatabase, LeavesTheOutputAloneForAnUnknownId)
{
    int ended = 0;
    PropertyDatabase database;
    database.AddProperty(nullptr);
    IProperty const* const property = new CountedProperty("other", ended);
    IProperty const* found = property;
    EXPECT_EQ(database.PropertyAt("p", found), kIsValueSpecified_No);
    EXPECT_EQ(database.PropertyAt("", found), kIsValueSpecified_No);
    EXPECT_EQ(found, property);
    property->Release();
}

}  // namespace
