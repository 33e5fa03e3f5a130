#pragma once

#include <string>
#include <utility>
#include <vector>

namespace KVR::Test
{

/// A scene of docs/rules.md.
struct RuleExample
{
    /// Whether the rule finds something in it.
    bool isFound = false;
    std::string scene;
    /// Names of side files, and their bytes.
    std::vector<std::pair<std::string, std::string>> files;
};

/// What docs/rules.md says of a rule.
struct RulePage
{
    std::string id;
    std::string name;
    std::string severity;
    std::string sentence;
    std::vector<RuleExample> examples;
};

/// All of the document, in its order. Fails the test where a side file is told in words that nobody knows.
std::vector<RulePage> AllRulePages();

}  // namespace KVR::Test
