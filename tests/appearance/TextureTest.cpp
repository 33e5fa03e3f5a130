// A texture: its element's tables, and its image.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "appearance/XMLTexture.h"
#include "tests/appearance/AppearanceScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using T = IMaterialTexture;

using IntGetter = IsValueSpecifiedEnum (T::*)(int&) const;
using DoubleGetter = IsValueSpecifiedEnum (T::*)(double&) const;
using TextGetter = IsValueSpecifiedEnum (T::*)(UTF16String&) const;
using VectorGetter = IsValueSpecifiedEnum (T::*)(double&, double&) const;

constexpr std::pair<char const*, IntGetter> kInts[] = {
    {"TextureType", &T::TextureType},
    {"EmbeddedTextureImageSize", &T::EmbeddedTextureImageSize},
    {"EmbeddedTextureImageType", &T::EmbeddedTextureImageType},
    {"ProjectType", &T::ProjectType},
    {"ProcedureU", &T::ProcedureU},
    {"ProcedureV", &T::ProcedureV},
};
constexpr std::pair<char const*, DoubleGetter> kDoubles[] = {
    {"RotateAngle", &T::RotateAngle},
    {"RepeatU", &T::RepeatU},
    {"RepeatV", &T::RepeatV},
};
constexpr std::pair<char const*, TextGetter> kTexts[] = {
    {"TextureFileReference", &T::TextureFileReference},
    {"ProceduralName", &T::ProceduralName},
};
constexpr std::pair<char const*, VectorGetter> kVectors[] = {
    {"TextureCenter", &T::TextureCenter},
    {"TextureOffset", &T::TextureOffset},
    {"TextureScale", &T::TextureScale},
    {"TextureSizeForScale", &T::TextureSizeForScale},
};

std::optional<std::pair<double, double>> VectorOf(T const& texture, VectorGetter getter)
{
    double x = -7.0;
    double y = -8.0;
    if ((texture.*getter)(x, y) == kIsValueSpecified_Yes)
        return std::pair(x, y);
    EXPECT_EQ(x, -7.0) << "the outputs are left alone";
    EXPECT_EQ(y, -8.0) << "the outputs are left alone";
    return {};
}

std::optional<std::pair<int, int>> DimensionsOf(T const& texture)
{
    int width = -7;
    int height = -8;
    if (texture.TextureDimensions(width, height) == kIsValueSpecified_Yes)
        return std::pair(width, height);
    EXPECT_EQ(width, -7);
    EXPECT_EQ(height, -8);
    return {};
}

// The names of all that is specified.
std::vector<std::string> Specified(T const& texture)
{
    std::vector<std::string> names;
    auto const note = [&](char const* name, bool isSpecified)
    {
        if (isSpecified)
            names.emplace_back(name);
    };
    for (auto const& [name, getter] : kInts)
        note(name, AnswerOf(texture, getter).has_value());
    for (auto const& [name, getter] : kDoubles)
        note(name, AnswerOf(texture, getter).has_value());
    for (auto const& [name, getter] : kTexts)
        note(name, AnswerOf(texture, getter).has_value());
    for (auto const& [name, getter] : kVectors)
        note(name, VectorOf(texture, getter).has_value());
    note("TextureDimensions", DimensionsOf(texture).has_value());
    return names;
}

TEST(Texture, AnEmptyOneSpecifiesNothing)
{
    TextureScene scene("");
    EXPECT_NE(dynamic_cast<XMLTexture const*>(&scene.Texture()), nullptr);
    EXPECT_THAT(Specified(scene.Texture()), ElementsAre());
    EXPECT_FALSE(TextOf(scene.Texture(), &IObject::VersionPersistentId));
    EXPECT_TRUE(scene.Texture().PropertyIds().IsEmpty());
}

TEST(Texture, EachIntegerAttributeSetsItsPropertyAlone)
{
    for (auto const& [name, getter] : kInts)
    {
        TextureScene scene(std::string(name) + "=\"-12\"");
        EXPECT_EQ(AnswerOf(scene.Texture(), getter), -12) << name;
        EXPECT_THAT(Specified(scene.Texture()), ElementsAre(name));
    }
}

TEST(Texture, EachNumberAttributeSetsItsPropertyAlone)
{
    for (auto const& [name, getter] : kDoubles)
    {
        TextureScene scene(std::string(name) + "=\"2.5\"");
        EXPECT_EQ(AnswerOf(scene.Texture(), getter), 2.5) << name;
        EXPECT_THAT(Specified(scene.Texture()), ElementsAre(name));
    }
}

