// The scenes that come with the project show their colours: the style ids in the material slots of meshes, and those
// that meshes name, lead to styles of these diffuse colours.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/appearance/AppearanceScene.h"
#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

using Colors = std::map<std::string, Fractions>;

class Example
{
public:
    explicit Example(std::string const& name)
        : m_producer(Wide((std::string(KVR_EXAMPLES_DIR) + "/" + name + "/" + name + ".xml").c_str()), nullptr)
    {
        m_producer.BeginProcess(IdSet(), nullptr, nullptr);
    }

    template <class Interface>
    Interface& Get(std::string const& id)
    {
        auto* const object = dynamic_cast<Interface*>(m_producer.Load(id.c_str()));
        if (!object)
            throw std::runtime_error("no such object: " + id);
        return *object;
    }

    // The diffuse colours of the styles that the file declares.
    Colors Declared()
    {
        Colors colors;
        for (std::string const& id : Ids(Get<IFile>("file1").StyleSet()))
            colors[id] = ColorOf(Get<IRenderStyle>(id), &IRenderStyle::DiffuseColor).value();
        return colors;
    }

    // The style ids in the slots that the mesh's polygons have.
    std::set<std::string> UsedBy(std::string const& meshId)
    {
        IPolygonMesh const& mesh = Get<IPolygonMesh>(meshId);
        IdSetSet materials;
        if (mesh.PolygonMaterials(materials) != kIsValueSpecified_Yes)
            return {};
        std::set<std::string> used;
        for (unsigned long i = 0; i < mesh.PolygonCount(); ++i)
        {
            unsigned int slot = 0;
            if (mesh.PolygonMaterialIndexAt(i, slot) == kIsValueSpecified_Yes)
            {
                for (std::string const& id : Ids(materials.At(slot)))
                    used.insert(id);
            }
        }
        return used;
    }

private:
    XMLProducer m_producer;
};

TEST(ExampleColors, As1HasFiveColors)
{
    Example scene("as1-oc-214");
    EXPECT_EQ(scene.Declared(), (Colors{{"style1", {0.800000011, 1, 0, 1}},
                                        {"style2", {1, 0, 0, 1}},
                                        {"style3", {1, 0.500000003, 0, 1}},
                                        {"style4", {0, 1, 0, 1}},
                                        {"style5", {0, 0, 1, 1}}}));
}

TEST(ExampleColors, As1ShowsEachMeshInItsOwn)
{
    Example scene("as1-oc-214");
    Colors const declared = scene.Declared();
    // plate, nut, rod, l-bracket, bolt
    constexpr std::pair<char const*, char const*> kMeshStyles[] = {
        {"mesh1", "style1"}, {"mesh2", "style2"}, {"mesh3", "style3"}, {"mesh4", "style4"}, {"mesh5", "style5"}};
    for (auto const& [mesh, style] : kMeshStyles)
    {
        EXPECT_THAT(Ids(scene.Get<IPolygonMesh>(mesh).Styles()), ElementsAre(style)) << mesh;
        EXPECT_THAT(scene.UsedBy(mesh), ElementsAre(style)) << mesh;
        EXPECT_TRUE(declared.contains(style)) << mesh;
    }
}

TEST(ExampleColors, TheArmIsGreyButForOneMeshWithoutColor)
{
    Example scene("lcr_follower_arm");
    EXPECT_EQ(scene.Declared(), (Colors{{"style1", {0.627450987, 0.627450987, 0.627450987, 1}}}));
    for (int i = 1; i <= 32; ++i)
    {
        std::string const mesh = "mesh" + std::to_string(i);
        if (mesh == "mesh2")
        {
            EXPECT_THAT(scene.UsedBy(mesh), ElementsAre());
            EXPECT_THAT(Ids(scene.Get<IPolygonMesh>(mesh).Styles()), ElementsAre());
        }
        else
        {
            EXPECT_THAT(scene.UsedBy(mesh), ElementsAre("style1")) << mesh;
            EXPECT_THAT(Ids(scene.Get<IPolygonMesh>(mesh).Styles()), ElementsAre("style1")) << mesh;
        }
    }
}

// The colours of a connector: one mesh whose polygons are of three materials.
TEST(ExampleColors, AMeshOfThreeMaterialsLeadsToThreeColors)
{
    std::string store = RecordFront(0, "mesh1") + MeshHeadBytes(3, 0, 4, 0) + VertexBytes(3);
    for (std::uint64_t const material : {1, 0, 2, 1})
        store += PolygonFront({0, 1, 2}).Byte(1).U64(material).Bytes();
    std::size_t const tableOffset = MeshInfoHeader(1).Bytes().size() + store.size();
    store = MeshInfoHeader(1, tableOffset).Bytes() + store +
            ByteBuilder().U64(3).String("style1").String("style2").String("style3").Bytes();
    TestScene scene(R"(<Scene><MeshInfo GenerateMesh="True" Path="c.mesh"/><IFile ID="f" Label=""><AttributeSet>
        <StyleSet>
          <IRenderStyle ID="style1" Label="colour 1"><DiffuseColor FractionRed="0.859000021" FractionGreen="0.737999965"
            FractionBlue="0.495999989" FractionAlpha="1"/></IRenderStyle>
          <IRenderStyle ID="style2" Label="colour 2"><DiffuseColor FractionRed="0.272999999" FractionGreen="0.272999999"
            FractionBlue="0.272999999" FractionAlpha="1"/></IRenderStyle>
          <IRenderStyle ID="style3" Label="colour 3"><DiffuseColor FractionRed="0.823999987" FractionGreen="0.819999987"
            FractionBlue="0.781000009" FractionAlpha="1"/></IRenderStyle>
        </StyleSet></AttributeSet></IFile>
        <IPart ID="p" Label=""><ChildSet><IPolygonMesh ID="mesh1" Visibility="1"/></ChildSet></IPart></Scene>)");
    scene.WithFile("c.mesh", store).Begin();
    IPolygonMesh const& mesh = scene.Get<IPolygonMesh>("mesh1");
    IdSetSet materials;
    ASSERT_EQ(mesh.PolygonMaterials(materials), kIsValueSpecified_Yes);
    std::vector<double> reds;
    for (unsigned long i = 0; i < mesh.PolygonCount(); ++i)
    {
        unsigned int slot = 99;
        ASSERT_EQ(mesh.PolygonMaterialIndexAt(i, slot), kIsValueSpecified_Yes);
        UTF8String const id = materials.At(slot).At(0);
        reds.push_back((*ColorOf(scene.Get<IRenderStyle>(id.Value()), &IRenderStyle::DiffuseColor))[0]);
    }
    EXPECT_THAT(reds, ElementsAre(0.272999999, 0.859000021, 0.823999987, 0.272999999));
}

}  // namespace

}  // namespace KVR::Test
