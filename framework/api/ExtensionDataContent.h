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

    /// What kind of data it is; empty until set. Owned by the content, as the next two.
    UTF8String const& TypeId() const noexcept { return m_typeId; }
    /// Sets the type id, the empty one too.
    void SetTypeId(UTF8String const& typeId) { m_typeId = typeId; }
    /// The data as a text that the framework does not look into; empty until set.
    UTF8String const& Data() const noexcept { return m_data; }
    /// Sets the data, the empty text too.
    void SetData(UTF8String const& data) { m_data = data; }
    /// The ids on the way down to the object that the data speak of, as the scene has them; empty until set.
    IdSet const& ObjectPath() const noexcept { return m_objectPath; }
    /// Whether the path is one of occurrences; another one until set.
    ObjectPathTypeEnum ObjectPathType() const noexcept { return m_objectPathType; }
    /// Sets the path together with what it is.
    void SetObjectPath(IdSet const& path, ObjectPathTypeEnum type);
    /// Sets the unit of the data's lengths, kUnitType_Unknown too.
    void SetLengthUnit(UnitTypeEnum unit);
    /// Keeps a copy of the transform, the identity too.
    void SetTransform(Matrix3d const& transform);
    /// The unit of the data's lengths. Not specified, with the output left alone, until set.
    IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const;
    /// The transform of the data. Not specified, with the output left alone, until set; an identity that was set
    /// counts.
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
