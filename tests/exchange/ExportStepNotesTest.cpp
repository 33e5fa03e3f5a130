#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <TopoDS_Shape.hxx>

#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "tests/exchange/SceneNotes.h"
#include "tests/exchange/StepScene.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr char kPlane[] =
    "<AnnotationPlane><IWorkPlane ID='plane' Label=''><Origin X='1' Y='2' Z='3'/><Normal X='0' Y='1' Z='0'/>"
    "<Reference X='1' Y='0' Z='0'/></IWorkPlane></AnnotationPlane>";
constexpr char kDrawing[] =
    "<IAnnotationCalloutElement ID='drawing' Label='ad8'><ChildSet><ICurve ID='line'><GMKEntity EntityId='arc'/>"
    "</ICurve></ChildSet></IAnnotationCalloutElement>";

std::string ContentOf(std::string const& path)
{
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string Quoted(std::string text)
{
    for (std::size_t at = text.find('"'); at != std::string::npos; at = text.find('"', at))
        text.replace(at, 1, "&quot;");
    return text;
}

std::string Extension(char const* typeId, std::string const& content)
{
    if (content.empty())
        return {};
    return std::string("<ExtensionData TypeId='kvr.annotation.") + typeId + "' Content='" + Quoted(content) + "'/>";
}

// As the import writes them; details are sorted by their keys.
SceneNote Note(int number, std::string const& label, std::string const& text, std::string const& kind,
               std::string const& references, json details)
{
    details["number"] = number;
    return {"note" + std::to_string(number), label, text, kind, references, details.dump()};
}

std::string Xml(SceneNote const& note, std::string const& unit, std::string const& plane = "",
                std::string const& drawing = "")
{
    return "<IAnnotationCallout ID='" + note.id + "' Label='" + note.label + "' Visibility='1'><IText LengthUnit='" +
           unit + "'><ITextLine><ITextFragment Value='" + note.text + "'/></ITextLine></IText>" + plane + "<ChildSet>" +
           drawing + "</ChildSet>" + Extension("kind", note.kind) + Extension("references", note.references) +
           Extension("details", note.details) + "</IAnnotationCallout>";
}

// A box with notes, whose parts have the ids that an import gives them. The last one has the plane and the drawing.
class NotedBox
{
public:
    explicit NotedBox(std::vector<SceneNote> const& notes, std::string const& plane = "",
                      std::string const& drawing = "", std::string const& attributes = "",
                      std::string const& unit = "kUnitType_Millimeter", std::string const& assembly = "")
    {
        std::vector<Authoring::SubEntityId> faces;
        std::vector<Authoring::SubEntityId> edges;
        for (std::uint32_t i = 0; i < 6; ++i)
            faces.push_back({i, UTF8String("body1.f" + std::to_string(i + 1))});
        for (std::uint32_t i = 0; i < 12; ++i)
            edges.push_back({i, UTF8String("body1.e" + std::to_string(i + 1))});
        std::string callouts;
        for (SceneNote const& note : notes)
            callouts += &note == &notes.back() ? Xml(note, unit, plane, drawing) : Xml(note, unit);
        m_scene.Body("body1", BoxShape(10, 20, 30), faces, edges)
            .Edge("arc", ArcEdge())
            .Write("<IFile ID='file1'><ChildSet><Child ID='" + std::string(assembly.empty() ? "part1" : "asm1") +
                   "'/></ChildSet>" + attributes + "</IFile>" + assembly +
                   "<IPart ID='part1' Label='box'>"
                   "<Unit LengthUnit='kUnitType_Millimeter'/><ChildSet><IBrep ID='body1' Label='' Visibility='1' "
                   "NetVisibility='1'/>" +
                   callouts + "</ChildSet></IPart>");
        exported = m_scene.Export("out.step");
    }

    std::vector<SceneNote> ReadBack() const
    {
        ToolRun const run = RunTool({"import", m_scene.PathOf("out.step"), m_scene.PathOf("back.xml")});
        EXPECT_EQ(run.status, 0) << run.error;
        return NotesOf(m_scene.PathOf("back.xml"));
    }
    StepScene const& Scene() const { return m_scene; }

    ToolRun exported;

private:
    StepScene m_scene;
};

}  // namespace

