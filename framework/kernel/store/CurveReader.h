#pragma once

#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "framework/kernel/store/GeometryTypes.h"
#include "framework/kernel/store/ShapeTables.h"

namespace KVR
{

/// Reads curves, which stand in the same order in both of Open CASCADE's forms, and makes them. What is wrong is left
/// with the source, BinaryShapes or TextShapes, or thrown by Open CASCADE. Memory for many numbers is had when so many
/// can be there.
template <class Source>
class CurveReader
{
public:
    template <class Geometry>
    using HandleOf = opencascade::handle<Geometry>;

    /// What a curve or surface stands on is read on the stack, and Open CASCADE copies it each time.
    static constexpr int kDeepestBasis = 10;

    /// Knots with their multiplicities.
    struct Knots
    {
        explicit Knots(int count) : values(1, count), multiplicities(1, count) {}
        TColStd_Array1OfReal values;
        TColStd_Array1OfInteger multiplicities;
    };

    explicit CurveReader(Source& source) : m_source(source) {}

    /// Curves of the plane or of space.
    template <class Geometry>
    void ReadCurves(int count, ShapeTables::Curves& table, std::vector<opencascade::handle<Geometry>>& curves)
    {
        curves.reserve(m_source.Within(count, sizeof(HandleOf<Geometry>)));
        for (table.count = 1; table.count <= count && m_source.IsGood(); ++table.count)
        {
            m_hasPeriod = false;
            curves.push_back(Curve<Geometry>(0));
            if (m_hasPeriod)
                table.periods.emplace_back(table.count, m_period);
        }
        table.count = count;
    }

    /// One that stands on so many others.
    template <class Geometry>
    HandleOf<Geometry> Curve(int depth)
    {
        m_source.Require(depth < kDeepestBasis);
        return m_source.IsGood() ? CurveOfKind<Geometry>(m_source.Kind(), depth) : nullptr;
    }

    /// Numbers, and what is made of them when they are there.
    template <std::size_t Count, class Make>
    auto Made(Make const& make) -> std::invoke_result_t<Make, double const*>
    {
        std::array<double, Count> const numbers = m_source.template Numbers<Count>();
        return m_source.IsGood() ? make(numbers.data()) : nullptr;
    }

    int Degree()
    {
        int const degree = m_source.Degree();
        m_source.Require(degree >= 1 && degree <= Geom_BSplineCurve::MaxDegree());
        return m_source.IsGood() ? degree : 1;
    }

    /// Of poles or of knots.
    int Count()
    {
        int const count = m_source.Integer();
        m_source.Require(count >= 2);
        return m_source.IsGood() ? count : 2;
    }

