#pragma once

#include <string>

namespace KVR
{

class Output;
struct SceneChange;
struct SceneComparison;

/// One change as a line: the path, what it is, and how often it occurs.
std::string LineOf(SceneChange const& change);

/// Writes changes by kind, at most ten of each unless all are wanted, and a line that counts them. The names are those
/// of the scenes' files.
void WriteComparisonAsText(SceneComparison const& comparison, std::string const& first, std::string const& second,
                           bool all, Output& out);

/// Writes all of it as JSON, in the form of docs/diff.md.
void WriteComparisonAsJson(SceneComparison const& comparison, std::string const& first, std::string const& second,
                           Output& out);

}  // namespace KVR
