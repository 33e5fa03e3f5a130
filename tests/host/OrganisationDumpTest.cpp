#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/host/OrganisationScene.h"
#include "tests/support/TempFolder.h"
#include "tests/tool/ToolRun.h"

namespace KVR::Test
{

namespace
{

using nlohmann::json;
using testing::ElementsAre;

class OrganisationDump : public testing::Test
{
protected:
    OrganisationDump()
    {
        m_folder.Write("scene.xml", kOrganisationScene);
        m_run = RunTool({"dump", m_folder.NarrowPathOf("scene.xml")});
        m_document = json::parse(m_run.out, nullptr, false);
    }
    json const& Object(char const* id) const { return m_document["Objects"][id]; }

    static std::vector<std::string> KeysOf(json const& object)
    {
        std::vector<std::string> keys;
        for (auto const& [key, value] : object.items())
            keys.push_back(key);
        return keys;
    }

    TempFolder m_folder;
    ToolRun m_run;
    json m_document;
};

TEST_F(OrganisationDump, EveryObjectIsReachedThroughTheSetsOfItsOwner)
{
    ASSERT_EQ(m_run.status, 0) << m_run.error;
    std::vector<std::string> ids;
    auto const ordered = nlohmann::ordered_json::parse(m_run.out);
    for (auto const& [key, value] : ordered["Objects"].items())
        ids.push_back(key);
    EXPECT_THAT(ids, ElementsAre("f", "top", "layer", "group", "i", "o", "lod", "k1", "k2", "v1", "v2", "p", "gone",
                                 "s", "apart", "lost", "s2"));
    EXPECT_TRUE(Object("gone").is_null());
    EXPECT_TRUE(Object("lost").is_null());
    EXPECT_EQ(Object("top")["ViewSet"], json({"v1", "v2"}));
    EXPECT_EQ(Object("top")["CameraSet"], json({"k1", "k2"}));
    EXPECT_EQ(Object("top")["LodSet"], json({"lod"}));
    EXPECT_EQ(Object("f")["LayerSet"], json({"layer"}));
    EXPECT_EQ(Object("f")["GroupSet"], json({"group"}));
}

TEST_F(OrganisationDump, ALayerShowsItsNumberItsMembersAndItsStyles)
{
    json const& layer = Object("layer");
    EXPECT_EQ(layer["Class"], "ILayer");
    EXPECT_EQ(layer["IsVisible"], false);
    EXPECT_EQ(layer["Description"], "about");
    EXPECT_EQ(layer["LayerNumber"], 3);
    EXPECT_EQ(layer["GeometryItems"], json({"p", "gone"}));
    EXPECT_EQ(layer["Styles"], json({"s"}));
}

TEST_F(OrganisationDump, AGroupAndALevelOfDetailShowWhatTheyHave)
{
    EXPECT_EQ(Object("group")["Class"], "IGroup");
    EXPECT_EQ(Object("group")["Description"], "");
    EXPECT_EQ(Object("group")["GeometryItems"], json({"apart"}));
    EXPECT_EQ(Object("lod")["Class"], "ILod");
    EXPECT_EQ(Object("lod")["Label"], "Lod");
    EXPECT_EQ(Object("lod")["Description"], "coarse");
}

TEST_F(OrganisationDump, ACameraAnswersEveryQuestion)
{
    json const& camera = Object("k1");
    EXPECT_EQ(camera["Class"], "ICamera");
    EXPECT_EQ(camera["CameraType"], 1);
    EXPECT_EQ(camera["LengthUnit"], "kUnitType_Millimeter");
    EXPECT_EQ(camera["CameraPosition"], json({1, 2.5, -3}));
    EXPECT_EQ(camera["CameraDirection"], json({0, 0, 1}));
    EXPECT_EQ(camera["CameraUpDirection"], json({0, 1, 0}));
    EXPECT_TRUE(camera["DistanceToViewPlane"].is_null());
    EXPECT_TRUE(camera["AspectRatio"].is_null());
    EXPECT_EQ(camera["ViewAngle"], 0.5);
    EXPECT_TRUE(camera["ViewWindowHeightForParallelCamera"].is_null());
    EXPECT_EQ(camera["IsDepthFieldDefined"], false);
    EXPECT_EQ(camera["NearPlane"],
              (json{{"Origin", {1, 0, 0}}, {"Normal", {0, 0, 1}}, {"ReferenceDirection", nullptr}}));
    EXPECT_TRUE(camera["FarPlane"].is_null());
    EXPECT_FALSE(camera.contains("SectionPlanes"));
}

TEST_F(OrganisationDump, ASectionCameraShowsItsPlanesToo)
{
    json const& camera = Object("k2");
    EXPECT_EQ(camera["Class"], "ISectionCamera");
    EXPECT_EQ(camera["CameraType"], 0);
    ASSERT_EQ(camera["SectionPlanes"].size(), 2U);
    EXPECT_EQ(camera["SectionPlanes"][0]["Origin"], json({7, 0, 0}));
    EXPECT_EQ(camera["SectioningOperations"], "AND");
}

TEST_F(OrganisationDump, AViewShowsItsMembersAndItsCameras)
{
    json const& view = Object("v1");
    EXPECT_EQ(view["Class"], "IView");
    EXPECT_EQ(view["IsVisible"], true);
    EXPECT_EQ(view["IsActive"], true);
    EXPECT_EQ(view["LengthUnit"], "kUnitType_Inch");
    ASSERT_EQ(view["ViewMembers"].size(), 2U);
    json const& member = view["ViewMembers"][0];
    EXPECT_THAT(KeysOf(member), ElementsAre("EntityStyles", "EntityTransform", "EntityVisibility", "OccurrencePath"));
    EXPECT_EQ(member["OccurrencePath"], json({"i", "p"}));
    EXPECT_EQ(member["EntityVisibility"], true);
    EXPECT_EQ(member["EntityTransform"], json({1, 0, 0, 4, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
    EXPECT_EQ(member["EntityStyles"], json({"s2"}));
    EXPECT_EQ(view["ViewMembers"][1]["EntityVisibility"], false);
    EXPECT_EQ(view["CameraSet"], json({"k1", "lost"}));
    EXPECT_TRUE(Object("v2")["LengthUnit"].is_null());
    EXPECT_EQ(Object("v2")["IsActive"], false);
}

TEST_F(OrganisationDump, AFeatureOverrideShowsItsBasePathsAndItsChildren)
{
    json const& featureOverride = Object("o");
    EXPECT_EQ(featureOverride["Class"], "IAssemblyFeatureOverride");
    EXPECT_EQ(featureOverride["IsVisible"], true);
    EXPECT_EQ(featureOverride["BaseOccPaths"], json::array({{"i", "p"}}));
    EXPECT_EQ(featureOverride["Children"], json::array());
}

}  // namespace

}  // namespace KVR::Test
