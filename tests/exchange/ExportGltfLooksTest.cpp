#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "exchange/conventions/GltfDetails.h"
#include "tests/exchange/ExportScene.h"
#include "tests/exchange/GltfFile.h"

// Materials of glTF beyond their colours.
namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// A picture of four pixels.
constexpr unsigned char kPng[] = {
    0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00, 0x00,
    0x02, 0x00, 0x00, 0x00, 0x02, 0x08, 0x02, 0x00, 0x00, 0x00, 0xfd, 0xd4, 0x9a, 0x73, 0x00, 0x00, 0x00, 0x12, 0x49,
    0x44, 0x41, 0x54, 0x78, 0xda, 0x63, 0xf8, 0xcf, 0xc0, 0xc0, 0x00, 0xc2, 0x0c, 0xff, 0x81, 0x00, 0x00, 0x1f, 0xee,
    0x05, 0xfb, 0xf1, 0xab, 0xba, 0x77, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};

std::string Png()
{
    return {reinterpret_cast<char const*>(kPng), sizeof kPng};
}

std::string BytesOf(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A mesh of one triangle with a texture, "m", and one without, "bare".
struct TextureScene : ExportScene
{
    TextureScene()
    {
        Triangle("bare");
        Authoring::MeshHead head;
        head.vertexCount = 3;
        head.polygonCount = 1;
        head.textureSetCount = 1;
        Store().BeginMesh(UTF8String("m"), head);
        Store().Vertices(std::vector<double>{0, 0, 0, 1, 0, 0, 0, 1, 0});
        Store().TextureSet(2, std::vector<double>{0, 0, 1, 0, 0, 1});
        std::vector<std::uint64_t> const corners{0, 1, 2};
        std::vector<Authoring::TextureReference> const places{{0, 0}, {0, 1}, {0, 2}};
        Authoring::PolygonRecord polygon;
        polygon.vertices = corners;
        polygon.textures = places;
        Store().Polygon(polygon);
        Store().EndMesh();
    }

    ToolRun Run(std::string const& styleContent, std::string const& textures, std::string const& name = "out.glb")
    {
        std::string const style = R"(<StyleSet><IRenderStyle ID="s" Label="S">)" + styleContent +
                                  "</IRenderStyle></StyleSet><TextureSet>" + textures + "</TextureSet>";
        return Export(UnderTop(Instance("i", "p"), "", style) +
                          R"(<IPart ID="p" Label="Part"><Styles><StyleRef ID="s"/></Styles><ChildSet>
<IPolygonMesh ID="m" Label="Mesh" Visibility="1"/><IPolygonMesh ID="bare" Label="Bare" Visibility="1"/></ChildSet></IPart>)",
                      name);
    }
};

constexpr char kTextured[] = R"(<DiffuseTexture TextureId="t"/><BumpMap TextureId="r"/>)";
constexpr char kTextures[] = R"(<IMaterialTexture ID="t" Label="Wood" TextureFileReference="pictures/wood.png">
<ExtensionData TypeId="gltf.sampler" Content='{"wrapS":33071,"magFilter":9728,"minFilter":5}'/></IMaterialTexture>
<IMaterialTexture ID="r" Label="Grain" TextureFileReference="C:\old\grain.png"/>)";

// The image that a texture of a document has.
std::string ImageOf(json const& document, std::string const& file, json const& texture)
{
    json const& image =
        document["images"][document["textures"][texture["index"].get<std::size_t>()]["source"].get<std::size_t>()];
    EXPECT_EQ(image["mimeType"], "image/png");
    json const& view = document["bufferViews"][image["bufferView"].get<std::size_t>()];
    std::string const bytes = BytesOf(file);
    std::size_t const start = bytes.find(std::string("BIN\0", 4)) + 4;
    return bytes.substr(start + view.value("byteOffset", std::size_t{0}), view["byteLength"].get<std::size_t>());
}

}  // namespace

