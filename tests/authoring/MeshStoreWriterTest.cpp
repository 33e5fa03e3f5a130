#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <bit>
#include <filesystem>
#include <map>

#include "authoring/MeshStoreWriter.h"
#include "framework/api/Exception.h"
#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

using namespace Authoring;

// A mesh as lists, made by chance; what is written and what is read are compared through it.
struct MeshLists
{
    struct TextureSet
    {
        std::uint32_t dimension = 2;
        std::vector<double> coordinates;
    };
    std::vector<double> vertices;
    std::vector<double> normals;
    std::vector<TextureSet> textureSets;
    struct PolygonLists
    {
        std::vector<std::uint64_t> vertices;
        std::vector<std::uint64_t> normals;
        std::vector<TextureReference> textures;
        std::optional<std::uint64_t> material;
    };
    std::vector<PolygonLists> polygons;
};

// Numbers of every form: infinite ones, and those that are none, too.
rc::Gen<double> AnyDouble()
{
    return rc::gen::oneOf(rc::gen::arbitrary<double>(),
                          rc::gen::map(rc::gen::arbitrary<std::uint64_t>(),
                                       [](std::uint64_t bits) { return std::bit_cast<double>(bits); }));
}

std::vector<double> Doubles(std::size_t count)
{
    return *rc::gen::container<std::vector<double>>(count, AnyDouble());
}

