#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/ByteBuilder.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::HasSubstr;

constexpr char kScene[] = R"(<Scene>
  <IUniverse><DefaultCurveColor FractionRed="0.25" FractionGreen="0.5" FractionBlue="1" FractionAlpha="0.75"/>
    <CustomData><CustomDataItem Type="5" Key="k" Value="v"/><CustomDataItem Type="9" Key="ids"><ID Value="a"/></CustomDataItem>
      <CustomDataItem Type="7" Key="none"/><CustomDataItem Type="8" Key="blob" BlobBufferSize="3" Path="blob.bin"/></CustomData></IUniverse>
  <IFile ID="f" Label="file" FileFullPath="/a/b" LastModificationTime="2024-03-01T12:30:00+02:00">
    <ChildSet><Child ID="asm" Type="IAssembly"/><Child ID="lost" Type="IPart"/></ChildSet>
    <RefFiles><RefFile RefId="r" RefPath="p"/></RefFiles>
    <FileProperties><Title>T</Title><ViewData><UpVector>0,0,1</UpVector></ViewData>
      <CustomProperties><CustomProperty Key="n" Type="kDouble" Value="0.1"/><CustomProperty Key="t" Type="kTime" Value="2024-03-01"/></CustomProperties>
    </FileProperties></IFile>
  <IAssembly ID="asm" Label="top"><ChildSet>
    <IInstance ID="i" Label="placed" Visibility="1" VersionPersistentId="v"><Child ID="p" Transformation="1 0 0 0.1 0 1 0 2 0 0 1 3 0 0 0 1"/>
      <ChangeKey>key</ChangeKey><ExtensionData TypeId="t" Content="c" Type="kObjectPathTypeEnum_OccurancePath" OccurrencePath="[a][b]"/></IInstance></ChildSet>
    <CrossLevelAttributes><Visibilities><EntityVisibility Path="[i]" Visibility="1"/></Visibilities>
      <Styles><EntityStyles Path="[i]"><Styles><StyleRef ID="s"/></Styles></EntityStyles></Styles></CrossLevelAttributes></IAssembly>
  <IPart ID="p" Label="part"><Unit LengthUnit="kUnitType_Inch" DisplayAngleUnit="kUnitType_Degree" DisplayLengthUnit="kUnitType_Mil"/></IPart>
  <IPart ID="apart" Label=""/>
</Scene>)";

struct Dumped
{
    explicit Dumped(std::string const& xml, std::vector<std::string> options = {})
    {
        folder.Write("scene.xml", xml);
        folder.Write("blob.bin", "abc");
        options.insert(options.begin(), {"dump", folder.NarrowPathOf("scene.xml")});
        run = RunTool(options);
        document = json::parse(run.out, nullptr, false);
    }
    json const& Object(char const* id) const { return document["Objects"][id]; }

    TempFolder folder;
    ToolRun run;
    json document;
};

TEST(Dump, AWholeSceneIsOneJsonObjectInItsOrder)
{
    Dumped const dump(kScene);
    ASSERT_EQ(dump.run.status, 0) << dump.run.error;
    ASSERT_FALSE(dump.document.is_discarded());
    auto const ordered = nlohmann::ordered_json::parse(dump.run.out);
    std::vector<std::string> keys;
    for (auto const& [key, value] : ordered.items())
        keys.push_back(key);
    EXPECT_THAT(keys, testing::ElementsAre("QueryFile", "RootObjectId", "Error", "Events", "Universe", "Objects"));
    std::vector<std::string> ids;
    for (auto const& [key, value] : ordered["Objects"].items())
        ids.push_back(key);
    EXPECT_THAT(ids, testing::ElementsAre("f", "asm", "i", "s", "p"));
    EXPECT_EQ(dump.document["QueryFile"], (json{{"SupportsFile", true}, {"HasAssemblyStructure", true}}));
    EXPECT_EQ(dump.document["RootObjectId"], "f");
    EXPECT_TRUE(dump.document["Error"].is_null());
}

TEST(Dump, TheUniverseAnswersColoursAndCustomData)
{
    json const universe = Dumped(kScene).document["Universe"];
    EXPECT_EQ(universe["DefaultCurveColor"], json({0.25, 0.5, 1, 0.75}));
    EXPECT_TRUE(universe["DefaultSurfaceColor"].is_null());
    EXPECT_TRUE(universe["ViewingDataOf"].is_null());
    EXPECT_EQ(universe["CustomData"][0], (json{{"Key", "k"}, {"Value", "v"}}));
    EXPECT_EQ(universe["CustomData"][1]["Value"], json({"a"}));
    EXPECT_TRUE(universe["CustomData"][2]["Value"].is_null());
    EXPECT_EQ(universe["CustomData"][3]["Value"], (json{{"Size", 3}, {"Base64", "YWJj"}}));
}

