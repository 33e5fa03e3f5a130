#pragma once

#include <memory>

#include "framework/api/Enums.h"
#include "framework/api/Export.h"
#include "framework/api/IdSet.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// Data that an extension of the host's framework hung on an object, found by its type id.
class KVR_API ExtensionDataContent
{
public:
    enum ObjectPathTypeEnum : int
    {
        kObjectPathType_Occurrence = 0,
        kObjectPathType_Other = 1
    };

    ExtensionDataContent();
    ExtensionDataContent(ExtensionDataContent const& other);
    ExtensionDataContent(ExtensionDataContent&&) noexcept;
    ~ExtensionDataContent();
    ExtensionDataContent& operator=(ExtensionDataContent const& other);
    ExtensionDataContent& operator=(ExtensionDataContent&&) noexcept;

    UTF8String const& TypeId() const noexcept { return m_typeId; }
    void SetTypeId(UTF8String const& typeId) { m_typeId = typeId; }
    UTF8String const& Data() const noexcept { return m_data; }
    void SetData(UTF8String const& data) { m_data = data; }
    IdSet const& ObjectPath() const noexcept { return m_objectPath; }
    ObjectPathTypeEnum ObjectPathType() const noexcept { return m_objectPathType; }
    void SetObjectPath(IdSet const& path, ObjectPathTypeEnum type);
    void SetLengthUnit(UnitTypeEnum unit);
    void SetTransform(Matrix3d const& transform);
    /// Not specified, with the output left alone, until set; an identity that was set counts.
    IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const;
    IsValueSpecifiedEnum Transform(Matrix3d& transform) const;

private:
    UTF8String m_typeId;
    UTF8String m_data;
    IdSet m_objectPath;
    std::unique_ptr<Matrix3d> m_transform;
    ObjectPathTypeEnum m_objectPathType = kObjectPathType_Other;
    UnitTypeEnum m_lengthUnit = kUnitType_Unknown;
    bool m_hasLengthUnit = false;
};

}  // namespace KVR
