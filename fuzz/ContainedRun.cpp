#include "fuzz/ContainedRun.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

// Which of these there are depends on the sanitizers and the fuzzer. The first two are the counters of the edges of
// this program, for libFuzzer.
extern "C" [[gnu::weak, gnu::visibility("hidden")]] std::uint8_t __start___sancov_cntrs[];
extern "C" [[gnu::weak, gnu::visibility("hidden")]] std::uint8_t __stop___sancov_cntrs[];
extern "C" [[gnu::weak]] void __asan_set_error_report_callback(void (*callback)(char const*));
extern "C" [[gnu::weak]] void __sanitizer_set_death_callback(void (*callback)());

// Frames then tell of their modules, which is what is asked of them here, and a crash does not wait for names.
extern "C" char const* __asan_default_options()
{
    return "symbolize=0";
}

namespace KVR::Fuzz
{

namespace
{

// Good inputs take a fraction of a second.
constexpr unsigned kSeconds = 5;
constexpr std::size_t kReport = 8000;

// What a child tells without the protocol. Its counters follow it.
struct Shared
{
    bool isDead;
    char report[kReport];

    std::uint8_t* Counters() noexcept { return reinterpret_cast<std::uint8_t*>(this + 1); }
};

struct Counts
{
    unsigned long long runs = 0;
    unsigned long long crashes = 0;
    unsigned long long times = 0;
    unsigned long long memory = 0;
};

Counts g_counts;
Shared* g_shared = nullptr;

std::size_t CounterCount()
{
    return __start___sancov_cntrs ? static_cast<std::size_t>(__stop___sancov_cntrs - __start___sancov_cntrs) : 0;
}

void TellCounts()
{
    std::fprintf(stderr, "contained: %llu runs, %llu ended by Open CASCADE, %llu by the time, %llu by the memory\n",
                 g_counts.runs, g_counts.crashes, g_counts.times, g_counts.memory);
}

Shared& SharedWithChildren()
{
    if (g_shared)
        return *g_shared;
    void* const memory =
        ::mmap(nullptr, sizeof(Shared) + CounterCount(), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        std::abort();
    g_shared = static_cast<Shared*>(memory);
    std::atexit(&TellCounts);
    return *g_shared;
}

void KeepReport(char const* report)
{
    std::snprintf(g_shared->report, kReport, "%s", report);
}

void NoteDeath()
{
    g_shared->isDead = true;
}

// In the child, which is not to be taken for the fuzzer when it ends.
std::string DoInChild(std::function<std::string(ChildVoice const&)> const& work, ChildVoice const& voice)
{
    for (int const signal : {SIGABRT, SIGALRM})
        std::signal(signal, SIG_DFL);
    if (&__asan_set_error_report_callback)
        __asan_set_error_report_callback(&KeepReport);
    if (&__sanitizer_set_death_callback)
        __sanitizer_set_death_callback(&NoteDeath);
    auto const keepCounters = [] { std::memcpy(g_shared->Counters(), __start___sancov_cntrs, CounterCount()); };
    try
    {
        std::string answer = work(voice);
        keepCounters();
        return answer;
    }
    catch (...)
    {
        keepCounters();
        throw;
    }
}

// Whether the crash is within Open CASCADE: its frame is one of the first two, since a function of the C library that
// the sanitizer watches may stand before it.
bool IsOfOpenCascade(std::string_view report)
{
    for (std::string_view const frame : {"#0 ", "#1 "})
    {
        std::size_t const begin = report.find(frame);
        if (begin == std::string_view::npos)
            return false;
        if (report.substr(begin, report.find('\n', begin) - begin).find("/libTK") != std::string_view::npos)
            return true;
    }
    return false;
}

bool IsOfMemory(std::string_view report)
{
    for (char const* const text : {"out-of-memory", "out of memory", "allocation-size-too-big", "allocator is out"})
        if (report.find(text) != std::string_view::npos)
            return true;
    return false;
}

// Counts what no process can be blamed for that holds itself to limits; false for a finding.
bool IsContained(ChildResult const& result)
{
    std::string_view const report = g_shared->report;
    unsigned long long* count = nullptr;
    if (result.IsOutOfTime() || result.signal == SIGKILL)
        count = &g_counts.times;
    else if (IsOfMemory(report))
        count = &g_counts.memory;
    else if (IsOfOpenCascade(report))
        count = &g_counts.crashes;
    if (count)
        ++*count;
    return count != nullptr;
}

}  // namespace

std::optional<ChildResult> RunContained(std::function<std::string(ChildVoice const&)> const& work)
{
    Shared& shared = SharedWithChildren();
    ++g_counts.runs;
    shared.isDead = false;
    shared.report[0] = '\0';
    std::memset(shared.Counters(), 0, CounterCount());
    if (std::getenv("KVR_FUZZ_IN_PROCESS"))
    {
        ChildResult result;
        result.answer = work(ChildVoice(STDERR_FILENO));
        return result;
    }
    ChildLimits limits;
    limits.seconds = kSeconds;
    ChildResult result = RunInChild([&](ChildVoice const& voice) { return DoInChild(work, voice); }, {}, limits);
    if (result.answer || result.failure)
    {
        for (std::size_t i = 0; i < CounterCount(); ++i)
            __start___sancov_cntrs[i] = std::max(__start___sancov_cntrs[i], shared.Counters()[i]);
        return result;
    }
    if (IsContained(result))
        return {};
    std::fprintf(stderr, "the child ended %s%s\n%s\n", result.EndText().c_str(),
                 shared.isDead ? ", by a sanitizer" : "", shared.report);
    std::abort();
}

bool IsSentence(std::string const& failure) noexcept
{
    return !failure.empty() && failure.find('\n') == std::string::npos &&
           failure.find("json.exception") == std::string::npos;
}

}  // namespace KVR::Fuzz
