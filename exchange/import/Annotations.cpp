#include "exchange/import/Annotations.h"

#include <fmt/format.h>
#include <Bnd_Box.hxx>
#include <STEPCAFControl_GDTProperty.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_LabelSequence.hxx>
#include <XCAFDimTolObjects_DatumObject.hxx>
#include <XCAFDimTolObjects_DimensionObject.hxx>
#include <XCAFDimTolObjects_GeomToleranceObject.hxx>
#include <XCAFDoc_Datum.hxx>
#include <XCAFDoc_DimTolTool.hxx>
#include <XCAFDoc_Dimension.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_GeomTolerance.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <cstdlib>
#include <gp_Ax2.hxx>

#include "exchange/conventions/AnnotationDetails.h"
#include "exchange/import/DrawnLines.h"
#include "exchange/import/NoteFacts.h"
#include "exchange/model/CleanText.h"
#include "scene/ExtensionTypes.h"

namespace KVR
{

namespace
{

// What Open CASCADE calls annotations without a name.
constexpr std::string_view kMadeUpName = "DGT:";

std::string TextOf(Handle(TCollection_HAsciiString) const& text)
{
    return text.IsNull() ? std::string() : std::string(CleanText(text->ToCString()).View());
}

std::string NameOf(Handle(TCollection_HAsciiString) const& name)
{
    std::string text = TextOf(name);
    return text.starts_with(kMadeUpName) ? std::string() : text;
}

// Files hold a dozen digits; what lies beyond is left of conversions.
double Rounded(double value)
{
    // What is smaller than a number can be is one of the smallest, or none.
    return std::strtod(fmt::format("{:.12g}", value).c_str(), nullptr);
}

std::string NumberText(double value)
{
    return fmt::format("{:.10g}", value);
}

Authoring::XYZ Triple(gp_XYZ const& value)
{
    return {value.X() + 0.0, value.Y() + 0.0, value.Z() + 0.0};
}

}  // namespace

class AnnotationReader
{
public:
    AnnotationReader(Annotations& annotations, ModelDocument const& model, ProductPlan const& plan,
                     std::function<std::vector<UTF8String>(TDF_Label const&)> const& idsOf, Losses& losses)
        : m_annotations(annotations),
          m_tool(XCAFDoc_DocumentTool::DimTolTool(model.document->Main())),
          m_plan(plan),
          m_unit(model.unit),
          m_facts(model),
          m_idsOf(idsOf),
          m_losses(losses)
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
        m_annotations.m_entities = m_facts.Taken();
    }

private:
    StepTolerance const* FactsOf(TDF_Label const& label, bool isDimension, Handle(TCollection_HAsciiString) const& name,
                                 AnnotationDetails& details)
    {
        TDF_LabelSequence shapes;
        TDF_LabelSequence second;
        m_tool->GetRefShapeLabel(label, shapes, second);
        StepTolerance const* const facts = m_facts.Take(isDimension, TextOf(name), details.type, shapes);
        if (facts)
            NoteFacts::Add(details, *facts);
        return facts;
    }

    void ReadDimension(TDF_Label const& label)
    {
        Handle(XCAFDoc_Dimension) attribute;
        if (!label.FindAttribute(XCAFDoc_Dimension::GetID(), attribute))
            return;
        Handle(XCAFDimTolObjects_DimensionObject) const object = attribute->GetObject();
        if (object.IsNull())
            return;
        AnnotationDetails details;
        auto const type = static_cast<int>(object->GetType());
        details.type = DimensionTypeName(type);
        ReadValues(*object, details);
        ReadModifiers(*object, details);
        FactsOf(label, true, object->GetSemanticName(), details);
        if (IsLocation(type != kDimensionType_None ? type : DimensionTypeOf(details.type)))
            details.second.emplace();
        // Without an entity of its own the name often tells the type.
        std::string text = details.type.empty() ? NameOf(object->GetSemanticName()) : details.type;
        if (text.empty())
            text = "dimension";
        if (details.value)
            text += ' ' + NumberText(*details.value);
        else if (details.lower && details.upper)
            text += ' ' + NumberText(0.5 * (*details.lower + *details.upper));
        if (!details.fit.empty())
            text += ' ' + details.fit;
        Add(label, "dimension", text, std::move(details), *object);
    }

    static void ReadValues(XCAFDimTolObjects_DimensionObject const& object, AnnotationDetails& details)
    {
        auto const values = object.GetValues();
        if (values.IsNull() || values->Length() == 0)
            return;
        auto const at = [&](int place) { return Rounded(values->Value(values->Lower() + place)); };
        // A plus below zero arrives as the upper end of a range.
        if (values->Length() == 2 && at(0) <= at(1))
        {
            details.lower = at(0);
            details.upper = at(1);
            return;
        }
        details.value = at(0);
        if (values->Length() > 2)
        {
            details.minus = at(1);
            details.plus = at(2);
        }
    }

