#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace KVR
{

/// What a child process may take, in proportion to what it reads. It reaches no network and leaves no image of its
/// memory behind when it crashes.
struct ChildLimits
{
    /// For work on nothing, and what each byte of the files that it reads adds.
    static constexpr unsigned kSeconds = 20;
    static constexpr unsigned kSecondsPerMillionBytes = 40;
    static constexpr std::uint64_t kMemory = std::uint64_t{2} << 30U;
    static constexpr std::uint64_t kMemoryPerByte = 256;

    /// Without any processor time, while its threads wait for one another.
    static constexpr unsigned kStandstill = 30;

    /// Those for work on files, where `timeout` replaces the processor time, if it is given. A file that is not there
    /// adds nothing.
    static ChildLimits For(std::vector<std::string> const& files, std::optional<unsigned> timeout);

    /// Processor time of all threads together.
    unsigned seconds = kSeconds;
    /// Beyond what the caller has, in bytes of address space.
    std::uint64_t memory = kMemory;
    /// By the clock.
    unsigned standstill = kStandstill;

    /// Holds this process to them from here on. What the system does not allow to be set stays as it is.
    void Apply() const noexcept;

    /// "after the 20 s of processor time that it may take".
    std::string TimeText() const;
    /// "there is not enough memory for it, which may take 2048 MiB".
    std::string MemoryText() const;
    /// "after its threads had waited for one another for 30 s, as they do where they lack memory".
    std::string StallText() const;
};

}  // namespace KVR
