#include "exchange/model/SharedShapes.h"

#include <gtest/gtest.h>

#include <BRepPrimAPI_MakeBox.hxx>
#include <BRep_Builder.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Compound.hxx>

namespace KVR::Test
{

namespace
{

TopoDS_Shape Box()
{
    return BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Solid();
}

// With one face of a box, in a place of its own.
TopoDS_Compound SheetOf(TopoDS_Shape const& box)
{
    TopoDS_Compound sheet;
    BRep_Builder const builder;
    builder.MakeCompound(sheet);
    gp_Trsf move;
    move.SetTranslation({7.0, 0.0, 0.0});
    builder.Add(sheet, TopExp_Explorer(box, TopAbs_FACE).Current().Moved(move));
    return sheet;
}

}  // namespace

TEST(SharedShapes, ShapesThatShareAFaceAreOneGroup)
{
    TopoDS_Shape const first = Box();
    TopoDS_Shape const second = Box();
    std::vector<ShapeGroup> const groups = SharedShapes({first, TopoDS_Shape(), second, SheetOf(first)});
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0].members, (std::vector<std::size_t>{0, 3}));
    EXPECT_EQ(groups[0].faces, 7);
    EXPECT_EQ(groups[1].members, std::vector<std::size_t>{2});
    EXPECT_EQ(groups[1].faces, 6);
}

TEST(SharedShapes, GroupsThatALaterShapeJoinsAreOne)
{
    TopoDS_Shape const first = Box();
    TopoDS_Shape const second = Box();
    TopoDS_Compound both = SheetOf(first);
    BRep_Builder().Add(both, SheetOf(second));
    std::vector<ShapeGroup> const groups = SharedShapes({second, first, both});
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(groups[0].members, (std::vector<std::size_t>{0, 1, 2}));
}

}  // namespace KVR::Test
