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
    /// The property's own id, by which the database answers it; not that of the object it belongs to.
    virtual UTF8String Id() const = 0;
    /// The name to show; empty when there is none.
    virtual UTF16String Name() const = 0;
    /// Which of the getters below answers.
    virtual PropertyTypeEnum Type() const = 0;
    /// The value of a text. Not specified, with the output left alone, for a property of another type.
    virtual IsValueSpecifiedEnum Value(UTF16String& value) const = 0;
    /// The value of an integer. Not specified, with the output left alone, for a property of another type.
    virtual IsValueSpecifiedEnum Value(int& value) const = 0;
    /// The value of a number, which has no unit. Not specified, with the output left alone, for a property of another
    /// type.
    virtual IsValueSpecifiedEnum Value(double& value) const = 0;
    /// The value of a truth. Not specified, with the output left alone, for a property of another type.
    virtual IsValueSpecifiedEnum Value(bool& value) const = 0;
    /// The value of a time, to the second. Not specified, with the output left alone, for a property of another type.
    virtual IsValueSpecifiedEnum Value(struct tm& value) const = 0;

    /// One more holder; from any thread.
    void Retain() const noexcept { m_holders.fetch_add(1, std::memory_order_relaxed); }
    /// One holder less; the last one destroys the property, which nobody may use afterwards. From any thread.
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
