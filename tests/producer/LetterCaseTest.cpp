// Names of elements are read as they are written: with its letters in the other case, an element is as unknown as one
// of any other name.

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/FullScene.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

// A scene with every element that is read, and its side files.
class LetterCase : public ::testing::Test
{
protected:
    LetterCase()
    {
        std::filesystem::path const folder(std::string(KVR_EXAMPLES_DIR) + "/complete");
        for (auto const& entry : std::filesystem::directory_iterator(folder))
            std::filesystem::copy(entry.path(), m_folder.NarrowPathOf(entry.path().filename().string()));
        std::ifstream file(folder / "complete.xml", std::ios::binary);
        std::ostringstream content;
        content << file.rdbuf();
        m_text = content.str();
        std::set<std::string> const ids = Found(" ID=\"([^\"]*)");
        m_ids.assign(ids.begin(), ids.end());
    }

    std::set<std::string> ElementNames() const { return Found("<([A-Za-z]+)"); }

    // What the scene answers with another name in the place of all elements of one name.
    std::string AnswersWith(std::string const& name, std::string const& other) const
    {
        std::regex const element("(</?)" + name + R"(([\s/>]))");
        XMLProducer producer(m_folder.Write("complete.xml", std::regex_replace(m_text, element, "$1" + other + "$2")),
                             nullptr);
        return Opens(producer) ? WalkScene(producer, m_ids).text : "cannot be opened";
    }

private:
    std::set<std::string> Found(char const* pattern) const
    {
        std::regex const wanted(pattern);
        std::set<std::string> found;
        for (std::sregex_iterator at(m_text.begin(), m_text.end(), wanted), end; at != end; ++at)
            found.insert((*at)[1]);
        return found;
    }

    TempFolder m_folder;
    std::string m_text;
    std::vector<std::string> m_ids;
};

std::string InOtherCase(std::string name)
{
    for (char& c : name)
        c = static_cast<char>(std::islower(static_cast<unsigned char>(c)) ? std::toupper(c) : std::tolower(c));
    return name;
}

}  // namespace

TEST_F(LetterCase, CountsInTheNamesOfAllElementsButTwo)
{
    std::set<std::string> const names = ElementNames();
    ASSERT_GT(names.size(), 100u);
    for (std::string const& name : names)
    {
        // Kept: these two are matched in any case by an owner each.
        bool const isAnyCase = name == "ViewData" || name == "BaseOccPaths";
        EXPECT_EQ(AnswersWith(name, InOtherCase(name)) != AnswersWith(name, "Unknown"), isAnyCase) << name;
    }
}

}  // namespace KVR::Test
