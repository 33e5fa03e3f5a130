#include "exchange/run/WorkFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "output/Descriptor.h"
#include "output/FolderNames.h"

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

// A file that gets another place, and what became of it.
struct Move
{
    std::string from;
    std::string to;
    /// Of one that need not be there.
    bool isOptional = false;
    enum class State
    {
        kToDo,
        kDone,
        /// Of two files that have changed places.
        kExchanged
    };
    State state = State::kToDo;

    // Takes no memory. False, with errno, when the system refuses.
    bool Do() noexcept
    {
        struct stat status = {};
        bool const isInTheWay = ::lstat(to.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
        if (isInTheWay && ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_EXCHANGE) == 0)
            state = State::kExchanged;
        // Not every file system can exchange two.
        else if (::rename(from.c_str(), to.c_str()) == 0)
            state = State::kDone;
        else
            return isOptional && errno == ENOENT;
        return true;
    }
    void Undo() const noexcept
    {
        if (state != State::kToDo)
            ::renameat2(AT_FDCWD, to.c_str(), AT_FDCWD, from.c_str(), state == State::kExchanged ? RENAME_EXCHANGE : 0);
    }
};

// All of them, or none.
void DoAll(std::vector<Move>& moves)
{
    for (std::size_t i = 0; i < moves.size(); ++i)
    {
        if (moves[i].Do())
            continue;
        int const error = errno;
        while (i-- > 0)
            moves[i].Undo();
        throw std::system_error(error, std::generic_category());
    }
}

}  // namespace

WorkFolder::WorkFolder(fs::path const& target, std::vector<std::string> sources)
    : m_target(FileToBe(target)), m_sources(std::move(sources)), m_folder(m_target.parent_path(), ".kvr-")
{
    ExpectNoSource(m_target);
}

std::vector<std::string> WorkFolder::Names() const
{
    Descriptor const folder(::open(m_folder.Path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    FolderNames found(folder);
    std::vector<std::string> names;
    while (char const* const name = found.Next())
        names.emplace_back(name);
    if (found.Error() != 0)
        throw std::system_error(found.Error(), std::generic_category());
    return names;
}

void WorkFolder::MoveIntoPlace(std::vector<std::string> const& former) const
{
    std::vector<std::string> const names = Names();
    for (std::string const& name : names)
        ExpectNoSource(m_target.parent_path() / name);
    std::vector<Move> moves;
    for (std::string const& name : former)
        moves.push_back({m_target.parent_path() / name, m_folder.Path() / name, true});
    for (std::string const& name : names)
        if (name != m_target.filename())
            moves.push_back({m_folder.Path() / name, m_target.parent_path() / name});
    moves.push_back({Inside(), m_target});
    DoAll(moves);
}

void WorkFolder::Clear() const
{
    RemoveAllIn(Descriptor(::open(m_folder.Path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
}

void WorkFolder::ExpectNoSource(fs::path const& path) const
{
    std::error_code ignored;
    for (std::string const& source : m_sources)
        if (fs::equivalent(path, source, ignored))
            throw TargetError(path.string() + ": it is " + source + ", which is being read");
}

}  // namespace KVR
