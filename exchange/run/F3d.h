#pragma once

#include <string>
#include <vector>

namespace KVR
{

/// Runs the program f3d, which draws models, with these arguments; in a display that nobody sees where there is none.
/// What it says is not heard, and after two minutes it ends. False where it is not there, or did not do what it was
/// told.
bool RunF3d(std::vector<std::string> const& arguments);

}  // namespace KVR
