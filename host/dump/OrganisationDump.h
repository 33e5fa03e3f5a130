#pragma once

namespace KVR
{

struct DumpContext;
class ICamera;
class IGroup;
class ILayer;
class ILod;
class IView;

// Layers, groups, levels of detail, cameras and views. Each writes the members of one object; the caller opens and
// closes it.

void DumpLayer(DumpContext const& context, ILayer const& layer);
void DumpGroup(DumpContext const& context, IGroup const& group);
void DumpLod(DumpContext const& context, ILod const& lod);
/// A section camera too, with its planes.
void DumpCamera(DumpContext const& context, ICamera const& camera);
void DumpView(DumpContext const& context, IView const& view);

}  // namespace KVR
