#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "framework/api/Enums.h"
#include "framework/api/Export.h"
#include "framework/api/UTF8String.h"
#include "framework/api/UniqueIndex.h"

namespace KVR
{

class IProperty;

/// The properties of a scene by their ids. It retains each property it is given and releases it at its own end.
class KVR_API PropertyDatabase
{
public:
    PropertyDatabase();
    virtual ~PropertyDatabase();
    PropertyDatabase(PropertyDatabase const&) = delete;
    PropertyDatabase& operator=(PropertyDatabase const&) = delete;

    /// Keeps the property; of several with one id the first is answered. Null has no effect.
    void AddProperty(IProperty const* property);
    /// Not specified, with the output left alone, for an unknown id. The property stays owned by the database.
    virtual IsValueSpecifiedEnum PropertyAt(UTF8String const& id, IProperty const*& property) const;

private:
    std::uint32_t Find(UTF8String const& id) const;

    std::vector<IProperty const*> m_properties;
    // Covers the first `m_indexed` properties, by their ids; it follows the list when someone asks, so that a host that
    // never does pays nothing for it.
    mutable UniqueIndex m_index;
    mutable std::size_t m_indexed = 0;
};

}  // namespace KVR
