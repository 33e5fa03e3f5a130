#pragma once

#include "framework/api/Export.h"

namespace KVR
{

class ICompositeCurveData;
class IConicData;
class IEllipseData;
class IEvaluatedCurveData;
class IHelixData;
class IIntCurveData;
class INurbsCurveData;
class IOffsetCurveData;
class IPolyLineData;
class IPowerBasisCurveData;
class IRayData;
class IStraightData;
class ITransformedCurveData;
class ITrimmedCurveData;

/// Told what kind of curve data it visits. Every overload has no effect here.
class KVR_API CurveDataVisitor
{
public:
    virtual ~CurveDataVisitor();
    /// A stretch of a curve; no scene has it.
    virtual void Visit(ITrimmedCurveData* data);
    /// A curve that is evaluated by its owner; no scene has it.
    virtual void Visit(IEvaluatedCurveData* data);
    /// A curve at a distance from another; no scene has it.
    virtual void Visit(IOffsetCurveData* data);
    /// A helix; no scene has it.
    virtual void Visit(IHelixData* data);
    /// A curve and a transform; no scene has it.
    virtual void Visit(ITransformedCurveData* data);
    /// The curve in which surfaces meet; no scene has it.
    virtual void Visit(IIntCurveData* data);
    /// A conic; no scene has it, and an ellipse visits as an ellipse.
    virtual void Visit(IConicData* data);
    /// A polynomial curve; no scene has it.
    virtual void Visit(IPowerBasisCurveData* data);
    /// Curves one behind the other.
    virtual void Visit(ICompositeCurveData* data);
    /// A B-spline curve, rational or not.
    virtual void Visit(INurbsCurveData* data);
    /// An ellipse or a stretch of one.
    virtual void Visit(IEllipseData* data);
    /// Straight stretches from point to point.
    virtual void Visit(IPolyLineData* data);
    /// A half line.
    virtual void Visit(IRayData* data);
    /// A straight line.
    virtual void Visit(IStraightData* data);
};

}  // namespace KVR
