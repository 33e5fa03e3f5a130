#include "annotation/XMLAnnotationCalloutElement.h"

#include "framework/api/Exception.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLUtils.h"
#include "geometry/ChildIds.h"
#include "geometry/XMLPoint.h"
#include "producer/ElementReaders.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"
#include "readers/ReferenceReader.h"

namespace KVR
{

namespace
{

constexpr ChildIdRow kChildRows[] = {
    {Names::Child, &AddChildRef, kOnFailure_Next},
    {Names::ICurve, &AddCurve, kOnFailure_Stop},
    {Names::IPoint, &AddObject<XMLPoint>, kOnFailure_Next},
    {Names::IPolygonMesh, &AddPolygonMesh, kOnFailure_Next},
};

}  // namespace

XMLAnnotationCalloutElement::XMLAnnotationCalloutElement(XMLProducerImpl* producer)
    : ObjectState(UTF8String(), UTF16String()), m_producer(producer)
{
}

XMLAnnotationCalloutElement::~XMLAnnotationCalloutElement() = default;

AnnotationCalloutElementChildId XMLAnnotationCalloutElement::ChildAt(unsigned long long index) const
{
    if (index > m_childIds.Size())
        throw GeneralException("Invalid index to child of XMLAnnotationCalloutElement.");
    return AnnotationCalloutElementChildId::Create(m_producer->Load(m_childIds.At(index)));
}

bool XMLAnnotationCalloutElement::ReadChildSet(xercesc::DOMNode* node, CurveEntities& curveEntities,
                                               MeshStore& meshStore, CurveStore& curveStore)
{
    ChildContext const context{m_producer, m_producer->sideFileIndex->bodyEntities, curveEntities, meshStore,
                               curveStore};
    return node && ReadChildIds(kChildRows, context, node, m_childIds) == ChildSetEnd::kDone;
}

bool XMLAnnotationCalloutElement::ReadFromXML(xercesc::DOMNode* node, CurveEntities& curveEntities,
                                              MeshStore& meshStore, CurveStore& curveStore)
{
    if (!node)
        return false;
    XMLUtils::GetNodeAttribute(node, Names::ID, m_id);
    XMLUtils::GetNodeAttribute(node, Names::Label, m_label);
    XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, m_versionPersistentId);
    m_producer->ApplyIdMapping(m_id);
    for (xercesc::DOMNode* const child : Children(node))
    {
        Match(child,  //
              On(Names::ChildSet, [&] { Ignored(ReadChildSet(child, curveEntities, meshStore, curveStore)); }),
              On(Names::ExtensionData, [&] { AddExtensionData(child, *this); }),
              // Kept: matches in any case, and then reads nothing unless written exactly.
              OnAnyCase(Names::Styles, [&] { Ignored(ReadStyleRefs(m_producer, child, m_styles)); }));
    }
    return true;
}

bool ReadAnnotationCalloutElement(XMLProducerImpl* producer, xercesc::DOMNode* node, CurveEntities& curveEntities,
                                  MeshStore& meshStore, CurveStore& curveStore)
{
    return ReadAndRegister<XMLAnnotationCalloutElement>(producer, node, curveEntities, meshStore, curveStore) !=
           nullptr;
}

}  // namespace KVR
