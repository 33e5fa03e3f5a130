// The dump of points, clouds, work features, sketches, sets and callouts.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;

constexpr char kScene[] = R"(<Scene>
  <IFile ID="f" Label=""><ChildSet><C ID="p" Type="IPart"/></ChildSet></IFile>
  <IPart ID="p" Label=""><ChildSet>
    <IPoint ID="point"><Point X="0.1" Y="2" Z="-3"/><Unit LengthUnit="kUnitType_Inch"/></IPoint>
    <IPointCloud ID="cloud"><PointCloud PointCloudCoordinates="0.1 2 3 4 bad 1e300 7"/></IPointCloud>
    <IWorkAxis ID="axis"><StartPoint X="1"/><EndPoint Y="2"/><Axis Z="3"/></IWorkAxis>
    <IWorkPlane ID="plane"><Origin X="1"/><Normal Z="1"/><Reference Y="1"/>
      <DisplayRange><MinPoint X="-1"/><MaxPoint X="1"/></DisplayRange></IWorkPlane>
    <IWorkPlane ID="bare"/>
    <IWorkPoint ID="spot"><WorkPoint X="1" Y="2" Z="3"/></IWorkPoint>
    <ISketch ID="sketch" SketchTypeEnum="kSketchType_3D"><ChildSet><IPoint ID="s0"/><IPoint ID="s1"/></ChildSet></ISketch>
    <IGeometricSet ID="set"><ChildSet><IPoint ID="g0"/></ChildSet><Tolerance LinearTolerance="0.5" ParamTolerance="2"/>
    </IGeometricSet>
    <IExtensionGeometry ID="extension"><ChildSet><IPoint ID="x0"/></ChildSet></IExtensionGeometry>
    <IAnnotationCallout ID="note" Visibility="0"><AnnotationPlane><Child ID="plane"/></AnnotationPlane>
      <IText LengthUnit="kUnitType_Mil" IsVertical="1" TextJustification="2"><Origin X="1"/>
        <ITextLine TextAlignment="1" Indentation="0.5"><ITextFragment Value="T" FontName="F" IsBold="1" Height="2" ScriptType="3">
          <TextColor FractionRed="1" FractionGreen="0" FractionBlue="0" FractionAlpha="1"/></ITextFragment></ITextLine></IText>
      <ChildSet><IAnnotationCalloutElement ID="element"><ChildSet><IPoint ID="e0"/></ChildSet>
        <Styles><StyleRef ID="style"/></Styles></IAnnotationCalloutElement></ChildSet></IAnnotationCallout>
    <IAnnotationCallout ID="quiet"><IText TextJustification="0"/></IAnnotationCallout></ChildSet></IPart>
</Scene>)";

json Objects(std::vector<std::string> options = {})
{
    TempFolder folder;
    folder.Write("scene.xml", kScene);
    options.insert(options.begin(), {"dump", folder.NarrowPathOf("scene.xml")});
    ToolRun const run = RunTool(options);
    EXPECT_EQ(run.status, 0) << run.error;
    return json::parse(run.out)["Objects"];
}

}  // namespace

TEST(GeometryDump, TheWalkReachesWhatTheObjectsName)
{
    json const objects = Objects();
    for (char const* const id : {"s0", "s1", "g0", "x0", "e0", "element", "plane"})
        EXPECT_TRUE(objects[id].is_object()) << id;
    EXPECT_TRUE(objects["style"].is_null()) << "named, without an object";
    EXPECT_TRUE(objects.contains("style"));
}

TEST(GeometryDump, APointAnswersItsMembers)
{
    json const point = Objects()["point"];
    EXPECT_EQ(point["Class"], "IPoint");
    EXPECT_EQ(point["X"], 0.1);
    EXPECT_EQ(point["Y"], 2);
    EXPECT_EQ(point["Z"], -3);
    EXPECT_TRUE(point["PointColor"].is_null());
    EXPECT_EQ(point["MarkerStyleId"], "");
    EXPECT_TRUE(point["PointSize"].is_null());
    EXPECT_EQ(point["LengthUnit"], "kUnitType_Inch");
    EXPECT_TRUE(point["DisplayAngleUnit"].is_null());
    EXPECT_EQ(point["DisplayLengthUnit"], "kUnitType_Unknown");
    EXPECT_EQ(point["LinearTolerance"], -1);
    EXPECT_EQ(point["IsNetVisible"], true);
    EXPECT_TRUE(point["Transform"].is_null());
}

