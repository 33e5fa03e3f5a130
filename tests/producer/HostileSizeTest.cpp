// Much of everything: attributes of 10 MB, a hundred thousand elements with one id.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/FullScene.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

constexpr unsigned long long kLong = 10000000;
constexpr unsigned long long kMany = 100000;

std::string Long(char c = 'x')
{
    return std::string(kLong, c);
}

}  // namespace

TEST(HostileSize, IdsLabelsAndKeysOfTenMegabytesAreKept)
{
    TestScene scene("<S><IPart ID=\"" + Long('i') + "\" Label=\"" + Long('l') + "\" VersionPersistentId=\"" +
                    Long('v') + "\"><ChangeKey>" + Long('k') + "</ChangeKey><Styles><StyleRef ID=\"" + Long('s') +
                    "\"/></Styles></IPart></S>");
    scene.Begin();
    IPart const& part = scene.Get<IPart>(Long('i').c_str());
    EXPECT_TRUE(part.Label() == Wide(Long('l').c_str()));
    UTF8String text;
    ASSERT_EQ(part.VersionPersistentId(text), kIsValueSpecified_Yes);
    EXPECT_EQ(text.Size(), kLong);
    ASSERT_EQ(part.ChangeKey(kSnapshotVersion_Current, text), kIsValueSpecified_Yes);
    EXPECT_TRUE(text == UTF8String(std::string_view(Long('k'))));
    ASSERT_EQ(part.Styles().Size(), 1U);
    EXPECT_EQ(part.Styles()[0].Size(), kLong);
}

TEST(HostileSize, NumbersUnitsAndTimesOfTenMegabytesDoNotConvert)
{
    TestScene scene("<S><IUniverse><DefaultCurveColor FractionRed=\"" + Long('1') +
                    "\" FractionGreen=\"0.5\" FractionBlue=\"" + Long(' ') + "\"/></IUniverse><IFile ID=\"f\" " +
                    "LastModificationTime=\"" + Long('2') + "\" IsRoot=\"" + Long('1') + "\"><Unit LengthUnit=\"" +
                    Long('k') + "\" DisplayLengthUnit=\"" + Long('u') + "\"/></IFile><IPart ID=\"p\" " +
                    "IsSingleUnderRoot=\"" + Long('0') + "1\"/></S>");
    scene.Begin();
    Color color;
    ASSERT_EQ(scene.Producer().LoadUniverse()->DefaultCurveColor(color), kIsValueSpecified_Yes);
    EXPECT_EQ(color.Red(), 0.0) << "a number out of range";
    EXPECT_EQ(color.Green(), 0.5);
    EXPECT_EQ(color.Blue(), 0.0);
    Time time;
    EXPECT_EQ(scene.Get<IFile>("f").LastModificationTime(time), kIsValueSpecified_No);
    UnitTypeEnum unit = kUnitType_Mile;
    EXPECT_EQ(scene.Get<IFile>("f").DisplayLengthUnit(unit), kIsValueSpecified_Yes);
    EXPECT_EQ(unit, kUnitType_Unknown);
    EXPECT_TRUE(scene.Get<IPart>("p").IsSingleUnderRoot()) << "zeros in front do not change a number";
}

