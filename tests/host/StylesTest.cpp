// What the program shows of styles, textures and properties.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/ByteBuilder.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

std::string const kAs1 = KVR_EXAMPLES_DIR "/as1-oc-214/as1-oc-214.xml";

constexpr char kScene[] = R"(<Scene><IUniverse/>
  <MeshInfo GenerateMesh="True" Path="m.mesh"/>
  <VitreolMaterialInfo GenerateSerializedVitreol="True" Path="a.assets"/>
  <IFile ID="f" Label="file"><AttributeSet>
    <TextureSet><IMaterialTexture ID="t" Label="wood" TextureType="2" TextureFileReference="oak.png" RotateAngle="0.5"
      EmbeddedTextureImageSize="9" EmbeddedTextureImageType="1" ProjectType="3" ProcedureU="4" RepeatU="1.5"
      ProcedureV="5" RepeatV="2.5" ProceduralName="marble"><TextureDimensions Width="640" Height="480"/>
      <TextureCenter X="0.1" Y="0.2"/><TextureOffset X="1" Y="2"/><TextureScale X="3" Y="4"/>
      <TextureSizeForScale X="5" Y="6"/></IMaterialTexture></TextureSet>
    <StyleSet>
      <IRenderStyle ID="red" Label="Red" PointStyleMarkerType="kPointStyleMarkerType_Plus" PointStyleMarkerSize="2"
        CurveStyleFont="kCurveStyleFontType_ISO_Dot" CurveStyleWidth="0.5"
        CurveStyleFillArea="kCurveStyleFillType_Solid">
        <DiffuseColor FractionRed="1" FractionGreen="0.5" FractionBlue="0" ColorFactor="0.25" Shininess="7"
          ShaderType="3" Transparency="0.125" TextureId="t"><TransparencyRGB FractionRed="0.5" FractionGreen="0.5"
          FractionBlue="0.5"/></DiffuseColor></IRenderStyle>
      <IRenderStyle ID="oak" Label="Oak"><DiffuseColor FractionRed="7" FractionGreen="-1" FractionBlue="0.2"/>
        <VitreolStyleInfo VitreolLibraryId="lib"/></IRenderStyle>
      <IRenderStyle ID="plain" Label="Plain"/>
    </StyleSet></AttributeSet><ChildSet><C ID="a"/></ChildSet></IFile>
  <IAssembly ID="a" Label="top"><ChildSet><IInstance ID="i" Label="placed" Visibility="1"><Child ID="p"/>
    <Styles><StyleRef ID="oak"/></Styles></IInstance></ChildSet></IAssembly>
  <IPart ID="p" Label="part"><Styles><StyleRef ID="plain"/><StyleRef ID="gone"/></Styles>
    <ChildSet><IPolygonMesh ID="m" Label="mesh" Visibility="1"><Styles><StyleRef ID="red"/></Styles></IPolygonMesh>
    </ChildSet></IPart></Scene>)";

class StyledFolder
{
public:
    StyledFolder()
    {
        m_folder.Write("scene.xml", kScene);
        std::string store = RecordFront(0, "m") + MeshHeadBytes(3, 0, 2, 0) + VertexBytes(3);
        for (std::uint64_t const material : {1, 0})
            store += PolygonFront({0, 1, 2}).Byte(1).U64(material).Bytes();
        std::size_t const table = MeshInfoHeader(1).Bytes().size() + store.size();
        m_folder.Write("m.mesh", MeshInfoHeader(1, table).Bytes() + store +
                                     ByteBuilder().U64(2).String("red").String("oak").Bytes());
        m_folder.Write("a.assets",
                       ByteBuilder().Raw("KVRASSET").U64(1).U64(1).String("oak").String("wood").String("abc").Bytes());
        m_folder.Write("scene.kvrproperty",
                       R"(<P><Property ID="p1" ObjectID="m" Name="Supplier" Value="ACME"/><Property ID="p2" ObjectID="i"
                          Name="Count" Type="kInt" Value="3"/><Property ID="p3" ObjectID="p" Name="x" Value="y"/></P>)");
    }

    std::vector<std::string> Arguments(std::vector<std::string> const& words) const
    {
        std::vector<std::string> arguments = words;
        arguments.push_back(m_folder.NarrowPathOf("scene.xml"));
        return arguments;
    }
    json Dump() const
    {
        ToolRun const run = RunTool(Arguments({"dump"}));
        EXPECT_EQ(run.status, 0) << run.error;
        return json::parse(run.out);
    }

private:
    TempFolder m_folder;
};