TEST(Dump, AFileAnswersItsMembers)
{
    json const file = Dumped(kScene).Object("f");
    EXPECT_EQ(file["Class"], "IFile");
    EXPECT_EQ(file["Children"], json({"asm", ""}));
    EXPECT_EQ(file["FileFullPath"], "/a/b");
    EXPECT_EQ(file["LastModificationTime"], "2024-03-01T10:30:00");
    EXPECT_EQ(file["IsRoot"], true);
    EXPECT_EQ(file["RefFiles"][0], (json{{"Id", "r"}, {"Path", "p"}}));
    EXPECT_EQ(file["FileProperties"]["Title"], "T");
    EXPECT_TRUE(file["FileProperties"]["Author"].is_null());
    EXPECT_EQ(file["FileProperties"]["CustomProperties"][0], (json{{"Name", "n"}, {"Type", 2}, {"Value", 0.1}}));
    EXPECT_EQ(file["FileProperties"]["CustomProperties"][1]["Value"], "2024-03-01T00:00:00");
    EXPECT_TRUE(file["DisplayLengthUnit"].is_null());
    EXPECT_EQ(file["IsThreadSafe"], false);
}

TEST(Dump, AnInstanceAnswersItsTransformExactly)
{
    Dumped const dump(kScene, {"--extension", "t"});
    json const instance = dump.Object("i");
    EXPECT_EQ(instance["Transform"], json({1, 0, 0, 0.1, 0, 1, 0, 2, 0, 0, 1, 3, 0, 0, 0, 1}));
    EXPECT_EQ(instance["TargetId"], "p");
    EXPECT_EQ(instance["IsVisible"], true);
    EXPECT_EQ(instance["IsNetVisible"], false);
    EXPECT_EQ(instance["ChangeKey"], "key");
    EXPECT_EQ(instance["VersionPersistentId"], "v");
    EXPECT_EQ(instance["ExtensionData"][0]["Data"], "c");
    EXPECT_EQ(instance["ExtensionData"][0]["ObjectPath"], json({"a", "b"}));
    EXPECT_EQ(instance["ExtensionData"][0]["ObjectPathType"], 0);
    EXPECT_TRUE(instance["ExtensionData"][0]["LengthUnit"].is_null());
}

TEST(Dump, CrossLevelListsAndUnitsComeThrough)
{
    Dumped const dump(kScene);
    EXPECT_EQ(dump.Object("asm")["CrossLevelVisibilities"][0], (json{{"Path", {"i"}}, {"Visible", true}}));
    EXPECT_EQ(dump.Object("asm")["CrossLevelStyles"][0], (json{{"Path", {"i"}}, {"Styles", {"s"}}}));
    EXPECT_EQ(dump.Object("p")["LengthUnit"], "kUnitType_Inch");
    EXPECT_EQ(dump.Object("p")["DisplayLengthUnit"], "kUnitType_Mil");
    EXPECT_TRUE(dump.Object("s").is_null()) << "an id that is not found";
}

TEST(Dump, FurtherIdsBeginFurtherWalks)
{
    Dumped const dump(kScene, {"--id", "apart", "--id", "nowhere"});
    EXPECT_EQ(dump.Object("apart")["Class"], "IPart");
    EXPECT_TRUE(dump.document["Objects"].contains("nowhere"));
    EXPECT_TRUE(dump.Object("nowhere").is_null());
}

TEST(Dump, APrefixGivesNewIds)
{
    Dumped const dump(kScene, {"--prefix", "n"});
    EXPECT_EQ(dump.run.status, 0);
    EXPECT_EQ(dump.document["RootObjectId"].get<std::string>().front(), 'n');
    EXPECT_FALSE(dump.document["Objects"].contains("f"));
}

TEST(Dump, AFileThatCannotBeParsedIsAnErrorAndTheJsonIsPrintedAllTheSame)
{
    Dumped const dump("<Scene>");
    EXPECT_EQ(dump.run.status, 1);
    EXPECT_EQ(dump.document["Error"]["Type"], "FileException");
    EXPECT_EQ(dump.document["Error"]["FileName"], dump.folder.NarrowPathOf("scene.xml"));
    EXPECT_EQ(dump.document["Error"]["ErrorCode"], 0);
    EXPECT_EQ(dump.document["Error"]["Reporter"], 2);
    EXPECT_FALSE(dump.document["Error"].contains("Message"));
    EXPECT_TRUE(dump.document["RootObjectId"].is_null());
    EXPECT_TRUE(dump.document["Universe"].is_null());
    EXPECT_THAT(dump.run.error, HasSubstr("scene.xml"));
    EXPECT_EQ(std::count(dump.run.error.begin(), dump.run.error.end(), '\n'), 1);
}

TEST(Dump, ASceneWithoutRootIsReadAndSaysSo)
{
    Dumped const dump("<Scene/>");
    EXPECT_EQ(dump.run.status, 0);
    EXPECT_EQ(dump.document["Error"],
              (json{{"Type", "GeneralException"}, {"Message", "Could not find the root object id."}}));
}

