#pragma once

#include <cstdint>

#include "framework/api/Enums.h"
#include "framework/api/Export.h"
#include "framework/api/Interval.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/Position.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/api/Vector.h"

namespace KVR
{

class CurveDataVisitor;

/// What all data interfaces share. Operations return 0 for success. Kept: those of these interfaces return it also
/// where they do nothing, and then leave their outputs alone; who must know sets them before.
class KVR_API IBaseData
{
public:
    virtual ~IBaseData();
    /// An id and a name of the data: the parent's, and both empty without a parent.
    virtual DataReturnCodeEnum DataId(UTF8String& id, UTF16String& name) const;
    /// A colour: the parent's; without a parent the outputs are left alone.
    virtual DataReturnCodeEnum EntityColor(double& red, double& green, double& blue) const;

    IBaseData(IBaseData const&) = delete;
    IBaseData& operator=(IBaseData const&) = delete;

protected:
    /// The parent is the data that this one was derived from; null when there is none. It is not owned.
    explicit IBaseData(IBaseData const* parent);

private:
    IBaseData const* m_parent;
};

/// Marks data whose resources a host may manage.
class KVR_API IDataResourceManager
{
public:
    virtual ~IDataResourceManager();
};

/// An analytic curve. Points are in the length unit of the curve object that owns the data. An operation of this
/// interface that has no answer returns another code than 0 and leaves its output alone.
class KVR_API ICurveData
{
public:
    virtual ~ICurveData();
    /// The first and the last parameter, in radians for an ellipse; not available for a ray, a polyline and a
    /// composite.
    virtual DataReturnCodeEnum ParameterRange(Interval& range) const;
    /// Whether the curve ends where it starts, as its record says; not available for a line and a ray.
    virtual DataReturnCodeEnum IsClosed(bool& closed) const;
    /// Whether the curve goes on beyond its range, as its record says; not available for a line and a ray.
    virtual DataReturnCodeEnum IsPeriodic(bool& periodic) const;
    /// Calls the visitor's Visit for the interface of the data; a bad argument for null.
    virtual DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) = 0;
    /// The point at the first parameter.
    virtual DataReturnCodeEnum StartPoint_ex(Position& point) const;
    /// The point at the last parameter; not available for a ray.
    virtual DataReturnCodeEnum EndPoint_ex(Position& point) const;
    /// The point at a parameter; a bad argument for one outside the range of a ray, polyline, composite or NURBS curve,
    /// not available where it is not finite. A line and an ellipse go on beyond their ranges.
    virtual DataReturnCodeEnum Evaluate_ex(double parameter, Position& point) const;
    /// The parameter of the point on the curve that is nearest to the given one.
    virtual DataReturnCodeEnum Param_ex(Position const& point, double& parameter) const;
};

/// A straight line: the point at parameter t is the root point and t times the direction.
class KVR_API IStraightData : public IBaseData, public IDataResourceManager, public ICurveData
{
public:
    explicit IStraightData(IBaseData const* parent);
    ~IStraightData() override;
    /// The point at parameter 0.
    virtual DataReturnCodeEnum RootPoint(double& x, double& y, double& z) const = 0;
    /// The way from parameter 0 to parameter 1, neither normalised nor checked.
    virtual DataReturnCodeEnum Direction(double& x, double& y, double& z) const = 0;
    DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) override;
};

/// A half line: the point at parameter t, 0 or above, is the origin and t times the direction.
class KVR_API IRayData : public IBaseData, public IDataResourceManager, public ICurveData
{
public:
    explicit IRayData(IBaseData const* parent);
    ~IRayData() override;
    /// The point where the ray begins.
    virtual DataReturnCodeEnum Origin(double& x, double& y, double& z) const = 0;
    /// The way from parameter 0 to parameter 1, neither normalised nor checked.
    virtual DataReturnCodeEnum Direction(double& x, double& y, double& z) const = 0;
    DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) override;
};

/// An ellipse or a stretch of one. The point at parameter t, in radians, is the centre, cos t times the major axis and
/// sin t times the minor one, which stands square to normal and major axis.
class KVR_API IEllipseData : public IBaseData, public IDataResourceManager, public ICurveData
{
public:
    explicit IEllipseData(IBaseData const* parent);
    ~IEllipseData() override;
    /// The middle of the ellipse.
    virtual DataReturnCodeEnum Center(double& x, double& y, double& z) const = 0;
    /// From the centre to the ellipse, with the length of the larger radius.
    virtual DataReturnCodeEnum MajorAxis(double& x, double& y, double& z) const = 0;
    /// The direction that stands on the plane of the ellipse, neither normalised nor checked; the parameter runs
    /// counter-clockwise about it.
    virtual DataReturnCodeEnum Normal(double& x, double& y, double& z) const = 0;
    /// The smaller radius by the larger one.
    virtual DataReturnCodeEnum RadiusRatio(double& ratio) const = 0;
    DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) override;
};

