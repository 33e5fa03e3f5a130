#include "annotation/XMLAnnotationCallout.h"

#include <utility>

#include "annotation/XMLAnnotationCalloutElement.h"
#include "framework/api/Exception.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLUtils.h"
#include "geometry/ChildIds.h"
#include "geometry/XMLWorkPlane.h"
#include "producer/ElementReaders.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"
#include "readers/ReferenceReader.h"

namespace KVR
{

namespace
{

bool AddElement(ChildContext const& context, xercesc::DOMNode* node, std::vector<UTF8String>& ids)
{
    auto const* const element = ReadAndRegister<XMLAnnotationCalloutElement>(
        context.producer, node, context.curveEntities, context.meshStore, context.curveStore);
    if (!element)
        return false;
    ids.push_back(element->Id());
    return true;
}

constexpr ChildIdRow kChildRows[] = {
    {Names::Child, &AddChildRef, kOnFailure_Next},
    {Names::IAnnotationCalloutElement, &AddElement, kOnFailure_Stop},
};

}  // namespace

XMLAnnotationCallout::XMLAnnotationCallout(XMLProducerImpl* producer)
    : ObjectState(UTF8String(), UTF16String()), m_producer(producer)
{
}

XMLAnnotationCallout::~XMLAnnotationCallout() = default;

AnnotationCalloutChildId XMLAnnotationCallout::ChildAt(unsigned long long index) const
{
    if (index > m_childIds.Size())
        throw GeneralException("Invalid index to child of XMLAnnotationCallout.");
    return AnnotationCalloutChildId::Create(m_producer->Load(m_childIds.At(index)));
}

IsValueSpecifiedEnum XMLAnnotationCallout::AnnotationPlaneId(UTF8String& id) const
{
    if (m_annotationPlaneId.IsEmpty())
        return kIsValueSpecified_No;
    id = m_annotationPlaneId;
    return kIsValueSpecified_Yes;
}

bool XMLAnnotationCallout::ReadChildSet(xercesc::DOMNode* node, CurveEntities& curveEntities, MeshStore& meshStore,
                                        CurveStore& curveStore)
{
    ChildContext const context{m_producer, m_producer->sideFileIndex->bodyEntities, curveEntities, meshStore,
                               curveStore};
    return node && ReadChildIds(kChildRows, context, node, m_childIds) == ChildSetEnd::kDone;
}

// Of several usable children the last gives the plane.
void XMLAnnotationCallout::ReadAnnotationPlane(xercesc::DOMNode const* node)
{
    for (xercesc::DOMNode* const child : Children(node))
    {
        Match(child,  //
              On(Names::Child,
                 [&]
                 {
                     UTF8String id;
                     if (ReadChildRef(m_producer, child, id))
                         m_annotationPlaneId = std::move(id);
                 }),
              On(Names::IWorkPlane,
                 [&]
                 {
                     if (auto const* const plane = ReadAndRegister<XMLWorkPlane>(m_producer, child))
                         m_annotationPlaneId = plane->Id();
                 }));
    }
}

void XMLAnnotationCallout::ReadText(xercesc::DOMNode* node)
{
    m_texts.push_back(std::make_unique<XMLText>());
    Ignored(m_texts.back()->ReadFromXML(node));
}

bool XMLAnnotationCallout::ReadFromXML(xercesc::DOMNode* node, CurveEntities& curveEntities, MeshStore& meshStore,
                                       CurveStore& curveStore)
{
    if (!node)
        return false;
    XMLUtils::GetNodeAttribute(node, Names::ID, m_id);
    XMLUtils::GetNodeAttribute(node, Names::Label, m_label);
    // Kept: absence means shown here, although a mesh is hidden then.
    XMLUtils::GetNodeAttribute(node, Names::Visibility, m_visible);
    XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, m_versionPersistentId);
    m_producer->ApplyIdMapping(m_id);
    for (xercesc::DOMNode* const child : Children(node))
    {
        Match(child,  //
              On(Names::ChildSet, [&] { Ignored(ReadChildSet(child, curveEntities, meshStore, curveStore)); }),
              On(Names::ExtensionData, [&] { AddExtensionData(child, *this); }),
              On(Names::AnnotationPlane, [&] { ReadAnnotationPlane(child); }),
              On(Names::IText, [&] { ReadText(child); }));
    }
    return true;
}

bool ReadAnnotationCallout(XMLProducerImpl* producer, xercesc::DOMNode* node, CurveEntities& curveEntities,
                           MeshStore& meshStore, CurveStore& curveStore)
{
    return ReadAndRegister<XMLAnnotationCallout>(producer, node, curveEntities, meshStore, curveStore) != nullptr;
}

}  // namespace KVR
