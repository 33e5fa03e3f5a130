#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "framework/api/UTF16String.h"

namespace KVR::Fuzz
{

/// The one file of a fuzz run, in a folder of its own, rewritten for each input.
class InputFile
{
public:
    explicit InputFile(std::string const& name);
    ~InputFile();
    InputFile(InputFile const&) = delete;
    InputFile& operator=(InputFile const&) = delete;

    void Write(std::uint8_t const* data, std::size_t size) const;
    UTF16String Path() const;

private:
    std::string m_folder;
    std::string m_path;
};

}  // namespace KVR::Fuzz
