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
    /// An id and a name of the data; both empty here.
    virtual DataReturnCodeEnum DataId(UTF8String& id, UTF16String& name) const;
    /// A colour of the data's own, or of its parent's; does nothing here.
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
    virtual DataReturnCodeEnum ParameterRange(Interval& range) const;
    virtual DataReturnCodeEnum IsClosed(bool& closed) const;
    virtual DataReturnCodeEnum IsPeriodic(bool& periodic) const;
    virtual DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) = 0;
    virtual DataReturnCodeEnum StartPoint_ex(Position& point) const;
    virtual DataReturnCodeEnum EndPoint_ex(Position& point) const;
    /// The point at a parameter.
    virtual DataReturnCodeEnum Evaluate_ex(double parameter, Position& point) const;
    /// The parameter of the point on the curve that is nearest to the given one.
    virtual DataReturnCodeEnum Param_ex(Position const& point, double& parameter) const;
};

class KVR_API IStraightData : public IBaseData, public IDataResourceManager, public ICurveData
{
public:
    explicit IStraightData(IBaseData const* parent);
    ~IStraightData() override;
    virtual DataReturnCodeEnum RootPoint(double& x, double& y, double& z) const = 0;
    virtual DataReturnCodeEnum Direction(double& x, double& y, double& z) const = 0;
    DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) override;
};

class KVR_API IRayData : public IBaseData, public IDataResourceManager, public ICurveData
{
public:
    explicit IRayData(IBaseData const* parent);
    ~IRayData() override;
    virtual DataReturnCodeEnum Origin(double& x, double& y, double& z) const = 0;
    virtual DataReturnCodeEnum Direction(double& x, double& y, double& z) const = 0;
    DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) override;
};

class KVR_API IEllipseData : public IBaseData, public IDataResourceManager, public ICurveData
{
public:
    explicit IEllipseData(IBaseData const* parent);
    ~IEllipseData() override;
    virtual DataReturnCodeEnum Center(double& x, double& y, double& z) const = 0;
    /// From the centre to the ellipse, with the length of the larger radius.
    virtual DataReturnCodeEnum MajorAxis(double& x, double& y, double& z) const = 0;
    virtual DataReturnCodeEnum Normal(double& x, double& y, double& z) const = 0;
    /// The smaller radius by the larger one.
    virtual DataReturnCodeEnum RadiusRatio(double& ratio) const = 0;
    DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) override;
};

class KVR_API IPolyLineData : public IBaseData, public IDataResourceManager, public ICurveData
{
public:
    explicit IPolyLineData(IBaseData const* parent);
    ~IPolyLineData() override;
    virtual DataReturnCodeEnum HasVectors(bool& has) const = 0;
    virtual DataReturnCodeEnum PointCount(std::uint32_t& count) const = 0;
    /// A bad index throws std::out_of_range, here and below.
    virtual DataReturnCodeEnum Point(int index, double& x, double& y, double& z) const = 0;
    virtual DataReturnCodeEnum VectorAt(int index, double& x, double& y, double& z) const = 0;
    /// Whether the line lies in one plane, and the placement of that plane; does nothing here.
    virtual DataReturnCodeEnum IsPlanar_ex(Matrix3d& placement) const;
    /// Whether the line meets itself; does nothing here.
    virtual DataReturnCodeEnum IsSelfIntersect_ex() const;
    DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) override;
};

class KVR_API ICompositeCurveData : public IBaseData, public IDataResourceManager, public ICurveData
{
public:
    explicit ICompositeCurveData(IBaseData const* parent);
    ~ICompositeCurveData() override;
    virtual DataReturnCodeEnum SegmentCount(std::uint32_t& count) const = 0;
    /// The segment, owned by the composite; may be null. A bad index throws std::out_of_range.
    virtual DataReturnCodeEnum Segment(int index, ICurveData*& segment) const = 0;
    /// A negative index has no effect, here and below.
    virtual DataReturnCodeEnum SegmentFlag(int index, bool& flag) const = 0;
    virtual DataReturnCodeEnum SegmentInterval(int index, double& start, double& end) const = 0;
    virtual DataReturnCodeEnum SegmentValue(int index, std::uint32_t& value) const = 0;
    DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) override;
};

class KVR_API INurbsCurveData : public IBaseData, public IDataResourceManager, public ICurveData
{
public:
    explicit INurbsCurveData(IBaseData const* parent);
    ~INurbsCurveData() override;
    virtual DataReturnCodeEnum Degree(std::uint32_t& degree) const = 0;
    virtual DataReturnCodeEnum KnotCount(std::uint32_t& count) const = 0;
    virtual DataReturnCodeEnum ControlPointCount(std::uint32_t& count) const = 0;
    virtual DataReturnCodeEnum IsRational(bool& rational) const = 0;
    /// A bad index throws std::out_of_range, here and below.
    virtual DataReturnCodeEnum Knot(int index, double& knot) const = 0;
    /// The point and its weight, 1.0 on a curve that is not rational.
    virtual DataReturnCodeEnum ControlPoint(int index, double& x, double& y, double& z, double& w) const = 0;
    /// The tolerance to which the curve was fitted; 0 when it is exact.
    virtual DataReturnCodeEnum FitTolerance(double& tolerance) const = 0;
    /// The order to which the curve is continuous; does nothing here.
    virtual DataReturnCodeEnum CurveContinuity(int& order) const;
    /// Turns the curve round; does nothing here.
    virtual DataReturnCodeEnum Negate_ex();
    /// The parameter by which a periodic curve was shifted; 0 when it was not.
    virtual DataReturnCodeEnum ParameterShift(double& shift) const = 0;
    DataReturnCodeEnum AcceptVisitor(CurveDataVisitor* visitor) override;
};

}  // namespace KVR
