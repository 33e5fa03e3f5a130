// A style of the material library: its element's table, and the assets that reach it.

#include <gtest/gtest.h>

#include "framework/xml_util/XMLStyle.h"
#include "framework/xml_util/XMLVitreolStyle.h"
#include "producer/ElementReaders.h"
#include "producer/XMLProducerImpl.h"
#include "tests/appearance/AppearanceScene.h"
#include "tests/framework/xml_util/Damage.h"
#include "tests/support/ByteBuilder.h"
#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

using V = IVitreolRenderStyle;
using R = IRenderStyle;

constexpr char kInfo[] = R"(<VitreolStyleInfo VitreolLibraryId="lib" VitreolAssetDefinitionId="def"
                             VitreolAssetInstanceVersionGUID="guid"/>)";

struct AssetOf
{
    char const* id;
    char const* type;
    char const* content;
};

std::string AssetFile(std::vector<AssetOf> const& assets)
{
    ByteBuilder bytes;
    bytes.Raw("KVRASSET").U64(1).U64(assets.size());
    for (AssetOf const& asset : assets)
        bytes.String(asset.id).String(asset.type).String(asset.content);
    return bytes.Bytes();
}

// A scene of styles, with an asset file of these assets in front of them.
class AssetScene : public TestScene
{
public:
    AssetScene(std::string_view styles, std::vector<AssetOf> const& assets, char const* switchText = "True")
        : AssetScene(styles, AssetFile(assets), switchText)
    {
    }
    AssetScene(std::string_view styles, std::string_view assetBytes, char const* switchText = "True")
        : TestScene("<Scene><VitreolMaterialInfo GenerateSerializedVitreol=\"" + std::string(switchText) +
                    "\" Path=\"scene.assets\"/><IFile ID=\"f\" Label=\"\"><AttributeSet><StyleSet>" +
                    std::string(styles) + "</StyleSet></AttributeSet></IFile></Scene>")
    {
        WithFile("scene.assets", assetBytes);
    }

    // Type and content of the style's asset; nothing for a plain style and for one without asset.
    std::string AssetText(char const* id)
    {
        auto const* const style = dynamic_cast<V const*>(Producer().Load(id));
        VitreolSerializedAsset const* const asset = style ? style->SerializedAsset() : nullptr;
        return asset ? Text(asset->Type()) + ":" + std::string(static_cast<char const*>(asset->Data()), asset->Size())
                     : "";
    }
    bool IsVitreol(char const* id) { return dynamic_cast<V const*>(Producer().Load(id)) != nullptr; }
};

TEST(VitreolStyle, InfoWithoutAssetMakesOneWithLibraryIds)
{
    StyleScene scene(kInfo);
    auto const* const style = dynamic_cast<V const*>(&scene.Style());
    ASSERT_NE(style, nullptr);
    EXPECT_NE(dynamic_cast<XMLVitreolStyle const*>(style), nullptr);
    EXPECT_EQ(style->SerializedAsset(), nullptr);
    EXPECT_EQ(TextOf(*style, &V::VitreolLibraryId), "lib");
    EXPECT_EQ(TextOf(*style, &V::AssetDefinitionId), "def");
    EXPECT_EQ(TextOf(*style, &V::AssetInstanceVersionGUID), "guid");
}

TEST(VitreolStyle, EachLibraryIdIsSpecifiedByItself)
{
    constexpr std::pair<char const*, IsValueSpecifiedEnum (V::*)(UTF16String&) const> kRows[] = {
        {"VitreolLibraryId", &V::VitreolLibraryId},
        {"VitreolAssetDefinitionId", &V::AssetDefinitionId},
        {"VitreolAssetInstanceVersionGUID", &V::AssetInstanceVersionGUID},
    };
    for (auto const& [attribute, getter] : kRows)
    {
        StyleScene scene("<VitreolStyleInfo " + std::string(attribute) + "=\"x\"/>");
        auto const& style = dynamic_cast<V const&>(scene.Style());
        for (auto const& [other, otherGetter] : kRows)
            EXPECT_EQ(TextOf(style, otherGetter),
                      otherGetter == getter ? std::optional<std::string>("x") : std::nullopt)
                << attribute << " and " << other;
    }
}

