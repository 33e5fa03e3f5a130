#pragma once

#include <cstdint>
#include <map>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/DataIdToPersistentIdMap.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "producer/SideFileIndex.h"

namespace KVR
{

class BODY;
class XMLProducerImpl;

/// The scene that a store belongs to.
struct KernelStoreContext
{
    UTF16String const& sceneFilePath;
    XMLProducerImpl& producer;
};

/// Restores a kernel store and files its bodies, and curves made of its edges, by their data ids; of two with one id
/// the first stays. The path is taken from the scene file's folder; ".sab" and ".gkb", in any case, are binary stores,
/// all others text. A store that the kernel finds insecure is reported to the event manager. True when the file could
/// be opened, whatever was in it.
[[nodiscard]] bool RestoreKernelStore(KernelStoreContext const& context, UTF16String const& pathText,
                                      CurveEntities& curveEntities, BodyEntities& bodyEntities);

using DataIdIndex = std::map<UTF8String, std::uint32_t>;

/// Enters the ordinals of a body's faces by the data ids, of several the last. The counter goes up by one for each
/// face, also for one without a data id or whose id is there already. Null has no effect.
void BuildFaceDataIdIndex(BODY const* body, DataIdIndex& index, std::uint32_t& counter);
/// The same for the edges.
void BuildEdgeDataIdIndex(BODY const* body, DataIdIndex& index, std::uint32_t& counter);

/// Adds an object's persistent ids of faces and edges: those that a side file has for the id, which is the one of the
/// document, or, when no side file had any for any object, those of the element itself. What a side file has is handed
/// out once.
void LoadObjectPersistentIds(XMLProducerImpl* producer, xercesc::DOMNode const* node, UTF8String const& id,
                             EditableDataIdToPersistentIdMap& map);

}  // namespace KVR
