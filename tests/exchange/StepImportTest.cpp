// What a STEP file says beside its shapes: products, usages, properties, tolerances, views, and what is told of the
// rest.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "exchange/model/DecodedPart21.h"
#include "exchange/model/Part21Repair.h"
#include "exchange/model/StepCensus.h"
#include "exchange/model/StepContent.h"
#include "exchange/model/StepTypes.h"
#include "exchange/model/ToldFile.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::string TextOf(std::string const& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

using Changes = std::vector<std::pair<std::string, std::string>>;

// An example with other texts in it, imported.
class ChangedModel
{
public:
    ChangedModel(char const* name, Changes const& changes)
    {
        std::string text = TextOf(std::string(KVR_EXAMPLES_DIR) + "/models/" + name);
        for (auto const& [from, to] : changes)
        {
            auto const at = text.find(from);
            EXPECT_NE(at, std::string::npos) << from;
            if (at != std::string::npos)
                text.replace(at, from.size(), to);
        }
        m_folder.Write("model.stp", text);
        run = RunTool({"import", "--no-mesh", "--report", m_folder.NarrowPathOf("report.json"),
                       m_folder.NarrowPathOf("model.stp"), Scene()});
        objects = json::parse(RunTool({"dump", "--summary", Scene()}).out).at("Objects");
        report = json::parse(TextOf(m_folder.NarrowPathOf("report.json")));
        for (auto const& entry : std::filesystem::directory_iterator(m_folder.Path()))
            if (entry.path().string().ends_with("property"))
                properties = TextOf(entry.path().string());
    }

    // As STEP, with the entities on one line each.
    std::string Exported() const
    {
        std::string const path = m_folder.NarrowPathOf("out.step");
        EXPECT_EQ(RunTool({"export", Scene(), path}).status, 0);
        return std::regex_replace(TextOf(path), std::regex("\n *"), "");
    }

    std::string Scene() const { return m_folder.NarrowPathOf("scene.xml"); }
    json const& Labelled(std::string const& label) const
    {
        for (json const& object : objects)
            if (object.is_object() && object.value("Label", "") == label)
                return object;
        static json const none;
        ADD_FAILURE() << label;
        return none;
    }
    std::vector<std::string> ItemsOf(std::string const& kind) const
    {
        for (json const& loss : report.at("Losses"))
            if (loss.at("Kind") == kind)
                return loss.at("Items");
        return {};
    }

    ToolRun run;
    json objects;
    json report;
    std::string properties;

private:
    TempFolder m_folder;
};

std::map<std::string, json> CustomOf(json const& component)
{
    std::map<std::string, json> properties;
    for (json const& property : component.at("FileProperties").at("CustomProperties"))
        properties[property.at("Name")] = property.at("Value");
    return properties;
}

// What a file of these entities says.
StepContent ContentOf(TempFolder const& folder, std::string const& entities)
{
    folder.Write("a.stp", "ISO-10303-21;\nHEADER;\nFILE_NAME('#1=X;','',(''),(''),'','','');\nENDSEC;\nDATA;\n" +
                              entities + "\nENDSEC;\nEND-ISO-10303-21;\n");
    return StepContent(folder.NarrowPathOf("a.stp"));
}

constexpr char kUnits[] = R"(
#1=(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(.MILLI.,.METRE.));
#2=DIMENSIONAL_EXPONENTS(1.,0.,0.,0.,0.,0.,0.);
#3=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(25.4),#1);
#4=(CONVERSION_BASED_UNIT('INCH',#3)LENGTH_UNIT()NAMED_UNIT(#2));
)";

