#include "exchange/import/ModelSource.h"

#include <poll.h>
#include <unistd.h>
#include <zlib.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>

#include "exchange/model/ModelError.h"
#include "exchange/run/NewFile.h"

namespace KVR
{

namespace fs = std::filesystem;

namespace
{

constexpr char kStandardInput[] = "-";
constexpr int kPatience = 200;
constexpr std::size_t kBlock = std::size_t{64} * 1024;
// What a gzipped file may unpack to.
constexpr std::uintmax_t kMostTimes = 100;
constexpr std::uintmax_t kAlwaysAllowed = std::uintmax_t{16} * 1024 * 1024;

bool IsWanted(Progress const& progress)
{
    return !progress || progress({"reading", std::nullopt});
}

bool IsGzipped(std::string const& path)
{
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        return false;
    std::array<char, 3> head{};
    std::ifstream(path, std::ios::binary).read(head.data(), head.size());
    return head == std::array<char, 3>{'\x1F', '\x8B', '\x08'};
}

// That of the file in a gzipped one: "a.stp" for "a.stp.gz" and "a.stpz".
std::string UnpackedName(fs::path const& path)
{
    std::string name = path.filename().string();
    std::string const extension = path.extension().string();
    if (extension == ".gz" || extension == ".GZ")
        name = path.stem().string();
    else if (extension.size() > 1 && (extension.back() == 'z' || extension.back() == 'Z'))
        name.pop_back();
    return name;
}

}  // namespace

ModelSource::ModelSource(std::string const& path, bool isLenient, Progress const& progress)
    : m_path(path == kStandardInput ? std::string() : path), m_file(path)
{
    try
    {
        if (m_path.empty())
            ReadStandardInput(progress);
        if (!m_isCancelled && IsGzipped(m_file))
            Unpack(isLenient, progress);
    }
    catch (std::system_error const& error)
    {
        throw ModelError("it cannot be held in the folder for temporary files: " +
                         std::generic_category().message(error.code().value()));
    }
}

std::string ModelSource::Name() const
{
    return fs::path(m_file).stem().string();
}

std::string ModelSource::Folder() const
{
    return (m_path.empty() ? fs::current_path() : fs::absolute(m_path).parent_path()).string();
}

std::string ModelSource::ScratchFile(std::string const& name)
{
    if (!m_folder)
        m_folder.emplace(fs::temp_directory_path(), "kvr-import-");
    return (m_folder->Path() / name).string();
}

void ModelSource::ReadStandardInput(Progress const& progress)
{
    m_file = ScratchFile("standard input");
    NewFile file(m_file);
    std::string block(kBlock, '\0');
    for (;;)
    {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        int const ready = poll(&input, 1, kPatience);
        m_isCancelled = !IsWanted(progress);
        if (m_isCancelled)
            return;
        if (ready <= 0)
            continue;
        ssize_t const count = read(STDIN_FILENO, block.data(), block.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throw ModelError("it cannot be read: " + std::generic_category().message(errno));
        if (count == 0)
            break;
        file.Out().Put(std::string_view(block).substr(0, static_cast<std::size_t>(count)));
    }
    file.Finish();
}

void ModelSource::Unpack(bool isLenient, Progress const& progress)
{
    std::unique_ptr<gzFile_s, int (*)(gzFile)> const packed(gzopen(m_file.c_str(), "rb"), &gzclose);
    if (!packed)
        throw ModelError("it cannot be read: " + std::generic_category().message(errno));
    std::uintmax_t const most = kAlwaysAllowed + kMostTimes * fs::file_size(m_file);
    std::string const path = ScratchFile(m_path.empty() ? "standard input.unpacked" : UnpackedName(m_path));
    NewFile file(path);
    std::string block(kBlock, '\0');
    std::uintmax_t size = 0;
    bool isDamaged = false;
    for (;;)
    {
        int const count = gzread(packed.get(), block.data(), static_cast<unsigned>(block.size()));
        isDamaged = isDamaged || count < 0;
        if (count <= 0)
            break;
        size += static_cast<std::uintmax_t>(count);
        if (size > most)
            throw ModelError("it unpacks to more than 16 MiB and 100 times its size");
        file.Out().Put(std::string_view(block).substr(0, static_cast<std::size_t>(count)));
        m_isCancelled = !IsWanted(progress);
        if (m_isCancelled)
            return;
    }
    int error = Z_OK;
    gzerror(packed.get(), &error);
    isDamaged = isDamaged || (error != Z_OK && error != Z_STREAM_END);
    if (isDamaged && !isLenient)
        throw ModelError("what it holds packed is cut short or damaged");
    if (isDamaged)
        m_remark = "taken although what it holds packed is cut short or damaged";
    file.Finish();
    m_file = path;
}

}  // namespace KVR