    /// Each knot with its multiplicity; together they say how many poles there are. So many have to be ahead.
    void Read(Knots& knots, int degree, bool isPeriodic, int poles)
    {
        int const count = knots.values.Length();
        std::int64_t sum = 0;
        for (int i = 1; i <= count && m_source.IsGood(); ++i)
        {
            double const knot = m_source.template Numbers<1>()[0];
            int const multiplicity = m_source.Integer();
            bool const isEnd = i == 1 || i == count;
            m_source.Require(multiplicity >= 1 && multiplicity <= (isEnd && !isPeriodic ? degree + 1 : degree) &&
                             (i == 1 || knot > knots.values(i - 1)));
            knots.values(i) = knot;
            knots.multiplicities(i) = multiplicity;
            sum += multiplicity;
        }
        int const last = knots.multiplicities(count);
        m_source.Require(isPeriodic ? knots.multiplicities(1) == last && sum - last == poles
                                    : sum - degree - 1 == poles);
        m_hasPeriod |= isPeriodic;
        m_period = {knots.values(1), knots.values(count) - knots.values(1)};
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

    template <class Geometry>
    HandleOf<Geometry> CurveOfKind(int kind, int depth)
    {
        using Types = GeometryTypes<Geometry>;
        using Made_t = HandleOf<Geometry>;
        constexpr std::size_t kPlaced = Types::kPlacement;
        switch (kind)
        {
            case kLine:
                return Made<2 * Types::kSpace>(
                    [](double const* n) -> Made_t
                    { return new typename Types::Line(Types::PointOf(n), Types::DirectionOf(n + Types::kSpace)); });
            case kCircle:
                return Made<kPlaced + 1>([](double const* n) -> Made_t
                                         { return new typename Types::Circle(Types::PlacementOf(n), n[kPlaced]); });
            case kEllipse:
                return Made<kPlaced + 2>(
                    [](double const* n) -> Made_t
                    { return new typename Types::Ellipse(Types::PlacementOf(n), n[kPlaced], n[kPlaced + 1]); });
            case kParabola:
                return Made<kPlaced + 1>([](double const* n) -> Made_t
                                         { return new typename Types::Parabola(Types::PlacementOf(n), n[kPlaced]); });
            case kHyperbola:
                return Made<kPlaced + 2>(
                    [](double const* n) -> Made_t
                    { return new typename Types::Hyperbola(Types::PlacementOf(n), n[kPlaced], n[kPlaced + 1]); });
            case kBezier:
                return BezierCurve<Types>();
            case kBSpline:
                return BSplineCurve<Types>();
            default:
                return CurveOnAnother<Geometry>(kind, depth);
        }
    }

    template <class Geometry>
    HandleOf<Geometry> CurveOnAnother(int kind, int depth)
    {
        m_source.Require(kind == kTrimmed || kind == kOffset);
        if (kind == kTrimmed)
        {
            std::array<double, 2> const ends = m_source.template Numbers<2>();
            HandleOf<Geometry> const basis = Curve<Geometry>(depth + 1);
            if (!m_source.IsGood())
                return nullptr;
            return new typename GeometryTypes<Geometry>::Trimmed(basis, ends[0], ends[1]);
        }
        if constexpr (std::is_same_v<Geometry, Geom2d_Curve>)
        {
            double const offset = m_source.template Numbers<1>()[0];
            HandleOf<Geometry> const basis = Curve<Geometry>(depth + 1);
            return m_source.IsGood() ? new Geom2d_OffsetCurve(basis, offset) : nullptr;
        }
        else
        {
            std::array<double, 4> const offset = m_source.template Numbers<4>();
            HandleOf<Geometry> const basis = Curve<Geometry>(depth + 1);
            if (!m_source.IsGood())
                return nullptr;
            return new Geom_OffsetCurve(basis, offset[0], gp_Dir(offset[1], offset[2], offset[3]));
        }
    }

    template <class Types>
    void ReadPoles(typename Types::Points& poles, TColStd_Array1OfReal& weights, bool isRational)
    {
        for (int i = 1; i <= poles.Length() && m_source.IsGood(); ++i)
        {
            poles(i) = Types::PointOf(m_source.template Numbers<Types::kSpace>().data());
            if (isRational)
                weights(i) = m_source.Weight();
        }
    }

    template <class Types>
    HandleOf<typename Types::Bezier> BezierCurve()
    {
        bool const isRational = m_source.Flag();
        int const count = Degree() + 1;
        typename Types::Points poles(1, count);
        TColStd_Array1OfReal weights(1, count);
        ReadPoles<Types>(poles, weights, isRational);
        if (!m_source.IsGood())
            return nullptr;
        return isRational ? new typename Types::Bezier(poles, weights) : new typename Types::Bezier(poles);
    }

    template <class Types>
    HandleOf<typename Types::BSpline> BSplineCurve()
    {
        bool const isRational = m_source.Flag();
        bool const isPeriodic = m_source.Flag();
        int const degree = Degree();
        int const count = Count();
        int const knotCount = Count();
        std::uint64_t const numbers = static_cast<std::uint64_t>(count) * (Types::kSpace + (isRational ? 1 : 0));
        m_source.RequireAhead(numbers + static_cast<std::uint64_t>(knotCount), static_cast<std::uint64_t>(knotCount));
        if (!m_source.IsGood())
            return nullptr;
        typename Types::Points poles(1, count);
        TColStd_Array1OfReal weights(1, isRational ? count : 1);
        ReadPoles<Types>(poles, weights, isRational);
        Knots knots(knotCount);
        Read(knots, degree, isPeriodic, count);
        if (!m_source.IsGood())
            return nullptr;
        return isRational ? new
                   typename Types::BSpline(poles, weights, knots.values, knots.multiplicities, degree, isPeriodic)
                          : new typename Types::BSpline(poles, knots.values, knots.multiplicities, degree, isPeriodic);
    }

    Source& m_source;
    // Of the curve last read, on which others may stand.
    bool m_hasPeriod = false;
    ShapeTables::Period m_period{};
};

}  // namespace KVR
