// NURBS curves beside an evaluation that is not ours: that of Open CASCADE.

#include <gtest/gtest.h>

#include <GeomAPI_ProjectPointOnCurve.hxx>
#include <Geom_BSplineCurve.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <algorithm>
#include <random>
#include <vector>

#include "framework/api/ICurveData.h"
#include "tests/support/MeshBytes.h"

namespace KVR::Test
{

namespace
{

struct Spline
{
    int degree = 1;
    std::vector<double> knots;
    std::vector<gp_Pnt> points;
    /// Empty for a curve that is not rational.
    std::vector<double> weights;
};

class SplineMaker
{
public:
    // Clamped at both ends, with inner knots of any multiplicity below the degree's next.
    Spline Make(int degree, bool isRational)
    {
        Spline spline;
        spline.degree = degree;
        double knot = Number(-5, 5);
        spline.knots.assign(static_cast<std::size_t>(degree) + 1, knot);
        int const innerKnots = Integer(0, 6);
        for (int i = 0; i < innerKnots; ++i)
        {
            knot += Number(0.1, 3);
            spline.knots.insert(spline.knots.end(), static_cast<std::size_t>(Integer(1, degree)), knot);
        }
        knot += Number(0.1, 3);
        spline.knots.insert(spline.knots.end(), static_cast<std::size_t>(degree) + 1, knot);
        std::size_t const pointCount = spline.knots.size() - static_cast<std::size_t>(degree) - 1;
        for (std::size_t i = 0; i < pointCount; ++i)
        {
            spline.points.emplace_back(Number(-10, 10), Number(-10, 10), Number(-10, 10));
            if (isRational)
                spline.weights.push_back(Number(0.2, 5));
        }
        return spline;
    }
    double Number(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }
    int Integer(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }

private:
    std::mt19937 m_random{20240301};
};

std::string RecordOf(Spline const& spline)
{
    ByteBuilder bytes;
    bytes.Byte(0).Byte(0).U64(spline.knots.size());
    for (double const knot : spline.knots)
        bytes.F64(knot);
    bytes.U64(spline.points.size());
    for (gp_Pnt const& point : spline.points)
        bytes.F64(point.X()).F64(point.Y()).F64(point.Z());
    bytes.U64(spline.weights.empty() ? 0 : 1);
    for (double const weight : spline.weights)
        bytes.F64(weight);
    bytes.U64(static_cast<std::uint64_t>(spline.degree)).F64(spline.knots.front()).F64(spline.knots.back());
    return bytes.Bytes();
}

opencascade::handle<Geom_BSplineCurve> OracleOf(Spline const& spline)
{
    std::vector<double> knots;
    std::vector<int> multiplicities;
    for (double const knot : spline.knots)
    {
        if (knots.empty() || knots.back() != knot)
        {
            knots.push_back(knot);
            multiplicities.push_back(0);
        }
        ++multiplicities.back();
    }
    TColgp_Array1OfPnt const points(spline.points.front(), 1, static_cast<int>(spline.points.size()));
    TColStd_Array1OfReal const knotArray(knots.front(), 1, static_cast<int>(knots.size()));
    TColStd_Array1OfInteger const multiplicityArray(multiplicities.front(), 1, static_cast<int>(multiplicities.size()));
    if (spline.weights.empty())
        return new Geom_BSplineCurve(points, knotArray, multiplicityArray, spline.degree);
    TColStd_Array1OfReal const weights(spline.weights.front(), 1, static_cast<int>(spline.weights.size()));
    return new Geom_BSplineCurve(points, weights, knotArray, multiplicityArray, spline.degree);
}

class NurbsOracle : public testing::TestWithParam<bool>
{
protected:
    template <class Action>
    void ForManyCurves(Action action)
    {
        SplineMaker maker;
        for (int degree = 1; degree <= 9; ++degree)
        {
            for (int i = 0; i < 6; ++i)
            {
                SCOPED_TRACE(testing::Message() << "degree " << degree << ", curve " << i);
                Spline const spline = maker.Make(degree, GetParam());
                TestScene scene(StoreScene(kMeshInfo, {}, {"c"}));
                scene.WithFile("s.mesh", MeshInfoHeader(1).Bytes() + RecordFront(6, "c") + RecordOf(spline)).Begin();
                ICurveData const* const curve = scene.Get<ICurve>("c").CurveDataAt(0);
                ASSERT_TRUE(curve);
                action(maker, spline, *curve, OracleOf(spline));
            }
        }
    }
};

double DistanceOf(Position const& found, gp_Pnt const& expected)
{
    return gp_Pnt(found.X(), found.Y(), found.Z()).Distance(expected);
}

TEST_P(NurbsOracle, EvaluatesToTheSamePoints)
{
    ForManyCurves(
        [](SplineMaker& maker, Spline const& spline, ICurveData const& curve,
           opencascade::handle<Geom_BSplineCurve> const& oracle)
        {
            std::vector<double> parameters = spline.knots;
            for (int i = 0; i < 100; ++i)
                parameters.push_back(maker.Number(spline.knots.front(), spline.knots.back()));
            for (double const parameter : parameters)
            {
                Position found;
                ASSERT_EQ(curve.Evaluate_ex(parameter, found), kDataReturnCode_Ok) << parameter;
                EXPECT_LT(DistanceOf(found, oracle->Value(parameter)), 1e-11) << parameter;
            }
            Position start;
            Position end;
            ASSERT_EQ(curve.StartPoint_ex(start), kDataReturnCode_Ok);
            ASSERT_EQ(curve.EndPoint_ex(end), kDataReturnCode_Ok);
            EXPECT_LT(DistanceOf(start, oracle->StartPoint()), 1e-11);
            EXPECT_LT(DistanceOf(end, oracle->EndPoint()), 1e-11);
        });
}

TEST_P(NurbsOracle, FindsPointsThatAreAsNear)
{
    ForManyCurves(
        [](SplineMaker& maker, Spline const& spline, ICurveData const& curve,
           opencascade::handle<Geom_BSplineCurve> const& oracle)
        {
            for (int i = 0; i < 10; ++i)
            {
                Position const from(maker.Number(-12, 12), maker.Number(-12, 12), maker.Number(-12, 12));
                gp_Pnt const point(from.X(), from.Y(), from.Z());
                double parameter = 0.0;
                ASSERT_EQ(curve.Param_ex(from, parameter), kDataReturnCode_Ok);
                EXPECT_GE(parameter, spline.knots.front());
                EXPECT_LE(parameter, spline.knots.back());
                // The oracle knows the points at right angles; the ends may be nearer.
                GeomAPI_ProjectPointOnCurve const projection(point, oracle);
                double nearest = std::min(point.Distance(oracle->StartPoint()), point.Distance(oracle->EndPoint()));
                if (projection.NbPoints() > 0)
                    nearest = std::min(nearest, projection.LowerDistance());
                EXPECT_LT(oracle->Value(parameter).Distance(point), nearest + 1e-6);
            }
        });
}

INSTANTIATE_TEST_SUITE_P(Curve, NurbsOracle, testing::Bool(),
                         [](testing::TestParamInfo<bool> const& rational)
                         { return rational.param ? std::string("Rational") : std::string("Polynomial"); });

}  // namespace

}  // namespace KVR::Test
