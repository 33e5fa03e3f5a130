// XMLStyle and XMLVitreolStyle by themselves: each value is specified once its setter was called.

#include "framework/xml_util/XMLStyle.h"

#include <gtest/gtest.h>

#include <string>

#include "framework/xml_util/XMLVitreolStyle.h"

namespace
{

using namespace KVR;

// The getter answers what the setter was given, and left its output alone before.
template <class Style, class T, class Argument>
void ExpectSetAndGet(T const& before, T const& value, void (Style::*set)(Argument),
                     IsValueSpecifiedEnum (Style::*get)(T&) const, bool (*equal)(T const&, T const&))
{
    Style style("id", L"label");
    T out = before;
    EXPECT_EQ((style.*get)(out), kIsValueSpecified_No);
    EXPECT_TRUE(equal(out, before));
    (style.*set)(value);
    EXPECT_EQ((style.*get)(out), kIsValueSpecified_Yes);
    EXPECT_TRUE(equal(out, value));
    (style.*set)(before);
    EXPECT_EQ((style.*get)(out), kIsValueSpecified_Yes);
    EXPECT_TRUE(equal(out, before)) << "the last value counts";
}

bool EqualColors(Color const& a, Color const& b)
{
    return a.Red() == b.Red() && a.Green() == b.Green() && a.Blue() == b.Blue() && a.Alpha() == b.Alpha();
}

template <class T>
bool Equal(T const& a, T const& b)
{
    return a == b;
}

Color Colored(double red)
{
    Color color;
    color.SetFractionalRGBA(red, 0.2, 0.3, 0.4);
    return color;
}

template <class Style>
void ExpectColor(void (Style::*set)(Color const&), IsValueSpecifiedEnum (Style::*get)(Color&) const)
{
    ExpectSetAndGet<Style, Color>(Colored(0.9), Colored(0.1), set, get, &EqualColors);
}

template <class Style>
void ExpectDouble(void (Style::*set)(double const&), IsValueSpecifiedEnum (Style::*get)(double&) const)
{
    ExpectSetAndGet<Style, double>(-7.0, 2.5, set, get, &Equal<double>);
}

void ExpectText(void (XMLStyle::*set)(UTF8String const&), IsValueSpecifiedEnum (XMLStyle::*get)(UTF8String&) const)
{
    ExpectSetAndGet<XMLStyle, UTF8String>("before", "wood", set, get, &Equal<UTF8String>);
}

template <class Enum>
void ExpectEnum(void (XMLStyle::*set)(Enum), IsValueSpecifiedEnum (XMLStyle::*get)(Enum&) const)
{
    ExpectSetAndGet<XMLStyle, Enum>(static_cast<Enum>(0), static_cast<Enum>(-3), set, get, &Equal<Enum>);
}

TEST(XMLStyle, EachColorIsSpecifiedOnceSet)
{
    using S = XMLStyle;
    ExpectColor<S>(&S::SetDiffuseColor, &S::DiffuseColor);
    ExpectColor<S>(&S::SetAmbientColor, &S::AmbientColor);
    ExpectColor<S>(&S::SetEmissionColor, &S::EmissionColor);
    ExpectColor<S>(&S::SetSpecularColor, &S::SpecularColor);
    ExpectColor<S>(&S::SetTransparency, &S::Transparency);
}

TEST(XMLStyle, EachNumberIsSpecifiedOnceSet)
{
    using S = XMLStyle;
    ExpectDouble<S>(&S::SetDiffuseFactor, &S::DiffuseFactor);
    ExpectDouble<S>(&S::SetAmbientFactor, &S::AmbientFactor);
    ExpectDouble<S>(&S::SetEmissionFactor, &S::EmissionFactor);
    ExpectDouble<S>(&S::SetSpecularFactor, &S::SpecularFactor);
    ExpectDouble<S>(&S::SetShininess, &S::Shininess);
    ExpectDouble<S>(&S::SetReflection, &S::Reflection);
    ExpectDouble<S>(&S::SetEccentricity, &S::Eccentricity);
    ExpectDouble<S>(&S::SetRolloff, &S::Rolloff);
    ExpectDouble<S>(&S::SetTransparency, &S::Transparency);
    ExpectDouble<S>(&S::SetPointStyleMarkerSize, &S::PointStyleMarkerSize);
    ExpectDouble<S>(&S::SetCurveStyleWidth, &S::CurveStyleWidth);
}

TEST(XMLStyle, EachTextureIsSpecifiedOnceSet)
{
    using S = XMLStyle;
    ExpectText(&S::SetDiffuseTexture, &S::DiffuseTexture);
    ExpectText(&S::SetAmbientTexture, &S::AmbientTexture);
    ExpectText(&S::SetEmissionTexture, &S::EmissionTexture);
    ExpectText(&S::SetSpecularTexture, &S::SpecularTexture);
    ExpectText(&S::SetBumpMap, &S::BumpMap);
}

TEST(XMLStyle, EachEnumerationIsSpecifiedOnceSetAndTakesAnyNumber)
{
    using S = XMLStyle;
    ExpectEnum(&S::SetShaderType, &S::ShaderType);
    ExpectEnum(&S::SetPointStyleMarker, &S::PointStyleMarker);
    ExpectEnum(&S::SetCurveStyleFont, &S::CurveStyleFont);
    ExpectEnum(&S::SetCurveStyleFillArea, &S::CurveStyleFillArea);
}

TEST(XMLStyle, TheTwoTransparenciesAreTwoValues)
{
    XMLStyle style("id", L"label");
    double number = -1.0;
    Color color;
    style.SetTransparency(0.5);
    EXPECT_EQ(style.Transparency(color), kIsValueSpecified_No);
    style.SetTransparency(Colored(0.1));
    EXPECT_EQ(style.Transparency(number), kIsValueSpecified_Yes);
    EXPECT_EQ(number, 0.5);
}

TEST(XMLStyle, HasNoCutoutTexture)
{
    XMLStyle const style("id", L"label");
    UTF8String text("before");
    EXPECT_EQ(style.CutoutTexture(text), kIsValueSpecified_No);
    EXPECT_EQ(text, UTF8String("before"));
}

TEST(XMLStyle, AnswersIdAndLabel)
{
    XMLStyle const style("id", L"label");
    XMLVitreolStyle const vitreol("id2", L"label2");
    EXPECT_EQ(style.Id(), UTF8String("id"));
    EXPECT_EQ(style.Label(), UTF16String(L"label"));
    EXPECT_EQ(vitreol.Id(), UTF8String("id2"));
    EXPECT_EQ(vitreol.Label(), UTF16String(L"label2"));
}

TEST(XMLVitreolStyle, EachColorAndNumberIsSpecifiedOnceSet)
{
    using S = XMLVitreolStyle;
    ExpectColor<S>(&S::SetDiffuseColor, &S::DiffuseColor);
    ExpectColor<S>(&S::SetAmbientColor, &S::AmbientColor);
    ExpectColor<S>(&S::SetEmissionColor, &S::EmissionColor);
    ExpectColor<S>(&S::SetSpecularColor, &S::SpecularColor);
    ExpectDouble<S>(&S::SetDiffuseFactor, &S::DiffuseFactor);
    ExpectDouble<S>(&S::SetAmbientFactor, &S::AmbientFactor);
    ExpectDouble<S>(&S::SetEmissionFactor, &S::EmissionFactor);
    ExpectDouble<S>(&S::SetSpecularFactor, &S::SpecularFactor);
    ExpectDouble<S>(&S::SetShininess, &S::Shininess);
    ExpectDouble<S>(&S::SetTransparency, &S::Transparency);
}

TEST(XMLVitreolStyle, EachLibraryIdIsSpecifiedOnceSet)
{
    using S = XMLVitreolStyle;
    auto const expect = [](void (S::*set)(UTF16String const&), IsValueSpecifiedEnum (S::*get)(UTF16String&) const)
    { ExpectSetAndGet<S, UTF16String>(L"before", L"lib", set, get, &Equal<UTF16String>); };
    expect(&S::SetVitreolLibraryId, &S::VitreolLibraryId);
    expect(&S::SetAssetDefinitionId, &S::AssetDefinitionId);
    expect(&S::SetAssetInstanceVersionGUID, &S::AssetInstanceVersionGUID);
}

TEST(XMLVitreolStyle, OwnsItsAssetAndGivesUpTheFormerOne)
{
    XMLVitreolStyle style("id", L"label");
    EXPECT_EQ(style.SerializedAsset(), nullptr);
    auto* const first = new VitreolSerializedAsset("first", Blob(1, "x"));
    style.SetSerializedAsset(first);
    EXPECT_EQ(style.SerializedAsset(), first);
    auto* const second = new VitreolSerializedAsset("second", Blob(1, "y"));
    style.SetSerializedAsset(second);
    EXPECT_EQ(style.SerializedAsset(), second);
    style.SetSerializedAsset(nullptr);
    EXPECT_EQ(style.SerializedAsset(), nullptr);
}

TEST(XMLVitreolStyle, ItsBestFitIsTheDiffuseColor)
{
    XMLVitreolStyle style("id", L"label");
    Color color = Colored(0.9);
    EXPECT_EQ(style.BestFitDiffuseColor(color), kIsValueSpecified_No);
    EXPECT_TRUE(EqualColors(color, Colored(0.9)));
    style.SetDiffuseColor(Colored(0.1));
    EXPECT_EQ(style.BestFitDiffuseColor(color), kIsValueSpecified_Yes);
    EXPECT_TRUE(EqualColors(color, Colored(0.1)));
}

}  // namespace
