#include "annotation/NumberAttributes.h"

#include "framework/api/StringUtil.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"

namespace KVR
{

void ReadDoubleAttribute(xercesc::DOMNode const* node, AttributeName name, std::optional<double>& value)
{
    double read = 0.0;
    if (XMLStrUtil::XMLStrToDouble(AttributeText(node, name), read))
        value = read;
}

void ReadIntAttribute(xercesc::DOMNode const* node, AttributeName name, std::optional<int>& value)
{
    XMLCh const* const text = AttributeText(node, name);
    int read = 0;
    if (text &&
        ToldText(text, TextForm::kInteger,
                 StringUtil::ToInt(XMLStrUtil::XMLStrToAStr(text), read, 10) == StringUtil::kConversionStatus_Success))
        value = read;
}

}  // namespace KVR
