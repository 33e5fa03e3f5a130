#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "scene/OccurrenceWalk.h"
#include "scene/Scene.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

/// A scene of a test's own text, read by the producer and into a model.
class ModelScene
{
public:
    /// What stands in the root element of the document. Each mesh named is in its store, as a triangle.
    explicit ModelScene(std::string const& text, SceneFilter const& filter = {},
                        std::vector<std::string> const& meshes = {});

    KVR::Scene const& Model() const { return *m_model; }
    XMLProducer& Producer() { return m_scene.Producer(); }
    /// The component of that id; throws std::runtime_error when there is none.
    SceneComponent const& Component(std::string_view id) const;
    /// The same among its placements, by the ids of instances, or else of what they place.
    ScenePlacement const& Placement(std::string_view component, std::string_view id) const;
    SceneGeometry const& Geometry(std::string_view component, std::string_view id) const;

private:
    TestScene m_scene;
    std::unique_ptr<KVR::Scene> m_model;
};

/// The root file "f", in millimetres, over what is named.
std::string File(std::vector<std::string> const& children, std::string const& declared = {});
std::string Assembly(std::string const& id, std::string const& children, std::string const& more = {});
std::string Part(std::string const& id, std::string const& children = {}, std::string const& more = {});
std::string Instance(std::string const& id, std::string const& target, std::string const& more = {});
/// A hidden one.
std::string HiddenInstance(std::string const& id, std::string const& target);
/// One that names a style.
std::string StyledInstance(std::string const& id, std::string const& target, std::string const& style);
/// One that is moved along x.
std::string MovedInstance(std::string const& id, std::string const& target, double x);
/// A point, which is geometry without a side file.
std::string Point(std::string const& id, std::string const& more = {});
std::string Body(std::string const& id);
/// A mesh, of that body.
std::string MeshOf(std::string const& id, std::string const& body);

/// For the cross-level attributes of an assembly.
std::string CrossLevel(std::string const& content);
std::string Shows(std::string const& path, bool isVisible);
std::string Styles(std::string const& path, std::string const& style);
std::string Moves(std::string const& path, double x);

/// The paths of all occurrences that a walk meets, ids with "/" between them; the root's is its id.
std::vector<std::string> PathsOf(KVR::Scene const& scene, OccurrenceWalk::Mode mode = OccurrenceWalk::Mode::kAll);

}  // namespace KVR::Test
