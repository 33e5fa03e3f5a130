#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "inspect/Compare.h"
#include "scene/Scene.h"

namespace KVR
{

/// The frame around two scenes that are shown as one: a document with an assembly that places what both have at the top
/// and says in which colour each occurrence is shown. Objects of the first scene have other ids there than in the
/// comparison; those of one that is not in the map are not shown.
class ComparisonFrame
{
public:
    using NewIds = std::unordered_map<std::string, std::string>;

    ComparisonFrame(SceneComparison const& comparison, Scene const& was, NewIds const& newIds, Scene const& is,
                    std::string const& title);

    std::string const& Document() const noexcept { return m_document; }
    /// The names of all that is to be shown.
    std::vector<std::string> const& Shown() const noexcept { return m_shown; }

private:
    /// The style of each object that is marked.
    using Marks = std::unordered_map<std::string, std::string>;

    void Mark(SceneComparison const& comparison, NewIds const& newIds);
    void Place(Scene const& scene, std::string const& prefix, std::string const& label, Marks const& marks,
               std::string const& unmarked);
    std::string Properties(SceneComparison const& comparison) const;
    std::string Layers(SceneComparison const& comparison, NewIds const& newIds) const;

    Marks m_was;
    Marks m_is;
    std::string m_styles;
    std::string m_instances;
    std::string m_parts;
    std::vector<std::string> m_shown;
    std::string m_document;
};

}  // namespace KVR
