#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifdef KVR_HAS_MESHOPTIMIZER
#include <meshoptimizer.h>
#endif

#include <cmath>

#include "tests/exchange/ExportScene.h"
#include "tests/exchange/MeshFiles.h"

// glTF files as plain meshes.
namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

MeshModel Read(GlbBuilder const& builder)
{
    return ReadMeshBytes("m.glb", builder.Bytes());
}

// A file of one square that a node at the root shows.
GlbBuilder OneSquare()
{
    GlbBuilder builder;
    builder.json["meshes"] = {{{"name", "square"}, {"primitives", {builder.Square()}}}};
    builder.json["nodes"] = {{{"name", "here"}, {"mesh", 0}}};
    builder.json["scenes"] = {{{"nodes", {0}}}};
    return builder;
}

json& Primitive(GlbBuilder& builder)
{
    return builder.json["meshes"][0]["primitives"][0];
}

double Linear(double srgb)
{
    return srgb <= 0.04045 ? srgb / 12.92 : std::pow((srgb + 0.055) / 1.055, 2.4);
}

}  // namespace

TEST(GltfReader, AMeshAtTheRootIsAPartThatTheSceneTurnsUp)
{
    MeshModel const model = Read(OneSquare());
    EXPECT_EQ(model.unit, kUnitType_Meter);
    EXPECT_TRUE(model.isUnitStated);
    ASSERT_THAT(model.components, SizeIs(2));
    EXPECT_EQ(model.components[0].name, "m");
    EXPECT_EQ(model.components[1].name, "square");
    MeshModel::Placement const& placement = model.components[0].placements.at(0);
    EXPECT_EQ(placement.name, "here");
    // y points up in the file: what it says of y is of z here.
    EXPECT_EQ(placement.transform.Element(2, 1), 1.0);
    EXPECT_EQ(placement.transform.Element(1, 2), -1.0);
    EXPECT_EQ(placement.transform.Element(1, 1), 0.0);
    EXPECT_THAT(model.meshes.at(0).points, ElementsAre(0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0));
    // Normals are made.
    EXPECT_THAT(model.meshes[0].normals, ElementsAre(0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1));
}

TEST(GltfReader, ARootThatTurnsTheModelUpTurnsItBack)
{
    GlbBuilder builder = OneSquare();
    builder.json["nodes"].push_back(
        {{"name", "upright"}, {"rotation", {-std::sqrt(0.5), 0, 0, std::sqrt(0.5)}}, {"children", {0}}});
    builder.json["scenes"][0]["nodes"] = {1};
    MeshModel const model = Read(builder);
    ASSERT_THAT(model.components, SizeIs(2)) << "the root is the assembly";
    EXPECT_EQ(model.components[0].name, "upright");
    EXPECT_TRUE(model.components[0].placements.at(0).transform.IsIdentity());
}

TEST(GltfReader, NodesPlaceAssembliesAndShareParts)
{
    GlbBuilder builder = OneSquare();
    builder.json["nodes"] = {
        {{"name", "left"}, {"mesh", 0}, {"translation", {1, 2, 3}}, {"extras", {{"mass", 2.5}}}},
        {{"name", "r\xC3\xA9seau"}, {"mesh", 0}, {"scale", {2, 2, 2}}},
        {{"name", "both"}, {"children", {0, 1}}, {"mesh", 0}},
        {{"name", "hidden"}, {"mesh", 0}, {"extensions", {{"KHR_node_visibility", {{"visible", false}}}}}}};
    builder.json["scenes"] = {{{"name", "shown"}, {"nodes", {2, 3}}}};
    MeshModel const model = Read(builder);
    ASSERT_THAT(model.components, SizeIs(3));
    EXPECT_EQ(model.components[0].name, "shown");
    MeshModel::Component const& both = model.components[1];
    EXPECT_EQ(both.name, "both");
    ASSERT_THAT(both.placements, SizeIs(3));
    EXPECT_EQ(both.placements[2].name, "r\xC3\xA9seau");
    EXPECT_EQ(both.placements[1].transform.Element(2, 3), 3.0);
    EXPECT_EQ(both.placements[2].transform.Element(1, 1), 2.0);
    EXPECT_THAT(both.placements[1].properties, SizeIs(1));
    for (MeshModel::Placement const& placement : both.placements)
        EXPECT_EQ(placement.component, 2u);
    EXPECT_FALSE(model.components[0].placements[1].isVisible);
    EXPECT_THAT(model.meshes, SizeIs(1));
}