TEST(VitreolStyle, OnlyADirectChildOfThatNameTiesAStyleToTheLibrary)
{
    for (char const* body : {"<DiffuseColor><VitreolStyleInfo/></DiffuseColor>", "<vitreolStyleInfo/>",
                             "<?VitreolStyleInfo ?>", "VitreolStyleInfo"})
        EXPECT_EQ(dynamic_cast<V const*>(&StyleScene(body).Style()), nullptr) << body;
    EXPECT_NE(dynamic_cast<V const*>(&StyleScene("<X/><VitreolStyleInfo/>").Style()), nullptr);
}

TEST(VitreolStyle, AnAssetWithoutInfoMakesOneWithoutLibraryIds)
{
    AssetScene scene("<IRenderStyle ID=\"oak\"/>", {{"oak", "wood", "bytes"}});
    scene.Begin();
    ASSERT_TRUE(scene.IsVitreol("oak"));
    EXPECT_EQ(scene.AssetText("oak"), "wood:bytes");
    auto const& style = scene.Get<V>("oak");
    EXPECT_FALSE(TextOf(style, &V::VitreolLibraryId));
    EXPECT_FALSE(TextOf(style, &V::AssetDefinitionId));
    EXPECT_FALSE(TextOf(style, &V::AssetInstanceVersionGUID));
}

TEST(VitreolStyle, TheFirstStyleOfAnIdTakesTheAsset)
{
    AssetScene scene(R"(<IRenderStyle ID="oak" Label="first"/><IRenderStyle ID="oak" Label="second"/>)",
                     {{"oak", "wood", "bytes"}});
    scene.Begin();
    EXPECT_EQ(Text(scene.Get<R>("oak").Label()), "first");
    EXPECT_EQ(scene.AssetText("oak"), "wood:bytes");
}

// Of two objects with one id a host sees the first alone. So that the second shows, the set is read as readers read it.
TEST(VitreolStyle, TheSecondStyleOfAnIdFindsNoAssetAndIsPlainWithoutInfo)
{
    ParsedDocument const document(R"(<StyleSet><IRenderStyle ID="oak"/></StyleSet>)");
    VitreolAssets assets;
    assets["oak"] = new VitreolSerializedAsset("wood", Blob(1, "x"));
    std::vector<UTF8String> ids;
    XMLProducerImpl first(UTF16String(), nullptr);
    ASSERT_TRUE(ReadStyleSet(&first, document.Root(), ids, assets));
    EXPECT_NE(dynamic_cast<V*>(first.Load("oak")), nullptr);
    EXPECT_TRUE(assets.empty()) << "the style took the asset out of the table";
    XMLProducerImpl second(UTF16String(), nullptr);
    ASSERT_TRUE(ReadStyleSet(&second, document.Root(), ids, assets));
    EXPECT_NE(dynamic_cast<XMLStyle*>(second.Load("oak")), nullptr);
    EXPECT_EQ(ids.size(), 2U);
}

TEST(VitreolStyle, AnAssetThatNoStyleTookIsFreedAtTheEnd)
{
    AssetScene scene("<IRenderStyle ID=\"elm\"/>", {{"oak", "wood", "bytes"}, {"ash", "wood", "more"}});
    scene.Begin();
    EXPECT_FALSE(scene.IsVitreol("elm"));
    scene.Producer().EndProcess();
    EXPECT_FALSE(scene.Has("elm"));
}

TEST(VitreolStyle, TheAssetEndsWithItsStyle)
{
    AssetScene scene("<IRenderStyle ID=\"oak\"/>", {{"oak", "wood", "bytes"}});
    scene.Begin();
    scene.Producer().Dispose("oak");
    EXPECT_FALSE(scene.Has("oak"));
}

