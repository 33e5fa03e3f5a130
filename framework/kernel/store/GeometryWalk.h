#pragma once

#include <Geom2d_Curve.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_Curve.hxx>
#include <Geom_Surface.hxx>
#include <Standard_Real.hxx>
#include <array>
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

    static constexpr double kLeastSquare = 0.25;
    static constexpr double kLargestCosine = 0.1;
    static constexpr double kLeastAngle = 1e-9;
    static constexpr double kLargestAngle = 1.57;

    // What is read of a curve or surface here is what Open CASCADE makes one of.
    template <class Geometry, class Walk>
    void Made(int depth, Walk const& walk)
    {
        m_source.Require(depth < kDeepestBasis);
        if (!m_source.IsGood())
            return;
        m_source.BeginGeometry();
        m_source.template EndGeometry<Geometry>(walk());
    }

    // The walks below answer whether Open CASCADE makes something of such numbers in any case.

    template <class Geometry>
    void Curve(int depth)
    {
        Made<Geometry>(depth, [&] { return CurveOfKind<Geometry>(m_source.Kind(), depth); });
    }

    template <class Geometry>
    bool CurveOfKind(int kind, int depth)
    {
        constexpr bool kIsPlane = std::is_same_v<Geometry, Geom2d_Curve>;
        constexpr int kSpace = kIsPlane ? 2 : 3;
        switch (kind)
        {
            case kLine:
                m_source.FiniteReals(kSpace);
                return Direction(kSpace);
            case kCircle:
            case kParabola:
                return IsRound(Placed(kSpace, 1));
            case kEllipse:
            {
                Placement const ellipse = Placed(kSpace, 2);
                return IsRound(ellipse) && ellipse.numbers[0] >= ellipse.numbers[1];
            }
            case kHyperbola:
                return IsRound(Placed(kSpace, 2));
            case kBezier:
                return BezierCurve(kSpace);
            case kBSpline:
                return BSplineCurve(kSpace);
            case kTrimmed:
                m_source.FiniteReals(2);
                Curve<Geometry>(depth + 1);
                return false;
            case kOffset:
                m_source.FiniteReals(kIsPlane ? 1 : 4);
                Curve<Geometry>(depth + 1);
                return false;
            default:
                m_source.Require(false);
                return false;
        }
    }

    void Surface(int depth)
    {
        Made<Geom_Surface>(depth, [&] { return SurfaceOfKind(m_source.Kind(), depth); });
    }

    bool SurfaceOfKind(int kind, int depth)
    {
        constexpr int kSpace = 3;
        switch (kind)
        {
            case kPlane:
                return Placed(kSpace, 0).haveDirections;
            case kCylinder:
            case kSphere:
                return IsRound(Placed(kSpace, 1));
            case kCone:
            {
                Placement const cone = Placed(kSpace, 2);
                double const angle = std::abs(cone.numbers[1]);
                return cone.haveDirections && cone.numbers[0] >= 0.0 && angle > kLeastAngle && angle < kLargestAngle;
            }
            case kTorus:
            {
                Placement const torus = Placed(kSpace, 2);
                return IsRound(torus) && torus.numbers[0] > torus.numbers[1];
            }
            case kExtrusion:
                m_source.FiniteReals(kSpace);
                Curve<Geom_Curve>(depth + 1);
                return false;
            case kRevolution:
                m_source.FiniteReals(2 * kSpace);
                Curve<Geom_Curve>(depth + 1);
                return false;
            case kBezierSurface:
                return BezierSurface();
            case kBSplineSurface:
                return BSplineSurface();
            case kRectangle:
                m_source.FiniteReals(4);
                Surface(depth + 1);
                return false;
            case kOffsetSurface:
                m_source.FiniteReals(1);
                Surface(depth + 1);
                return false;
            default:
                m_source.Require(false);
                return false;
        }
    }

    double Number()
    {
        double const value = m_source.Real();
        m_source.Require(std::isfinite(value));
        return value;
    }

    using Vector = std::array<double, 3>;

    // Directions are of length 1; whether this one is near enough to be made one.
    bool Direction(int space, Vector& direction)
    {
        double square = 0.0;
        for (int i = 0; i < space; ++i)
        {
            double& component = direction[static_cast<std::size_t>(i)];
            component = Number();
            square += component * component;
        }
        return square > kLeastSquare && square < 1.0 / kLeastSquare;
    }
    bool Direction(int space)
    {
        Vector direction{};
        return Direction(space, direction);
    }

    struct Placement
    {
        bool haveDirections = false;
        std::array<double, 2> numbers{};
    };

    // An origin with directions, two in the plane, and in space three, of which the last follows of the others; behind
    // it radii or angles.
    Placement Placed(int space, int count)
    {
        m_source.FiniteReals(static_cast<std::uint64_t>(space));
        Vector main{};
        Vector side{};
        bool const hasMain = Direction(space, main);
        bool const hasSide = Direction(space, side);
        bool const hasLast = space == 2 || Direction(space);
        double const cosine = main[0] * side[0] + main[1] * side[1] + main[2] * side[2];
        Placement placement;
        placement.haveDirections = hasMain && hasSide && hasLast && std::abs(cosine) < kLargestCosine;
        for (int i = 0; i < count; ++i)
            placement.numbers[static_cast<std::size_t>(i)] = Number();
        return placement;
    }
    static bool IsRound(Placement const& placement)
    {
        return placement.haveDirections && placement.numbers[0] >= 0.0 && placement.numbers[1] >= 0.0;
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

    bool BezierCurve(int space)
    {
        bool const isRational = m_source.Flag();
        auto const poles = static_cast<std::uint64_t>(Degree()) + 1;
        m_source.Poles(poles, space, isRational);
        return true;
    }

    bool BSplineCurve(int space)
    {
        bool const isRational = m_source.Flag();
        bool const isPeriodic = m_source.Flag();
        int const degree = Degree();
        int const poles = Count();
        int const knots = Count();
        m_source.Poles(static_cast<std::uint64_t>(poles), space, isRational);
        return Knots(degree, isPeriodic, poles, knots);
    }

    bool BezierSurface()
    {
        bool const isURational = m_source.Flag();
        bool const isVRational = m_source.Flag();
        auto const uPoles = static_cast<std::uint64_t>(Degree()) + 1;
        auto const vPoles = static_cast<std::uint64_t>(Degree()) + 1;
        m_source.Poles(uPoles * vPoles, 3, isURational || isVRational);
        return true;
    }

    bool BSplineSurface()
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
        m_source.Poles(m_source.IsGood() ? poles : 0, 3, isURational || isVRational);
        bool const isMade = Knots(uDegree, isUPeriodic, uPoles, uKnots);
        return Knots(vDegree, isVPeriodic, vPoles, vKnots) && isMade;
    }

    // Each knot with its multiplicity; together they say how many poles there are.
    bool Knots(int degree, bool isPeriodic, int poles, int count)
    {
        bool areApart = true;
        std::int64_t sum = 0;
        int firstMultiplicity = 0;
        int multiplicity = 0;
        double first = 0.0;
        double knot = 0.0;
        for (int i = 0; i < count && m_source.IsGood(); ++i)
        {
            double const before = knot;
            knot = Number();
            multiplicity = m_source.Integer();
            bool const isEnd = i == 0 || i == count - 1;
            m_source.Require(multiplicity >= 1 && multiplicity <= (isEnd && !isPeriodic ? degree + 1 : degree));
            sum += multiplicity;
            if (i == 0)
            {
                first = knot;
                firstMultiplicity = multiplicity;
                continue;
            }
            m_source.Require(knot > before);
            areApart &= knot - before > 2 * Epsilon(std::abs(before));
        }
        m_source.Require(isPeriodic ? firstMultiplicity == multiplicity && sum - multiplicity == poles
                                    : sum - degree - 1 == poles);
        m_hasPeriod |= isPeriodic;
        m_period = {first, knot - first};
        return areApart;
    }

    Source& m_source;
    // Of the curve last read, on which others may stand.
    bool m_hasPeriod = false;
    ShapeTables::Period m_period{};
};

}  // namespace KVR
