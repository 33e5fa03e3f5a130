// Calls of the system for files that fail one by one, while the program imports and exports: files are whole or absent,
// the program says why in one sentence, and nothing is left over.

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/ModelFiles.h"
#include "tests/campaigns/ShortCalls.h"
#include "tests/support/SanitizedBuild.h"
#include "tests/support/TempFolder.h"

namespace KVR::Campaigns
{

namespace
{

namespace fs = std::filesystem;

struct Failure
{
    char const* call;
    /// As strace takes it.
    char const* inject;
};

constexpr Failure kFailures[] = {
    {"openat", "error=EIO"},   {"openat", "error=EINTR"},   {"openat", "error=ENOMEM"}, {"read", "error=EIO"},
    {"read", "error=EINTR"},   {"newfstatat", "error=EIO"}, {"mmap", "error=ENOMEM"},   {"write", "error=EIO"},
    {"write", "error=ENOSPC"}, {"write", "error=EINTR"},    {"rename", "error=EIO"},    {"rename", "error=ENOSPC"},
    {"fsync", "error=EIO"},    {"mkdir", "error=ENOSPC"},   {"lseek", "error=EIO"},     {"unlink", "error=EIO"},
};

struct Work
{
    std::string name;
    std::string arguments;
    std::string target;
};

class Runs
{
public:
    Runs() : m_tool(fs::read_symlink("/proc/self/exe").parent_path() / "kvr")
    {
        WriteBytes(m_folder.NarrowPathOf("m.brep"), ModelFiles::Brep());
        if (Run("", "import m.brep s.xml", m_scene) != 0)
            throw std::runtime_error("kvr does not import");
        m_good = Files();
        m_work = {{"import", "import m.brep out.xml", "out.xml"},
                  {"export to GLB", "export s.xml out.glb", "out.glb"},
                  {"export to STEP", "export s.xml out.step", "out.step"},
                  {"dump", "dump s.xml", ""}};
        for (Work const& work : m_work)
        {
            std::string ignored;
            if (Run("", work.arguments, ignored) != 0)
                throw std::runtime_error("kvr does not " + work.name);
            m_whole.push_back(Files());
            m_said.push_back(ReadBytes(m_out.NarrowPathOf("out")));
            Clear();
        }
    }

    // Reads and writes of a single byte: how many may be. Those of the loader are not ours.
    std::pair<long, long> LongCallsOf(std::size_t work)
    {
        long ofLoader = 0;
        long all = 0;
        RunWithShortCalls({m_tool.string(), "--version"}, m_folder.Path(), m_out.Path(), {}, ofLoader);
        RunWithShortCalls(Words(work), m_folder.Path(), m_out.Path(), {}, all);
        Clear();
        return {ofLoader, all};
    }

    // Empty, or what was wrong when these were short: the program goes on as if they were not.
    std::string Shorten(std::size_t work, ShortCalls const& calls)
    {
        long ignored = 0;
        int const status = RunWithShortCalls(Words(work), m_folder.Path(), m_out.Path(), calls, ignored);
        bool const isWhole = Files() == m_whole[work] && ReadBytes(m_out.NarrowPathOf("out")) == m_said[work];
        Clear();
        if (status != 0)
            return "status " + std::to_string(status) + " (" + ReadBytes(m_out.NarrowPathOf("error")) + ')';
        return isWhole ? std::string() : "not whole";
    }

    std::size_t Works() const { return m_work.size(); }
    std::string NameOf(std::size_t work) const { return m_work[work].name; }

    // How often the program calls; those of the loader, which stand first, are told apart.
    std::pair<long, long> CallsOf(std::size_t work, char const* call)
    {
        return {CountOf("--version", call), CountOf(m_work[work].arguments, call)};
    }

    // Empty, or what was wrong when that call failed.
    std::string Fail(std::size_t work, Failure const& failure, long when)
    {
        std::string said;
        std::string const tracing = std::string("strace -f -qq -o /dev/null -e trace=") + failure.call +
                                    " -e inject=" + failure.call + ':' + failure.inject +
                                    ":when=" + std::to_string(when) + ' ';
        int const status = Run(tracing, m_work[work].arguments, said);
        std::string const wrong = Wrong(work, failure.call, status, said);
        Clear();
        return wrong.empty() ? wrong : wrong + " (" + said + ')';
    }

private:
    using Contents = std::map<std::string, std::size_t>;

    std::vector<std::string> Words(std::size_t work) const
    {
        std::istringstream arguments(m_work[work].arguments);
        std::vector<std::string> words = {m_tool.string()};
        for (std::string word; arguments >> word;)
            words.push_back(word);
        return words;
    }

