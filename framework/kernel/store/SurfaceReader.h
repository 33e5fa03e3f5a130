#pragma once

#include <Geom_BSplineSurface.hxx>
#include <Geom_BezierSurface.hxx>
#include <Geom_ConicalSurface.hxx>
#include <Geom_CylindricalSurface.hxx>
#include <Geom_OffsetSurface.hxx>
#include <Geom_Plane.hxx>
#include <Geom_RectangularTrimmedSurface.hxx>
#include <Geom_SphericalSurface.hxx>
#include <Geom_SurfaceOfLinearExtrusion.hxx>
#include <Geom_SurfaceOfRevolution.hxx>
#include <Geom_ToroidalSurface.hxx>
#include <TColStd_Array2OfReal.hxx>
#include <TColgp_Array2OfPnt.hxx>
#include <array>
#include <cstdint>
#include <gp_Ax3.hxx>
#include <limits>
#include <vector>

#include "framework/kernel/store/CurveReader.h"

namespace KVR
{

/// Reads surfaces as CurveReader reads curves.
template <class Source>
class SurfaceReader
{
public:
    /// The reader of curves reads from the same source and has to outlive this one.
    SurfaceReader(Source& source, CurveReader<Source>& curves) : m_source(source), m_curves(curves) {}

    void ReadSurfaces(int count, std::vector<opencascade::handle<Geom_Surface>>& surfaces)
    {
        surfaces.reserve(m_source.Within(count, sizeof(SurfaceHandle)));
        for (int i = 0; i < count && m_source.IsGood(); ++i)
            surfaces.push_back(Surface(0));
    }

private:
    using Types = GeometryTypes<Geom_Curve>;
    using SurfaceHandle = opencascade::handle<Geom_Surface>;
    using Knots = typename CurveReader<Source>::Knots;

    enum SurfaceKind
    {
        kPlane = 1,
        kCylinder,
        kCone,
        kSphere,
        kTorus,
        kExtrusion,
        kRevolution,
        kBezierSurface,
        kBSplineSurface,
        kRectangle,
        kOffsetSurface,
    };

    SurfaceHandle Surface(int depth)
    {
        m_source.Require(depth < CurveReader<Source>::kDeepestBasis);
        return m_source.IsGood() ? SurfaceOfKind(m_source.Kind(), depth) : nullptr;
    }

    SurfaceHandle SurfaceOfKind(int kind, int depth)
    {
        constexpr std::size_t kPlaced = Types::kPlacement;
        switch (kind)
        {
            case kPlane:
                return m_curves.template Made<kPlaced>([](double const* n) -> SurfaceHandle
                                                       { return new Geom_Plane(Axes(n)); });
            case kCylinder:
                return m_curves.template Made<kPlaced + 1>(
                    [](double const* n) -> SurfaceHandle { return new Geom_CylindricalSurface(Axes(n), n[kPlaced]); });
            case kCone:
                return m_curves.template Made<kPlaced + 2>(
                    [](double const* n) -> SurfaceHandle
                    { return new Geom_ConicalSurface(Axes(n), n[kPlaced + 1], n[kPlaced]); });
            case kSphere:
                return m_curves.template Made<kPlaced + 1>([](double const* n) -> SurfaceHandle
                                                           { return new Geom_SphericalSurface(Axes(n), n[kPlaced]); });
            case kTorus:
                return m_curves.template Made<kPlaced + 2>(
                    [](double const* n) -> SurfaceHandle
                    { return new Geom_ToroidalSurface(Axes(n), n[kPlaced], n[kPlaced + 1]); });
            case kBezierSurface:
                return BezierSurface();
            case kBSplineSurface:
                return BSplineSurface();
            default:
                return SurfaceOnAnother(kind, depth);
        }
    }

