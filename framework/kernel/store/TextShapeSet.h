#pragma once

#include <BRepTools_ShapeSet.hxx>

namespace KVR
{

/// A set of shapes that writes Open CASCADE's text form with every number as the shortest text that reads back as the
/// same double. Open CASCADE itself writes points, tolerances, ranges and locations with fifteen digits.
class TextShapeSet final : public BRepTools_ShapeSet
{
public:
    /// Leaves the stream with a locale in which numbers go out so.
    void Write(Standard_OStream& out, Message_ProgressRange const& progress = {}) override;
    using BRepTools_ShapeSet::Write;

private:
    void WriteShape(TopoDS_Shape const& shape, Standard_OStream& out) const;
};

}  // namespace KVR
