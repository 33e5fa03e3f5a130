#pragma once

#include <span>
#include <string>
#include <vector>

#include "inspect/Finding.h"

namespace KVR
{

/// What a file becomes by changes of it, as a unified diff that patch(1) applies; empty when there are none. Of changes
/// that meet each other the first counts, and one beyond the end of the content has no effect.
std::string UnifiedDiff(std::string const& path, std::string const& content, std::vector<Edit> edits);

/// The diffs of all files that findings have changes of. Files that cannot be read are left out.
std::string DiffOfFixes(std::span<Finding const> findings);

}  // namespace KVR
