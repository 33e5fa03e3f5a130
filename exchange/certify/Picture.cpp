#include "exchange/certify/Picture.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

extern char** environ;

namespace KVR::Certification
{

std::string PictureOf(std::string const& model, std::string const& target)
{
    // "timeout" bounds it, and ends what it started.
    std::vector<std::string> words{"timeout", "120"};
    if (!std::getenv("DISPLAY"))
        words.insert(words.end(), {"xvfb-run", "-a"});
    words.insert(words.end(), {"f3d", "--quiet", "--up=+Z", "--resolution=640,480", "--output=" + target, model});
    if (model.size() > 4 && (model.ends_with(".glb") || model.ends_with("gltf")))
        words[words.size() - 4] = "--up=+Y";
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (int const stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    pid_t process = 0;
    int const error = posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    while (error == 0 && waitpid(process, &status, 0) < 0 && errno == EINTR)
    {
    }
    if (error != 0 || status != 0)
        return {};
    std::ifstream file(target, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace KVR::Certification
