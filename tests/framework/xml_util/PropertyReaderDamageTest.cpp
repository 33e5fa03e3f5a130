// Property files that are damaged, hostile or in other encodings.

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "framework/api/IOUtil.h"
#include "framework/api/IProperty.h"
#include "framework/xml_util/PropertyReader.h"
#include "framework/xml_util/XMLPlatform.h"
#include "tests/framework/xml_util/AllocationMeter.h"
#include "tests/framework/xml_util/Damage.h"
#include "tests/support/TempFolder.h"

namespace
{

using namespace KVR;
using Test::TempFolder;

using Texts = std::vector<std::string>;

class DamagedPropertyFile : public testing::Test
{
protected:
    // What the reader answers for a file of these bytes, one text for each element that counts.
    Texts Read(std::string_view bytes)
    {
        m_folder.Write("scene.kvrproperty", bytes);
        return ReadFile();
    }
    Texts ReadFile()
    {
        PropertyReader const reader(m_folder.PathOf("scene.xml"));
        Texts texts;
        for (unsigned long long i = 0; i < reader.PropertyCount(); ++i)
        {
            IProperty* property = nullptr;
            UTF8String objectId;
            if (!reader.PropertyAndObjectIdAt(i, property, objectId))
            {
                texts.emplace_back("none");
                continue;
            }
            UTF16String value(L"no text");
            property->Value(value);
            UTF8String const text =
                property->Id() + "/" + objectId + "/" + UTF8String(property->Name()) + "/" + UTF8String(value);
            texts.emplace_back(text.View());
        }
        return texts;
    }

    TempFolder m_folder;

private:
    // Spares each of thousands of readers the start of Xerces.
    XMLPlatformScope m_platform;
};

constexpr std::string_view kFile = R"(<?xml version="1.0" encoding="UTF-8"?>
<Properties>
  <Property ID="p1" ObjectID="mesh1" Name="Supplier" Type="kString" Value="ACME"/>
  <Property ID="p2" ObjectID="mesh1" Name="Räder" Value="&lt;vier&gt;"/>
  <Property ID="p3" ObjectID="mesh2" Type="kInt" Value="many"></Property>
  <Property ID="p4" ObjectID="mesh2" Name="Finish" Value="blank"/>
</Properties>
)";

Texts const kWhole = {"p1/mesh1/Supplier/ACME", "p2/mesh1/Räder/<vier>", "none", "p4/mesh2/Finish/blank"};

// The places behind the start tags of the file's properties.
std::vector<std::size_t> EndsOfProperties()
{
    std::vector<std::size_t> ends;
    for (std::size_t at = kFile.find("<Property "); at != std::string_view::npos; at = kFile.find("<Property ", at + 1))
        ends.push_back(kFile.find('>', at) + 1);
    return ends;
}

// How many of the properties stand whole within so many first bytes.
std::size_t CountWithin(std::size_t length)
{
    std::size_t count = 0;
    for (std::size_t const end : EndsOfProperties())
        count += end <= length;
    return count;
}

Texts Front(std::size_t count)
{
    return {kWhole.begin(), kWhole.begin() + static_cast<std::ptrdiff_t>(count)};
}

TEST_F(DamagedPropertyFile, IsReadWholeWithoutDamage)
{
    ASSERT_EQ(EndsOfProperties().size(), kWhole.size());
    EXPECT_EQ(Read(kFile), kWhole);
}

TEST_F(DamagedPropertyFile, GivesWhatStandsWholeInFrontOfItsEnd)
{
    ForEachPrefix(kFile, [this](std::string_view prefix)
                  { EXPECT_EQ(Read(prefix), Front(CountWithin(prefix.size()))) << prefix.size(); });
}

TEST_F(DamagedPropertyFile, GivesWhatStandsInFrontOfAByteThatChanged)
{
    ForEachFlip(kFile,
                [this](std::string_view damaged, std::size_t place)
                {
                    Texts const texts = Read(damaged);
                    std::size_t const front = CountWithin(place);
                    ASSERT_LE(texts.size(), kWhole.size()) << place;
                    ASSERT_GE(texts.size(), front) << place;
                    EXPECT_EQ(Texts(texts.begin(), texts.begin() + static_cast<std::ptrdiff_t>(front)), Front(front))
                        << place;
                });
}

