#pragma once

#include <memory>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/Enums.h"
#include "framework/api/IdSet.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/ChangeKeyText.h"

namespace KVR
{

class XMLProducerImpl;

/// The state that work features share, in place of XMLObject: a smaller one. It has nothing to do with the hierarchy of
/// a scene.
class XMLHierachyObject
{
public:
    explicit XMLHierachyObject(XMLProducerImpl* producer);
    virtual ~XMLHierachyObject();
    XMLHierachyObject(XMLHierachyObject const&) = delete;
    XMLHierachyObject& operator=(XMLHierachyObject const&) = delete;

    /// Reads what all work features have; null has no effect.
    void ReadFromXML(xercesc::DOMNode* node);

protected:
    /// Not specified for an empty id.
    virtual IsValueSpecifiedEnum VersionPersistentId_Impl(UTF8String& id) const;
    /// Not specified without a change key, whatever the version.
    virtual IsValueSpecifiedEnum ChangeKey_Impl(SnapshotVersionEnum version, UTF8String& changeKey) const;
    /// Replaces the transform; the identity is not kept.
    void KeepTransform(Matrix3d const& transform);

    UTF8String m_id;
    UTF16String m_label;
    ChangeKeyText m_changeKey;
    UnitTypeEnum m_lengthUnit = kUnitType_Unknown;
    /// Kept: read, and never given out.
    UnitTypeEnum m_displayLengthUnit = kUnitType_Unknown;
    bool m_visible = true;
    bool m_netVisible = true;
    /// Null for the identity.
    std::unique_ptr<Matrix3d> m_transform;
    IdSet m_styles;
    XMLProducerImpl* m_producer;
    UTF8String m_versionPersistentId;

private:
    void ReadAttributes(xercesc::DOMNode const* node);
};

}  // namespace KVR
