#pragma once

#include <atomic>
#include <ctime>

#include "framework/api/Enums.h"
#include "framework/api/Export.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// A typed value that belongs to an object. It is shared: whoever keeps a property calls Retain once and Release once,
/// and the last Release destroys it.
class KVR_API IProperty
{
public:
    virtual UTF8String Id() const = 0;
    virtual UTF16String Name() const = 0;
    virtual PropertyTypeEnum Type() const = 0;
    /// Not specified, with the output left alone, unless the value is of the output's type.
    virtual IsValueSpecifiedEnum Value(UTF16String& value) const = 0;
    virtual IsValueSpecifiedEnum Value(int& value) const = 0;
    virtual IsValueSpecifiedEnum Value(double& value) const = 0;
    virtual IsValueSpecifiedEnum Value(bool& value) const = 0;
    virtual IsValueSpecifiedEnum Value(struct tm& value) const = 0;

    void Retain() const noexcept { m_holders.fetch_add(1, std::memory_order_relaxed); }
    void Release() const noexcept
    {
        if (m_holders.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }

    IProperty(IProperty const&) = delete;
    IProperty& operator=(IProperty const&) = delete;

protected:
    /// A new property has one holder: whoever made it.
    IProperty() = default;
    virtual ~IProperty();

private:
    mutable std::atomic<unsigned> m_holders{1};
};

}  // namespace KVR
