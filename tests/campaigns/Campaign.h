#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace KVR::Campaigns
{

/// Numbers from a seed, the same on every machine.
class Dice
{
public:
    explicit Dice(std::uint64_t seed) noexcept : m_state(seed + 0x9E3779B97F4A7C15U) {}

    std::uint64_t Next() noexcept;
    /// Below the bound, which is not 0.
    std::size_t Below(std::size_t bound) noexcept { return static_cast<std::size_t>(Next() % bound); }
    template <class List>
    auto const& Of(List const& list) noexcept
    {
        return list[Below(std::size(list))];
    }

private:
    std::uint64_t m_state;
};

/// What came of a campaign.
struct Tally
{
    std::uint64_t inputs = 0;
    /// Inputs that ended the process, or whose answer was not what it has to be; those that took more than 10 s of
    /// processor time; batches that kept memory.
    std::uint64_t crashes = 0;
    std::uint64_t hangs = 0;
    std::uint64_t leaks = 0;
    std::uint64_t wrong = 0;
    std::uint64_t peakKB = 0;
    double slowest = 0.0;
    /// The first findings, each with what it takes to have it again.
    std::vector<std::string> findings;

    bool IsGood() const noexcept { return crashes + hangs + leaks + wrong == 0; }
    void Find(std::uint64_t& count, std::string finding);
};

/// Whether an input was answered as it has to be: an empty text, or what was wrong.
using Try = std::function<std::string(std::uint64_t input)>;

enum class Leaks
{
    kCounted,
    /// Where a library below is known to lose what it holds.
    kIgnored
};

/// Tries inputs 0 to `count` in child processes of `batch` inputs each. An input that ends its child counts, and the
/// next child goes on behind it. Of leaks the batches tell: memory that grows from the middle of a batch to its end.
/// `name` describes an input for the findings.
void RunForked(Tally& tally, std::uint64_t count, std::uint64_t batch, Try const& attempt,
               std::function<std::string(std::uint64_t)> const& name, Leaks leaks = Leaks::kCounted);

/// A campaign. `scale` is the share of the full form that is run: 1 for all of it.
struct Campaign
{
    std::string_view name;
    std::string_view covers;
    void (*run)(double scale, Tally& tally);
};

void RunSideFiles(double scale, Tally& tally);
void RunScenes(double scale, Tally& tally);
void RunCycles(double scale, Tally& tally);
void RunFailures(double scale, Tally& tally);
void RunFileCalls(double scale, Tally& tally);
void RunCounts(double scale, Tally& tally);
void RunThreads(double scale, Tally& tally);
void RunSoak(double scale, Tally& tally);
void RunXml(double scale, Tally& tally);
void RunSidePaths(double scale, Tally& tally);
void RunModels(double scale, Tally& tally);
void RunWatch(double scale, Tally& tally);
void RunMisuse(double scale, Tally& tally);

/// So many of the full form's inputs, and one at the least.
std::uint64_t Share(double scale, std::uint64_t full);
std::string ReadBytes(std::string const& path);
void WriteBytes(std::string const& path, std::string_view bytes);

/// Opens the scene as a host does, asks everything of every object, and ends it. Empty, or what was thrown that no host
/// is told of.
///
/// `lock`, if there is one, is held while the scene is opened and ended, as hosts with several threads have to.
std::string AskScene(std::string const& path, char const* prefix = nullptr, std::mutex* lock = nullptr);

}  // namespace KVR::Campaigns
