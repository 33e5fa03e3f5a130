#include "organisation/XMLView.h"

#include "framework/api/Subscript.h"

namespace KVR
{

XMLView::XMLView(UTF16String const& label, UTF8String id) : ObjectState(std::move(id), label) {}
XMLView::~XMLView() = default;

IdSet XMLView::OccurrencePathAt(unsigned long long index) const
{
    return CheckedAt(m_members.Records(), index).occurrencePath;
}

bool XMLView::EntityVisibilityAt(unsigned long long index) const
{
    return CheckedAt(m_members.Records(), index).visible;
}

Matrix3d XMLView::EntityTransformAt(unsigned long long index) const
{
    return CheckedAt(m_members.Records(), index).transform;
}

IsValueSpecifiedEnum XMLView::LengthUnit(UnitTypeEnum& unit) const
{
    if (!m_hasLengthUnit)
        return kIsValueSpecified_No;
    unit = m_lengthUnit;
    return kIsValueSpecified_Yes;
}

IdSet XMLView::EntityStylesAt(unsigned long long index) const
{
    return CheckedAt(m_members.Records(), index).styles;
}

void XMLView::SetLengthUnit(UnitTypeEnum unit) noexcept
{
    m_lengthUnit = unit;
    m_hasLengthUnit = true;
}

void XMLView::AddViewMember(IdSet path, ViewMemberRecord record)
{
    record.occurrencePath = std::move(path);
    m_members.Add(std::move(record));
}

}  // namespace KVR
