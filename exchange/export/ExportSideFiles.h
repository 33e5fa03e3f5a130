#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace KVR
{

/// The names of the files that stand beside every export to a target: ".bin" of glTF as text, ".mtl" of OBJ.
std::vector<std::string> ExportSideFileNames(std::filesystem::path const& target);

/// What the name of a file is in a URI of glTF.
std::string UriOfFile(std::string const& name);

/// Throws TargetError for one of those names beside a target under which a file stands that is none of an earlier
/// export to that target. An earlier export's are those that the file which stands at the target names: glTF as its
/// buffers and images, OBJ as its libraries of materials. The target itself does not count.
void ExpectOwnSideFiles(std::filesystem::path const& target, std::vector<std::string> const& names);

}  // namespace KVR
