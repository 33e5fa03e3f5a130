#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inspect/Check.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

/// A scene in a folder of its own, checked.
class CheckedText
{
public:
    /// Options may be null.
    explicit CheckedText(std::string_view xml, CheckOptions const* options = nullptr);

    CheckResult const& Result() const { return m_result; }
    std::string const& Path() const { return m_path; }
    /// The findings of the rules K-01nn and K-02nn as "K-0102 at 3: Foo", in their order.
    std::vector<std::string> Findings() const;
    /// The one finding of that rule; fails the test when there is not exactly one.
    Finding Only(std::string_view rule) const;

private:
    TempFolder m_folder;
    std::string m_path;
    CheckResult m_result;
};

/// "K-0102 at 3: Foo".
std::string BriefText(Finding const& finding);

/// The ids of the rules on documents, for checks that look for nothing else.
std::vector<std::string> DocumentRuleIds();

/// What a file holds; throws std::runtime_error when it cannot be read.
std::string BytesOf(std::string const& path);
void WriteBytes(std::string const& path, std::string_view bytes);

/// The text with the finding's repair; throws std::runtime_error when it has none.
std::string Repaired(std::string text, Finding const& finding);

/// A scene of one file and one part, with these elements behind the part and in it.
std::string SceneOf(std::string_view inPart, std::string_view underRoot = {});

}  // namespace KVR::Test