TEST(HostileSize, TransformsAndPathsOfTenMegabytesAreReadInTime)
{
    std::string const zeros = Repeated("0 ", kLong / 2);
    std::string manyIds;
    for (int i = 0; manyIds.size() < kLong; ++i)
        manyIds += '[' + std::to_string(i) + ']';
    TestScene scene("<S><IAssembly ID='a'><ExtensionData TypeId='type' OccurrencePath='" + manyIds +
                    "'/><CrossLevelAttributes><Visibilities><EntityVisibility Path='" + Repeated("[one]", kLong / 5) +
                    "'/><EntityVisibility Path='" + Long('[') + "'/><EntityVisibility Path='" + Long(']') +
                    "'/></Visibilities><Transformations><EntityTransformation Path='[a]' Transformation='" + zeros +
                    "'/></Transformations></CrossLevelAttributes></IAssembly></S>");
    scene.Begin();
    IAssembly const& assembly = scene.Get<IAssembly>("a");
    ExtensionDataContent content;
    ASSERT_EQ(assembly.ExtensionDataByTypeId("type", content), kIsValueSpecified_Yes);
    EXPECT_GT(content.ObjectPath().Size(), 1000000U);
    EXPECT_EQ(Text(content.ObjectPath()[1000000]), "1000000");
    ASSERT_EQ(assembly.CrossLevelVisibilityCount(), 3U);
    IdSet path;
    bool visible = false;
    assembly.CrossLevelVisibilityAt(0, path, visible);
    EXPECT_EQ(Ids(path), (std::vector<std::string>{"one"}));
    assembly.CrossLevelVisibilityAt(1, path, visible);
    EXPECT_TRUE(path.IsEmpty());
    assembly.CrossLevelVisibilityAt(2, path, visible);
    EXPECT_EQ(Ids(path), (std::vector<std::string>{""}));
    Matrix3d transform;
    assembly.CrossLevelTransformAt(0, path, transform);
    EXPECT_TRUE(transform.IsIdentity()) << "more than sixteen numbers are no transform";
}

TEST(HostileSize, SidePathsOfTenMegabytesNameNoFile)
{
    TestScene scene("<S><VitreolMaterialInfo GenerateSerializedVitreol='True' Path='" + Long() +
                    "'/><SubObjectPersistentIdInfo GenerateSubObjectPersistentId='True' Path='" +
                    Repeated("d/", kLong / 2) + "'/><IPart ID='p'/></S>");
    scene.Begin();
    EXPECT_TRUE(scene.Has("p"));
    TestScene blob("<S><IUniverse><CustomData><CustomDataItem Type='8' Key='k' BlobBufferSize='1' Path='" + Long() +
                   "'/></CustomData></IUniverse></S>");
    EXPECT_FALSE(Opens(blob)) << "the blob cannot be read";
}

TEST(HostileSize, NamesOfTenMegabytesAreUnknownOnes)
{
    TestScene scene("<S><" + Long('n') + " " + Long('a') + "=''/><IPart ID='p'/><?" + Long('t') + " x?></S>");
    scene.Begin();
    EXPECT_TRUE(scene.Has("p"));
}

TEST(HostileSize, CustomDataAndPropertiesOfTenMegabytesAreKept)
{
    TestScene scene("<S><IUniverse><CustomData><CustomDataItem Type='5' Key='" + Long('k') + "' Value='" + Long('v') +
                    "'/></CustomData></IUniverse><IPart ID='p'><FileProperties><Title>" + Long('t') +
                    "</Title><CustomProperties><CustomProperty Key='" + Long('k') + "' Type='kDouble' Value='" +
                    Long('9') + "'/></CustomProperties></FileProperties></IPart></S>");
    scene.Begin();
    UTF8String key;
    Variant value;
    ASSERT_EQ(scene.Producer().LoadUniverse()->CustomDataAt(0, key, value), kIsValueSpecified_Yes);
    EXPECT_EQ(key.Size(), kLong);
    ASSERT_NE(value.AStringValue(), nullptr);
    EXPECT_EQ(value.AStringValue()->Size(), kLong);
    UTF16String title;
    ASSERT_EQ(scene.Get<IPart>("p").FileProperties()->Title(title), kIsValueSpecified_Yes);
    EXPECT_EQ(title.View().size(), kLong);
    CustomProperty property;
    ASSERT_EQ(scene.Get<IPart>("p").FileProperties()->CustomPropertyAt(0, property), kIsValueSpecified_Yes);
    double number = -1.0;
    EXPECT_EQ(property.Value(number), kIsValueSpecified_Yes);
    EXPECT_EQ(number, 0.0) << "a number out of range counts as none";
}

