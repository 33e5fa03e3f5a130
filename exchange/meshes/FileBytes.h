#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

namespace KVR
{

/// The bytes of a regular file. Throws ModelError.
std::string BytesOfFile(std::string const& path);

/// The file that a model names, as a path that is there: relative to the folder or as it stands, with either kind of
/// slash, or else its last part in the folder. Empty for none.
std::string FileBeside(std::string const& folder, std::string const& name);

bool IsUtf8(std::string_view bytes);

/// A number of any kind at a place, which has to be in the bytes. `isSwapped` for the other order of bytes than the
/// machine's.
template <class Number>
Number NumberAt(std::string_view bytes, std::size_t place, bool isSwapped = false)
{
    static_assert(std::is_arithmetic_v<Number>);
    char raw[sizeof(Number)];
    for (std::size_t i = 0; i < sizeof raw; ++i)
        raw[i] = bytes[place + (isSwapped ? sizeof raw - 1 - i : i)];
    Number number;
    std::memcpy(&number, raw, sizeof raw);
    return number;
}

static_assert(std::endian::native == std::endian::little, "STL and glTF files start with the lowest byte");

}  // namespace KVR