TEST_F(DamagedPropertyFile, GivesWhatStoodBeforeTheErrorAndNothingBehindIt)
{
    std::string const good = "<Property ID='a' ObjectID='o' Value='v'/>";
    for (char const* const error :
         {"</Wrong>", "<Property ID='b' ID='b' ObjectID='o'/>", "<Property ID=b/>", "&unknown;", "<",
          "<Property ID='<' ObjectID='o'/>", "&#0;", "]]>", "</Properties><More/>"})
    {
        std::string xml = "<Properties>";
        xml.append(good).append(error).append(good).append("</Properties>");
        EXPECT_EQ(Read(xml), Texts({"a/o//v"})) << error;
    }
}

TEST_F(DamagedPropertyFile, GivesNothingWhenItIsNoXmlAtAll)
{
    for (std::string_view const bytes :
         {std::string_view(""), std::string_view(" \n"), std::string_view("text"), std::string_view("\0\0\0\0", 4),
          std::string_view("KVRASSET"), std::string_view("<?xml"), std::string_view("<!-- -->"),
          std::string_view("\xFF\xFE"), std::string_view("\xEF\xBB\xBF")})
        EXPECT_EQ(Read(bytes), Texts());
}

TEST_F(DamagedPropertyFile, ThatIsNoRegularFileIsAnEmptyOne)
{
    m_folder.MakeFolder("scene.kvrproperty");
    EXPECT_EQ(ReadFile(), Texts());
    TempFolder const other;
    other.MakeFifo("scene.kvrproperty");
    EXPECT_EQ(PropertyReader(other.PathOf("scene.xml")).PropertyCount(), 0U);
}

TEST_F(DamagedPropertyFile, EndsAtADocumentTypeDeclaration)
{
    for (char const* const type : {"<!DOCTYPE P []>", "<!DOCTYPE P [<!ENTITY e 'E'>]>",
                                   "<!DOCTYPE P SYSTEM 'missing.dtd'>", "<!DOCTYPE P PUBLIC 'p' 'missing.dtd'>",
                                   "<!DOCTYPE P [<!ATTLIST Property ID CDATA 'd' ObjectID CDATA 'd'>]>"})
        EXPECT_EQ(Read(std::string(type) + "<P><Property ID='a' ObjectID='o'/></P>"), Texts()) << type;
}

TEST_F(DamagedPropertyFile, DoesNotEndAtADocumentTypeThatHasNothingInIt)
{
    EXPECT_EQ(Read("<!DOCTYPE P><P><Property ID='a' ObjectID='o' Value='v'/></P>"), Texts({"a/o//v"}));
}

TEST_F(DamagedPropertyFile, ExpandsNoEntities)
{
    std::string xml = "<!DOCTYPE P [<!ENTITY e0 'ha'>";
    for (int i = 1; i < 40; ++i)
    {
        std::string const former = "&e" + std::to_string(i - 1) + ';';
        xml.append("<!ENTITY e").append(std::to_string(i)).append(" '");
        xml.append(former).append(former).append(former).append("'>");
    }
    xml += "]><P><Property ID='a' ObjectID='o' Value='&e39;'/>&e39;</P>";
    m_folder.Write("scene.kvrproperty", xml);
    AllocationMeter const meter;
    Texts const texts = ReadFile();
    std::ptrdiff_t const peak = meter.Peak();
    EXPECT_EQ(texts, Texts());
    EXPECT_LT(peak, 2 * 1024 * 1024);
}

// The names of the files that were opened in a folder since this began.
class OpenedFiles
{
public:
    explicit OpenedFiles(TempFolder const& folder)
        : m_watch(::inotify_init1(IN_NONBLOCK)),
          m_isWatching(::inotify_add_watch(m_watch, folder.Path().c_str(), IN_OPEN) >= 0)
    {
    }
    ~OpenedFiles() { ::close(m_watch); }
    OpenedFiles(OpenedFiles const&) = delete;
    OpenedFiles& operator=(OpenedFiles const&) = delete;

