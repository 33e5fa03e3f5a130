#pragma once

#include <utility>

#include "framework/api/IView.h"
#include "framework/xml_util/ObjectState.h"
#include "organisation/ViewMembers.h"

namespace KVR
{

/// A view as an element of a "ViewSet" declares it. ReadViewSet makes it.
class XMLView : public ObjectState<IView>
{
public:
    XMLView(UTF16String const& label, UTF8String id);
    ~XMLView() override;

    bool IsActive() const override { return m_isActive; }
    unsigned long long ViewMemberCount() const override { return m_members.Records().size(); }
    IdSet OccurrencePathAt(unsigned long long index) const override;
    bool EntityVisibilityAt(unsigned long long index) const override;
    Matrix3d EntityTransformAt(unsigned long long index) const override;
    /// Not specified, with the output left alone, without a "Unit" element; specified also by one of an unknown text.
    IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const override;
    IdSet EntityStylesAt(unsigned long long index) const override;
    IdSet CameraSet() const override { return m_cameraSet; }
    bool IsVisible() const override { return m_visible; }

    void SetActive(bool isActive) noexcept { m_isActive = isActive; }
    void SetVisible(bool visible) noexcept { m_visible = visible; }
    void SetLengthUnit(UnitTypeEnum unit) noexcept;
    void SetCameraSet(IdSet cameras) noexcept { m_cameraSet = std::move(cameras); }
    /// Appends the member of a path; a former one of an equal path is gone. Behind the last, FinishMembers.
    void AddViewMember(IdSet path, ViewMemberRecord record);
    /// To be called before members are asked for.
    void FinishMembers() { m_members.CloseGaps(); }

private:
    bool m_isActive = true;
    UnitTypeEnum m_lengthUnit = kUnitType_Unknown;
    ViewMembers m_members;
    IdSet m_cameraSet;
    bool m_hasLengthUnit = false;
    bool m_visible = true;
};

}  // namespace KVR
