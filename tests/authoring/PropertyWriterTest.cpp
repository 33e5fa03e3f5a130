#include "authoring/PropertyWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>
#include <filesystem>
#include <limits>

#include "framework/api/Exception.h"
#include "framework/api/Time.h"
#include "framework/xml_util/PropertyReader.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using Authoring::PropertyWriter;
using testing::ElementsAre;

template <class Value>
CustomProperty Content(UTF16String const& name, Value const& value)
{
    CustomProperty content;
    content.SetProperty(name, value);
    return content;
}

// A property file in a folder of its own, written and read back.
class PropertyFile
{
public:
    PropertyFile() : m_writer(m_folder.PathOf("s.kvrproperty")) {}

    PropertyWriter& Writer() { return m_writer; }
    PropertyReader const& Read()
    {
        m_writer.Finish();
        m_reader = std::make_unique<PropertyReader>(m_folder.PathOf("s.xml"));
        return *m_reader;
    }
    // The property at the index; the test ends when there is none.
    IProperty const& At(unsigned long long index) const
    {
        IProperty* property = nullptr;
        UTF8String objectId;
        if (!m_reader->PropertyAndObjectIdAt(index, property, objectId))
            throw std::runtime_error("no such property");
        return *property;
    }
    std::string ObjectIdAt(unsigned long long index) const
    {
        IProperty* property = nullptr;
        UTF8String objectId;
        m_reader->PropertyAndObjectIdAt(index, property, objectId);
        return Text(objectId);
    }

private:
    TempFolder m_folder;
    PropertyWriter m_writer;
    std::unique_ptr<PropertyReader> m_reader;
};

template <class Value>
Value ValueOf(IProperty const& property)
{
    Value value{};
    EXPECT_EQ(property.Value(value), kIsValueSpecified_Yes);
    return value;
}

TEST(PropertyWriter, WritesAValueOfEachType)
{
    struct tm time = {};
    time.tm_year = 124;
    time.tm_mon = 1;
    time.tm_mday = 29;
    time.tm_hour = 23;
    time.tm_min = 59;
    time.tm_sec = 58;
    PropertyFile file;
    file.Writer().Property("a", "o1", Content(L"text", UTF16String(L"v")));
    file.Writer().Property("b", "o2", Content(L"int", -17));
    file.Writer().Property("c", "o3", Content(L"double", 0.1));
    file.Writer().Property("d", "o4", Content(L"yes", true));
    file.Writer().Property("e", "o5", Content(L"no", false));
    file.Writer().Property("f", "o6", Content(L"time", time));
    ASSERT_EQ(file.Read().PropertyCount(), 6U);
    EXPECT_EQ(ValueOf<UTF16String>(file.At(0)), UTF16String(L"v"));
    EXPECT_EQ(ValueOf<int>(file.At(1)), -17);
    EXPECT_EQ(ValueOf<double>(file.At(2)), 0.1);
    EXPECT_TRUE(ValueOf<bool>(file.At(3)));
    EXPECT_FALSE(ValueOf<bool>(file.At(4)));
    struct tm const readTime = ValueOf<struct tm>(file.At(5));
    EXPECT_EQ(readTime.tm_year, 124);
    EXPECT_EQ(readTime.tm_mon, 1);
    EXPECT_EQ(readTime.tm_mday, 29);
    EXPECT_EQ(readTime.tm_hour, 23);
    EXPECT_EQ(readTime.tm_min, 59);
    EXPECT_EQ(readTime.tm_sec, 58);
    EXPECT_EQ(file.At(5).Name(), UTF16String(L"time"));
    EXPECT_EQ(Text(file.At(5).Id()), "f");
    EXPECT_EQ(file.ObjectIdAt(5), "o6");
}

TEST(PropertyWriter, TextReadsBackWhateverXmlMakesOfIt)
{
    std::string const hard = "&amp; <tag a='b' c=\"d\"> \t\r\n end ]]> Räder 😀 &#65; ";
    PropertyFile file;
    file.Writer().Property(hard.c_str(), hard.c_str(), Content(Wide(hard.c_str()), Wide(hard.c_str())));
    ASSERT_EQ(file.Read().PropertyCount(), 1U);
    EXPECT_EQ(Text(file.At(0).Id()), hard);
    EXPECT_EQ(file.ObjectIdAt(0), hard);
    EXPECT_EQ(Text(file.At(0).Name()), hard);
    EXPECT_EQ(Text(ValueOf<UTF16String>(file.At(0))), hard);
}

