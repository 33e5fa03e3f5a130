#include "tests/support/FullScene.h"

#include <map>
#include <stdexcept>

#include "tests/support/ByteBuilder.h"

namespace KVR::Test
{

namespace
{

constexpr std::string_view kScene =
    R"(<Scene>@<SatInfo Path="bodies.sab"/><GeometryInfo GenerateGeometry="True" Path="meshes.bin"/>
<MeshSegmentInfo GenerateMeshSegment="True" Path="segments.bin"/><MeshInfo GenerateMesh="True" Path="meshes.bin"/>
<VitreolMaterialInfo GenerateSerializedVitreol="True" Path="assets.bin"/>
<SubObjectPersistentIdInfo GenerateSubObjectPersistentId="True" Path="ids.xml"/>
<IUniverse>@<ViewData>@<UpVector>0,0,1</UpVector><FrontVector>0,-1,0</FrontVector></ViewData>
<DefaultCurveColor FractionRed="0.1" FractionGreen="0.2" FractionBlue="0.3" FractionAlpha="0.4"/>
<DefaultSurfaceColor FractionRed="1" FractionGreen="1" FractionBlue="1"/>
<CustomData>@<CustomDataItem Type="5" Key="text" Value="some"/>
<CustomDataItem Type="8" Key="blob" Path="blob.bin" BlobBufferSize="4"/>
<CustomDataItem Type="9" Key="ids">@<ID Value="a"/><ID Value="b"/></CustomDataItem></CustomData></IUniverse>
<IFile ID="file" Label="File" IsRoot="1" FileFullPath="/a/file" LastModificationTime="2024-03-01T12:30:00"
 VersionPersistentId="v1">@<ChangeKey>@key@ of the file</ChangeKey>
<Unit LengthUnit="kUnitType_Meter" DisplayAngleUnit="kUnitType_Degree" DisplayLengthUnit="kUnitType_Inch">@</Unit>
<FileProperties>@<Title>A @title</Title><Author>An author</Author><CreationDate>2024-03-01</CreationDate>
<MassUnit>kUnitType_Gram</MassUnit><ViewData>@<UpVector>0,1,0</UpVector><FrontVector>1,0,0</FrontVector></ViewData>
<CustomProperties>@<CustomProperty Key="s" Type="kString" Value="text"/>
<CustomProperty Key="i" Type="kInt" Value="7"/><CustomProperty Key="d" Type="kDouble" Value="1.5"/>
<CustomProperty Key="b" Type="kBool" Value="True"/><CustomProperty Key="t" Type="kTime" Value="2024-03-01T00:00:00Z"/>
</CustomProperties></FileProperties>
<ExtensionData TypeId="type" Content="data" Type="kObjectPathTypeEnum_OccurancePath" OccurrencePath="[top][i1]"
 LengthUnit="kUnitType_Foot" Transformation="1 0 0 5 0 1 0 6 0 0 1 7 0 0 0 1">@</ExtensionData>
<RefFiles>@<RefFile RefId="r" RefPath="other.xml"/></RefFiles>
<AttributeSet>@<TextureSet>@<IMaterialTexture ID="x1" Label="Texture" TextureType="1" TempFilePath="/none">@
<TextureScale X="1" Y="2">@</TextureScale></IMaterialTexture></TextureSet><StyleSet>@<IRenderStyle ID="s1" Label="Oak">@
<VitreolStyleInfo VitreolLibraryId="library"/></IRenderStyle><IRenderStyle ID="s2" PointStyleMarkerSize="2">@
<ChangeKey>style</ChangeKey><DiffuseColor FractionRed="1" FractionGreen="0" FractionBlue="0" Shininess="3">@
<TransparencyRGB FractionRed="1" FractionGreen="1" FractionBlue="1"/></DiffuseColor><BumpMap TextureId="x1"/>
<ExtensionData TypeId="type" Content="of a style"/></IRenderStyle></StyleSet></AttributeSet>
<ChildSet>@<Reference ID="top" Type="IAssembly"/><Reference ID="ghost" Type="IPart"/></ChildSet></IFile>
<IAssembly ID="top" Label="Top" IsSingleUnderRoot="1" VersionPersistentId="v2">@<ChangeKey>assembly</ChangeKey>
<Unit LengthUnit="kUnitType_Millimeter" DisplayLengthUnit="kUnitType_Centimeter"/>
<UnitAndTolerance LengthUnit="kUnitType_Foot" LinearTolerance="0.1"/>
<Styles>@<StyleRef ID="s1"/><StyleRef ID="s2"/></Styles>
<CrossLevelAttributes>@<Styles>@<EntityStyles Path="[i1][i3]">@<Styles><StyleRef ID="s3"/></Styles></EntityStyles>
</Styles><Visibilities>@<EntityVisibility Path="[i1]" Visibility="1"/></Visibilities>
<Transformations>@<EntityTransformation Path="[i2]" Transformation="2 0 0 0 0 2 0 0 0 0 2 0 0 0 0 1"/>
</Transformations></CrossLevelAttributes><FileProperties><Revision>B</Revision></FileProperties>
<ExtensionData TypeId="type" Content="more"/>
<ChildSet>@<IInstance ID="i1" Label="First" Visibility="1" NetVisibility="1" VersionPersistentId="v3">@
<Child ID="sub" Transformation="1 0 0 1 0 1 0 2 0 0 1 3 0 0 0 1">@</Child><ChangeKey>instance</ChangeKey>
<Unit LengthUnit="kUnitType_Mile"/><Styles>@<StyleRef ID="s4"/></Styles><NetStyles><StyleRef ID="s5"/></NetStyles>
<ExtensionData TypeId="type" Content="placed"/></IInstance>
<IInstance ID="i2"><Child ID="part"/></IInstance></ChildSet></IAssembly>
<IAssembly ID="sub" Label="Sub"><UnitAndTolerance LengthUnit="kUnitType_Yard"/>
<ChildSet><IInstance ID="i3"><Child ID="part"/></IInstance><Child ID="part"/></ChildSet></IAssembly>
<IPart ID="part" Label="Part" IsSingleUnderRoot="0" VersionPersistentId="v4">@<ChangeKey>part</ChangeKey>
<Unit LengthUnit="kUnitType_Inch" DisplayLengthUnit="kUnitType_Inch"/><Styles><StyleRef ID="s6"/></Styles>
<FileProperties><PartNumber>7</PartNumber></FileProperties><ExtensionData TypeId="type" Content="of a part"/>
<ChildSet>@<Child ID="other"/></ChildSet></IPart><IPart ID="other" Label="Other"><ChildSet>
<IPoint ID="g1" Label="Point" VersionPersistentId="v5">@<Point X="1" Y="2.5" Z="-3"/><Styles><StyleRef ID="s7"/></Styles>
<ExtensionData TypeId="type" Content="of a point"/><Transform>1 0 0 1 0 1 0 2 0 0 1 3 0 0 0 1</Transform></IPoint>
<IPointCloud ID="g2" Visibility="0"><PointCloud PointCloudCoordinates="0 1 2 3.5 4e1 bad"/></IPointCloud>
<IWorkAxis ID="g3"><StartPoint X="1"/><EndPoint Y="2"/><Axis Z="3"/><ChangeKey>axis</ChangeKey></IWorkAxis>
<IWorkPlane ID="g4">@<Origin X="1"/><Normal Z="1"/><Reference Y="1"/><DisplayRange><MinPoint X="-1"/>
<MaxPoint X="1"/></DisplayRange></IWorkPlane><IWorkPoint ID="g5"><WorkPoint X="1" Y="2" Z="3"/></IWorkPoint>
<ISketch ID="g6" SketchTypeEnum="kSketchType_3D" Visibility="1">@<ChildSet>@<IPoint ID="g7"/><Child ID="g1"/></ChildSet>
<CurveSet>@<ICurve ID="g8"/></CurveSet></ISketch><IGeometricSet ID="g9">@<ChildSet>@<IPoint ID="g10"/>
<IGeometricSet ID="g11"/><Child ID="g1"/></ChildSet><Tolerance AngularTolerance="1" LinearTolerance="2"/></IGeometricSet>
<IExtensionGeometry ID="g12"><ChildSet><IPointCloud ID="g13"/></ChildSet></IExtensionGeometry>
<IAnnotationCallout ID="g14" Label="Note">@<AnnotationPlane>@<IWorkPlane ID="g15"/></AnnotationPlane>
<IText IsVertical="1" LengthUnit="kUnitType_Mil" TextJustification="2">@<Origin X="1"/><ITextLine TextAlignment="1"
 Indentation="0.5">@<ITextFragment Value="Deburr" IsBold="True" Height="2">@<TextColor FractionRed="1" FractionGreen="0"
 FractionBlue="0" FractionAlpha="1"/></ITextFragment></ITextLine></IText><ChildSet>@<IAnnotationCalloutElement ID="g16">@
<ChildSet>@<IPoint ID="g17"/></ChildSet></IAnnotationCalloutElement></ChildSet></IAnnotationCallout></ChildSet></IPart>
<IInstance ID="loose"><Child ID="file"/></IInstance>@</Scene>)";

std::map<std::string, std::string> SideFiles()
{
    return {
        {"blob.bin", "four"},
        {"scene.kvrproperty", R"(<P><Property ID="p" ObjectID="i1" Name="n" Value="v"/></P>)"},
        {"assets.bin", ByteBuilder().Raw("KVRASSET").U64(1).U64(1).String("s1").String("kind").String("asset").Bytes()},
        {"ids.xml", R"(<Ids><SubObjectPersistentIds ID="part"><SubObject DataId="d" PersistentId="p"/>
                           </SubObjectPersistentIds></Ids>)"}};
}

}  // namespace

std::string_view MarkedFullScene()
{
    return kScene;
}

std::string FullScene()
{
    return Replaced(kScene, "@", "");
}

void WriteSideFiles(TestScene& scene)
{
    for (auto const& [name, bytes] : SideFiles())
        scene.WithFile(name, bytes);
}

void WriteSideFiles(TempFolder const& folder)
{
    for (auto const& [name, bytes] : SideFiles())
        folder.Write(name, bytes);
}

std::vector<std::string> FullSceneIds()
{
    return {"file", "top", "sub", "part", "other", "i1", "i2", "i3", "loose", "ghost", "evil", ""};
}

bool Opens(TestScene& scene)
{
    return Opens(scene.Producer());
}

bool Opens(XMLProducer& producer)
{
    try
    {
        producer.BeginProcess(IdSet(), nullptr, nullptr);
        return true;
    }
    catch (FileException const& exception)
    {
        if (exception.ErrorCode() != FileException::kFileErrorCode_CannotRead)
            throw std::logic_error("a refusal with another code than 0");
        return false;
    }
}

std::string Repeated(std::string_view text, unsigned long long count)
{
    std::string all;
    all.reserve(text.size() * count);
    for (; count > 0; --count)
        all += text;
    return all;
}

std::string Replaced(std::string_view text, std::string_view what, std::string_view by)
{
    std::string result;
    for (;;)
    {
        auto const at = text.find(what);
        result += text.substr(0, at);
        if (at == std::string_view::npos)
            return result;
        result += by;
        text.remove_prefix(at + what.size());
    }
}

}  // namespace KVR::Test
