#include "host/dump/CurveDataDump.h"

#include "framework/api/CurveDataVisitor.h"
#include "framework/api/ICurveData.h"
#include "host/dump/DumpContext.h"
#include "host/dump/DumpOptions.h"
#include "host/dump/Members.h"

namespace KVR
{

namespace
{

// Composites are read to 1,000 levels; whoever serves deeper ones must not end the dump either.
constexpr unsigned kDeepestNesting = 1001;

// Writes the members of one data object by its kind.
class CurveDataDump : public CurveDataVisitor
{
public:
    CurveDataDump(DumpContext const& context, unsigned depth) : m_context(context), m_json(context.json), m_depth(depth)
    {
    }

    void Write(ICurveData* data)
    {
        if (!data || m_depth > kDeepestNesting)
            return m_json.Null();
        m_json.BeginObject();
        data->AcceptVisitor(this);
        Members members(m_json, *data);
        Interval range(0.0, 0.0);
        m_json.Key("ParameterRange");
        if (Members<ICurveData>::Asked([&] { return data->ParameterRange(range); }))
            WriteValue(m_json, range);
        else
            m_json.Null();
        members.Optional("IsClosed", &ICurveData::IsClosed)
            .Optional("IsPeriodic", &ICurveData::IsPeriodic)
            .Optional("StartPoint_ex", &ICurveData::StartPoint_ex)
            .Optional("EndPoint_ex", &ICurveData::EndPoint_ex);
        m_json.EndObject();
    }

    void Visit(IStraightData* data) override
    {
        Begin("IStraightData", *data)
            .Triple("RootPoint", &IStraightData::RootPoint)
            .Triple("Direction", &IStraightData::Direction);
    }

    void Visit(IRayData* data) override
    {
        Begin("IRayData", *data).Triple("Origin", &IRayData::Origin).Triple("Direction", &IRayData::Direction);
    }

    void Visit(IEllipseData* data) override
    {
        Begin("IEllipseData", *data)
            .Triple("Center", &IEllipseData::Center)
            .Triple("MajorAxis", &IEllipseData::MajorAxis)
            .Triple("Normal", &IEllipseData::Normal)
            .Optional("RadiusRatio", &IEllipseData::RadiusRatio);
    }

    void Visit(IPolyLineData* data) override
    {
        bool hasVectors = false;
        Members<IPolyLineData>::Asked([&] { return data->HasVectors(hasVectors); });
        std::uint32_t const count = CountOf(*data, &IPolyLineData::PointCount);
        Begin("IPolyLineData", *data)
            .Optional("HasVectors", &IPolyLineData::HasVectors)
            .Optional("PointCount", &IPolyLineData::PointCount)
            .Optional("IsPlanar_ex", &IPolyLineData::IsPlanar_ex);
        if (m_context.options.summary)
            return;
        DumpTriples("Points", *data, count, &IPolyLineData::Point);
        DumpTriples("Vectors", *data, hasVectors ? count : 0, &IPolyLineData::VectorAt);
    }

    void Visit(INurbsCurveData* data) override
    {
        Begin("INurbsCurveData", *data)
            .Optional("Degree", &INurbsCurveData::Degree)
            .Optional("KnotCount", &INurbsCurveData::KnotCount)
            .Optional("ControlPointCount", &INurbsCurveData::ControlPointCount)
            .Optional("IsRational", &INurbsCurveData::IsRational)
            .Optional("FitTolerance", &INurbsCurveData::FitTolerance)
            .Optional("CurveContinuity", &INurbsCurveData::CurveContinuity)
            .Optional("ParameterShift", &INurbsCurveData::ParameterShift);
        m_json.Key("Knots");
        m_json.BeginList(JsonWriter::Layout::Row);
        for (std::uint32_t i = 0, count = CountOf(*data, &INurbsCurveData::KnotCount); i < count; ++i)
            DumpOne<double>([&](double& knot) { return data->Knot(static_cast<int>(i), knot); });
        m_json.EndList();
        m_json.Key("ControlPoints");
        m_json.BeginList();
        for (std::uint32_t i = 0, count = CountOf(*data, &INurbsCurveData::ControlPointCount); i < count; ++i)
            DumpControlPoint(*data, static_cast<int>(i));
        m_json.EndList();
    }