TEST(GltfReader, MaterialsKeepColourAlphaModeSidesAndTexturesWithSamplers)
{
    GlbBuilder builder = OneSquare();
    Primitive(builder)["attributes"]["TEXCOORD_0"] =
        builder.Accessor(std::vector<float>{0, 0, 1, 0, 1, 1, 0, 1}, kFloats, "VEC2", 2);
    Primitive(builder)["material"] = 0;
    int const image = builder.View("\x89PNG and so on");
    json const texture = {{"index", 0}, {"extensions", {{"KHR_texture_transform", {{"offset", {0.5, 0.0}}}}}}};
    builder.json["materials"] = {
        {{"name", "leaf"},
         {"alphaMode", "MASK"},
         {"alphaCutoff", 0.25},
         {"doubleSided", true},
         {"extensions", {{"KHR_materials_unlit", json::object()}, {"KHR_materials_clearcoat", json::object()}}},
         {"occlusionTexture", texture},
         {"pbrMetallicRoughness",
          {{"baseColorFactor", {Linear(0.5), 0.0, 1.0, 0.5}},
           {"roughnessFactor", 0.5},
           {"baseColorTexture", texture}}}}};
    builder.json["textures"] = {{{"source", 0}, {"sampler", 0}}};
    builder.json["samplers"] = {{{"wrapS", 33071}, {"magFilter", 9728}}};
    builder.json["images"] = {{{"bufferView", image}, {"mimeType", "image/png"}, {"name", "leaf picture"}}};
    MeshModel const model = Read(builder);
    ASSERT_THAT(model.materials, SizeIs(1));
    MeshModel::Material const& material = model.materials[0];
    EXPECT_EQ(material.name, "leaf");
    EXPECT_NEAR((*material.color)[0], 0.5, 1e-12);
    EXPECT_EQ((*material.color)[3], 0.5);
    EXPECT_EQ(*material.metallicRoughness, (std::pair{1.0, 0.5}));
    EXPECT_EQ(json::parse(material.details),
              json({{"alphaMode", "MASK"}, {"alphaCutoff", 0.25}, {"doubleSided", true}, {"unlit", true}}));
    ASSERT_THAT(model.textures, SizeIs(1));
    EXPECT_EQ(json::parse(model.textures[0].sampler), json({{"wrapS", 33071}, {"magFilter", 9728}}));
    EXPECT_EQ(model.textures[0].offset, (std::pair{0.5, 0.0}));
    EXPECT_EQ(model.images.at(0).bytes, "\x89PNG and so on");
    EXPECT_EQ(model.meshes[0].texture.size(), 8u);
    EXPECT_EQ(model.losses.Kinds().at("textures of roughness, emission and occlusion").count, 1u);
    EXPECT_THAT(model.losses.Kinds().at("extensions of materials").items,
                ElementsAre("KHR_materials_clearcoat of materials 0 \"leaf\""));
    // Without a mode that says so, alpha has no meaning.
    builder.json["materials"][0].erase("alphaMode");
    EXPECT_EQ((*Read(builder).materials[0].color)[3], 1.0);
}

