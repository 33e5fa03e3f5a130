#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scene/CurvePoints.h"

namespace KVR
{

/// Letters of single strokes, as a plotter draws them, from a font file of Hershey's.
class StrokeFont
{
public:
    /// From one line to the next, by the height.
    static constexpr double kLineStep = 1.7;

    /// The font that the build found; nothing without it, or when it is gone or none.
    static std::optional<StrokeFont> Load();
    /// Nothing for a text that is no such file.
    static std::optional<StrokeFont> Of(std::string const& fileText);

    /// The strokes of a text in UTF-8, in a plane whose z is 0: from the origin along x, with capitals of that height,
    /// further lines below. What has no letter is a question mark.
    SceneLines Strokes(std::string_view text, double height) const;

private:
    struct Glyph
    {
        double left = 0.0;
        double right = 0.0;
        std::vector<std::vector<std::array<double, 2>>> strokes;
    };

    /// From the space on, by their codes.
    std::vector<Glyph> m_glyphs;
};

}  // namespace KVR
