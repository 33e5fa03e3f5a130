#pragma once

#include <iosfwd>
#include <vector>

class TopoDS_Shape;

namespace KVR
{

/// The deepest nesting of shapes in a store.
inline constexpr int kDeepestShape = 1000;

/// Writes the shapes as children of one compound, in Open CASCADE's binary or text form. What Open CASCADE throws
/// passes through.
void WriteShapes(std::vector<TopoDS_Shape const*> const& shapes, std::ostream& out, bool textMode);

/// Reads what WriteShapes wrote. False, with the output left alone, for what is no such compound and for one that would
/// not be safe to walk: shapes that are nothing, children of a kind not below their parent's, or deeper nesting. The
/// stream has to throw on failure, since the text form's reader would not end at the end of a stream; what it and Open
/// CASCADE throw passes through.
bool ReadShapes(std::istream& in, bool textMode, std::vector<TopoDS_Shape>& shapes);

}  // namespace KVR
