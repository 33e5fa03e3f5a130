#include "exchange/export/NoteDrawing.h"

#include <algorithm>
#include <cmath>

#include "framework/api/LengthUnits.h"
#include "framework/api/kvr_api.h"

namespace KVR
{

namespace
{

// The unit of an object by that of its component.
template <class Object>
double ScaleOf(Object const& object, double metresPerUnit)
{
    UnitTypeEnum unit = kUnitType_Unknown;
    double const own = object.LengthUnit(unit) == kIsValueSpecified_Yes ? MetresOf(unit) : 0.0;
    return own > 0.0 ? own / metresPerUnit : 1.0;
}

class CurveCollector final : public ObjectVisitor
{
public:
    CurveCollector(IProducer& producer, NoteDrawing& drawing, double metresPerUnit)
        : m_producer(producer), m_drawing(drawing), m_metresPerUnit(metresPerUnit)
    {
    }

    using ObjectVisitor::Visit;
    void Visit(IAnnotationCalloutElement* element) override
    {
        // An element has no elements of its own.
        if (m_isInElement)
            return;
        if (m_drawing.label.empty())
            m_drawing.label = UTF8String(element->Label()).Value();
        m_isInElement = true;
        VisitChildren(*element);
        m_isInElement = false;
    }
    void Visit(ICurve* curve) override
    {
        m_drawing.curves.push_back({curve, PlaceOf(curve->Transform()), ScaleOf(*curve, m_metresPerUnit)});
    }

    template <class Owner>
    void VisitChildren(Owner const& owner)
    {
        for (unsigned long long i = 0; i < owner.ChildCount(); ++i)
        {
            UTF8String const id = owner.ChildAt(i).Id();
            if (IObject* const object = id.IsEmpty() ? nullptr : m_producer.Load(id))
                object->AcceptVisitor(this);
        }
    }

private:
    IProducer& m_producer;
    NoteDrawing& m_drawing;
    double m_metresPerUnit;
    bool m_isInElement = false;
};

void AddText(NoteDrawing& drawing, IText const& text, double metresPerUnit)
{
    double const scale = ScaleOf(text, metresPerUnit);
    for (unsigned long long i = 0; i < text.LineCount(); ++i)
    {
        ITextLine const* const line = text.LineAt(i);
        drawing.text += i > 0 ? "\n" : "";
        for (unsigned long long j = 0; line && j < line->FragmentCount(); ++j)
        {
            ITextFragment const* const fragment = line->FragmentAt(j);
            if (!fragment)
                continue;
            drawing.text += UTF8String(fragment->Value()).Value();
            double height = 0.0;
            if (fragment->Height(height) == kIsValueSpecified_Yes && std::isfinite(height) && height > 0.0)
                drawing.textHeight = std::max(drawing.textHeight, scale * height);
        }
    }
}

}  // namespace

NoteDrawing NoteDrawing::Of(IProducer& producer, IAnnotationCallout const& callout, double metresPerUnit)
{
    NoteDrawing drawing;
    CurveCollector(producer, drawing, metresPerUnit).VisitChildren(callout);
    if (IText const* const text = callout.Text())
        AddText(drawing, *text, metresPerUnit);
    UTF8String id;
    if (callout.AnnotationPlaneId(id) != kIsValueSpecified_Yes)
        return drawing;
    if (auto const* const plane = dynamic_cast<IWorkPlane const*>(producer.Load(id)))
    {
        Plane& made = drawing.plane.emplace();
        plane->Origin(made.origin[0], made.origin[1], made.origin[2]);
        plane->Normal(made.normal[0], made.normal[1], made.normal[2]);
        plane->Reference(made.reference[0], made.reference[1], made.reference[2]);
        for (double& x : made.origin)
            x *= ScaleOf(*plane, metresPerUnit);
    }
    return drawing;
}

}  // namespace KVR