TEST(ExportGltfLooksTest, TexturesOfColourAndReliefAreEmbeddedWithTheirSampler)
{
    TextureScene scene;
    std::filesystem::create_directory(scene.PathOf("pictures"));
    std::ofstream(scene.PathOf("pictures/wood.png"), std::ios::binary) << Png();
    // On another system it was elsewhere; here it is beside the scene.
    std::ofstream(scene.PathOf("grain.png"), std::ios::binary) << Png() << "more";
    ToolRun const run = scene.Run(kTextured, kTextures);
    ASSERT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(run.error, IsEmpty());
    GltfFile const file(scene.PathOf("out.glb"));
    json const material = file.At("/Mesh").material;
    json const wood = material["pbrMetallicRoughness"]["baseColorTexture"];
    EXPECT_EQ(ImageOf(file.document, scene.PathOf("out.glb"), wood), Png());
    EXPECT_EQ(ImageOf(file.document, scene.PathOf("out.glb"), material["normalTexture"]), Png() + "more");
    json const texture = file.document["textures"][wood["index"].get<std::size_t>()];
    EXPECT_EQ(texture["name"], "Wood");
    json const sampler = file.document["samplers"][texture["sampler"].get<std::size_t>()];
    EXPECT_EQ(sampler["wrapS"], 33071);
    EXPECT_EQ(sampler["magFilter"], 9728);
    // No filter of glTF.
    EXPECT_FALSE(sampler.contains("minFilter"));
    // Without places in a texture there is none.
    EXPECT_FALSE(file.At("/Bare").material["pbrMetallicRoughness"].contains("baseColorTexture"));
    EXPECT_EQ(file.At("/Bare").material["name"], "S");
}

TEST(ExportGltfLooksTest, ATextHasItsImagesBesideIt)
{
    TextureScene scene;
    std::ofstream(scene.PathOf("wood.png"), std::ios::binary) << Png();
    ToolRun const run = scene.Run(R"(<DiffuseTexture TextureId="t"/>)", kTextures, "out.gltf");
    ASSERT_EQ(run.status, 0) << run.error;
    GltfFile const file(scene.PathOf("out.gltf"));
    EXPECT_EQ(file.document["images"][0]["uri"], "out.image1.png");
    EXPECT_EQ(BytesOf(scene.PathOf("out.image1.png")), Png());
    EXPECT_THAT(BytesOf(scene.PathOf("out.bin")), Not(HasSubstr("PNG")));
}

TEST(ExportGltfLooksTest, AnImageThatIsNotThereOrIsNoneIsRemarkedOnce)
{
    TextureScene scene;
    std::ofstream(scene.PathOf("wood.png"), std::ios::binary) << "no picture";
    ToolRun const run = scene.Run(kTextured, kTextures);
    ASSERT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(run.error, HasSubstr("the image of a texture, wood.png, is neither PNG nor JPEG\n"));
    EXPECT_THAT(run.error, HasSubstr("the image of a texture, grain.png, is not there\n"));
    GltfFile const file(scene.PathOf("out.glb"));
    EXPECT_FALSE(file.document.contains("textures"));
    EXPECT_EQ(file.document["materials"].size(), 1U);
}

TEST(ExportGltfLooksTest, AlphaModesSidesAndUnlitAreThoseOfTheExtensionData)
{
    TextureScene scene;
    ToolRun const run =
        scene.Run(R"(<DiffuseColor FractionRed="1" FractionGreen="0" FractionBlue="0" FractionAlpha="0.5"/>
<ExtensionData TypeId="gltf.material" Content='{"alphaMode":"MASK","alphaCutoff":0.25,"doubleSided":false,"unlit":true}'/>)",
                  "");
    ASSERT_EQ(run.status, 0) << run.error;
    GltfFile const file(scene.PathOf("out.glb"));
    json const material = file.At("/Bare").material;
    EXPECT_EQ(material["alphaMode"], "MASK");
    EXPECT_EQ(material["alphaCutoff"], 0.25);
    EXPECT_FALSE(material.value("doubleSided", false));
    EXPECT_TRUE(material["extensions"].contains("KHR_materials_unlit"));
    EXPECT_EQ(file.document["extensionsUsed"], json({"KHR_materials_unlit"}));
}

TEST(GltfDetailsTest, WhatIsWrittenIsReadAndWhatMakesNoSenseIsNot)
{
    GltfMaterialDetails material;
    EXPECT_EQ(material.Text(), "");
    material.alphaMode = "BLEND";
    material.alphaCutoff = 0.75;
    material.doubleSided = false;
    material.unlit = true;
    EXPECT_EQ(GltfMaterialDetails::Of(material.Text()).Text(), material.Text());
    EXPECT_EQ(GltfMaterialDetails::Of(R"({"alphaMode":"FOG","alphaCutoff":"x","doubleSided":1,"unlit":null})").Text(),
              "");
    EXPECT_EQ(GltfMaterialDetails::Of("[1").Text(), "");
    GltfSamplerDetails sampler;
    sampler.wrapT = 33648;
    sampler.minFilter = 9987;
    EXPECT_EQ(GltfSamplerDetails::Of(sampler.Text()), sampler);
    EXPECT_EQ(GltfSamplerDetails::Of(R"({"wrapS":1,"wrapT":"a","magFilter":9984,"minFilter":1e300})"),
              GltfSamplerDetails());
}

}  // namespace KVR::Test
