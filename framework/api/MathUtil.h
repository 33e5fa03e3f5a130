#pragma once

namespace KVR
{

/// Numbers that geometry is weighed with.
struct MathUtil
{
    /// Below this magnitude a length without a unit counts as zero.
    static constexpr double kZEROTOLERANCE = 1e-12;
};

}  // namespace KVR