TEST(StylesOfTheTree, StandAsTextWhereStandardOutputIsNoTerminal)
{
    StyledFolder const folder;
    for (char const* color : {"--color=auto", "--color=always", "--color=never"})
    {
        ToolRun const run = RunTool(folder.Arguments({"tree", "--styles", color}));
        EXPECT_EQ(run.status, 0) << run.error;
        EXPECT_THAT(run.out, HasSubstr("styles #ff8000 #ff0033\n")) << "the mesh, and its materials";
        EXPECT_THAT(run.out, Not(HasSubstr("48;2"))) << color;
    }
}

TEST(StylesOfTheTree, OfAnInstanceAreItsOwnAndThoseOfWhatItPlaces)
{
    StyledFolder const folder;
    ToolRun const run = RunTool(folder.Arguments({"tree", "--styles"}));
    EXPECT_THAT(run.out, HasSubstr("visible, 1 child, styles #ff0033 colourless missing\n"));
    EXPECT_THAT(run.out, HasSubstr("IFile \"file\" f, 1 child\n")) << "a declaration is no use";
}

TEST(StylesOfTheTree, AreNotShownUnasked)
{
    StyledFolder const folder;
    EXPECT_THAT(RunTool(folder.Arguments({"tree"})).out, Not(HasSubstr("styles")));
    EXPECT_THAT(RunTool(folder.Arguments({"tree", "--json"})).out, Not(HasSubstr("Styles")));
}

TEST(StylesOfTheTree, AreBlocksOfColorOnATerminal)
{
    StyledFolder const folder;
    ToolRun const run = RunToolOnTerminal(folder.Arguments({"tree", "--styles", "--color=always"}));
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("styles \x1b[48;2;255;128;0m  \x1b[0m \x1b[48;2;255;0;51m  \x1b[0m"));
    EXPECT_THAT(run.out, Not(HasSubstr("#ff8000")));
}

TEST(StylesOfTheTree, AreTextOnATerminalWithoutColor)
{
    StyledFolder const folder;
    ToolRun const run = RunToolOnTerminal(folder.Arguments({"tree", "--styles", "--color=never"}));
    EXPECT_THAT(run.out, HasSubstr("styles #ff8000 #ff0033"));
    EXPECT_THAT(run.out, Not(HasSubstr("\x1b[")));
}

TEST(StylesOfTheTree, InJsonHaveIdLabelAndColor)
{
    StyledFolder const folder;
    json const tree = json::parse(RunTool(folder.Arguments({"tree", "--styles", "--json"})).out);
    json const& instance = tree["Tree"][0]["Children"][0]["Children"][0];
    EXPECT_EQ(instance["Styles"], json::parse(R"([{"Id": "oak", "Label": "Oak", "DiffuseColor": "#ff0033"},
        {"Id": "plain", "Label": "Plain", "DiffuseColor": null}, {"Id": "gone", "Label": null, "DiffuseColor": null}])"));
    EXPECT_EQ(tree["Tree"][0]["Styles"], json::array());
}

TEST(StylesOfTheTree, BeyondEightAreCounted)
{
    std::string styles;
    std::string references;
    for (int i = 0; i < 10; ++i)
    {
        std::string const id = "s" + std::to_string(i);
        styles += "<IRenderStyle ID=\"" + id +
                  "\"><DiffuseColor FractionRed=\"0\" FractionGreen=\"0\" FractionBlue=\"0\"/></IRenderStyle>";
        references += "<StyleRef ID=\"" + id + "\"/>";
    }
    TempFolder const folder;
    folder.Write("s.xml", "<S><IFile ID=\"f\" Label=\"\"><AttributeSet><StyleSet>" + styles +
                              "</StyleSet></AttributeSet><ChildSet><C ID=\"p\"/></ChildSet></IFile><IPart ID=\"p\" "
                              "Label=\"\"><Styles>" +
                              references + "</Styles></IPart></S>");
    std::string line = "styles";
    for (int i = 0; i < 8; ++i)
        line += " #000000";
    EXPECT_THAT(RunTool({"tree", "--styles", folder.NarrowPathOf("s.xml")}).out, HasSubstr(line + " [+2]\n"));
}

TEST(StylesOfTheTree, OfTheBundledAssemblyAreItsFiveColors)
{
    std::string const out = RunTool({"tree", "--styles", kAs1}).out;
    for (char const* line : {"\"plate\" mesh1, [^\n]*, styles #ccff00\n", "\"nut\" mesh2, [^\n]*, styles #ff0000\n",
                             "\"rod\" mesh3, [^\n]*, styles #ff8000\n", "\"l-bracket\" mesh4, [^\n]*, styles #00ff00\n",
                             "\"bolt\" mesh5, [^\n]*, styles #0000ff\n"})
        EXPECT_THAT(out, ContainsRegex(line));
}

