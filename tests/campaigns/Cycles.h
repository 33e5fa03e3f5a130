#pragma once

#include <cstdint>
#include <string>

namespace KVR::Campaigns
{

/// How many scenes with circles of references there are: of each two kinds of references by turns, in each length,
/// alone, with a second circle that meets the first one at one object, and reached from the root or from several roots.
std::uint64_t CycleCount() noexcept;

/// The scene with a circle, by its number, which may be larger than the count.
std::string CyclicScene(std::string document, std::uint64_t number);

}  // namespace KVR::Campaigns
