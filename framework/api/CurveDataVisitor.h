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
    virtual void Visit(ITrimmedCurveData* data);
    virtual void Visit(IEvaluatedCurveData* data);
    virtual void Visit(IOffsetCurveData* data);
    virtual void Visit(IHelixData* data);
    virtual void Visit(ITransformedCurveData* data);
    virtual void Visit(IIntCurveData* data);
    virtual void Visit(IConicData* data);
    virtual void Visit(IPowerBasisCurveData* data);
    virtual void Visit(ICompositeCurveData* data);
    virtual void Visit(INurbsCurveData* data);
    virtual void Visit(IEllipseData* data);
    virtual void Visit(IPolyLineData* data);
    virtual void Visit(IRayData* data);
    virtual void Visit(IStraightData* data);
};

}  // namespace KVR