TEST(DumpOfAppearance, HasEveryValueOfAStyle)
{
    StyledFolder const folder;
    json style = folder.Dump()["Objects"]["red"];
    EXPECT_EQ(style, json::parse(R"({"Class": "IRenderStyle", "Id": "red", "Label": "Red", "IsThreadSafe": false,
        "ChangeKey": null, "VersionPersistentId": null, "PropertyIds": [], "Properties": [], "ExtensionData": [],
        "DiffuseColor": [1, 0.5, 0, 1], "DiffuseTexture": "t", "DiffuseFactor": 0.25, "AmbientColor": null,
        "AmbientTexture": null, "AmbientFactor": null, "EmissionColor": null, "EmissionTexture": null,
        "EmissionFactor": null, "SpecularColor": null, "SpecularTexture": null, "SpecularFactor": null, "Shininess": 7,
        "ShaderType": 3, "Reflection": null, "Eccentricity": null, "Rolloff": null, "Transparency": 0.125,
        "TransparencyColor": [0.5, 0.5, 0.5, 1], "BumpMap": null, "CutoutTexture": null, "PointStyleMarker": 2,
        "PointStyleMarkerSize": 2, "CurveStyleFont": 6, "CurveStyleWidth": 0.5, "CurveStyleFillArea": 0})"));
}

TEST(DumpOfAppearance, HasTheAssetAndTheIdsOfALibraryStyle)
{
    StyledFolder const folder;
    json const style = folder.Dump()["Objects"]["oak"];
    EXPECT_EQ(style["Class"], "IVitreolRenderStyle");
    EXPECT_EQ(style["SerializedAsset"], json::parse(R"({"Type": "wood", "Size": 3, "Base64": "YWJj"})"));
    EXPECT_EQ(style["VitreolLibraryId"], "lib");
    EXPECT_EQ(style["AssetDefinitionId"], nullptr);
    EXPECT_EQ(style["AssetInstanceVersionGUID"], nullptr);
    EXPECT_EQ(style["BestFitDiffuseColor"], json::parse("[7, -1, 0.2, 1]"));
}

TEST(DumpOfAppearance, HasEveryValueOfATexture)
{
    StyledFolder const folder;
    EXPECT_EQ(folder.Dump()["Objects"]["t"], json::parse(R"({"Class": "IMaterialTexture", "Id": "t", "Label": "wood",
        "IsThreadSafe": false, "ChangeKey": null, "VersionPersistentId": null, "PropertyIds": [], "Properties": [],
        "ExtensionData": [], "TextureType": 2, "TextureFileReference": "oak.png", "EmbeddedTextureImageSize": 9,
        "EmbeddedTextureImageType": 1, "TextureDimensions": [640, 480], "TextureCenter": [0.1, 0.2],
        "TextureOffset": [1, 2], "TextureScale": [3, 4], "TextureSizeForScale": [5, 6], "RotateAngle": 0.5,
        "ProjectType": 3, "ProcedureU": 4, "RepeatU": 1.5, "ProcedureV": 5, "RepeatV": 2.5, "ProceduralName": "marble",
        "TintColor": null, "AssetId": "", "TextureTransform": null})"));
}

TEST(DumpOfAppearance, ListsTheSetsOfAFile)
{
    StyledFolder const folder;
    json const file = folder.Dump()["Objects"]["f"];
    EXPECT_EQ(file["StyleSet"], json::parse(R"(["red", "oak", "plain"])"));
    EXPECT_EQ(file["TextureSet"], json::parse(R"(["t"])"));
}

TEST(DumpOfProperties, HasThoseOfMeshesAndInstancesAlone)
{
    StyledFolder const folder;
    json const objects = folder.Dump()["Objects"];
    EXPECT_EQ(objects["m"]["PropertyIds"], json::parse(R"(["p1"])"));
    EXPECT_EQ(objects["m"]["Properties"],
              json::parse(R"([{"Id": "p1", "Name": "Supplier", "Type": 0, "Value": "ACME"}])"));
    EXPECT_EQ(objects["i"]["Properties"], json::parse(R"([{"Id": "p2", "Name": "Count", "Type": 1, "Value": 3}])"));
    EXPECT_EQ(objects["p"]["PropertyIds"], json::array());
}

}  // namespace

}  // namespace KVR::Test