TEST(GltfReader, ColoursOfPointsMultiplyTheMaterialsAndAreLinear)
{
    GlbBuilder builder = OneSquare();
    Primitive(builder)["material"] = 0;
    builder.json["materials"] = {{{"pbrMetallicRoughness", {{"baseColorFactor", {1.0, 0.0, 1.0, 1.0}}}}}};
    float const half = static_cast<float>(Linear(0.5));
    Primitive(builder)["attributes"]["COLOR_0"] =
        builder.Accessor(std::vector<float>{half, 1, 1, half, 1, 1, half, 1, 1, half, 1, 1}, kFloats, "VEC3", 3);
    MeshModel const model = Read(builder);
    ASSERT_THAT(model.materials, SizeIs(2));
    EXPECT_NEAR((*model.materials[1].color)[0], 0.5, 1.0 / 255);
    EXPECT_EQ((*model.materials[1].color)[1], 0.0);
    EXPECT_THAT(model.meshes.at(0).materials, ElementsAre(1, 1));
    // White says nothing.
    Primitive(builder)["attributes"]["COLOR_0"] =
        builder.Accessor(std::vector<std::uint8_t>(16, 255), kBytes, "VEC4", 4, true);
    EXPECT_THAT(Read(builder).materials, SizeIs(1));
}

TEST(GltfReader, CamerasStandWhereTheirNodesAreTurnedUp)
{
    GlbBuilder builder = OneSquare();
    builder.json["cameras"] = {
        {{"type", "perspective"}, {"perspective", {{"yfov", 0.5}, {"znear", 0.1}, {"zfar", 9.0}}}},
        {{"type", "orthographic"},
         {"name", "flat"},
         {"orthographic", {{"xmag", 2.0}, {"ymag", 1.0}, {"znear", 0.0}, {"zfar", 1.0}}}}};
    builder.json["nodes"].push_back({{"name", "eye"}, {"camera", 0}, {"translation", {1, 2, 3}}});
    builder.json["nodes"].push_back({{"camera", 1}});
    builder.json["scenes"][0]["nodes"] = {0, 1, 2};
    MeshModel const model = Read(builder);
    ASSERT_THAT(model.cameras, SizeIs(2));
    EXPECT_EQ(model.cameras[0].name, "eye");
    EXPECT_THAT(model.cameras[0].position, ElementsAre(1, -3, 2));
    EXPECT_THAT(model.cameras[0].direction, ElementsAre(0, 1, 0));
    EXPECT_THAT(model.cameras[0].up, ElementsAre(0, 0, 1));
    EXPECT_EQ(model.cameras[0].viewAngle, 0.5);
    EXPECT_EQ(model.cameras[1].name, "flat");
    EXPECT_FALSE(model.cameras[1].isPerspective);
    EXPECT_EQ(model.cameras[1].windowHeight, 2.0);
    EXPECT_EQ(model.cameras[1].aspectRatio, 2.0);
    EXPECT_THAT(model.components[0].placements, SizeIs(1)) << "the nodes of cameras place nothing else";
}

TEST(GltfReader, StripsFansLinesAndPointsComeAlong)
{
    GlbBuilder builder = OneSquare();
    json& primitives = builder.json["meshes"][0]["primitives"];
    json bare = Primitive(builder);
    bare.erase("indices");
    for (int const mode : {0, 1, 2, 3, 5, 6})
    {
        primitives.push_back(bare);
        primitives.back()["mode"] = mode;
    }
    MeshModel const model = Read(builder);
    EXPECT_EQ(model.meshes.at(0).TriangleCount(), 6u);
    EXPECT_THAT(model.meshes[0].pieces, ElementsAre(0, 2, 4));
    std::size_t lines = 0;
    std::size_t dots = 0;
    for (MeshModel::Mesh const& mesh : model.meshes)
    {
        lines += mesh.lines.size();
        dots += mesh.dots.size();
    }
    EXPECT_EQ(lines, 4u);
    EXPECT_EQ(dots, 4u);
}

