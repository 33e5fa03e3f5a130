#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "tests/exchange/MeshFiles.h"

// Files of meshes that are cut short, count what they do not hold, or name what is not there.
namespace KVR::Test
{

namespace
{

using testing::Contains;
using testing::HasSubstr;

std::string const kPly =
    "ply\nformat ascii 1.0\nelement vertex 4\nproperty float x\nproperty float y\nproperty float z\nelement face 2\n"
    "property list uchar int vertex_indices\nend_header\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n4 0 1 2 3\n3 0 1 2\n";

std::string BinaryPly()
{
    std::string bytes =
        "ply\nformat binary_little_endian 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
        "property float z\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n";
    for (float const x : {0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 1.0f, 1.0f, 0.0f})
        bytes += BytesOf(x);
    bytes += '\3';
    for (int const index : {0, 1, 2})
        bytes += BytesOf(index);
    return bytes;
}

std::string const kObj = "o square\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nvn 0 0 1\nf 1//1 2//1 3//1\nf 1 3 4\n";

std::string Glb()
{
    GlbBuilder builder;
    builder.json["meshes"] = {{{"primitives", {builder.Square()}}}};
    builder.json["nodes"] = {{{"mesh", 0}}};
    builder.json["scenes"] = {{{"nodes", {0}}}};
    return builder.Bytes();
}

std::string Replaced(std::string text, std::string const& what, std::string const& with)
{
    std::size_t const place = text.find(what);
    EXPECT_NE(place, std::string::npos) << what;
    return text.replace(place, what.size(), with);
}

class PrefixOfMeshFile : public testing::TestWithParam<std::pair<char const*, std::string>>
{
};

}  // namespace

// Without a count, what is left of a text may be whole: OBJ files end anywhere between two statements, and texts
// within a number.
TEST_P(PrefixOfMeshFile, IsAnErrorOrWithLeniencyPerhapsAModel)
{
    auto const& [name, bytes] = GetParam();
    ASSERT_EQ(FailureOf(name, bytes), "");
    bool const hasCounts = std::string(name) != "a.obj";
    // What is left when the words at the end are not whole says as much.
    std::size_t const mayMiss = std::string(name) == "b.stl" ? 5 : std::string(name) == "a.ply" ? 1 : 0;
    std::size_t models = 0;
    for (std::size_t size = 0; size < bytes.size(); ++size)
    {
        std::string const cut = bytes.substr(0, size);
        if (hasCounts && size + mayMiss < bytes.size())
        {
            EXPECT_NE(FailureOf(name, cut), "") << size;
        }
        std::string const failure = FailureOf(name, cut, true);
        models += failure.empty() ? 1 : 0;
        EXPECT_EQ(failure.find('\n'), std::string::npos) << failure;
    }
    EXPECT_GT(models, 0u) << "leniency takes something";
}

INSTANTIATE_TEST_SUITE_P(
    Formats, PrefixOfMeshFile,
    testing::Values(std::pair("a.stl", BinaryStl({BoxTriangles(1, 1, 1)[0], BoxTriangles(1, 1, 1)[1]})),
                    std::pair("b.stl", TextStl({BoxTriangles(1, 1, 1)[0], BoxTriangles(1, 1, 1)[1]})),
                    std::pair("a.obj", kObj), std::pair("a.ply", kPly), std::pair("b.ply", BinaryPly()),
                    std::pair("a.glb", Glb())),
    [](auto const& test)
    {
        std::string name = test.param.first;
        name[1] = '_';
        return name;
    });

TEST(MeshDamage, FlippedBytesEndAsASentenceOrAModel)
{
    for (auto const& [name, bytes] : {std::pair<std::string, std::string>{"a.stl", BinaryStl(BoxTriangles(1, 1, 1))},
                                      {"b.ply", BinaryPly()},
                                      {"a.ply", kPly},
                                      {"a.obj", kObj},
                                      {"a.glb", Glb()}})
        for (std::size_t place = 0; place < bytes.size(); ++place)
            for (char const flip : {'\x01', '\x80'})
            {
                std::string damaged = bytes;
                damaged[place] = static_cast<char>(damaged[place] ^ flip);
                FailureOf(name, damaged);
                EXPECT_EQ(FailureOf(name, damaged, true).find('\n'), std::string::npos);
            }
}

TEST(MeshDamage, AnStlThatCountsMoreOrLessThanItHoldsSaysSo)
{
    std::string const box = BinaryStl(BoxTriangles(1, 1, 1));
    std::string const cut = box.substr(0, box.size() - 51);
    EXPECT_EQ(FailureOf("a.stl", cut), "it holds 10 of 12 triangles");
    MeshModel const model = ReadMeshBytes("a.stl", cut, Lenient());
    EXPECT_EQ(model.meshes.at(0).TriangleCount(), 10u);
    EXPECT_THAT(model.remarks, Contains("taken: 10 of 12 triangles"));
    EXPECT_EQ(model.losses.Kinds().at("triangles that the file announces and does not hold").count, 2u);
    EXPECT_EQ(FailureOf("a.stl", box + "more"), "its head counts 12 triangles, and 4 bytes follow them");
    std::string claim = box;
    claim.replace(80, 4, "\xFF\xFF\xFF\x7F");
    EXPECT_EQ(FailureOf("a.stl", claim), "it holds 12 of 2,147,483,647 triangles");
    std::string none = box;
    none.replace(84 + 12, 4, BytesOf(0x7FC00000));
    EXPECT_EQ(FailureOf("a.stl", none), "triangle 1 has a coordinate that is no number");
    EXPECT_EQ(ReadMeshBytes("a.stl", none, Lenient()).meshes.at(0).TriangleCount(), 11u);
    std::string const text = TextStl(BoxTriangles(1, 1, 1));
    EXPECT_EQ(FailureOf("a.stl", text.substr(0, text.find("vertex", 250) + 9)),
              "it ends in line 25, before the end of its solid, with 3 triangles");
    EXPECT_EQ(FailureOf("a.stl", Replaced(text, "endloop", "endlop")),
              "line 7: \"endlop\" has no place there in an STL file");
}

TEST(MeshDamage, APlyThatCountsMoreThanItHoldsSaysSo)
{
    EXPECT_EQ(FailureOf("a.ply", Replaced(kPly, "face 2", "face 99999999999")),
              "its head counts 99,999,999,999 faces, and what follows has room for 10");
    EXPECT_EQ(FailureOf("a.ply", Replaced(kPly, "vertex 4", "vertex 7")),
              "its head counts 2 faces, and what follows has room for 1");
    EXPECT_EQ(FailureOf("a.ply", Replaced(kPly, "face 2", "face 1")), "9 bytes follow what its head announces");
    EXPECT_EQ(FailureOf("a.ply", Replaced(kPly, "3 0 1 2\n", "3 0 1 4\n")),
              "face 2 names a vertex that is not among the 4");
    std::string const cut = BinaryPly().substr(0, BinaryPly().size() - 1);
    EXPECT_EQ(FailureOf("b.ply", cut), "it holds 0 of 1 faces");
    MeshModel const model = ReadMeshBytes("b.ply", BinaryPly().substr(0, BinaryPly().size() - 20), Lenient());
    EXPECT_THAT(model.remarks, Contains("taken: 2 of 3 vertices"));
    // What a reader was seen to hang on.
    EXPECT_EQ(FailureOf("a.ply", "ply\nformat ascii 1.0\nelem"), "it ends within its head, in line 3");
    EXPECT_EQ(FailureOf("a.ply", "ply\nformat ascii 1.0\nelement vertex many\n"), "line 3 of its head makes no sense");
}

TEST(MeshDamage, JsonOfGltfThatMakesNoSenseIsTold)
{
    EXPECT_EQ(FailureOf("a.gltf", R"({"asset")"), "its JSON makes no sense from byte 9 on");
    EXPECT_EQ(FailureOf("a.gltf", R"({"asset":{"version":"2.0"},"x":1e999})"),
              "its JSON has a number beyond all bounds");
    std::string const deep = std::string(300, '[') + std::string(300, ']');
    EXPECT_EQ(FailureOf("a.gltf", R"({"asset":{"version":"2.0","extras":)" + deep + "}}"),
              "its JSON has lists and objects more than 200 levels deep");
}

TEST(MeshDamage, AnObjThatNamesWhatIsNotThereSaysWhere)
{
    EXPECT_EQ(FailureOf("a.obj", Replaced(kObj, "f 1 3 4", "f 1 3 5")),
              "line 8: \"5\" names what is not among the 4 points, 0 places in textures and 1 normals");
    MeshModel const model = ReadMeshBytes("a.obj", Replaced(kObj, "f 1 3 4", "f 1 3 5"), Lenient());
    EXPECT_EQ(model.meshes.at(0).TriangleCount(), 1u);
    EXPECT_EQ(model.losses.Kinds().at("faces and lines of points that are not there").count, 1u);
    EXPECT_EQ(FailureOf("a.obj", kObj + "f 1 2\n"), "line 9: there are too few points for a face or line");
    EXPECT_EQ(FailureOf("a.obj", kObj + "v 1 2\n"), "line 9: \"v\" is followed by too few numbers");
    EXPECT_EQ(FailureOf("a.obj", kObj + "use\n"), "line 9: \"use\" is no statement of OBJ");
    EXPECT_EQ(FailureOf("a.obj", Replaced(kObj, "f 1 3 4", "f -1 -999999999 1")).substr(0, 20),
              "line 8: \"-999999999\"");
}

TEST(MeshDamage, AGlbThatReachesBeyondItsBytesSaysSo)
{
    std::string const glb = Glb();
    std::string const cut = glb.substr(0, glb.size() - 4);
    EXPECT_THAT(FailureOf("a.glb", cut), HasSubstr("its head announces"));
    MeshModel const model = ReadMeshBytes("a.glb", cut, Lenient());
    EXPECT_THAT(model.remarks, Contains("taken: 1 of 2 triangles"));
    EXPECT_EQ(model.meshes.at(0).TriangleCount(), 1u);
    EXPECT_THAT(FailureOf("a.glb", Replaced(glb, "\"count\":6", "\"count\":9")),
                HasSubstr("counts 9 elements, and its bytes are enough for 6"));
    EXPECT_THAT(FailureOf("a.glb", Replaced(glb, "\"count\":4", "\"count\":3")), HasSubstr("names point 3 of 3"));
    EXPECT_THAT(FailureOf("a.glb", Replaced(glb, "\"mesh\":0", "\"mesh\":7")),
                HasSubstr("an index of meshes is not among the 1"));
    EXPECT_THAT(FailureOf("a.glb", Replaced(glb, "\"type\":\"VEC3\"", "\"type\":\"VEC9\"")), HasSubstr("VEC9"));
    EXPECT_THAT(FailureOf("a.glb", Replaced(glb, "\"version\":\"2", "\"version\":\"1")), HasSubstr("it is glTF 1.0"));
}

TEST(MeshDamage, AnIndexThatIsNoWholeNumberNamesNoPoint)
{
    auto const failureOf = [](auto value, int componentType)
    {
        GlbBuilder builder;
        builder.json["meshes"] = {{{"name", "m"}, {"primitives", {builder.Square()}}}};
        builder.json["nodes"] = {{{"mesh", 0}}};
        std::vector<decltype(value)> const indices{0, 1, value};
        builder.json["meshes"][0]["primitives"][0]["indices"] = builder.Accessor(indices, componentType, "SCALAR", 1);
        return FailureOf("a.glb", builder.Bytes());
    };
    constexpr int kSignedShorts = 5122;
    EXPECT_EQ(failureOf(std::int16_t{2}, kSignedShorts), "");
    std::string const expected = "a primitive of mesh \"m\" names point 4,294,967,295 of 4";
    EXPECT_EQ(failureOf(std::int16_t{-1}, kSignedShorts), expected);
    for (float const number : {-1.0f, 1e30f, std::numeric_limits<float>::quiet_NaN()})
        EXPECT_EQ(failureOf(number, kFloats), expected) << number;
}

TEST(MeshDamage, BytesThatManyNameAreNotReadWithoutEnd)
{
    GlbBuilder builder;
    nlohmann::json const primitive = builder.Square();
    builder.View(std::string(300'000, '\0'));
    builder.json["accessors"][0]["bufferView"] = 2;
    builder.json["accessors"][0]["count"] = 25'000;
    builder.json["meshes"] = {{{"primitives", nlohmann::json::array()}}};
    for (int i = 0; i < 1000; ++i)
        builder.json["meshes"][0]["primitives"].push_back({{"attributes", primitive["attributes"]}, {"mode", 0}});
    builder.json["nodes"] = {{{"mesh", 0}}};
    EXPECT_EQ(FailureOf("a.glb", builder.Bytes()), "its primitives name the same bytes too often");
}

}  // namespace KVR::Test
