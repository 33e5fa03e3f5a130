#include "readers/ExtensionDataReader.h"

#include <vector>

#include "framework/api/Matrix3d.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/EnumTexts.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLObject.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "readers/Ignored.h"
#include "readers/NodeAttributes.h"

namespace KVR
{

bool ReadExtensionData(xercesc::DOMNode const* node, ExtensionDataContent& content)
{
    if (!IsNamed(node, Names::ExtensionData))
        return false;
    content.SetTypeId(XMLStrUtil::XMLStrToAStr(AttributeOrEmpty(node, Names::TypeId)));
    content.SetData(XMLStrUtil::XMLStrToAStr(AttributeOrEmpty(node, Names::Content)));
    auto pathType = ExtensionDataContent::kObjectPathType_Other;
    Ignored(ValueOfDocumentText(kObjectPathTypeTexts, AttributeText(node, Names::Type), pathType));
    content.SetObjectPath(ParseOccurrencePath(XMLStrUtil::XMLStrToAStr(AttributeOrEmpty(node, Names::OccurrencePath))),
                          pathType);
    if (XMLCh const* const text = AttributeText(node, Names::LengthUnit))
    {
        UnitTypeEnum unit = kUnitType_Unknown;
        XMLStrUtil::StringToUnitType(text, unit);
        content.SetLengthUnit(unit);
    }
    if (XMLCh const* const text = AttributeText(node, Names::Transformation))
    {
        Matrix3d transform;
        XMLStrUtil::GetTransfFromStr(text, transform);
        content.SetTransform(transform);
    }
    return true;
}

void AddExtensionData(xercesc::DOMNode const* node, XMLObject& object)
{
    std::vector<ExtensionDataContent> contents(1);
    Ignored(ReadExtensionData(node, contents.front()));
    object.AddExtensionDataContent(contents);
}

IdSet ParseOccurrencePath(UTF8String const& text)
{
    IdSet path;
    long long start = 0;
    for (long long close = text.Find(']'); close != -1; close = text.Find(']', static_cast<unsigned long long>(start)))
    {
        path.AddWithUniquenessCheck(
            text.Substr(static_cast<unsigned long long>(start) + 1, static_cast<long>(close - start - 1)));
        start = close + 1;
    }
    return path;
}

}  // namespace KVR
