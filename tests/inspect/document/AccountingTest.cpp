// Accounts: what was seen is what became of it, whatever the scene.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include "tests/inspect/document/CheckedText.h"
#include "tests/support/SanitizedBuild.h"

namespace KVR::Test
{

namespace
{

namespace fs = std::filesystem;

CheckOptions AccountOptions()
{
    CheckOptions options;
    options.account = true;
    // Findings are others' affair here.
    options.rules = {"K-0101"};
    return options;
}

// Whether all accounts agree; fails the test where one does not.
bool Agrees(std::string const& path, std::string const& name)
{
    CheckResult const result = CheckScene(path, AccountOptions());
    EXPECT_TRUE(!result.accounts.empty() || !result.findings.empty()) << name;
    for (Account const& account : result.accounts)
    {
        EXPECT_TRUE(account.Agrees()) << name << ", " << account.file << ": " << account.seen << " seen, "
                                      << account.served << " served, " << account.defaulted << " with a default, "
                                      << account.Dropped() << " dropped, " << account.unread << " unread";
        if (!account.Agrees())
            return false;
    }
    return true;
}

// How many mutants are tried: 10,000 of them, which take a minute, on demand.
unsigned MutantCount()
{
    char const* const wanted = std::getenv("KVR_ACCOUNT_MUTANTS");
    return wanted ? static_cast<unsigned>(std::strtoul(wanted, nullptr, 10)) : kIsSanitized ? 60 : 600;
}

// Changes a text somewhere: a byte, a piece that goes, comes again or moves.
std::string Mutated(std::string text, std::mt19937& random)
{
    auto const below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % (limit + 1)); };
    std::size_t const at = below(text.size() - 1);
    std::size_t const length = below(std::min<std::size_t>(200, text.size() - at));
    std::string const piece = text.substr(at, length);
    switch (random() % 5)
    {
        case 0:
            text[at] = static_cast<char>(random());
            break;
        case 1:
            text.erase(at, length);
            break;
        case 2:
            text.insert(at, piece);
            break;
        case 3:
            text.insert(below(text.size()), piece);
            break;
        default:
            text[at] = "0123456789<>\"=/ aA"[random() % 18];
            break;
    }
    return text;
}

// Takes the element that stands at a place somewhere else, which leaves a document that is one.
std::string Moved(std::string text, std::mt19937& random)
{
    std::size_t const from = text.find('<', random() % text.size());
    std::size_t const end = from == std::string::npos ? from : text.find("/>", from);
    if (end == std::string::npos || text.find_first_of("<>", from + 1) < end)
        return Mutated(std::move(text), random);
    std::string const element = text.substr(from, end + 2 - from);
    if (random() % 2 == 0)
        text.erase(from, element.size());
    std::size_t const to = text.find('<', text.find('>', random() % text.size()));
    if (to != std::string::npos)
        text.insert(to, element);
    return text;
}

// A copy of the complete example.
class CompleteCopy
{
public:
    CompleteCopy()
    {
        for (auto const& entry : fs::directory_iterator(std::string(KVR_EXAMPLES_DIR) + "/complete"))
            fs::copy(entry.path(), fs::path(m_folder.Path()) / entry.path().filename());
    }

    std::string PathOf(std::string const& name) const { return m_folder.Path() + "/" + name; }

private:
    TempFolder m_folder;
};

}  // namespace

TEST(Accounting, CountsWhatASceneHoldsAndWhatBecameOfIt)
{
    CheckOptions const options = AccountOptions();
    CheckedText const checked(SceneOf("<ChangeKey Zorgle='1'>k</ChangeKey><Zorgle a='1'/>\n"
                                      "<ChildSet><IPoint ID='q' Label=''><Point X='1' Y='2' Z='x'/></IPoint>"
                                      "<IPoint ID='q' Label=''/></ChildSet>"),
                              &options);
    ASSERT_EQ(checked.Result().accounts.size(), 1U);
    Account const& account = checked.Result().accounts.front();
    EXPECT_EQ(account.seen, 27U);
    EXPECT_EQ(account.unread, 3U) << "an attribute, an element and its attribute";
    EXPECT_EQ(account.defaulted, 1U) << "Z";
    EXPECT_EQ(account.served, 23U);
    EXPECT_TRUE(account.Agrees());
}

