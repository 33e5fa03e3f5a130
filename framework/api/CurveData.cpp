// The out-of-line members of the curve data interfaces and of their visitor.

#include "framework/api/CurveDataVisitor.h"
#include "framework/api/ICurveData.h"

namespace KVR
{

IBaseData::IBaseData(IBaseData const* parent) : m_parent(parent) {}
IBaseData::~IBaseData() = default;
DataReturnCodeEnum IBaseData::DataId(UTF8String& id, UTF16String& name) const
{
    if (m_parent)
        return m_parent->DataId(id, name);
    id = UTF8String();
    name = UTF16String();
    return kDataReturnCode_Ok;
}
DataReturnCodeEnum IBaseData::EntityColor(double& red, double& green, double& blue) const
{
    return m_parent ? m_parent->EntityColor(red, green, blue) : kDataReturnCode_Ok;
}

IDataResourceManager::~IDataResourceManager() = default;

ICurveData::~ICurveData() = default;
DataReturnCodeEnum ICurveData::ParameterRange(Interval&) const
{
    return kDataReturnCode_NotAvailable;
}
DataReturnCodeEnum ICurveData::IsClosed(bool&) const
{
    return kDataReturnCode_NotAvailable;
}
DataReturnCodeEnum ICurveData::IsPeriodic(bool&) const
{
    return kDataReturnCode_NotAvailable;
}
DataReturnCodeEnum ICurveData::StartPoint_ex(Position&) const
{
    return kDataReturnCode_NotAvailable;
}
DataReturnCodeEnum ICurveData::EndPoint_ex(Position&) const
{
    return kDataReturnCode_NotAvailable;
}
DataReturnCodeEnum ICurveData::Evaluate_ex(double, Position&) const
{
    return kDataReturnCode_NotAvailable;
}
DataReturnCodeEnum ICurveData::Param_ex(Position const&, double&) const
{
    return kDataReturnCode_NotAvailable;
}

DataReturnCodeEnum IPolyLineData::IsPlanar_ex(Matrix3d&) const
{
    return kDataReturnCode_Ok;
}
DataReturnCodeEnum IPolyLineData::IsSelfIntersect_ex() const
{
    return kDataReturnCode_Ok;
}
DataReturnCodeEnum INurbsCurveData::CurveContinuity(int&) const
{
    return kDataReturnCode_Ok;
}
DataReturnCodeEnum INurbsCurveData::Negate_ex()
{
    return kDataReturnCode_Ok;
}

IStraightData::IStraightData(IBaseData const* parent) : IBaseData(parent) {}
IRayData::IRayData(IBaseData const* parent) : IBaseData(parent) {}
IEllipseData::IEllipseData(IBaseData const* parent) : IBaseData(parent) {}
IPolyLineData::IPolyLineData(IBaseData const* parent) : IBaseData(parent) {}
ICompositeCurveData::ICompositeCurveData(IBaseData const* parent) : IBaseData(parent) {}
INurbsCurveData::INurbsCurveData(IBaseData const* parent) : IBaseData(parent) {}

IStraightData::~IStraightData() = default;
IRayData::~IRayData() = default;
IEllipseData::~IEllipseData() = default;
IPolyLineData::~IPolyLineData() = default;
ICompositeCurveData::~ICompositeCurveData() = default;
INurbsCurveData::~INurbsCurveData() = default;

namespace
{
template <class Data>
DataReturnCodeEnum VisitBy(CurveDataVisitor* visitor, Data* data)
{
    if (!visitor)
        return kDataReturnCode_BadArgument;
    visitor->Visit(data);
    return kDataReturnCode_Ok;
}
}  // namespace

DataReturnCodeEnum IStraightData::AcceptVisitor(CurveDataVisitor* visitor)
{
    return VisitBy(visitor, this);
}
DataReturnCodeEnum IRayData::AcceptVisitor(CurveDataVisitor* visitor)
{
    return VisitBy(visitor, this);
}
DataReturnCodeEnum IEllipseData::AcceptVisitor(CurveDataVisitor* visitor)
{
    return VisitBy(visitor, this);
}
DataReturnCodeEnum IPolyLineData::AcceptVisitor(CurveDataVisitor* visitor)
{
    return VisitBy(visitor, this);
}
DataReturnCodeEnum ICompositeCurveData::AcceptVisitor(CurveDataVisitor* visitor)
{
    return VisitBy(visitor, this);
}
DataReturnCodeEnum INurbsCurveData::AcceptVisitor(CurveDataVisitor* visitor)
{
    return VisitBy(visitor, this);
}

CurveDataVisitor::~CurveDataVisitor() = default;
void CurveDataVisitor::Visit(ITrimmedCurveData*) {}
void CurveDataVisitor::Visit(IEvaluatedCurveData*) {}
void CurveDataVisitor::Visit(IOffsetCurveData*) {}
void CurveDataVisitor::Visit(IHelixData*) {}
void CurveDataVisitor::Visit(ITransformedCurveData*) {}
void CurveDataVisitor::Visit(IIntCurveData*) {}
void CurveDataVisitor::Visit(IConicData*) {}
void CurveDataVisitor::Visit(IPowerBasisCurveData*) {}
void CurveDataVisitor::Visit(ICompositeCurveData*) {}
void CurveDataVisitor::Visit(INurbsCurveData*) {}
void CurveDataVisitor::Visit(IEllipseData*) {}
void CurveDataVisitor::Visit(IPolyLineData*) {}
void CurveDataVisitor::Visit(IRayData*) {}
void CurveDataVisitor::Visit(IStraightData*) {}

}  // namespace KVR
