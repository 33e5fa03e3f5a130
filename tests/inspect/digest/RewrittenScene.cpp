#include "tests/inspect/digest/RewrittenScene.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <utility>
#include <vector>

#include "tests/inspect/document/SceneTags.h"

namespace KVR::Test
{

namespace
{

using std::filesystem::path;

std::string Blank(Chance const& chance)
{
    static constexpr std::array<char const*, 4> kBlanks{" ", "\n   ", "\t", "  \n"};
    return kBlanks[chance(kBlanks.size())];
}

// A decimal number in another spelling.
std::string Respelt(std::string const& number, Chance const& chance)
{
    bool const hasPoint = number.find('.') != std::string::npos;
    switch (chance(5))
    {
        case 0:
            return number[0] == '-' ? number : "+" + number;
        case 1:
            return number + (hasPoint ? "00" : ".0");
        case 2:
            return number + "E+0";
        case 3:
            return number[0] == '-' ? "-00" + number.substr(1) : "0" + number;
        default:
            return number;
    }
}

bool IsDecimal(std::string const& name)
{
    static std::set<std::string> const kNames{"X",
                                              "Y",
                                              "Z",
                                              "FractionRed",
                                              "FractionGreen",
                                              "FractionBlue",
                                              "ColorFactor",
                                              "Transparency",
                                              "LinearTolerance",
                                              "AspectRatio",
                                              "Rolloff",
                                              "RotateAngle"};
    return kNames.contains(name);
}

bool IsDecimalList(std::string const& name)
{
    return name == "Transform" || name == "Transformation" || name == "PointCloudCoordinates";
}

std::string RespeltList(std::string const& numbers, Chance const& chance)
{
    std::istringstream stream(numbers);
    std::string text;
    for (std::string number; stream >> number;)
        text += (text.empty() ? "" : Blank(chance)) + Respelt(number, chance);
    return text;
}

std::string Value(TagAttribute const& attribute, Chance const& chance)
{
    if (IsDecimal(attribute.name))
        return Respelt(attribute.value, chance);
    return IsDecimalList(attribute.name) ? RespeltList(attribute.value, chance) : attribute.value;
}

std::string TagText(SceneTag const& tag, Chance const& chance)
{
    std::string text = "<" + tag.name;
    std::vector<TagAttribute> attributes = tag.attributes;
    for (std::size_t i = attributes.size(); i > 1; --i)
        std::swap(attributes[i - 1], attributes[chance(i)]);
    for (TagAttribute const& attribute : attributes)
    {
        bool const hasApostrophe = attribute.value.find('\'') != std::string::npos;
        char const quote = hasApostrophe || chance(2) == 0 ? '"' : '\'';
        std::string const equals = chance(3) == 0 ? " = " : "=";
        text += Blank(chance) + attribute.name + equals + quote + Value(attribute, chance) + quote;
    }
    text += chance(2) == 0 ? "" : " ";
    return text + (tag.isEmpty ? "/>" : ">");
}

bool IsBlank(std::string const& text)
{
    return text.find_first_not_of(" \t\r\n") == std::string::npos;
}

std::string InUtf16(std::string const& text)
{
    std::string units = "\xff\xfe";
    for (char const byte : text)
        units.append({byte, '\0'});
    return units;
}

// The document in an encoding of its own; other texts than ASCII stay as they are.
std::string Encoded(std::string text, Chance const& chance)
{
    static std::regex const kDeclaration(R"(encoding="[^"]*")");
    bool const isAscii = std::all_of(text.begin(), text.end(), [](char byte) { return byte >= 0; });
    std::size_t const encoding = isAscii ? chance(3) : 0;
    if (encoding == 1)
        return InUtf16(std::regex_replace(text, kDeclaration, R"(encoding="UTF-16")"));
    if (encoding == 2)
        return std::regex_replace(text, kDeclaration, R"(encoding="ISO-8859-1")");
    return chance(2) == 0 ? "\xef\xbb\xbf" + text : text;
}

std::string ReplacedAll(std::string text, std::string const& what, std::string const& by)
{
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
    return text;
}

}  // namespace

std::string TextOfFile(path const& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string Rewritten(std::string const& document, Chance const& chance)
{
    std::string text;
    std::size_t behind = 0;
    std::string before;
    for (SceneTag const& tag : TagsOf(document))
    {
        std::string const between = document.substr(behind, tag.begin - behind);
        bool const isDeclaration = behind == 0;
        // White space stays a part of texts; between tags it is nobody's.
        text += isDeclaration || !IsBlank(between) ? between : chance(2) == 0 ? between : Blank(chance);
        text += TagText(tag, chance);
        behind = tag.end;
        if (!tag.isEmpty && IsDecimalList(tag.name))
        {
            text += RespeltList(document.substr(tag.end, tag.endTag - tag.end), chance);
            behind = tag.endTag;
        }
    }
    text += document.substr(behind);
    return chance(2) == 0 ? text : ReplacedAll(text, "\n", chance(2) == 0 ? "\r\n" : "\r");
}

RewrittenScene::RewrittenScene(std::string const& name, Chance const& chance)
{
    std::string const newName = "a" + std::to_string(chance(1000));
    path const folder = path(KVR_EXAMPLES_DIR) / name;
    for (auto const& entry : std::filesystem::directory_iterator(folder))
    {
        std::string const file = entry.path().filename().string();
        std::string const extension = file.starts_with(name + ".") ? file.substr(name.size()) : std::string();
        if (extension.empty() || extension == ".dump.json")
            continue;
        std::string text = TextOfFile(entry.path());
        bool const isXml = extension.ends_with("xml") || extension == ".kvrproperty";
        // Files that the scene names have another name, too; the property file bears the scene's.
        if (isXml)
            text = Encoded(ReplacedAll(Rewritten(text, chance), name + ".", newName + "."), chance);
        std::ofstream(path(m_folder.NarrowPathOf(newName + extension)), std::ios::binary) << text;
    }
    m_path = m_folder.NarrowPathOf(newName + ".xml");
}

}  // namespace KVR::Test
