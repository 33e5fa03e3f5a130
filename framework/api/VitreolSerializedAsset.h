#pragma once

#include <memory>

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
    /// The asset shares the bytes, which nobody changes any more; none when the size is 0, and else not null.
    VitreolSerializedAsset(UTF8String type, std::shared_ptr<void const> content, unsigned long long size) noexcept;
    ~VitreolSerializedAsset();

    /// The library's name for the kind of material; owned by the asset.
    UTF8String const& Type() const noexcept { return m_type; }
    /// The size in bytes.
    unsigned long long Size() const noexcept { return m_size; }
    /// The bytes, owned by the asset; null when there are none.
    void const* Data() const noexcept { return m_content.get(); }

private:
    UTF8String m_type;
    std::shared_ptr<void const> m_content;
    unsigned long long m_size = 0;
};

}  // namespace KVR
