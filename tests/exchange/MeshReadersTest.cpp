#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <assimp/scene.h>
#include <algorithm>
#include <assimp/Importer.hpp>
#include <cmath>
#include <set>

#include "exchange/meshes/PolygonCorners.h"
#include "tests/exchange/MeshFiles.h"

// STL, OBJ and PLY files as plain meshes.
namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::array<double, 3> NormalAt(MeshModel::Mesh const& mesh, std::size_t corner)
{
    double const* const normal = mesh.normals.data() + 3 * std::size_t{mesh.cornerNormals[corner]};
    return {normal[0], normal[1], normal[2]};
}

// The cosine of the angle between a corner's normal and its triangle's.
double CosineAt(MeshModel::Mesh const& mesh, std::size_t corner)
{
    double const* points[3];
    for (std::size_t i = 0; i < 3; ++i)
        points[i] = mesh.points.data() + 3 * std::size_t{mesh.corners[corner / 3 * 3 + i]};
    double cross[3];
    double length = 0.0;
    double dot = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        std::size_t const u = (axis + 1) % 3;
        std::size_t const v = (axis + 2) % 3;
        cross[axis] = (points[1][u] - points[0][u]) * (points[2][v] - points[0][v]) -
                      (points[1][v] - points[0][v]) * (points[2][u] - points[0][u]);
        length += cross[axis] * cross[axis];
        dot += cross[axis] * NormalAt(mesh, corner)[axis];
    }
    return dot / std::sqrt(length);
}

// A tube of so many sides.
std::vector<Triangle> Tube(int sides)
{
    std::vector<Triangle> triangles;
    auto const at = [&](int side, float z) -> std::array<float, 3>
    {
        double const angle = 2.0 * M_PI * (side % sides) / sides;
        return {static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)), z};
    };
    for (int i = 0; i < sides; ++i)
    {
        triangles.push_back({at(i, 0), at(i + 1, 0), at(i + 1, 1)});
        triangles.push_back({at(i, 0), at(i + 1, 1), at(i, 1)});
    }
    return triangles;
}

constexpr char kPlyHead[] =
    "ply\nformat ascii 1.0\ncomment made by hand\nelement vertex 4\nproperty float x\nproperty float y\n"
    "property float z\nproperty uchar red\nproperty uchar green\nproperty uchar blue\nelement face 2\n"
    "property list uchar int vertex_indices\nend_header\n";

}  // namespace

TEST(StlReader, TrianglesAsBytesAndAsTextShareTheirPoints)
{
    for (std::string const& bytes : {BinaryStl(BoxTriangles(1, 2, 3)), TextStl(BoxTriangles(1, 2, 3))})
    {
        MeshModel const model = ReadMeshBytes("part.stl", bytes);
        ASSERT_THAT(model.meshes, SizeIs(1));
        EXPECT_EQ(model.meshes[0].TriangleCount(), 12u);
        EXPECT_EQ(model.meshes[0].PointCount(), 8u);
        ASSERT_THAT(model.components, SizeIs(1));
        EXPECT_EQ(model.components[0].name, "part");
        EXPECT_FALSE(model.isUnitStated);
        EXPECT_THAT(model.remarks, IsEmpty());
    }
}

TEST(StlReader, EachSolidOfATextIsAPartOfItsName)
{
    MeshModel const model = ReadMeshBytes(
        "two.stl", TextStl(BoxTriangles(1, 1, 1), "first one") + TextStl(BoxTriangles(2, 2, 2), "caf\xE9"));
    ASSERT_THAT(model.components, SizeIs(3));
    EXPECT_TRUE(model.components[0].isAssembly);
    EXPECT_EQ(model.components[0].name, "two");
    EXPECT_EQ(model.components[1].name, "first one");
    EXPECT_EQ(model.components[2].name, "caf\xC3\xA9") << "bytes that are no UTF-8 are Latin-1";
    EXPECT_EQ(model.components[0].placements[1].component, 2u);
}

TEST(StlReader, AHeadThatSaysSolidIsNoTextWhenItIsBytes)
{
    EXPECT_EQ(ReadMeshBytes("a.stl", BinaryStl(BoxTriangles(1, 1, 1), "solid facet")).meshes[0].TriangleCount(), 12u);
}

