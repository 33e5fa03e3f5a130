#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Calls `check` with every proper prefix of the bytes, from the empty one up.
template <class Check>
void ForEachPrefix(std::string_view bytes, Check check)
{
    for (std::size_t length = 0; length < bytes.size(); ++length)
        check(bytes.substr(0, length));
}

/// Calls `check` with the bytes, one of them changed, and its place: every byte in turn, in four ways.
template <class Check>
void ForEachFlip(std::string_view bytes, Check check)
{
    std::string damaged(bytes);
    for (std::size_t place = 0; place < bytes.size(); ++place)
    {
        for (unsigned char const bits : {0x01, 0x20, 0x80, 0xFF})
        {
            damaged[place] = static_cast<char>(static_cast<unsigned char>(bytes[place]) ^ bits);
            check(std::string_view(damaged), place);
        }
        damaged[place] = bytes[place];
    }
}
