#include "inspect/statistics/GeometryTwins.h"

#include <gmock/gmock.h>

#include <BRepBuilderAPI_Transform.hxx>
#include <TopoDS_Shape.hxx>
#include <gp_Ax1.hxx>
#include <gp_Trsf.hxx>

#include "framework/api/IObject.h"
#include "framework/api/UTF8String.h"
#include "tests/inspect/query/QueryScene.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::vector<std::string>> IdsOf(std::vector<GeometryTwins> const& sets)
{
    std::vector<std::vector<std::string>> all;
    for (GeometryTwins const& set : sets)
    {
        all.emplace_back();
        for (GeometryTwins::Member const& member : set.members)
            all.back().emplace_back(member.object->Id().View());
    }
    return all;
}

std::string PartsWith(std::vector<std::string> const& meshes)
{
    std::string children;
    std::string parts;
    std::vector<std::string> ids;
    for (std::string const& mesh : meshes)
    {
        ids.push_back("part-" + mesh);
        parts += Part(ids.back(), Mesh(mesh));
    }
    return File(ids) + parts;
}

TEST(GeometryTwins, MeshesThatAreTheSameButForTheirIds)
{
    QueryScene scene(PartsWith({"a", "b", "c", "d"}),
                     {{"a", {1, 2, 3}}, {"b", {1, 2, 4}}, {"c", {1, 2, 3}}, {"d", {1, 2, 3}, true}});
    auto const sets = GeometryTwins::Of(scene.Model());
    EXPECT_THAT(IdsOf(sets), ElementsAre(ElementsAre("a", "c")));
    EXPECT_FALSE(sets[0].areMoved);
}

TEST(GeometryTwins, AComponentThatOccursOftenIsNoDuplicate)
{
    QueryScene scene(File({"top"}) + Assembly("top", Instance("i", "p") + Instance("j", "p")) + Part("p", Mesh("a")),
                     {{"a", {1, 2, 3}}});
    EXPECT_THAT(IdsOf(GeometryTwins::Of(scene.Model())), IsEmpty());
}

// A box of the kernel, after a turn about an axis that is askew, and a move.
std::unique_ptr<BODY> MovedBox(double x, double y, double z)
{
    gp_Trsf motion;
    motion.SetRotation(gp_Ax1(gp_Pnt(1, 2, 3), gp_Dir(1, 1, 2)), 0.9);
    return std::make_unique<BODY>(BRepBuilderAPI_Transform(BoxShape(x, y, z), motion, true).Shape());
}

TEST(GeometryTwins, BodiesThatAreTheSameButForAMotion)
{
    std::vector<std::unique_ptr<ENTITY>> entities;
    entities.push_back(std::make_unique<BODY>(BoxShape(1, 2, 3)));
    entities.push_back(MovedBox(1, 2, 3));
    entities.push_back(MovedBox(1, 2, 3.001));
    int number = 0;
    for (auto const& entity : entities)
        entity->AddDataId("b" + std::to_string(number++));
    TestScene scene("<Scene><SatInfo Path='s.sab'/>" + File({"p"}) + Part("p", Body("b0") + Body("b1") + Body("b2")) +
                    "</Scene>");
    scene.WithFile("s.sab", StoreBytes(entities, false)).Begin();
    KVR::Scene const model(scene.Producer(), scene.Producer().RootObjectId().Id());
    auto const sets = GeometryTwins::Of(model);
    EXPECT_THAT(IdsOf(sets), ElementsAre(ElementsAre("b0", "b1")));
    EXPECT_TRUE(sets[0].areMoved);
}

}  // namespace

}  // namespace KVR::Test
