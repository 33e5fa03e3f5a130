// Calls of the system for files that fail one by one, while the program imports and exports: files are whole or absent,
// the program says why in one sentence, and nothing is left over.

#include <sys/syscall.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/ModelFiles.h"
#include "tests/campaigns/TracedRun.h"
#include "tests/support/SanitizedBuild.h"
#include "tests/support/TempFolder.h"

namespace KVR::Campaigns
{

namespace
{

namespace fs = std::filesystem;

struct Failure
{
    char const* name;
    long call;
    int error;
};

constexpr Failure kFailures[] = {
    {"openat", SYS_openat, EIO},       {"openat", SYS_openat, EINTR}, {"openat", SYS_openat, ENOMEM},
    {"read", SYS_read, EIO},           {"read", SYS_read, EINTR},     {"newfstatat", SYS_newfstatat, EIO},
    {"mmap", SYS_mmap, ENOMEM},        {"write", SYS_write, EIO},     {"write", SYS_write, ENOSPC},
    {"write", SYS_write, EINTR},       {"rename", SYS_rename, EIO},   {"rename", SYS_rename, ENOSPC},
    {"renameat2", SYS_renameat2, EIO}, {"fsync", SYS_fsync, EIO},     {"close", SYS_close, EIO},
    {"mkdir", SYS_mkdir, ENOSPC},      {"lseek", SYS_lseek, EIO},     {"unlink", SYS_unlink, EIO},
    {"unlinkat", SYS_unlinkat, EIO},   {"rmdir", SYS_rmdir, EIO},     {"getdents64", SYS_getdents64, EIO},
    {"pipe2", SYS_pipe2, EMFILE},      {"clone", SYS_clone, EAGAIN},
};

// Without which a folder for temporary files cannot be removed.
constexpr std::string_view kRemoving[] = {"openat", "newfstatat", "unlink", "unlinkat", "rmdir", "getdents64", "close"};

struct Work
{
    std::string name;
    std::string arguments;
    std::string target;
};

class Runs
{
public:
    // The one with all commands, so that loading it takes the same calls whatever it is to do.
    Runs() : m_tool(fs::read_symlink("/proc/self/exe").parent_path() / "../libexec/kvr/kvr-whole")
    {
        WriteBytes(m_folder.NarrowPathOf("m.brep"), ModelFiles::Brep());
        m_work = {{"import", "import m.brep s.xml", "s.xml"}};
        if (Run(0, {}).status != 0)
            throw std::runtime_error("kvr does not import");
        m_good = Files();
        m_work = {{"import", "import m.brep out.xml", "out.xml"},
                  {"export to GLB", "export s.xml out.glb", "out.glb"},
                  {"export to STEP", "export s.xml out.step", "out.step"},
                  {"dump", "dump s.xml", ""}};
        for (std::size_t work = 0; work < m_work.size(); ++work)
        {
            m_whole.push_back(Run(work, {}));
            if (m_whole.back().status != 0)
                throw std::runtime_error("kvr does not " + m_work[work].name);
        }
    }

    std::size_t Works() const { return m_work.size(); }
    std::string NameOf(std::size_t work) const { return m_work[work].name; }

    // How often the program calls, by which number; the calls of the loader, which stand first, are told apart.
    std::pair<long, long> CallsOf(std::size_t work, long call)
    {
        if (m_ofLoader.count(call) == 0)
            RunTraced({m_tool.string(), "--version"}, m_folder.Path(), m_out.Path(), {call}, m_ofLoader[call]);
        long all = 0;
        RunTraced(Words(work), m_folder.Path(), m_out.Path(), {call}, all);
        Clear();
        return {m_ofLoader[call], all};
    }

    // Empty, or what was wrong when these were short: the program goes on as if they were not.
    std::string Shorten(std::size_t work, TracedCalls const& calls)
    {
        Result const result = Run(work, calls);
        if (result.status != 0)
            return "status " + std::to_string(result.status) + " (" + result.error + ')';
        return result.files == m_whole[work].files && result.out == m_whole[work].out ? std::string() : "not whole";
    }

    // Empty, or what was wrong when that call failed.
    std::string Fail(std::size_t work, Failure const& failure, long when)
    {
        Result const result = Run(work, {failure.call, failure.error, when, when + 1});
        std::string const wrong = Wrong(work, failure.name, result);
        return wrong.empty() ? wrong : wrong + " (" + result.error + ')';
    }

private:
    using Contents = std::map<std::string, std::size_t>;