// The model of products, once for all tests that ask it.
ChangedModel const& Products()
{
    static ChangedModel const model(
        "as1-oc-214.stp",
        {{"PRODUCT('nut','nut','',(#745))", "PRODUCT('4711-A',' nut ','holds \\X2\\00FC\\X0\\',(#745))"},
         {"#743 = PRODUCT_DEFINITION_FORMATION('','',#744)", "#743 = PRODUCT_DEFINITION_FORMATION('C','third',#744)"},
         {"NEXT_ASSEMBLY_USAGE_OCCURRENCE('1','nut_1','',#39,#742,$)",
          "NEXT_ASSEMBLY_USAGE_OCCURRENCE('u1',' nut_1 ','first',#39,#742,'N1')"},
         {"#5 = PRODUCT_DEFINITION(",
          "#90001=PROPERTY_DEFINITION('colour code','',#742);\n"
          "#90002=REPRESENTATION('',(#90003,#90004,#90010),#90005);\n"
          "#90003=DESCRIPTIVE_REPRESENTATION_ITEM('paint','RAL''5002');\n"
          "#90004=INTEGER_REPRESENTATION_ITEM('coats',3);\n"
          "#90005=REPRESENTATION_CONTEXT('','');\n"
          "#90006=PROPERTY_DEFINITION_REPRESENTATION(#90001,#90002);\n"
          "#90007=GENERAL_PROPERTY('','stock',$);\n"
          "#90008=GENERAL_PROPERTY_ASSOCIATION('','',#90007,#90009);\n"
          "#90009=PROPERTY_DEFINITION('','',#742);\n"
          "#90010=REAL_REPRESENTATION_ITEM('thickness',0.25);\n"
          "#90011=REPRESENTATION('',(#90012),#90005);\n"
          "#90012=DESCRIPTIVE_REPRESENTATION_ITEM('','B7');\n"
          "#90013=PROPERTY_DEFINITION_REPRESENTATION(#90009,#90011);\n"
          "#90017=SHAPE_ASPECT('','',#90018,.T.);\n"
          "#90018=PRODUCT_DEFINITION_SHAPE('','',#742);\n"
          "#90019=PROPERTY_DEFINITION('geometric validation property','',#90017);\n"
          "#90020=REPRESENTATION('',(#90021),#90005);\n"
          "#90021=DESCRIPTIVE_REPRESENTATION_ITEM('point cloud','none');\n"
          "#90022=PROPERTY_DEFINITION_REPRESENTATION(#90019,#90020);\n"
          "#90023=SHAPE_ASPECT('bore','',#90018,.T.);\n"
          "#90024=PROPERTY_DEFINITION('finish','',#90023);\n"
          "#90025=REPRESENTATION('',(#90026,#90028,#90030),#90005);\n"
          "#90028=MEASURE_REPRESENTATION_ITEM('depth',LENGTH_MEASURE(12.5),#90029);\n"
          "#90029=(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(.CENTI.,.METRE.));\n"
          "#90030=MEASURE_REPRESENTATION_ITEM('density',POSITIVE_RATIO_MEASURE(7850.),#90031);\n"
          "#90031=DERIVED_UNIT((#90032,#90034));\n"
          "#90032=DERIVED_UNIT_ELEMENT(#90033,1.);\n"
          "#90033=(MASS_UNIT()NAMED_UNIT(*)SI_UNIT(.KILO.,.GRAM.));\n"
          "#90034=DERIVED_UNIT_ELEMENT(#90035,-3.);\n"
          "#90035=(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT($,.METRE.));\n"
          "#90026=REAL_REPRESENTATION_ITEM('roughness',3.2);\n"
          "#90027=PROPERTY_DEFINITION_REPRESENTATION(#90024,#90025);\n"
          "#90014=CALENDAR_DATE(2026,1,2);\n"
          "#90015=NEVER_HEARD_OF('x',#90014);\n"
          "#90016=CARTESIAN_POINT('',(1.,2.,3.));\n"
          "#5 = PRODUCT_DEFINITION("}});
    return model;
}

}  // namespace

TEST(StepImport, NumberRevisionDescriptionAndCategoryStandBesideTheName)
{
    json const& nut = Products().Labelled(" nut ");
    json const& said = nut.at("FileProperties");
    EXPECT_EQ(said.at("PartNumber"), "4711-A");
    EXPECT_EQ(said.at("Revision"), "C");
    EXPECT_EQ(said.at("Description"), "holds \xC3\xBC");
    auto const custom = CustomOf(nut);
    EXPECT_EQ(custom.at("revision description"), "third");
    EXPECT_EQ(custom.at("product category"), "part");
    EXPECT_EQ(Products().Labelled("rod-assembly").at("FileProperties").at("PartNumber"), "rod-assembly");
}

TEST(StepImport, PropertiesOfUsersKeepTheirTypes)
{
    auto const custom = CustomOf(Products().Labelled(" nut "));
    EXPECT_EQ(custom.at("colour code: paint"), "RAL'5002");
    EXPECT_EQ(custom.at("colour code: coats"), 3);
    EXPECT_EQ(custom.at("colour code: thickness"), 0.25);
    EXPECT_EQ(custom.at("stock"), "B7");
    EXPECT_TRUE(CustomOf(Products().Labelled("as1")).count("geometric validation property: volume"));
}