TEST(StlReader, ColoursBehindTrianglesCount)
{
    std::uint16_t const red = 0x8000 | 31 << 10;
    MeshModel const model = ReadMeshBytes("a.stl", BinaryStl(BoxTriangles(1, 1, 1), "box", red));
    ASSERT_THAT(model.materials, SizeIs(1));
    EXPECT_EQ(*model.materials[0].color, (MeshModel::Color{1, 0, 0, 1}));
    // The other form, where the bit says that the head's colour holds.
    std::string const head = "COLOR=" + std::string("\x00\xFF\x00\xFF", 4);
    MeshModel const other = ReadMeshBytes("a.stl", BinaryStl(BoxTriangles(1, 1, 1), head, red));
    EXPECT_EQ(*other.materials.at(0).color, (MeshModel::Color{0, 1, 0, 1}));
}

TEST(CreaseNormals, ABoxKeepsItsEdgesAndATubeIsRound)
{
    MeshModel const box = ReadMeshBytes("a.stl", BinaryStl(BoxTriangles(1, 2, 3)));
    EXPECT_EQ(box.meshes[0].normals.size(), 3u * 24);
    for (std::size_t corner = 0; corner < 36; ++corner)
        EXPECT_NEAR(CosineAt(box.meshes[0], corner), 1.0, 1e-12);
    // Of 24 sides each turns by 15 degrees, of 6 by 60.
    MeshModel const tube = ReadMeshBytes("a.stl", BinaryStl(Tube(24)));
    for (std::size_t corner = 0; corner < tube.meshes[0].corners.size(); ++corner)
    {
        auto const normal = NormalAt(tube.meshes[0], corner);
        double const* const point = tube.meshes[0].points.data() + 3 * std::size_t{tube.meshes[0].corners[corner]};
        EXPECT_NEAR(normal[0] * point[0] + normal[1] * point[1], 1.0, 1e-6) << "from the axis";
    }
    MeshModel const prism = ReadMeshBytes("a.stl", BinaryStl(Tube(6)));
    for (std::size_t corner = 0; corner < prism.meshes[0].corners.size(); ++corner)
        EXPECT_NEAR(CosineAt(prism.meshes[0], corner), 1.0, 1e-6);
}

TEST(CreaseNormals, TheAngleDecidesWhatIsSmooth)
{
    MeshReadOptions options;
    options.creaseAngle = 61.0;
    EXPECT_LT(CosineAt(ReadMeshBytes("a.stl", BinaryStl(Tube(6)), options).meshes[0], 0), 0.99);
    options.creaseAngle = 14.0;
    EXPECT_NEAR(CosineAt(ReadMeshBytes("a.stl", BinaryStl(Tube(24)), options).meshes[0], 0), 1.0, 1e-6);
    options.creaseAngle = 0.0;
    EXPECT_NEAR(CosineAt(ReadMeshBytes("a.stl", BinaryStl(Tube(24)), options).meshes[0], 0), 1.0, 1e-6);
}

TEST(MeshReading, TheAxisThatPointsUpBecomesZ)
{
    MeshReadOptions options;
    options.up = Axis::kY;
    MeshModel const y = ReadMeshBytes("a.obj", "v 1 2 3\nv 4 2 3\nv 1 5 3\nvn 0 1 0\nf 1//1 2//1 3//1\n", options);
    EXPECT_THAT(std::vector(y.meshes[0].points.begin(), y.meshes[0].points.begin() + 3), ElementsAre(1, -3, 2));
    EXPECT_THAT(y.meshes[0].normals, ElementsAre(0, 0, 1));
    options.up = Axis::kX;
    MeshModel const x = ReadMeshBytes("a.obj", "v 1 2 3\nv 4 2 3\nv 1 5 3\nf 1 2 3\n", options);
    EXPECT_THAT(std::vector(x.meshes[0].points.begin(), x.meshes[0].points.begin() + 3), ElementsAre(-3, 2, 1));
    // An assembly turns what it places, and its parts stay.
    MeshModel const two = ReadMeshBytes("a.obj", "v 1 2 3\nv 4 2 3\nv 1 5 3\no a\nf 1 2 3\no b\nf 1 2 3\n", options);
    EXPECT_THAT(std::vector(two.meshes[0].points.begin(), two.meshes[0].points.begin() + 3), ElementsAre(1, 2, 3));
    EXPECT_EQ(two.components[0].placements[1].transform.Element(2, 0), 1.0);
    EXPECT_EQ(two.components[0].placements[1].transform.Element(0, 2), -1.0);
}

