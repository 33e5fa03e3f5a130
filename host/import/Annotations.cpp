#include "host/import/Annotations.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRep_Tool.hxx>
#include <GCPnts_TangentialDeflection.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <XCAFDimTolObjects_DatumObject.hxx>
#include <XCAFDimTolObjects_DimensionObject.hxx>
#include <XCAFDimTolObjects_GeomToleranceObject.hxx>
#include <XCAFDoc_Datum.hxx>
#include <XCAFDoc_DimTolTool.hxx>
#include <XCAFDoc_Dimension.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_GeomTolerance.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <array>
#include <charconv>
#include <gp_Ax2.hxx>

#include "host/ExtensionTypes.h"
#include "host/import/CleanText.h"

namespace KVR
{

namespace
{

// How far a drawn arc may be from its polyline, by the angle between two pieces.
constexpr double kArcAngle = 0.2;

constexpr std::string_view kDimensionTypes[] = {
    "location",
    "curved distance",
    "linear distance",
    "linear distance from centre to outer",
    "linear distance from centre to inner",
    "linear distance from outer to centre",
    "linear distance from outer to outer",
    "linear distance from outer to inner",
    "linear distance from inner to centre",
    "linear distance from inner to outer",
    "linear distance from inner to inner",
    "angle",
    "oriented",
    "location with path",
    "curve length",
    "diameter",
    "spherical diameter",
    "radius",
    "spherical radius",
    "toroidal minor diameter",
    "toroidal major diameter",
    "toroidal minor radius",
    "toroidal major radius",
    "toroidal high major diameter",
    "toroidal low major diameter",
    "toroidal high major radius",
    "toroidal low major radius",
    "thickness",
    "angle",
    "size with path",
    "label",
    "presentation",
};

constexpr std::string_view kToleranceTypes[] = {
    "tolerance",          "angularity",   "circular run-out", "circularity",      "coaxiality", "concentricity",
    "cylindricity",       "flatness",     "parallelism",      "perpendicularity", "position",   "profile of line",
    "profile of surface", "straightness", "symmetry",         "total run-out",
};

template <std::size_t size>
std::string NameOf(std::string_view const (&names)[size], int index)
{
    return index >= 0 && static_cast<std::size_t>(index) < size ? std::string(names[index]) : std::string("annotation");
}

std::string TextOf(Handle(TCollection_HAsciiString) const& text)
{
    return text.IsNull() ? std::string() : std::string(CleanText(text->ToCString()).View());
}

std::string NumberText(double value)
{
    std::array<char, 32> text;
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

Authoring::XYZ Triple(gp_XYZ const& value)
{
    return {value.X() + 0.0, value.Y() + 0.0, value.Z() + 0.0};
}

// Joins edges that follow one another.
class Polylines
{
public:
    explicit Polylines(TopoDS_Shape const& drawing)
    {
        for (TopExp_Explorer edge(drawing, TopAbs_EDGE); edge.More(); edge.Next())
            Add(TopoDS::Edge(edge.Current()));
    }

    std::vector<Authoring::PolylineRecord> lines;

private:
    void Add(TopoDS_Edge const& edge)
    {
        if (BRep_Tool::Degenerated(edge))
            return;
        BRepAdaptor_Curve const curve(edge);
        std::vector<Authoring::Triple> points;
        if (curve.GetType() == GeomAbs_Line)
            points = {Triple(curve.Value(curve.FirstParameter()).XYZ()),
                      Triple(curve.Value(curve.LastParameter()).XYZ())};
        else
        {
            GCPnts_TangentialDeflection const pieces(curve, kArcAngle, 1e9);
            for (int i = 1; i <= pieces.NbPoints(); ++i)
                points.push_back(Triple(pieces.Value(i).XYZ()));
        }
        if (edge.Orientation() == TopAbs_REVERSED)
            std::reverse(points.begin(), points.end());
        if (points.size() < 2)
            return;
        if (!lines.empty() && lines.back().points.back() == points.front())
            lines.back().points.insert(lines.back().points.end(), points.begin() + 1, points.end());
        else
        {
            lines.emplace_back();
            lines.back().points = std::move(points);
        }
    }
};

}  // namespace

class AnnotationReader
{
public:
    AnnotationReader(Annotations& annotations, Handle(TDocStd_Document) const& document, ProductPlan const& plan,
                     UnitTypeEnum unit, std::function<std::vector<UTF8String>(TDF_Label const&)> const& idsOf)
        : m_annotations(annotations),
          m_tool(XCAFDoc_DocumentTool::DimTolTool(document->Main())),
          m_plan(plan),
          m_unit(unit),
          m_idsOf(idsOf)
    {
    }