bool IsSame(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

std::vector<std::uint64_t> Indices(std::size_t count)
{
    return *rc::gen::container<std::vector<std::uint64_t>>(count, rc::gen::inRange<std::uint64_t>(0, 1000));
}

MeshLists AnyMesh(MeshStoreLayout layout)
{
    MeshLists mesh;
    mesh.vertices = Doubles(3 * *rc::gen::inRange<std::size_t>(0, 20));
    mesh.normals = Doubles(3 * *rc::gen::inRange<std::size_t>(0, 5));
    std::size_t const sets = *rc::gen::inRange<std::size_t>(0, layout == MeshStoreLayout::kMeshInfo ? 4 : 2);
    for (std::size_t i = 0; i < sets; ++i)
    {
        std::uint32_t const dimension = layout == MeshStoreLayout::kMeshInfo ? *rc::gen::element(2U, 3U) : 2U;
        mesh.textureSets.push_back({dimension, Doubles(dimension * *rc::gen::inRange<std::size_t>(1, 5))});
    }
    std::size_t const polygons = *rc::gen::inRange<std::size_t>(0, 30);
    for (std::size_t i = 0; i < polygons; ++i)
    {
        MeshLists::PolygonLists polygon;
        polygon.vertices = Indices(*rc::gen::inRange<std::size_t>(1, 40));
        if (!mesh.normals.empty() && *rc::gen::arbitrary<bool>())
            polygon.normals = Indices(polygon.vertices.size());
        if (sets > 0 && *rc::gen::arbitrary<bool>())
        {
            for (std::size_t v = 0; v < polygon.vertices.size(); ++v)
            {
                for (std::size_t s = 0; s < sets; ++s)
                    polygon.textures.push_back({s, 100 * v + s});
            }
        }
        if (*rc::gen::arbitrary<bool>())
            polygon.material = *rc::gen::inRange<std::uint64_t>(0, 3);
        mesh.polygons.push_back(polygon);
    }
    return mesh;
}

void WriteMesh(MeshStoreWriter& writer, MeshLists const& mesh, MeshStoreLayout layout)
{
    MeshHead head{mesh.vertices.size() / 3, mesh.normals.size() / 3, mesh.polygons.size(), mesh.textureSets.size(), 0};
    if (layout == MeshStoreLayout::kGeometryInfo && !mesh.textureSets.empty())
        head.textureVertexCount = mesh.textureSets.front().coordinates.size() / 2;
    for (char const* const material : {"a", "b", "c"})
        writer.AddMaterial(material);
    writer.BeginMesh("m", head);
    writer.Vertices(mesh.vertices);
    writer.Normals(mesh.normals);
    for (MeshLists::TextureSet const& set : mesh.textureSets)
        writer.TextureSet(set.dimension, set.coordinates);
    for (MeshLists::PolygonLists const& polygon : mesh.polygons)
        writer.Polygon({polygon.vertices, polygon.material, polygon.normals, polygon.textures});
    writer.EndMesh();
}

std::vector<int> Narrow(std::vector<std::uint64_t> const& indices)
{
    return indices.empty() ? kNoList : std::vector<int>(indices.begin(), indices.end());
}

std::vector<int> TextureIndices(std::vector<TextureReference> const& textures)
{
    std::vector<int> indices;
    for (TextureReference const& texture : textures)
        indices.push_back(static_cast<int>(texture.vertex));
    return indices.empty() ? kNoList : indices;
}

// The sets of a polygon's first vertex.
std::vector<int> TextureSets(MeshLists::PolygonLists const& polygon)
{
    std::vector<int> sets;
    for (std::size_t i = 0; i < polygon.textures.size() / polygon.vertices.size(); ++i)
        sets.push_back(static_cast<int>(polygon.textures[i].set));
    return sets.empty() ? kNoList : sets;
}

template <class Item>
bool IsSame(std::vector<double> const& written, unsigned long index, Item const& read)
{
    return IsSame(read.x, written[3 * index]) && IsSame(read.y, written[3 * index + 1]) &&
           IsSame(read.z, written[3 * index + 2]);
}

void ExpectEqual(MeshLists::TextureSet const& written, ITextureVertexSet const& read)
{
    RC_ASSERT(read.VertexDimension() == static_cast<int>(written.dimension));
    RC_ASSERT(read.VertexCount() == written.coordinates.size() / written.dimension);
    for (unsigned long i = 0; i < read.VertexCount(); ++i)
    {
        double const* const expected = written.coordinates.data() + i * written.dimension;
        MeshTextureVertex2D flat(0, 0);
        MeshTextureVertex3D deep(0, 0, 0);
        if (written.dimension == 2)
        {
            RC_ASSERT(read.VertexAt(i, flat) == kIsValueSpecified_Yes);
            RC_ASSERT(IsSame(flat.U(), expected[0]) && IsSame(flat.V(), expected[1]));
        }
        else
        {
            RC_ASSERT(read.VertexAt(i, deep) == kIsValueSpecified_Yes);
            RC_ASSERT(IsSame(deep.U(), expected[0]) && IsSame(deep.V(), expected[1]) && IsSame(deep.W(), expected[2]));
        }
    }
}

std::string MaterialOf(IPolygonMesh const& mesh, unsigned long polygon)
{
    IdSetSet sets;
    long const slot = SlotOf(mesh, polygon);
    if (slot < 0 || mesh.PolygonMaterials(sets) != kIsValueSpecified_Yes)
        return "";
    return Text(sets.At(static_cast<unsigned long long>(slot)).At(0));
}

void ExpectEqual(MeshLists const& written, IPolygonMesh const& read)
{
    RC_ASSERT(read.VertexCount() == written.vertices.size() / 3);
    for (unsigned long i = 0; i < read.VertexCount(); ++i)
        RC_ASSERT(IsSame(written.vertices, i, read.VertexAt(i)));
    RC_ASSERT(read.NormalCount() == written.normals.size() / 3);
    for (unsigned long i = 0; i < read.NormalCount(); ++i)
        RC_ASSERT(IsSame(written.normals, i, read.NormalAt(i)));
    RC_ASSERT(read.TextureVertexSetCount() == written.textureSets.size());
    for (unsigned long i = 0; i < read.TextureVertexSetCount(); ++i)
        ExpectEqual(written.textureSets[i], *read.TextureVertexSetAt(i));
    RC_ASSERT(read.PolygonCount() == written.polygons.size());
    for (unsigned long i = 0; i < read.PolygonCount(); ++i)
    {
        MeshLists::PolygonLists const& expected = written.polygons[i];
        EditablePolygon const& polygon = PolygonOf(read, i);
        RC_ASSERT(List(polygon.VertexIndices()) == Narrow(expected.vertices));
        RC_ASSERT(List(polygon.NormalIndices()) == Narrow(expected.normals));
        RC_ASSERT(List(polygon.TextureSetIndices()) == TextureSets(expected));
        RC_ASSERT(List(polygon.TextureVertexIndices()) == TextureIndices(expected.textures));
        RC_ASSERT(MaterialOf(read, i) ==
                  (expected.material ? std::string(1, static_cast<char>('a' + *expected.material)) : ""));
    }
}

TEST(MeshStoreWriter, WhatIsWrittenIsReadInBothLayouts)
{
    EXPECT_TRUE(rc::check(
        []
        {
            for (MeshStoreLayout const layout : {MeshStoreLayout::kMeshInfo, MeshStoreLayout::kGeometryInfo})
            {
                MeshLists const mesh = AnyMesh(layout);
                TestScene scene(StoreScene(layout == MeshStoreLayout::kMeshInfo ? kMeshInfo : kGeometryInfo, {"m"}));
                MeshStoreWriter writer(Wide((scene.Folder() + "/s.mesh").c_str()), layout);
                WriteMesh(writer, mesh, layout);
                writer.Finish();
                ExpectEqual(mesh, scene.Begin().Get<IPolygonMesh>("m"));
            }
        }));
}

// The segments of a mesh as they are written.
struct SegmentLists
{
    std::vector<SegmentStoreWriter::Indices> faces;
    std::vector<SegmentStoreWriter::Indices> edges;
    std::vector<bool> visible;
};

SegmentLists AnySegments()
{
    SegmentLists segments;
    for (std::size_t i = *rc::gen::inRange<std::size_t>(0, 6); i > 0; --i)
        segments.faces.push_back(Indices(*rc::gen::inRange<std::size_t>(0, 30)));
    for (std::size_t i = *rc::gen::inRange<std::size_t>(0, 6); i > 0; --i)
        segments.edges.push_back(Indices(*rc::gen::inRange<std::size_t>(0, 30)));
    segments.visible = *rc::gen::container<std::vector<bool>>(
        *rc::gen::inRange<std::size_t>(0, segments.faces.size() + 1), rc::gen::arbitrary<bool>());
    return segments;
}

void ExpectEqual(SegmentLists const& written, IPolygonMesh const& read)
{
    RC_ASSERT(read.FaceSegmentCount() == written.faces.size());
    for (unsigned long i = 0; i < read.FaceSegmentCount(); ++i)
    {
        FaceSegmentInfo face;
        RC_ASSERT(read.FaceSegmentAt(i, face) == kIsValueSpecified_Yes);
        std::vector<unsigned int> const indices = face.PolygonIndices().Indices();
        RC_ASSERT(SegmentStoreWriter::Indices(indices.begin(), indices.end()) == written.faces[i]);
        RC_ASSERT(face.IsVisible() == (i >= written.visible.size() || written.visible[i]));
    }
    RC_ASSERT(read.EdgeSegmentCount() == written.edges.size());
    for (unsigned long i = 0; i < read.EdgeSegmentCount(); ++i)
    {
        VertexIndexSet vertices;
        RC_ASSERT(read.EdgeSegmentAt(i, vertices) == kIsValueSpecified_Yes);
        std::vector<int> const indices = vertices.Indices();
        RC_ASSERT(SegmentStoreWriter::Indices(indices.begin(), indices.end()) == written.edges[i]);
    }
}

TEST(MeshStoreWriter, SegmentsAreReadAsTheyWereWritten)
{
    EXPECT_TRUE(rc::check(
        []
        {
            TestScene scene(StoreScene(std::string(kMeshInfo) + kSegmentInfo, {"m", "n"}));
            MeshStoreWriter meshes(Wide((scene.Folder() + "/s.mesh").c_str()), MeshStoreLayout::kMeshInfo);
            SegmentStoreWriter segments(Wide((scene.Folder() + "/s.seg").c_str()));
            std::map<std::string, SegmentLists> written;
            for (char const* const id : {"m", "n"})
            {
                meshes.BeginMesh(id, {});
                meshes.EndMesh();
                SegmentLists const& lists = written[id] = AnySegments();
                segments.Mesh(id, lists.faces, lists.edges, lists.visible);
            }
            meshes.Finish();
            segments.Finish();
            scene.Begin();
            for (auto const& [id, lists] : written)
                ExpectEqual(lists, scene.Get<IPolygonMesh>(id.c_str()));
        }));
}

TEST(MeshStoreWriter, AFileAppearsWholeOrNotAtAll)
{
    TempFolder folder;
    std::string const path = folder.NarrowPathOf("größe.mesh");
    {
        MeshStoreWriter writer(Wide(path.c_str()), MeshStoreLayout::kMeshInfo);
        writer.BeginMesh("m", {1, 0, 0, 0, 0});
        EXPECT_FALSE(std::filesystem::exists(path));
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
    MeshStoreWriter writer(Wide(path.c_str()), MeshStoreLayout::kMeshInfo);
    writer.Finish();
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), std::filesystem::directory_iterator()),
              1);
}