TEST(Texture, EachTextAttributeSetsItsPropertyAlone)
{
    for (auto const& [name, getter] : kTexts)
    {
        TextureScene scene(std::string(name) + "=\" Räder 😀 \"");
        EXPECT_EQ(TextOf(scene.Texture(), getter), " Räder 😀 ") << name;
        EXPECT_THAT(Specified(scene.Texture()), ElementsAre(name));
    }
}

TEST(Texture, AnEmptyTextIsSpecified)
{
    TextureScene scene(R"(TextureFileReference="" ProceduralName="")");
    EXPECT_EQ(TextOf(scene.Texture(), &T::TextureFileReference), "");
    EXPECT_EQ(TextOf(scene.Texture(), &T::ProceduralName), "");
}

TEST(Texture, ANumberThatIsNoneIsSetToZero)
{
    for (auto const& [name, getter] : kInts)
        EXPECT_EQ(AnswerOf(TextureScene(std::string(name) + "=\"1.5\"").Texture(), getter), 0) << name;
    for (auto const& [name, getter] : kDoubles)
        EXPECT_EQ(AnswerOf(TextureScene(std::string(name) + "=\"1,5\"").Texture(), getter), 0.0) << name;
    for (auto const& [name, getter] : kVectors)
    {
        TextureScene scene("", "<" + std::string(name) + " X=\"1,5\" Y=\"x\"/>");
        EXPECT_EQ(VectorOf(scene.Texture(), getter), std::pair(0.0, 0.0)) << name;
    }
}

TEST(Texture, EachVectorElementSetsItsPropertyAlone)
{
    for (auto const& [name, getter] : kVectors)
    {
        TextureScene scene("", "<" + std::string(name) + " X=\"1.5\" Y=\"-2\"/>");
        EXPECT_EQ(VectorOf(scene.Texture(), getter), std::pair(1.5, -2.0)) << name;
        EXPECT_THAT(Specified(scene.Texture()), ElementsAre(name));
    }
}

TEST(Texture, AVectorNeedsBothItsNumbers)
{
    for (auto const& [name, getter] : kVectors)
    {
        for (char const* attributes : {"X=\"1\"", "Y=\"1\"", "x=\"1\" y=\"1\"", ""})
        {
            TextureScene scene("", "<" + std::string(name) + " " + attributes + "/>");
            EXPECT_FALSE(VectorOf(scene.Texture(), getter)) << name << " with " << attributes;
        }
    }
}

TEST(Texture, ATextOfAVectorThatIsNoNumberIsZero)
{
    TextureScene scene("", R"(<TextureCenter X="left" Y="2"/>)");
    EXPECT_EQ(VectorOf(scene.Texture(), &T::TextureCenter), std::pair(0.0, 2.0));
}

TEST(Texture, ItsDimensionsNeedWidthAndHeight)
{
    EXPECT_EQ(DimensionsOf(TextureScene("", R"(<TextureDimensions Width="640" Height="480"/>)").Texture()),
              std::pair(640, 480));
    EXPECT_FALSE(DimensionsOf(TextureScene("", R"(<TextureDimensions Width="640"/>)").Texture()));
    EXPECT_FALSE(DimensionsOf(TextureScene("", R"(<TextureDimensions Height="480"/>)").Texture()));
    EXPECT_FALSE(DimensionsOf(TextureScene("", R"(<TextureDimensions X="1" Y="1"/>)").Texture()));
    EXPECT_EQ(DimensionsOf(TextureScene("", R"(<TextureDimensions Width="wide" Height="1.5"/>)").Texture()),
              std::pair(0, 0));
}

TEST(Texture, OfTwoScalesTheLastWins)
{
    TextureScene scene("", R"(<TextureScale X="1" Y="1"/><TextureScale X="2" Y="3"/>)");
    EXPECT_EQ(VectorOf(scene.Texture(), &T::TextureScale), std::pair(2.0, 3.0));
}

TEST(Texture, AnIncompleteScaleLeavesTheOneBeforeIt)
{
    TextureScene scene("", R"(<TextureScale X="1" Y="1"/><TextureScale X="2"/>)");
    EXPECT_EQ(VectorOf(scene.Texture(), &T::TextureScale), std::pair(1.0, 1.0));
}

