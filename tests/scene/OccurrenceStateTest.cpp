#include "scene/OccurrenceState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "tests/scene/ModelScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;

// What holds at the occurrence with that path of ids from the root file on, for it and for its geometry.
class At
{
public:
    At(ModelScene const& scene, std::vector<std::string> const& path)
    {
        KVR::Scene const& model = scene.Model();
        m_component = &model.Components()[model.Root()];
        m_state.emplace(*m_component);
        for (std::string const& id : path)
        {
            ScenePlacement const& placement = scene.Placement(m_component->id, id);
            m_component = &model.Components()[placement.target];
            m_state = m_state->Below(placement, *m_component);
        }
    }

    OccurrenceState const& State() const { return *m_state; }
    SceneGeometry const& Geometry(std::string_view id) const
    {
        for (SceneGeometry const& geometry : m_component->geometry)
            if (geometry.id == id)
                return geometry;
        throw std::runtime_error("no such geometry");
    }
    bool Shows(std::string_view id) const { return State().IsVisible(Geometry(id)); }
    std::string StyleOf(std::string_view id) const
    {
        SceneStyle const* const style = State().StyleOf(Geometry(id));
        return style ? std::string(style->id) : "";
    }
    double PlaceOf(std::string_view id) const { return State().PlaceOf(Geometry(id), *m_component)[3]; }

private:
    SceneComponent const* m_component = nullptr;
    std::optional<OccurrenceState> m_state;
};

// The assembly "top" with "inner" by "i", which has the part "p" with the point "g" by "j" and by "k".
std::string Nested(std::string const& saidByTop, std::string const& saidByInner = {})
{
    return File({"top"}) + Assembly("top", Instance("i", "inner"), saidByTop) +
           Assembly("inner", MovedInstance("j", "p", 1) + HiddenInstance("k", "p"), saidByInner) +
           Part("p", Point("g"));
}

std::vector<std::string> const kToJ{"top", "i", "j"};
std::vector<std::string> const kToK{"top", "i", "k"};

}  // namespace

TEST(OccurrenceState, WithoutOverridesWhatIsSaidByInstancesHolds)
{
    ModelScene const scene(Nested({}));
    EXPECT_TRUE(At(scene, kToJ).State().isVisible);
    EXPECT_EQ(At(scene, kToJ).State().Transform()[3], 1.0);
    EXPECT_FALSE(At(scene, kToK).State().isVisible);
    EXPECT_FALSE(At(scene, kToK).Shows("g"));
    EXPECT_EQ(At(scene, kToJ).StyleOf("g"), "");
}

TEST(OccurrenceState, AnOverrideHoldsForTheOccurrenceThatItsPathNames)
{
    ModelScene const scene(Nested(CrossLevel(Shows("[i][k]", true) + Moves("[i][j]", 5) + Styles("[i][j]", "red"))));
    EXPECT_TRUE(At(scene, kToK).State().isVisible);
    EXPECT_EQ(At(scene, kToJ).State().Transform()[3], 5.0);
    EXPECT_EQ(At(scene, kToJ).StyleOf("g"), "red");
    EXPECT_EQ(At(scene, kToK).StyleOf("g"), "");
    EXPECT_EQ(At(scene, kToK).State().Transform()[3], 0.0);
}

TEST(OccurrenceState, TheOutermostThatSaysSomethingDecides)
{
    ModelScene const scene(
        Nested(CrossLevel(Shows("[i][j]", false) + Moves("[i][j]", 5) + Styles("[i][j]", "outer")),
               CrossLevel(Shows("[j]", true) + Moves("[j]", 6) + Styles("[j]", "inner") + Shows("[k]", true))));
    EXPECT_FALSE(At(scene, kToJ).State().isVisible);
    EXPECT_EQ(At(scene, kToJ).State().Transform()[3], 5.0);
    EXPECT_EQ(At(scene, kToJ).StyleOf("g"), "outer");
    // The inner one alone speaks of this.
    EXPECT_TRUE(At(scene, kToK).State().isVisible);
}

TEST(OccurrenceState, WhatTheOutermostLeavesOpenTheNextOneSays)
{
    ModelScene const scene(Nested(CrossLevel(Styles("[i][j]", "outer")), CrossLevel(Moves("[j]", 6))));
    EXPECT_EQ(At(scene, kToJ).State().Transform()[3], 6.0);
    EXPECT_EQ(At(scene, kToJ).StyleOf("g"), "outer");
}

TEST(OccurrenceState, WhatIsHiddenAboveIsHiddenBelow)
{
    ModelScene const scene(Nested(CrossLevel(Shows("[i]", false) + Shows("[i][j]", true))));
    EXPECT_FALSE(At(scene, kToJ).State().isVisible);
    EXPECT_FALSE(At(scene, kToJ).Shows("g"));
}

