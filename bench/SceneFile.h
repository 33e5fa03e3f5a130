#pragma once

#include <fmt/format.h>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace KVR::Bench
{

/// A scene file that is written through a buffer. Every operation throws std::runtime_error when the disk does not take
/// it; without Close the file is unfinished.
class SceneFile
{
public:
    explicit SceneFile(std::filesystem::path const& path) : m_file(std::fopen(path.c_str(), "wb"))
    {
        if (!m_file)
            throw std::runtime_error("Cannot write " + path.string());
    }
    ~SceneFile()
    {
        if (m_file)
            std::fclose(m_file);
    }
    SceneFile(SceneFile const&) = delete;
    SceneFile& operator=(SceneFile const&) = delete;

    template <class... Values>
    void Put(fmt::format_string<Values...> format, Values&&... values)
    {
        fmt::format_to(std::back_inserter(m_buffer), format, std::forward<Values>(values)...);
        if (m_buffer.size() >= kFull)
            Flush();
    }
    void Close()
    {
        Flush();
        if (std::fclose(std::exchange(m_file, nullptr)) != 0)
            throw std::runtime_error("Cannot write the scene");
    }

private:
    static constexpr std::size_t kFull = 1 << 16;

    void Flush()
    {
        if (std::fwrite(m_buffer.data(), 1, m_buffer.size(), m_file) != m_buffer.size())
            throw std::runtime_error("Cannot write the scene");
        m_buffer.clear();
    }

    std::FILE* m_file;
    fmt::memory_buffer m_buffer;
};

}  // namespace KVR::Bench
