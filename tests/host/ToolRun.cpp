#include "tests/host/ToolRun.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

std::string Content(std::string const& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

pid_t Start(std::vector<std::string> const& arguments, int out, int error)
{
    std::vector<std::string> words = {KVR_TOOL};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_t const child = ::fork();
    if (child != 0)
        return child;
    ::dup2(out, STDOUT_FILENO);
    ::dup2(error, STDERR_FILENO);
    ::execv(KVR_TOOL, pointers.data());
    ::_exit(127);
}

int StatusOf(int status)
{
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

ToolRun RunTool(std::vector<std::string> const& arguments)
{
    TempFolder folder;
    std::string const outPath = folder.NarrowPathOf("out");
    std::string const errorPath = folder.NarrowPathOf("error");
    int const out = ::open(outPath.c_str(), O_WRONLY | O_CREAT, 0600);
    int const error = ::open(errorPath.c_str(), O_WRONLY | O_CREAT, 0600);
    pid_t const child = Start(arguments, out, error);
    ::close(out);
    ::close(error);
    int status = 0;
    struct rusage usage = {};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child)
        throw std::runtime_error("the program could not be run");
    return {StatusOf(status), Content(outPath), Content(errorPath), usage.ru_maxrss};
}

int RunToolWithoutReader(std::vector<std::string> const& arguments)
{
    int ends[2];
    if (::pipe(ends) != 0)
        throw std::runtime_error("no pipe");
    ::close(ends[0]);
    pid_t const child = Start(arguments, ends[1], STDERR_FILENO);
    ::close(ends[1]);
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child)
        throw std::runtime_error("the program could not be run");
    return StatusOf(status);
}

}  // namespace KVR::Test
