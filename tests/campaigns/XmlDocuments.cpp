#include "tests/campaigns/XmlDocuments.h"

#include <array>
#include <cstdint>
#include <string_view>

#include "tests/campaigns/Campaign.h"

namespace KVR::Campaigns
{

namespace
{

constexpr std::string_view kBody = "<Scene><IFile ID=\"f\" IsRoot=\"1\" Label=\"l\"/></Scene>";
constexpr std::string_view kAddresses[] = {"http://127.0.0.1:9/x",  "https://127.0.0.1:9/x", "ftp://127.0.0.1:9/x",
                                           "gopher://127.0.0.1:9/", "//127.0.0.1:9/x",       "http:///x"};

std::string Times(std::string_view text, std::size_t count)
{
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

std::string WithLabel(std::string const& label)
{
    return "<Scene><IFile ID=\"f\" IsRoot=\"1\" Label=\"" + label + "\"/></Scene>";
}

// The text with so many bytes for a character.
std::string Wide(std::string_view text, std::size_t width, std::size_t place, std::string_view mark = {})
{
    std::string bytes(mark);
    for (char const c : text)
        for (std::size_t i = 0; i < width; ++i)
            bytes += i == place ? c : '\0';
    return bytes;
}

class Documents
{
public:
    explicit Documents(std::string const& secret) : m_secret(secret) {}

    std::vector<XmlDocument> Take()
    {
        Types();
        ManyTypes();
        Entities();
        Schemas();
        Encodings();
        Characters();
        Structure();
        Sizes();
        return std::move(m_all);
    }

private:
    // Read or not under both policies.
    void Add(std::string name, std::string bytes, bool isRead)
    {
        m_all.push_back({std::move(name), std::move(bytes), isRead, isRead});
    }
    // What has a document type: read by default alone.
    void AddType(std::string name, std::string_view type, std::string_view body, bool isReadByDefault,
                 bool asksNetwork = false)
    {
        m_all.push_back({std::move(name), "<!DOCTYPE Scene " + std::string(type) + ">" + std::string(body), false,
                         isReadByDefault, asksNetwork});
    }

    void Types()
    {
        AddType("empty document type", "", kBody, true);
        AddType("internal subset", "[<!ELEMENT Scene ANY>]", kBody, true);
        AddType("attribute list", "[<!ATTLIST Scene a CDATA \"x\">]", kBody, true);
        AddType("default attribute of the root", "[<!ATTLIST IFile IsRoot CDATA \"1\">]", kBody, true);
        AddType("notation", "[<!NOTATION n SYSTEM \"n\">]", kBody, true);
        AddType("unparsed entity", "[<!NOTATION n SYSTEM \"n\"><!ENTITY e SYSTEM \"x\" NDATA n>]", kBody, true);
        AddType("unclosed subset", "[<!ELEMENT Scene ANY>", kBody, false);
        AddType("condition in the subset", "[<![INCLUDE[<!ELEMENT Scene ANY>]]>]", kBody, false);
        AddType("wrong keyword", "SISTEM \"x\"", kBody, false);
        AddType("type of another root", "[]", "<Other/>", true);
        for (std::string const& file : {m_secret, "file://" + m_secret})
        {
            AddType("external subset that is no subset, " + file.substr(0, 5), "SYSTEM \"" + file + "\"", kBody, false);
            AddType("public external subset, " + file.substr(0, 5), "PUBLIC \"p\" \"" + file + "\"", kBody, false);
        }
        for (std::string_view const address : kAddresses)
        {
            std::string const text(address);
            AddType("external subset at " + text, "SYSTEM \"" + text + "\"", kBody, true, true);
            AddType("public subset at " + text, "PUBLIC \"p\" \"" + text + "\"", kBody, true, true);
            AddType("entity at " + text, "[<!ENTITY e SYSTEM \"" + text + "\">]", "<Scene>&e;</Scene>", false, true);
            AddType("parameter entity at " + text, "[<!ENTITY % e SYSTEM \"" + text + "\"> %e;]", kBody, true, true);
        }
    }

    void ManyTypes()
    {
        Add("two document types", "<!DOCTYPE Scene><!DOCTYPE Scene>" + std::string(kBody), false);
        Add("a document type behind the root", std::string(kBody) + "<!DOCTYPE Scene>", false);
        Add("a document type within the root", "<Scene><!DOCTYPE Scene></Scene>", false);
        Add("a document type in small letters", "<!doctype Scene>" + std::string(kBody), false);
        m_all.push_back(
            {"a comment before the document type", "<!-- c --><!DOCTYPE Scene>" + std::string(kBody), false, true});
        m_all.push_back(
            {"an instruction before the document type", "<?a b?><!DOCTYPE Scene>" + std::string(kBody), false, true});
    }

    void Entities()
    {
        AddType("entity", "[<!ENTITY e \"x\">]", "<Scene>&e;</Scene>", true);
        AddType("entity in an attribute", "[<!ENTITY e \"x\">]", WithLabel("&e;"), true);
        AddType("entity with an element", "[<!ENTITY e \"<IFile ID='f'/>\">]", "<Scene>&e;</Scene>", true);
        AddType("entity with half an element", "[<!ENTITY e \"<IFile>\">]", "<Scene>&e;</Scene>", false);
        AddType("entity of itself", "[<!ENTITY e \"&e;\">]", "<Scene>&e;</Scene>", false);
        AddType("entities in a circle", "[<!ENTITY a \"&b;\"><!ENTITY b \"&a;\">]", "<Scene>&a;</Scene>", false);
        AddType("parameter entity of itself", "[<!ENTITY % e \"%e;\"> %e;]", kBody, false);
        AddType("parameter entity within a declaration", "[<!ENTITY % e \"ANY\"><!ELEMENT Scene %e;>]", kBody, false);
        AddType("external entity in an attribute", "[<!ENTITY e SYSTEM \"" + m_secret + "\">]", WithLabel("&e;"),
                false);
        AddType("external entity", "[<!ENTITY e SYSTEM \"" + m_secret + "\">]", "<Scene>&e;</Scene>", true);
        AddType("external parameter entity", "[<!ENTITY % e SYSTEM \"" + m_secret + "\"> %e;]", kBody, false);
        for (char const* const file : {"/dev/stdin", "/proc/self/environ", "/", ""})
            AddType(std::string("external entity ") + file, "[<!ENTITY e SYSTEM \"" + std::string(file) + "\">]",
                    "<Scene/>", true);
        for (int const levels : {2, 4})
        {
            std::string type = "[<!ENTITY e0 \"x\">";
            for (int i = 1; i <= levels; ++i)
                type +=
                    "<!ENTITY e" + std::to_string(i) + " \"" + Times("&e" + std::to_string(i - 1) + ";", 10) + "\">";
            std::string const last = "&e" + std::to_string(levels) + ";";
            AddType("entities that multiply, " + std::to_string(levels) + " levels", type + "]",
                    "<Scene>" + last + "</Scene>", true);
            AddType("the same in an attribute, " + std::to_string(levels) + " levels", type + "]", WithLabel(last),
                    true);
        }
        Add("an entity that is not declared", "<Scene>&e;</Scene>", false);
        Add("a parameter entity in the text", "<Scene>%e;</Scene>", true);
        Add("all entities that every document has", "<Scene>&lt;&gt;&amp;&quot;&apos;</Scene>", true);
        Add("character reference", WithLabel("&#65;&#x42;"), true);
        for (char const* const reference :
             {"&#0;", "&#x0;", "&#1;", "&#xD800;", "&#xDFFF;", "&#xFFFE;", "&#xFFFF;", "&#x110000;", "&#99999999999;",
              "&#-1;", "&#;", "&#x;", "&#65", "&;", "& ;"})
            Add(std::string("reference ") + reference, WithLabel(reference), false);
        Add("character reference beyond the first plane", WithLabel("&#x1F600;"), true);
    }

    void Schemas()
    {
        constexpr std::string_view kInstance = "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"";
        for (std::string_view const address : kAddresses)
        {
            std::string const text(address);
            m_all.push_back({"schema at " + text,
                             "<Scene " + std::string(kInstance) + " xsi:noNamespaceSchemaLocation=\"" + text + "\"/>",
                             true, true, true});
            m_all.push_back({"schema of a namespace at " + text,
                             "<Scene " + std::string(kInstance) + " xsi:schemaLocation=\"n " + text + "\"/>", true,
                             true, true});
        }
        m_all.push_back({"schema in a file",
                         "<Scene " + std::string(kInstance) + " xsi:noNamespaceSchemaLocation=\"" + m_secret + "\"/>",
                         true, false});
        Add("xinclude of a file",
            "<Scene xmlns:xi=\"http://www.w3.org/2001/XInclude\"><xi:include href=\"" + m_secret +
                "\" parse=\"text\"/></Scene>",
            true);
        Add("style sheet of a file",
            "<?xml-stylesheet href=\"" + m_secret + "\" type=\"text/xsl\"?>" + std::string(kBody), true);
        Add("base address", "<Scene xml:base=\"http://127.0.0.1:9/\"/>", true);
        Add("import of a schema within",
            "<Scene xmlns:xs=\"http://www.w3.org/2001/XMLSchema\"><xs:schema><xs:import schemaLocation=\"" + m_secret +
                "\"/></xs:schema></Scene>",
            true);
    }

    void Encodings()
    {
        std::string const body(kBody);
        for (char const* const known : {"UTF-8", "utf-8", "US-ASCII", "ISO-8859-1", "windows-1252", "UTF-7", "UTF-16"})
            Add(std::string("declared ") + known,
                "<?xml version=\"1.0\" encoding=\"" + std::string(known) + "\"?>" + body, true);
        for (char const* const other : {"no-such-encoding", "", "UTF 8", "../../x"})
            Add(std::string("declared ") + other,
                "<?xml version=\"1.0\" encoding=\"" + std::string(other) + "\"?>" + body, false);
        std::string const declared16 = "<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + body;
        Add("UTF-16, lowest byte first, with a mark", Wide(declared16, 2, 0, "\xFF\xFE"), true);
        Add("UTF-16, highest byte first, with a mark", Wide(declared16, 2, 1, "\xFE\xFF"), true);
        Add("UTF-16 with the mark of the other order", Wide(declared16, 2, 0, "\xFE\xFF"), false);
        Add("UTF-8 with a mark", "\xEF\xBB\xBF" + body, true);
        Add("UTF-8 with two marks", "\xEF\xBB\xBF\xEF\xBB\xBF" + body, false);
        Add("UTF-8 with half a mark", "\xEF\xBB" + body, false);
        std::string const declared32 = "<?xml version=\"1.0\" encoding=\"UCS-4\"?>" + body;
        Add("UCS-4, lowest byte first", Wide(declared32, 4, 0), true);
        Add("UCS-4, highest byte first", Wide(declared32, 4, 3), true);
        Add("UCS-4, in an unusual order", Wide(declared32, 4, 1), false);
        Add("UTF-16 cut within a character", Wide(declared16, 2, 0, "\xFF\xFE").substr(0, 101), false);
        Add("EBCDIC",
            "\x4C\x6F\xA7\x94\x93\x40\xA5\x85\x99\xA2\x89\x96\x95\x7E\x7F\xF1\x4B\xF0\x7F\x6F\x6E\x4C\xE2\x61\x6E",
            false);
        for (std::string const bytes :
             {"\x80", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xED\xA0\x80", "\xF0\x80\x80\x80", "\xF4\x90\x80\x80",
              "\xF8\x88\x80\x80\x80", "\xFE", "\xFF", "\xC3", "\xE2\x82", "\xEF\xBF\xBE", "\xEF\xBF\xBF"})
            Add("bytes that are no UTF-8, " + std::to_string(static_cast<unsigned char>(bytes[0])) + " of " +
                    std::to_string(bytes.size()),
                WithLabel(bytes), false);
        for (char const* const version : {"1.1", "2.0", "1", "", "1.0.0"})
            Add(std::string("version ") + version, "<?xml version=\"" + std::string(version) + "\"?>" + body,
                std::string_view(version) == "1.1");
        Add("no version", "<?xml encoding=\"UTF-8\"?>" + body, false);
        Add("a blank before the declaration", " <?xml version=\"1.0\"?>" + body, false);
        Add("two declarations", "<?xml version=\"1.0\"?><?xml version=\"1.0\"?>" + body, false);
        Add("standalone", "<?xml version=\"1.0\" standalone=\"yes\"?>" + body, true);
        Add("standalone with another word", "<?xml version=\"1.0\" standalone=\"perhaps\"?>" + body, false);
    }

    void Characters()
    {
        for (int code = 0; code < 32; ++code)
            Add("control character " + std::to_string(code), WithLabel(std::string(1, static_cast<char>(code))),
                code == '\t' || code == '\n' || code == '\r');
        Add("a NUL before the document", std::string(1, '\0') + std::string(kBody), false);
        Add("a NUL behind the document", std::string(kBody) + std::string(1, '\0'), true);
        Add("a NUL in a name", "<Sce" + std::string(1, '\0') + "ne/>", false);
        Add("the delete character", WithLabel("\x7F"), true);
        Add("controls of the second table", WithLabel("\xC2\x80\xC2\x9F"), true);
        Add("text that turns its direction", WithLabel("\xE2\x80\xAE"), true);
        Add("less-than in an attribute", WithLabel("<"), false);
        Add("escape sequences of terminals", WithLabel("[31m"), true);
    }

    void Structure()
    {
        Add("nothing", "", false);
        Add("blanks alone", "  \n", false);
        Add("no XML", "hello", false);
        Add("two roots", "<Scene/><Scene/>", false);
        Add("text behind the root", "<Scene/>x", false);
        Add("an end tag alone", "</Scene>", false);
        Add("an end tag of another name", "<Scene></scene>", false);
        Add("an attribute twice", "<Scene a=\"1\" a=\"2\"/>", false);
        Add("an attribute without quotes", "<Scene a=1/>", false);
        Add("an attribute without a value", "<Scene a/>", false);
        Add("a name that begins with a digit", "<1/>", false);
        Add("a name with many colons", "<a:b:c/>", false);
        Add("a prefix that is not declared", "<a:b/>", false);
        Add("the prefix xmlns", "<xmlns:a xmlns:xmlns=\"x\"/>", false);
        Add("an instruction that looks like an element", "<Scene><?IFile ID=\"x\" IsRoot=\"1\"?></Scene>", true);
        Add("an instruction without an end", "<Scene><?a </Scene>", false);
        Add("an instruction of the name xml", "<Scene><?xml version=\"1.0\"?></Scene>", false);
        Add("a comment with two hyphens", "<Scene><!-- -- --></Scene>", false);
        Add("a comment without an end", "<Scene><!-- </Scene>", false);
        Add("CDATA", "<Scene><![CDATA[<IFile/>]]></Scene>", true);
        Add("CDATA without an end", "<Scene><![CDATA[</Scene>", false);
        Add("the end of CDATA in a text", "<Scene>]]></Scene>", false);
        Add("CDATA in CDATA", "<Scene><![CDATA[<![CDATA[]]>]]></Scene>", false);
    }

    // A size within the limits of a host that trusts nobody, and one beyond.
    void Sizes()
    {
        auto const limited = [&](std::string name, std::string bytes) {
            m_all.push_back({std::move(name), std::move(bytes), false, true});
        };
        Add("a name of a million characters", "<" + std::string(1'000'000, 'n') + "/>", true);
        Add("a value of a million characters", WithLabel(std::string(1'000'000, 'v')), true);
        Add("a text of a million characters", "<Scene>" + std::string(1'000'000, 't') + "</Scene>", true);
        Add("a comment of a million characters", "<Scene><!--" + std::string(1'000'000, 'c') + "--></Scene>", true);
        Add("an instruction of a million characters", "<Scene><?p " + std::string(1'000'000, 'p') + "?></Scene>", true);
        Add("a hundred thousand blanks in a tag", "<Scene" + std::string(100'000, ' ') + "/>", true);
        std::string attributes;
        std::string names;
        std::string spaces;
        for (int i = 0; i < 11'000; ++i)
        {
            std::string const number = std::to_string(i);
            if (i < 1'500)
                attributes += " a" + number + "=\"\"";
            if (i < 1'500)
                spaces += " xmlns:p" + number + "=\"u" + number + "\"";
            names += "<n" + number + "/>";
        }
        limited("1,500 attributes", "<Scene" + attributes + "/>");
        limited("1,500 namespaces", "<Scene" + spaces + "/>");
        limited("11,000 names", "<Scene>" + names + "</Scene>");
        limited("11,000 levels", Times("<a>", 11'000) + Times("</a>", 11'000));
        Add("9,000 levels", Times("<a>", 9'000) + Times("</a>", 9'000), true);
        Add("15,000 levels without an end", Times("<a>", 15'000), false);
        Add("100,000 empty elements", "<Scene>" + Times("<a/>", 100'000) + "</Scene>", true);
        Add("100,000 character references", "<Scene>" + Times("&#65;", 100'000) + "</Scene>", true);
    }

    std::string m_secret;
    std::vector<XmlDocument> m_all;
};

}  // namespace

std::vector<XmlDocument> XmlDocuments(std::string const& secret)
{
    return Documents(secret).Take();
}

}  // namespace KVR::Campaigns
