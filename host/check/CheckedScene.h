#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "host/ExitStatus.h"
#include "inspect/Check.h"

namespace KVR
{

/// A scene with what a check found of it, as it is to be shown.
struct CheckedScene
{
    /// As the user named it.
    std::string path;
    CheckResult result;
    /// Those of a baseline, which are left out of the result.
    std::size_t known = 0;

    /// How many findings there are of each severity.
    std::array<std::size_t, 3> Counts() const;

    /// Whether accounts disagree, or else whether there are findings of at least that severity.
    ExitStatus Status(Severity failOn) const;
};

/// Tells a finding from others of its scene, and stays when lines are added elsewhere: 16 hexadecimal digits, of the
/// rule, the name of the file, the path of elements and what was found.
std::string FingerprintOf(Finding const& finding);

/// What a finding is about and what came of it, in one sentence without its full stop.
std::string MessageOf(Finding const& finding);

}  // namespace KVR