TEST(StepImport, PropertiesOfPiecesOfAShapeHaveTheNamesOfThePieces)
{
    auto const custom = CustomOf(Products().Labelled(" nut "));
    EXPECT_EQ(custom.at("bore: finish: roughness"), 3.2);
    EXPECT_EQ(custom.at("bore: finish: depth"), 12.5);
    EXPECT_EQ(custom.at("bore: finish: depth unit"), "centimetre");
    EXPECT_EQ(custom.at("bore: finish: density unit"), "kilogram metre^-3");
    EXPECT_EQ(custom.at("#90017: geometric validation property: point cloud"), "none");
}

TEST(StepImport, UsagesKeepIdNameAndDesignator)
{
    std::string const id = Products().Labelled(" nut_1 ").at("Id");
    auto const has = [&](std::string const& name, std::string const& value)
    { return HasSubstr("ObjectID=\"" + id + "\" Name=\"" + name + "\" Type=\"kString\" Value=\"" + value + "\""); };
    EXPECT_THAT(Products().properties, has("usage id", "u1"));
    EXPECT_THAT(Products().properties, has("usage description", "first"));
    EXPECT_THAT(Products().properties, has("reference designator", "N1"));
}

TEST(StepImport, ProductsUsagesAndPropertiesComeBackFromAnExport)
{
    std::string const back = Products().Exported();
    for (char const* const text :
         {"PRODUCT('4711-A',' nut ','holds \\X2\\00FC\\X0\\'", "PRODUCT_DEFINITION_FORMATION('C','third'",
          "NEXT_ASSEMBLY_USAGE_OCCURRENCE('u1',' nut_1 ','first'", "PROPERTY_DEFINITION('colour code: paint',$",
          "DESCRIPTIVE_REPRESENTATION_ITEM('','RAL''5002')", "INTEGER_REPRESENTATION_ITEM('',3",
          "MEASURE_REPRESENTATION_ITEM('',RATIO_MEASURE(0.25)", "MEASURE_REPRESENTATION_ITEM('',LENGTH_MEASURE(12.5)",
          "SI_UNIT(.CENTI.,.METRE.)", "PROPERTY_DEFINITION('bore: finish: density unit',$",
          "PRODUCT_RELATED_PRODUCT_CATEGORY('part',$"})
        EXPECT_THAT(back, HasSubstr(text));
    EXPECT_THAT(back, testing::ContainsRegex("'N1'\\);"));
}

TEST(StepImport, WhatIsNotInTheSceneIsListedByEntity)
{
    EXPECT_THAT(Products().ItemsOf("approvals, dates and persons"), ElementsAre("#90014 CALENDAR_DATE"));
    EXPECT_THAT(Products().ItemsOf("entities of the type NEVER_HEARD_OF"), ElementsAre("#90015 NEVER_HEARD_OF"));
    EXPECT_THAT(Products().ItemsOf("entities that nothing in the scene uses"), ElementsAre("#90016 CARTESIAN_POINT"));
    EXPECT_EQ(Products().report.at("LossCount"), 3);
    EXPECT_EQ(Products().report.at("Losses").size(), 3u);
    EXPECT_THAT(Products().run.error, HasSubstr("not in the scene: 1 approvals, dates and persons\n"));
    EXPECT_THAT(Products().run.error, HasSubstr("not in the scene: 1 entities of the type NEVER_HEARD_OF\n"));
}

TEST(StepImport, AReportNeverReplacesTheModel)
{
    TempFolder const folder;
    std::filesystem::copy_file(std::string(KVR_EXAMPLES_DIR) + "/models/iso14405_fig17a.stp",
                               folder.NarrowPathOf("a.stp"));
    std::filesystem::create_symlink("a.stp", folder.NarrowPathOf("b.json"));
    auto const size = std::filesystem::file_size(folder.NarrowPathOf("a.stp"));
    for (char const* const report : {"a.stp", "b.json", "s.xml"})
    {
        ToolRun const run = RunTool({"import", "--report", folder.NarrowPathOf(report), folder.NarrowPathOf("a.stp"),
                                     folder.NarrowPathOf("s.xml")});
        EXPECT_EQ(run.status, 1) << report;
        EXPECT_THAT(run.error, HasSubstr("the report would replace")) << report;
        EXPECT_EQ(std::filesystem::file_size(folder.NarrowPathOf("a.stp")), size) << report;
    }
}

