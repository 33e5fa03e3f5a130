#include "tests/inspect/rules/RulePages.h"

#include <gtest/gtest.h>

#include <BRep_Builder.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Shell.hxx>
#include <TopoDS_Solid.hxx>
#include <fstream>
#include <memory>
#include <regex>

#include "framework/kernel/entity.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

std::string BytesOf(std::string const& hex)
{
    std::string bytes;
    std::regex const pair("([0-9a-f]{2})\\s*");
    for (std::sregex_iterator at(hex.begin(), hex.end(), pair), end; at != end; ++at)
        bytes.push_back(static_cast<char>(std::stoi((*at)[1], nullptr, 16)));
    return bytes;
}

// The bytes of the lines "offset: bytes   words" that follow the first line with the text.
std::string DocumentedBytes(std::string const& text)
{
    std::ifstream document(KVR_DOCS_DIR "/formats.md");
    std::string line;
    while (std::getline(document, line) && line.find(text) == std::string::npos)
    {
    }
    std::regex const bytesOfLine("    [0-9a-f]{8}: ((?:[0-9a-f]{2} ?)+)(?: .*)?");
    std::string bytes;
    std::smatch found;
    while (std::getline(document, line) && (bytes.empty() || std::regex_match(line, found, bytesOfLine)))
        if (std::regex_match(line, found, bytesOfLine))
            bytes += BytesOf(found[1]);
    EXPECT_FALSE(bytes.empty()) << text;
    return bytes;
}

// Of a box's faces in one solid: all, all but the last as a sheet, or all with the last turned over.
TopoDS_Shape Box(std::string const& numbers, std::string const& how)
{
    std::smatch size;
    EXPECT_TRUE(std::regex_match(numbers, size, std::regex("([0-9.]+) by ([0-9.]+) by ([0-9.]+)"))) << numbers;
    TopoDS_Shape const box = BoxShape(std::stod(size[1]), std::stod(size[2]), std::stod(size[3]));
    if (how.empty())
        return box;
    std::vector<TopoDS_Shape> faces;
    for (TopExp_Explorer face(box, TopAbs_FACE); face.More(); face.Next())
        faces.push_back(face.Current());
    bool const isOpen = how == " without its lid";
    BRep_Builder builder;
    TopoDS_Shell shell;
    builder.MakeShell(shell);
    for (std::size_t i = 0; i + 1 < faces.size(); ++i)
        builder.Add(shell, faces[i]);
    if (isOpen)
        return shell;
    builder.Add(shell, faces.back().Reversed());
    TopoDS_Solid solid;
    builder.MakeSolid(solid);
    builder.Add(solid, shell);
    return solid;
}

std::string BodyStore(std::string const& id, TopoDS_Shape const& shape)
{
    std::vector<std::unique_ptr<ENTITY>> entities;
    entities.push_back(std::make_unique<BODY>(shape));
    entities.back()->AddDataId(id);
    return StoreBytes(entities, false);
}

// What a line says of a side file, which the test makes.
std::string BytesTold(std::string const& words)
{
    std::smatch found;
    if (std::regex_match(words, found, std::regex("(.*), its first (\\d+) bytes")))
        return BytesTold(found[1]).substr(0, std::stoul(found[2]));
    if (std::regex_match(words, found, std::regex("(.*), with `([0-9a-f ]+)` at (0x[0-9a-f]+)")))
    {
        std::string bytes = BytesTold(found[1]);
        std::string const piece = BytesOf(found[2]);
        return bytes.replace(std::stoul(found[3], nullptr, 16), piece.size(), piece);
    }
    if (std::regex_match(words, found, std::regex("(.*), and `([0-9a-f ]+)` behind it")))
        return BytesTold(found[1]) + BytesOf(found[2]);
    if (std::regex_match(words, found, std::regex("(`[a-z.]+`) of formats\\.md")))
        return DocumentedBytes(found[1]);
    if (words == "the asset of formats.md")
        return DocumentedBytes("One asset of type");
    if (std::regex_match(words, found,
                         std::regex("the body `(\\w+)`, a box of ([0-9.]+ by [0-9.]+ by [0-9.]+)"
                                    "( without its lid| with a face turned over)?")))
        return BodyStore(found[1], Box(found[2], found[3]));
    ADD_FAILURE() << "nobody knows what that is: " << words;
    return {};
}

// A line with "#" stands for as many as `count`, with numbers in its place.
std::string Repeated(std::string const& text, int count)
{
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);)
    {
        int const times = count > 0 && line.find('#') != std::string::npos ? count : 1;
        for (int i = 1; i <= times; ++i)
            result += (times > 1 ? std::regex_replace(line, std::regex("#"), std::to_string(i)) : line) + '\n';
    }
    return result;
}

class Reader
{
public:
    std::vector<RulePage> Read()
    {
        std::ifstream document(KVR_DOCS_DIR "/rules.md");
        for (std::string line; std::getline(document, line);)
            Take(document, line);
        return std::move(m_pages);
    }

private:
    void Take(std::istream& document, std::string const& line)
    {
        std::smatch found;
        if (std::regex_match(line, found, std::regex("### (K-\\d{4}) (.*)")))
        {
            m_pages.push_back({found[1], found[2], {}, {}, {}});
            m_example = {};
        }
        else if (m_pages.empty())
            return;
        else if (std::regex_match(line, found, std::regex("(Note|Warning|Error): (.*)\\.")))
        {
            m_pages.back().severity = found[1];
            m_pages.back().severity[0] = static_cast<char>(std::tolower(m_pages.back().severity[0]));
            m_pages.back().sentence = found[2];
        }
        else if (std::regex_match(line, found, std::regex("- `([\\w.]+)`: (.*)")))
            m_example.files.emplace_back(found[1], BytesTold(found[2]));
        else if (std::regex_match(line, found, std::regex("- each line with `#` stands there (\\d+) times.*")))
            m_repeats = std::stoi(found[1]);
        else if (std::regex_match(line, found, std::regex("```(xml|hex) (.*)")))
            TakeBlock(document, found[1], found[2]);
    }

    void TakeBlock(std::istream& document, std::string const& form, std::string const& name)
    {
        std::string text;
        for (std::string line; std::getline(document, line) && line != "```";)
            text += line + '\n';
        if (name != "found" && name != "clean")
        {
            m_example.files.emplace_back(name, form == "hex" ? BytesOf(text) : text);
            return;
        }
        m_example.isFound = name == "found";
        m_example.scene = Repeated(text, m_repeats);
        m_pages.back().examples.push_back(std::move(m_example));
        m_example = {};
        m_repeats = 0;
    }

    std::vector<RulePage> m_pages;
    RuleExample m_example;
    int m_repeats = 0;
};

}  // namespace

std::vector<RulePage> AllRulePages()
{
    return Reader().Read();
}

}  // namespace KVR::Test
