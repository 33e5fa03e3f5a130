#pragma once

#include <string>
#include <vector>

namespace KVR
{

/// What the user wants to see of the notes of a scene.
struct NotesOptions
{
    /// Where a walk begins, besides the root.
    std::vector<std::string> ids;
    bool json = false;
    /// Shows what elements are drawn with; JSON always has it.
    bool withCurves = false;
    /// Marks bold and italic text, and colours.
    bool color = false;
};

}  // namespace KVR
