#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace KVR::Test
{

/// An annotation callout as a scene of an imported model has it.
struct SceneNote
{
    std::string id;
    std::string label;
    std::string text;
    std::string kind;
    std::string references;
    std::string details;

    bool operator==(SceneNote const&) const = default;
};
void PrintTo(SceneNote const& note, std::ostream* out);

/// The callouts of a scene, in the order of their ids.
std::vector<SceneNote> NotesOf(std::string const& scenePath);

}  // namespace KVR::Test
