#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "inspect/Export.h"

namespace KVR
{

class IProducer;

/// In what two scenes differ.
enum class ChangeKind
{
    /// An occurrence, or a piece of geometry, that the second scene alone has, with all below it.
    kAdded,
    /// One that the first scene alone has.
    kRemoved,
    /// It stands elsewhere, or in another component.
    kMoved,
    kRenamed,
    /// A style was given, taken away or replaced, or says something else.
    kRestyled,
    kShown,
    kHidden,
    /// The triangles differ, and the body that they stand for does not.
    kTessellated,
    /// The shape of a body, mesh, curve, point or cloud.
    kBody,
    /// A property of an object or file was given, taken away or changed.
    kProperty,
    /// A callout or its text.
    kNote,
    /// A unit of length or angle.
    kUnit,
    /// A saved view or a camera.
    kView,
    /// A layer, group or level of detail, or what is in it.
    kLayer,
    /// Any other answer of an object, or of the scene as a whole.
    kOther
};

/// How an object of one scene was found in the other.
enum class MatchKind
{
    kId,
    kPersistentId,
    kName,
    kGeometry
};

/// One difference. All texts are UTF-8.
struct SceneChange
{
    ChangeKind kind = ChangeKind::kOther;
    /// The names of components and instances from the root to where it occurs first, with "/" between them, ids where
    /// there are no names; of an object apart from the tree its own. It is that of the second scene, and of what is
    /// removed that of the first one.
    std::string path;
    /// Ids of instances from the root to there; empty for what is apart from the tree.
    std::vector<std::string> firstPlace;
    std::vector<std::string> secondPlace;
    /// The object in each scene; empty where it is not there.
    std::string firstId;
    std::string secondId;
    /// The interface's name: "IInstance".
    std::string className;
    /// How often what changed occurs; 0 for what is apart from the tree.
    unsigned long long occurrences = 0;
    /// What changed of it, as a dump names it, or the name of a property; empty where the kind says all.
    std::string what;
    /// What it was and is, as a reader wants to see it; empty for nothing.
    std::string first;
    std::string second;
    /// Of what moved within its component: how far its origin did, in metres, and by which angle it turned, in radians.
    /// An angle is missing where it was stretched or mirrored.
    std::optional<double> distance;
    std::optional<double> angle;
};

/// What came of a comparison.
struct SceneComparison
{
    /// By kind, and within one in the order of the scenes.
    std::vector<SceneChange> changes;
    /// How many objects were matched in each way, by MatchKind.
    std::size_t matched[4] = {};
    /// All occurrences of components.
    unsigned long long firstOccurrences = 0;
    unsigned long long secondOccurrences = 0;
};

/// Compares what two producers serve after BeginProcess. Components, instances, geometry and all other objects of the
/// first scene are matched with those of the second one: by id, which counts when the name or the content agrees; by
/// persistent id; by the path of names from the root down; by id alone; by equal geometry. What matches is compared
/// answer by answer; ids are no answer. A component is compared once, however often it occurs, and so is what it holds.
/// Takes time in proportion to the objects. Throws GeneralException for a scene without a root, std::bad_alloc, and
/// what producers throw.
KVR_INSPECT_API SceneComparison CompareScenes(IProducer& first, IProducer& second);

/// "added", "removed", "moved", "renamed", "restyled", "shown", "hidden", "re-tessellated", "shape", "property",
/// "note", "unit", "view", "layer" or "other".
KVR_INSPECT_API std::string_view TextOf(ChangeKind kind) noexcept;
/// "id", "persistent id", "name" or "geometry".
KVR_INSPECT_API std::string_view TextOf(MatchKind kind) noexcept;

}  // namespace KVR