    struct Result
    {
        // Negative for a signal.
        int status = 0;
        Contents files;
        std::string out;
        std::string error;
    };

    static long LinesOf(Result const& result) { return std::count(result.error.begin(), result.error.end(), '\n'); }

    std::vector<std::string> Words(std::size_t work) const
    {
        std::istringstream arguments(m_work[work].arguments);
        std::vector<std::string> words = {m_tool.string()};
        for (std::string word; arguments >> word;)
            words.push_back(word);
        return words;
    }

    Result Run(std::size_t work, TracedCalls const& calls)
    {
        long ignored = 0;
        Result result;
        result.status = RunTraced(Words(work), m_folder.Path(), m_out.Path(), calls, ignored);
        result.files = Files();
        result.out = ReadBytes(m_out.NarrowPathOf("out"));
        result.error = ReadBytes(m_out.NarrowPathOf("error"));
        Clear();
        return result;
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
            if (!m_good.empty() && m_good.count(name) == 0)
                fs::remove_all(fs::path(m_folder.Path()) / name);
    }

    std::string Wrong(std::size_t work, std::string_view call, Result const& result) const
    {
        if (result.status != 0 && result.status != 1)
            return "status " + std::to_string(result.status);
        // The sentence is a write, too.
        bool const isMute = call == "write" && result.error.empty();
        Result const& whole = m_whole[work];
        // Behind what it remarks on.
        if (result.status == 1 && !isMute && LinesOf(result) != 1 && LinesOf(result) != LinesOf(whole) + 1)
            return "no sentence";
        Contents files = result.files;
        if (std::find(std::begin(kRemoving), std::end(kRemoving), call) != std::end(kRemoving))
            std::erase_if(files, [](auto const& file) { return file.first.starts_with(".kvr-"); });
        // What is left out is told.
        bool const isTold = result.error != whole.error;
        if (result.status == 0 && !isTold && files != whole.files)
            return "done, but the files are not whole";
        if (result.status == 0 && !isTold && result.out != whole.out)
            return "done, but not all is said";
        // What is written to standard output comes last.
        bool const isDone = call == "write" && files == whole.files;
        if (result.status == 1 && files != m_good && !isDone)
            return "failed, but files are left";
        return {};
    }

    fs::path m_tool;
    Test::TempFolder m_folder;
    Test::TempFolder m_out;
    Contents m_good;
    std::vector<Work> m_work;
    // What comes of each when nothing fails.
    std::vector<Result> m_whole;
    std::map<long, long> m_ofLoader;
};

void RunShortCalls(double scale, Runs& runs, Tally& tally)
{
    constexpr long kAlways = 1'000'000'000;
    // Of more than a byte.
    constexpr long kTransfers = -1;
    for (std::size_t work = 0; work < runs.Works(); ++work)
    {
        auto const [ofLoader, all] = runs.CallsOf(work, kTransfers);
        if (all == 0)
            return;
        auto const attempt = [&, work](TracedCalls const& calls, std::string const& name)
        {
            ++tally.inputs;
            if (std::string const wrong = runs.Shorten(work, calls); !wrong.empty())
                tally.Find(tally.wrong, runs.NameOf(work) + ", " + name + ": " + wrong);
        };
        long const first = ofLoader + 1;
        attempt({kTransfers, 0, first, kAlways}, "all reads and writes short");
        auto const ours = static_cast<std::uint64_t>(std::max(all - ofLoader, 1L));
        std::uint64_t const count = Share(scale, ours);
        for (std::uint64_t i = 0; i < count; ++i)
        {
            long const call = first + static_cast<long>(i * ours / count);
            attempt({kTransfers, 0, call, call + 1}, "short call " + std::to_string(call));
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
            auto const all = static_cast<std::uint64_t>(std::max(ofAll - ofLoader, 0L));
            std::uint64_t const count = std::min(all, Share(scale, all));
            for (std::uint64_t i = 0; i < count; ++i)
            {
                long const when = ofLoader + 1 + static_cast<long>(i * all / count);
                ++tally.inputs;
                if (std::string const wrong = runs.Fail(work, failure, when); !wrong.empty())
                    tally.Find(tally.wrong, runs.NameOf(work) + ", " + failure.name + ' ' +
                                                strerrorname_np(failure.error) + " at " + std::to_string(when) + ": " +
                                                wrong);
            }
        }
}

}  // namespace KVR::Campaigns