TEST(Accounting, SaysByWhichRuleSomethingWasDropped)
{
    CheckOptions const options = AccountOptions();
    CheckedText const checked(SceneOf("<ChildSet><ISketch ID='s' Label=''/><IPoint ID='q' Label=''/></ChildSet>"),
                              &options);
    ASSERT_EQ(checked.Result().accounts.size(), 1U);
    Account const& account = checked.Result().accounts.front();
    ASSERT_EQ(account.dropped.size(), 2U);
    EXPECT_EQ(account.dropped[0].first->id, "K-0107");
    EXPECT_EQ(account.dropped[0].second, 3U) << "the sketch and its attributes";
    EXPECT_EQ(account.dropped[1].first->id, "K-0108");
    EXPECT_EQ(account.dropped[1].second, 3U) << "what stands behind it";
    EXPECT_TRUE(account.Agrees());
}

TEST(Accounting, AgreesOnEveryExampleAndSeed)
{
    for (fs::path const& root : {fs::path(KVR_EXAMPLES_DIR), fs::path(KVR_EXAMPLES_DIR).parent_path() / "fuzz/seeds"})
    {
        for (auto const& entry : fs::recursive_directory_iterator(root))
        {
            if (entry.path().extension() != ".xml")
                continue;
            EXPECT_TRUE(Agrees(entry.path().string(), entry.path().string()));
        }
    }
}

TEST(Accounting, AgreesOnEverySeedOfASideFile)
{
    struct Place
    {
        char const* seeds;
        char const* file;
    };
    constexpr Place kPlaces[] = {
        {"kvr_fuzz_assets", "complete.assets"},          {"kvr_fuzz_persistent_ids", "complete.ids.xml"},
        {"kvr_fuzz_properties", "complete.kvrproperty"}, {"kvr_fuzz_store_geometry_info", "complete.geometry"},
        {"kvr_fuzz_store_mesh_info", "complete.mesh"},   {"kvr_fuzz_store_segments", "complete.seg"},
        {"kvr_fuzz_store_kernel", "complete.sab"},
    };
    fs::path const seeds = fs::path(KVR_EXAMPLES_DIR).parent_path() / "fuzz/seeds";
    for (Place const& place : kPlaces)
    {
        CompleteCopy const copy;
        for (auto const& entry : fs::directory_iterator(seeds / place.seeds))
        {
            WriteBytes(copy.PathOf(place.file), BytesOf(entry.path().string()));
            EXPECT_TRUE(Agrees(copy.PathOf("complete.xml"), entry.path().string()));
        }
    }
}

TEST(Accounting, AgreesOnMutantsOfADocument)
{
    CompleteCopy const copy;
    std::string const path = copy.PathOf("complete.xml");
    std::string const text = BytesOf(path);
    std::mt19937 random(20240301);
    for (unsigned i = 0, count = MutantCount() / 2; i < count; ++i)
    {
        WriteBytes(path, i % 2 == 0 ? Mutated(text, random) : Moved(text, random));
        ASSERT_TRUE(Agrees(path, "mutant " + std::to_string(i)));
    }
}

TEST(Accounting, AgreesOnMutantsOfSideFiles)
{
    CompleteCopy const copy;
    std::mt19937 random(20240302);
    std::string const names[] = {"complete.mesh", "complete.geometry",    "complete.seg",     "complete.assets",
                                 "complete.sab",  "complete.kvrproperty", "complete.ids.xml", "complete.sat"};
    for (unsigned i = 0, count = MutantCount() / 2; i < count; ++i)
    {
        std::string const path = copy.PathOf(names[i % std::size(names)]);
        std::string const bytes = BytesOf(path);
        WriteBytes(path, Mutated(bytes, random));
        ASSERT_TRUE(Agrees(copy.PathOf("complete.xml"), path + ", mutant " + std::to_string(i)));
        WriteBytes(path, bytes);
    }
}

}  // namespace KVR::Test
