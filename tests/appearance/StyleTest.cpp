// A plain style: its element's table, row by row.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "framework/xml_util/XMLStyle.h"
#include "tests/appearance/AppearanceScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using R = IRenderStyle;

using DoubleGetter = IsValueSpecifiedEnum (IRenderStyle::*)(double&) const;

constexpr DoubleGetter kTransparency = &IRenderStyle::Transparency;

// Every getter of a number, so that a test can say that no other was touched.
constexpr std::pair<char const*, DoubleGetter> kDoubles[] = {
    {"DiffuseFactor", &R::DiffuseFactor},
    {"AmbientFactor", &R::AmbientFactor},
    {"EmissionFactor", &R::EmissionFactor},
    {"SpecularFactor", &R::SpecularFactor},
    {"Shininess", &R::Shininess},
    {"Reflection", &R::Reflection},
    {"Eccentricity", &R::Eccentricity},
    {"Rolloff", &R::Rolloff},
    {"Transparency", kTransparency},
    {"PointStyleMarkerSize", &R::PointStyleMarkerSize},
    {"CurveStyleWidth", &R::CurveStyleWidth},
};

std::vector<std::string> SpecifiedDoubles(IRenderStyle const& style)
{
    std::vector<std::string> names;
    for (auto const& [name, getter] : kDoubles)
    {
        if (AnswerOf(style, getter))
            names.emplace_back(name);
    }
    return names;
}

struct ColorRow
{
    char const* element;
    IsValueSpecifiedEnum (IRenderStyle::*color)(Color&) const;
    DoubleGetter factor;
    char const* factorName;
};

constexpr ColorRow kColorRows[] = {
    {"DiffuseColor", &R::DiffuseColor, &R::DiffuseFactor, "DiffuseFactor"},
    {"AmbientColor", &R::AmbientColor, &R::AmbientFactor, "AmbientFactor"},
    {"EmissionColor", &R::EmissionColor, &R::EmissionFactor, "EmissionFactor"},
    {"SpecularColor", &R::SpecularColor, &R::SpecularFactor, "SpecularFactor"},
};

TEST(Style, IsAPlainStyleWithoutAssetAndLibrary)
{
    StyleScene scene("");
    EXPECT_NE(dynamic_cast<XMLStyle const*>(&scene.Style()), nullptr);
    EXPECT_EQ(dynamic_cast<IVitreolRenderStyle const*>(&scene.Style()), nullptr);
}

TEST(Style, AnEmptyOneSpecifiesNothing)
{
    StyleScene scene("");
    IRenderStyle const& style = scene.Style();
    EXPECT_THAT(SpecifiedDoubles(style), ElementsAre());
    for (ColorRow const& row : kColorRows)
        EXPECT_FALSE(ColorOf(style, row.color)) << row.element;
    for (auto const getter : {&R::DiffuseTexture, &R::AmbientTexture, &R::EmissionTexture, &R::SpecularTexture,
                              &R::BumpMap, &R::CutoutTexture})
        EXPECT_FALSE(TextOf(style, getter));
    EXPECT_FALSE(AnswerOf(style, &R::ShaderType));
    EXPECT_FALSE(AnswerOf(style, &R::PointStyleMarker));
    EXPECT_FALSE(AnswerOf(style, &R::CurveStyleFont));
    EXPECT_FALSE(AnswerOf(style, &R::CurveStyleFillArea));
    EXPECT_FALSE(TransparencyColorOf(style));
    EXPECT_FALSE(ChangeKeyOf(style));
    EXPECT_FALSE(TextOf(style, &IObject::VersionPersistentId));
    EXPECT_TRUE(style.PropertyIds().IsEmpty());
    EXPECT_FALSE(style.IsThreadSafe());
}

TEST(Style, AGetterThatIsNotSpecifiedLeavesItsOutputAlone)
{
    StyleScene scene("");
    Color color;
    color.SetFractionalRGBA(0.1, 0.2, 0.3, 0.4);
    double number = 7.0;
    UTF8String text("before");
    EXPECT_EQ(scene.Style().DiffuseColor(color), kIsValueSpecified_No);
    EXPECT_EQ(scene.Style().Shininess(number), kIsValueSpecified_No);
    EXPECT_EQ(scene.Style().BumpMap(text), kIsValueSpecified_No);
    EXPECT_EQ(color.Green(), 0.2);
    EXPECT_EQ(number, 7.0);
    EXPECT_EQ(Text(text), "before");
}

