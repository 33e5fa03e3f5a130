#pragma once

#include "framework/api/CustomProperty.h"
#include "framework/api/IProperty.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// A property of an object, as a property file states it.
class KVR_XML_UTIL_API XMLProperty final : public IProperty
{
public:
    XMLProperty(UTF8String id, CustomProperty content);

    UTF8String Id() const override { return m_id; }
    UTF16String Name() const override { return m_content.Name(); }
    PropertyTypeEnum Type() const override { return m_content.Type(); }
    IsValueSpecifiedEnum Value(UTF16String& value) const override { return m_content.Value(value); }
    IsValueSpecifiedEnum Value(int& value) const override { return m_content.Value(value); }
    IsValueSpecifiedEnum Value(double& value) const override { return m_content.Value(value); }
    IsValueSpecifiedEnum Value(bool& value) const override { return m_content.Value(value); }
    IsValueSpecifiedEnum Value(struct tm& value) const override { return m_content.Value(value); }

private:
    ~XMLProperty() override;

    UTF8String m_id;
    CustomProperty m_content;
};

}  // namespace KVR
