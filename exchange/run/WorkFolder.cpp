#include "exchange/run/WorkFolder.h"

#include <cerrno>
#include <system_error>

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

WorkFolder::WorkFolder(fs::path const& target) : m_target(FileToBe(target)), m_folder(m_target.parent_path(), ".kvr-")
{
}

bool WorkFolder::Holds(fs::path const& name) const
{
    return fs::exists(m_folder.Path() / name);
}

void WorkFolder::MoveIntoPlace() const
{
    for (fs::path const& name : m_folder.Names())
        if (name != m_target.filename())
            fs::rename(m_folder.Path() / name, m_target.parent_path() / name);
    fs::rename(Inside(), m_target);
}

}  // namespace KVR
