#pragma once

#include <array>
#include <optional>
#include <vector>

#include "scene/Export.h"

class TopoDS_Shape;

namespace KVR
{

/// What is known of a face or edge without its triangles. Lengths are in the unit of the shape.
struct KVR_SCENE_API ShapeMeasures
{
    /// What a face lies on.
    enum class SurfaceKind
    {
        kPlane,
        kCylinder,
        kCone,
        kSphere,
        kTorus,
        kBSpline,
        kOther
    };
    /// What an edge runs along.
    enum class CurveKind
    {
        kLine,
        kCircle,
        kEllipse,
        kBSpline,
        kOther,
        /// No curve, as at the tip of a cone.
        kNone
    };

    /// Of a face.
    struct Surface
    {
        SurfaceKind kind = SurfaceKind::kOther;
        /// Of a cylinder or sphere; the greater one of a torus.
        std::optional<double> radius;
        /// 0 where it cannot be computed.
        double area = 0.0;
    };
    /// Of an edge.
    struct Curve
    {
        CurveKind kind = CurveKind::kNone;
        /// Of a circle and its arcs, also where they are written as an ellipse.
        std::optional<double> radius;
        std::optional<std::array<double, 3>> center;
        /// 0 where it cannot be computed, and for one without an end.
        double length = 0.0;
    };

    /// Those of a shape, from its own numbers alone: a shape that Open CASCADE cannot follow has fewer, never none of
    /// the lists. Throws std::bad_alloc alone.
    static ShapeMeasures Of(TopoDS_Shape const& shape);

    /// By the places of faces and edges in a walk over the shape, each once, as BODY lists them.
    std::vector<Surface> faces;
    std::vector<Curve> edges;
    /// The sum of the faces' areas; 0 without faces.
    double area = 0.0;
    /// Of its solids; nothing without one, or where it comes out as none.
    std::optional<double> volume;
};

}  // namespace KVR
