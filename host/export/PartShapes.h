#pragma once

#include <TopoDS_Shape.hxx>
#include <gp_Mat.hxx>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "framework/api/IdSet.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/UTF8String.h"
#include "host/export/NotCarried.h"

namespace KVR
{

class IAnnotationCallout;
class IGeometry;
class IProducer;

/// Geometry of a component as a shape in its place, with what the scene says of it.
struct PartItem
{
    UTF8String id;
    std::string name;
    TopoDS_Shape shape;
    bool isHidden = false;
    IdSet styles;
    /// Faces and edges with styles of their own.
    std::vector<std::pair<TopoDS_Shape, IdSet>> subStyles;
    /// Faces and edges that were asked for, by their data ids.
    std::vector<std::pair<std::string, TopoDS_Shape>> subShapes;
};

/// What there is in a component beside its instances.
struct PartContent
{
    std::vector<PartItem> items;
    std::vector<IAnnotationCallout const*> callouts;
};

/// Makes shapes of the geometry of components. No two shapes that it makes share a face or a body, since a document
/// and a STEP file know each once.
class PartShapes
{
public:
    struct Options
    {
        /// The unit of the shapes, in metres.
        double metres = 1e-3;
        /// Whether a mesh without a body becomes a shell of flat faces.
        bool meshFaces = false;
        /// The data ids of faces and edges to be found again.
        std::unordered_set<std::string> wantedSubShapes;
    };

    PartShapes(IProducer& producer, Options options, NotCarried& notCarried);

    /// The shapes of geometry objects; those of other objects are left out. `metres` is the length unit of objects that
    /// state none. The change is applied to all in the component's coordinates.
    PartContent Of(std::vector<UTF8String> const& ids, double metres, gp_Mat const& change);

private:
    friend class PartVisitor;

    IProducer& m_producer;
    Options m_options;
    NotCarried& m_notCarried;
    /// The bodies and faces that are in use already.
    std::unordered_set<void const*> m_used;
};

}  // namespace KVR
