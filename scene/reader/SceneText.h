#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// Keeps texts in large blocks, where they stay.
class SceneText
{
public:
    /// A copy of the text, valid while this lives.
    std::string_view Keep(std::string_view text);
    std::string_view Keep(UTF8String const& text) { return Keep(text.View()); }
    /// In UTF-8.
    std::string_view Keep(UTF16String const& text);

private:
    char* Room(std::size_t size);

    std::vector<std::unique_ptr<char[]>> m_blocks;
    char* m_next = nullptr;
    std::size_t m_left = 0;
};

}  // namespace KVR
