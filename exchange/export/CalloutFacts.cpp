#include "exchange/export/CalloutFacts.h"

#include <algorithm>

#include "framework/api/ExtensionDataContent.h"
#include "framework/api/IAnnotationCallout.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "scene/ExtensionTypes.h"

namespace KVR
{

namespace
{

std::string ExtensionOf(IAnnotationCallout const& callout, char const* typeId)
{
    ExtensionDataContent content;
    if (callout.ExtensionDataByTypeId(typeId, content) != kIsValueSpecified_Yes)
        return {};
    return std::string(content.Data().View());
}

}  // namespace

std::string KindOf(IAnnotationCallout const& callout)
{
    std::string kind = ExtensionOf(callout, kAnnotationKindTypeId);
    return kind == "dimension" || kind == "tolerance" || kind == "datum" ? kind : std::string();
}

std::vector<std::string> ReferencesOf(IAnnotationCallout const& callout)
{
    std::vector<std::string> ids;
    std::string const text = ExtensionOf(callout, kAnnotationReferencesTypeId);
    for (std::size_t begin = 0; begin < text.size();)
    {
        std::size_t const end = std::min(text.find(',', begin), text.size());
        if (end > begin)
            ids.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return ids;
}

AnnotationDetails DetailsOf(IAnnotationCallout const& callout)
{
    return AnnotationDetails::Of(ExtensionOf(callout, kAnnotationDetailsTypeId)).value_or(AnnotationDetails());
}

}  // namespace KVR