TEST(ExportStepNotes, DimensionsThatNothingDrawsKeepTypeValuesAndReferences)
{
    std::vector<SceneNote> const notes{
        Note(1, "diameter", "diameter 12.5", "dimension", "body1.f2",
             {{"type", "diameter"}, {"value", 12.5}, {"minus", 0.1}, {"plus", 0.2}}),
        Note(2, "radius", "radius 4", "dimension", "body1.f3,body1.f4,body1.e5",
             {{"type", "radius"}, {"lower", 3.5}, {"upper", 4.5}}),
        Note(3, "linear distance", "linear distance 20", "dimension", "body1.f1,body1.f2,body1.e7",
             {{"type", "linear distance"}, {"value", 20.0}, {"second", {"body1.e7"}}}),
        Note(4, "tilt", "angle 45", "dimension", "body1.f1,body1.f5",
             {{"type", "angle"}, {"value", 45.0}, {"minus", 0.5}, {"plus", 0.5}, {"second", {"body1.f5"}}}),
        Note(5, "taper", "angle 30", "dimension", "body1.f6", {{"type", "angle"}, {"value", 30.0}}),
        // Without a value.
        Note(6, "thickness", "thickness", "dimension", "body1.f6", {{"type", "thickness"}}),
        Note(7, "curve length", "curve length 7", "dimension", "body1.e3",
             {{"type", "curve length"}, {"value", 7.0}, {"modifiers", {"controlled radius", "statistical"}}}),
        Note(8, "wall", "wall", "dimension", "body1.f6", json::object()),
    };
    NotedBox const box(notes);
    EXPECT_THAT(box.exported.error, IsEmpty());
    EXPECT_EQ(box.ReadBack(), notes);
}

TEST(ExportStepNotes, TolerancesOfEveryTypeKeepTheirDatums)
{
    char const* const types[] = {"angularity",       "circular run-out", "circularity",     "coaxiality",
                                 "concentricity",    "cylindricity",     "flatness",        "parallelism",
                                 "perpendicularity", "position",         "profile of line", "profile of surface",
                                 "straightness",     "symmetry",         "total run-out"};
    std::vector<SceneNote> notes;
    int number = 0;
    for (char const* const type : types)
        notes.push_back(Note(++number, std::string("of ") + type, type, "tolerance", "body1.f1", {{"type", type}}));
    notes.push_back(Note(++number, "of all", "tolerance", "tolerance", "body1.f1,body1.f2", json::object()));
    // The first names A and, in one place, B and C; the last one A again.
    auto const datum = [&](char const* letter, char const* references, int position, int tolerance)
    {
        ++number;
        notes.push_back(
            Note(number, std::string("datum feature ") + letter, std::string("datum ") + letter, "datum", references,
                 {{"letter", letter}, {"position", position}, {"tolerance", "note" + std::to_string(tolerance)}}));
    };
    datum("A", "body1.f3", 1, 1);
    datum("B", "body1.f4,body1.f5", 2, 1);
    datum("C", "", 2, 1);
    datum("A", "body1.f3", 1, 15);
    std::vector<SceneNote> unnamed = notes;
    for (SceneNote& note : unnamed)
        if (note.kind == "datum")
            note.label.clear();
    NotedBox const box(notes);
    EXPECT_THAT(box.exported.error, IsEmpty());
    // A datum has the name of its drawing.
    EXPECT_EQ(box.ReadBack(), unnamed);
}

TEST(ExportStepNotes, AToleranceStatesNoMagnitudeSinceTheSceneHasNone)
{
    NotedBox const box({Note(1, "flat", "flatness", "tolerance", "body1.f1", {{"type", "flatness"}})});
    EXPECT_THAT(ContentOf(box.Scene().PathOf("out.step")), HasSubstr("FLATNESS_TOLERANCE('flat','',$ "));
}

