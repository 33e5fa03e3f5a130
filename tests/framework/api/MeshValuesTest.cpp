// Index sets, segments, texture vertex sets, polygons.

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

#include "framework/api/IndexSets.h"
#include "framework/api/Polygon.h"
#include "framework/api/SegmentInfo.h"
#include "framework/api/TextureVertexSet.h"

namespace
{

using namespace KVR;

using Indices = std::vector<int>;

TEST(PolygonIndexSet, KeepsIndicesInOrderWithRepeats)
{
    PolygonIndexSet set;
    EXPECT_TRUE(set.Indices().empty());
    for (unsigned long const index : {3UL, 1UL, 3UL, 0xFFFFFFFFUL})
        set.Add(index);
    EXPECT_EQ(set.Indices(), (std::vector<unsigned>{3, 1, 3, 0xFFFFFFFF}));
    set.Clear();
    EXPECT_TRUE(set.Indices().empty());
}

TEST(VertexIndexSet, KeepsIndicesInOrderWithRepeats)
{
    VertexIndexSet set;
    EXPECT_TRUE(set.Indices().empty());
    for (int const index : {3, -1, 3})
        set.Append(index);
    EXPECT_EQ(set.Indices(), (Indices{3, -1, 3}));
    set.Clear();
    EXPECT_TRUE(set.Indices().empty());
}

TEST(FaceSegmentInfo, IsVisibleAndEmptyUntilSet)
{
    FaceSegmentInfo segment;
    EXPECT_TRUE(segment.IsVisible());
    EXPECT_TRUE(segment.PolygonIndices().Indices().empty());
    segment.SetVisible(false);
    EXPECT_FALSE(segment.IsVisible());
    segment.SetVisible(true);
    EXPECT_TRUE(segment.IsVisible());
}

TEST(FaceSegmentInfo, CopiesAreIndependent)
{
    PolygonIndexSet polygons;
    polygons.Add(4);
    FaceSegmentInfo segment;
    segment.SetPolygonIndexSet(polygons);
    segment.SetVisible(false);
    polygons.Clear();
    FaceSegmentInfo const copy(segment);
    FaceSegmentInfo assigned;
    assigned = segment;
    segment.SetVisible(true);
    segment.SetPolygonIndexSet(polygons);
    for (FaceSegmentInfo const* const each : {&copy, static_cast<FaceSegmentInfo const*>(&assigned)})
    {
        EXPECT_FALSE(each->IsVisible());
        EXPECT_EQ(each->PolygonIndices().Indices(), (std::vector<unsigned>{4}));
    }
    EXPECT_TRUE(segment.PolygonIndices().Indices().empty());
}

TEST(EdgeSegmentInfo, CopiesAreIndependent)
{
    EdgeSegmentInfo segment;
    EXPECT_TRUE(segment.VertexIndices().Indices().empty());
    VertexIndexSet vertices;
    vertices.Append(4);
    vertices.Append(5);
    segment.SetVertexIndexSet(vertices);
    EdgeSegmentInfo const copy(segment);
    EdgeSegmentInfo assigned;
    assigned = segment;
    segment.SetVertexIndexSet(VertexIndexSet());
    EXPECT_EQ(copy.VertexIndices().Indices(), (Indices{4, 5}));
    EXPECT_EQ(assigned.VertexIndices().Indices(), (Indices{4, 5}));
    EXPECT_TRUE(segment.VertexIndices().Indices().empty());
}

TEST(TextureVertexSet2D, AnswersItsVerticesInTwoDimensionsAlone)
{
    TextureVertexSet2D set;
    set.Reserve(2);
    EXPECT_EQ(set.VertexCount(), 0U);
    EXPECT_EQ(set.VertexDimension(), 2);
    set.AddVertex(MeshTextureVertex2D(0.25, 0.5), false);
    set.AddVertex(MeshTextureVertex2D(0.75, 1.0), false);
    ASSERT_EQ(set.VertexCount(), 2U);

    MeshTextureVertex2D two(-1.0, -2.0);
    MeshTextureVertex3D three(-1.0, -2.0, -3.0);
    EXPECT_EQ(set.VertexAt(2, two), kIsValueSpecified_No);
    EXPECT_EQ(set.VertexAt(~0UL, two), kIsValueSpecified_No);
    EXPECT_EQ(two.U(), -1.0);
    EXPECT_EQ(set.VertexAt(1, two), kIsValueSpecified_Yes);
    EXPECT_EQ(two.U(), 0.75);
    EXPECT_EQ(two.V(), 1.0);
    EXPECT_EQ(set.VertexAt(0, three), kIsValueSpecified_No);
    EXPECT_EQ(three.W(), -3.0);
}

TEST(TextureVertexSet3D, AnswersItsVerticesInThreeDimensionsAlone)
{
    TextureVertexSet3D set;
    set.Reserve(1);
    EXPECT_EQ(set.VertexDimension(), 3);
    set.AddVertex(MeshTextureVertex3D(0.25, 0.5, 0.75), false);
    ASSERT_EQ(set.VertexCount(), 1U);

    MeshTextureVertex2D two(-1.0, -2.0);
    MeshTextureVertex3D three(-1.0, -2.0, -3.0);
    EXPECT_EQ(set.VertexAt(0, two), kIsValueSpecified_No);
    EXPECT_EQ(two.V(), -2.0);
    EXPECT_EQ(set.VertexAt(1, three), kIsValueSpecified_No);
    EXPECT_EQ(three.U(), -1.0);
    EXPECT_EQ(set.VertexAt(0, three), kIsValueSpecified_Yes);
    EXPECT_EQ(three.U(), 0.25);
    EXPECT_EQ(three.V(), 0.5);
    EXPECT_EQ(three.W(), 0.75);
}

TEST(TextureVertexSet, RepeatsStayUnlessUniquenessIsAskedFor)
{
    TextureVertexSet2D two;
    TextureVertexSet3D three;
    for (bool const unique : {false, false, true})
    {
        two.AddVertex(MeshTextureVertex2D(1.0, 2.0), unique);
        three.AddVertex(MeshTextureVertex3D(1.0, 2.0, 3.0), unique);
    }
    EXPECT_EQ(two.VertexCount(), 2U);
    EXPECT_EQ(three.VertexCount(), 2U);
    two.AddVertex(MeshTextureVertex2D(1.0, 2.5), true);
    two.AddVertex(MeshTextureVertex2D(1.5, 2.0), true);
    three.AddVertex(MeshTextureVertex3D(1.0, 2.0, 3.5), true);
    EXPECT_EQ(two.VertexCount(), 4U);
    EXPECT_EQ(three.VertexCount(), 3U);
}

TEST(TextureVertexSet, IsTiedToNoMaterials)
{
    IdSet materials;
    materials.AddWithUniquenessCheck("before");
    TextureVertexSet2D const two;
    TextureVertexSet3D const three;
    for (ITextureVertexSet const* const set :
         {static_cast<ITextureVertexSet const*>(&two), static_cast<ITextureVertexSet const*>(&three)})
        EXPECT_EQ(set->Materials(materials), kIsValueSpecified_No);
    EXPECT_TRUE(materials.Contains("before"));
}

struct Releaser
{
    void operator()(EditablePolygon* polygon) const { polygon->Release(); }
};

using PolygonPtr = std::unique_ptr<EditablePolygon, Releaser>;

std::optional<Indices> Copied(EditablePolygon::IndexList const& list)
{
    if (!list.data)
        return {};
    return Indices(list.data, list.data + list.count);
}

TEST(PolygonFactory, APolygonHasNoListsUntilTheyAreSet)
{
    PolygonPtr const polygon(PolygonFactory::Create(3));
    ASSERT_NE(polygon, nullptr);
    EXPECT_EQ(polygon->VertexCount(), 3);
    for (auto const& list : {polygon->VertexIndices(), polygon->NormalIndices(), polygon->TextureSetIndices(),
                             polygon->TextureVertexIndices()})
    {
        EXPECT_EQ(list.data, nullptr);
        EXPECT_EQ(list.count, 0);
    }
}

TEST(PolygonFactory, APolygonCopiesTheListsItIsGiven)
{
    PolygonPtr const polygon(PolygonFactory::Create(3));
    Indices vertices{5, 6, 7};
    Indices normals{1, 1, 2};
    Indices sets{0, 2};
    Indices textures{10, 11, 12, 13, 14, 15};
    polygon->SetVertexIndices(3, vertices.data());
    EXPECT_EQ(Copied(polygon->NormalIndices()), std::nullopt);
    polygon->SetNormalIndices(3, normals.data());
    polygon->SetTextureVertexIndices(2, 2, sets.data(), 6, textures.data());
    for (Indices* const list : {&vertices, &normals, &sets, &textures})
        list->assign(list->size(), -1);
    EXPECT_EQ(Copied(polygon->VertexIndices()), (Indices{5, 6, 7}));
    EXPECT_EQ(Copied(polygon->NormalIndices()), (Indices{1, 1, 2}));
    EXPECT_EQ(Copied(polygon->TextureSetIndices()), (Indices{0, 2}));
    EXPECT_EQ(Copied(polygon->TextureVertexIndices()), (Indices{10, 11, 12, 13, 14, 15}));
}

TEST(PolygonFactory, ASecondListReplacesTheFirst)
{
    PolygonPtr const polygon(PolygonFactory::Create(3));
    Indices const first{1, 2, 3};
    Indices const second{4};
    polygon->SetVertexIndices(3, first.data());
    polygon->SetVertexIndices(1, second.data());
    EXPECT_EQ(Copied(polygon->VertexIndices()), second);
    EXPECT_EQ(polygon->VertexCount(), 3);
}

TEST(PolygonFactory, AnEmptyListIsAListAllTheSame)
{
    PolygonPtr const polygon(PolygonFactory::Create(0));
    Indices const some{1};
    polygon->SetVertexIndices(0, nullptr);
    polygon->SetNormalIndices(-1, some.data());
    polygon->SetTextureVertexIndices(0, 0, nullptr, 5, nullptr);
    for (auto const& list : {polygon->VertexIndices(), polygon->NormalIndices(), polygon->TextureSetIndices(),
                             polygon->TextureVertexIndices()})
    {
        EXPECT_NE(list.data, nullptr);
        EXPECT_EQ(list.count, 0);
    }
}

TEST(PolygonFactory, VerticesAndNormalsAreAtTheOriginUntilSet)
{
    PolygonVertex const vertex;
    Normal const normal;
    EXPECT_EQ(vertex.x + vertex.y + vertex.z, 0.0);
    EXPECT_EQ(normal.x + normal.y + normal.z, 0.0);
}

}  // namespace