TEST(Style, EachColorElementSetsItsColorAndItsFactor)
{
    for (ColorRow const& row : kColorRows)
    {
        StyleScene scene(
            "<" + std::string(row.element) +
            R"( FractionRed="0.1" FractionGreen="0.2" FractionBlue="0.3" FractionAlpha="0.4" ColorFactor="0.5"/>)");
        EXPECT_EQ(ColorOf(scene.Style(), row.color), (Fractions{0.1, 0.2, 0.3, 0.4})) << row.element;
        EXPECT_EQ(AnswerOf(scene.Style(), row.factor), 0.5) << row.element;
        EXPECT_THAT(SpecifiedDoubles(scene.Style()), ElementsAre(row.factorName));
        for (ColorRow const& other : kColorRows)
            EXPECT_EQ(ColorOf(scene.Style(), other.color).has_value(), &other == &row) << other.element;
    }
}

TEST(Style, EachColorIsOpaqueWithoutAlpha)
{
    for (ColorRow const& row : kColorRows)
    {
        StyleScene scene("<" + std::string(row.element) +
                         R"( FractionRed="0.1" FractionGreen="0.2" FractionBlue="0.3"/>)");
        EXPECT_EQ(ColorOf(scene.Style(), row.color), (Fractions{0.1, 0.2, 0.3, 1.0})) << row.element;
        EXPECT_FALSE(AnswerOf(scene.Style(), row.factor)) << row.element;
    }
}

TEST(Style, AlphaAndFactorCountOnlyWithTheThreeOtherFractions)
{
    for (ColorRow const& row : kColorRows)
    {
        for (char const* missing : {"FractionRed", "FractionGreen", "FractionBlue"})
        {
            std::string body = "<" + std::string(row.element) + " FractionAlpha=\"0.5\" ColorFactor=\"0.5\"";
            for (char const* name : {"FractionRed", "FractionGreen", "FractionBlue"})
            {
                if (std::string_view(name) != missing)
                    body += " " + std::string(name) + "=\"1\"";
            }
            StyleScene scene(body + "/>");
            EXPECT_FALSE(ColorOf(scene.Style(), row.color)) << row.element << " without " << missing;
            EXPECT_FALSE(AnswerOf(scene.Style(), row.factor)) << row.element << " without " << missing;
        }
    }
}

TEST(Style, AColorThatIsNoNumberIsSetAllTheSame)
{
    StyleScene scene(R"(<AmbientColor FractionRed="red" FractionGreen="2" FractionBlue="-1" ColorFactor="much"/>)");
    EXPECT_EQ(ColorOf(scene.Style(), &R::AmbientColor), (Fractions{0.0, 2.0, -1.0, 1.0}));
    EXPECT_EQ(AnswerOf(scene.Style(), &R::AmbientFactor), 0.0);
}

TEST(Style, ADiffuseColorWithShininessAloneHasNoColorAndNoFactor)
{
    StyleScene scene(R"(<DiffuseColor Shininess="20" ColorFactor="1"/>)");
    EXPECT_FALSE(ColorOf(scene.Style(), &R::DiffuseColor));
    EXPECT_THAT(SpecifiedDoubles(scene.Style()), ElementsAre("Shininess"));
    EXPECT_EQ(AnswerOf(scene.Style(), &R::Shininess), 20.0);
}