TEST(ExportStepNotes, ZonesAndModifiersOfTolerancesAndDatumsComeBack)
{
    std::vector<SceneNote> const notes{
        Note(1, "flatness", "flatness", "tolerance", "body1.f1",
             {{"type", "flatness"}, {"modifiers", {"common zone", "free state"}}}),
        Note(2, "position", "position", "tolerance", "body1.f2",
             {{"type", "position"},
              {"modifiers", {"maximum material requirement"}},
              {"zone", "cylindrical or circular"}}),
        Note(3, "straightness", "straightness", "tolerance", "body1.f3",
             {{"type", "straightness"}, {"zone", "spherical"}, {"projection", 3.0}, {"modifiers", {"my own"}}}),
        Note(
            4, "datum", "A", "datum", "body1.f4",
            {{"letter", "A"}, {"tolerance", "note2"}, {"position", 1}, {"modifiers", {"least material requirement"}}})};
    NotedBox const box(notes);
    EXPECT_THAT(box.exported.error, HasSubstr("2 details of tolerances and targets of datums"));
    std::map<std::string, json> details;
    for (SceneNote const& note : box.ReadBack())
    {
        json const read = json::parse(note.details);
        details[read.value("type", read.value("letter", ""))] = read;
    }
    EXPECT_EQ(details["flatness"]["modifiers"], json({"common zone", "free state"}));
    EXPECT_EQ(details["position"]["modifiers"], json({"maximum material requirement"}));
    EXPECT_EQ(details["position"]["zone"], "cylindrical or circular");
    EXPECT_EQ(details["straightness"]["zone"], "spherical");
    EXPECT_EQ(details["A"]["modifiers"], json({"least material requirement"}));
}

TEST(ExportStepNotes, WhatIsBothDrawnAndMeantComesBackAsOne)
{
    std::vector<SceneNote> const notes{
        Note(1, "diameter", "diameter 12.5", "dimension", "body1.f2", {{"type", "diameter"}, {"value", 12.5}})};
    NotedBox const box(notes, kPlane, kDrawing);
    EXPECT_EQ(box.ReadBack(), notes);
    std::string const table = RunTool({"notes", "--json", box.Scene().PathOf("back.xml")}).out;
    json const note = json::parse(table).at("Notes").at(0);
    EXPECT_EQ(note.at("Plane").at("Normal"), json::parse("[0, 1, 0]"));
    EXPECT_EQ(note.at("PointsAt").at(0).at("Label"), "ad8");
    EXPECT_FALSE(note.at("PointsAt").at(0).at("Children").empty());
}

TEST(ExportStepNotes, APlaneWithoutADrawingStays)
{
    std::vector<SceneNote> const notes{Note(1, "flat", "flatness", "tolerance", "body1.f2", {{"type", "flatness"}})};
    NotedBox const box(notes, kPlane);
    EXPECT_EQ(box.ReadBack(), notes);
    json const note = json::parse(RunTool({"notes", "--json", box.Scene().PathOf("back.xml")}).out).at("Notes").at(0);
    EXPECT_EQ(note.at("Plane").at("Origin"), json::parse("[1, 2, 3]"));
    EXPECT_TRUE(note.at("PointsAt").empty());
}

TEST(ExportStepNotes, APictureSpeaksOfItsFacesAlthoughOthersDoToo)
{
    std::vector<SceneNote> const notes{
        Note(1, "diameter", "diameter 12.5", "dimension", "body1.f2", {{"type", "diameter"}, {"value", 12.5}}),
        Note(2, "linear distance", "linear distance 2", "dimension", "body1.f2,body1.f2",
             {{"type", "linear distance"}, {"value", 2.0}, {"second", {"body1.f2"}}}),
        Note(3, "ad8", "presentation", "dimension", "body1.f2,body1.f3", {{"type", "presentation"}}),
    };
    EXPECT_EQ(NotedBox(notes, kPlane, kDrawing).ReadBack(), notes);
}

