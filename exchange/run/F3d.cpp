#include "exchange/run/F3d.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

extern char** environ;

namespace KVR
{

bool RunF3d(std::vector<std::string> const& arguments)
{
    // "timeout" bounds it, and ends what it started.
    std::vector<std::string> words{"timeout", "120"};
    if (!std::getenv("DISPLAY"))
        words.insert(words.end(), {"xvfb-run", "-a"});
    // What the user has set for a viewer of theirs counts for nothing.
    words.insert(words.end(), {"f3d", "--quiet", "--dry-run"});
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    int error = 0;
    for (int const stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        error = error != 0 ? error : posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    pid_t process = 0;
    if (error == 0)
        error = posix_spawnp(&process, pointers[0], &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    while (error == 0 && waitpid(process, &status, 0) < 0 && errno == EINTR)
    {
    }
    return error == 0 && status == 0;
}

}  // namespace KVR
