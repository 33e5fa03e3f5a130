// Allocations that fail. This program's malloc can be told to, also in the processes that it forks; under sanitizers,
// which have their own, it is not there.

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <Standard_OutOfMemory.hxx>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <new>
#include <stdexcept>
#include <xercesc/util/PlatformUtils.hpp>

#include "describe/AskEverything.h"
#include "describe/SilentAnswers.h"
#include "exchange/CertifyModel.h"
#include "exchange/DrawPicture.h"
#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"
#include "framework/api/kvr_api.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "producer/XMLProducer.h"
#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/ModelFiles.h"
#include "tests/campaigns/Scenes.h"
#include "tests/support/SanitizedBuild.h"

namespace
{

// Shared by a process with those that it forks.
struct Hook
{
    // How many allocations succeed before one fails; negative for all.
    std::atomic<long> left{-1};
    std::atomic<bool> failsOnce{false};
    // How many were left when the latest work ended.
    std::atomic<long> last{0};
};

Hook* g_hook = nullptr;
// The process that forks those in which allocations fail: its own do not.
pid_t g_spared = 0;

}  // namespace

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
namespace
{

bool Fails()
{
    if (!g_hook || g_hook->left.load(std::memory_order_relaxed) < 0 || getpid() == g_spared ||
        g_hook->left.fetch_sub(1) > 0)
        return false;
    if (!g_hook->failsOnce)
        g_hook->left = 0;
    errno = ENOMEM;
    return true;
}

}  // namespace

extern "C"
{
    // What the C library has behind its own names.
    void* RealMalloc(std::size_t size) __asm__("__libc_malloc");
    void* RealCalloc(std::size_t count, std::size_t size) __asm__("__libc_calloc");
    void* RealRealloc(void* memory, std::size_t size) __asm__("__libc_realloc");

    void* malloc(std::size_t size)
    {
        return Fails() ? nullptr : RealMalloc(size);
    }
    void* calloc(std::size_t count, std::size_t size)
    {
        return Fails() ? nullptr : RealCalloc(count, size);
    }
    void* realloc(void* memory, std::size_t size)
    {
        return Fails() ? nullptr : RealRealloc(memory, size);
    }
}
#endif

namespace KVR::Campaigns
{

namespace
{

namespace fs = std::filesystem;

// The time in which allocations may fail.
class Failing
{
public:
    Failing(long allocations, bool failsOnce)
    {
        g_hook->failsOnce = failsOnce;
        g_hook->left = allocations;
    }
    ~Failing() { g_hook->last = g_hook->left.exchange(-1); }
    Failing(Failing const&) = delete;
    Failing& operator=(Failing const&) = delete;
};

// Does work in which allocations fail. Empty, or what was thrown that may not be.
std::string Thrown(long allocations, bool failsOnce, std::function<void()> const& work)
{
    Failing const failing(allocations, failsOnce);
    try
    {
        work();
    }
    catch (std::bad_alloc const&)
    {
    }
    catch (FileException const&)
    {
        // While the document is parsed.
    }
    catch (Standard_OutOfMemory const&)
    {
        // Of what is asked, measures are taken by Open CASCADE, as a host would.
    }
    catch (std::exception const& error)
    {
        g_hook->left = -1;
        return std::string("thrown: ") + error.what();
    }
    return {};
}

// What is tried; empty, or what was wrong.
using Trial = std::function<std::string(long allocations, bool failsOnce)>;

std::string Open(std::string const& path, long allocations, bool failsOnce)
{
    XMLProducer producer(UTF16String(UTF8String(path)), nullptr);
    bool isWhole = false;
    std::string wrong = Thrown(allocations, failsOnce,
                               [&]
                               {
                                   producer.BeginProcess(IdSet(), nullptr, nullptr);
                                   isWhole = true;
                               });
    // What was read is whole: an allocation that failed is never a store that is not there.
    for (char const* const id : {"body", "text-body"})
        if (auto const* const body = isWhole ? dynamic_cast<IBrep*>(producer.Load(id)) : nullptr;
            isWhole && (!body || !body->Body()))
            wrong = std::string("served without ") + id;
    producer.EndProcess();
    return wrong;
}

std::string AskAndEnd(std::string const& path, long allocations, bool failsOnce)
{
    class Answers final : public SilentAnswers
    {
    };
    XMLProducer producer(UTF16String(UTF8String(path)), nullptr);
    producer.BeginProcess(IdSet(), nullptr, nullptr);
    return Thrown(allocations, failsOnce,
                  [&]
                  {
                      Answers answers;
                      AskEverything(producer, {}, {}, answers, [](UTF8String const&, IObject*, Interface const*) {});
                      producer.EndProcess();
                  });
}

// An import or export, most of which happens in a child process.
class Exchange
{
public:
    Exchange(std::string source, std::string target) : m_source(std::move(source)), m_target(std::move(target))
    {
        Test::TempFolder const folder;
        if (!Run(folder))
            throw std::runtime_error("no " + m_target);
        m_whole = In(folder);
    }

