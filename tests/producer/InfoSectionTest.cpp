// The sections of a scene that name side files: how they are switched on, and what reaches the index.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "framework/api/DataIdToPersistentIdMap.h"
#include "framework/api/VitreolSerializedAsset.h"
#include "producer/SideFileIndex.h"
#include "producer/XMLProducerImpl.h"
#include "tests/support/ByteBuilder.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using List = std::vector<std::string>;

std::string Assets(std::string const& id, std::string const& content = "asset")
{
    return ByteBuilder().Raw("KVRASSET").U64(1).U64(1).String(id).String("kind").String(content).Bytes();
}

std::string PersistentIds(std::string const& id, std::string const& dataId = "d", std::string const& value = "p")
{
    return "<Ids><SubObjectPersistentIds ID=\"" + id + "\"><SubObject DataId=\"" + dataId + "\" PersistentId=\"" +
           value + "\"/></SubObjectPersistentIds></Ids>";
}

// Scans a document in a folder with side files, and keeps what a producer keeps inside.
class InfoSections : public testing::Test
{
protected:
    void Scan(std::string const& sections)
    {
        m_producer =
            std::make_unique<XMLProducerImpl>(m_folder.Write("scene.xml", "<Scene>" + sections + "</Scene>"), nullptr);
        m_producer->BeginProcess(nullptr);
    }
    void File(std::string const& name, std::string const& bytes) { m_folder.Write(name, bytes); }

    List AssetIds() const { return KeysOf(m_producer->sideFileIndex->vitreolAssets); }
    List PersistentIdOwners() const { return KeysOf(m_producer->sideFileIndex->subObjectPersistentIds); }
    SideFileIndex& Index() const { return *m_producer->sideFileIndex; }

private:
    template <class Map>
    static List KeysOf(Map const& map)
    {
        List keys;
        for (auto const& entry : map)
            keys.push_back(Text(entry.first));
        return keys;
    }

    TempFolder m_folder;
    std::unique_ptr<XMLProducerImpl> m_producer;
};

}  // namespace

TEST_F(InfoSections, AreSwitchedOnByTrueAloneExactly)
{
    File("assets.bin", Assets("s"));
    File("ids.xml", PersistentIds("o"));
    for (char const* const value : {"true", "TRUE", "1", "yes", "", " True", "True ", "False", "0"})
    {
        std::string const text = value;
        Scan("<VitreolMaterialInfo GenerateSerializedVitreol='" + text +
             "' Path='assets.bin'/><SubObjectPersistentIdInfo GenerateSubObjectPersistentId='" + text +
             "' Path='ids.xml'/>");
        EXPECT_EQ(AssetIds(), List{}) << text;
        EXPECT_EQ(PersistentIdOwners(), List{}) << text;
    }
    Scan(R"(<VitreolMaterialInfo GenerateSerializedVitreol="True" Path="assets.bin"/>
            <SubObjectPersistentIdInfo GenerateSubObjectPersistentId="True" Path="ids.xml"/>)");
    EXPECT_EQ(AssetIds(), List{"s"});
    EXPECT_EQ(PersistentIdOwners(), List{"o"});
}

TEST_F(InfoSections, AreSkippedWithoutTheirSwitch)
{
    File("assets.bin", Assets("s"));
    File("ids.xml", PersistentIds("o"));
    Scan(R"(<VitreolMaterialInfo Path="assets.bin"/><SubObjectPersistentIdInfo Path="ids.xml"/>
            <VitreolMaterialInfo GenerateSubObjectPersistentId="True" Path="assets.bin"/>
            <SubObjectPersistentIdInfo GenerateSerializedVitreol="True" Path="ids.xml"/>
            <VitreolMaterialInfo generateserializedvitreol="True" Path="assets.bin"/>)");
    EXPECT_EQ(AssetIds(), List{}) << "nor by the switch of another";
    EXPECT_EQ(PersistentIdOwners(), List{});
}

TEST_F(InfoSections, AreSkippedWithoutAPath)
{
    File("assets.bin", Assets("s"));
    File("ids.xml", PersistentIds("o"));
    Scan(R"(<VitreolMaterialInfo GenerateSerializedVitreol="True"/>
            <VitreolMaterialInfo GenerateSerializedVitreol="True" path="assets.bin"/>
            <SubObjectPersistentIdInfo GenerateSubObjectPersistentId="True"/>)");
    EXPECT_EQ(AssetIds(), List{});
    EXPECT_EQ(PersistentIdOwners(), List{});
}

