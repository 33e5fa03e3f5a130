#include "exchange/DrawPicture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/exchange/ExportScene.h"
#include "tests/exchange/PngFile.h"

// What "kvr picture" draws, by its pixels.
namespace KVR::Test
{

namespace
{

using testing::HasSubstr;
using Pixel = std::array<int, 3>;

std::string Style(std::string const& id, char const* red, char const* green, char const* alpha = "1")
{
    return "<IRenderStyle ID=\"" + id + "\"><DiffuseColor FractionRed=\"" + red + "\" FractionGreen=\"" + green +
           "\" FractionBlue=\"0\" FractionAlpha=\"" + alpha + "\"/></IRenderStyle>";
}

std::string Member(std::string const& path, bool isVisible, std::string const& more = {})
{
    return "<ViewMemberChild><OccurrencePath Path=\"" + path + "\"/><EntityVisibility Visibility=\"" +
           (isVisible ? "1" : "0") + "\"/>" + more + "</ViewMemberChild>";
}

// Two squares of 10 by 10 from (0, 0) on, red, and from (20, 0) on, green; and a camera above, which sees from -5 to 35
// across and from -10 to 20 upwards.
std::string Squares()
{
    std::string const declared =
        "<StyleSet>" + Style("red", "1", "0") + Style("green", "0", "1") + Style("glass", "0", "1", "0.5") +
        R"(</StyleSet><CameraSet><ICamera ID="eye" Type="kCameraType_Parallel" ViewWindowHeightForParallelCamera="30">
<Unit LengthUnit="kUnitType_Millimeter"/><CameraPosition X="15" Y="5" Z="50"/><CameraDirection X="0" Y="0" Z="-1"/>
<CameraUpDirection X="0" Y="1" Z="0"/></ICamera></CameraSet><ViewSet>
<IView ID="v1" Label="All"><CameraSet><CameraRef ID="eye"/></CameraSet></IView>
<IView ID="v2" Label="Moved"><Unit LengthUnit="kUnitType_Centimeter"/><ViewMember>)" +
        Member("[left]", false) +
        Member("[right]", true,
               R"(<Styles><StyleRef ID="red"/></Styles><Transform>1 0 0 2 0 1 0 0.5 0 0 1 0 0 0 0 1</Transform>)") +
        R"(</ViewMember><CameraSet><CameraRef ID="eye"/></CameraSet></IView>
<IView ID="v3" Label="Glass"><ViewMember>)" +
        Member("[right]", true,
               R"(<Styles><StyleRef ID="glass"/></Styles><Transform>1 0 0 0 0 1 0 0 0 0 1 1 0 0 0 1</Transform>)") +
        R"(</ViewMember><CameraSet><CameraRef ID="eye"/></CameraSet></IView></ViewSet>)";
    auto const styled = [](char const* id) { return "<Styles><StyleRef ID=\"" + std::string(id) + "\"/></Styles>"; };
    return UnderTop(Instance("left", "p", "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1", styled("red")) +
                        Instance("right", "p", "1 0 0 20 0 1 0 0 0 0 1 0 0 0 0 1", styled("green")),
                    {}, declared) +
           PartOfMesh();
}

// The scene of the squares and pictures of it.
class PictureScene
{
public:
    PictureScene()
    {
        m_scene.Mesh("m", {0, 0, 0, 10, 0, 0, 10, 10, 0, 0, 10, 0}, {{0, 1, 2, 3}});
        EXPECT_EQ(m_scene.Export(Squares(), "a.glb").status, 0);
    }

    ToolRun Draw(std::vector<std::string> const& options)
    {
        std::vector<std::string> arguments{"picture", m_scene.PathOf("scene.xml"), Path()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return RunTool(arguments);
    }

    PngFile Picture(std::vector<std::string> const& options)
    {
        ToolRun const run = Draw(options);
        EXPECT_EQ(run.status, 0) << run.error;
        return PngFile(Path());
    }

    std::string Path() const { return m_scene.PathOf("a.png"); }
    std::string PathOf(std::string const& name) const { return m_scene.PathOf(name); }

private:
    ExportScene m_scene;
};

bool IsRed(Pixel const& pixel)
{
    return pixel[0] > 100 && pixel[1] < 40 && pixel[2] < 40;
}

bool IsGreen(Pixel const& pixel)
{
    return pixel[1] > 100 && pixel[0] < 40 && pixel[2] < 40;
}

// Places of the picture that the camera sees, which is 40 by 30.
constexpr double kLeft = (5.0 + 5.0) / 40.0;
constexpr double kRight = (25.0 + 5.0) / 40.0;
constexpr double kMiddle = 0.5;

}  // namespace