TEST(ObjReader, ObjectsArePartsAndGroupsAreMeshesInThem)
{
    MeshModel const model = ReadMeshBytes(
        "m.obj",
        "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\no case\ng lid\nf 1 2 3\ng floor\nf 1 3 4\no\tpin 2\nf -4 -3 -2 -1\n");
    ASSERT_THAT(model.components, SizeIs(3));
    EXPECT_EQ(model.components[1].name, "case");
    EXPECT_EQ(model.components[2].name, "pin 2");
    ASSERT_THAT(model.components[1].meshes, SizeIs(2));
    EXPECT_EQ(model.meshes[0].name, "lid");
    EXPECT_EQ(model.meshes[1].name, "floor");
    EXPECT_EQ(model.meshes[2].TriangleCount(), 2u);
    // Groups alone are parts.
    MeshModel const groups =
        ReadMeshBytes("g.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\ng a\nf 1 2 3\ng b\nf 1 2 3\ng a\nf 3 2 1\n");
    ASSERT_THAT(groups.components, SizeIs(3));
    EXPECT_EQ(groups.meshes[0].TriangleCount(), 2u) << "a group that is opened again goes on";
}

TEST(ObjReader, MaterialsTexturesAndColoursOfPointsComeAlong)
{
    std::string const obj =
        "mtllib my materials.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nvt 0.25 0.25\nvt 1 0\nvt 1 1\nusemtl red\nf 1/1 2/2 3/3\n"
        "usemtl glass\nf 3 2 1\n";
    std::string const mtl =
        "newmtl red\nKd 1 0 0\nKe 0 0 0.5\nNs 20\nmap_Kd -o 0.5 0 -s 2 2 sub\\red 1.png\nmap_Ks x.png\n"
        "newmtl glass\nd 0.25\nKd 0 1 0\n";
    MeshModel const model = ReadMeshBytes("m.obj", obj, {}, {{"my materials.mtl", mtl}, {"sub/red 1.png", "\x89PNG"}});
    ASSERT_THAT(model.materials, SizeIs(2));
    EXPECT_EQ(*model.materials[0].color, (MeshModel::Color{1, 0, 0, 1}));
    EXPECT_EQ(*model.materials[0].emission, (MeshModel::Color{0, 0, 0.5, 1}));
    EXPECT_EQ(*model.materials[1].color, (MeshModel::Color{0, 1, 0, 0.25}));
    ASSERT_THAT(model.images, SizeIs(1));
    EXPECT_EQ(model.textures[0].scale, (std::pair{2.0, 2.0}));
    EXPECT_EQ(model.textures[0].offset, (std::pair{0.5, 0.0}));
    EXPECT_EQ(model.losses.Kinds().at("textures of other things than colour and relief").items,
              std::vector<std::string>{"x.png"});
    EXPECT_THAT(model.meshes[0].materials, ElementsAre(0, 1));
    EXPECT_THAT(model.meshes[0].pieces, ElementsAre(0, 1));
    // The second coordinate counts from the top here.
    EXPECT_EQ(model.meshes[0].texture[1], 0.75);
    EXPECT_EQ(model.meshes[0].cornerTexture[3], MeshModel::kNone);
    MeshModel const colored = ReadMeshBytes("c.obj", "v 0 0 0 1 0 0\nv 1 0 0 1 0 0\nv 1 1 0 1 0 0\nf 1 2 3\n");
    EXPECT_EQ(*colored.materials.at(0).color, (MeshModel::Color{1, 0, 0, 1}));
}

TEST(ObjReader, LinesAndPointsAreNotLost)
{
    MeshModel const model = ReadMeshBytes("l.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nl 1 2 \\\n 3\np 3\n");
    EXPECT_THAT(model.meshes.at(0).lines, ElementsAre(ElementsAre(0, 1, 2)));
    EXPECT_THAT(model.meshes[0].dots, ElementsAre(2));
}