TEST(Dump, AMeshIsDumpedWholeOrInSummary)
{
    std::string const xml =
        R"(<S><MeshInfo GenerateMesh="True" Path="m"/><IFile ID="f"><ChildSet><C ID="m"/></ChildSet></IFile><IPolygonMesh ID="m"/></S>)";
    ByteBuilder store;
    store.U64(0).U64(1).U64(0).U64(0).U64(0).String("m").U64(3).U64(0).U64(1).U64(0).U64(0);
    for (int i = 0; i < 9; ++i)
        store.F64(i / 4.0);
    store.U64(3).U64(0).U64(1).U64(2).Byte(0);
    TempFolder folder;
    folder.Write("scene.xml", xml);
    folder.Write("m", store.Bytes());
    json const whole = json::parse(RunTool({"dump", folder.NarrowPathOf("scene.xml")}).out)["Objects"]["m"];
    EXPECT_EQ(whole["Class"], "IPolygonMesh");
    EXPECT_EQ(whole["VertexCount"], 3);
    EXPECT_EQ(whole["Vertices"][1], json({0.75, 1.0, 1.25}));
    EXPECT_EQ(whole["Polygons"][0]["VertexIndices"], json({0, 1, 2}));
    EXPECT_TRUE(whole["Polygons"][0]["NormalIndices"].is_null());
    EXPECT_TRUE(whole["Polygons"][0]["MaterialIndex"].is_null());
    json const brief =
        json::parse(RunTool({"dump", folder.NarrowPathOf("scene.xml"), "--summary"}).out)["Objects"]["m"];
    EXPECT_EQ(brief["VertexCount"], 3);
    EXPECT_EQ(brief["PolygonCount"], 1);
    EXPECT_FALSE(brief.contains("Vertices"));
    EXPECT_FALSE(brief.contains("Polygons"));
}

TEST(Dump, VolumesAreasAndBoxesAreNotInASummaryUnlessAsked)
{
    auto const body = [](std::vector<std::string> const& options)
    {
        std::vector<std::string> arguments = {"dump", std::string(KVR_EXAMPLES_DIR) + "/complete/complete.xml"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        json const objects = json::parse(RunTool(arguments).out)["Objects"];
        for (json const& object : objects)
            if (object.is_object() && object["Class"] == "IBrep" && object["Body"].is_object())
                return object["Body"];
        return json();
    };
    json const whole = body({});
    ASSERT_TRUE(whole.contains("Volume"));
    ASSERT_TRUE(whole.contains("Area"));
    ASSERT_TRUE(whole.contains("BoundingBox"));
    EXPECT_EQ(body({"--summary", "--mass"}), whole);
    json expected = whole;
    for (char const* const measure : {"Volume", "Area", "BoundingBox"})
        expected.erase(measure);
    EXPECT_EQ(body({"--summary"}), expected);
}

TEST(Dump, ADocumentTypeIsRefusedUnlessAllowed)
{
    std::string const xml = "<!DOCTYPE S [<!ENTITY e 'x'>]><S><IFile ID='f' Label='&e;'/></S>";
    Dumped const refused(xml);
    EXPECT_EQ(refused.run.status, 1);
    EXPECT_THAT(refused.run.error, HasSubstr("--allow-dtd"));
    Dumped const allowed(xml, {"--allow-dtd"});
    EXPECT_EQ(allowed.run.status, 0);
    EXPECT_EQ(allowed.Object("f")["Label"], "x");
}

TEST(Dump, AnEntityBombIsRefusedAtOnce)
{
    std::string xml = "<!DOCTYPE S [<!ENTITY e0 'xxxxxxxxxx'>";
    for (int i = 1; i < 30; ++i)
        xml +=
            "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";&e" + std::to_string(i - 1) + ";'>";
    Dumped const dump(xml + "]><S><IFile ID='f' Label='&e29;'/></S>");
    EXPECT_EQ(dump.run.status, 1);
    // What the program takes for itself is more under sanitizers.
    Dumped const plain("<S><IFile ID='f'/></S>");
    EXPECT_LT(dump.run.peakMemory, plain.run.peakMemory + 20 * 1024);
}

TEST(Dump, AnExternalEntityIsNotRead)
{
    TempFolder folder;
    folder.Write("secret", "TOPSECRET");
    folder.Write("scene.xml",
                 "<!DOCTYPE S [<!ENTITY e SYSTEM 'secret'>]><S><IFile "
                 "ID='f'><FileProperties><Title>&e;</Title></FileProperties></IFile></S>");
    ToolRun const run = RunTool({"dump", folder.NarrowPathOf("scene.xml")});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, testing::Not(HasSubstr("TOPSECRET")));
}

}  // namespace

}  // namespace KVR::Test