    static void ReadModifiers(XCAFDimTolObjects_DimensionObject const& object, AnnotationDetails& details)
    {
        for (int const modifier : object.GetModifiers())
            details.modifiers.push_back(TextOf(STEPCAFControl_GDTProperty::GetDimModifierName(
                static_cast<XCAFDimTolObjects_DimensionModif>(modifier))));
    }

    template <class Sequence>
    static unsigned long long CountOf(Sequence const& sequence)
    {
        return static_cast<unsigned long long>(sequence.Length());
    }

    void ReadTolerance(TDF_Label const& label)
    {
        Handle(XCAFDoc_GeomTolerance) attribute;
        if (!label.FindAttribute(XCAFDoc_GeomTolerance::GetID(), attribute))
            return;
        Handle(XCAFDimTolObjects_GeomToleranceObject) const object = attribute->GetObject();
        if (object.IsNull())
            return;
        AnnotationDetails details;
        details.type = ToleranceTypeName(static_cast<int>(object->GetType()));
        StepTolerance const* const facts = FactsOf(label, false, object->GetSemanticName(), details);
        // As it arrives in the document, the magnitude is often none.
        if (!details.magnitude)
            m_losses.AddItem("magnitudes of tolerances", TextOf(object->GetSemanticName()));
        if (!facts)
            m_losses.AddOf("modifiers of tolerances", TextOf(object->GetSemanticName()),
                           CountOf(object->GetModifiers()));
        m_tolerances.Bind(label, facts);
        std::string text = details.type.empty() ? "tolerance" : details.type;
        if (details.magnitude)
            text += ' ' + NumberText(*details.magnitude);
        Add(label, "tolerance", text, std::move(details), *object);
    }

    void ReadDatum(TDF_Label const& label)
    {
        Handle(XCAFDoc_Datum) attribute;
        if (!label.FindAttribute(XCAFDoc_Datum::GetID(), attribute))
            return;
        Handle(XCAFDimTolObjects_DatumObject) const object = attribute->GetObject();
        if (object.IsNull())
            return;
        AnnotationDetails details;
        details.letter = TextOf(object->GetName());
        details.position = object->GetPosition();
        TDF_LabelSequence tolerances;
        m_tool->GetTolerOfDatumLabels(label, tolerances);
        StepTolerance const* tolerance = nullptr;
        if (!tolerances.IsEmpty())
        {
            details.tolerance = m_annotations.IdOf(tolerances.First()).View();
            if (StepTolerance const* const* const known = m_tolerances.Seek(tolerances.First()))
                tolerance = *known;
        }
        if (StepDatumReference const* const reference = NoteFacts::FrameOf(tolerance, details))
            details.modifiers = reference->modifiers;
        else
            m_losses.AddOf("modifiers of datums", details.letter, CountOf(object->GetModifiers()));
        if (object->IsDatumTarget())
            ReadTarget(*object, details);
        std::string const text = details.letter.empty() ? "datum" : "datum " + details.letter;
        Add(label, "datum", text, std::move(details), *object);
    }

    void ReadTarget(XCAFDimTolObjects_DatumObject const& object, AnnotationDetails& details)
    {
        details.target = std::to_string(object.GetDatumTargetNumber());
        details.targetType = TextOf(STEPCAFControl_GDTProperty::GetDatumTargetName(object.GetDatumTargetType()));
        StepDatumTarget const* const target = m_facts.TakeTarget(details);
        if (!target)
            return;
        details.targetType = target->type;
        details.targetLength = target->diameter ? target->diameter : target->length;
        details.targetWidth = target->width;
    }

