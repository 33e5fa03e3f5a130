// Allocations that fail. This program's malloc can be told to; under sanitizers, which have their own, it is not there.

#include <malloc.h>

#include <cerrno>
#include <cstddef>
#include <new>
#include <stdexcept>
#include <xercesc/util/PlatformUtils.hpp>

#include "framework/api/kvr_api.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "producer/XMLProducer.h"
#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/Scenes.h"
#include "tests/support/SanitizedBuild.h"

namespace
{

// How many allocations succeed before one fails; negative for all.
long g_left = -1;
bool g_failsOnce = false;

}  // namespace

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
namespace
{

bool Fails()
{
    if (g_left < 0)
        return false;
    if (g_left > 0)
    {
        --g_left;
        return false;
    }
    if (g_failsOnce)
        g_left = -1;
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

// Opens a scene with so many allocations before the failure. Empty, or what came of it that may not.
std::string OpenWith(long allocations, bool failsOnce, std::string const& path)
{
    UTF16String const wide{UTF8String(path)};
    std::string wrong;
    bool isWhole = false;
    try
    {
        XMLProducer producer(wide, nullptr);
        g_failsOnce = failsOnce;
        g_left = allocations;
        producer.BeginProcess(IdSet(), nullptr, nullptr);
        g_left = -1;
        isWhole = true;
        // What was read is whole: an allocation that failed is never a store that is not there.
        for (char const* const id : {"body", "text-body"})
            if (auto const* const body = dynamic_cast<IBrep*>(producer.Load(id)); !body || !body->Body())
                wrong = std::string("served without ") + id;
        producer.EndProcess();
    }
    catch (std::bad_alloc const&)
    {
    }
    catch (FileException const&)
    {
        // While the document is parsed.
    }
    catch (std::exception const& error)
    {
        g_left = -1;
        wrong = std::string("thrown: ") + error.what();
    }
    g_left = -1;
    if (wrong.empty() && !isWhole)
        wrong = AskScene(path);
    return wrong;
}

}  // namespace

void RunFailures(double scale, Tally& tally)
{
    if (Test::kIsSanitized)
        return;
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    SceneCopies copies;
    std::string const path = copies.Make(SceneCopies::Kind::kComplete);
    // How many allocations there are.
    constexpr long kMost = 10'000'000;
    long all = 0;
    {
        xercesc::XMLPlatformUtils::Initialize();
        XMLProducer producer(UTF16String(UTF8String(path)), nullptr);
        g_left = kMost;
        producer.BeginProcess(IdSet(), nullptr, nullptr);
        all = kMost - g_left;
        g_left = -1;
    }
    std::uint64_t const count = Share(scale, static_cast<std::uint64_t>(all));
    auto const numberOf = [&](std::uint64_t input)
    { return static_cast<long>(input / 2 * static_cast<std::uint64_t>(all) / count); };
    RunForked(
        tally, 2 * count, 1, [&](std::uint64_t input) { return OpenWith(numberOf(input), input % 2 == 0, path); },
        [&](std::uint64_t input)
        { return "allocation " + std::to_string(numberOf(input)) + (input % 2 == 0 ? ", once" : " and on"); },
        // Xerces-C loses what it holds when memory fails within it.
        Leaks::kIgnored);
    xercesc::XMLPlatformUtils::Terminate();
}

}  // namespace KVR::Campaigns
