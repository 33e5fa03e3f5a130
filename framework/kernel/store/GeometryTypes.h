#pragma once

#include <Geom2d_BSplineCurve.hxx>
#include <Geom2d_BezierCurve.hxx>
#include <Geom2d_Circle.hxx>
#include <Geom2d_Ellipse.hxx>
#include <Geom2d_Hyperbola.hxx>
#include <Geom2d_Line.hxx>
#include <Geom2d_OffsetCurve.hxx>
#include <Geom2d_Parabola.hxx>
#include <Geom2d_TrimmedCurve.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_BezierCurve.hxx>
#include <Geom_Circle.hxx>
#include <Geom_Ellipse.hxx>
#include <Geom_Hyperbola.hxx>
#include <Geom_Line.hxx>
#include <Geom_OffsetCurve.hxx>
#include <Geom_Parabola.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TColgp_Array1OfPnt2d.hxx>
#include <array>
#include <gp_Ax2.hxx>
#include <gp_Ax22d.hxx>

namespace KVR
{

/// What curves of space and of the plane are made of, and how that is made of numbers in the order of the forms. What
/// is no direction makes Open CASCADE throw.
template <class Curve>
struct GeometryTypes;

template <>
struct GeometryTypes<Geom_Curve>
{
    static constexpr std::size_t kSpace = 3;
    /// An origin and three directions.
    static constexpr std::size_t kPlacement = 12;
    using Point = gp_Pnt;
    using Points = TColgp_Array1OfPnt;
    using Line = Geom_Line;
    using Circle = Geom_Circle;
    using Ellipse = Geom_Ellipse;
    using Parabola = Geom_Parabola;
    using Hyperbola = Geom_Hyperbola;
    using Bezier = Geom_BezierCurve;
    using BSpline = Geom_BSplineCurve;
    using Trimmed = Geom_TrimmedCurve;

    static gp_Pnt PointOf(double const* n) { return {n[0], n[1], n[2]}; }
    static gp_Dir DirectionOf(double const* n) { return {n[0], n[1], n[2]}; }
    /// The last direction follows of the others, and has to be one all the same.
    static gp_Ax2 PlacementOf(double const* n)
    {
        static_cast<void>(DirectionOf(n + 9));
        return {PointOf(n), DirectionOf(n + 3), DirectionOf(n + 6)};
    }
};

template <>
struct GeometryTypes<Geom2d_Curve>
{
    static constexpr std::size_t kSpace = 2;
    /// An origin and two directions.
    static constexpr std::size_t kPlacement = 6;
    using Point = gp_Pnt2d;
    using Points = TColgp_Array1OfPnt2d;
    using Line = Geom2d_Line;
    using Circle = Geom2d_Circle;
    using Ellipse = Geom2d_Ellipse;
    using Parabola = Geom2d_Parabola;
    using Hyperbola = Geom2d_Hyperbola;
    using Bezier = Geom2d_BezierCurve;
    using BSpline = Geom2d_BSplineCurve;
    using Trimmed = Geom2d_TrimmedCurve;

    static gp_Pnt2d PointOf(double const* n) { return {n[0], n[1]}; }
    static gp_Dir2d DirectionOf(double const* n) { return {n[0], n[1]}; }
    static gp_Ax22d PlacementOf(double const* n) { return {PointOf(n), DirectionOf(n + 2), DirectionOf(n + 4)}; }
};

}  // namespace KVR