    void Read()
    {
        TDF_LabelSequence labels;
        m_tool->GetDimensionLabels(labels);
        for (TDF_Label const& label : labels)
            ReadDimension(label);
        labels.Clear();
        m_tool->GetGeomToleranceLabels(labels);
        for (TDF_Label const& label : labels)
            ReadTolerance(label);
        labels.Clear();
        m_tool->GetDatumLabels(labels);
        for (TDF_Label const& label : labels)
            ReadDatum(label);
    }

private:
    void ReadDimension(TDF_Label const& label)
    {
        Handle(XCAFDoc_Dimension) attribute;
        if (!label.FindAttribute(XCAFDoc_Dimension::GetID(), attribute))
            return;
        Handle(XCAFDimTolObjects_DimensionObject) const object = attribute->GetObject();
        if (object.IsNull())
            return;
        std::string value;
        if (auto const values = object->GetValues(); !values.IsNull() && values->Length() > 0)
            value = NumberText(object->GetValue());
        Add(label, "dimension", NameOf(kDimensionTypes, static_cast<int>(object->GetType())), value, *object);
    }

    void ReadTolerance(TDF_Label const& label)
    {
        Handle(XCAFDoc_GeomTolerance) attribute;
        if (!label.FindAttribute(XCAFDoc_GeomTolerance::GetID(), attribute))
            return;
        Handle(XCAFDimTolObjects_GeomToleranceObject) const object = attribute->GetObject();
        if (object.IsNull())
            return;
        // The magnitude cannot be trusted as it arrives: it is left to the drawing.
        Add(label, "tolerance", NameOf(kToleranceTypes, static_cast<int>(object->GetType())), {}, *object);
    }

    void ReadDatum(TDF_Label const& label)
    {
        Handle(XCAFDoc_Datum) attribute;
        if (!label.FindAttribute(XCAFDoc_Datum::GetID(), attribute))
            return;
        Handle(XCAFDimTolObjects_DatumObject) const object = attribute->GetObject();
        if (object.IsNull())
            return;
        Add(label, "datum", "datum", TextOf(object->GetName()), *object);
    }

    template <class Object>
    void Add(TDF_Label const& label, char const* kind, std::string const& type, std::string const& value,
             Object const& object)
    {
        Annotations::Note note;
        Authoring::CalloutRecord& callout = note.callout;
        callout.id = UTF8String("note" + std::to_string(++m_annotations.m_count));
        callout.label = UTF8String(TextOf(object.GetSemanticName()));
        callout.extensionData.push_back({kAnnotationKindTypeId, kind, {}, {}, {}});
        if (callout.label.IsEmpty())
            callout.label = UTF8String(TextOf(object.GetPresentationName()));
        callout.text.emplace();
        callout.text->lengthUnit = m_unit;
        callout.text->lines.push_back({{UTF8String(value.empty() ? type : type + ' ' + value), {}, {}, {}, {}, {}}});
        ReadPlane(callout, object);
        ReadDrawing(note, object.GetPresentation(), object.GetPresentationName());
        std::size_t const owner = ReadReferences(callout, label);
        m_annotations.m_ids.Bind(label, callout.id);
        if (m_annotations.m_notes.size() <= owner)
            m_annotations.m_notes.resize(owner + 1);
        m_annotations.m_notes[owner].push_back(std::move(note));
    }