TEST(HostileSize, OfAHundredThousandRootElementsWithOneIdTheLastIsBuilt)
{
    TestScene scene("<S>" + Repeated("<IPart ID='p' Label='one of many'/>", kMany) +
                    "<IAssembly ID='p' Label='last'/></S>");
    scene.Begin();
    EXPECT_EQ(Text(scene.Get<IAssembly>("p").Label()), "last");
    scene.Producer().Dispose("p");
    EXPECT_FALSE(scene.Has("p"));
}

TEST(HostileSize, AHundredThousandInlineInstancesWithOneIdAreAllKeptAndTheFirstIsAnswered)
{
    TestScene scene("<S><IAssembly ID='a'><ChildSet><IInstance ID='i' Label='first'><Child ID='p'/></IInstance>" +
                    Repeated("<IInstance ID='i'><Child ID='p'/></IInstance>", kMany - 1) +
                    "</ChildSet></IAssembly><IPart ID='p'/></S>");
    scene.Begin();
    EXPECT_EQ(scene.Get<IAssembly>("a").ChildCount(), kMany);
    EXPECT_EQ(Text(scene.Get<IInstance>("i").Label()), "first");
    EXPECT_EQ(Text(scene.Get<IAssembly>("a").ChildAt(kMany - 1).Id()), "i");
    scene.Producer().Dispose("i");
    EXPECT_FALSE(scene.Has("i")) << "all of the id are gone at once";
}

TEST(HostileSize, AHundredThousandOfEverythingInOneElementAreRead)
{
    TestScene scene("<S><IFile ID='f'><ChildSet>" + Repeated("<C ID='p'/>", kMany) + "</ChildSet><RefFiles>" +
                    Repeated("<R RefId='r' RefPath='x'/>", kMany) + "</RefFiles>" +
                    Repeated("<ExtensionData TypeId='type'/>", kMany) +
                    Repeated("<FileProperties><Title>t</Title></FileProperties>", kMany) +
                    "</IFile><IAssembly ID='a'><Styles>" + Repeated("<StyleRef ID='s'/>", kMany) +
                    "</Styles><ChildSet>" + Repeated("<Child ID='p'/>", kMany) + "</ChildSet>" +
                    Repeated("<ChangeKey>k</ChangeKey>", kMany) + "</IAssembly><IPart ID='p'/><IPart ID='0'/>" +
                    Repeated("<IUniverse/>", kMany) + "</S>");
    scene.Begin();
    EXPECT_EQ(scene.Get<IFile>("f").ChildCount(), kMany);
    EXPECT_EQ(scene.Get<IFile>("f").RefFileCount(), kMany);
    EXPECT_EQ(scene.Get<IAssembly>("a").Styles().Size(), 1U);
    EXPECT_EQ(scene.Get<IAssembly>("a").ChildCount(), 0U) << "the part's turn came later";
    EXPECT_NE(scene.Producer().LoadUniverse(), nullptr);
}

TEST(HostileSize, AnElementWithTenThousandAttributesIsReadByName)
{
    std::string attributes;
    for (int i = 0; i < 10000; ++i)
        attributes += " a" + std::to_string(i) + "='x'";
    TestScene scene("<S><IPart" + attributes + " Label='label' ID='p'/></S>");
    scene.Begin();
    EXPECT_EQ(Text(scene.Get<IPart>("p").Label()), "label");
}

TEST(HostileSize, AHundredThousandDistinctReferencesAreReadInTime)
{
    std::string refs;
    for (unsigned long long i = 0; i < kMany; ++i)
        refs += "<StyleRef ID='s" + std::to_string(i) + "'/>";
    TestScene scene("<S><IPart ID='p'><Styles>" + refs + "</Styles><Styles>" + refs + "</Styles></IPart></S>");
    scene.WithPrefix("P").Begin();
    IdSet const styles = scene.Get<IPart>("P1").Styles();
    ASSERT_EQ(styles.Size(), kMany);
    EXPECT_EQ(Text(styles[kMany - 1]), "P" + std::to_string(kMany + 1));
}

}  // namespace KVR::Test
