#pragma once

#include <array>

namespace KVR
{

class IProducer;

/// The colours of what has no style, as fractions of sRGB: those that the scene's universe states, else a light grey
/// for surfaces and black for curves.
struct DefaultColors
{
    explicit DefaultColors(IProducer& producer);

    std::array<double, 3> surface{0.7, 0.7, 0.7};
    std::array<double, 3> curve{0.0, 0.0, 0.0};
};

}  // namespace KVR