TEST(VitreolStyle, OfTwoAssetsWithOneIdTheFirstStays)
{
    AssetScene scene("<IRenderStyle ID=\"oak\"/>", {{"oak", "first", "1"}, {"oak", "second", "2"}});
    scene.Begin();
    EXPECT_EQ(scene.AssetText("oak"), "first:1");
}

TEST(VitreolStyle, TheAssetIsLookedUpUnderTheMappedId)
{
    // The file is P1, the style P2.
    AssetScene scene("<IRenderStyle ID=\"oak\"/>", {{"oak", "by old id", ""}, {"P2", "by new id", "x"}});
    scene.WithPrefix("P").Begin();
    EXPECT_EQ(scene.AssetText("P2"), "by new id:x");
    AssetScene unmapped("<IRenderStyle ID=\"oak\"/>", {{"oak", "by old id", ""}});
    unmapped.WithPrefix("P").Begin();
    EXPECT_FALSE(unmapped.IsVitreol("P2"));
}

TEST(VitreolStyle, TheSwitchMustBeExactlyTrue)
{
    for (char const* text : {"true", "TRUE", "1", "", " True"})
    {
        AssetScene scene("<IRenderStyle ID=\"oak\"/>", std::vector<AssetOf>{{"oak", "wood", "x"}}, text);
        scene.Begin();
        EXPECT_FALSE(scene.IsVitreol("oak")) << '"' << text << '"';
    }
}

TEST(VitreolStyle, AMissingAssetFileCostsTheAssetsAlone)
{
    TestScene scene(R"(<Scene><VitreolMaterialInfo GenerateSerializedVitreol="True" Path="none.assets"/>
        <IFile ID="f" Label=""><AttributeSet><StyleSet><IRenderStyle ID="s"><VitreolStyleInfo VitreolLibraryId="l"/>
        </IRenderStyle></StyleSet></AttributeSet></IFile></Scene>)");
    scene.Begin();
    EXPECT_EQ(scene.Get<V>("s").SerializedAsset(), nullptr);
    EXPECT_EQ(TextOf(scene.Get<V>("s"), &V::VitreolLibraryId), "l");
}

TEST(VitreolStyle, AnInfoSectionBehindTheFileServesItToo)
{
    // Objects are read when all info sections were seen.
    TestScene scene(R"(<Scene><IFile ID="f" Label=""><AttributeSet><StyleSet><IRenderStyle ID="oak"/></StyleSet>
        </AttributeSet></IFile><VitreolMaterialInfo GenerateSerializedVitreol="True" Path="a"/></Scene>)");
    scene.WithFile("a", AssetFile({{"oak", "wood", "x"}})).Begin();
    EXPECT_NE(scene.Get<V>("oak").SerializedAsset(), nullptr);
}

