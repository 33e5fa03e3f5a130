#pragma once

#include <string_view>

namespace KVR
{

struct DumpContext;
class FileProperties;
class IAttributeSets;
class IGeometry;
class IObject;
class ISubEntityStyles;
class ITransformable;
class IUnit;
class IVisible;

// The members of the bases that several interfaces share. The caller opens and closes the object.

/// "Class" and the members of IObject.
void DumpObject(DumpContext const& context, std::string_view className, IObject const& object);
void DumpUnits(DumpContext const& context, IUnit const& object);
void DumpVisibility(DumpContext const& context, IVisible const& object);
void DumpTransform(DumpContext const& context, ITransformable const& object);
void DumpAttributeSets(DumpContext const& context, IAttributeSets const& object);
void DumpStylesMap(DumpContext const& context, ISubEntityStyles const& object);
/// Everything up to and with the members of IGeometry.
void DumpGeometry(DumpContext const& context, std::string_view className, IGeometry const& geometry);

}  // namespace KVR
