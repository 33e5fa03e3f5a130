#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

#include "output/Output.h"

namespace KVR
{

/// A new file that is there whole or not at all: one that is not finished goes with the object. Operations throw
/// std::system_error.
class NewFile
{
public:
    /// What was there is replaced.
    explicit NewFile(std::string const& path);
    ~NewFile();
    NewFile(NewFile const&) = delete;
    NewFile& operator=(NewFile const&) = delete;

    Output& Out() noexcept { return m_out; }
    /// The bytes of a value as they are in memory.
    template <class Value>
    void Put(Value const& value)
    {
        static_assert(std::is_trivially_copyable_v<Value>);
        m_out.Put({reinterpret_cast<char const*>(&value), sizeof value});
    }
    /// Writes over what stands at a place.
    void Patch(std::size_t place, std::string_view bytes);
    /// Writes what is held back, and closes the file: only this tells that all of it arrived.
    void Finish();

private:
    std::string m_path;
    int m_descriptor;
    Output m_out;
};

}  // namespace KVR
