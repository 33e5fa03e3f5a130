// The program kvr: a host that reads a scene through the installed interfaces and shows what it is served. What
// imports, exports and compares models goes on in a program of its own, in the same process: the libraries that these
// need take longer to load than most scenes to read.

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "host/Command.h"
#include "host/Commands.h"
#include "host/ExitStatus.h"
#include "host/Program.h"
#include "host/Signals.h"
#include "host/StandardStreams.h"

namespace
{

// The help, and what is no command, belong to the program that has all of them.
bool IsForScenes(int argc, char** argv)
{
    return argc > 1 && (KVR::IsSceneCommand(argv[1]) || std::string_view(argv[1]) == "--version");
}

// Becomes the program that has all commands. Returns only when there is none.
std::string BecomeWhole(char** argv)
{
    std::error_code error;
    std::filesystem::path const self = std::filesystem::read_symlink("/proc/self/exe", error);
    std::filesystem::path const whole = self.parent_path() / KVR_WHOLE_PROGRAM;
    if (!error)
        execv(whole.c_str(), argv);
    return whole.string() + ": " + std::strerror(errno);
}

#ifdef KVR_ENDS_AT_ONCE
// A scene of a million objects takes a twentieth of the time of its reading to be freed one by one.
void EndAtOnce(int status)
{
    KVR::EndBySignal();
    std::fflush(nullptr);
    _exit(status);
}
#else
constexpr KVR::AtEnd EndAtOnce = nullptr;
#endif

}  // namespace

int main(int argc, char** argv)
{
    if (!IsForScenes(argc, argv))
    {
        KVR::Complain(BecomeWhole(argv));
        return KVR::kExit_Failed;
    }
    KVR::PrepareStandardStreams();
    int const status = KVR::RunProgram(argc, argv, &KVR::SceneCommands, EndAtOnce);
    KVR::EndBySignal();
    return status;
}
