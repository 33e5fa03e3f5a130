#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "tests/support/TempFolder.h"

namespace KVR::Test
{

/// One of so many, from 0.
using Chance = std::function<std::size_t(std::size_t count)>;

/// A copy of an example scene that serves the same, and in which by chance all is another that may be: the order of
/// attributes, quotation marks, white space, the spelling of numbers, line ends, the encoding, and the names of the
/// scene and its side files.
class RewrittenScene
{
public:
    /// Of the scene "examples/NAME/NAME.xml".
    RewrittenScene(std::string const& name, Chance const& chance);

    std::string const& Path() const noexcept { return m_path; }

private:
    TempFolder m_folder;
    std::string m_path;
};

/// The text of a file.
std::string TextOfFile(std::filesystem::path const& path);

/// A document as text in UTF-8 that says the same: all of the above but encoding and names.
std::string Rewritten(std::string const& document, Chance const& chance);

}  // namespace KVR::Test
