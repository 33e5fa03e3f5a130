// A host that reads a scene again each time that it changes, while another process rewrites it: by a new file in the
// place of the old one, or in place, where a reader may come upon a half.

#include <malloc.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "framework/api/kvr_api.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "producer/XMLProducer.h"
#include "tests/campaigns/Campaign.h"
#include "tests/support/TempFolder.h"

namespace KVR::Campaigns
{

namespace
{

namespace fs = std::filesystem;

// One every ten seconds of a day.
constexpr std::uint64_t kChanges = 8640;
constexpr std::uint64_t kWarm = 20;
constexpr std::size_t kMostGrowth = 256 * 1024;
constexpr char kScene[] = "scene.xml";

// A scene whose first and last part are called by its number, which changes its length, too.
std::string SceneOf(std::uint64_t number)
{
    std::string const label = std::to_string(number);
    std::string parts = "<S><IFile ID=\"f\" IsRoot=\"1\" Label=\"" + label + "\"><ChildSet>";
    for (int i = 0; i < 100; ++i)
        parts += "<Child ID=\"p" + std::to_string(i) + "\"/>";
    parts += "</ChildSet></IFile>";
    for (int i = 0; i < 100; ++i)
        parts += "<IPart ID=\"p" + std::to_string(i) + "\" Label=\"" + label + "\"/>";
    return parts + "</S>" + std::string(number % 50, ' ') + '\n';
}

// Writes scenes until it is ended. What is torn stands for a moment with a part of its bytes, or with none.
[[noreturn]] void Rewrite(Test::TempFolder const& folder, bool isTorn)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::string const path = folder.NarrowPathOf(kScene);
    std::string const beside = folder.NarrowPathOf("new.xml");
    for (std::uint64_t number = 1;; ++number)
    {
        std::string const text = SceneOf(number);
        if (isTorn)
        {
            std::ofstream file(path, std::ios::binary | std::ios::trunc);
            file << text.substr(0, text.size() / 2) << std::flush;
            usleep(200);
            file << text.substr(text.size() / 2);
        }
        else
        {
            WriteBytes(beside, text);
            fs::rename(beside, path);
        }
        usleep(500);
    }
}

class Watcher
{
public:
    explicit Watcher(std::string const& folder) : m_events(inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
    {
        if (m_events < 0 || inotify_add_watch(m_events, folder.c_str(), IN_CLOSE_WRITE | IN_MOVED_TO | IN_MODIFY) < 0)
            throw std::runtime_error("no watch");
    }
    ~Watcher() { close(m_events); }
    Watcher(Watcher const&) = delete;
    Watcher& operator=(Watcher const&) = delete;

    // Waits for a change; false when there is none for long.
    bool Wait() const
    {
        constexpr int kLongest = 60'000;
        struct pollfd entry = {m_events, POLLIN, 0};
        if (poll(&entry, 1, kLongest) <= 0)
            return false;
        char events[4096];
        while (read(m_events, events, sizeof events) > 0)
        {
        }
        return true;
    }

private:
    int m_events;
};

// What was read: the number of a whole scene, or nothing of one that is none. `wrong` gets what is neither. Of a file
// that is rewritten in its place a reader may get the beginning of one scene and the end of the next, which is a
// document, too.
std::optional<std::uint64_t> ReadScene(std::string const& path, bool isTorn, std::string& wrong)
{
    try
    {
        XMLProducer producer(UTF16String(UTF8String(path)), nullptr);
        producer.BeginProcess(IdSet(), nullptr, nullptr);
        std::optional<std::string> label;
        for (char const* const id : {"f", "p0", "p99"})
        {
            IObject* const object = producer.Load(id);
            std::string const found = object ? std::string(UTF8String(object->Label()).Value()) : "nothing";
            if (!isTorn && label.value_or(found) != found)
                wrong = "a scene of " + *label + " and " + found;
            label = found;
        }
        return std::stoull(label.value_or("0"));
    }
    catch (FileException const&)
    {
        return {};
    }
    catch (std::exception const& error)
    {
        wrong = error.what();
        return {};
    }
}

std::size_t OpenFiles()
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

std::size_t HeldBytes()
{
    malloc_trim(0);
    struct mallinfo2 const info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void Watch(std::uint64_t changes, bool isTorn, Test::TempFolder const& folder, Tally& tally)
{
    std::string const path = folder.NarrowPathOf(kScene);
    std::string const name = isTorn ? "in place, " : "renamed, ";
    Watcher const watcher(folder.Path());
    std::uint64_t latest = 0;
    std::uint64_t scenes = 0;
    std::size_t files = 0;
    std::size_t held = 0;
    for (std::uint64_t change = 0; change < changes + kWarm; ++change)
    {
        if (change == kWarm)
        {
            files = OpenFiles();
            held = HeldBytes();
        }
        if (!watcher.Wait())
            return tally.Find(tally.hangs, name + "no change comes");
        std::string wrong;
        std::optional<std::uint64_t> const number = ReadScene(path, isTorn, wrong);
        if (wrong.empty() && number && *number < latest)
            wrong = "a scene older than the one before";
        if (wrong.empty() && !number && !isTorn)
            wrong = "a whole scene that cannot be read";
        if (!wrong.empty())
            tally.Find(tally.wrong, name + "change " + std::to_string(change) + ": " + wrong);
        latest = number.value_or(latest);
        scenes += number.has_value();
        ++tally.inputs;
    }
    if (scenes == 0)
        tally.Find(tally.wrong, name + "no scene was ever read");
    std::size_t const heldNow = HeldBytes();
    if (heldNow > held + kMostGrowth)
        tally.Find(tally.leaks, name + std::to_string(heldNow - held) + " bytes more than at the beginning");
    if (OpenFiles() != files)
        tally.Find(tally.leaks, name + "files are left open");
}

}  // namespace

void RunWatch(double scale, Tally& tally)
{
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    for (bool const isTorn : {false, true})
    {
        Test::TempFolder const folder;
        WriteBytes(folder.NarrowPathOf(kScene), SceneOf(0));
        pid_t const writer = fork();
        if (writer < 0)
            throw std::runtime_error("no child process");
        if (writer == 0)
            Rewrite(folder, isTorn);
        Watch(Share(scale, kChanges / 2), isTorn, folder, tally);
        kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
    }
}

}  // namespace KVR::Campaigns
