#include "framework/api/PropertyDatabase.h"

#include "framework/api/IProperty.h"

namespace KVR
{

IProperty::~IProperty() = default;

PropertyDatabase::PropertyDatabase() = default;

PropertyDatabase::~PropertyDatabase()
{
    for (IProperty const* property : m_properties)
        property->Release();
}

void PropertyDatabase::AddProperty(IProperty const* property)
{
    if (!property)
        return;
    m_properties.push_back(property);
    property->Retain();
    m_byId.try_emplace(property->Id(), property);
}

IsValueSpecifiedEnum PropertyDatabase::PropertyAt(UTF8String const& id, IProperty const*& property) const
{
    auto const found = m_byId.find(id);
    if (found == m_byId.end())
        return kIsValueSpecified_No;
    property = found->second;
    return kIsValueSpecified_Yes;
}

}  // namespace KVR
