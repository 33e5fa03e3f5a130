#pragma once

#include <TopoDS_Shape.hxx>
#include <gp_Mat.hxx>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "exchange/export/ExportTask.h"
#include "scene/Scene.h"

namespace KVR
{

class BODY;
class IPolygonMesh;
class SubEntityToStylesMap;
struct ShapePlacement;

/// Geometry of a component as a shape in its place.
struct PartItem
{
    SceneGeometry const* geometry = nullptr;
    TopoDS_Shape shape;
    /// Faces and edges with the ids of their styles.
    std::vector<std::pair<TopoDS_Shape, std::string>> subStyles;
    /// Faces and edges that were asked for, by their data ids.
    std::vector<std::pair<std::string, TopoDS_Shape>> subShapes;
};

/// Makes shapes of the geometry of components. No two shapes that it makes share a face or a body, since a document
/// and a STEP file know each once.
class PartShapes
{
public:
    struct Options
    {
        /// The unit of the shapes, in metres.
        double metresPerUnit = 1e-3;
        /// What becomes of a mesh without a body: it is counted, a shell of flat faces, or the affair of someone else.
        enum class Meshes
        {
            kCount,
            kFaces,
            kLeave
        };
        Meshes meshes = Meshes::kCount;
        /// The data ids of faces and edges to be found again.
        std::unordered_set<std::string> wantedSubShapes;
        /// Of the geometry; not owned.
        GeometryWatch* watch = nullptr;
    };

    PartShapes(Options options, NotCarriedCounts& notCarried);

    /// The shapes of a component's geometry after a change in the component's coordinates. What makes no shape is
    /// counted, once for a component.
    std::vector<PartItem> Of(SceneComponent const& component, gp_Mat const& change);

private:
    TopoDS_Shape ShapeOf(SceneGeometry const& geometry, NotCarriedCounts& notCarried);
    TopoDS_Shape FacesOf(IPolygonMesh const& mesh, NotCarriedCounts& notCarried);
    void Place(PartItem& item, TopoDS_Shape const& shape, ShapePlacement const& placement, bool stays);
    void TakeSubShapes(PartItem& item, BODY const& body, SubEntityToStylesMap const* styles) const;
    bool IsUsed(TopoDS_Shape const& shape);

    Options m_options;
    /// Of all meshes that became faces.
    std::size_t m_triangles = 0;
    NotCarriedCounts& m_notCarried;
    /// Components whose losses were counted.
    std::unordered_set<void const*> m_counted;
    /// The bodies and faces that are in use already.
    std::unordered_set<void const*> m_used;
};

}  // namespace KVR
