#pragma once

// The family of element readers, declared low so that an owner can read children of any kind without knowing their
// classes; each is defined with the class it makes. A reader answers false when it leaves no usable object.

#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "producer/SideFileIndex.h"

XERCES_CPP_NAMESPACE_BEGIN
class XercesDOMParser;
XERCES_CPP_NAMESPACE_END

namespace KVR
{

class ObjectNodeIndex;
class XMLInstance;
class XMLProducerImpl;

/// Builds the body object of an element, with the body that a kernel store held under the element's id, and registers
/// it; true always, also when the id is registered already and without a body. `id` becomes the object's own id.
[[nodiscard]] bool ReadBrep(XMLProducerImpl* producer, xercesc::DOMNode* node, BodyEntities& bodyEntities,
                            UTF8String& id);

/// Dresses the curve that a store built under the element's id, and registers it; true also for an id that is
/// registered already. `id` becomes the object's own id. False when no store held one.
[[nodiscard]] bool ReadCurveFromStore(XMLProducerImpl* producer, xercesc::DOMNode* node, CurveStore& curveStore,
                                      UTF8String& id);

/// Dresses the mesh that a store built under the element's id, and registers it; true also for an id that is registered
/// already. `id` becomes the object's own id. False when no store held one.
[[nodiscard]] bool ReadPolygonMesh(XMLProducerImpl* producer, xercesc::DOMNode* node, MeshStore& meshStore,
                                   UTF8String& id);

/// Reads an "IExtensionGeometry" with the children that it defines, and registers it. False for a null node.
[[nodiscard]] bool ReadExtensionGeometry(XMLProducerImpl* producer, xercesc::DOMNode* node, BodyEntities& bodyEntities,
                                         CurveEntities& curveEntities, MeshStore& meshStore, CurveStore& curveStore);

/// Reads an "IAnnotationCallout" with its text, its plane and the elements that it defines, and registers it. False for
/// a null node.
[[nodiscard]] bool ReadAnnotationCallout(XMLProducerImpl* producer, xercesc::DOMNode* node,
                                         CurveEntities& curveEntities, MeshStore& meshStore, CurveStore& curveStore);

/// Reads an "IAnnotationCalloutElement" with the geometry that it defines, and registers it. False for a null node.
[[nodiscard]] bool ReadAnnotationCalloutElement(XMLProducerImpl* producer, xercesc::DOMNode* node,
                                                CurveEntities& curveEntities, MeshStore& meshStore,
                                                CurveStore& curveStore);

/// Reads an "IInstance", after its target where that was not read yet, and registers it. Null when the target is
/// missing or is neither component nor file.
XMLInstance* ReadInstance(xercesc::DOMNode* node, ObjectNodeIndex& objectNodeIndex);

// The set readers of an "AttributeSet": each builds and registers the objects of its element and appends their ids in
// document order. False for a null node alone.
[[nodiscard]] bool ReadGroupSet(XMLProducerImpl* producer, xercesc::DOMNode* node, std::vector<UTF8String>& ids);
[[nodiscard]] bool ReadLayerSet(XMLProducerImpl* producer, xercesc::DOMNode* node, std::vector<UTF8String>& ids);
[[nodiscard]] bool ReadTextureSet(XMLProducerImpl* producer, xercesc::DOMNode* node, std::vector<UTF8String>& ids);
[[nodiscard]] bool ReadStyleSet(XMLProducerImpl* producer, xercesc::DOMNode* node, std::vector<UTF8String>& ids,
                                VitreolAssets& vitreolAssets);
[[nodiscard]] bool ReadLodSet(XMLProducerImpl* producer, xercesc::DOMNode* node, std::vector<UTF8String>& ids);
[[nodiscard]] bool ReadCameraSet(XMLProducerImpl* producer, xercesc::DOMNode* node, std::vector<UTF8String>& ids);
[[nodiscard]] bool ReadViewSet(XMLProducerImpl* producer, xercesc::DOMNode* node, std::vector<UTF8String>& ids);

/// Whether the scene in the parser is more than one lone part, judged from the document alone.
[[nodiscard]] bool ClassifyStructure(xercesc::XercesDOMParser const* parser);

}  // namespace KVR
