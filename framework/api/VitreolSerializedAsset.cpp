#include "framework/api/VitreolSerializedAsset.h"

#include <utility>

namespace KVR
{

VitreolSerializedAsset::VitreolSerializedAsset(UTF8String type, Blob content)
    : m_type(std::move(type)), m_size(content.Size())
{
    if (m_size == 0)
        return;
    auto const held = std::make_shared<Blob const>(std::move(content));
    m_content = std::shared_ptr<void const>(held, held->Data());
}

VitreolSerializedAsset::VitreolSerializedAsset(UTF8String type, std::shared_ptr<void const> content,
                                               unsigned long long size) noexcept
    : m_type(std::move(type)), m_content(size > 0 ? std::move(content) : nullptr), m_size(size)
{
}

VitreolSerializedAsset::~VitreolSerializedAsset() = default;

}  // namespace KVR
