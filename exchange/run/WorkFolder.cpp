#include "exchange/run/WorkFolder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>
#include <vector>

namespace KVR
{

namespace fs = std::filesystem;

WorkFolder::WorkFolder(fs::path const& target) : m_target(fs::absolute(target))
{
    if (fs::is_directory(m_target))
        throw std::system_error(EISDIR, std::generic_category());
    std::string path = (m_target.parent_path() / ".kvr-XXXXXX").string();
    if (!mkdtemp(path.data()))
        throw std::system_error(errno, std::generic_category());
    m_path = path;
}

WorkFolder::~WorkFolder()
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

bool WorkFolder::Holds(fs::path const& name) const
{
    return fs::exists(m_path / name);
}

void WorkFolder::MoveIntoPlace() const
{
    std::vector<fs::path> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(m_path))
        if (entry.path().filename() != m_target.filename())
            names.push_back(entry.path().filename());
    for (fs::path const& name : names)
        fs::rename(m_path / name, m_target.parent_path() / name);
    fs::rename(Inside(), m_target);
}

}  // namespace KVR