    bool IsWatching() const { return m_isWatching; }
    Texts Take() const
    {
        Texts names;
        alignas(inotify_event) std::array<char, 4096> buffer;
        ssize_t size = 0;
        while ((size = ::read(m_watch, buffer.data(), buffer.size())) > 0)
        {
            for (char const* at = buffer.data(); at < buffer.data() + size;)
            {
                auto const* const event = reinterpret_cast<inotify_event const*>(at);
                if (event->len > 0 && (names.empty() || names.back() != event->name))
                    names.emplace_back(event->name);
                at += sizeof(inotify_event) + event->len;
            }
        }
        return names;
    }

private:
    int m_watch;
    bool m_isWatching;
};

TEST_F(DamagedPropertyFile, FetchesNothingThatItRefersTo)
{
    for (char const* const name : {"a.dtd", "a.ent", "a.xsd"})
        m_folder.Write(name, "");
    std::string const folder = m_folder.Path();
    std::string const files[] = {
        "<!DOCTYPE P SYSTEM 'a.dtd'><P><Property ID='a' ObjectID='o'/></P>",
        "<!DOCTYPE P SYSTEM 'file://" + folder + "/a.dtd'><P/>",
        "<!DOCTYPE P PUBLIC 'p' '" + folder + "/a.dtd'><P/>",
        "<!DOCTYPE P [<!ENTITY e SYSTEM 'a.ent'>]><P>&e;</P>",
        "<!DOCTYPE P [<!ENTITY % e SYSTEM 'a.ent'> %e;]><P/>",
        "<P xmlns:x='http://www.w3.org/2001/XMLSchema-instance' x:noNamespaceSchemaLocation='a.xsd'/>",
        "<P xmlns='urn:p' xmlns:x='http://www.w3.org/2001/XMLSchema-instance' x:schemaLocation='urn:p a.xsd'/>",
        "<?xml-model href='a.xsd'?><P/>",
    };
    for (std::string const& xml : files)
    {
        m_folder.Write("scene.kvrproperty", xml);
        OpenedFiles const opened(m_folder);
        ASSERT_TRUE(opened.IsWatching());
        ReadFile();
        EXPECT_EQ(opened.Take(), Texts({"scene.kvrproperty"})) << xml;
        // The watch does see the others.
        FilePtr const seen(UTF8String(m_folder.NarrowPathOf("a.dtd")), "rb");
        ASSERT_TRUE(seen);
        EXPECT_EQ(opened.Take(), Texts({"a.dtd"}));
    }
}

std::string Utf16(std::u16string_view text, bool bigEndian)
{
    std::string bytes;
    for (char16_t const unit : text)
    {
        char const high = static_cast<char>(unit >> 8);
        char const low = static_cast<char>(unit & 0xFF);
        bytes.push_back(bigEndian ? high : low);
        bytes.push_back(bigEndian ? low : high);
    }
    return bytes;
}

TEST_F(DamagedPropertyFile, IsReadInEveryEncodingOfXml)
{
    Texts const expected = {"p/o/Räder/v"};
    std::string const ascii = "<P><Property ID='p' ObjectID='o' Name='R&#xE4;der' Value='v'/></P>";
    std::string const utf8 = "<P><Property ID='p' ObjectID='o' Name='Räder' Value='v'/></P>";
    std::string const latin1 =
        "<P><Property ID='p' ObjectID='o' Name='R\xE4"
        "der' Value='v'/></P>";
    std::u16string const wide = u"<P><Property ID='p' ObjectID='o' Name='R\u00E4der' Value='v'/></P>";
    EXPECT_EQ(Read(utf8), expected);
    EXPECT_EQ(Read("\xEF\xBB\xBF" + utf8), expected);
    EXPECT_EQ(Read("\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?>" + utf8), expected);
    EXPECT_EQ(Read("<?xml version='1.0' encoding='ISO-8859-1'?>" + latin1), expected);
    EXPECT_EQ(Read("<?xml version='1.0' encoding='US-ASCII'?>" + ascii), expected);
    EXPECT_EQ(Read(Utf16(u"\uFEFF" + wide, false)), expected);
    EXPECT_EQ(Read(Utf16(u"\uFEFF" + wide, true)), expected);
    EXPECT_EQ(Read(Utf16(u"\uFEFF<?xml version='1.0' encoding='UTF-16'?>" + wide, false)), expected);
    EXPECT_EQ(Read("<?xml version='1.0' encoding='no-such'?>" + ascii), Texts());
}

