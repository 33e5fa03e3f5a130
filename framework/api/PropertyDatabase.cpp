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
}

std::uint32_t PropertyDatabase::Find(UTF8String const& id) const
{
    return m_index.Find(std::hash<UTF8String>()(id),
                        [&](std::uint32_t position) { return m_properties[position]->Id() == id; });
}

IsValueSpecifiedEnum PropertyDatabase::PropertyAt(UTF8String const& id, IProperty const*& property) const
{
    for (; m_indexed < m_properties.size(); ++m_indexed)
    {
        UTF8String const next = m_properties[m_indexed]->Id();
        if (Find(next) == UniqueIndex::kAbsent)
            m_index.Add(std::hash<UTF8String>()(next), static_cast<std::uint32_t>(m_indexed));
    }
    std::uint32_t const position = Find(id);
    if (position == UniqueIndex::kAbsent)
        return kIsValueSpecified_No;
    property = m_properties[position];
    return kIsValueSpecified_Yes;
}

}  // namespace KVR
