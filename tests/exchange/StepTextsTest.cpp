#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using testing::HasSubstr;

// A model with notes, and these entities behind its own.
std::string Model(std::string const& entities)
{
    std::ifstream file(std::string(KVR_EXAMPLES_DIR) + "/models/nist_plate_creo_lbls.stp");
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    return text.insert(text.rfind("ENDSEC;"), entities);
}

// Imports the model, certifies it, and answers its scene.
std::string SceneOfEqual(std::string const& model)
{
    TempFolder const folder;
    folder.Write("a.stp", model);
    ToolRun const run = RunTool({"certify", "--quiet", "--json", folder.NarrowPathOf("a.stp")});
    EXPECT_EQ(run.status, 0) << run.error << run.out;
    EXPECT_EQ(RunTool({"import", "--quiet", folder.NarrowPathOf("a.stp"), folder.NarrowPathOf("a.xml")}).status, 0);
    std::ifstream scene(folder.NarrowPathOf("a.xml"));
    return {std::istreambuf_iterator<char>(scene), std::istreambuf_iterator<char>()};
}

}  // namespace

// A text of it cannot be read back as a number without an underflow.
TEST(StepTexts, AMeasureSmallerThanNumbersCanBeIsTaken)
{
    std::ifstream file(std::string(KVR_EXAMPLES_DIR) + "/models/iso14405_fig17a.stp");
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::string const measure = "LENGTH_MEASURE(0.02)";
    TempFolder const folder;
    folder.Write("a.stp", text.replace(text.find(measure), measure.size(), "LENGTH_MEASURE(2.E-309)"));
    ToolRun const run = RunTool({"import", "--quiet", folder.NarrowPathOf("a.stp"), folder.NarrowPathOf("a.xml")});
    EXPECT_EQ(run.status, 0) << run.error;
}

TEST(StepTexts, ATextOfAPartOfAShapeIsAPropertyOfTheProduct)
{
    std::string text = Model(
        "#900001=SHAPE_ASPECT('','NOTE',#900000,.T.);\n#900002=PROPERTY_DEFINITION('semantic text',$,#900001);\n"
        "#900003=DESCRIPTIVE_REPRESENTATION_ITEM('','REMOVE ALL BURRS');\n#900004=REPRESENTATION('',(#900003),#282);\n"
        "#900005=PROPERTY_DEFINITION_REPRESENTATION(#900002,#900004);\n");
    std::size_t const shape = text.rfind('#', text.find("=PRODUCT_DEFINITION_SHAPE("));
    std::string const id = text.substr(shape, text.find('=', shape) - shape);
    text.replace(text.find("#900000"), 7, id);
    EXPECT_THAT(SceneOfEqual(text),
                HasSubstr("<CustomProperty Key=\"semantic text\" Type=\"kString\" Value=\"REMOVE ALL BURRS\"/>"));
}

TEST(StepTexts, AProductTypeIsACategory)
{
    std::string text = Model("");
    std::size_t const number = text.rfind('#', text.find("=PRODUCT('"));
    std::string const product = text.substr(number, text.find('=', number) - number);
    text.insert(text.rfind("ENDSEC;"), "#900001=PRODUCT_TYPE('gauge',$,(" + product + "));\n");
    std::string const category = "<CustomProperty Key=\"product category\" Type=\"kString\" Value=\"gauge\"/>";
    EXPECT_NE(SceneOfEqual(text).find(category), std::string::npos);
}

TEST(StepTexts, AViewShowsDrawingsThatMeanNothingElse)
{
    std::string text = Model(
        "#900001=CARTESIAN_POINT('',(0.,0.,0.));\n#900002=CARTESIAN_POINT('',(9.,0.,0.));\n"
        "#900003=POLYLINE('',(#900001,#900002));\n#900004=GEOMETRIC_CURVE_SET('',(#900003));\n"
        "#900005=CURVE_STYLE('',$,$,$);\n#900006=PRESENTATION_STYLE_ASSIGNMENT((#900005));\n"
        "#900007=ANNOTATION_CURVE_OCCURRENCE('free line',(#900006),#900004);\n"
        "#900008=DRAUGHTING_CALLOUT('free line',(#900007));\n");
    for (char const* const list : {"DRAUGHTING_MODEL('',(", "DRAUGHTING_MODEL('COMB0001',("})
    {
        std::size_t const place = text.find(list);
        ASSERT_NE(place, std::string::npos);
        text.insert(place + std::string(list).size(), "#900008,");
    }
    std::string const scene = SceneOfEqual(text);
    std::size_t const label = scene.find("Label=\"free line\"");
    ASSERT_NE(label, std::string::npos);
    std::size_t const id = scene.rfind("ID=\"", label) + 4;
    std::string const member = scene.substr(id, scene.find('"', id) - id);
    std::size_t const view = scene.find("<IView ID=\"view2\"");
    EXPECT_THAT(scene.substr(view, scene.find("</IView>", view) - view), HasSubstr(member));
}

TEST(StepTexts, ANameGoesOnOverTheEndOfALine)
{
    std::string text = Model("");
    std::size_t const name = text.find("PRODUCT('", text.find("DATA;")) + 9;
    std::string const label = text.substr(name, text.find('\'', name) - name);
    ASSERT_GT(label.size(), 2U);
    for (std::size_t place = text.find('\'' + label + '\''); place != std::string::npos;
         place = text.find('\'' + label + '\'', place + 1))
        text.insert(place + 3, "\r\n");
    EXPECT_NE(SceneOfEqual(text).find("Label=\"" + label + '"'), std::string::npos);
}

}  // namespace KVR::Test
