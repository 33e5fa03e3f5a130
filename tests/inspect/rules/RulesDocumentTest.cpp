// docs/rules.md: each rule is there as it is, and finds something in the one scene and nothing in the other.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "inspect/Check.h"
#include "tests/inspect/rules/RulePages.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

std::vector<std::string> RulesFoundIn(RuleExample const& example)
{
    TempFolder folder;
    folder.Write("scene.xml", example.scene);
    for (auto const& [name, bytes] : example.files)
        folder.Write(name, bytes);
    std::vector<std::string> rules;
    for (Finding const& finding : CheckScene(folder.NarrowPathOf("scene.xml")).findings)
        rules.emplace_back(finding.rule->id);
    return rules;
}

}  // namespace

TEST(RulesDocument, HasEachRuleOnceInOrderAndAsItIs)
{
    std::vector<RulePage> const pages = AllRulePages();
    ASSERT_EQ(pages.size(), AllRules().size());
    for (std::size_t i = 0; i < pages.size(); ++i)
    {
        EXPECT_EQ(pages[i].id, AllRules()[i].id);
        EXPECT_EQ(pages[i].name, AllRules()[i].name);
        EXPECT_EQ(pages[i].severity, TextOf(AllRules()[i].severity)) << pages[i].id;
        EXPECT_EQ(pages[i].sentence, AllRules()[i].sentence) << pages[i].id;
    }
}

TEST(RulesDocument, EachRuleFindsSomethingInTheOneSceneAndNothingIsFoundInTheOther)
{
    for (RulePage const& page : AllRulePages())
    {
        ASSERT_EQ(page.examples.size(), 2U) << page.id;
        ASSERT_TRUE(page.examples[0].isFound && !page.examples[1].isFound) << page.id;
        std::vector<std::string> const found = RulesFoundIn(page.examples[0]);
        EXPECT_EQ(std::count(found.begin(), found.end(), page.id) > 0, true)
            << page.id << " finds nothing in\n"
            << page.examples[0].scene << testing::PrintToString(found);
        EXPECT_EQ(RulesFoundIn(page.examples[1]), std::vector<std::string>()) << page.id << ": clean scene\n"
                                                                              << page.examples[1].scene;
    }
}

TEST(RulesDocument, ARuleIsFoundByItsIdAndItsName)
{
    for (Rule const& rule : AllRules())
    {
        EXPECT_EQ(FindRule(rule.id), &rule);
        EXPECT_EQ(FindRule(rule.name), &rule);
    }
    EXPECT_EQ(FindRule("K-0000"), nullptr);
}

}  // namespace KVR::Test