    std::string Try(long allocations, bool failsOnce)
    {
        Test::TempFolder const folder;
        bool isDone = false;
        m_said.clear();
        if (std::string wrong = Thrown(allocations, failsOnce, [&] { isDone = Run(folder); }); !wrong.empty())
            return wrong;
        Files const files = In(folder);
        if (isDone)
            return Wrong(files);
        if (m_said.find('\n') != std::string::npos)
            return "no sentence: " + m_said;
        // What cannot be removed for want of memory, the next run removes.
        return files.empty() || (!failsOnce && files.begin()->first.starts_with(".kvr-"))
                   ? std::string()
                   : "left over: " + files.begin()->first;
    }

private:
    using Files = std::map<std::string, std::uintmax_t>;

    static Files In(Test::TempFolder const& folder)
    {
        Files files;
        for (fs::directory_entry const& entry : fs::directory_iterator(folder.Path()))
            files.emplace(entry.path().filename().string(), entry.is_regular_file() ? entry.file_size() : 0);
        return files;
    }

    std::string Wrong(Files const& files) const
    {
        for (auto const& [name, size] : m_whole)
            if (auto const found = files.find(name); found == files.end() || found->second != size)
                return "done, but " + name + " is not whole";
        return files.size() == m_whole.size() ? std::string() : "done, but more than whole";
    }

    bool Run(Test::TempFolder const& folder)
    {
        std::string const target = folder.NarrowPathOf(m_target);
        if (target.ends_with(".xml"))
        {
            ImportOptions options;
            options.withMeshes = m_target == "meshed.xml";
            ImportResult const result = ImportModel(m_source, target, options);
            m_said = result.failure;
            return result.outcome == Outcome::kDone;
        }
        if (target.ends_with(".png"))
        {
            ConvertResult const result = DrawPicture(m_source, target);
            m_said = result.failure;
            return result.outcome == Outcome::kDone;
        }
        SceneOptions options;
        options.path = m_source;
        ExportResult const result = ExportScene(options, target);
        m_said = result.failure;
        return result.outcome == Outcome::kDone;
    }

    std::string m_source;
    std::string m_target;
    Files m_whole;
    std::string m_said;
};

// What is said of a model and of what was made of it: the same, or one sentence of why it could not be said.
class Certificate
{
public:
    explicit Certificate(std::string model) : m_model(std::move(model))
    {
        if (!Run())
            throw std::runtime_error("no certificate");
        m_whole = m_rows;
    }

    std::string Try(long allocations, bool failsOnce)
    {
        bool isDone = false;
        m_said.clear();
        if (std::string wrong = Thrown(allocations, failsOnce, [&] { isDone = Run(); }); !wrong.empty())
            return wrong;
        if (isDone)
            return m_rows == m_whole ? std::string() : "said otherwise: " + m_rows;
        return m_said.find('\n') == std::string::npos ? std::string() : "no sentence: " + m_said;
    }

private:
    bool Run()
    {
        CertifyResult const result = CertifyModel(m_model);
        m_said = result.failure;
        m_rows.clear();
        for (CertificateRow const& row : result.rows)
        {
            m_rows += row.name + (row.isGood ? ": good" : ": bad");
            for (std::string const& value : row.values)
                m_rows += ' ' + value;
            m_rows += '\n';
        }
        return result.outcome == Outcome::kDone;
    }

