#pragma once

#include "framework/api/Enums.h"
#include "framework/api/Export.h"

namespace KVR
{

class Color;
class PropertyDatabase;
class UTF8String;
class Variant;
class ViewingData;

/// What belongs to the scene as a whole. It has no id and is owned by the producer.
class KVR_API IUniverse
{
public:
    virtual ~IUniverse();
    virtual IsValueSpecifiedEnum DefaultCurveColor(Color& color) const = 0;
    virtual IsValueSpecifiedEnum DefaultSurfaceColor(Color& color) const = 0;
    virtual IsValueSpecifiedEnum ViewingDataOf(ViewingData& viewingData) const = 0;
    virtual unsigned long long CustomDataCount() const = 0;
    /// Writes the key in any case, and the value when the answer is "specified". An index at or beyond the count throws
    /// std::out_of_range.
    virtual IsValueSpecifiedEnum CustomDataAt(unsigned long long index, UTF8String& key, Variant& value) const = 0;
    /// The properties of the scene's objects, owned by the universe.
    virtual PropertyDatabase* PropertyDatabaseOf() const = 0;

    IUniverse(IUniverse const&) = delete;
    IUniverse& operator=(IUniverse const&) = delete;

protected:
    IUniverse();
};

}  // namespace KVR
