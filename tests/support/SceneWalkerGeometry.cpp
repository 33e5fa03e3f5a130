// What the walk asks of geometry and of annotation.

#include "tests/support/SceneWalker.h"

namespace KVR::Test
{

void SceneWalker::AskGeometry(IGeometry const& geometry)
{
    ++m_answers.shapes;
    AskUnits(geometry);
    Tell("IsVisible", geometry.IsVisible());
    Tell("IsNetVisible", geometry.IsNetVisible());
    Tell("AngularTolerance", geometry.AngularTolerance());
    Tell("LinearTolerance", geometry.LinearTolerance());
    Tell("ParamTolerance", geometry.ParamTolerance());
    Tell("Styles", geometry.Styles());
    Tell("NetStyles", geometry.NetStyles());
    if (geometry.Transform())
        Tell("Transform", *geometry.Transform());
    AskShape(geometry);
}

void SceneWalker::AskShape(IGeometry const& geometry)
{
    if (auto const* const point = dynamic_cast<IPoint const*>(&geometry))
    {
        Tell("X", point->X());
        Tell("Y", point->Y());
        Tell("Z", point->Z());
    }
    else if (auto const* const cloud = dynamic_cast<IPointCloud const*>(&geometry))
    {
        for (std::size_t i = 0; i <= cloud->PointCount(); ++i)
        {
            Vector at;
            cloud->Point(i, &at[0], &at[1], &at[2]);
            Tell("Point", at);
        }
    }
    else if (auto const* const axis = dynamic_cast<IWorkAxis const*>(&geometry))
    {
        AskTriple("StartPoint", *axis, &IWorkAxis::StartPoint);
        AskTriple("EndPoint", *axis, &IWorkAxis::EndPoint);
        AskTriple("Axis", *axis, &IWorkAxis::Axis);
    }
    else if (auto const* const plane = dynamic_cast<IWorkPlane const*>(&geometry))
    {
        AskTriple("Origin", *plane, &IWorkPlane::Origin);
        AskTriple("Normal", *plane, &IWorkPlane::Normal);
        AskTriple("Reference", *plane, &IWorkPlane::Reference);
        Vector min;
        Vector max;
        plane->DisplayRange(min[0], min[1], min[2], max[0], max[1], max[2]);
        Tell("DisplayRange", min);
        Tell("to", max);
    }
    else if (auto const* const spot = dynamic_cast<IWorkPoint const*>(&geometry))
        AskTriple("Position", *spot, &IWorkPoint::Position);
    else if (auto const* const sketch = dynamic_cast<ISketch const*>(&geometry))
    {
        Tell("SketchType", static_cast<int>(sketch->SketchType()));
        VisitAll("CurveIds", sketch->CurveIds());
        VisitAll("PointIds", sketch->PointIds());
    }
    else if (auto const* const set = dynamic_cast<IGeometricSet const*>(&geometry))
        AskChildren(*set);
    else if (auto const* const extension = dynamic_cast<IExtensionGeometry const*>(&geometry))
        AskChildren(*extension);
}

void SceneWalker::AskCallout(IAnnotationCallout const& callout)
{
    ++m_answers.notes;
    Tell("IsVisible", callout.IsVisible());
    UTF8String plane;
    if (callout.AnnotationPlaneId(plane) == kIsValueSpecified_Yes)
    {
        Tell("AnnotationPlaneId", plane);
        Visit(Text(plane));
    }
    if (callout.Text())
        AskText(*callout.Text());
    AskChildren(callout);
}

void SceneWalker::AskText(IText const& text)
{
    Position origin;
    text.Origin(origin);
    Tell("Origin", origin.X());
    int justification = 0;
    Tell("TextJustification", static_cast<int>(text.TextJustification(justification)));
    Ask("Transform", text, &IText::Transform);
    Ask("IsVertical", text, &IText::IsVertical);
    Ask("LengthUnit", text, &IText::LengthUnit);
    for (unsigned long long i = 0; i < text.LineCount(); ++i)
    {
        ITextLine const& line = *text.LineAt(i);
        Ask("TextAlignment", line, &ITextLine::TextAlignment);
        Ask("Indentation", line, &ITextLine::Indentation);
        for (unsigned long long at = 0; at < line.FragmentCount(); ++at)
            AskFragment(*line.FragmentAt(at));
    }
}

void SceneWalker::AskFragment(ITextFragment const& fragment)
{
    Tell("Value", fragment.Value());
    Ask("TextColor", fragment, &ITextFragment::TextColor);
    Ask("TextBackgroundColor", fragment, &ITextFragment::TextBackgroundColor);
    Ask("FontName", fragment, &ITextFragment::FontName);
    for (auto const flag :
         {&ITextFragment::IsBold, &ITextFragment::IsItalic, &ITextFragment::IsUnderlined, &ITextFragment::IsOverlined})
        Ask("flag", fragment, flag);
    for (auto const size :
         {&ITextFragment::Height, &ITextFragment::Width, &ITextFragment::FontSize, &ITextFragment::Gap})
        Ask("size", fragment, size);
    Ask("ScriptType", fragment, &ITextFragment::ScriptType);
}

}  // namespace KVR::Test
