// Parts of which ids, names and digits are others are found by what is measured of their bodies.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <memory>
#include <string>
#include <vector>

#include "inspect/Compare.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/Shapes.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr double kTiny = 1e-9;

// A root file with a part of each body. All ids and names have the letter in them.
class SceneOfBodies
{
public:
    SceneOfBodies(std::string const& letter, std::vector<TopoDS_Shape> const& shapes) : m_scene(Text(letter, shapes))
    {
        std::vector<std::unique_ptr<ENTITY>> entities;
        for (std::size_t i = 0; i < shapes.size(); ++i)
        {
            entities.push_back(std::make_unique<BODY>(shapes[i]));
            entities.back()->AddDataId((letter + "body" + std::to_string(i)).c_str());
        }
        m_scene.WithFile("s.sab", StoreBytes(entities, false));
        m_scene.Begin();
    }

    XMLProducer& Producer() { return m_scene.Producer(); }

private:
    static std::string Text(std::string const& letter, std::vector<TopoDS_Shape> const& shapes)
    {
        std::string children;
        std::string parts;
        for (std::size_t i = 0; i < shapes.size(); ++i)
        {
            std::string const id = letter + std::to_string(i);
            children += "<Child ID='" + id + "' Type='IPart'/>";
            parts += "<IPart ID='" + id + "' Label='" + id + "'><ChildSet><IBrep ID='" + letter + "body" +
                     std::to_string(i) + "' Label='" + letter + "' Visibility='1'/></ChildSet></IPart>";
        }
        return "<Scene><SatInfo Path='s.sab'/><IFile ID='" + letter + "' Label='gate' IsRoot='1'><ChildSet>" +
               children + "</ChildSet></IFile>" + parts + "</Scene>";
    }

    TestScene m_scene;
};

// "kind class first -> second", by ids.
std::vector<std::string> ChangesOf(std::vector<TopoDS_Shape> const& first, std::vector<TopoDS_Shape> const& second)
{
    SceneOfBodies one("a", first);
    SceneOfBodies other("b", second);
    std::vector<std::string> lines;
    for (SceneChange const& change : CompareScenes(one.Producer(), other.Producer()).changes)
        lines.push_back(std::string(TextOf(change.kind)) + " " + change.className + " " + change.firstId + " -> " +
                        change.secondId);
    return lines;
}

}  // namespace

TEST(MatchByMeasures, FindsPartsWhoseBodiesWereWrittenAnew)
{
    EXPECT_THAT(
        ChangesOf({BoxShape(1, 2, 3), BoxShape(4, 5, 6)}, {BoxShape(4, 5, 6 + kTiny), BoxShape(1, 2, 3 + kTiny)}),
        UnorderedElementsAre("renamed IPart a0 -> b1", "renamed IPart a1 -> b0", "renamed IBrep abody0 -> bbody1",
                             "renamed IBrep abody1 -> bbody0", "shape IBrep abody0 -> bbody1",
                             "shape IBrep abody1 -> bbody0", "other IFile a -> b"));
}

TEST(MatchByMeasures, EqualVolumesAndAreasElsewhereAreOtherParts)
{
    // Another size; the same area and volume around another centre.
    for (TopoDS_Shape const& other : {BoxShape(1, 2, 3.001), BoxShape(3, 2, 1)})
        EXPECT_THAT(ChangesOf({BoxShape(1, 2, 3)}, {other}), ElementsAre("added IPart  -> b0", "removed IPart a0 -> "));
}

}  // namespace KVR::Test
