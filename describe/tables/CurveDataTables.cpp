#include "describe/Rows.h"
#include "framework/api/ICurveData.h"

namespace KVR
{

namespace
{

constexpr auto kNamed = Interface::Form::Named;

// The point at the range's start.
DataReturnCodeEnum PointAtStart(ICurveData const& data, Position& point)
{
    Interval range(0.0, 0.0);
    auto const answer = data.ParameterRange(range);
    return answer == kDataReturnCode_Ok ? data.Evaluate_ex(range.Lower(), point) : answer;
}

// The parameter of the start point.
DataReturnCodeEnum ParameterOfStart(ICurveData const& data, double& parameter)
{
    Position start;
    auto const answer = data.StartPoint_ex(start);
    return answer == kDataReturnCode_Ok ? data.Param_ex(start, parameter) : answer;
}

constexpr Row kBaseDataRows[] = {
    Value<&IBaseData::DataId>("DataId"),
    Value<&IBaseData::EntityColor>("EntityColor"),
};

constexpr Row kCurveDataRows[] = {
    Value<&ICurveData::ParameterRange>("ParameterRange"),
    Value<&ICurveData::IsClosed>("IsClosed"),
    Value<&ICurveData::IsPeriodic>("IsPeriodic"),
    Value<&ICurveData::StartPoint_ex>("StartPoint_ex"),
    Value<&ICurveData::EndPoint_ex>("EndPoint_ex"),
    Value<&PointAtStart, &ICurveData::Evaluate_ex>("PointAtStart").NotInDump(),
    Value<&ParameterOfStart, &ICurveData::Param_ex>("ParameterOfStart").NotInDump(),
};

constexpr Row kStraightRows[] = {
    Inherits<IStraightData, IBaseData>(),
    Value<&IStraightData::RootPoint>("RootPoint"),
    Value<&IStraightData::Direction>("Direction"),
    Inherits<IStraightData, ICurveData>(),
};

constexpr Row kRayRows[] = {
    Inherits<IRayData, IBaseData>(),
    Value<&IRayData::Origin>("Origin"),
    Value<&IRayData::Direction>("Direction"),
    Inherits<IRayData, ICurveData>(),
};

constexpr Row kEllipseRows[] = {
    Inherits<IEllipseData, IBaseData>(),
    Value<&IEllipseData::Center>("Center"),
    Value<&IEllipseData::MajorAxis>("MajorAxis"),
    Value<&IEllipseData::Normal>("Normal"),
    Value<&IEllipseData::RadiusRatio>("RadiusRatio"),
    Inherits<IEllipseData, ICurveData>(),
};

// As many as points, or none.
DataReturnCodeEnum VectorCount(IPolyLineData const& data, std::uint32_t& count)
{
    bool hasVectors = false;
    auto const answer = data.HasVectors(hasVectors);
    return answer == kDataReturnCode_Ok && hasVectors ? data.PointCount(count) : answer;
}

constexpr Row kPolyLineRows[] = {
    Inherits<IPolyLineData, IBaseData>(),
    Value<&IPolyLineData::HasVectors>("HasVectors"),
    Value<&IPolyLineData::PointCount>("PointCount"),
    Value<&IPolyLineData::IsPlanar_ex>("IsPlanar_ex"),
    List<&IPolyLineData::PointCount, &IPolyLineData::Point>("Points").Long("PointCount"),
    List<&VectorCount, &IPolyLineData::VectorAt>("Vectors").Long("PointCount"),
    Value<&IPolyLineData::IsSelfIntersect_ex>("IsSelfIntersect_ex").NotInDump(),
    Inherits<IPolyLineData, ICurveData>(),
};

constexpr Row kNurbsRows[] = {
    Inherits<INurbsCurveData, IBaseData>(),
    Value<&INurbsCurveData::Degree>("Degree"),
    Value<&INurbsCurveData::KnotCount>("KnotCount"),
    Value<&INurbsCurveData::ControlPointCount>("ControlPointCount"),
    Value<&INurbsCurveData::IsRational>("IsRational"),
    Value<&INurbsCurveData::FitTolerance>("FitTolerance"),
    Value<&INurbsCurveData::CurveContinuity>("CurveContinuity"),
    Value<&INurbsCurveData::ParameterShift>("ParameterShift"),
    List<&INurbsCurveData::KnotCount, &INurbsCurveData::Knot>("Knots").Long("KnotCount"),
    List<&INurbsCurveData::ControlPointCount, &INurbsCurveData::ControlPoint>("ControlPoints")
        .Long("ControlPointCount"),
    Inherits<INurbsCurveData, ICurveData>(),
};

constexpr Row kSegmentRows[] = {
    OfItem<&ICompositeCurveData::Segment>("Segment"),
    OfItem<&ICompositeCurveData::SegmentFlag>("SegmentFlag"),
    OfItem<&ICompositeCurveData::SegmentInterval>("SegmentInterval"),
    OfItem<&ICompositeCurveData::SegmentValue>("SegmentValue"),
};
constexpr Interface kSegment{"CompositeSegment", kSegmentRows};

constexpr Row kCompositeRows[] = {
    Inherits<ICompositeCurveData, IBaseData>(),
    Value<&ICompositeCurveData::SegmentCount>("SegmentCount"),
    Items<&ICompositeCurveData::SegmentCount, ICompositeCurveData, int, &kSegment>("Segments"),
    Inherits<ICompositeCurveData, ICurveData>(),
};

}  // namespace

Interface const TableOf<IBaseData>::kTable = {"IBaseData", kBaseDataRows};
Interface const TableOf<ICurveData>::kTable = {"ICurveData", kCurveDataRows};
Interface const TableOf<IStraightData>::kTable = {"IStraightData", kStraightRows, kNamed};
Interface const TableOf<IRayData>::kTable = {"IRayData", kRayRows, kNamed};
Interface const TableOf<IEllipseData>::kTable = {"IEllipseData", kEllipseRows, kNamed};
Interface const TableOf<IPolyLineData>::kTable = {"IPolyLineData", kPolyLineRows, kNamed};
Interface const TableOf<INurbsCurveData>::kTable = {"INurbsCurveData", kNurbsRows, kNamed};
Interface const TableOf<ICompositeCurveData>::kTable = {"ICompositeCurveData", kCompositeRows, kNamed};

}  // namespace KVR
