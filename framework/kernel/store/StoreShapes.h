#pragma once

#include <iosfwd>
#include <vector>

class TopoDS_Shape;

namespace KVR
{

class StoreReadBuffer;

/// The deepest nesting of shapes in a store.
inline constexpr int kDeepestShape = 1000;

/// Writes the shapes as children of one compound, in Open CASCADE's binary or text form. What Open CASCADE throws
/// passes through.
void WriteShapes(std::vector<TopoDS_Shape const*> const& shapes, std::ostream& out, bool textMode);

/// Reads what WriteShapes wrote. False, with the output left alone, for what is no such compound and for what would not
/// be safe to read or to walk: counts of more than there is, indices of what there is not, children of a kind not below
/// their parent's, or deeper nesting. What Open CASCADE and its stream throw passes through.
bool ReadShapes(StoreReadBuffer& content, bool textMode, std::vector<TopoDS_Shape>& shapes);

}  // namespace KVR
