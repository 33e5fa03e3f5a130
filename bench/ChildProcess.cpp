#include "bench/ChildProcess.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace KVR::Bench
{

namespace
{

constexpr char const* kFailureMark = "!";

// A line per figure, or the mark and a message.
std::string Answer(std::function<Figures()> const& work)
{
    std::ostringstream out;
    out.precision(17);
    try
    {
        for (auto const& [name, value] : work())
            out << name << ' ' << value << '\n';
    }
    catch (std::exception const& exception)
    {
        out.str(std::string(kFailureMark) + exception.what());
    }
    return out.str();
}

[[noreturn]] void RunChild(int pipe, std::function<Figures()> const& work)
{
    std::string const answer = Answer(work);
    bool const isWritten = write(pipe, answer.data(), answer.size()) == static_cast<ssize_t>(answer.size());
    // No destructors and no exit handlers: they are the parent's.
    _exit(isWritten ? 0 : 1);
}

std::string ReadAll(int pipe)
{
    std::string text;
    char buffer[4096];
    for (ssize_t got; (got = read(pipe, buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(got));
    return text;
}

}  // namespace

Figures InChildProcess(std::function<Figures()> const& work)
{
    int ends[2];
    if (pipe(ends) != 0)
        throw std::runtime_error("Cannot make a pipe");
    std::fflush(nullptr);
    pid_t const child = fork();
    if (child < 0)
        throw std::runtime_error("Cannot start a process");
    if (child == 0)
    {
        close(ends[0]);
        RunChild(ends[1], work);
    }
    close(ends[1]);
    std::string const text = ReadAll(ends[0]);
    close(ends[0]);
    int status = 0;
    if (waitpid(child, &status, 0) != child || status != 0)
        throw std::runtime_error("A measurement's process ended early");
    if (text.starts_with(kFailureMark))
        throw std::runtime_error(text.substr(1));
    std::istringstream in(text);
    Figures figures;
    std::string name;
    for (double value = 0.0; in >> name >> value;)
        figures[name] = value;
    return figures;
}

void DoInChildProcess(std::function<void()> const& work)
{
    InChildProcess(
        [&]
        {
            work();
            return Figures();
        });
}

double PeakResidentBytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024.0;
}

double ResidentBytes()
{
    std::ifstream statm("/proc/self/statm");
    double pages = 0.0;
    double residentPages = 0.0;
    if (!(statm >> pages >> residentPages))
        throw std::runtime_error("The size of the process cannot be read");
    return residentPages * static_cast<double>(sysconf(_SC_PAGESIZE));
}

}  // namespace KVR::Bench