TEST(OccurrenceState, APathMayNameGeometryLast)
{
    ModelScene const scene(
        Nested(CrossLevel(Shows("[i][j][g]", false) + Moves("[i][j][g]", 9) + Styles("[i][j][g]", "red"))));
    EXPECT_FALSE(At(scene, kToJ).Shows("g"));
    EXPECT_TRUE(At(scene, kToJ).State().isVisible);
    EXPECT_EQ(At(scene, kToJ).PlaceOf("g"), 9.0);
    EXPECT_EQ(At(scene, kToJ).StyleOf("g"), "red");
    EXPECT_FALSE(At(scene, kToJ).State().KeepsFaceStyles(At(scene, kToJ).Geometry("g")));
    EXPECT_TRUE(At(scene, kToK).State().KeepsFaceStyles(At(scene, kToK).Geometry("g")));
    EXPECT_EQ(At(scene, kToK).StyleOf("g"), "");
}

TEST(OccurrenceState, APathMayNameWhatAnInstancePlaces)
{
    ModelScene const scene(Nested(CrossLevel(Moves("[i][inner][j]", 5) + Styles("[i][inner][j][p][g]", "red"))));
    EXPECT_EQ(At(scene, kToJ).State().Transform()[3], 5.0);
    EXPECT_EQ(At(scene, kToJ).StyleOf("g"), "red");
}

TEST(OccurrenceState, TheOutermostStyleOfAnInstanceIsImposedOnAllBelow)
{
    ModelScene const scene(File({"top"}) + Assembly("top", StyledInstance("i", "inner", "outer")) +
                           Assembly("inner", StyledInstance("j", "p", "middle")) +
                           Part("p", Point("g", "<Styles><StyleRef ID='own'/></Styles>")));
    EXPECT_EQ(At(scene, kToJ).StyleOf("g"), "outer");
    EXPECT_FALSE(At(scene, kToJ).State().KeepsFaceStyles(At(scene, kToJ).Geometry("g")));
}

TEST(OccurrenceState, AStyleOfAComponentHoldsForWhatHasNone)
{
    std::string const style = "<Styles><StyleRef ID='part'/></Styles>";
    ModelScene const scene(
        File({"top"}) + Assembly("top", Instance("i", "inner"), "<Styles><StyleRef ID='top'/></Styles>") +
        Assembly("inner", Instance("j", "p") + Instance("k", "q")) +
        Part("p", Point("g") + Point("h", "<Styles><StyleRef ID='own'/></Styles>"), style) + Part("q", Point("g2")));
    EXPECT_EQ(At(scene, kToJ).StyleOf("g"), "part");
    EXPECT_EQ(At(scene, kToJ).StyleOf("h"), "own");
    EXPECT_EQ(At(scene, kToK).StyleOf("g2"), "top");
    EXPECT_TRUE(At(scene, kToJ).State().KeepsFaceStyles(At(scene, kToJ).Geometry("g")));
}

TEST(OccurrenceState, AMeshInheritsWhatIsSaidOfItsBody)
{
    std::string const part = Part("p", Body("b") + MeshOf("m", "b"));
    auto const scene = [&](std::string const& said)
    { return ModelScene(File({"top"}) + Assembly("top", Instance("j", "p"), CrossLevel(said)) + part, {}, {"m"}); };
    ModelScene const hidden(scene(Shows("[j][b]", false) + Styles("[j][b]", "red") + Moves("[j][b]", 4)));
    EXPECT_FALSE(At(hidden, {"top", "j"}).Shows("m"));
    EXPECT_EQ(At(hidden, {"top", "j"}).StyleOf("m"), "red");
    EXPECT_EQ(At(hidden, {"top", "j"}).PlaceOf("m"), 4.0);
    // What is said of the mesh itself comes first.
    ModelScene const shown(scene(Shows("[j][b]", false) + Shows("[j][m]", true)));
    EXPECT_TRUE(At(shown, {"top", "j"}).Shows("m"));
    EXPECT_FALSE(At(shown, {"top", "j"}).Shows("b"));
}

TEST(OccurrenceState, GeometryInAUnitOfItsOwnIsScaledWithItsPlace)
{
    SceneComponent component;
    component.metresPerUnit = 1e-3;
    SceneGeometry geometry;
    geometry.metresPerUnit = 1.0;
    geometry.transform[3] = 2.0;
    OccurrenceState const state(component);
    EXPECT_EQ(state.PlaceOf(geometry, component), (Matrix{1000, 0, 0, 2000, 0, 1000, 0, 0, 0, 0, 1000, 0, 0, 0, 0, 1}));
    geometry.metresPerUnit = 1e-3;
    EXPECT_EQ(state.PlaceOf(geometry, component)[3], 2.0);
}

TEST(OccurrenceState, ALaterOverrideOfOnePathReplacesAnEarlierOne)
{
    ModelScene const scene(Nested(CrossLevel(Moves("[i][j]", 5) + Moves("[i][j]", 8))));
    EXPECT_EQ(At(scene, kToJ).State().Transform()[3], 8.0);
}

TEST(OccurrenceState, ItTellsTheOverridesFromAbove)
{
    ModelScene const scene(Nested(CrossLevel(Moves("[i][j]", 5)), CrossLevel(Moves("[j]", 6))));
    EXPECT_EQ(At(scene, {"top"}).State().Overrides().size(), 1U);
    EXPECT_EQ(At(scene, {"top", "i"}).State().Overrides().size(), 2U);
    EXPECT_EQ(At(scene, kToJ).State().Overrides().size(), 2U);
    EXPECT_EQ(At(scene, kToK).State().Overrides().size(), 0U);
}

}  // namespace KVR::Test