TEST_F(InfoSections, WithAFileThatCannotBeReadLetTheScanGoOn)
{
    File("bad.bin", "no assets at all");
    File("bad.xml", "<Ids><SubObjectPersistentIds ID='o1'><SubObject DataId='d' PersistentId='p'/><broken");
    File("cut.bin", Assets("s1").substr(0, 30));
    File("assets.bin", Assets("s2"));
    File("ids.xml", PersistentIds("o2"));
    Scan(R"(<VitreolMaterialInfo GenerateSerializedVitreol="True" Path="none.bin"/>
            <VitreolMaterialInfo GenerateSerializedVitreol="True" Path="bad.bin"/>
            <VitreolMaterialInfo GenerateSerializedVitreol="True" Path="cut.bin"/>
            <VitreolMaterialInfo GenerateSerializedVitreol="True" Path=""/>
            <SubObjectPersistentIdInfo GenerateSubObjectPersistentId="True" Path="none.xml"/>
            <SubObjectPersistentIdInfo GenerateSubObjectPersistentId="True" Path="bad.xml"/>
            <SubObjectPersistentIdInfo GenerateSubObjectPersistentId="True" Path=""/>
            <VitreolMaterialInfo GenerateSerializedVitreol="True" Path="assets.bin"/>
            <SubObjectPersistentIdInfo GenerateSubObjectPersistentId="True" Path="ids.xml"/>)");
    EXPECT_EQ(AssetIds(), List{"s2"});
    EXPECT_EQ(PersistentIdOwners(), (List{"o1", "o2"})) << "what stood before an error has been read";
}

TEST_F(InfoSections, OfOneKindAllLoadIntoTheSameMap)
{
    File("1.bin", Assets("s1", "first"));
    File("2.bin", Assets("s2"));
    File("3.bin", Assets("s1", "other"));
    File("1.xml", PersistentIds("o1", "d1"));
    File("2.xml", PersistentIds("o1", "d2"));
    Scan(R"(<VitreolMaterialInfo GenerateSerializedVitreol="True" Path="1.bin"/>
            <VitreolMaterialInfo GenerateSerializedVitreol="True" Path="2.bin"/>
            <VitreolMaterialInfo GenerateSerializedVitreol="True" Path="3.bin"/>
            <SubObjectPersistentIdInfo GenerateSubObjectPersistentId="True" Path="1.xml"/>
            <SubObjectPersistentIdInfo GenerateSubObjectPersistentId="True" Path="2.xml"/>)");
    EXPECT_EQ(AssetIds(), (List{"s1", "s2"}));
    VitreolSerializedAsset const& first = *Index().vitreolAssets.at("s1");
    EXPECT_EQ(std::string(static_cast<char const*>(first.Data()), first.Size()), "first") << "of two the first stays";
    EXPECT_EQ(Text(first.Type()), "kind");
    ASSERT_EQ(PersistentIdOwners(), List{"o1"});
    EXPECT_EQ(Index().subObjectPersistentIds.at("o1")->Size(), 2U);
}

TEST_F(InfoSections, AreReadWhereTheyStandAlsoBehindAllObjects)
{
    File("assets.bin", Assets("s"));
    Scan(R"(<IPart ID="p" Label=""/><VitreolMaterialInfo GenerateSerializedVitreol="True" Path="assets.bin"/>)");
    EXPECT_EQ(AssetIds(), List{"s"});
}

TEST_F(InfoSections, CountOnlyUnderTheRoot)
{
    File("assets.bin", Assets("s"));
    Scan(R"(<Group><VitreolMaterialInfo GenerateSerializedVitreol="True" Path="assets.bin"/></Group>
            <IPart ID="p"><VitreolMaterialInfo GenerateSerializedVitreol="True" Path="assets.bin"/></IPart>
            <vitreolMaterialInfo GenerateSerializedVitreol="True" Path="assets.bin"/>)");
    EXPECT_EQ(AssetIds(), List{});
}