TEST(GltfReader, WholeNumbersThatStandForFractionsAndSparseOnesAreUnderstood)
{
    GlbBuilder builder = OneSquare();
    Primitive(builder)["attributes"]["POSITION"] = builder.Accessor(
        std::vector<std::uint8_t>{0, 0, 0, 0, 255, 0, 0, 0, 255, 51, 0, 0, 0, 255, 0, 0}, kBytes, "VEC3", 4, true);
    builder.json["bufferViews"].back()["byteStride"] = 4;
    MeshModel const model = Read(builder);
    EXPECT_THAT(model.meshes.at(0).points, ElementsAre(0, 0, 0, 1, 0, 0, 1, 0.2, 0, 0, 1, 0));
    int const indices = builder.View(BytesOf(std::uint16_t{1}));
    int const values = builder.View(BytesOf(std::array<float, 3>{7, 8, 9}));
    Primitive(builder) = builder.Square();
    builder.json["accessors"][Primitive(builder)["attributes"]["POSITION"].get<std::size_t>()]["sparse"] = {
        {"count", 1},
        {"indices", {{"bufferView", indices}, {"componentType", kShorts}}},
        {"values", {{"bufferView", values}}}};
    EXPECT_THAT(Read(builder).meshes.at(0).points, ElementsAre(0, 0, 0, 7, 8, 9, 1, 1, 0, 0, 1, 0));
}

TEST(GltfReader, TheTextFormFindsItsFilesAndReadsData)
{
    GlbBuilder builder = OneSquare();
    json document = builder.json;
    document["buffers"] = {{{"uri", "my%20data.bin"}, {"byteLength", builder.buffer.size()}}};
    EXPECT_EQ(ReadMeshBytes("m.gltf", document.dump(), {}, {{"my data.bin", builder.buffer}}).meshes.at(0).PointCount(),
              4u);
    EXPECT_EQ(FailureOf("m.gltf", document.dump()), "buffer 0 is not there: \"my%20data.bin\"");
    document["buffers"][0] = {{"uri",
                               "data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAACAPwAAgD8AAAAA"
                               "AAAAAAAAgD8AAAAAAAABAAIAAAACAAMA"},
                              {"byteLength", builder.buffer.size()}};
    EXPECT_THAT(ReadMeshBytes("m.gltf", document.dump()).meshes.at(0).points,
                ElementsAre(0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0));
}

TEST(GltfReader, WhatHasNoPlaceIsCounted)
{
    GlbBuilder builder = OneSquare();
    builder.json["animations"] = {json::object()};
    builder.json["skins"] = {json::object(), json::object()};
    builder.json["nodes"].push_back({{"name", "nowhere"}});
    Primitive(builder)["targets"] = {json::object()};
    Primitive(builder)["attributes"]["TANGENT"] = 0;
    auto const kinds = Read(builder).losses.Kinds();
    EXPECT_EQ(kinds.at("animations").count, 1u);
    EXPECT_EQ(kinds.at("skins").count, 2u);
    EXPECT_EQ(kinds.at("nodes outside of the scene").count, 1u);
    EXPECT_EQ(kinds.at("morph targets").count, 1u);
    EXPECT_THAT(kinds.at("attributes of primitives").items, ElementsAre("TANGENT"));
}

TEST(GltfReader, NodesInCirclesAndOfManyLevelsEnd)
{
    GlbBuilder builder = OneSquare();
    builder.json["nodes"][0]["children"] = {0};
    EXPECT_EQ(FailureOf("m.glb", builder.Bytes()), "node 0 stands in two places, or in itself");
    for (int i = 1; i < 3000; ++i)
    {
        builder.json["nodes"][static_cast<std::size_t>(i) - 1]["children"] = {i};
        builder.json["nodes"].push_back({{"mesh", 0}});
    }
    EXPECT_THAT(Read(builder).losses.Kinds().at("nodes more than 1,000 levels deep").count, 1u);
}

