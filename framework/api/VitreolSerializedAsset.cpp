#include "framework/api/VitreolSerializedAsset.h"

#include <utility>

namespace KVR
{

VitreolSerializedAsset::VitreolSerializedAsset(UTF8String type, Blob content)
    : m_type(std::move(type)), m_content(std::move(content))
{
}

VitreolSerializedAsset::~VitreolSerializedAsset() = default;

}  // namespace KVR