TEST(DrawPicture, AViewIsSeenAsItsCameraSeesIt)
{
    PngFile const picture = PictureScene().Picture({"--view", "All", "--size", "400x300", "--background", "#2040ff"});
    EXPECT_EQ(picture.width, 400U);
    EXPECT_EQ(picture.height, 300U);
    EXPECT_TRUE(IsRed(picture.At(kLeft, kMiddle)));
    EXPECT_TRUE(IsGreen(picture.At(kRight, kMiddle)));
    Pixel const background{0x20, 0x40, 0xff};
    EXPECT_EQ(picture.At(kMiddle, kMiddle), background);
    EXPECT_EQ(picture.At(kLeft, 0.1), background);
    // The edges of the squares: 10 of 30 high, from a third on.
    EXPECT_TRUE(IsRed(picture.At(kLeft, 0.35)));
    EXPECT_EQ(picture.At(kLeft, 0.32), background);
}

TEST(DrawPicture, AViewHidesMovesAndPaintsItsMembers)
{
    PngFile const picture = PictureScene().Picture({"--view", "v2", "--size", "400x300"});
    Pixel const white{255, 255, 255};
    EXPECT_EQ(picture.At(kLeft, kMiddle), white);
    // It went up by 5.
    EXPECT_TRUE(IsRed(picture.At(kRight, 0.47)));
    EXPECT_TRUE(IsRed(picture.At(kRight, 0.2)));
    EXPECT_EQ(picture.At(kRight, 0.6), white);
}

TEST(DrawPicture, WhatIsBehindGlassIsSeen)
{
    Pixel const pixel = PictureScene().Picture({"--view", "Glass", "--size", "200x150"}).At(kLeft, kMiddle);
    EXPECT_NEAR(pixel[0], 128, 3);
    EXPECT_NEAR(pixel[1], 128, 3);
    EXPECT_LT(pixel[2], 40);
}

TEST(DrawPicture, WithoutAViewEverythingIsSeenWithTheAxisUp)
{
    PictureScene scene;
    auto const coloured = [](PngFile const& picture)
    {
        std::size_t count = 0;
        for (double x = 0.005; x < 1.0; x += 0.01)
            for (double y = 0.005; y < 1.0; y += 0.01)
                count += picture.At(x, y) != Pixel{255, 255, 255} ? 1 : 0;
        return count;
    };
    PngFile const flat = scene.Picture({"--size", "320x240"});
    EXPECT_GT(coloured(flat), 500U);
    // The squares lie flat, and stand when y is up.
    EXPECT_GT(coloured(scene.Picture({"--size", "320x240", "--up", "y"})), coloured(flat));
}

TEST(DrawPicture, WhatCannotBeDrawnLeavesNothing)
{
    PictureScene scene;
    ToolRun const view = scene.Draw({"--view", "Movd"});
    EXPECT_EQ(view.status, 1);
    EXPECT_THAT(view.error, HasSubstr("nothing in it has the name \"Movd\", the nearest are \"Moved\""));
    for (std::vector<std::string> const& options : {std::vector<std::string>{"--size", "0x100"},
                                                    {"--size", "100"},
                                                    {"--size", "100x9000"},
                                                    {"--background", "red"},
                                                    {"--background", "#12345g"}})
        EXPECT_EQ(scene.Draw(options).status, 2) << options[1];
    EXPECT_FALSE(std::filesystem::exists(scene.Path()));
    EXPECT_EQ(RunTool({"picture", scene.PathOf("scene.xml"), scene.PathOf("a.jpg")}).status, 2);
    EXPECT_EQ(DrawPicture(scene.PathOf("none.xml"), scene.Path()).outcome, Outcome::kFailed);
    PictureOptions huge;
    huge.width = kLargestPicture + 1;
    EXPECT_THAT(DrawPicture(scene.PathOf("scene.xml"), scene.Path(), huge).failure, HasSubstr("8192 pixels"));
}

}  // namespace KVR::Test
