#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <memory>
#include <string_view>
#include <vector>

#include "framework/api/Enums.h"
#include "scene/Export.h"
#include "scene/SceneComponent.h"
#include "scene/SceneFilter.h"
#include "scene/SceneOrganisation.h"
#include "scene/SceneStyle.h"

namespace KVR
{

class IProducer;
class UTF8String;
struct SceneContent;
struct SceneSelection;

/// A scene as its producer serves it, read once: components, what they are made of, and how it looks. Each component
/// is there once, however often it occurs; OccurrenceWalk goes through the occurrences. All is read by the constructor,
/// apart from properties in the database and the numbers of geometry, which stand in the
/// objects: no other call asks the producer.
class KVR_SCENE_API Scene
{
public:
    /// The scene from its root file, or another file, assembly or part, on. Objects belong to the producer, which must
    /// outlive the scene and keep them. Throws std::bad_alloc, SceneFilterError for a filter with a name that means
    /// nothing in the scene, and what the producer throws.
    Scene(IProducer& producer, UTF8String const& rootId, SceneFilter const& filter = {});
    Scene(Scene&& other) noexcept;
    Scene& operator=(Scene&& other) noexcept;
    ~Scene();

    /// Takes out what is not wanted, which stays among the cuts. Throws std::bad_alloc, and SceneFilterError for a name
    /// that means nothing in the scene.
    void Reduce(SceneSelection const& selection);

    /// Breadth first from the root; behind them those that were reduced. Placements are indices of this list.
    std::vector<SceneComponent> const& Components() const noexcept;
    /// The root's index; kNoIndex, without any component, when no file, assembly or part has its id.
    std::size_t Root() const noexcept;
    /// The unit of length of the first component that states one; millimetres when none does.
    UnitTypeEnum Unit() const noexcept;
    /// The length of that unit in metres, always greater than 0.
    double MetresPerUnit() const noexcept;

    /// All styles that components, instances, geometry, faces, overrides or sets name.
    std::deque<SceneStyle> const& Styles() const noexcept;
    /// The style of an id; null for one that nothing names.
    SceneStyle const* StyleOf(std::string_view id) const;

    // Declared by components, each once, in the order of the components.

    /// Ids without a layer behind them are left out.
    std::vector<SceneLayer> const& Layers() const noexcept;
    /// Ids without a group behind them are left out.
    std::vector<SceneGroup> const& Groups() const noexcept;
    /// Levels of detail. Ids without one behind them are left out.
    std::vector<SceneLod> const& Lods() const noexcept;
    /// Objects behind them are null or any; a view's is an IView.
    std::vector<SceneReference> const& Views() const noexcept;
    /// The same; a camera's is an ICamera.
    std::vector<SceneReference> const& Cameras() const noexcept;

    /// Of length 1; upwards is z when the scene states nothing usable.
    std::array<double, 3> const& UpVector() const noexcept;

    // The colours of what has no style, as fractions of sRGB.

    /// A light grey, since the surface colour that a producer serves is its curves'.
    std::array<double, 3> const& DefaultSurfaceColor() const noexcept;
    /// That which the scene states, else black.
    std::array<double, 3> const& DefaultCurveColor() const noexcept;

    /// The properties that the scene's database has for an object, in the object's order; empty without a database.
    /// They are read from the producer with each call.
    std::vector<SceneProperty> PropertiesOf(IObject const& object) const;

    /// What of the scene is not in its occurrences. Placements that are cut stay with their components, marked.
    struct Cut
    {
        std::size_t component = kNoIndex;
        /// Among the component's; kNoIndex for sets of geometry in one another.
        std::size_t placement = kNoIndex;
        SceneCut reason = SceneCut::kNone;
    };
    /// What was found in reading, then cycles and placements that are too deep, then what the filter leaves out.
    std::vector<Cut> const& Cuts() const noexcept;
    /// Pieces of geometry that the filter took out of components.
    std::size_t FilteredGeometry() const noexcept;

private:
    std::unique_ptr<SceneContent> m_content;
};

}  // namespace KVR