TEST(VitreolStyle, ReadsColorsFactorsShininessAndTransparency)
{
    StyleScene scene(std::string(kInfo) +
                     R"(<DiffuseColor FractionRed="0.1" FractionGreen="0.2" FractionBlue="0.3" FractionAlpha="0.4"
                         ColorFactor="0.5" Shininess="6" Transparency="0.7"/>
                        <AmbientColor FractionRed="0.11" FractionGreen="0.21" FractionBlue="0.31" FractionAlpha="0.41"
                         ColorFactor="0.51"/>
                        <EmissionColor FractionRed="0.12" FractionGreen="0.22" FractionBlue="0.32" FractionAlpha="0.42"
                         ColorFactor="0.52"/>
                        <SpecularColor FractionRed="0.13" FractionGreen="0.23" FractionBlue="0.33" ColorFactor="0.53"/>)");
    R const& style = scene.Style();
    EXPECT_EQ(ColorOf(style, &R::DiffuseColor), (Fractions{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ(ColorOf(style, &R::AmbientColor), (Fractions{0.11, 0.21, 0.31, 0.41}));
    EXPECT_EQ(ColorOf(style, &R::EmissionColor), (Fractions{0.12, 0.22, 0.32, 0.42}));
    EXPECT_EQ(ColorOf(style, &R::SpecularColor), (Fractions{0.13, 0.23, 0.33, 1.0}));
    EXPECT_EQ(AnswerOf(style, &R::DiffuseFactor), 0.5);
    EXPECT_EQ(AnswerOf(style, &R::AmbientFactor), 0.51);
    EXPECT_EQ(AnswerOf(style, &R::EmissionFactor), 0.52);
    EXPECT_EQ(AnswerOf(style, &R::SpecularFactor), 0.53);
    EXPECT_EQ(AnswerOf(style, &R::Shininess), 6.0);
    EXPECT_EQ(TransparencyOf(style), 0.7);
}

TEST(VitreolStyle, AColorByItselfSaysNothingOfTheOtherThree)
{
    struct Row
    {
        char const* element;
        IsValueSpecifiedEnum (R::*color)(Color&) const;
        IsValueSpecifiedEnum (R::*factor)(double&) const;
    };
    constexpr Row kRows[] = {{"DiffuseColor", &R::DiffuseColor, &R::DiffuseFactor},
                             {"AmbientColor", &R::AmbientColor, &R::AmbientFactor},
                             {"EmissionColor", &R::EmissionColor, &R::EmissionFactor},
                             {"SpecularColor", &R::SpecularColor, &R::SpecularFactor}};
    for (Row const& written : kRows)
    {
        StyleScene scene(std::string(kInfo) + "<" + written.element +
                         R"( FractionRed="0.1" FractionGreen="0.2" FractionBlue="0.3" ColorFactor="0.5"/>)");
        for (Row const& asked : kRows)
        {
            bool const isIt = &asked == &written;
            EXPECT_EQ(ColorOf(scene.Style(), asked.color).has_value(), isIt) << written.element << asked.element;
            EXPECT_EQ(AnswerOf(scene.Style(), asked.factor).has_value(), isIt) << written.element << asked.element;
        }
    }
}

TEST(VitreolStyle, ShininessAndTransparencyStandOnTheDiffuseColorAlone)
{
    StyleScene scene(std::string(kInfo) + R"(<AmbientColor Shininess="1" Transparency="1"/>
                                            <SpecularColor Shininess="1" Transparency="1"/>)");
    EXPECT_FALSE(AnswerOf(scene.Style(), &R::Shininess));
    EXPECT_FALSE(TransparencyOf(scene.Style()));
}

TEST(VitreolStyle, AnIncompleteColorIsPassedOver)
{
    StyleScene scene(std::string(kInfo) +
                     R"(<DiffuseColor FractionRed="1" FractionAlpha="1" ColorFactor="1" Shininess="2"/>)");
    EXPECT_FALSE(ColorOf(scene.Style(), &R::DiffuseColor));
    EXPECT_FALSE(AnswerOf(scene.Style(), &R::DiffuseFactor));
    EXPECT_EQ(AnswerOf(scene.Style(), &R::Shininess), 2.0);
}

TEST(VitreolStyle, NothingElseOfAPlainStyleIsRead)
{
    StyleScene scene(
        std::string(kInfo) +
            R"(<DiffuseColor TextureId="t" Reflection="1" Eccentricity="1" Rolloff="1" ShaderType="1" DiffuseFactor="1"
                AmbientFactor="1" EmissionFactor="1" SpecularFactor="1" BumpMapId="b"><TransparencyRGB FractionRed="1"
                FractionGreen="1" FractionBlue="1"/></DiffuseColor><DiffuseTexture TextureId="t"/>
               <AmbientTexture TextureId="t"/><EmissionTexture TextureId="t"/><SpecularTexture TextureId="t"/>
               <BumpMap TextureId="t"/>)",
        R"(PointStyleMarkerType="kPointStyleMarkerType_X" PointStyleMarkerSize="1" CurveStyleWidth="1"
           CurveStyleFont="kCurveStyleFontType_ISO_Dash" CurveStyleFillArea="kCurveStyleFillType_Solid")");
    R const& style = scene.Style();
    for (auto const getter :
         {&R::DiffuseTexture, &R::AmbientTexture, &R::EmissionTexture, &R::SpecularTexture, &R::BumpMap})
        EXPECT_FALSE(TextOf(style, getter));
    for (auto const getter : {&R::Reflection, &R::Eccentricity, &R::Rolloff, &R::DiffuseFactor, &R::AmbientFactor,
                              &R::EmissionFactor, &R::SpecularFactor, &R::PointStyleMarkerSize, &R::CurveStyleWidth})
        EXPECT_FALSE(AnswerOf(style, getter));
    EXPECT_FALSE(TransparencyColorOf(style));
    EXPECT_FALSE(AnswerOf(style, &R::ShaderType));
    EXPECT_FALSE(AnswerOf(style, &R::PointStyleMarker));
    EXPECT_FALSE(AnswerOf(style, &R::CurveStyleFont));
    EXPECT_FALSE(AnswerOf(style, &R::CurveStyleFillArea));
}

TEST(VitreolStyle, ReadsChangeKeyVersionIdAndExtensionData)
{
    StyleScene scene(std::string(kInfo) + R"(<ChangeKey>k</ChangeKey><ExtensionData TypeId="a" Content="one"/>)",
                     R"(VersionPersistentId="v" Label="oak")");
    EXPECT_EQ(ChangeKeyOf(scene.Style()), "k");
    EXPECT_EQ(TextOf(scene.Style(), &IObject::VersionPersistentId), "v");
    EXPECT_EQ(ExtensionTextOf(scene.Style(), "a"), "one");
    EXPECT_EQ(Text(scene.Style().Label()), "oak");
}

TEST(VitreolStyle, ItsBestFitIsTheDiffuseColor)
{
    StyleScene none(kInfo);
    EXPECT_FALSE(AnswerOf(dynamic_cast<V const&>(none.Style()), &V::BestFitDiffuseColor));
    StyleScene scene(std::string(kInfo) + R"(<DiffuseColor FractionRed="1" FractionGreen="0.5" FractionBlue="0"/>)");
    auto const color = AnswerOf(dynamic_cast<V const&>(scene.Style()), &V::BestFitDiffuseColor);
    ASSERT_TRUE(color);
    EXPECT_EQ(color->Green(), 0.5);
}

// The scene's answers for whatever became of the asset file.
void ExpectAssetOrPlainStyle(std::string_view bytes, std::string const& what)
{
    AssetScene scene(R"(<IRenderStyle ID="oak"/><IRenderStyle ID="elm"><VitreolStyleInfo/></IRenderStyle>)", bytes);
    scene.Begin();
    ASSERT_TRUE(scene.Has("oak")) << what;
    ASSERT_TRUE(scene.IsVitreol("elm")) << what;
}

TEST(VitreolStyle, AnAssetFileOfAnyLengthDoesNoHarm)
{
    std::string const whole = AssetFile({{"oak", "wood", "bytes"}, {"elm", "wood", "more"}});
    std::size_t const firstEnd = AssetFile({{"oak", "wood", "bytes"}}).size();
    ForEachPrefix(whole,
                  [&](std::string_view prefix)
                  {
                      AssetScene scene("<IRenderStyle ID=\"oak\"/><IRenderStyle ID=\"elm\"/>", prefix);
                      scene.Begin();
                      EXPECT_EQ(scene.AssetText("oak"), prefix.size() >= firstEnd ? "wood:bytes" : "")
                          << prefix.size() << " bytes";
                      EXPECT_EQ(scene.AssetText("elm"), "") << prefix.size() << " bytes";
                  });
}

TEST(VitreolStyle, AnAssetFileWithAnyByteChangedDoesNoHarm)
{
    ForEachFlip(AssetFile({{"oak", "wood", "bytes"}, {"elm", "wood", "more"}}),
                [](std::string_view damaged, std::size_t place)
                { ExpectAssetOrPlainStyle(damaged, "byte " + std::to_string(place)); });
}

}  // namespace

}  // namespace KVR::Test