TEST(StepImport, ATolerancesMagnitudeStandsInItsNote)
{
    ChangedModel const model("nist_plate_creo_lbls.stp", {});
    std::map<std::string, json> details;
    json const notes = json::parse(RunTool({"notes", "--json", model.Scene()}).out);
    for (json const& note : notes.at("Notes"))
        if (note.at("Kind") == "tolerance")
            details[note.at("Text")] = note.at("Details");
    ASSERT_EQ(details.size(), 1u) << model.run.error;
    auto const& [text, tolerance] = *details.begin();
    double const magnitude = tolerance.at("magnitude");
    EXPECT_DOUBLE_EQ(magnitude, 0.01);
    EXPECT_EQ(text, "position 0.01");
    EXPECT_THAT(RunTool({"notes", model.Scene()}).out, HasSubstr("position 0.01: IAnnotationCallout"));
    EXPECT_THAT(model.Exported(), HasSubstr("LENGTH_MEASURE(1.E-02)"));
}

TEST(StepImport, ACameraThatTurnsItsBackOnTheModelIsTurned)
{
    ChangedModel const model(
        "iso14405_fig17a.stp",
        {{"AXIS2_PLACEMENT_3D('',#566,#473,#474)", "AXIS2_PLACEMENT_3D('',#566,#90001,#474)"},
         {"#11=CAMERA_MODEL_D3('Top'", "#90001=DIRECTION('',(0.0,0.0,1.0));\n#11=CAMERA_MODEL_D3('Top'"}});
    int cameras = 0;
    for (json const& object : model.objects)
        if (object.is_object() && object.value("Class", "") == "ICamera" && object.at("Label") == "Top")
        {
            ++cameras;
            // The eye is below.
            EXPECT_NEAR(object.at("CameraPosition").at(2), -115.664672851563, 1e-9);
            EXPECT_EQ(object.at("CameraDirection"), json({0, 0, 1}));
        }
    EXPECT_EQ(cameras, 1);
}

