#pragma once

namespace KVR
{

struct DumpContext;
class IObject;

/// Writes the object that stands for an object of the scene, of whatever interface.
void DumpAnyObject(DumpContext const& context, IObject& object);

}  // namespace KVR
