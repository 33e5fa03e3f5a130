#include "scene/ShapeMeasures.h"

#include <gtest/gtest.h>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Shape.hxx>
#include <gp_Elips.hxx>

#include <algorithm>
#include <numbers>

#include "tests/support/Shapes.h"

namespace KVR::Test
{

using std::numbers::pi;
using Curve = ShapeMeasures::CurveKind;
using Surface = ShapeMeasures::SurfaceKind;

TEST(ShapeMeasures, ABoxHasPlanesLinesAndAVolume)
{
    ShapeMeasures const box = ShapeMeasures::Of(BoxShape(2, 3, 4));
    ASSERT_EQ(box.faces.size(), 6U);
    ASSERT_EQ(box.edges.size(), 12U);
    for (ShapeMeasures::Surface const& face : box.faces)
    {
        EXPECT_EQ(face.kind, Surface::kPlane);
        EXPECT_FALSE(face.radius);
    }
    for (ShapeMeasures::Curve const& edge : box.edges)
        EXPECT_EQ(edge.kind, Curve::kLine);
    EXPECT_NEAR(box.area, 52.0, 1e-9);
    EXPECT_NEAR(box.volume.value(), 24.0, 1e-9);
}

TEST(ShapeMeasures, ACylinderHasItsRadiusAndCirclesTheirCentres)
{
    ShapeMeasures const cylinder = ShapeMeasures::Of(BRepPrimAPI_MakeCylinder(2.0, 5.0).Shape());
    auto const side = std::find_if(cylinder.faces.begin(), cylinder.faces.end(),
                                   [](auto const& face) { return face.kind == Surface::kCylinder; });
    ASSERT_NE(side, cylinder.faces.end());
    EXPECT_EQ(side->radius, 2.0);
    EXPECT_NEAR(side->area, 20.0 * pi, 1e-9);
    EXPECT_NEAR(cylinder.volume.value(), 20.0 * pi, 1e-9);
    int circles = 0;
    for (ShapeMeasures::Curve const& edge : cylinder.edges)
        if (edge.kind == Curve::kCircle)
        {
            ++circles;
            EXPECT_EQ(edge.radius, 2.0);
            EXPECT_EQ(edge.center.value()[0], 0.0);
            EXPECT_NEAR(edge.length, 4.0 * pi, 1e-9);
        }
    EXPECT_EQ(circles, 2);
}

TEST(ShapeMeasures, TheTipOfAConeIsNoCurve)
{
    ShapeMeasures const cone = ShapeMeasures::Of(BRepPrimAPI_MakeCone(2.0, 0.0, 5.0).Shape());
    auto const none = std::count_if(cone.edges.begin(), cone.edges.end(),
                                    [](auto const& edge) { return edge.kind == Curve::kNone && edge.length == 0.0; });
    EXPECT_EQ(none, 1);
}

TEST(ShapeMeasures, ARoundEllipseIsACircleAndAnotherIsNot)
{
    gp_Ax2 const place(gp_Pnt(1, 2, 3), gp_Dir(0, 0, 1));
    ShapeMeasures const round = ShapeMeasures::Of(BRepBuilderAPI_MakeEdge(gp_Elips(place, 2.0, 2.0), 0.0, pi).Shape());
    ASSERT_EQ(round.edges.size(), 1U);
    EXPECT_EQ(round.edges[0].kind, Curve::kCircle);
    EXPECT_EQ(round.edges[0].radius, 2.0);
    EXPECT_NEAR(round.edges[0].length, 2.0 * pi, 1e-6);
    ShapeMeasures const flat = ShapeMeasures::Of(BRepBuilderAPI_MakeEdge(gp_Elips(place, 3.0, 2.0)).Shape());
    EXPECT_EQ(flat.edges[0].kind, Curve::kEllipse);
    EXPECT_FALSE(flat.edges[0].radius);
    EXPECT_FALSE(flat.volume);
}

TEST(ShapeMeasures, ANullShapeHasNothing)
{
    EXPECT_TRUE(ShapeMeasures::Of(TopoDS_Shape()).edges.empty());
}

}  // namespace KVR::Test