    std::string m_model;
    std::string m_rows;
    std::string m_whole;
    std::string m_said;
};

// While it is there, pictures are drawn by a script, whose memory is its own in any case: f3d takes seconds for each.
class QuickDrawing
{
public:
    QuickDrawing() : m_path(std::getenv("PATH"))
    {
        // What f3d is run by.
        std::string const script = m_folder.NarrowPathOf("timeout");
        WriteBytes(script,
                   "#!/bin/sh\nfor word; do case $word in --output=*) echo drawn >\"${word#*=}\";; esac; done\n");
        fs::permissions(script, fs::perms::owner_all);
        setenv("PATH", (m_folder.Path() + ":" + m_path).c_str(), 1);
    }
    ~QuickDrawing() { setenv("PATH", m_path.c_str(), 1); }

private:
    Test::TempFolder m_folder;
    std::string m_path;
};

// Each allocation of a trial fails, or `most` of them, spread over all; once, and from there on. Afterwards the scene
// can be asked.
void FailEach(double scale, std::uint64_t most, std::string const& name, Trial const& trial, std::string const& scene,
              Tally& tally)
{
    constexpr long kMany = 100'000'000;
    g_spared = 0;
    if (std::string const wrong = trial(kMany, true); !wrong.empty())
        tally.Find(tally.wrong, name + ": " + wrong);
    g_spared = getpid();
    auto const all = static_cast<std::uint64_t>(kMany - g_hook->last);
    std::uint64_t const count = Share(scale, std::min(all, most));
    auto const numberOf = [&](std::uint64_t input) { return static_cast<long>(input / 2 * all / count); };
    RunForked(
        tally, 2 * count, 1,
        [&](std::uint64_t input)
        {
            // The one before may have ended in its midst.
            g_hook->left = -1;
            std::string wrong = trial(numberOf(input), input % 2 == 0);
            return wrong.empty() ? AskScene(scene) : wrong;
        },
        [&](std::uint64_t input)
        {
            return name + ", allocation " + std::to_string(numberOf(input)) + " of " + std::to_string(all) +
                   (input % 2 == 0 ? ", once" : " and on");
        },
        // Xerces-C loses what it holds when memory fails within it.
        Leaks::kIgnored);
    g_hook->left = -1;
}

}  // namespace

void RunFailures(double scale, Tally& tally)
{
    if (Test::kIsSanitized)
        return;
    void* const memory = mmap(nullptr, sizeof(Hook), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        throw std::bad_alloc();
    g_hook = new (memory) Hook();
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    SceneCopies copies;
    std::string const path = copies.Make(SceneCopies::Kind::kComplete);
    xercesc::XMLPlatformUtils::Initialize();
    constexpr std::uint64_t kAll = 1'000'000;
    FailEach(
        scale, kAll, "open", [&](long n, bool once) { return Open(path, n, once); }, path, tally);
    FailEach(
        scale, kAll, "ask and end", [&](long n, bool once) { return AskAndEnd(path, n, once); }, path, tally);
    // Tens of thousands each. A small share leaves out bodies that are meshed: where Open CASCADE lacks memory for its
    // threads, it takes half a minute by the clock until that is told.
    constexpr double kLarge = 0.1;
    constexpr std::uint64_t kSome = 1000;
    std::string const scene = copies.Make(SceneCopies::Kind::kModel);
    Test::TempFolder const folder;
    std::string const model = folder.NarrowPathOf("m.brep");
    WriteBytes(model, ModelFiles::Brep());
    QuickDrawing const drawing;
    for (std::string_view const target : {"out.xml", "meshed.xml", "out.stl", "out.step", "out.brep", "out.png"})
    {
        bool const isMeshed = target == "meshed.xml" || target == "out.stl" || target == "out.png";
        if (isMeshed && scale < kLarge)
            continue;
        Exchange exchange(target.ends_with(".xml") ? model : scene, std::string(target));
        FailEach(
            scale, kSome, std::string(target), [&](long n, bool once) { return exchange.Try(n, once); }, path, tally);
    }
    if (scale >= kLarge)
    {
        Certificate certificate(model);
        FailEach(
            scale, kSome, "certificate", [&](long n, bool once) { return certificate.Try(n, once); }, path, tally);
    }
    xercesc::XMLPlatformUtils::Terminate();
    g_hook = nullptr;
}

}  // namespace KVR::Campaigns