TEST(StepTolerances, MagnitudesModifiersZonesAndFramesAreThoseOfTheEntities)
{
    TempFolder const folder;
    StepContent const content = ContentOf(folder, std::string(kUnits) + R"(
#10=(LENGTH_MEASURE_WITH_UNIT()MEASURE_REPRESENTATION_ITEM()MEASURE_WITH_UNIT(LENGTH_MEASURE(0.5),#4)
  QUALIFIED_REPRESENTATION_ITEM((#99))REPRESENTATION_ITEM(''));
#11=SHAPE_ASPECT('','',#12,.T.);
#13=GEOMETRIC_ITEM_SPECIFIC_USAGE('','',#11,#14,#15);
#20=(GEOMETRIC_TOLERANCE('it''s','',#10,#11)GEOMETRIC_TOLERANCE_WITH_DATUM_REFERENCE((#21))
  GEOMETRIC_TOLERANCE_WITH_MODIFIERS((.MAXIMUM_MATERIAL_REQUIREMENT.,.FREE_STATE.))POSITION_TOLERANCE());
#21=DATUM_SYSTEM('','',#12,.F.,(#22,#23));
#22=DATUM_REFERENCE_COMPARTMENT('','',#12,.F.,#24,(SIMPLE_DATUM_REFERENCE_MODIFIER(.LEAST_MATERIAL_REQUIREMENT.)));
#23=DATUM_REFERENCE_COMPARTMENT('','',#12,.F.,COMMON_DATUM_LIST((#25,#26)),$);
#24=DATUM('','',#12,.F.,'A');
#25=DATUM_REFERENCE_ELEMENT('','',#12,.F.,#27,$);
#26=DATUM_REFERENCE_ELEMENT('','',#12,.F.,#24,$);
#27=DATUM('','',#12,.F.,'B');
#30=TOLERANCE_ZONE('','',#12,.F.,(#20),#31);
#31=TOLERANCE_ZONE_FORM('cylindrical or circular');
#32=PROJECTED_ZONE_DEFINITION(#30,(),#11,#3);
#40=FLATNESS_TOLERANCE('f','',#3,#11);
#50=DIMENSIONAL_SIZE(#11,'diameter');
#51=PLUS_MINUS_TOLERANCE(#52,#50);
#52=LIMITS_AND_FITS('H','hole','7','ISO 286');)");
    StepTolerances const all = StepTolerances::Of(content.file, 1e-3);
    ASSERT_EQ(all.tolerances.size(), 3u);
    StepTolerance const& position = all.tolerances[0];
    EXPECT_EQ(position.name, "it's");
    EXPECT_EQ(position.type, "position");
    EXPECT_DOUBLE_EQ(position.magnitude.value_or(0.0), 12.7);
    EXPECT_THAT(position.modifiers, ElementsAre("maximum material requirement", "free state"));
    EXPECT_EQ(position.zone, "cylindrical or circular");
    EXPECT_DOUBLE_EQ(position.projection.value_or(0.0), 25.4);
    EXPECT_THAT(position.items, ElementsAre(15u));
    ASSERT_EQ(position.frame.size(), 3u);
    EXPECT_EQ(position.frame[0].letter + position.frame[1].letter + position.frame[2].letter, "ABA");
    EXPECT_EQ(position.frame[2].position, 2);
    EXPECT_THAT(position.frame[0].modifiers, ElementsAre("least material requirement"));
    EXPECT_EQ(all.tolerances[1].type, "flatness");
    EXPECT_DOUBLE_EQ(all.tolerances[1].magnitude.value_or(0.0), 25.4);
    EXPECT_EQ(all.tolerances[2].fit, "H7");
    EXPECT_EQ(all.tolerances[2].fitOf, "hole");
}

TEST(StepTolerances, TargetsOfDatumsHaveLetterNumberAndSize)
{
    TempFolder const folder;
    StepContent const content = ContentOf(folder, std::string(kUnits) + R"(
#10=PLACED_DATUM_TARGET_FEATURE('','rectangle',#12,.T.,'1');
#11=SHAPE_ASPECT_RELATIONSHIP('','',#10,#24);
#24=DATUM('','',#12,.F.,'C');
#30=PROPERTY_DEFINITION('','',#10);
#31=SHAPE_DEFINITION_REPRESENTATION(#30,#32);
#32=SHAPE_REPRESENTATION_WITH_PARAMETERS('',(#33,#34),#9);
#33=(LENGTH_MEASURE_WITH_UNIT()MEASURE_REPRESENTATION_ITEM()MEASURE_WITH_UNIT(LENGTH_MEASURE(2.),#1)REPRESENTATION_ITEM('target length'));
#34=(LENGTH_MEASURE_WITH_UNIT()MEASURE_REPRESENTATION_ITEM()MEASURE_WITH_UNIT(LENGTH_MEASURE(1.5),#1)REPRESENTATION_ITEM('target width'));)");
    StepTolerances const all = StepTolerances::Of(content.file, 1e-3);
    ASSERT_EQ(all.targets.size(), 1u);
    EXPECT_EQ(all.targets[0].letter + all.targets[0].id + all.targets[0].type, "C1rectangle");
    EXPECT_DOUBLE_EQ(all.targets[0].length.value_or(0.0), 2.0);
    EXPECT_DOUBLE_EQ(all.targets[0].width.value_or(0.0), 1.5);
}

TEST(StepCensus, ReachesFromWhatIsCarriedThroughWhatIsKnown)
{
    TempFolder const folder;
    StepContent content = ContentOf(folder, R"(
#1=PRODUCT_DEFINITION('','',#2,#3);
#2=PRODUCT_DEFINITION_FORMATION('','',#4);
#3=PRODUCT_DEFINITION_CONTEXT('',#5,'');
#4=PRODUCT('','','',());
#5=APPLICATION_CONTEXT('');
#6=PRODUCT_DEFINITION_SHAPE('','',#1);
#7=SHAPE_DEFINITION_REPRESENTATION(#6,#8);
#8=SHAPE_REPRESENTATION('',(#9,#10),#11);
#9=ADVANCED_FACE('',(),#12,.T.);
#10=UNKNOWN_ITEM('',#13);
#12=PLANE('',#14);
#13=CARTESIAN_POINT('',(0.,0.,0.));
#20=STYLED_ITEM('',(#21),#9);
#21=PRESENTATION_STYLE_ASSIGNMENT((#99));
#22=STYLED_ITEM('',(#21),#10);)");
    Losses all;
    CountStepLosses(content, {}, all);
    std::vector<std::string> items;
    for (auto const& [kind, losses] : all.Kinds())
    {
        EXPECT_EQ(losses.items.size(), losses.count) << kind;
        items.insert(items.end(), losses.items.begin(), losses.items.end());
    }
    EXPECT_THAT(items, testing::UnorderedElementsAre("#10 UNKNOWN_ITEM", "#13 CARTESIAN_POINT", "#22 STYLED_ITEM"));

    // A face that could not be made is not there, and nor is what hangs on it.
    content.missing.insert(9);
    Losses fewer;
    CountStepLosses(content, {}, fewer);
    EXPECT_THAT(fewer.Kinds().at("shapes and products of the model that could not be made").items,
                ElementsAre("#9 ADVANCED_FACE"));
    EXPECT_THAT(fewer.Kinds().at("entities that nothing in the scene uses").items, Contains("#20 STYLED_ITEM"));
}

TEST(StepCensus, ATypeOfSeveralIsKnownWhenAllOfItAre)
{
    EXPECT_EQ(StepRoleOf("BOUNDED_CURVE B_SPLINE_CURVE CURVE").kind, StepRole::Kind::kDetail);
    EXPECT_EQ(StepRoleOf("BOUNDED_CURVE NEW_CURVE CURVE").kind, StepRole::Kind::kUnknown);
    EXPECT_EQ(StepRoleOf("GEOMETRIC_TOLERANCE POSITION_TOLERANCE").kind, StepRole::Kind::kAnnotation);
    EXPECT_EQ(StepRoleOf("").kind, StepRole::Kind::kDetail);
}

TEST(Part21, TextsMeanWhatTheirEscapesSay)
{
    EXPECT_EQ(DecodedPart21("it''s \\\\ \\X\\FC \\S\\| \\X2\\00E90416\\X0\\ \\X4\\0001F600\\X0\\ \\PA\\x"),
              "it's \\ \xC3\xBC \xC3\xBC \xC3\xA9\xD0\x96 \xF0\x9F\x98\x80 x");
    EXPECT_EQ(DecodedPart21("\\X2\\00E"), "\\X2\\00E");
    EXPECT_EQ(DecodedPart21(" a\n b "), " a b ");
}

TEST(Part21, DamageEndsWhatIsDamagedAndNothingElse)
{
    TempFolder const folder;
    std::string const deep(100000, '(');
    for (std::string const& text :
         {std::string("#1=A('x"), std::string("#1"), std::string("#1=;#2=(((;"), "#1=A" + deep, "#1=A" + deep + ";",
          std::string("#99999999999999999999=A();"), std::string("#1=A(#99999999999999999999,/*"),
          std::string("#1=(A(1)B(2);"), std::string("#1=GEOMETRIC_TOLERANCE(,,,);"),
          std::string("#1=SHAPE_ASPECT_RELATIONSHIP('','',#1,#1);#2=DIMENSIONAL_SIZE(#1,'');")})
        for (std::size_t length = 0; length <= std::min<std::size_t>(text.size(), 64); ++length)
        {
            folder.Write("a.stp", text.substr(0, length == 64 ? text.size() : length));
            StepContent content(folder.NarrowPathOf("a.stp"));
            StepTolerances::Of(content.file, 1e-3);
            for (Part21File::Entity const& entity : content.file.Entities())
                content.file.ParametersOf(entity, content.file.TypeOf(entity));
            Losses losses;
            CountStepLosses(content, {}, losses);
            std::size_t count = 0;
            for (auto const& [kind, lost] : losses.Kinds())
                count += lost.items.size();
            EXPECT_LE(count, content.file.Entities().size());
        }
}

TEST(Part21Repair, TakesWhatIsWholeAndNamesWhatIsWhole)
{
    Part21File const file(Part21File::Bytes{
        "ISO-10303-21;HEADER;ENDSEC;\nDATA;\n#1=A('a;(',#2);#2=B();\n#3=A('',#99);#4=C('',#3);"
        "#5=OPEN_SHELL('',(#2,#3));#6=OPEN_SHELL('',(#3,#99,#2,#3,#1));#7=OPEN_SHELL('',(#3));#8=D(#7);"
        "#9=SHAPE_REPRESENTATION(#3,(#2));#10=B(;#11=(A()SHAPE_REPRESENTATION((#3,#2)));#12=B() #13=B();"
        "#14=B();#14=C();#15=B('x"});
    Part21Repair const repair = Part21Repair::Of(file);
    EXPECT_EQ(
        repair.text,
        "ISO-10303-21;HEADER;ENDSEC;\nDATA;\n#1=A('a;(',#2);\n#2=B();\n#5=OPEN_SHELL('',(#2));\n"
        "#6=OPEN_SHELL('',(#2,#1));\n#11=(A()SHAPE_REPRESENTATION((#2)));\n#14=B();\nENDSEC;\nEND-ISO-10303-21;\n");
    EXPECT_EQ(repair.taken, 6u);
    EXPECT_THAT(repair.shortened, ElementsAre("#5 OPEN_SHELL", "#6 OPEN_SHELL", "#11 A SHAPE_REPRESENTATION"));
    EXPECT_THAT(repair.dropped, testing::IsSupersetOf({"#3 A", "#4 C", "#7 OPEN_SHELL", "#8 D",
                                                       "#9 SHAPE_REPRESENTATION", "#10 B", "#12 B", "#15 B"}));
    EXPECT_TRUE(Part21Repair::Of(Part21File(Part21File::Bytes{"DATA;"})).text.empty());
}

TEST(StepImport, OfADamagedFileLeniencyTakesWhatIsWholeAndListsTheRest)
{
    TempFolder const folder;
    std::ifstream file(std::string(KVR_EXAMPLES_DIR) + "/models/iso14405_fig17a.stp", std::ios::binary);
    std::string const whole{std::istreambuf_iterator<char>(file), {}};
    std::string damaged = whole;
    // One surface is gone, and with it its face; the end is cut off.
    std::size_t const face = damaged.rfind("=CYLINDRICAL_SURFACE");
    ASSERT_NE(face, std::string::npos);
    damaged[face] = '?';
    folder.Write("damaged.stp", damaged.substr(0, damaged.rfind("ENDSEC;")));
    std::string const model = folder.NarrowPathOf("damaged.stp");
    std::string const scene = folder.NarrowPathOf("s.xml");
    std::string const report = folder.NarrowPathOf("report.json");
    ToolRun const refused = RunTool({"import", model, scene});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.error, "kvr: " + model + ": it is no complete STEP file\n");
    ToolRun const taken = RunTool({"import", "--lenient", "--report", report, model, scene});
    EXPECT_EQ(taken.status, 0) << taken.error;
    EXPECT_THAT(taken.error, HasSubstr(": it is damaged; taken: "));
    EXPECT_THAT(taken.error, HasSubstr("entities that are damaged or name what is not there\n"));
    std::ifstream listed(report);
    std::string const losses{std::istreambuf_iterator<char>(listed), {}};
    EXPECT_THAT(losses, HasSubstr(" ADVANCED_FACE\""));
    EXPECT_THAT(losses, HasSubstr(" CLOSED_SHELL\""));
    // Whatever is cut off, it ends with a sentence or a scene.
    for (std::size_t const size : {whole.size() / 2, whole.size() - 200})
    {
        folder.Write("damaged.stp", whole.substr(0, size));
        ToolRun const run = RunTool({"import", "--lenient", "--no-mesh", model, scene});
        EXPECT_TRUE(run.status == 0 || run.error.ends_with("\n")) << run.error;
    }
    folder.Write("a.brep", "DBRep_DrawableShape\n");
    EXPECT_THAT(RunTool({"import", "--lenient", folder.NarrowPathOf("a.brep"), scene}).error,
                HasSubstr("IGES and BREP files are taken whole or not at all: --lenient is for STEP"));
}

TEST(ToldFiles, TellHowMuchOfThemHasBeenTaken)
{
    TempFolder const folder;
    folder.Write("file", std::string(ToldFile::kBlock * 5 / 2, 'x'));
    std::vector<double> told;
    ToldFile file(folder.NarrowPathOf("file"), [&](double fraction) { told.push_back(fraction); });
    std::istream stream(&file);
    // Letter by letter, as Open CASCADE does.
    std::size_t count = 0;
    for (char letter = ' '; stream.get(letter); ++count)
        EXPECT_EQ(letter, 'x');
    EXPECT_EQ(count, ToldFile::kBlock * 5 / 2);
    EXPECT_THAT(told, ElementsAre(0.4, 0.8, 1.0));
}

TEST(ToldFiles, LeaveOutCarriageReturns)
{
    TempFolder const folder;
    folder.Write("file", std::string(ToldFile::kBlock, '\r') + "\ra\r\nb\r");
    ToldFile file(folder.NarrowPathOf("file"), [](double) {});
    std::istream stream(&file);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), "a\nb");
}

}  // namespace KVR::Test
