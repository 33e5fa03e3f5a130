#include "structure/XMLUniverse.h"

#include <utility>

#include "framework/api/StringUtil.h"
#include "framework/api/Subscript.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/VitreolBinaryDataExternalFileReader.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "readers/ColorReader.h"
#include "readers/NodeAttributes.h"
#include "readers/VectorTextReader.h"

namespace KVR
{

namespace
{

UTF8String NarrowAttribute(xercesc::DOMNode const* node, AttributeName name)
{
    return XMLStrUtil::XMLStrToAStr(AttributeOrEmpty(node, name));
}

void ReadDefaultColor(xercesc::DOMNode const* node, Color& color, bool& hasColor)
{
    if (ReadFractions(node, color))
        hasColor = true;
}

bool ReadIds(xercesc::DOMNode const* item, Variant& value)
{
    IdSet ids;
    for (xercesc::DOMNode const* const child : Children(item))
    {
        if (IsNamed(child, Names::ID))
            ids.AddWithoutUniquenessCheck(NarrowAttribute(child, Names::Value));
    }
    if (ids.IsEmpty())
        return false;
    value.SetIdSetValue(ids);
    return true;
}

}  // namespace

XMLUniverse::XMLUniverse(UTF16String const& sceneFilePath)
    : m_propertyDatabase(std::make_unique<PropertyDatabase>()), m_sceneFilePath(sceneFilePath)
{
}

XMLUniverse::~XMLUniverse() = default;

IsValueSpecifiedEnum XMLUniverse::DefaultCurveColor(Color& color) const
{
    if (!m_hasDefaultCurveColor)
        return kIsValueSpecified_No;
    color = m_defaultCurveColor;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLUniverse::DefaultSurfaceColor(Color& color) const
{
    if (!m_hasDefaultSurfaceColor)
        return kIsValueSpecified_No;
    // Kept: the surface's flag is tested, and the curve's colour is handed out.
    color = m_defaultCurveColor;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLUniverse::ViewingDataOf(ViewingData& viewingData) const
{
    if (!m_viewingData)
        return kIsValueSpecified_No;
    viewingData = *m_viewingData;
    return kIsValueSpecified_Yes;
}

IsValueSpecifiedEnum XMLUniverse::CustomDataAt(unsigned long long index, UTF8String& key, Variant& value) const
{
    key = CheckedAt(m_customDataKeys, index);
    auto const found = m_customData.find(key);
    if (found == m_customData.end())
        return kIsValueSpecified_No;
    value = found->second;
    return kIsValueSpecified_Yes;
}

bool XMLUniverse::ReadFromXML(xercesc::DOMNode* node)
{
    for (xercesc::DOMNode const* const child : Children(node))
    {
        Match(
            child,                                              //
            On(Names::ViewData, [&] { ReadViewData(child); }),  //
            On(Names::DefaultCurveColor, [&] { ReadDefaultColor(child, m_defaultCurveColor, m_hasDefaultCurveColor); }),
            On(Names::DefaultSurfaceColor,
               [&] { ReadDefaultColor(child, m_defaultSurfaceColor, m_hasDefaultSurfaceColor); }),
            On(Names::CustomData, [&] { ReadCustomData(child); }));
    }
    return node != nullptr;
}

void XMLUniverse::ReadViewData(xercesc::DOMNode const* node)
{
    if (!m_viewingData)
        m_viewingData = std::make_unique<ViewingData>();
    for (xercesc::DOMNode* const child : Children(node))
    {
        auto const read = [&](void (ViewingData::*set)(double, double, double))
        {
            double x = 0.0;
            double y = 0.0;
            double z = 0.0;
            XMLCh const* const text = TextContent(child);
            if (ToldText(text, TextForm::kVector, ReadVectorText(XMLStrUtil::XMLStrToAStr(text), x, y, z)))
                (*m_viewingData.*set)(x, y, z);
        };
        Match(child,                                                          //
              On(Names::UpVector, [&] { read(&ViewingData::SetUpVector); }),  //
              On(Names::FrontVector, [&] { read(&ViewingData::SetFrontVector); }));
    }
}

void XMLUniverse::ReadCustomData(xercesc::DOMNode const* node)
{
    for (xercesc::DOMNode const* const child : Children(node))
    {
        if (IsNamed(child, Names::CustomDataItem))
            ReadCustomDataItem(child);
    }
}

void XMLUniverse::ReadCustomDataItem(xercesc::DOMNode const* item)
{
    int type = 0;
    XMLCh const* const typeText = AttributeOrEmpty(item, Names::Type);
    if (!ToldText(
            typeText, TextForm::kInteger,
            StringUtil::ToInt(XMLStrUtil::XMLStrToAStr(typeText), type, 10) == StringUtil::kConversionStatus_Success))
        return;
    UTF8String key = NarrowAttribute(item, Names::Key);
    // The key is listed before its value is looked at, so that one whose value fails stands there without a value.
    m_customDataKeys.push_back(key);
    Variant value;
    bool hasValue = false;
    if (type == Variant::kKind_AString)
    {
        value.SetAStringValue(NarrowAttribute(item, Names::Value));
        hasValue = true;
    }
    else if (type == Variant::kKind_Blob)
    {
        hasValue = ReadBlob(item, value);
    }
    else if (type == Variant::kKind_IdSet)
    {
        hasValue = ReadIds(item, value);
    }
    if (hasValue)
        m_customData.try_emplace(std::move(key), std::move(value));
}

bool XMLUniverse::ReadBlob(xercesc::DOMNode const* item, Variant& value) const
{
    unsigned long size = 0;
    XMLCh const* const sizeText = AttributeOrEmpty(item, Names::BlobBufferSize);
    if (!ToldText(sizeText, TextForm::kInteger,
                  StringUtil::ToUnsignedlong(XMLStrUtil::XMLStrToAStr(sizeText).Value(), size, 10) ==
                      StringUtil::kConversionStatus_Success))
        return false;
    UTF16String const path = XMLStrUtil::XMLStrToWStr(AttributeOrEmpty(item, Names::Path));
    VitreolBinaryDataExternalFileReader const reader(m_sceneFilePath, path);
    reader.Require(size);
    std::vector<unsigned char> buffer(size);
    reader.Read(buffer.data(), size);
    value.SetBlobValue(Blob(size, buffer.data()));
    return true;
}

}  // namespace KVR