TEST_F(InfoSections, OfEveryKindWithFilesThatAreMissingDoNoHarm)
{
    Scan(R"(<SatInfo/><SatInfo Path=""/><SatInfo Path="none.sab"/>
            <GeometryInfo GenerateGeometry="True" Path="none"/><GeometryInfo GenerateGeometry="True"/>
            <MeshInfo GenerateMesh="True" Path="none"/><MeshInfo GenerateMesh="true" Path="none"/><MeshInfo/>
            <MeshSegmentInfo GenerateMeshSegment="True" Path="none"/><MeshSegmentInfo Path="none"/>)");
    EXPECT_TRUE(Index().bodyEntities.empty());
    EXPECT_TRUE(Index().curveEntities.empty());
    EXPECT_TRUE(Index().meshStore.empty());
    EXPECT_TRUE(Index().curveStore.empty());
}

TEST(UnreadSideFiles, AreToldAsTheyAreMet)
{
    TestScene scene(R"(<S><SatInfo/><SatInfo Path=""/><SatInfo Path="none.sab"/><SatInfo Path="there.sab"/>
<GeometryInfo GenerateGeometry="True" Path="/g"/><MeshInfo GenerateMesh="True" Path="../m"/>
<MeshInfo GenerateMesh="False" Path="off"/><MeshSegmentInfo GenerateMeshSegment="True" Path="folder"/>
<VitreolMaterialInfo GenerateSerializedVitreol="True" Path="/absolute"/>
<VitreolMaterialInfo GenerateSerializedVitreol="True" Path="v"/>
<SubObjectPersistentIdInfo GenerateSubObjectPersistentId="True" Path="ids"/></S>)");
    scene.WithFile("there.sab", "").WithFile("folder/in", "");
    List paths;
    scene.Options().SetUnreadSideFileHandler([&](UTF16String const& path) { paths.push_back(Text(path)); });
    scene.Begin();
    std::string const folder = scene.Folder();
    EXPECT_EQ(paths, (List{folder + "/none.sab", folder + "/g", folder + "/../m", folder + "/folder", "/absolute",
                           folder + "/v", folder + "/ids"}));
}

// Nothing is at the beginning of a process's memory, so that the system gives an error instead of bytes.
TEST(UnreadSideFiles, ThoseThatTheSystemDoesNotGiveAreTold)
{
    TestScene scene(R"(<S><SatInfo Path="memory.sab"/><SatInfo Path="damaged.sab"/></S>)");
    std::string const folder = scene.Folder();
    std::filesystem::create_symlink("/proc/self/mem", folder + "/memory.sab");
    scene.WithFile("damaged.sab", "damaged");
    List paths;
    scene.Options().SetUnreadSideFileHandler([&](UTF16String const& path) { paths.push_back(Text(path)); });
    scene.Begin();
    EXPECT_EQ(paths, (List{folder + "/memory.sab"}));
}

TEST(UnreadSideFiles, NobodyNeedBeTold)
{
    TestScene scene(R"(<S><SatInfo Path="none.sab"/></S>)");
    EXPECT_FALSE(scene.Options().UnreadSideFileHandler());
    EXPECT_NO_THROW(scene.Begin());
    TestScene thrown(R"(<S><SatInfo Path="none.sab"/></S>)");
    thrown.Options().SetUnreadSideFileHandler([](UTF16String const&) { throw std::out_of_range("enough"); });
    EXPECT_THROW(thrown.Begin(), std::out_of_range);
}

TEST_F(InfoSections, ASecondScanAddsNothingTwice)
{
    TestScene scene(R"(<S><VitreolMaterialInfo GenerateSerializedVitreol="True" Path="assets.bin"/></S>)");
    scene.WithFile("assets.bin", Assets("s"));
    XMLProducerImpl producer(UTF16String(UTF8String(scene.Path().c_str())), nullptr);
    producer.BeginProcess(nullptr);
    VitreolSerializedAsset const* const asset = producer.sideFileIndex->vitreolAssets.at("s");
    producer.BeginProcess(nullptr);
    ASSERT_EQ(producer.sideFileIndex->vitreolAssets.size(), 1U);
    EXPECT_EQ(producer.sideFileIndex->vitreolAssets.at("s"), asset);
}

}  // namespace KVR::Test