TEST(GeometryDump, ACloudIsDumpedWholeOrInSummary)
{
    json const whole = Objects()["cloud"];
    EXPECT_EQ(whole["PointCount"], 2);
    EXPECT_EQ(whole["Points"][0], json({0.1, 2, 3}));
    EXPECT_EQ(whole["Points"][1], json({4, 0, 1e300}));
    json const brief = Objects({"--summary"})["cloud"];
    EXPECT_EQ(brief["PointCount"], 2);
    EXPECT_FALSE(brief.contains("Points"));
}

TEST(GeometryDump, WorkFeaturesAnswerTheirTriples)
{
    json const objects = Objects();
    EXPECT_EQ(objects["axis"]["StartPoint"], json({1, 0, 0}));
    EXPECT_EQ(objects["axis"]["EndPoint"], json({0, 2, 0}));
    EXPECT_EQ(objects["axis"]["Axis"], json({0, 0, 3}));
    EXPECT_EQ(objects["spot"]["Position"], json({1, 2, 3}));
    EXPECT_EQ(objects["plane"]["Normal"], json({0, 0, 1}));
    EXPECT_EQ(objects["plane"]["Reference"], json({0, 1, 0}));
    EXPECT_EQ(objects["plane"]["DisplayRange"], json({-1, 0, 0, 1, 0, 0}));
    EXPECT_TRUE(objects["bare"]["Reference"].is_null());
    EXPECT_TRUE(objects["bare"]["DisplayRange"].is_null());
    EXPECT_TRUE(objects["axis"]["DisplayLengthUnit"].is_null());
}

TEST(GeometryDump, ContainersListTheirChildren)
{
    json const objects = Objects();
    EXPECT_EQ(objects["sketch"]["SketchType"], 1);
    EXPECT_EQ(objects["sketch"]["PointIds"], json({"s0", "s1"}));
    EXPECT_EQ(objects["sketch"]["CurveIds"], json::array());
    EXPECT_EQ(objects["sketch"]["ChildIds"], json({nullptr, "s1"})) << "the first point is not reached by an index";
    EXPECT_EQ(objects["set"]["Children"], json({"g0"}));
    EXPECT_EQ(objects["set"]["LinearTolerance"], 0.5);
    EXPECT_EQ(objects["set"]["AngularTolerance"], -1);
    EXPECT_EQ(objects["extension"]["Children"], json({"x0"}));
}

TEST(GeometryDump, ACalloutAnswersItsTextPlaneAndElements)
{
    json const objects = Objects();
    json const& note = objects["note"];
    EXPECT_EQ(note["Class"], "IAnnotationCallout");
    EXPECT_EQ(note["IsVisible"], false);
    EXPECT_EQ(note["AnnotationPlaneId"], "plane");
    EXPECT_EQ(note["Children"], json({"element"}));
    EXPECT_EQ(note["Text"]["Origin"], json({1, 0, 0}));
    EXPECT_EQ(note["Text"]["LengthUnit"], "kUnitType_Mil");
    EXPECT_EQ(note["Text"]["IsVertical"], true);
    EXPECT_EQ(note["Text"]["TextJustification"], 2) << "an answer that is neither yes nor no has a value";
    json const& line = note["Text"]["Lines"][0];
    EXPECT_EQ(line["TextAlignment"], 1);
    EXPECT_EQ(line["Indentation"], 0.5);
    json const& fragment = line["Fragments"][0];
    EXPECT_EQ(fragment["Value"], "T");
    EXPECT_EQ(fragment["FontName"], "F");
    EXPECT_EQ(fragment["IsBold"], false);
    EXPECT_TRUE(fragment["IsItalic"].is_null());
    EXPECT_EQ(fragment["Height"], 2);
    EXPECT_EQ(fragment["ScriptType"], 3);
    EXPECT_EQ(fragment["TextColor"], json({1, 0, 0, 1}));
    EXPECT_EQ(objects["element"]["Children"], json({"e0"}));
    EXPECT_EQ(objects["element"]["Styles"], json({"style"}));
    EXPECT_TRUE(objects["quiet"]["Text"]["TextJustification"].is_null()) << "0 reads as not specified";
    EXPECT_TRUE(objects["quiet"]["AnnotationPlaneId"].is_null());
}

}  // namespace KVR::Test
