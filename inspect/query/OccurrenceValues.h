#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "inspect/query/ComponentProperties.h"
#include "inspect/query/ComponentSizes.h"
#include "inspect/query/QueryField.h"
#include "scene/OccurrenceWalk.h"
#include "scene/SceneTotals.h"

namespace KVR
{

/// A walk over all occurrences of a scene that answers the fields of expressions and columns for the one where it is.
/// What takes long is computed when it is first asked for, once for each component. The scene must outlive it.
class OccurrenceValues
{
public:
    explicit OccurrenceValues(Scene const& scene);

    /// Goes to the next occurrence; false when there are no more. What is below is for occurrences alone.
    bool Next();
    OccurrenceWalk const& Walk() const noexcept { return m_walk; }
    /// The place of the occurrence in the walk; 0 for the root.
    std::size_t Place() const noexcept { return m_place; }

    /// Those of a field of texts: none or many, none of them empty. Valid until the next call of any operation.
    std::vector<std::string_view> const& Texts(QueryField field);
    /// The same as it is shown: of name and id that which stands in the path alone, and of a layer its label or else
    /// its id.
    std::vector<std::string_view> const& Shown(QueryField field);
    /// That of a flag; false for a field that is none.
    bool Flag(QueryField field);
    /// That of a number, in the unit of the field's type; nothing where there is none.
    std::optional<double> Number(QueryField field);
    /// Of the instance and of what it places: properties of the database, custom properties, and what the file
    /// properties state, by the names of their operations. Valid until the next call of any operation.
    std::vector<SceneProperty> const& Properties();
    /// What a component is by itself, wherever it stands.
    ComponentSizes& Sizes() noexcept { return m_sizes; }

private:
    using Styles = std::vector<SceneStyle const*>;

    void Take(std::string_view text);
    void TakeJoined(std::vector<std::string_view> const& names);
    std::vector<SceneLayer const*> Layers();
    void TakeLayers();
    void TakeColors();
    void TakeColor(SceneStyle const* style);
    std::optional<double> Extent(QueryField field);
    std::optional<double> Measure(QueryField field);
    double Users();
    SceneTotals const& Totals();
    Styles const& FaceStylesOf(SceneGeometry const& geometry);

    Scene const& m_scene;
    OccurrenceWalk m_walk;
    ComponentSizes m_sizes;
    std::size_t m_place = 0;
    bool m_hasStarted = false;
    /// From the root to the occurrence.
    std::vector<std::string_view> m_names;
    std::vector<std::string_view> m_ids;
    std::vector<std::string_view> m_texts;
    /// What m_texts looks at where a text is made.
    std::string m_joined;
    std::vector<std::string> m_made;
    std::vector<SceneProperty> m_properties;
    std::optional<SceneTotals> m_totals;
    std::unordered_map<IObject const*, unsigned long long> m_users;
    /// The layers of an id.
    std::optional<std::unordered_map<std::string_view, std::vector<SceneLayer const*>>> m_layers;
    std::unordered_map<IObject const*, Styles> m_faceStyles;
    ComponentProperties m_componentProperties;
};

}  // namespace KVR
