#include "authoring/CurveRecord.h"

#include "authoring/StoreFile.h"
#include "framework/api/Exception.h"

namespace KVR::Authoring
{

namespace
{

class PayloadWriter
{
public:
    explicit PayloadWriter(StoreFile& file) : m_file(file) {}

    void operator()(LineRecord const& line) const
    {
        m_file.F64s(line.rootPoint);
        m_file.F64s(line.direction);
        m_file.F64(line.start);
        m_file.F64(line.end);
    }

    void operator()(RayRecord const& ray) const
    {
        m_file.F64s(ray.origin);
        m_file.F64s(ray.direction);
    }

    void operator()(EllipseRecord const& ellipse) const
    {
        Flags(ellipse);
        m_file.F64s(ellipse.center);
        m_file.F64s(ellipse.majorAxis);
        m_file.F64s(ellipse.normal);
        m_file.F64(ellipse.radiusRatio);
        m_file.F64(ellipse.start);
        m_file.F64(ellipse.end);
    }

    void operator()(PolylineRecord const& polyline) const
    {
        Flags(polyline);
        m_file.U64(polyline.points.size());
        Triples(polyline.points);
        m_file.U64(polyline.vectors ? 1 : 0);
        if (!polyline.vectors)
            return;
        if (polyline.vectors->size() != polyline.points.size())
            throw GeneralException("a polyline needs as many vectors as points");
        Triples(*polyline.vectors);
    }

    void operator()(CompositeRecord const& composite) const
    {
        Flags(composite);
        m_file.U64(composite.segments.size());
        for (CompositeSegment const& segment : composite.segments)
        {
            if (segment.id.IsEmpty() || !segment.curve)
                throw GeneralException("a segment of a composite curve needs an id and a curve");
            m_file.U64(0);
            m_file.U64(segment.curve->Type());
            m_file.Text(segment.id);
            WriteCurvePayload(m_file, *segment.curve);
        }
        for (CompositeSegment const& segment : composite.segments)
            m_file.U64(segment.flag);
        for (CompositeSegment const& segment : composite.segments)
        {
            m_file.F64(segment.start);
            m_file.F64(segment.end);
        }
        for (CompositeSegment const& segment : composite.segments)
            m_file.U64(segment.value);
    }

    void operator()(NurbsRecord const& nurbs) const
    {
        Flags(nurbs);
        m_file.U64(nurbs.knots.size());
        m_file.F64s(nurbs.knots);
        m_file.U64(nurbs.controlPoints.size());
        Triples(nurbs.controlPoints);
        m_file.U64(nurbs.weights ? 1 : 0);
        if (nurbs.weights)
        {
            if (nurbs.weights->size() != nurbs.controlPoints.size())
                throw GeneralException("a rational curve needs as many weights as control points");
            m_file.F64s(*nurbs.weights);
        }
        m_file.U64(nurbs.degree);
        m_file.F64(nurbs.start);
        m_file.F64(nurbs.end);
    }

private:
    template <class Record>
    void Flags(Record const& record) const
    {
        m_file.Flag(record.isClosed);
        m_file.Flag(record.isPeriodic);
    }

    void Triples(std::vector<Triple> const& triples) const
    {
        for (Triple const& triple : triples)
            m_file.F64s(triple);
    }

    StoreFile& m_file;
};

}  // namespace

void WriteCurvePayload(StoreFile& file, CurveRecord const& record)
{
    std::visit(PayloadWriter(file), record.curve);
}

}  // namespace KVR::Authoring
