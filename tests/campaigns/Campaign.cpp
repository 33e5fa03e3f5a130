#include "tests/campaigns/Campaign.h"

#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <Standard_Failure.hxx>
#include <algorithm>
#include <array>
#include <csignal>
#include <fstream>
#include <iterator>
#include <new>
#include <stdexcept>

#include "describe/AskEverything.h"
#include "describe/SilentAnswers.h"
#include "framework/api/kvr_api.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "producer/XMLProducer.h"
#include "producer/XMLProducerOptions.h"

namespace KVR::Campaigns
{

namespace
{

constexpr int kMostSeconds = 10;
constexpr std::size_t kMostFindings = 20;
// A batch that keeps more is looked at again: libraries also fill tables as they go.
constexpr std::size_t kSuspicious = 64 * 1024;
constexpr std::uint64_t kRepeats = 8;

// What a child tells its parent while it works; it stays when the child ends.
struct Board
{
    std::uint64_t input;
    /// What the second half kept, and the input that kept most of it.
    std::size_t kept;
    std::size_t mostKept;
    std::uint64_t keeper;
    double slowest;
    bool isWrong;
    std::array<char, 400> text;
};

double ProcessorSeconds()
{
    struct rusage usage
    {
    };
    getrusage(RUSAGE_SELF, &usage);
    auto const seconds = [](timeval const& time)
    { return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec); };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void SetAlarm(int seconds)
{
    struct itimerval const timer{{0, 0}, {seconds, 0}};
    setitimer(ITIMER_PROF, &timer, nullptr);
}

std::size_t HeldBytes()
{
    struct mallinfo2 const info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// What is thrown must not leave the child, which would end as its parent does.
std::string Answer(std::uint64_t input, Try const& attempt) noexcept
{
    try
    {
        return attempt(input);
    }
    catch (std::exception const& error)
    {
        return std::string("thrown: ") + error.what();
    }
    catch (...)
    {
        return "thrown: what is no std::exception";
    }
}

[[noreturn]] void Work(Board& board, std::uint64_t first, std::uint64_t end, Try const& attempt)
{
    std::uint64_t const half = first + (end - first) / 2;
    std::size_t held = 0;
    for (std::uint64_t input = first; input < end; ++input)
    {
        board.input = input;
        if (input == half)
            held = HeldBytes();
        double const begin = ProcessorSeconds();
        SetAlarm(kMostSeconds);
        std::string const wrong = Answer(input, attempt);
        SetAlarm(0);
        board.slowest = std::max(board.slowest, ProcessorSeconds() - begin);
        if (!wrong.empty())
        {
            board.isWrong = true;
            wrong.copy(board.text.data(), board.text.size() - 1);
            _exit(0);
        }
        if (input < half)
            continue;
        std::size_t const now = HeldBytes();
        std::size_t const kept = now > held ? now - held : 0;
        board.kept += kept;
        if (kept > board.mostKept)
        {
            board.mostKept = kept;
            board.keeper = input;
        }
        held = now;
    }
    board.input = end;
    _exit(0);
}

// What each further time keeps that an input is tried in a process of its own; 0 when it does not end well.
std::size_t KeptEachTime(std::uint64_t input, Try const& attempt, Board& board)
{
    board = Board();
    pid_t const process = fork();
    if (process < 0)
        throw std::runtime_error("no child process");
    if (process == 0)
    {
        for (std::uint64_t i = 0; i < 2 * kRepeats; ++i)
        {
            if (i == kRepeats)
                board.mostKept = HeldBytes();
            Answer(input, attempt);
        }
        board.kept = HeldBytes();
        _exit(0);
    }
    int status = 0;
    waitpid(process, &status, 0);
    return status == 0 && board.kept > board.mostKept ? (board.kept - board.mostKept) / kRepeats : 0;
}

}  // namespace

std::uint64_t Dice::Next() noexcept
{
    m_state += 0x9E3779B97F4A7C15U;
    std::uint64_t x = m_state;
    x = (x ^ (x >> 30U)) * 0xBF58476D1CE4E5B9U;
    x = (x ^ (x >> 27U)) * 0x94D049BB133111EBU;
    return x ^ (x >> 31U);
}

void Tally::Find(std::uint64_t& count, std::string finding)
{
    ++count;
    if (findings.size() < kMostFindings)
        findings.push_back(std::move(finding));
}

void RunForked(Tally& tally, std::uint64_t count, std::uint64_t batch, Try const& attempt,
               std::function<std::string(std::uint64_t)> const& name, Leaks leaks)
{
    void* const memory = mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        throw std::bad_alloc();
    Board& board = *static_cast<Board*>(memory);
    for (std::uint64_t first = 0; first < count;)
    {
        std::uint64_t const end = std::min(first + batch, count);
        board = Board();
        pid_t const process = fork();
        if (process < 0)
            throw std::runtime_error("no child process");
        if (process == 0)
            Work(board, first, end, attempt);
        int status = 0;
        struct rusage usage
        {
        };
        wait4(process, &status, 0, &usage);
        tally.peakKB = std::max(tally.peakKB, static_cast<std::uint64_t>(usage.ru_maxrss));
        tally.slowest = std::max(tally.slowest, board.slowest);
        tally.inputs += std::min(board.input + 1, end) - first;
        if (WIFSIGNALED(status) && WTERMSIG(status) == SIGPROF)
            tally.Find(tally.hangs, name(board.input) + ": more than 10 s");
        else if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
            tally.Find(tally.crashes, name(board.input) + ": ended by " + std::to_string(status));
        else if (board.isWrong)
            tally.Find(tally.wrong, name(board.input) + ": " + board.text.data());
        std::uint64_t const next = std::min(board.input + 1, end);
        std::uint64_t const keeper = board.keeper;
        if (leaks == Leaks::kCounted && end - first > 1 && board.kept > kSuspicious)
            if (std::size_t const kept = KeptEachTime(keeper, attempt, board); kept > 16)
                tally.Find(tally.leaks, name(keeper) + ": " + std::to_string(kept) + " bytes kept each time");
        first = next;
    }
    munmap(memory, sizeof(Board));
}

std::uint64_t Share(double scale, std::uint64_t full)
{
    return std::max<std::uint64_t>(1, static_cast<std::uint64_t>(scale * static_cast<double>(full)));
}

std::string ReadBytes(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error(path + " cannot be read");
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(std::string const& path, std::string_view bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush())
        throw std::runtime_error(path + " cannot be written");
}

std::string AskScene(std::string const& path, char const* prefix)
{
    class Answers final : public SilentAnswers
    {
    };
    try
    {
        XMLProducerOptions options;
        XMLProducer producer(UTF16String(UTF8String(path)), &options);
        if (prefix)
            producer.SetNewObjectIdPrefix(prefix);
        static_cast<void>(producer.QueryFile());
        producer.BeginProcess(IdSet(), nullptr, nullptr);
        static std::string const kExtensionTypes[] = {"t", "type"};
        Answers answers;
        AskEverything(producer, {}, kExtensionTypes, answers, [](UTF8String const&, IObject*, Interface const*) {});
        producer.EndProcess();
    }
    catch (Exception const&)
    {
        // The document or a file that it names cannot be read.
    }
    catch (std::length_error const&)
    {
        // A list in a store claims far more than there is.
    }
    catch (std::out_of_range const&)
    {
        // A subscript that a store names.
    }
    catch (Standard_Failure const&)
    {
        return "a failure of Open CASCADE";
    }
    catch (std::exception const& error)
    {
        return error.what();
    }
    return {};
}

}  // namespace KVR::Campaigns