    SurfaceHandle SurfaceOnAnother(int kind, int depth)
    {
        // Of what is read behind the numbers.
        auto const on = [&](auto const& basis, auto const& make) -> SurfaceHandle
        { return m_source.IsGood() ? SurfaceHandle(make(basis)) : nullptr; };
        switch (kind)
        {
            case kExtrusion:
            {
                std::array<double, 3> const n = m_source.template Numbers<3>();
                return on(m_curves.template Curve<Geom_Curve>(depth + 1), [&](auto const& curve)
                          { return new Geom_SurfaceOfLinearExtrusion(curve, Types::DirectionOf(n.data())); });
            }
            case kRevolution:
            {
                std::array<double, 6> const n = m_source.template Numbers<6>();
                return on(m_curves.template Curve<Geom_Curve>(depth + 1),
                          [&](auto const& curve) {
                              return new Geom_SurfaceOfRevolution(
                                  curve, gp_Ax1(Types::PointOf(n.data()), Types::DirectionOf(n.data() + 3)));
                          });
            }
            case kRectangle:
            {
                std::array<double, 4> const n = m_source.template Numbers<4>();
                return on(Surface(depth + 1), [&](auto const& surface)
                          { return new Geom_RectangularTrimmedSurface(surface, n[0], n[1], n[2], n[3]); });
            }
            case kOffsetSurface:
            {
                double const offset = m_source.template Numbers<1>()[0];
                return on(Surface(depth + 1), [&](auto const& surface)
                          { return new Geom_OffsetSurface(surface, offset, !Source::kIsStrict); });
            }
            default:
                m_source.Require(false);
                return nullptr;
        }
    }

    // Of a surface: the last direction tells the hand.
    static gp_Ax3 Axes(double const* n)
    {
        gp_Dir const main = Types::DirectionOf(n + 3);
        gp_Dir const side = Types::DirectionOf(n + 6);
        gp_Dir const last = Types::DirectionOf(n + 9);
        gp_Ax3 axes(Types::PointOf(n), main, side);
        if (last.DotCross(main, side) < 0.0)
            axes.YReverse();
        return axes;
    }

    // Of both directions. Open CASCADE counts the poles of a surface in an int.
    void RequirePoles(int rows, int columns, bool isRational, std::uint64_t knots)
    {
        auto const count = static_cast<std::uint64_t>(rows) * static_cast<std::uint64_t>(columns);
        m_source.Require(count <= std::numeric_limits<int>::max());
        if (m_source.IsGood())
            m_source.RequireAhead(count * (isRational ? 4 : 3) + knots, knots);
    }

    void ReadPoles(TColgp_Array2OfPnt& poles, TColStd_Array2OfReal& weights, bool isRational)
    {
        for (int i = 1; i <= poles.ColLength() && m_source.IsGood(); ++i)
        {
            for (int k = 1; k <= poles.RowLength() && m_source.IsGood(); ++k)
            {
                poles(i, k) = Types::PointOf(m_source.template Numbers<3>().data());
                if (isRational)
                    weights(i, k) = m_source.Weight();
            }
        }
    }

    SurfaceHandle BezierSurface()
    {
        bool const isURational = m_source.Flag();
        bool const isRational = m_source.Flag() || isURational;
        int const rows = m_curves.Degree() + 1;
        int const columns = m_curves.Degree() + 1;
        TColgp_Array2OfPnt poles(1, rows, 1, columns);
        TColStd_Array2OfReal weights(1, rows, 1, columns);
        ReadPoles(poles, weights, isRational);
        if (!m_source.IsGood())
            return nullptr;
        return isRational ? new Geom_BezierSurface(poles, weights) : new Geom_BezierSurface(poles);
    }

    SurfaceHandle BSplineSurface()
    {
        bool const isURational = m_source.Flag();
        bool const isRational = m_source.Flag() || isURational;
        bool const isUPeriodic = m_source.Flag();
        bool const isVPeriodic = m_source.Flag();
        int const uDegree = m_curves.Degree();
        int const vDegree = m_curves.Degree();
        int const rows = m_curves.Count();
        int const columns = m_curves.Count();
        int const uCount = m_curves.Count();
        int const vCount = m_curves.Count();
        RequirePoles(rows, columns, isRational,
                     static_cast<std::uint64_t>(uCount) + static_cast<std::uint64_t>(vCount));
        if (!m_source.IsGood())
            return nullptr;
        TColgp_Array2OfPnt poles(1, rows, 1, columns);
        TColStd_Array2OfReal weights(1, isRational ? rows : 1, 1, isRational ? columns : 1);
        ReadPoles(poles, weights, isRational);
        Knots u(uCount);
        Knots v(vCount);
        m_curves.Read(u, uDegree, isUPeriodic, rows);
        m_curves.Read(v, vDegree, isVPeriodic, columns);
        if (!m_source.IsGood())
            return nullptr;
        return isRational ? new Geom_BSplineSurface(poles, weights, u.values, v.values, u.multiplicities,
                                                    v.multiplicities, uDegree, vDegree, isUPeriodic, isVPeriodic)
                          : new Geom_BSplineSurface(poles, u.values, v.values, u.multiplicities, v.multiplicities,
                                                    uDegree, vDegree, isUPeriodic, isVPeriodic);
    }

    Source& m_source;
    CurveReader<Source>& m_curves;
};

}  // namespace KVR
