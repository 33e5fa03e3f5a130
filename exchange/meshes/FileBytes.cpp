#include "exchange/meshes/FileBytes.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>

#include "exchange/model/ModelError.h"

namespace KVR
{

namespace fs = std::filesystem;

std::string BytesOfFile(std::string const& path)
{
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        throw ModelError("there is no such file");
    std::ifstream file(path, std::ios::binary);
    std::string bytes(fs::file_size(path, error), '\0');
    if (!file || error)
        throw ModelError(std::string("it cannot be read: ") + std::strerror(errno));
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

std::string FileBeside(std::string const& folder, std::string const& name)
{
    std::string slashes = name;
    std::replace(slashes.begin(), slashes.end(), '\\', '/');
    std::error_code error;
    for (fs::path const& path :
         {fs::path(folder) / name, fs::path(folder) / slashes, fs::path(folder) / fs::path(slashes).filename()})
        if (!name.empty() && fs::is_regular_file(path, error))
            return path.string();
    return {};
}

bool IsUtf8(std::string_view bytes)
{
    for (std::size_t i = 0; i < bytes.size();)
    {
        auto const first = static_cast<unsigned char>(bytes[i++]);
        std::size_t const more = first < 0x80       ? 0
                                 : first >> 5 == 6  ? 1
                                 : first >> 4 == 14 ? 2
                                 : first >> 3 == 30 ? 3
                                                    : 4;
        if (more > 3 || bytes.size() - i < more || (more == 1 && first < 0xC2))
            return false;
        std::uint32_t code = more == 0 ? first : first & (0x3Fu >> more);
        for (std::size_t end = i + more; i < end; ++i)
        {
            if ((static_cast<unsigned char>(bytes[i]) & 0xC0) != 0x80)
                return false;
            code = code << 6 | (static_cast<unsigned char>(bytes[i]) & 0x3Fu);
        }
        if ((more == 2 && (code < 0x800 || (code >= 0xD800 && code < 0xE000))) ||
            (more == 3 && (code < 0x10000 || code > 0x10FFFF)))
            return false;
    }
    return true;
}

}  // namespace KVR