TEST(GltfReader, AnExportComesBackWithItsPartsAndTheirNames)
{
    TempFolder const folder;
    std::string const example = std::string(KVR_EXAMPLES_DIR) + "/as1-oc-214/as1-oc-214.xml";
    std::string const glb = folder.NarrowPathOf("out.glb");
    ASSERT_EQ(RunTool({"export", example, glb}).status, 0);
    MeshModel const model = ReadMeshes(glb, ModelFormat::kGltf, {});
    std::vector<std::string> parts;
    for (MeshModel::Component const& component : model.components)
        if (!component.isAssembly)
            parts.push_back(component.name);
    EXPECT_THAT(parts, testing::UnorderedElementsAre("plate", "nut", "bolt", "l-bracket", "rod"));
}

#ifdef KVR_HAS_MESHOPTIMIZER

namespace
{

constexpr char kCompression[] = "EXT_meshopt_compression";

// Puts a view's place into a buffer that is not there, with what stands for it in the first one.
void Compress(GlbBuilder& builder, int index, std::string const& packed, json const& claims)
{
    json& view = builder.json["bufferViews"][static_cast<std::size_t>(index)];
    json extension = claims;
    extension["buffer"] = 0;
    extension["byteOffset"] = builder.buffer.size();
    extension["byteLength"] = packed.size();
    builder.buffer += packed;
    view["buffer"] = 1;
    view["byteOffset"] = 0;
    view["extensions"][kCompression] = extension;
    builder.json["extensionsRequired"] = {kCompression};
}

// A triangle whose indices, points and normals are compressed, the latter ones quantized.
GlbBuilder CompressedTriangle()
{
    GlbBuilder builder;
    std::vector<std::uint16_t> const indices{0, 1, 2};
    // Three numbers and one that fills a word up.
    std::vector<std::int16_t> const points{0, 0, 0, 0, 200, 0, 0, 0, 0, 100, 0, 0};
    // Upward: x and y of a picture of the sphere on an octahedron, and what stands for one.
    std::vector<std::int8_t> const normals{0, 0, 127, 0, 0, 0, 127, 0, 0, 0, 127, 0};
    int const indexAccessor = builder.Accessor(indices, kShorts, "SCALAR", 1);
    int const pointAccessor = builder.Accessor(points, 5122, "VEC3", 4);
    int const normalAccessor = builder.Accessor(normals, 5120, "VEC3", 4, true);
    auto const viewOf = [&](int accessor)
    { return builder.json["accessors"][static_cast<std::size_t>(accessor)]["bufferView"].get<int>(); };
    builder.json["bufferViews"][static_cast<std::size_t>(viewOf(pointAccessor))]["byteStride"] = 8;
    builder.json["bufferViews"][static_cast<std::size_t>(viewOf(normalAccessor))]["byteStride"] = 4;
    builder.json["meshes"] = {
        {{"primitives",
          {{{"attributes", {{"POSITION", pointAccessor}, {"NORMAL", normalAccessor}}}, {"indices", indexAccessor}}}}}};
    builder.json["nodes"] = {{{"mesh", 0}, {"scale", {0.01, 0.01, 0.01}}}};
    builder.json["scenes"] = {{{"nodes", {0}}}};
    auto const packed = [](auto encode, std::size_t bound)
    {
        std::string bytes(bound, '\0');
        bytes.resize(encode(reinterpret_cast<unsigned char*>(bytes.data()), bytes.size()));
        return bytes;
    };
    meshopt_encodeIndexVersion(1);
    meshopt_encodeVertexVersion(0);
    std::vector<unsigned> const wide(indices.begin(), indices.end());
    Compress(builder, viewOf(indexAccessor),
             packed([&](unsigned char* to, std::size_t size)
                    { return meshopt_encodeIndexBuffer(to, size, wide.data(), wide.size()); },
                    meshopt_encodeIndexBufferBound(3, 3)),
             {{"mode", "TRIANGLES"}, {"byteStride", 2}, {"count", 3}});
    Compress(builder, viewOf(pointAccessor),
             packed([&](unsigned char* to, std::size_t size)
                    { return meshopt_encodeVertexBuffer(to, size, points.data(), 3, 8); },
                    meshopt_encodeVertexBufferBound(3, 8)),
             {{"mode", "ATTRIBUTES"}, {"byteStride", 8}, {"count", 3}});
    Compress(builder, viewOf(normalAccessor),
             packed([&](unsigned char* to, std::size_t size)
                    { return meshopt_encodeVertexBuffer(to, size, normals.data(), 3, 4); },
                    meshopt_encodeVertexBufferBound(3, 4)),
             {{"mode", "ATTRIBUTES"}, {"byteStride", 4}, {"count", 3}, {"filter", "OCTAHEDRAL"}});
    builder.json["buffers"] = {{{"byteLength", builder.buffer.size()}},
                               {{"byteLength", 1000}, {"extensions", {{kCompression, {{"fallback", true}}}}}}};
    return builder;
}

json& ClaimsOf(GlbBuilder& builder, std::size_t view)
{
    return builder.json["bufferViews"][view]["extensions"][kCompression];
}

}  // namespace

