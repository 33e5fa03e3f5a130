#pragma once

#include <string>
#include <vector>

namespace KVR
{

class IProducer;
struct SceneComparison;
struct SceneOptions;

/// Writes a file of the viewer that shows both scenes as one, each occurrence in the colour of what became of it.
/// `first` and `second` are the scenes that were compared; the first one is read once more, under other ids. The answer
/// is a sentence without its full stop on what stood in the way; empty when the file is there. Sentences on what of it
/// is not shown are added to the remarks.
std::string WriteComparisonPage(SceneComparison const& comparison, IProducer& first, SceneOptions const& firstOptions,
                                IProducer& second, std::string const& secondPath, std::string const& target,
                                std::vector<std::string>& remarks);

}  // namespace KVR
