#pragma once

#include <unordered_map>
#include <vector>

#include "framework/api/Enums.h"
#include "framework/api/Export.h"
#include "framework/api/UTF8String.h"

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
    std::vector<IProperty const*> m_properties;
    std::unordered_map<UTF8String, IProperty const*> m_byId;
};

}  // namespace KVR