TEST(Style, ItsScalarsStandOnTheDiffuseColor)
{
    StyleScene scene(
        R"(<DiffuseColor Shininess="1" Reflection="2" Eccentricity="3" Rolloff="4" Transparency="5" ShaderType="6"
            DiffuseFactor="7" AmbientFactor="8" EmissionFactor="9" SpecularFactor="10" BumpMapId="map"/>)");
    IRenderStyle const& style = scene.Style();
    EXPECT_EQ(AnswerOf(style, &R::Shininess), 1.0);
    EXPECT_EQ(AnswerOf(style, &R::Reflection), 2.0);
    EXPECT_EQ(AnswerOf(style, &R::Eccentricity), 3.0);
    EXPECT_EQ(AnswerOf(style, &R::Rolloff), 4.0);
    EXPECT_EQ(TransparencyOf(style), 5.0);
    EXPECT_EQ(AnswerOf(style, &R::ShaderType), static_cast<R::ShadingModelType>(6));
    EXPECT_EQ(AnswerOf(style, &R::DiffuseFactor), 7.0);
    EXPECT_EQ(AnswerOf(style, &R::AmbientFactor), 8.0);
    EXPECT_EQ(AnswerOf(style, &R::EmissionFactor), 9.0);
    EXPECT_EQ(AnswerOf(style, &R::SpecularFactor), 10.0);
    EXPECT_EQ(TextOf(style, &R::BumpMap), "map");
    EXPECT_FALSE(TransparencyColorOf(style)) << "the number is not the colour";
}

TEST(Style, ABumpMapInAnotherCaseIsNone)
{
    EXPECT_FALSE(TextOf(StyleScene("<bumpMap TextureId='t'/>").Style(), &R::BumpMap));
    EXPECT_EQ(TextOf(StyleScene("<BumpMap TextureId='t'/>").Style(), &R::BumpMap), "t");
}

TEST(Style, NoOtherColorElementHasScalars)
{
    for (char const* element : {"AmbientColor", "EmissionColor", "SpecularColor", "IRenderStyle", "BumpMap"})
    {
        StyleScene scene("<" + std::string(element) +
                         R"( Shininess="1" Reflection="2" Eccentricity="3" Rolloff="4" Transparency="5" ShaderType="6"
                             DiffuseFactor="7" AmbientFactor="8" EmissionFactor="9" SpecularFactor="10" BumpMapId="m"/>)");
        EXPECT_THAT(SpecifiedDoubles(scene.Style()), ElementsAre()) << element;
        EXPECT_FALSE(TextOf(scene.Style(), &R::BumpMap)) << element;
    }
}

TEST(Style, AScalarThatIsNoNumberIsSetToZero)
{
    StyleScene scene(R"(<DiffuseColor Shininess="bright" ShaderType="phong"/>)", R"(CurveStyleWidth="wide")");
    EXPECT_EQ(AnswerOf(scene.Style(), &R::Shininess), 0.0);
    EXPECT_EQ(AnswerOf(scene.Style(), &R::ShaderType), R::kShadingModel_Default);
    EXPECT_EQ(AnswerOf(scene.Style(), &R::CurveStyleWidth), 0.0);
}

TEST(Style, PassesAnyShadingModelThrough)
{
    for (int const model : {-2147483647, -1, 0, 1, 255, 2147483647})
    {
        StyleScene scene("<DiffuseColor ShaderType=\"" + std::to_string(model) + "\"/>");
        auto const answer = AnswerOf(scene.Style(), &R::ShaderType);
        ASSERT_TRUE(answer) << model;
        EXPECT_EQ(static_cast<int>(*answer), model);
    }
}

TEST(Style, TheDiffuseFactorBeatsTheColorFactorOfItsElement)
{
    StyleScene scene(
        R"(<DiffuseColor FractionRed="1" FractionGreen="1" FractionBlue="1" ColorFactor="0.25" DiffuseFactor="0.75"/>)");
    EXPECT_EQ(AnswerOf(scene.Style(), &R::DiffuseFactor), 0.75);
}

TEST(Style, OfAFactorByTwoNamesTheOneReadLastStands)
{
    constexpr char kFactor[] = R"(<DiffuseColor AmbientFactor="0.1" EmissionFactor="0.1" SpecularFactor="0.1"/>)";
    constexpr char kColors[] =
        R"(<AmbientColor FractionRed="1" FractionGreen="1" FractionBlue="1" ColorFactor="0.2"/>
           <EmissionColor FractionRed="1" FractionGreen="1" FractionBlue="1" ColorFactor="0.2"/>
           <SpecularColor FractionRed="1" FractionGreen="1" FractionBlue="1" ColorFactor="0.2"/>)";
    StyleScene colorsLast(std::string(kFactor) + kColors);
    StyleScene factorsLast(std::string(kColors) + kFactor);
    for (DoubleGetter const factor : {&R::AmbientFactor, &R::EmissionFactor, &R::SpecularFactor})
    {
        EXPECT_EQ(AnswerOf(colorsLast.Style(), factor), 0.2);
        EXPECT_EQ(AnswerOf(factorsLast.Style(), factor), 0.1);
    }
}