TEST(PlyReader, FacesOfManyCornersBecomeTriangles)
{
    MeshModel const model = ReadMeshBytes("p.ply", std::string(kPlyHead) +
                                                       "0 0 0 255 0 0\n1 0 0 255 0 0\n1 1 0 255 0 0\n0 1 0 0 0 255\n"
                                                       "4 0 1 2 3\n3 0 1 2\n");
    ASSERT_THAT(model.meshes, SizeIs(1));
    EXPECT_EQ(model.meshes[0].TriangleCount(), 3u);
    // Two are red, one has the mean of red and blue.
    ASSERT_THAT(model.materials, SizeIs(2));
    EXPECT_EQ(model.losses.Kinds().at("changes of colour within triangles, which have the mean").count, 1u);
    std::multiset<std::uint32_t> const used(model.meshes[0].materials.begin(), model.meshes[0].materials.end());
    EXPECT_EQ(std::max(used.count(0), used.count(1)), 2u);
}

TEST(PlyReader, BytesInEitherOrderGiveTheSame)
{
    auto const file = [](bool isBig)
    {
        std::string bytes = std::string("ply\nformat binary_") + (isBig ? "big" : "little") +
                            "_endian 1.0\nelement vertex 3\nproperty double x\nproperty float y\nproperty short z\n"
                            "element face 1\nproperty list uchar uint vertex_index\nproperty uchar red\n"
                            "property uchar green\nproperty uchar blue\nproperty uchar alpha\nend_header\n";
        auto const put = [&](auto value)
        {
            std::string number = BytesOf(value);
            if (isBig)
                std::reverse(number.begin(), number.end());
            bytes += number;
        };
        for (int i = 0; i < 3; ++i)
        {
            put(i == 1 ? 1.5 : 0.0);
            put(i == 2 ? 2.5f : 0.0f);
            put(std::int16_t{-7});
        }
        bytes += '\3';
        for (std::uint32_t i = 0; i < 3; ++i)
            put(i);
        return bytes + std::string("\xFF\x80\0\x33", 4);
    };
    for (bool const isBig : {false, true})
    {
        MeshModel const model = ReadMeshBytes("p.ply", file(isBig));
        EXPECT_THAT(model.meshes[0].points, ElementsAre(0, 0, -7, 1.5, 0, -7, 0, 2.5, -7));
        EXPECT_EQ(*model.materials.at(0).color, (MeshModel::Color{1.0, 128 / 255.0, 0.0, 0.2}));
    }
}

TEST(PlyReader, PointsWithoutFacesAreACloud)
{
    MeshModel const model =
        ReadMeshBytes("p.ply",
                      "ply\nformat ascii 1.0\nelement vertex 2\nproperty float x\nproperty float y\nproperty float z\n"
                      "end_header\n0 0 0\n1 2 3\n");
    EXPECT_THAT(model.meshes.at(0).dots, ElementsAre(0, 1));
}

namespace
{

// The pixel of a PNG file without filters at a place.
MeshModel::ByteColor PixelAt(std::string const& png, double u, double v)
{
    auto const number = [&](std::size_t at)
    {
        std::size_t value = 0;
        for (std::size_t i = 0; i < 4; ++i)
            value = value << 8 | static_cast<unsigned char>(png.at(at + i));
        return value;
    };
    std::size_t const width = number(16);
    std::size_t const height = number(20);
    std::size_t const content = png.find("IDAT");
    std::string rows(height * (4 * width + 1), ' ');
    uLongf size = rows.size();
    EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(rows.data()), &size,
                         reinterpret_cast<Bytef const*>(png.data() + content + 4), number(content - 4)),
              Z_OK);
    EXPECT_EQ(size, rows.size());
    std::size_t const at = static_cast<std::size_t>(v * static_cast<double>(height)) * (4 * width + 1) + 1 +
                           4 * static_cast<std::size_t>(u * static_cast<double>(width));
    MeshModel::ByteColor color{};
    for (std::size_t i = 0; i < 4; ++i)
        color[i] = static_cast<std::uint8_t>(rows.at(at + i));
    return color;
}

}  // namespace

