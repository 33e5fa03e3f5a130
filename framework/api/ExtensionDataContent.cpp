#include "framework/api/ExtensionDataContent.h"

namespace KVR
{

ExtensionDataContent::ExtensionDataContent() = default;
ExtensionDataContent::ExtensionDataContent(ExtensionDataContent&&) noexcept = default;
ExtensionDataContent::~ExtensionDataContent() = default;
ExtensionDataContent& ExtensionDataContent::operator=(ExtensionDataContent&&) noexcept = default;

ExtensionDataContent::ExtensionDataContent(ExtensionDataContent const& other)
    : m_typeId(other.m_typeId),
      m_data(other.m_data),
      m_objectPath(other.m_objectPath),
      m_transform(other.m_transform ? std::make_unique<Matrix3d>(*other.m_transform) : nullptr),
      m_objectPathType(other.m_objectPathType),
      m_lengthUnit(other.m_lengthUnit),
      m_hasLengthUnit(other.m_hasLengthUnit)
{
}

ExtensionDataContent& ExtensionDataContent::operator=(ExtensionDataContent const& other)
{
    if (this != &other)
        *this = ExtensionDataContent(other);
    return *this;
}

void ExtensionDataContent::SetObjectPath(IdSet const& path, ObjectPathTypeEnum type)
{
    m_objectPath = path;
    m_objectPathType = type;
}

void ExtensionDataContent::SetLengthUnit(UnitTypeEnum unit)
{
    m_lengthUnit = unit;
    m_hasLengthUnit = true;
}

void ExtensionDataContent::SetTransform(Matrix3d const& transform)
{
    m_transform = std::make_unique<Matrix3d>(transform);
}

IsValueSpecifiedEnum ExtensionDataContent::LengthUnit(UnitTypeEnum& unit) const
{
    if (!m_hasLengthUnit)
        return kIsValueSpecified_No;
    unit = m_lengthUnit;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum ExtensionDataContent::Transform(Matrix3d& transform) const
{
    if (!m_transform)
        return kIsValueSpecified_No;
    transform = *m_transform;
    return kIsValueSpecified_Yes;
}

}  // namespace KVR
