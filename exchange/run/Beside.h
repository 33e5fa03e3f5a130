#pragma once

#include <OSD_Parallel.hxx>
#include <cstddef>
#include <future>
#include <stdexcept>

namespace KVR
{

/// How std::async begins work beside the caller's: on a thread of its own, at once, and where the system gives none
/// when its result is asked for.
inline constexpr std::launch kBesideIfPossible = std::launch::async | std::launch::deferred;

/// Does work(0), work(1), ... work(count - 1) on all processors, in any order; on the caller's alone where the system
/// gives no thread, and then some of it for a second time. Throws what the work throws.
template <class Work>
void DoBeside(std::size_t count, Work const& work)
{
    try
    {
        OSD_Parallel::For(0, static_cast<int>(count), [&](int i) { work(static_cast<std::size_t>(i)); });
    }
    catch (std::runtime_error const&)
    {
        for (std::size_t i = 0; i < count; ++i)
            work(i);
    }
}

}  // namespace KVR