TEST(Texture, ItsClosingOperationsAnswerNothing)
{
    TextureScene scene(R"(TintColor="1" AssetId="a" TextureTransform="1")", "<TintColor/><TextureTransform/>");
    Color color;
    Matrix3d transform;
    EXPECT_EQ(scene.Texture().TintColor(color), kIsValueSpecified_No);
    EXPECT_TRUE(scene.Texture().AssetId().IsEmpty());
    EXPECT_EQ(scene.Texture().TextureTransform(transform), kIsValueSpecified_No);
}

TEST(Texture, ReadsVersionIdAndExtensionDataButNoChangeKey)
{
    TextureScene scene(
        R"(VersionPersistentId="v")",
        R"(<ChangeKey>k</ChangeKey><ExtensionData TypeId="a" Content="one"/><ExtensionData TypeId="b" Content="two"/>)");
    EXPECT_FALSE(ChangeKeyOf(scene.Texture()));
    EXPECT_EQ(TextOf(scene.Texture(), &IObject::VersionPersistentId), "v");
    EXPECT_EQ(ExtensionTextOf(scene.Texture(), "a"), "one");
    EXPECT_EQ(ExtensionTextOf(scene.Texture(), "b"), "two");
}

TEST(TextureSet, IsListedByFileAssemblyAndPartInDocumentOrder)
{
    constexpr char kSet[] = R"(<AttributeSet><TextureSet><IMaterialTexture ID="%z"/><Other ID="%no"/>
                               <IMaterialTexture ID="%a"/></TextureSet></AttributeSet>)";
    auto const set = [&](char const* prefix)
    {
        std::string text = kSet;
        for (std::size_t at = text.find('%'); at != std::string::npos; at = text.find('%'))
            text.replace(at, 1, prefix);
        return text;
    };
    TestScene scene(InScene("<IFile ID=\"f\" Label=\"\">" + set("f") + "</IFile><IAssembly ID=\"a\" Label=\"\">" +
                            set("a") + "</IAssembly><IPart ID=\"p\" Label=\"\">" + set("p") + "</IPart>"));
    scene.Begin();
    EXPECT_THAT(Ids(scene.Get<IFile>("f").TextureSet()), ElementsAre("fz", "fa"));
    EXPECT_THAT(Ids(scene.Get<IAssembly>("a").TextureSet()), ElementsAre("az", "aa"));
    EXPECT_THAT(Ids(scene.Get<IPart>("p").TextureSet()), ElementsAre("pz", "pa"));
    EXPECT_FALSE(scene.Has("fno"));
}

TEST(TextureSet, ATextureWithoutLabelTakesTheOneBeforeIt)
{
    TestScene scene(InTextureSet(R"(<IMaterialTexture ID="a"/><IMaterialTexture ID="b" Label="wood"/>
                                    <IMaterialTexture ID="c"/>)"));
    scene.Begin();
    EXPECT_EQ(Text(scene.Get<T>("a").Label()), "");
    EXPECT_EQ(Text(scene.Get<T>("b").Label()), "wood");
    EXPECT_EQ(Text(scene.Get<T>("c").Label()), "wood");
}

TEST(TextureSet, ATextureWithoutIdHasTheEmptyIdAndIsListed)
{
    TestScene scene(InTextureSet("<IMaterialTexture ID=\"a\"/><IMaterialTexture/>"));
    scene.Begin();
    EXPECT_THAT(Ids(scene.Get<IFile>("f").TextureSet()), ElementsAre("a", ""));
    EXPECT_TRUE(scene.Has(""));
}

TEST(TextureSet, OfTwoTexturesWithOneIdTheFirstIsAnswered)
{
    TestScene scene(
        InTextureSet(R"(<IMaterialTexture ID="t" TextureType="1"/><IMaterialTexture ID="t" TextureType="2"/>)"));
    scene.Begin();
    EXPECT_THAT(Ids(scene.Get<IFile>("f").TextureSet()), ElementsAre("t"));
    EXPECT_EQ(AnswerOf(scene.Get<T>("t"), &T::TextureType), 1);
}

TEST(TextureSet, IdsAreMapped)
{
    TestScene scene(InTextureSet("<IMaterialTexture ID=\"t\"/><IMaterialTexture ID=\"u\"/>"));
    scene.WithPrefix("P").Begin();
    EXPECT_THAT(Ids(scene.Get<IFile>("P1").TextureSet()), ElementsAre("P2", "P3"));
    EXPECT_TRUE(scene.Has("P2"));
    EXPECT_FALSE(scene.Has("t"));
}

}  // namespace

}  // namespace KVR::Test