    void Visit(ICompositeCurveData* data) override
    {
        Begin("ICompositeCurveData", *data).Optional("SegmentCount", &ICompositeCurveData::SegmentCount);
        m_json.Key("Segments");
        m_json.BeginList();
        for (std::uint32_t i = 0, count = CountOf(*data, &ICompositeCurveData::SegmentCount); i < count; ++i)
            DumpSegment(*data, static_cast<int>(i));
        m_json.EndList();
    }

private:
    template <class Data>
    Members<Data> Begin(std::string_view className, Data const& data)
    {
        m_json.Key("Class");
        m_json.String(className);
        UTF8String id;
        UTF16String name;
        bool const hasId = Members<Data>::Asked([&] { return data.DataId(id, name); });
        m_json.Key("DataId");
        if (hasId)
        {
            m_json.BeginList(JsonWriter::Layout::Row);
            WriteValue(m_json, id);
            WriteValue(m_json, name);
            m_json.EndList();
        }
        else
        {
            m_json.Null();
        }
        Members<Data> members(m_json, data);
        members.Triple("EntityColor", &IBaseData::EntityColor);
        return members;
    }

    template <class Data>
    static std::uint32_t CountOf(Data const& data, DataReturnCodeEnum (Data::*getter)(std::uint32_t&) const)
    {
        std::uint32_t count = 0;
        return Members<Data>::Asked([&] { return (data.*getter)(count); }) ? count : 0;
    }

    template <class T, class Getter>
    void DumpOne(Getter getter)
    {
        T value{};
        if (Members<ICurveData>::Asked([&] { return getter(value); }))
            WriteValue(m_json, value);
        else
            m_json.Null();
    }

    void DumpTriples(std::string_view name, IPolyLineData const& data, std::uint32_t count,
                     DataReturnCodeEnum (IPolyLineData::*getter)(int, double&, double&, double&) const)
    {
        m_json.Key(name);
        m_json.BeginList();
        for (std::uint32_t i = 0; i < count; ++i)
        {
            double x = 0.0;
            double y = 0.0;
            double z = 0.0;
            if (Members<IPolyLineData>::Asked([&] { return (data.*getter)(static_cast<int>(i), x, y, z); }))
                WriteRow(m_json, x, y, z);
            else
                m_json.Null();
        }
        m_json.EndList();
    }

    void DumpControlPoint(INurbsCurveData const& data, int index)
    {
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        double w = 0.0;
        if (Members<INurbsCurveData>::Asked([&] { return data.ControlPoint(index, x, y, z, w); }))
            WriteRow(m_json, x, y, z, w);
        else
            m_json.Null();
    }

    void DumpSegment(ICompositeCurveData const& data, int index)
    {
        m_json.BeginObject();
        ICurveData* segment = nullptr;
        bool const hasSegment = Members<ICompositeCurveData>::Asked([&] { return data.Segment(index, segment); });
        m_json.Key("Segment");
        CurveDataDump(m_context, m_depth + 1).Write(hasSegment ? segment : nullptr);
        m_json.Key("SegmentFlag");
        DumpOne<bool>([&](bool& flag) { return data.SegmentFlag(index, flag); });
        double start = 0.0;
        double end = 0.0;
        bool const hasInterval =
            Members<ICompositeCurveData>::Asked([&] { return data.SegmentInterval(index, start, end); });
        m_json.Key("SegmentInterval");
        if (hasInterval)
            WriteRow(m_json, start, end);
        else
            m_json.Null();
        m_json.Key("SegmentValue");
        DumpOne<std::uint32_t>([&](std::uint32_t& value) { return data.SegmentValue(index, value); });
        m_json.EndObject();
    }

    DumpContext const& m_context;
    JsonWriter& m_json;
    unsigned m_depth;
};

}  // namespace

void DumpCurveData(DumpContext const& context, ICurveData* data)
{
    CurveDataDump(context, 0).Write(data);
}

}  // namespace KVR
