#pragma once

#include <array>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "framework/api/kvr_api.h"
#include "tests/structure/Answers.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

/// A scene of one file "f" that declares what stands in the text.
inline std::string InFile(std::string_view attributeSet)
{
    return InScene("<IFile ID=\"f\" Label=\"\"><AttributeSet>" + std::string(attributeSet) + "</AttributeSet></IFile>");
}

inline std::string InStyleSet(std::string_view styles)
{
    return InFile("<StyleSet>" + std::string(styles) + "</StyleSet>");
}

inline std::string InTextureSet(std::string_view textures)
{
    return InFile("<TextureSet>" + std::string(textures) + "</TextureSet>");
}

/// An element "IRenderStyle" of id "s" that holds the text.
inline std::string Style(std::string_view body, std::string_view attributes = "")
{
    return "<IRenderStyle ID=\"s\" " + std::string(attributes) + ">" + std::string(body) + "</IRenderStyle>";
}

using Fractions = std::array<double, 4>;

inline std::optional<Fractions> ColorOf(IRenderStyle const& style,
                                        IsValueSpecifiedEnum (IRenderStyle::*getter)(Color&) const)
{
    std::optional<Color> const color = AnswerOf(style, getter);
    return color ? std::optional(Fractions{color->Red(), color->Green(), color->Blue(), color->Alpha()}) : std::nullopt;
}

/// The two answers of the overloaded getter.
inline std::optional<double> TransparencyOf(IRenderStyle const& style)
{
    return AnswerOf<double, IRenderStyle, IRenderStyle>(style, &IRenderStyle::Transparency);
}
inline std::optional<Fractions> TransparencyColorOf(IRenderStyle const& style)
{
    return ColorOf(style, &IRenderStyle::Transparency);
}

/// A scene of one style "s", read.
class StyleScene : public TestScene
{
public:
    explicit StyleScene(std::string_view body, std::string_view attributes = "")
        : TestScene(InStyleSet(KVR::Test::Style(body, attributes)))
    {
        Begin();
    }

    IRenderStyle const& Style() { return Get<IRenderStyle>("s"); }
};

/// A scene of one texture "t", read.
class TextureScene : public TestScene
{
public:
    explicit TextureScene(std::string_view attributes, std::string_view body = "")
        : TestScene(InTextureSet("<IMaterialTexture ID=\"t\" " + std::string(attributes) + ">" + std::string(body) +
                                 "</IMaterialTexture>"))
    {
        Begin();
    }

    IMaterialTexture const& Texture() { return Get<IMaterialTexture>("t"); }
};

}  // namespace KVR::Test