    template <class Object>
    void ReadPlane(Authoring::CalloutRecord& callout, Object const& object)
    {
        if constexpr (requires { object.HasPlane(); })
            if (!object.HasPlane())
                return;
        gp_Ax2 const& plane = object.GetPlane();
        callout.plane.emplace();
        callout.plane->id = callout.id + UTF8String(".plane");
        callout.plane->unit.length = m_unit;
        callout.plane->plane.origin = Triple(plane.Location().XYZ());
        callout.plane->plane.normal = Triple(plane.Direction().XYZ());
        callout.plane->plane.reference = Triple(plane.XDirection().XYZ());
        callout.text->origin = Triple(object.GetPointTextAttach().XYZ());
    }

    void ReadDrawing(Annotations::Note& note, TopoDS_Shape const& drawing, Handle(TCollection_HAsciiString) const& name)
    {
        if (drawing.IsNull())
            return;
        Authoring::CalloutElementRecord element;
        element.id = note.callout.id + UTF8String(".drawing");
        element.label = UTF8String(TextOf(name));
        std::size_t number = 0;
        for (Authoring::PolylineRecord& line : Polylines(drawing).lines)
        {
            Authoring::CurveElementRecord curve;
            curve.id = element.id + UTF8String("." + std::to_string(++number));
            curve.unit.length = m_unit;
            note.polylines.emplace_back(curve.id, std::move(line));
            element.curves.push_back(std::move(curve));
        }
        if (number > 0)
            note.callout.elements.push_back(std::move(element));
    }

    // Notes what the annotation speaks of; the answer is the component that it belongs to.
    std::size_t ReadReferences(Authoring::CalloutRecord& callout, TDF_Label const& label)
    {
        TDF_LabelSequence first;
        TDF_LabelSequence second;
        m_tool->GetRefShapeLabel(label, first, second);
        first.Append(second);
        std::size_t owner = m_plan.components.size();
        std::string references;
        for (TDF_Label const& shape : first)
        {
            if (owner == m_plan.components.size())
                owner = OwnerOf(shape);
            for (UTF8String const& id : m_idsOf(shape))
            {
                if (!references.empty())
                    references += ',';
                references += id.View();
            }
        }
        if (!references.empty())
            callout.extensionData.push_back({kAnnotationReferencesTypeId, UTF8String(references), {}, {}, {}});
        if (owner < m_plan.components.size())
            return owner;
        return m_plan.roots.empty() ? 0 : m_plan.roots.front();
    }

    std::size_t OwnerOf(TDF_Label label) const
    {
        for (; !label.IsRoot(); label = label.Father())
            if (std::size_t const component = m_plan.ComponentOf(label); component < m_plan.components.size())
                return component;
        return m_plan.components.size();
    }

    Annotations& m_annotations;
    Handle(XCAFDoc_DimTolTool) m_tool;
    ProductPlan const& m_plan;
    UnitTypeEnum m_unit;
    std::function<std::vector<UTF8String>(TDF_Label const&)> const& m_idsOf;
};

Annotations::Annotations(Handle(TDocStd_Document) const& document, ProductPlan const& plan, UnitTypeEnum unit,
                         std::function<std::vector<UTF8String>(TDF_Label const&)> const& idsOf, Losses& losses)
{
    AnnotationReader(*this, document, plan, unit, idsOf).Read();
    if (plan.components.empty())
        losses.Add("annotations of no part", m_count);
}

std::vector<Annotations::Note> const& Annotations::NotesOf(std::size_t component) const
{
    static std::vector<Note> const none;
    return component < m_notes.size() ? m_notes[component] : none;
}

UTF8String Annotations::IdOf(TDF_Label const& label) const
{
    UTF8String const* const id = m_ids.Seek(label);
    return id ? *id : UTF8String();
}

}  // namespace KVR