TEST(ExportStepNotes, ViewsNameNotesAndPartsInTheirOrder)
{
    std::vector<SceneNote> const notes{
        Note(1, "diameter", "diameter 12.5", "dimension", "body1.f2", {{"type", "diameter"}, {"value", 12.5}}),
        Note(2, "thickness", "thickness", "dimension", "body1.f6", {{"type", "thickness"}}),
        Note(3, "ad8", "presentation", "dimension", "body1.f2", {{"type", "presentation"}}),
    };
    auto const member = [](std::string const& path, char const* visible = "1")
    {
        return "<ViewMemberChild><OccurrencePath Path='[" + path + "]'/><EntityVisibility Visibility='" + visible +
               "'/></ViewMemberChild>";
    };
    auto const view = [&](char const* id, std::string const& members)
    {
        return std::string("<IView ID='") + id + "' Label='" + id + "' Visibility='1'><ViewMember>" + members +
               "</ViewMember><CameraSet><CameraRef ID='camera'/></CameraSet></IView>";
    };
    std::string const attributes =
        "<AttributeSet><CameraSet><ICamera ID='camera' Label='' Type='kCameraType_Parallel' AspectRatio='2' "
        "ViewWindowHeightForParallelCamera='8'><CameraPosition X='1' Y='-20' Z='3'/><CameraDirection X='0' Y='1' "
        "Z='0'/><CameraUpDirection X='0' Y='0' Z='1'/></ICamera></CameraSet><ViewSet>" +
        view("some", member("note3") + member("part1") + member("note2") + member("note1")) + view("none", "") +
        view("odd", member("note2", "0") + member("body1") + member("note1")) + "</ViewSet></AttributeSet>";
    NotedBox const box(notes, kPlane, kDrawing, attributes);
    // What is hidden, and what is a body.
    EXPECT_THAT(box.exported.error, HasSubstr("2 members of views"));
    EXPECT_EQ(box.ReadBack(), notes);
    json const dump = json::parse(RunTool({"dump", "--summary", box.Scene().PathOf("back.xml")}).out).at("Objects");
    auto const members = [&](char const* id)
    {
        std::vector<std::string> paths;
        for (json const& entry : dump.at(id).at("ViewMembers"))
            paths.push_back(entry.at("OccurrencePath").back());
        return paths;
    };
    EXPECT_EQ(members("view1"), (std::vector<std::string>{"part1", "note3", "note2", "note1"}));
    EXPECT_THAT(members("view2"), IsEmpty());
    EXPECT_EQ(members("view3"), std::vector<std::string>{"note1"});
}

TEST(ExportStepNotes, AViewNamesANoteAtEachOfItsOccurrences)
{
    std::string const attributes =
        "<AttributeSet><CameraSet><ICamera ID='camera' Label='' Type='kCameraType_Parallel' AspectRatio='2' "
        "ViewWindowHeightForParallelCamera='8'><CameraPosition X='1' Y='-20' Z='3'/><CameraDirection X='0' Y='1' "
        "Z='0'/><CameraUpDirection X='0' Y='0' Z='1'/></ICamera></CameraSet><ViewSet><IView ID='v' Label='v' "
        "Visibility='1'><ViewMember><ViewMemberChild><OccurrencePath Path='[left][note1]'/><EntityVisibility "
        "Visibility='1'/></ViewMemberChild><ViewMemberChild><OccurrencePath Path='[right][note1]'/><EntityVisibility "
        "Visibility='1'/></ViewMemberChild></ViewMember><CameraSet><CameraRef ID='camera'/></CameraSet></IView>"
        "</ViewSet></AttributeSet>";
    std::string const assembly =
        "<IAssembly ID='asm1' Label='top'><Unit LengthUnit='kUnitType_Millimeter'/><ChildSet><IInstance ID='left' "
        "Label='left' Visibility='1' NetVisibility='1'><Child ID='part1'/></IInstance><IInstance ID='right' "
        "Label='right' Visibility='1' NetVisibility='1'><Child ID='part1' Transformation='1 0 0 50 0 1 0 0 0 0 1 0 0 0 "
        "0 1'/></IInstance></ChildSet></IAssembly>";
    NotedBox const box({Note(1, "thickness", "thickness", "dimension", "body1.f6", {{"type", "thickness"}})}, "", "",
                       attributes, "kUnitType_Millimeter", assembly);
    EXPECT_THAT(box.exported.error, Not(HasSubstr("members of views")));
    EXPECT_EQ(box.ReadBack().size(), 1U);
    std::string const back = box.Scene().PathOf("back.xml");
    json const dump = json::parse(RunTool({"dump", "--summary", back}).out).at("Objects");
    json const& members = dump.at("view1").at("ViewMembers");
    ASSERT_EQ(members.size(), 2U);
    EXPECT_EQ(members[0].at("OccurrencePath"), json({"inst1", "note1"}));
    EXPECT_EQ(members[1].at("OccurrencePath"), json({"inst2", "note1"}));
    ToolRun const check = RunTool({"check", "--rule", "path-astray", back});
    EXPECT_EQ(check.status, 0) << check.out;
}