    template <class Object>
    void Add(TDF_Label const& label, char const* kind, std::string const& text, AnnotationDetails details,
             Object const& object)
    {
        Annotations::Note note;
        Authoring::CalloutRecord& callout = note.callout;
        callout.id = UTF8String("note" + std::to_string(++m_annotations.m_count));
        details.number = static_cast<int>(m_annotations.m_count);
        callout.label = UTF8String(NameOf(object.GetSemanticName()));
        callout.extensionData.push_back({kAnnotationKindTypeId, kind, {}, {}, {}});
        if (callout.label.IsEmpty())
            callout.label = UTF8String(TextOf(object.GetPresentationName()));
        callout.text.emplace();
        callout.text->lengthUnit = m_unit;
        callout.text->lines.push_back({{UTF8String(text), {}, {}, {}, {}, {}}});
        ReadPlane(callout, object);
        ReadDrawing(note, object.GetPresentation(), object.GetPresentationName());
        CentreText(note, object.GetPointTextAttach().XYZ());
        std::size_t const owner = ReadReferences(callout, details, label);
        callout.extensionData.push_back({kAnnotationDetailsTypeId, UTF8String(details.Text()), {}, {}, {}});
        m_annotations.m_ids.Bind(label, callout.id);
        auto const [known, isNew] = m_annotations.m_idOfLabel.try_emplace(std::string(callout.label.View()));
        known->second = isNew ? callout.id : UTF8String();
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
        for (Authoring::CurveRecord& line : DrawnLines(drawing))
        {
            Authoring::CurveElementRecord curve;
            curve.id = element.id + UTF8String("." + std::to_string(++number));
            curve.unit.length = m_unit;
            note.curves.emplace_back(curve.id, std::move(line));
            element.curves.push_back(std::move(curve));
        }
        if (number > 0)
            note.callout.elements.push_back(std::move(element));
    }

    // A text that is not at the origin of its plane is in the middle of its drawing; Open CASCADE takes that of poles,
    // which another form of the same curves does not have.
    static void CentreText(Annotations::Note& note, gp_XYZ const& known)
    {
        Authoring::CalloutRecord& callout = note.callout;
        if (!callout.plane || note.curves.empty() || known.Modulus() == 0.0 ||
            callout.plane->plane.origin == Triple(known))
            return;
        Bnd_Box box;
        for (auto const& [id, line] : note.curves)
            box.Add(BoxOf(line));
        callout.text->origin = Triple(0.5 * (box.CornerMin().XYZ() + box.CornerMax().XYZ()));
    }

    // Notes what the annotation speaks of; the answer is the component that it belongs to.
    std::size_t ReadReferences(Authoring::CalloutRecord& callout, AnnotationDetails& details, TDF_Label const& label)
    {
        TDF_LabelSequence first;
        TDF_LabelSequence second;
        m_tool->GetRefShapeLabel(label, first, second);
        std::size_t owner = m_plan.components.size();
        std::string references;
        for (std::string const& id : IdsOf(first, owner))
            references += (references.empty() ? "" : ",") + id;
        if (!second.IsEmpty())
            details.second.emplace();
        for (std::string const& id : IdsOf(second, owner))
        {
            references += (references.empty() ? "" : ",") + id;
            details.second->push_back(id);
        }
        if (!references.empty())
            callout.extensionData.push_back({kAnnotationReferencesTypeId, UTF8String(references), {}, {}, {}});
        if (owner < m_plan.components.size())
            return owner;
        return m_plan.roots.empty() ? 0 : m_plan.roots.front();
    }

    std::vector<std::string> IdsOf(TDF_LabelSequence const& shapes, std::size_t& owner) const
    {
        std::vector<std::string> ids;
        for (TDF_Label const& shape : shapes)
        {
            if (owner == m_plan.components.size())
                owner = OwnerOf(shape);
            for (UTF8String const& id : m_idsOf(shape))
                ids.emplace_back(id.View());
        }
        return ids;
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
    NoteFacts m_facts;
    /// What the file says of the tolerances; null for nothing.
    NCollection_DataMap<TDF_Label, StepTolerance const*, TDF_LabelMapHasher> m_tolerances;
    std::function<std::vector<UTF8String>(TDF_Label const&)> const& m_idsOf;
    Losses& m_losses;
};

Annotations::Annotations(ModelDocument const& model, ProductPlan const& plan,
                         std::function<std::vector<UTF8String>(TDF_Label const&)> const& idsOf, Losses& losses)
{
    AnnotationReader(*this, model, plan, idsOf, losses).Read();
    for (std::size_t i = 0; plan.components.empty() && i < m_count; ++i)
        losses.AddItem("annotations of no part", "note" + std::to_string(i + 1));
}

std::vector<Annotations::Note> const& Annotations::NotesOf(std::size_t component) const
{
    static std::vector<Note> const none;
    return component < m_notes.size() ? m_notes[component] : none;
}

UTF8String Annotations::IdOf(std::string const& label) const
{
    auto const found = m_idOfLabel.find(label);
    return found == m_idOfLabel.end() ? UTF8String() : found->second;
}

UTF8String Annotations::IdOf(TDF_Label const& label) const
{
    UTF8String const* const id = m_ids.Seek(label);
    return id ? *id : UTF8String();
}

}  // namespace KVR
