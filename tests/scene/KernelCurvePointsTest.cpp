// Polylines of curves of the kernel, and of edges.

#include <gtest/gtest.h>

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <Geom_BezierCurve.hxx>
#include <Geom_Circle.hxx>
#include <Geom_Line.hxx>
#include <Geom_OffsetCurve.hxx>
#include <Geom_Parabola.hxx>
#include <Precision.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Solid.hxx>
#include <algorithm>
#include <cmath>
#include <gp_Ax2.hxx>
#include <limits>

#include "framework/kernel/curve.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/history_stream.h"
#include "scene/CurvePoints.h"

namespace KVR::Test
{

namespace
{

using CurveHandle = opencascade::handle<Geom_Curve>;

class KernelCurvePoints : public testing::Test
{
protected:
    curve& Make(CurveHandle const& geometry, double first, double last)
    {
        ActiveStreamScope const active(&m_stream);
        return *KVR::curve::Make(geometry, first, last);
    }

    void ExpectClose(CurveHandle const& geometry, double first, double last, double tolerance)
    {
        SceneLines const lines = CurvePoints::Of(Make(geometry, first, last), {1e-3, tolerance});
        ASSERT_EQ(lines.Count(), 1U);
        for (int i = 0; i <= 5000; ++i)
        {
            gp_Pnt const at = geometry->Value(first + (last - first) * i / 5000);
            double least = std::numeric_limits<double>::infinity();
            for (std::size_t k = 0; k + 5 < lines.points.size(); k += 3)
            {
                double const* const p = &lines.points[k];
                gp_Vec const chord(p[3] - p[0], p[4] - p[1], p[5] - p[2]);
                gp_Vec const away(at.X() - p[0], at.Y() - p[1], at.Z() - p[2]);
                double const share = std::clamp(chord.Dot(away) / chord.SquareMagnitude(), 0.0, 1.0);
                least = std::min(least, (away - chord * share).Magnitude());
            }
            ASSERT_LE(least, tolerance * (1.0 + 1e-6)) << i << " of " << lines.points.size() / 3;
        }
    }

    HISTORY_STREAM m_stream;
};

CurveHandle Bent()
{
    TColgp_Array1OfPnt poles(1, 5);
    poles(1) = gp_Pnt(0, 0, 0);
    poles(2) = gp_Pnt(1, 5, 0);
    poles(3) = gp_Pnt(2, -5, 3);
    poles(4) = gp_Pnt(3, 5, 0);
    poles(5) = gp_Pnt(4, 0, 1);
    return new Geom_BezierCurve(poles);
}

TEST_F(KernelCurvePoints, KeepTheTolerance)
{
    gp_Ax2 const axes(gp_Pnt(1, 2, 3), gp_Dir(1, 1, 1));
    for (double const tolerance : {0.3, 0.01, 1e-4})
    {
        ExpectClose(new Geom_Circle(axes, 3.0), 0.5, 6.0, tolerance);
        ExpectClose(Bent(), 0.0, 1.0, tolerance);
        ExpectClose(new Geom_Parabola(axes, 2.0), -3.0, 5.0, tolerance);
        ExpectClose(new Geom_OffsetCurve(Bent(), 0.5, gp_Dir(0, 0, 1)), 0.0, 1.0, tolerance);
    }
}

TEST_F(KernelCurvePoints, AReversedRangeRunsBack)
{
    SceneLines const forth = CurvePoints::Of(Make(Bent(), 0.25, 1.0), {});
    SceneLines const back = CurvePoints::Of(Make(Bent(), 1.0, 0.25), {});
    ASSERT_EQ(back.points.size(), forth.points.size());
    for (std::size_t i = 0; i < back.points.size(); i += 3)
        for (std::size_t axis = 0; axis < 3; ++axis)
            EXPECT_EQ(back.points[i + axis], forth.points[forth.points.size() - 3 - i + axis]);
}

TEST_F(KernelCurvePoints, AnInfiniteAnEmptyAndADestroyedOneHaveNone)
{
    CurveHandle const line = new Geom_Line(gp_Pnt(0, 0, 0), gp_Dir(1, 0, 0));
    double const nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(CurvePoints::Of(Make(line, -Precision::Infinite(), 1.0), {}).missing, 1U);
    EXPECT_EQ(CurvePoints::Of(Make(line, 0.0, 1e99), {}).missing, 1U);
    EXPECT_EQ(CurvePoints::Of(Make(line, nan, 1.0), {}).missing, 1U);
    EXPECT_EQ(CurvePoints::Of(Make(line, 1.0, 1.0), {}).missing, 1U);
    curve& gone = Make(line, 0.0, 1.0);
    EXPECT_EQ(CurvePoints::Of(gone, {}).points.size(), 6U);
    gone.Destroy();
    EXPECT_EQ(CurvePoints::Of(gone, {}).missing, 1U);
}

TEST_F(KernelCurvePoints, EdgesOfAShapeHaveALineEachButWhatHasNoCurve)
{
    SceneLines const box = CurvePoints::OfEdges(BRepPrimAPI_MakeBox(1, 2, 3).Solid(), {});
    EXPECT_EQ(box.Count(), 12U);
    EXPECT_EQ(box.points.size(), 72U);
    EXPECT_EQ(box.missing, 0U);
    // The circle and the seam, but not the tip.
    SceneLines const cone = CurvePoints::OfEdges(BRepPrimAPI_MakeCone(2.0, 0.0, 5.0).Solid(), {});
    EXPECT_EQ(cone.Count(), 2U);
    EXPECT_EQ(cone.missing, 1U);
}

}  // namespace

}  // namespace KVR::Test
