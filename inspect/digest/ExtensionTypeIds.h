#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "scene/ExtensionTypes.h"

namespace KVR
{

/// The type ids of extension data that the program itself writes, and others; each once, in the order of their bytes.
inline std::vector<std::string> WithOwnTypeIds(std::vector<std::string> typeIds)
{
    for (char const* const own : {kBodyTypeId, kPbrTypeId, kMaterialTypeId, kSamplerTypeId, kAnnotationKindTypeId,
                                  kAnnotationReferencesTypeId, kAnnotationDetailsTypeId})
        typeIds.emplace_back(own);
    std::sort(typeIds.begin(), typeIds.end());
    typeIds.erase(std::unique(typeIds.begin(), typeIds.end()), typeIds.end());
    return typeIds;
}

}  // namespace KVR
