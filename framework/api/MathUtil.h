#pragma once

namespace KVR
{

struct MathUtil
{
    /// Below this magnitude a length without a unit counts as zero.
    static constexpr double kZEROTOLERANCE = 1e-12;
};

}  // namespace KVR
