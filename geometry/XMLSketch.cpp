#include "geometry/XMLSketch.h"

#include "framework/xml_util/EnumTexts.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLUtils.h"
#include "geometry/ChildIds.h"
#include "geometry/XMLPoint.h"
#include "readers/BooleanText.h"
#include "readers/ChangeKeyReader.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"
#include "readers/ReferenceReader.h"
#include "readers/UnitReader.h"

namespace KVR
{

namespace
{

constexpr ChildIdRow kPointRows[] = {
    {Names::Child, &AddChildRef, kOnFailure_Next},
    {Names::IPoint, &AddObject<XMLPoint>, kOnFailure_Next},
};

// Kept: the curves of a sketch never come from a binary store.
constexpr ChildIdRow kCurveRows[] = {
    {Names::Child, &AddChildRef, kOnFailure_Next},
    {Names::ICurve, &AddKernelCurve, kOnFailure_Next},
};

}  // namespace

XMLSketch::XMLSketch(XMLProducerImpl* producer) : UnitState(UTF8String(), UTF16String()), m_producer(producer) {}
XMLSketch::~XMLSketch() = default;

UTF8String XMLSketch::ChildIdAt(unsigned long long index) const
{
    if (index > ChildCount())
        return {};
    return index <= m_curveIds.Size() ? m_curveIds.At(index) : m_pointIds.At(index);
}

// Whether the type is known.
bool XMLSketch::ReadAttributes(xercesc::DOMNode const* node)
{
    XMLUtils::GetNodeAttribute(node, Names::ID, m_id);
    XMLUtils::GetNodeAttribute(node, Names::Label, m_label);
    m_producer->ApplyIdMapping(m_id);
    XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, m_versionPersistentId);
    // Kept: absence means hidden here, although a new sketch is shown, and a point or a set is.
    m_netVisible = ReadBoolean(node, Names::NetVisibility, kVisibility_OneElseHidden);
    m_visible = ReadBoolean(node, Names::Visibility, kVisibility_OneElseHidden);
    return ValueOfDocumentText(kSketchTypeTexts, AttributeText(node, Names::SketchTypeEnum), m_type);
}

void XMLSketch::ReadChild(xercesc::DOMNode* child, ChildContext const& context)
{
    Match(
        child,  //
        On(Names::ChildSet, [&] { Ignored(ReadChildIds(kPointRows, context, child, m_pointIds)); }),
        On(Names::ChangeKey, [&] { Ignored(ReadChangeKey(child, m_changeKey)); }),
        On(Names::Unit, [&] { Ignored(ReadUnit(child, m_units.length, m_units.displayAngle, m_units.displayLength)); }),
        On(Names::CurveSet, [&] { Ignored(ReadChildIds(kCurveRows, context, child, m_curveIds)); }),
        On(Names::Transform, [&] { KeepTransformButIdentity(child); }),
        On(Names::ExtensionData, [&] { AddExtensionData(child, *this); }),
        // Kept: exact here, although a geometric set matches them in any case.
        On(Names::Styles, [&] { Ignored(ReadStyleRefs(m_producer, child, m_styles)); }),
        On(Names::NetStyles, [&] { Ignored(ReadStyleRefs(m_producer, child, m_netStyles)); }));
}

bool XMLSketch::ReadFromXML(xercesc::DOMNode* node, CurveEntities& curveEntities)
{
    if (!node)
        return false;
    bool const isTypeKnown = ReadAttributes(node);
    SideFileIndex& index = *m_producer->sideFileIndex;
    ChildContext const context{m_producer, index.bodyEntities, curveEntities, index.meshStore, index.curveStore};
    for (xercesc::DOMNode* const child : Children(node))
        ReadChild(child, context);
    return isTypeKnown;
}

}  // namespace KVR