TEST(PropertyWriter, EveryNumberReadsBackExactly)
{
    bool const holds = rc::check(
        [](std::vector<double> const& numbers, std::vector<int> const& integers)
        {
            PropertyFile file;
            for (double const number : numbers)
                file.Writer().Property("p", "o", Content(L"n", number));
            for (int const integer : integers)
                file.Writer().Property("p", "o", Content(L"n", integer));
            RC_ASSERT(file.Read().PropertyCount() == numbers.size() + integers.size());
            unsigned long long index = 0;
            for (double const number : numbers)
                RC_ASSERT(ValueOf<double>(file.At(index++)) == number);
            for (int const integer : integers)
                RC_ASSERT(ValueOf<int>(file.At(index++)) == integer);
        });
    EXPECT_TRUE(holds);
}

TEST(PropertyWriter, TheLargestNumbersReadBack)
{
    PropertyFile file;
    std::vector<double> const numbers = {std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest(),
                                         std::numeric_limits<double>::min(), std::numeric_limits<double>::epsilon()};
    for (double const number : numbers)
        file.Writer().Property("p", "o", Content(L"n", number));
    file.Writer().Property("p", "o", Content(L"n", std::numeric_limits<int>::min()));
    file.Read();
    for (std::size_t i = 0; i < numbers.size(); ++i)
        EXPECT_EQ(ValueOf<double>(file.At(i)), numbers[i]);
    EXPECT_EQ(ValueOf<int>(file.At(numbers.size())), std::numeric_limits<int>::min());
}

TEST(PropertyWriter, RefusesWhatAFileCannotHoldAndGoesOn)
{
    PropertyFile file;
    PropertyWriter& writer = file.Writer();
    UTF16String const text(L"v");
    EXPECT_THROW(writer.Property("p", "o", Content(L"n", std::numeric_limits<double>::infinity())), GeneralException);
    EXPECT_THROW(writer.Property("p", "o", Content(L"n", std::nan(""))), GeneralException);
    EXPECT_THROW(writer.Property("\x01", "o", Content(L"n", text)), GeneralException);
    EXPECT_THROW(writer.Property("p", "\xFF", Content(L"n", text)), GeneralException);
    EXPECT_THROW(writer.Property("p", "o", Content(L"\xFFFE", text)), GeneralException);
    EXPECT_THROW(writer.Property("p", "o", Content(L"n", UTF16String(L"\x0B"))), GeneralException);
    struct tm time = {};
    EXPECT_THROW(writer.Property("p", "o", Content(L"n", time)), GeneralException) << "a day 0";
    time.tm_mday = 1;
    time.tm_year = 9000;
    EXPECT_THROW(writer.Property("p", "o", Content(L"n", time)), GeneralException);
    time.tm_year = -1900;
    EXPECT_THROW(writer.Property("p", "o", Content(L"n", time)), GeneralException);
    time.tm_year = 100;
    time.tm_mon = 2147483647 - 1;
    EXPECT_THROW(writer.Property("p", "o", Content(L"n", time)), GeneralException);
    writer.Property("good", "o", Content(L"n", text));
    ASSERT_EQ(file.Read().PropertyCount(), 1U);
    EXPECT_EQ(Text(file.At(0).Id()), "good");
}

TEST(PropertyWriter, WithoutAFinishNothingStaysBehind)
{
    TempFolder const folder;
    {
        PropertyWriter writer(folder.PathOf("s.kvrproperty"));
        writer.Property("p", "o", Content(L"n", 1));
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(PropertyWriter, AFolderThatIsNotThereIsAFileException)
{
    TempFolder const folder;
    EXPECT_THROW(PropertyWriter(folder.PathOf("none/s.kvrproperty")), FileException);
}

TEST(PropertyWriter, AnObjectOfASceneGetsItsProperty)
{
    TestScene scene(R"(<Scene><IUniverse/><IAssembly ID="a" Label=""><ChildSet><IInstance ID="i"><Child ID="p"/>
        </IInstance></ChildSet></IAssembly><IPart ID="p" Label=""/></Scene>)");
    PropertyWriter writer(Wide((scene.Folder() + "/scene.kvrproperty").c_str()));
    writer.Property("p1", "i", Content(L"Supplier", UTF16String(L"ACME")));
    writer.Finish();
    scene.Begin();
    EXPECT_THAT(Ids(scene.Get<IInstance>("i").PropertyIds()), ElementsAre("p1"));
}

}  // namespace

}  // namespace KVR::Test
