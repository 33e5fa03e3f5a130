#pragma once

#include <Geom2d_Curve.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_Curve.hxx>
#include <Geom_Surface.hxx>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "framework/kernel/store/ShapeTables.h"

namespace KVR
{

/// Walks curves and surfaces as Open CASCADE reads them, which is in the same order in both of its forms. What is wrong
/// is left with the source, BinaryShapes or TextShapes.
template <class Source>
class GeometryWalk
{
public:
    explicit GeometryWalk(Source& source) : m_source(source) {}

    /// Curves of the plane or of space.
    template <class Geometry>
    void ReadCurves(int count, ShapeTables::Curves& table)
    {
        for (table.count = 1; table.count <= count && m_source.IsGood(); ++table.count)
        {
            m_hasPeriod = false;
            Curve<Geometry>(0);
            if (m_hasPeriod)
                table.periods.emplace_back(table.count, m_period);
        }
        table.count = count;
    }

    void ReadSurfaces(int count)
    {
        for (int i = 0; i < count && m_source.IsGood(); ++i)
            Surface(0);
    }

private:
    enum CurveKind
    {
        kLine = 1,
        kCircle,
        kEllipse,
        kParabola,
        kHyperbola,
        kBezier,
        kBSpline,
        kTrimmed,
        kOffset,
    };
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

    // Open CASCADE reads what a curve or surface stands on on the stack, and copies it each time.
    static constexpr int kDeepestBasis = 10;

    static constexpr std::uint64_t kPoint = 3;
    static constexpr std::uint64_t kAxes3 = 12;

    template <class Geometry>
    void Curve(int depth)
    {
        constexpr bool kIsPlane = std::is_same_v<Geometry, Geom2d_Curve>;
        constexpr std::uint64_t kPole = kIsPlane ? 2 : 3;
        constexpr std::uint64_t kAxes = kIsPlane ? 6 : kAxes3;
        m_source.Require(depth < kDeepestBasis);
        if (!m_source.IsGood())
            return;
        switch (m_source.Kind())
        {
            case kLine:
                return m_source.FiniteReals(2 * kPole);
            case kCircle:
            case kParabola:
                return m_source.FiniteReals(kAxes + 1);
            case kEllipse:
            case kHyperbola:
                return m_source.FiniteReals(kAxes + 2);
            case kBezier:
                return BezierCurve(kPole);
            case kBSpline:
                return BSplineCurve(kPole);
            case kTrimmed:
                m_source.FiniteReals(2);
                return Basis<Geometry>([&] { Curve<Geometry>(depth + 1); });
            case kOffset:
                m_source.FiniteReals(kIsPlane ? 1 : 1 + kPoint);
                return Basis<Geometry>([&] { Curve<Geometry>(depth + 1); });
            default:
                m_source.Require(false);
        }
    }

    void Surface(int depth)
    {
        m_source.Require(depth < kDeepestBasis);
        if (!m_source.IsGood())
            return;
        switch (m_source.Kind())
        {
            case kPlane:
                return m_source.FiniteReals(kAxes3);
            case kCylinder:
            case kSphere:
                return m_source.FiniteReals(kAxes3 + 1);
            case kCone:
            case kTorus:
                return m_source.FiniteReals(kAxes3 + 2);
            case kExtrusion:
                m_source.FiniteReals(kPoint);
                return Basis<Geom_Curve>([&] { Curve<Geom_Curve>(depth + 1); });
            case kRevolution:
                m_source.FiniteReals(2 * kPoint);
                return Basis<Geom_Curve>([&] { Curve<Geom_Curve>(depth + 1); });
            case kBezierSurface:
                return BezierSurface();
            case kBSplineSurface:
                return BSplineSurface();
            case kRectangle:
                m_source.FiniteReals(4);
                return Basis<Geom_Surface>([&] { Surface(depth + 1); });
            case kOffsetSurface:
                m_source.FiniteReals(1);
                return Basis<Geom_Surface>([&] { Surface(depth + 1); });
            default:
                m_source.Require(false);
        }
    }