TEST_F(DamagedPropertyFile, GivesCharactersBeyondTheFirstPlaneInBothUnicodeEncodings)
{
    Texts const expected = {"p/o//\xF0\x9F\x98\x80"};
    EXPECT_EQ(Read("<P><Property ID='p' ObjectID='o' Value='\xF0\x9F\x98\x80'/></P>"), expected);
    EXPECT_EQ(Read(Utf16(u"\uFEFF<P><Property ID='p' ObjectID='o' Value='\U0001F600'/></P>", true)), expected);
}

TEST_F(DamagedPropertyFile, GivesWhatStandsInFrontOfBytesThatAreNoTextOfItsEncoding)
{
    std::string const front = "<P><Property ID='a' ObjectID='o' Value='v'/>";
    for (std::size_t const distance : {0, 1000, 20000, 200000})
    {
        for (char const* const bad : {"\xFF", "\xC3", "\x80", "\xE4", "\xED\xA0\x80", "\xC0\xAF", "\xF4\x90\x80\x80"})
        {
            std::string xml = front;
            xml.append(distance, ' ').append("<Property ID='").append(bad).append("' ObjectID='o'/></P>");
            EXPECT_EQ(Read(xml), Texts({"a/o//v"}));
        }
    }
}

TEST_F(DamagedPropertyFile, InAWideEncodingGivesWhatStandsInFrontOfItsEnd)
{
    // The bytes of a ">" stand in characters of other scripts too.
    constexpr std::u16string_view kWide =
        u"\uFEFF<?xml version='1.0' encoding='UTF-16'?><P><Property ID='a>' ObjectID='\u3E3E\u3E00\u003E\u013E'/>"
        u"<Property ID='b' ObjectID='o'/></P>";
    for (bool const bigEndian : {false, true})
    {
        std::string const bytes = Utf16(kWide, bigEndian);
        std::size_t const endOfFirst = 2 * (kWide.find(u"/>") + 2);
        std::size_t const endOfSecond = 2 * (kWide.find(u"/></P>") + 2);
        Texts const whole = {"a>/\u3E3E\u3E00>\u013E//", "b/o//"};
        EXPECT_EQ(Read(bytes), whole);
        ForEachPrefix(bytes,
                      [&](std::string_view prefix)
                      {
                          std::size_t const count = (prefix.size() >= endOfFirst) + (prefix.size() >= endOfSecond);
                          EXPECT_EQ(Read(prefix), Texts(whole.begin(), whole.begin() + static_cast<long>(count)))
                              << prefix.size();
                      });
    }
}

TEST_F(DamagedPropertyFile, MayBeNestedToAnyDepth)
{
    constexpr int kLevels = 100000;
    std::string xml = "<P><Property ID='a' ObjectID='o' Value='v'/>";
    for (int i = 0; i < kLevels; ++i)
        xml += "<Property xmlns=''>";
    EXPECT_EQ(Read(xml).size(), 2U);
    for (int i = 0; i < kLevels; ++i)
        xml += "</Property>";
    xml += "<Property ID='b' ObjectID='o' Value='v'/></P>";
    EXPECT_EQ(Read(xml), Texts({"a/o//v", "none", "b/o//v"}));
}

TEST_F(DamagedPropertyFile, MayHaveAttributesOfAnyLengthAndNumber)
{
    std::string const text(10000000, 'v');
    Texts const longText = Read("<P><Property ID='a' ObjectID='o' Value='" + text + "'/></P>");
    ASSERT_EQ(longText.size(), 1U);
    EXPECT_TRUE(longText[0] == "a/o//" + text);

    std::string xml = "<P><Property ";
    for (int i = 0; i < 20000; ++i)
        xml += 'a' + std::to_string(i) + "='' ";
    EXPECT_EQ(Read(xml + "ID='a' ObjectID='o' Value='v'/></P>"), Texts({"a/o//v"}));
}

}  // namespace
