#pragma once

#include "framework/api/Blob.h"
#include "framework/api/Export.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// A material of the material library in its serialized form, opaque to the framework.
class KVR_API VitreolSerializedAsset
{
public:
    VitreolSerializedAsset(UTF8String type, Blob content);
    ~VitreolSerializedAsset();

    /// The library's name for the kind of material; owned by the asset.
    UTF8String const& Type() const noexcept { return m_type; }
    /// The size in bytes.
    unsigned long long Size() const noexcept { return m_content.Size(); }
    /// The bytes, owned by the asset; null when there are none.
    void const* Data() const noexcept { return m_content.Data(); }

private:
    UTF8String m_type;
    Blob m_content;
};

}  // namespace KVR