TEST(MeshReading, MoreColoursThanStylesHoldStandInATexture)
{
    std::string text =
        "ply\nformat ascii 1.0\nelement vertex 303\nproperty float x\nproperty float y\nproperty float z\n"
        "property uchar red\nproperty uchar green\nproperty uchar blue\nproperty uchar alpha\n"
        "element face 301\nproperty list uchar int vertex_indices\nend_header\n";
    for (int i = 0; i < 303; ++i)
        text += std::to_string(i) + ' ' + std::to_string(i * i) + " 0 " + std::to_string(i % 256) + ' ' +
                std::to_string(i / 256) + " 7 200\n";
    for (int i = 0; i < 301; ++i)
        text += "3 " + std::to_string(i) + ' ' + std::to_string(i + 1) + ' ' + std::to_string(i + 2) + '\n';
    MeshModel const model = ReadMeshBytes("p.ply", text);
    EXPECT_THAT(model.losses.Kinds(), IsEmpty());
    ASSERT_THAT(model.materials, SizeIs(1));
    EXPECT_EQ(*model.materials[0].color, (MeshModel::Color{1, 1, 1, 1}));
    EXPECT_EQ(model.materials[0].details, R"({"alphaMode":"BLEND"})");
    ASSERT_EQ(model.materials[0].colorTexture, 0u);
    EXPECT_THAT(model.textures.at(0).sampler, testing::HasSubstr("9729"));
    MeshModel::Mesh const& mesh = model.meshes.at(0);
    ASSERT_THAT(mesh.cornerTexture, SizeIs(903));
    for (std::size_t i = 0; i < mesh.corners.size(); i += 37)
    {
        std::size_t const place = 2 * std::size_t{mesh.cornerTexture[i]};
        EXPECT_EQ(PixelAt(model.images.at(0).bytes, mesh.texture.at(place), mesh.texture.at(place + 1)),
                  mesh.pointColors[mesh.corners[i]]);
    }
}

TEST(MeshReading, ColoursOfAMeshThatHasATextureAreCountedWhenTheyAreTooMany)
{
    std::string text =
        "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\nproperty float z\n"
        "property float s\nproperty float t\n"
        "element face 300\nproperty list uchar int vertex_indices\nproperty uchar red\n"
        "property uchar green\nproperty uchar blue\nend_header\n0 0 0 0 0\n1 0 0 1 0\n0 1 0 0 1\n";
    for (int i = 0; i < 300; ++i)
        text += "3 0 1 2 " + std::to_string(i % 256) + ' ' + std::to_string(i / 256) + " 0\n";
    MeshModel const model = ReadMeshBytes("p.ply", text);
    EXPECT_THAT(model.materials, IsEmpty());
    EXPECT_EQ(model.losses.Kinds().at("colours of triangles").count, 300u);
    EXPECT_THAT(model.losses.Kinds().at("colours of triangles").items, SizeIs(1));
}

TEST(PolygonCorners, ADentIsKeptOutside)
{
    // An arrow's head with its dent at the third point.
    std::vector<std::array<double, 3>> const points{{0, 0, 0}, {4, 4, 0}, {0, 2, 0}, {-4, 4, 0}};
    auto const triangles = TrianglesOfPolygon(points);
    ASSERT_THAT(triangles, SizeIs(2));
    double area = 0.0;
    for (auto const& [a, b, c] : triangles)
    {
        double const one = (points[b][0] - points[a][0]) * (points[c][1] - points[a][1]) -
                           (points[b][1] - points[a][1]) * (points[c][0] - points[a][0]);
        EXPECT_GT(one, 0.0);
        area += one / 2;
    }
    EXPECT_DOUBLE_EQ(area, 8.0);
}

TEST(MeshReading, AnotherReaderFindsAsManyTriangles)
{
    std::string const obj = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 0 0 2\nf 1 2 3 4\nf 1 2 5\nf 2 3 5\n";
    for (auto const& [name, bytes] : {std::pair<std::string, std::string>{"a.obj", obj},
                                      {"b.stl", BinaryStl(Tube(8))},
                                      {"c.stl", TextStl(Tube(8))}})
    {
        TempFolder const folder;
        folder.Write(name, bytes);
        Assimp::Importer importer;
        aiScene const* const scene = importer.ReadFile(folder.NarrowPathOf(name), 0);
        ASSERT_TRUE(scene) << name;
        std::size_t triangles = 0;
        for (unsigned i = 0; i < scene->mNumMeshes; ++i)
            for (unsigned face = 0; face < scene->mMeshes[i]->mNumFaces; ++face)
                triangles += scene->mMeshes[i]->mFaces[face].mNumIndices - 2;
        std::size_t found = 0;
        for (MeshModel::Mesh const& mesh : ReadMeshBytes(name, bytes).meshes)
            found += mesh.TriangleCount();
        EXPECT_EQ(found, triangles) << name;
    }
}

}  // namespace KVR::Test
