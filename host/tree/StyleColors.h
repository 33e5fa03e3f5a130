#pragma once

#include <optional>
#include <string>
#include <vector>

#include "framework/api/Color.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

class IObject;
class IProducer;

/// A style that an object names.
struct StyleColor
{
    UTF8String id;
    UTF16String label;
    /// Whether there is a style of that id.
    bool isThere = false;
    /// Its diffuse colour.
    std::optional<Color> diffuse;
};

/// The styles that an object names itself, each once: its own, those of a mesh's materials and of a body's faces, and
/// for an instance also those of what it places.
std::vector<StyleColor> StylesOf(IProducer& producer, IObject& object);

/// A colour's components, each from 0 to 255; what lies outside the range of fractions counts as its end.
struct Rgb
{
    int red;
    int green;
    int blue;
};
Rgb RgbOf(Color const& color);

/// "#rrggbb".
std::string HexText(Color const& color);

}  // namespace KVR
