#pragma once

#include <TopLoc_Location.hxx>
#include <TopoDS_Shape.hxx>
#include <array>
#include <gp_Mat.hxx>
#include <memory>
#include <vector>

#include "scene/Scene.h"

class BRepBuilderAPI_ModifyShape;

namespace KVR
{

/// A transform in two steps: first what changes a shape itself, a scale, a mirror or a shear about the origin, then a
/// rigid motion. Open CASCADE places a shape by rigid motions alone.
struct ShapePlacement
{
    /// The first step: the identity when the transform is rigid. Equal change is told by equal numbers, so that
    /// copies can be shared.
    gp_Mat change;
    /// The second step. Two placements never count as the same location, even with the same numbers: a STEP writer
    /// takes shapes in the same location for the same occurrence.
    TopLoc_Location motion;

    bool IsRigid() const;

    /// The steps of: first `scale`, then the transform, whose lengths are multiplied by `scale`, then `change`. It
    /// counts as rigid, or as the same in all directions, to 1e-6. A singular transform, or one that is not finite,
    /// leaves nothing to place: the answer is null.
    static std::unique_ptr<ShapePlacement> Of(Matrix const& transform, double scale, gp_Mat const& change);
};

/// The elements of a matrix, to be compared.
std::array<double, 9> ElementsOf(gp_Mat const& matrix);

/// A shape after a change, with what became of its parts.
class ChangedShape
{
public:
    /// Throws Standard_Failure when Open CASCADE cannot change the shape.
    ChangedShape(TopoDS_Shape const& shape, gp_Mat const& change);
    ~ChangedShape();
    ChangedShape(ChangedShape&&) noexcept;
    ChangedShape& operator=(ChangedShape&&) noexcept;

    TopoDS_Shape const& Shape() const { return m_shape; }
    /// The part of the changed shape that a part of the first one became; null for one of another shape.
    TopoDS_Shape PartOf(TopoDS_Shape const& part) const;

private:
    std::unique_ptr<BRepBuilderAPI_ModifyShape> m_change;
    TopoDS_Shape m_shape;
};

}  // namespace KVR
