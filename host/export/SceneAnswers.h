#pragma once

#include <optional>
#include <string>

#include "framework/api/Enums.h"
#include "framework/api/Matrix3d.h"

namespace KVR
{

class IdSet;
class IObject;
class IProducer;
class IUnit;
class UTF16String;

/// The label of an object in UTF-8; its id where it has none.
std::string NameOf(IObject const& object);
std::string Utf8Of(UTF16String const& text);

/// The length unit that an object states, in metres; nothing when it states none.
std::optional<double> MetresOf(IUnit const& object);

/// A colour by its sRGB fractions from 0 to 1.
struct PlainColor
{
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    /// 1 for a colour that nothing shines through.
    double opacity = 1.0;
};

/// The colour of the first of the styles that has one: what it says of its transparency goes before the alpha of its
/// diffuse colour. Nothing when no style has a colour.
std::optional<PlainColor> ColorOf(IProducer& producer, IdSet const& styles);

/// The first transform after the second.
Matrix3d Product(Matrix3d const& first, Matrix3d const& second);

}  // namespace KVR
