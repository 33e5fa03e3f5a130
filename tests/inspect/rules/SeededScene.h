#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "inspect/Check.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

/// A copy of an example, or what is imported of one of examples/models, in which one mistake at a time is made and
/// found.
class SeededScene
{
public:
    /// The name of a folder of examples, or of a model with its extension.
    explicit SeededScene(std::string const& name);

    std::string const& Document() const noexcept { return m_document; }
    std::string Content(std::string const& file) const;
    std::string PathOf(std::string const& file) const { return m_folder.NarrowPathOf(file); }
    std::string Name() const { return m_name + ".xml"; }

    /// What is found in the example as it is, which no other operation tells.
    std::vector<Finding> const& Known() const noexcept { return m_known; }
    /// What is found with that content in the place of a file's, which then stands there again.
    std::vector<Finding> FindingsWith(std::string const& file, std::string_view content) const;
    /// What is found without the file.
    std::vector<Finding> FindingsWithout(std::string const& file) const;

    /// Where a text stands in the document, each time.
    std::vector<std::size_t> PlacesOf(std::string_view text) const;
    /// The document with another text in the place of one so long.
    std::string Changed(std::size_t place, std::size_t length, std::string_view text) const;

private:
    std::vector<Finding> Findings() const;

    std::string m_name;
    TempFolder m_folder;
    std::string m_document;
    std::vector<Finding> m_known;
};

/// The line of a byte of a text, from 1.
std::uint64_t LineOf(std::string_view text, std::size_t place);

/// Fails the test unless the rule has a finding there; line 0 is any. All other findings are of the rules named.
void ExpectFound(std::vector<Finding> const& findings, std::string_view rule, std::string const& file,
                 std::uint64_t line, std::vector<std::string_view> const& followers, std::string const& what);

}  // namespace KVR::Test