TEST(Style, EachTextureElementSetsItsTexture)
{
    constexpr std::pair<char const*, IsValueSpecifiedEnum (R::*)(UTF8String&) const> kRows[] = {
        {"DiffuseTexture", &R::DiffuseTexture},
        {"AmbientTexture", &R::AmbientTexture},
        {"EmissionTexture", &R::EmissionTexture},
        {"SpecularTexture", &R::SpecularTexture},
        {"BumpMap", &R::BumpMap},
        {"DiffuseColor", &R::DiffuseTexture},
    };
    for (auto const& [element, getter] : kRows)
    {
        StyleScene scene("<" + std::string(element) + " TextureId=\"wood\"/>");
        for (auto const& [other, otherGetter] : kRows)
        {
            bool const isSet = otherGetter == getter;
            EXPECT_EQ(TextOf(scene.Style(), otherGetter), isSet ? std::optional<std::string>("wood") : std::nullopt)
                << element << " and " << other;
        }
    }
}

TEST(Style, OnlyTheDiffuseColorTakesATextureId)
{
    StyleScene scene(R"(<AmbientColor TextureId="t"/><EmissionColor TextureId="t"/><SpecularColor TextureId="t"/>)");
    EXPECT_FALSE(TextOf(scene.Style(), &R::AmbientTexture));
    EXPECT_FALSE(TextOf(scene.Style(), &R::EmissionTexture));
    EXPECT_FALSE(TextOf(scene.Style(), &R::SpecularTexture));
}

TEST(Style, ATextureElementWithoutIdSetsNothing)
{
    StyleScene scene("<DiffuseTexture/><BumpMap Id=\"x\"/>");
    EXPECT_FALSE(TextOf(scene.Style(), &R::DiffuseTexture));
    EXPECT_FALSE(TextOf(scene.Style(), &R::BumpMap));
}

TEST(Style, AnEmptyTextureIdIsSpecified)
{
    StyleScene scene("<DiffuseTexture TextureId=\"\"/>");
    EXPECT_EQ(TextOf(scene.Style(), &R::DiffuseTexture), "");
}

TEST(Style, OfTwoDiffuseTexturesTheLastElementWins)
{
    StyleScene elementLast(R"(<DiffuseColor TextureId="color"/><DiffuseTexture TextureId="texture"/>)");
    StyleScene colorLast(R"(<DiffuseTexture TextureId="texture"/><DiffuseColor TextureId="color"/>)");
    EXPECT_EQ(TextOf(elementLast.Style(), &R::DiffuseTexture), "texture");
    EXPECT_EQ(TextOf(colorLast.Style(), &R::DiffuseTexture), "color");
}

TEST(Style, OfTwoBumpMapsTheOneReadLastWins)
{
    StyleScene elementLast(R"(<DiffuseColor BumpMapId="color"/><BumpMap TextureId="map"/>)");
    StyleScene colorLast(R"(<BumpMap TextureId="map"/><DiffuseColor BumpMapId="color"/>)");
    EXPECT_EQ(TextOf(elementLast.Style(), &R::BumpMap), "map");
    EXPECT_EQ(TextOf(colorLast.Style(), &R::BumpMap), "color");
}

TEST(Style, ARepeatedElementKeepsWhatTheLaterOneDoesNotSay)
{
    StyleScene scene(R"(<DiffuseColor FractionRed="1" FractionGreen="1" FractionBlue="1" Shininess="3"/>
                        <DiffuseColor FractionRed="0" FractionGreen="0" FractionBlue="1" Rolloff="4"/>)");
    EXPECT_EQ(ColorOf(scene.Style(), &R::DiffuseColor), (Fractions{0, 0, 1, 1}));
    EXPECT_EQ(AnswerOf(scene.Style(), &R::Shininess), 3.0);
    EXPECT_EQ(AnswerOf(scene.Style(), &R::Rolloff), 4.0);
}

