#include "geometry/XMLHierachyObject.h"

#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "framework/xml_util/XMLUtils.h"
#include "producer/XMLProducerImpl.h"
#include "readers/BooleanText.h"
#include "readers/ChangeKeyReader.h"
#include "readers/Ignored.h"
#include "readers/ReferenceReader.h"
#include "readers/UnitReader.h"

namespace KVR
{

XMLHierachyObject::XMLHierachyObject(XMLProducerImpl* producer) : m_producer(producer) {}
XMLHierachyObject::~XMLHierachyObject() = default;

IsValueSpecifiedEnum XMLHierachyObject::VersionPersistentId_Impl(UTF8String& id) const
{
    if (m_versionPersistentId.IsEmpty())
        return kIsValueSpecified_No;
    id = m_versionPersistentId;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLHierachyObject::ChangeKey_Impl(SnapshotVersionEnum, UTF8String& changeKey) const
{
    return m_changeKey.Text(changeKey);
}

void XMLHierachyObject::KeepTransform(Matrix3d const& transform)
{
    m_transform = transform.IsIdentity() ? nullptr : std::make_unique<Matrix3d>(transform);
}

void XMLHierachyObject::ReadAttributes(xercesc::DOMNode const* node)
{
    XMLUtils::GetNodeAttribute(node, Names::ID, m_id);
    XMLUtils::GetNodeAttribute(node, Names::Label, m_label);
    m_producer->ApplyIdMapping(m_id);
    m_visible = ReadBoolean(node, Names::Visibility, kVisibility_OneElseHiddenAbsentShown);
    m_netVisible = ReadBoolean(node, Names::NetVisibility, kVisibility_OneElseHiddenAbsentShown);
    XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, m_versionPersistentId);
}

void XMLHierachyObject::ReadFromXML(xercesc::DOMNode* node)
{
    if (!node)
        return;
    ReadAttributes(node);
    for (xercesc::DOMNode* const child : Children(node))
    {
        Match(child,
              On(Names::Transform,
                 [&]
                 {
                     Matrix3d transform;
                     TellObserver(&ReadObserver::LastCounts, child);
                     XMLStrUtil::GetTransfFromStr(TextContent(child), transform);
                     KeepTransform(transform);
                 }),
              On(Names::ChangeKey, [&] { Ignored(ReadChangeKey(child, m_changeKey)); }),
              On(Names::Unit, [&] { Ignored(ReadLengthUnits(child, m_lengthUnit, m_displayLengthUnit)); }),
              // Kept: exact here, although a point and a curve match it in any case.
              On(Names::Styles, [&] { Ignored(ReadStyleRefs(m_producer, child, m_styles)); }));
    }
}

}  // namespace KVR