TEST(GltfReader, CompressedAndQuantizedMeshesAreUnpacked)
{
    GlbBuilder builder = CompressedTriangle();
    builder.json["extensionsRequired"].push_back("KHR_mesh_quantization");
    MeshModel const model = Read(builder);
    EXPECT_THAT(model.meshes.at(0).points, ElementsAre(0, 0, 0, 200, 0, 0, 0, 100, 0));
    EXPECT_THAT(model.meshes[0].normals, ElementsAre(0, 0, 1, 0, 0, 1, 0, 0, 1));
    EXPECT_THAT(model.meshes[0].corners, ElementsAre(0, 1, 2));
    EXPECT_THAT(model.losses.Kinds(), IsEmpty());
}

TEST(GltfReader, ClaimsOfCompressedViewsAreHeldAgainstTheirBytes)
{
    std::vector<std::pair<json, char const*>> const rows = {
        {{{"count", 1000000000}}, "compressed bytes cannot hold"},
        {{{"count", 6}}, "are compressed"},
        {{{"byteStride", 3}}, "in a way that makes no sense"},
        {{{"byteStride", 512}}, "in a way that makes no sense"},
        {{{"mode", "OTHER"}}, "in a way that makes no sense"},
        {{{"filter", "OTHER"}}, "in a way that makes no sense"},
        {{{"filter", "QUATERNION"}, {"byteStride", 4}}, "in a way that makes no sense"},
        {{{"byteOffset", 1}}, "bytes are damaged"},
        {{{"byteLength", 1000000}}, "reaches beyond its buffer"},
        {{{"buffer", 7}}, "is in no buffer"}};
    for (auto const& [change, expected] : rows)
    {
        GlbBuilder builder = CompressedTriangle();
        ClaimsOf(builder, 1).update(change);
        EXPECT_THAT(FailureOf("m.glb", builder.Bytes()), testing::HasSubstr(expected)) << change;
    }
    GlbBuilder builder = CompressedTriangle();
    ClaimsOf(builder, 0)["count"] = 100000002;
    EXPECT_THAT(FailureOf("m.glb", builder.Bytes()), testing::HasSubstr("compressed bytes cannot hold"));
    // Many views of the same bytes are no more than these can hold.
    builder = CompressedTriangle();
    for (int i = 0; i < 4000; ++i)
        builder.json["bufferViews"].push_back(builder.json["bufferViews"][1]);
    EXPECT_THAT(FailureOf("m.glb", builder.Bytes()), testing::HasSubstr("announce more than its bytes can hold"));
}

TEST(GltfReader, EveryPrefixOfACompressedFileIsReadOrRefused)
{
    std::string const bytes = CompressedTriangle().Bytes();
    for (std::size_t size = 0; size < bytes.size(); size += 7)
        EXPECT_FALSE(FailureOf("m.glb", std::string_view(bytes).substr(0, size)).empty());
}

#endif

}  // namespace KVR::Test
