#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace KVR
{

class OccurrenceStatistics;
class Output;

/// Text of a scene in a page: nothing in it is markup.
std::string Html(std::string_view text);

struct MapPart
{
    double weight;
    /// As Html gives them.
    std::string name;
    std::string details;
};

/// A treemap of all parts that weigh anything, under a title.
void PutMap(std::string const& title, std::vector<MapPart> parts, Output& out);

/// A treemap of the occurrences that are listed, by bytes, each within the one above it.
void PutOccurrenceMap(std::string const& title, OccurrenceStatistics const& occurrences, Output& out);

}  // namespace KVR