/// Straight stretches from point to point; point i lies at parameter i.
class KVR_API IPolyLineData : public IBaseData, public IDataResourceManager, public ICurveData
{
public:
    explicit IPolyLineData(IBaseData const* parent);
    ~IPolyLineData() override;
    /// Whether there is a vector for each point.
    virtual DataReturnCodeEnum HasVectors(bool& has) const = 0;
    /// The number of points; one more than in the record when the line is closed, since the first one then stands at
    /// the end again.
    virtual DataReturnCodeEnum PointCount(std::uint32_t& count) const = 0;
    /// A point. A bad index throws std::out_of_range.
    virtual DataReturnCodeEnum Point(int index, double& x, double& y, double& z) const = 0;
    /// The vector of a point, whose meaning the format leaves open; the point that closes a line has none. The outputs
    /// are left alone when there are no vectors; otherwise a bad index throws std::out_of_range.
    virtual DataReturnCodeEnum VectorAt(int index, double& x, double& y, double& z) const = 0;
    /// Whether the line lies in one plane, and the placement of that plane; leaves the output alone here.
    virtual DataReturnCodeEnum IsPlanar_ex(Matrix3d& placement) const;
    /// Whether the line meets itself; does nothing here.
    virtual DataReturnCodeEnum IsSelfIntersect_ex() const;
    DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) override;
};

/// Curves one behind the other. The parameter of the whole runs through the segments' intervals.
class KVR_API ICompositeCurveData : public IBaseData, public IDataResourceManager, public ICurveData
{
public:
    explicit ICompositeCurveData(IBaseData const* parent);
    ~ICompositeCurveData() override;
    /// The number of segments that the record states; a damaged one may have fewer for Segment.
    virtual DataReturnCodeEnum SegmentCount(std::uint32_t& count) const = 0;
    /// The segment, owned by the composite; null for one of an unknown kind or one nested too deep. A bad index throws
    /// std::out_of_range.
    virtual DataReturnCodeEnum Segment(int index, ICurveData*& segment) const = 0;
    /// A flag of the segment, whose meaning the format leaves open. A negative index leaves the output alone; one
    /// beyond the end throws std::out_of_range.
    virtual DataReturnCodeEnum SegmentFlag(int index, bool& flag) const = 0;
    /// The parameters of the whole at which the segment starts and ends. A negative index leaves the outputs alone; one
    /// beyond the end throws std::out_of_range.
    virtual DataReturnCodeEnum SegmentInterval(int index, double& start, double& end) const = 0;
    /// A number of the segment, whose meaning the format leaves open. A negative index leaves the output alone; one
    /// beyond the end throws std::out_of_range.
    virtual DataReturnCodeEnum SegmentValue(int index, std::uint32_t& value) const = 0;
    DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) override;
};

/// A B-spline curve, rational or not. Its knots are as many as its control points, the degree and one, or two fewer
/// when the outermost ones are left out; other records make no curve, and have no points at parameters.
class KVR_API INurbsCurveData : public IBaseData, public IDataResourceManager, public ICurveData
{
public:
    explicit INurbsCurveData(IBaseData const* parent);
    ~INurbsCurveData() override;
    /// The degree of the curve, as its record has it.
    virtual DataReturnCodeEnum Degree(std::uint32_t& degree) const = 0;
    /// The number of knots, repeated ones included.
    virtual DataReturnCodeEnum KnotCount(std::uint32_t& count) const = 0;
    /// The number of control points.
    virtual DataReturnCodeEnum ControlPointCount(std::uint32_t& count) const = 0;
    /// Whether control points have weights.
    virtual DataReturnCodeEnum IsRational(bool& rational) const = 0;
    /// A knot, in the order of the record. A bad index throws std::out_of_range.
    virtual DataReturnCodeEnum Knot(int index, double& knot) const = 0;
    /// The point, not multiplied by its weight, and the weight, 1.0 on a curve that is not rational. A bad index throws
    /// std::out_of_range.
    virtual DataReturnCodeEnum ControlPoint(int index, double& x, double& y, double& z, double& w) const = 0;
    /// The tolerance to which the curve was fitted; 0 for every curve of a scene.
    virtual DataReturnCodeEnum FitTolerance(double& tolerance) const = 0;
    /// The order to which the curve is continuous; leaves the output alone here.
    virtual DataReturnCodeEnum CurveContinuity(int& order) const;
    /// Turns the curve round; has no effect here.
    virtual DataReturnCodeEnum Negate_ex();
    /// The parameter by which a periodic curve was shifted; 0 for every curve of a scene.
    virtual DataReturnCodeEnum ParameterShift(double& shift) const = 0;
    DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) override;
};

}  // namespace KVR
