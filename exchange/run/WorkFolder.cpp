#include "exchange/run/WorkFolder.h"

#include <cerrno>
#include <system_error>
#include <vector>

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
    std::vector<fs::path> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(m_folder.Path()))
        if (entry.path().filename() != m_target.filename())
            names.push_back(entry.path().filename());
    for (fs::path const& name : names)
        fs::rename(m_folder.Path() / name, m_target.parent_path() / name);
    fs::rename(Inside(), m_target);
}

}  // namespace KVR
