#pragma once

#include <string_view>

#include "framework/api/Enums.h"
#include "framework/xml_util/DomWalk.h"

namespace KVR
{

/// The texts by which a scene names the types of property values.
struct PropertyTypeRow
{
    std::u16string_view text;
    PropertyTypeEnum type;
};

inline constexpr PropertyTypeRow kPropertyTypeRows[] = {
    {u"kString", kPropertyType_String}, {u"kInt", kPropertyType_Int},   {u"kDouble", kPropertyType_Double},
    {u"kBool", kPropertyType_Bool},     {u"kTime", kPropertyType_Time},
};

/// False, with the output left alone, for a text that names no type.
inline bool PropertyTypeFromText(XMLCh const* text, PropertyTypeEnum& type)
{
    for (PropertyTypeRow const& row : kPropertyTypeRows)
    {
        if (Equals(text, row.text))
        {
            type = row.type;
            return true;
        }
    }
    return false;
}

}  // namespace KVR
