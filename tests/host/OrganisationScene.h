#pragma once

namespace KVR::Test
{

/// A scene with every kind of organisation: a file with a layer and a group, an assembly with a feature override, a
/// level of detail, two cameras and two views.
inline constexpr char kOrganisationScene[] = R"(<Scene>
  <IFile ID="f" Label="file"><ChildSet><Child ID="top" Type="IAssembly"/></ChildSet><AttributeSet>
    <LayerSet><ILayer ID="layer" Label="Layer"><LayerInfo ID="3" Description="about" Visibility="False"/>
      <GeometryItems Items="p,gone"/><Styles><StyleRef ID="s"/></Styles></ILayer></LayerSet>
    <GroupSet><IGroup ID="group" Label="Group"><GeometryItems Items="apart"/></IGroup></GroupSet></AttributeSet></IFile>
  <IAssembly ID="top" Label="Top"><ChildSet><IInstance ID="i" Visibility="1"><Child ID="p"/></IInstance>
      <IAssemblyFeatureOverride ID="o" Label="Override" Visibility="true"><BaseOccPaths><BaseOccPath P="[i][p]"/></BaseOccPaths>
      </IAssemblyFeatureOverride></ChildSet>
    <AttributeSet><LodSet><ILod ID="lod" Label="Lod" Description="coarse"/></LodSet>
      <ViewSet><IView ID="v1" Label="Front"><Unit LengthUnit="kUnitType_Inch"/><ViewMember>
          <ViewMemberChild><OccurrencePath Path="[i][p]"/><EntityVisibility Visibility="1"/>
            <Styles><StyleRef ID="s2"/></Styles><Transform>1 0 0 4 0 1 0 0 0 0 1 0 0 0 0 1</Transform></ViewMemberChild>
          <ViewMemberChild><OccurrencePath Path="[i]"/></ViewMemberChild></ViewMember>
          <CameraSet><CameraRef ID="k1"/><CameraRef ID="lost"/></CameraSet></IView>
        <IView ID="v2" Label="Cut &quot;A&quot;" Visibility="0" IsActive="0"/></ViewSet>
      <CameraSet><ICamera ID="k1" Label="Eye" Type="kCameraType_Perspective" ViewAngle="0.5" IsDepthFieldDefined="0">
          <Unit LengthUnit="kUnitType_Millimeter"/><CameraPosition X="1" Y="2.5" Z="-3"/><CameraDirection X="0" Y="0" Z="1"/>
          <CameraUpDirection X="0" Y="1" Z="0"/><NearPlane><PlaneData><Origin X="1"/><Normal Z="1"/></PlaneData></NearPlane>
        </ICamera>
        <ICamera ID="k2" Label="Cut" Type="kCameraType_Parallel"><ISectionCamera><PlaneData><Origin X="7"/>
          <Normal X="1"/></PlaneData><PlaneData/><SectioningOperations>AND</SectioningOperations></ISectionCamera></ICamera>
      </CameraSet></AttributeSet></IAssembly>
  <IPart ID="p" Label="Part"/>
  <IPart ID="apart" Label="Apart"/>
</Scene>)";

}  // namespace KVR::Test
