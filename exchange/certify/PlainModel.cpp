#include "exchange/certify/PlainModel.h"

#include <poll.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "exchange/run/NewFile.h"

namespace KVR::Certification
{

namespace
{

namespace fs = std::filesystem;

constexpr std::size_t kBlock = std::size_t{64} * 1024;
constexpr int kPatience = 200;
// What a gzipped file may unpack to.
constexpr std::uintmax_t kMostTimes = 100;
constexpr std::uintmax_t kAlwaysAllowed = std::uintmax_t{16} * 1024 * 1024;

std::string HeadOf(std::string const& path, std::size_t size)
{
    std::string head(size, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(head.data(), static_cast<std::streamsize>(size));
    head.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    return head;
}

}  // namespace

PlainModel::PlainModel(std::string const& path, fs::path const& folder, std::string const& name,
                       Progress const& progress)
    : m_progress(progress), m_given(path)
{
    if (path == "-")
        HoldStandardInput((folder / name).string());
    m_plain = m_given;
    std::error_code error;
    if (!m_isCancelled && fs::is_regular_file(m_given, error) && HeadOf(m_given, 3) == "\x1F\x8B\x08")
    {
        // "a.stp" of "a.stp.gz" and of "a.stpz".
        std::string extension = fs::path(m_given).extension().string();
        if (extension == ".gz" || extension == ".GZ")
            extension = fs::path(m_given).stem().extension().string();
        else if (extension.size() > 1 && (extension.back() == 'z' || extension.back() == 'Z'))
            extension.pop_back();
        Unpack((folder / (name + ".plain" + (path == "-" ? "" : extension))).string());
    }
    if (!m_isCancelled && path == "-")
    {
        bool const isPacked = m_plain != m_given;
        m_plain = Named(m_plain);
        m_given = isPacked ? m_given : m_plain;
    }
}

bool PlainModel::IsWanted()
{
    m_isCancelled = m_progress && !m_progress({"reading", std::nullopt});
    return !m_isCancelled;
}

void PlainModel::HoldStandardInput(std::string const& path)
{
    NewFile file(path);
    std::string block(kBlock, '\0');
    while (IsWanted())
    {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        if (poll(&input, 1, kPatience) <= 0)
            continue;
        ssize_t const count = read(STDIN_FILENO, block.data(), block.size());
        if (count < 0 && errno != EINTR)
            throw std::runtime_error(std::string("standard input cannot be read: ") + std::strerror(errno));
        if (count == 0)
            break;
        file.Out().Put(std::string_view(block).substr(0, static_cast<std::size_t>(std::max<ssize_t>(count, 0))));
    }
    file.Finish();
    m_given = path;
}

void PlainModel::Unpack(std::string const& path)
{
    std::unique_ptr<gzFile_s, int (*)(gzFile)> const packed(gzopen(m_given.c_str(), "rb"), &gzclose);
    if (!packed)
        throw std::runtime_error(m_given + ": it cannot be read: " + std::strerror(errno));
    std::uintmax_t const most = kAlwaysAllowed + kMostTimes * fs::file_size(m_given);
    NewFile file(path);
    std::string block(kBlock, '\0');
    int count = 0;
    for (std::uintmax_t size = 0;
         IsWanted() && (count = gzread(packed.get(), block.data(), static_cast<unsigned>(block.size()))) > 0;)
    {
        size += static_cast<std::uintmax_t>(count);
        if (size > most)
            throw std::runtime_error(m_given + ": it unpacks to more than 16 MiB and 100 times its size");
        file.Out().Put(std::string_view(block).substr(0, static_cast<std::size_t>(count)));
    }
    int error = Z_OK;
    gzerror(packed.get(), &error);
    if (count < 0 || (error != Z_OK && error != Z_STREAM_END))
        throw std::runtime_error(m_given + ": what it holds packed is cut short or damaged");
    file.Finish();
    m_plain = path;
}

std::string PlainModel::Named(std::string const& path)
{
    constexpr std::size_t kStlHead = 84;
    std::string const head = HeadOf(path, 512);
    auto const isBinaryStl = [&]
    {
        std::uint32_t count = 0;
        if (head.size() < kStlHead)
            return false;
        std::memcpy(&count, head.data() + kStlHead - sizeof count, sizeof count);
        return fs::file_size(path) == kStlHead + std::uintmax_t{50} * count;
    };
    char const* extension = ".obj";
    if (head.starts_with("ply"))
        extension = ".ply";
    else if ((head.starts_with("solid") && head.find("facet") != std::string::npos) || isBinaryStl())
        extension = ".stl";
    else if (head.size() > 72 && head[72] == 'S')
        extension = ".igs";
    else if (head.starts_with('{'))
        extension = ".gltf";
    fs::rename(path, path + extension);
    return path + extension;
}

}  // namespace KVR::Certification
