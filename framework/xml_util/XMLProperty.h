#pragma once

#include <cstddef>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <xercesc/util/XercesDefs.hpp>

#include "framework/api/IProperty.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// A property of an object, as a property file states it. It is small, since a scene may have millions.
class KVR_XML_UTIL_API XMLProperty final : public IProperty
{
public:
    /// A value in the order of PropertyTypeEnum; a text stands beside it.
    using ValueOf = std::variant<std::monostate, int, double, bool, std::unique_ptr<struct tm const>>;

    /// A null text counts as empty. `text` is the value of a property of text, and of no other.
    XMLProperty(XMLCh const* id, XMLCh const* name, ValueOf value, XMLCh const* text);

    UTF8String Id() const override;
    UTF16String Name() const override;
    PropertyTypeEnum Type() const override { return static_cast<PropertyTypeEnum>(m_value.index()); }
    IsValueSpecifiedEnum Value(UTF16String& value) const override;
    IsValueSpecifiedEnum Value(int& value) const override;
    IsValueSpecifiedEnum Value(double& value) const override;
    IsValueSpecifiedEnum Value(bool& value) const override;
    IsValueSpecifiedEnum Value(struct tm& value) const override;

private:
    ~XMLProperty() override;

    /// Id, name and text, one behind the other, in UTF-8: one allocation at most.
    std::string m_text;
    std::size_t m_idEnd = 0;
    std::size_t m_nameEnd = 0;
    ValueOf m_value;
};

}  // namespace KVR
