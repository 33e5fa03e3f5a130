#pragma once

#include <string>
#include <vector>

#include "exchange/model/Part21File.h"

namespace KVR
{

/// What can be taken of a STEP file that is cut short or damaged: the entities that are whole and name only what is
/// whole. Lists that may be shorter, such as the faces of a shell and the items of a representation, lose what is not
/// there, as long as something is left.
struct Part21Repair
{
    /// A file of these entities with the head of the damaged one; empty for one without a head, or without any.
    std::string text;
    std::size_t taken = 0;
    /// Those that are left out, and those that lost a part: "#65 CLOSED_SHELL".
    std::vector<std::string> dropped;
    std::vector<std::string> shortened;

    static Part21Repair Of(Part21File const& file);
};

}  // namespace KVR
