#pragma once

#include "geometry/XMLHierachyObject.h"

namespace KVR
{

/// The interface of a work feature with the shared state behind it, in that order of bases, and the operations that the
/// state answers. Resolved styles, properties, extension data and display units are those of the interfaces: none.
template <class Interface>
class WorkFeatureState : public Interface, public XMLHierachyObject
{
public:
    explicit WorkFeatureState(XMLProducerImpl* producer) : XMLHierachyObject(producer) {}

    UTF8String Id() const override { return m_id; }
    UTF16String Label() const override { return m_label; }
    IsValueSpecifiedEnum ChangeKey(SnapshotVersionEnum version, UTF8String& changeKey) const override
    {
        return ChangeKey_Impl(version, changeKey);
    }
    IsValueSpecifiedEnum VersionPersistentId(UTF8String& id) const override { return VersionPersistentId_Impl(id); }
    double AngularTolerance() const override { return -1.0; }
    double LinearTolerance() const override { return -1.0; }
    double ParamTolerance() const override { return -1.0; }
    bool IsNetVisible() const override { return m_netVisible; }
    IdSet Styles() const override { return m_styles; }
    Matrix3d const* Transform() const override { return m_transform.get(); }
    IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const override
    {
        unit = m_lengthUnit;
        return kIsValueSpecified_Yes;
    }
    bool IsVisible() const override { return m_visible; }
};

}  // namespace KVR
