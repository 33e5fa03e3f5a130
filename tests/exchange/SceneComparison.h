#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace KVR::Test
{

/// What a scene of a model holds, as JSON for comparisons: names, structure, places, bodies, colours, visibilities,
/// layers with their members, properties, annotations, views and cameras. Of what a file says of itself there are
/// author, organization and authorisation alone, and of triangles nothing.
nlohmann::json SceneContent(std::string const& path);
/// The second content without the validation properties of parts that are none of the first's: an export adds them.
nlohmann::json WithoutAddedMeasures(nlohmann::json const& first, nlohmann::json second);
/// A line for each difference. Numbers may differ by 1e-6.
std::vector<std::string> DifferencesOf(nlohmann::json const& first, nlohmann::json const& second);

}  // namespace KVR::Test
