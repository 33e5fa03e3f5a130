#pragma once

#include <cstdio>
#include <iosfwd>
#include <vector>

#include "framework/kernel/Export.h"

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

/// Reads a file of one shape, whatever it is, in either form; such files are of older versions, too. It is open for
/// reading, can be positioned, and is not owned. False, with the output left alone, for what holds no shape and what
/// would not be safe, as above; versions 1 and 2 of the binary form are read without being looked at. Throws
/// std::bad_alloc.
KVR_KERNEL_API bool ReadShapeFile(std::FILE* file, TopoDS_Shape& shape);

}  // namespace KVR