TEST(ExportStepNotes, WhatIsNotDrawnAndSpeaksOfNothingIsCounted)
{
    NotedBox const box({Note(1, "diameter", "diameter 1", "dimension", "", {{"type", "diameter"}, {"value", 1.0}}),
                        Note(2, "flat", "flatness", "tolerance", "gone", {{"type", "flatness"}}),
                        Note(3, "", "datum A", "datum", "body1.f1", {{"letter", "A"}})});
    EXPECT_EQ(box.exported.status, 0);
    EXPECT_THAT(box.exported.error, HasSubstr("1 references of annotation callouts"));
    EXPECT_THAT(box.exported.error,
                HasSubstr("3 annotation callouts that are not drawn and speak of nothing in the file"));
    EXPECT_THAT(box.ReadBack(), IsEmpty());
}

TEST(ExportStepNotes, AValueWithAQualifierComesInTheUnitOfTheModel)
{
    NotedBox const box(
        {Note(1, "diameter", "diameter 1.5", "dimension", "body1.f2", {{"type", "diameter"}, {"value", 1.5}})});
    std::string step = ContentOf(box.Scene().PathOf("out.step"));
    // A line may end anywhere.
    step = std::regex_replace(step, std::regex("\n *"), "");
    std::string const plain = "MEASURE_WITH_UNIT(LENGTH_MEASURE(1.5),";
    std::size_t const value = step.find(plain);
    ASSERT_NE(value, std::string::npos);
    std::size_t const unit = value + plain.size();
    std::size_t const end = step.find(')', unit);
    std::string const millimetre = step.substr(unit, end - unit);
    step.replace(unit, end - unit, "#9002");
    step.insert(step.find("REPRESENTATION_ITEM('nominal value')", unit), "QUALIFIED_REPRESENTATION_ITEM((#9004)) ");
    step.insert(step.rfind("ENDSEC;"),
                "#9001 = DIMENSIONAL_EXPONENTS(1.,0.,0.,0.,0.,0.,0.);\n"
                "#9002 = ( CONVERSION_BASED_UNIT('INCH',#9003) LENGTH_UNIT() "
                "NAMED_UNIT(#9001) );\n#9003 = LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(25.4)," +
                    millimetre + ");\n#9004 = VALUE_FORMAT_TYPE_QUALIFIER('NR2 1.1');\n");
    box.Scene().Folder().Write("inch.step", step);
    ToolRun const run = RunTool({"import", box.Scene().PathOf("inch.step"), box.Scene().PathOf("inch.xml")});
    ASSERT_EQ(run.status, 0) << run.error;
    std::vector<SceneNote> const notes = NotesOf(box.Scene().PathOf("inch.xml"));
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_EQ(notes[0].text, "diameter 38.1");
    EXPECT_THAT(notes[0].details, HasSubstr("\"value\":38.1"));
}

TEST(ExportStepNotes, ValuesInAnotherUnitThanThePartsAreScaledAndAnglesAreNot)
{
    std::vector<SceneNote> const notes{
        Note(1, "diameter", "diameter 2.5", "dimension", "body1.f2",
             {{"type", "diameter"}, {"value", 2.5}, {"minus", 0.5}, {"plus", 1.0}}),
        Note(2, "taper", "angle 30", "dimension", "body1.f6", {{"type", "angle"}, {"value", 30.0}}),
    };
    std::vector<SceneNote> scaled = notes;
    scaled[0] = Note(1, "diameter", "diameter 25", "dimension", "body1.f2",
                     {{"type", "diameter"}, {"value", 25.0}, {"minus", 5.0}, {"plus", 10.0}});
    NotedBox const box(notes, "", "", "", "kUnitType_Centimeter");
    EXPECT_EQ(box.ReadBack(), scaled);
}

TEST(ExportStepNotes, DetailsThatAreNoneDoNoHarm)
{
    for (char const* const details :
         {"[]", "{", "{\"number\":\"x\",\"value\":\"y\",\"second\":5,\"modifiers\":[1,null],\"position\":1e99}"})
    {
        SceneNote note = Note(1, "diameter", "diameter", "dimension", "body1.f2", json::object());
        note.details = details;
        NotedBox const box({note});
        EXPECT_EQ(box.exported.status, 0) << details;
        EXPECT_EQ(box.ReadBack().size(), 1u) << details;
    }
}

}  // namespace KVR::Test
