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

/// What belongs to the scene as a whole. It has no id and is owned by the producer. A getter with an output reference
/// leaves it alone when it answers "not specified".
class KVR_API IUniverse
{
public:
    virtual ~IUniverse();
    /// The colour of curves that have no style; not specified when the scene does not say.
    virtual IsValueSpecifiedEnum DefaultCurveColor(Color& color) const = 0;
    /// Whether the scene states a colour for surfaces without a style. Kept: the colour answered is that of curves.
    virtual IsValueSpecifiedEnum DefaultSurfaceColor(Color& color) const = 0;
    /// Which way is up and which way is front; not specified when the scene does not say. A direction that it leaves
    /// out is the zero vector.
    virtual IsValueSpecifiedEnum ViewingDataOf(ViewingData& viewingData) const = 0;
    /// The number of keyed values, repeated keys included; 0 when there are none.
    virtual unsigned long long CustomDataCount() const = 0;
    /// A key, which is written in any case, and its value, which is not specified for a kind that the format does not
    /// know, an empty list, and a blob whose size is no number; a repeated key has its first value. The ids of a list
    /// stay as the scene has them. An index at or beyond the count throws std::out_of_range.
    virtual IsValueSpecifiedEnum CustomDataAt(unsigned long long index, UTF8String& key, Variant& value) const = 0;
    /// The properties of the scene's objects, owned by the universe; never null.
    virtual PropertyDatabase* PropertyDatabaseOf() const = 0;

    IUniverse(IUniverse const&) = delete;
    IUniverse& operator=(IUniverse const&) = delete;

protected:
    IUniverse();
};

}  // namespace KVR