    // What the program says on standard error; its exit status, negative for a signal.
    int Run(std::string const& tracing, std::string const& arguments, std::string& said)
    {
        std::string const command = "cd '" + m_folder.Path() + "' && TMPDIR='" + m_folder.Path() + "' " + tracing +
                                    m_tool.string() + ' ' + arguments + " >'" + m_out.NarrowPathOf("out") + "' 2>'" +
                                    m_out.NarrowPathOf("error") + "'";
        int const status = std::system(command.c_str());
        said = ReadBytes(m_out.NarrowPathOf("error"));
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    long CountOf(std::string const& arguments, char const* call)
    {
        std::string const log = m_out.NarrowPathOf("log");
        std::string ignored;
        Run("strace -qq -o '" + log + "' -e trace=" + call + ' ', arguments, ignored);
        std::string const lines = ReadBytes(log);
        Clear();
        return std::count(lines.begin(), lines.end(), '\n');
    }

    Contents Files() const
    {
        Contents files;
        for (fs::directory_entry const& entry : fs::directory_iterator(m_folder.Path()))
            files.emplace(entry.path().filename().string(), entry.is_regular_file() ? entry.file_size() : 0);
        return files;
    }

    void Clear()
    {
        for (auto const& [name, size] : Files())
            if (m_good.count(name) == 0)
                fs::remove_all(fs::path(m_folder.Path()) / name);
    }

    std::string Wrong(std::size_t work, std::string_view call, int status, std::string const& said) const
    {
        if (status != 0 && status != 1)
            return "status " + std::to_string(status);
        // The sentence is a write, too.
        bool const isMute = call == "write" && said.empty();
        if (status == 1 && !isMute && std::count(said.begin(), said.end(), '\n') != 1)
            return "no sentence";
        // What cannot be removed stays.
        if (call == "unlink")
            return {};
        Contents const files = Files();
        if (status == 0 && files != m_whole[work])
            return "done, but the files are not whole";
        std::string const& target = m_work[work].target;
        if (status == 1 && !target.empty() && files.count(target) > 0)
            return "failed, but the target is there";
        return {};
    }

    fs::path m_tool;
    Test::TempFolder m_folder;
    Test::TempFolder m_out;
    std::string m_scene;
    Contents m_good;
    std::vector<Work> m_work;
    std::vector<Contents> m_whole;
    // What each work says on standard output.
    std::vector<std::string> m_said;
};

void RunShortCalls(double scale, Runs& runs, Tally& tally)
{
    constexpr long kAlways = 1'000'000'000;
    for (std::size_t work = 0; work < runs.Works(); ++work)
    {
        auto const [ofLoader, all] = runs.LongCallsOf(work);
        if (all == 0)
            return;
        auto const attempt = [&, work](ShortCalls const& calls, std::string const& name)
        {
            ++tally.inputs;
            if (std::string const wrong = runs.Shorten(work, calls); !wrong.empty())
                tally.Find(tally.wrong, runs.NameOf(work) + ", " + name + ": " + wrong);
        };
        long const first = ofLoader + 1;
        attempt({first, kAlways}, "all reads and writes short");
        auto const ours = static_cast<std::uint64_t>(std::max(all - ofLoader, 1L));
        std::uint64_t const count = Share(scale, ours);
        for (std::uint64_t i = 0; i < count; ++i)
        {
            long const call = first + static_cast<long>(i * ours / count);
            attempt({call, call + 1}, "short call " + std::to_string(call));
        }
    }
}

}  // namespace

void RunFileCalls(double scale, Tally& tally)
{
    if (Test::kIsSanitized)
        return;
    Runs runs;
    RunShortCalls(scale, runs, tally);
    std::size_t kinds = 0;
    for (std::size_t work = 0; work < runs.Works(); ++work)
        for (Failure const& failure : kFailures)
        {
            // A small share leaves out kinds of failures, too: already to count the calls takes time.
            constexpr double kSmall = 0.01;
            if (scale < kSmall && kinds++ % 4 != 0)
                continue;
            auto const [ofLoader, ofAll] = runs.CallsOf(work, failure.call);
            std::uint64_t const all = ofAll > ofLoader ? static_cast<std::uint64_t>(ofAll - ofLoader) : 1;
            // With the first calls of the child process, which count from 1 again.
            std::uint64_t const count = std::min(all, Share(scale, all));
            for (std::uint64_t i = 0; i < count; ++i)
            {
                long const when = ofLoader + 1 + static_cast<long>(i * all / count);
                ++tally.inputs;
                if (std::string const wrong = runs.Fail(work, failure, when); !wrong.empty())
                    tally.Find(tally.wrong, runs.NameOf(work) + ", " + failure.call + ' ' + failure.inject + " at " +
                                                std::to_string(when) + ": " + wrong);
            }
        }
}

}  // namespace KVR::Campaigns
