#pragma once

#include <array>

namespace KVR
{

class IProducer;

/// The colours of what has no style, as fractions of sRGB: for curves that which the scene's universe states, else
/// black; for surfaces a light grey, since the surface colour that a universe serves is its curves'.
struct DefaultColors
{
    explicit DefaultColors(IProducer& producer);

    std::array<double, 3> surface{0.7, 0.7, 0.7};
    std::array<double, 3> curve{0.0, 0.0, 0.0};
};

}  // namespace KVR
