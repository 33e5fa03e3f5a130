#include "exchange/run/WorkFolder.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace KVR
{

namespace fs = std::filesystem;

namespace
{

// A folder cannot be replaced by a file, which is better known before the work than after it.
fs::path FileToBe(fs::path const& target)
{
    fs::path path = fs::absolute(target);
    if (fs::is_directory(path))
        throw std::system_error(EISDIR, std::generic_category());
    return path;
}

}  // namespace

WorkFolder::WorkFolder(fs::path const& target, std::vector<std::string> sources)
    : m_target(FileToBe(target)), m_sources(std::move(sources)), m_folder(m_target.parent_path(), ".kvr-")
{
    ExpectNoSource(m_target);
}

std::vector<std::string> WorkFolder::Names() const
{
    std::vector<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(m_folder.Path()))
        names.push_back(entry.path().filename().string());
    return names;
}

void WorkFolder::MoveIntoPlace() const
{
    std::vector<std::string> const names = Names();
    for (std::string const& name : names)
        ExpectNoSource(m_target.parent_path() / name);
    for (std::string const& name : names)
        if (name != m_target.filename())
            fs::rename(m_folder.Path() / name, m_target.parent_path() / name);
    fs::rename(Inside(), m_target);
}

void WorkFolder::Clear() const
{
    for (std::string const& name : Names())
        fs::remove(m_folder.Path() / name);
}

void WorkFolder::ExpectNoSource(fs::path const& path) const
{
    std::error_code ignored;
    for (std::string const& source : m_sources)
        if (fs::equivalent(path, source, ignored))
            throw TargetError(path.string() + ": it is " + source + ", which is being read");
}

}  // namespace KVR