TEST(Style, ATransparencyColorStandsInTheDiffuseColor)
{
    StyleScene scene(
        R"(<DiffuseColor><TransparencyRGB FractionRed="0.1" FractionGreen="0.2" FractionBlue="0.3" ColorFactor="1"/>
           </DiffuseColor>)");
    EXPECT_EQ(TransparencyColorOf(scene.Style()), (Fractions{0.1, 0.2, 0.3, 1.0}));
    EXPECT_THAT(SpecifiedDoubles(scene.Style()), ElementsAre()) << "it has no factor, and is not the number";
}

TEST(Style, ATransparencyColorElsewhereIsIgnored)
{
    constexpr char kColor[] = R"(<TransparencyRGB FractionRed="1" FractionGreen="1" FractionBlue="1"/>)";
    EXPECT_FALSE(TransparencyColorOf(StyleScene(kColor).Style()));
    EXPECT_FALSE(TransparencyColorOf(StyleScene("<AmbientColor>" + std::string(kColor) + "</AmbientColor>").Style()));
    EXPECT_FALSE(
        TransparencyColorOf(StyleScene("<DiffuseColor><X>" + std::string(kColor) + "</X></DiffuseColor>").Style()));
}

TEST(Style, OfSeveralTransparencyColorsTheFirstIsLookedAtAlone)
{
    StyleScene scene(R"(<DiffuseColor><TransparencyRGB FractionRed="1" FractionGreen="0" FractionBlue="0"/>
                        <TransparencyRGB FractionRed="0" FractionGreen="1" FractionBlue="0"/></DiffuseColor>)");
    EXPECT_EQ(TransparencyColorOf(scene.Style()), (Fractions{1, 0, 0, 1}));
    StyleScene incomplete(R"(<DiffuseColor><TransparencyRGB FractionRed="1"/>
                             <TransparencyRGB FractionRed="0" FractionGreen="1" FractionBlue="0"/></DiffuseColor>)");
    EXPECT_FALSE(TransparencyColorOf(incomplete.Style()));
}

TEST(Style, ReadsChangeKeyVersionIdAndExtensionData)
{
    StyleScene scene(R"(<ChangeKey>first</ChangeKey><ChangeKey>k1</ChangeKey>
                        <ExtensionData TypeId="a" Content="one"/><ExtensionData TypeId="b" Content="two"/>)",
                     R"(VersionPersistentId="v" Label="steel")");
    EXPECT_EQ(ChangeKeyOf(scene.Style()), "k1");
    EXPECT_EQ(TextOf(scene.Style(), &IObject::VersionPersistentId), "v");
    EXPECT_EQ(ExtensionTextOf(scene.Style(), "a"), "one");
    EXPECT_EQ(ExtensionTextOf(scene.Style(), "b"), "two");
    EXPECT_EQ(Text(scene.Style().Label()), "steel");
}

TEST(Style, NamesAreComparedExactlyAndOthersIgnored)
{
    StyleScene scene(R"(<diffuseColor FractionRed="1" FractionGreen="1" FractionBlue="1"/><CutoutTexture TextureId="t"/>
                        <DIFFUSETEXTURE TextureId="t"/><DiffuseTexture textureid="t"/><Unknown/>)");
    EXPECT_FALSE(ColorOf(scene.Style(), &R::DiffuseColor));
    EXPECT_FALSE(TextOf(scene.Style(), &R::DiffuseTexture));
    EXPECT_FALSE(TextOf(scene.Style(), &R::CutoutTexture));
}

TEST(Style, VisitsAsAStyle)
{
    class Visitor : public ObjectVisitor
    {
    public:
        using ObjectVisitor::Visit;
        void Visit(IRenderStyle* style) override { visited = style; }
        IRenderStyle* visited = nullptr;
    } visitor;
    StyleScene scene("");
    IRenderStyle& style = scene.Get<IRenderStyle>("s");
    style.AcceptVisitor(&visitor);
    EXPECT_EQ(visitor.visited, &style);
}

}  // namespace

}  // namespace KVR::Test