    template <class Geometry, class Walk>
    void Basis(Walk const& walk)
    {
        m_source.BeginBasis();
        walk();
        m_source.template EndBasis<Geometry>();
    }

    int Degree()
    {
        int const degree = m_source.Degree();
        m_source.Require(degree >= 1 && degree <= Geom_BSplineCurve::MaxDegree());
        return m_source.IsGood() ? degree : 1;
    }

    // Of poles or of knots.
    int Count()
    {
        int const count = m_source.Integer();
        m_source.Require(count >= 2);
        return m_source.IsGood() ? count : 2;
    }

    void BezierCurve(std::uint64_t pole)
    {
        std::uint64_t const weight = m_source.Flag() ? 1 : 0;
        auto const poles = static_cast<std::uint64_t>(Degree()) + 1;
        m_source.FiniteReals(poles * (pole + weight));
    }

    void BSplineCurve(std::uint64_t pole)
    {
        std::uint64_t const weight = m_source.Flag() ? 1 : 0;
        bool const isPeriodic = m_source.Flag();
        int const degree = Degree();
        int const poles = Count();
        int const knots = Count();
        m_source.FiniteReals(static_cast<std::uint64_t>(poles) * (pole + weight));
        Knots(degree, isPeriodic, poles, knots);
    }

    void BezierSurface()
    {
        bool const isURational = m_source.Flag();
        bool const isVRational = m_source.Flag();
        auto const uPoles = static_cast<std::uint64_t>(Degree()) + 1;
        auto const vPoles = static_cast<std::uint64_t>(Degree()) + 1;
        m_source.FiniteReals(uPoles * vPoles * (isURational || isVRational ? kPoint + 1 : kPoint));
    }

    void BSplineSurface()
    {
        bool const isURational = m_source.Flag();
        bool const isVRational = m_source.Flag();
        bool const isUPeriodic = m_source.Flag();
        bool const isVPeriodic = m_source.Flag();
        int const uDegree = Degree();
        int const vDegree = Degree();
        int const uPoles = Count();
        int const vPoles = Count();
        int const uKnots = Count();
        int const vKnots = Count();
        auto const poles = static_cast<std::uint64_t>(uPoles) * static_cast<std::uint64_t>(vPoles);
        // Open CASCADE counts the poles of a surface in an int.
        m_source.Require(poles <= std::numeric_limits<int>::max());
        m_source.FiniteReals(m_source.IsGood() ? poles * (isURational || isVRational ? kPoint + 1 : kPoint) : 0);
        Knots(uDegree, isUPeriodic, uPoles, uKnots);
        Knots(vDegree, isVPeriodic, vPoles, vKnots);
    }

    // Each knot with its multiplicity; together they say how many poles there are.
    void Knots(int degree, bool isPeriodic, int poles, int count)
    {
        std::int64_t sum = 0;
        int firstMultiplicity = 0;
        int multiplicity = 0;
        double first = 0.0;
        double knot = 0.0;
        for (int i = 0; i < count && m_source.IsGood(); ++i)
        {
            double const before = knot;
            knot = m_source.Real();
            multiplicity = m_source.Integer();
            bool const isEnd = i == 0 || i == count - 1;
            m_source.Require(std::isfinite(knot) && (i == 0 || knot > before));
            m_source.Require(multiplicity >= 1 && multiplicity <= (isEnd && !isPeriodic ? degree + 1 : degree));
            sum += multiplicity;
            if (i == 0)
            {
                first = knot;
                firstMultiplicity = multiplicity;
            }
        }
        m_source.Require(isPeriodic ? firstMultiplicity == multiplicity && sum - multiplicity == poles
                                    : sum - degree - 1 == poles);
        m_hasPeriod |= isPeriodic;
        m_period = {first, knot - first};
    }

    Source& m_source;
    // Of the curve last read, on which others may stand.
    bool m_hasPeriod = false;
    ShapeTables::Period m_period{};
};

}  // namespace KVR