TEST(MeshStoreWriter, AFolderThatIsNotThereIsAFileException)
{
    EXPECT_THROW(MeshStoreWriter(L"/nowhere/at/all.mesh", MeshStoreLayout::kMeshInfo), FileException);
}

TEST(MeshStoreWriter, CallsThatDoNotFitTogetherAreRefused)
{
    TempFolder folder;
    std::uint64_t const triangle[] = {0, 1, 2};
    double const numbers[] = {0, 0, 0};
    MeshStoreWriter writer(folder.PathOf("a"), MeshStoreLayout::kGeometryInfo);
    EXPECT_THROW(writer.AddMaterial(""), GeneralException);
    EXPECT_THROW(writer.BeginMesh("", {}), GeneralException);
    EXPECT_THROW(writer.Vertices(numbers), GeneralException);
    EXPECT_THROW(writer.BeginMesh("m", {0, 0, 0, 2, 0}), GeneralException) << "one set at most";
    writer.BeginMesh("m", {1, 0, 1, 0, 0});
    EXPECT_THROW(writer.BeginMesh("n", {}), GeneralException);
    EXPECT_THROW(writer.EndMesh(), GeneralException);
    writer.Vertices(numbers);
    EXPECT_THROW(writer.Polygon({{}, {}, {}, {}}), GeneralException);
    EXPECT_THROW(writer.Polygon({triangle, {}, triangle, {}}), GeneralException) << "the mesh has no normals";
    EXPECT_THROW(writer.Finish(), GeneralException);
    EXPECT_THROW(writer.Curve("c", {RayRecord{}}), GeneralException);
}

}  // namespace

}  // namespace KVR::Test
