#include "host/dump/AnnotationDump.h"

#include "framework/api/Color.h"
#include "framework/api/IAnnotationCallout.h"
#include "framework/api/IText.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/Position.h"
#include "host/dump/DumpContext.h"
#include "host/dump/Members.h"
#include "host/dump/SharedDump.h"

namespace KVR
{

namespace
{

void DumpFragment(DumpContext const& context, ITextLine const& line, unsigned long long index)
{
    ITextFragment const* const fragment = Ask([&] { return line.FragmentAt(index); }).value_or(nullptr);
    if (!fragment)
        return context.json.Null();
    context.json.BeginObject();
    Members(context.json, *fragment)
        .Value("Value", &ITextFragment::Value)
        .Optional("TextColor", &ITextFragment::TextColor)
        .Optional("TextBackgroundColor", &ITextFragment::TextBackgroundColor)
        .Optional("FontName", &ITextFragment::FontName)
        .Optional("IsBold", &ITextFragment::IsBold)
        .Optional("IsItalic", &ITextFragment::IsItalic)
        .Optional("IsUnderlined", &ITextFragment::IsUnderlined)
        .Optional("IsOverlined", &ITextFragment::IsOverlined)
        .Optional("Height", &ITextFragment::Height)
        .Optional("Width", &ITextFragment::Width)
        .Optional("FontSize", &ITextFragment::FontSize)
        .Optional("Gap", &ITextFragment::Gap)
        .Optional("ScriptType", &ITextFragment::ScriptType);
    context.json.EndObject();
}

void DumpLine(DumpContext const& context, IText const& text, unsigned long long index)
{
    ITextLine const* const line = Ask([&] { return text.LineAt(index); }).value_or(nullptr);
    if (!line)
        return context.json.Null();
    context.json.BeginObject();
    Members(context.json, *line)
        .Optional("TextAlignment", &ITextLine::TextAlignment)
        .Optional("Indentation", &ITextLine::Indentation)
        .List("Fragments", &ITextLine::FragmentCount, [&](unsigned long long i) { DumpFragment(context, *line, i); });
    context.json.EndObject();
}

void DumpText(DumpContext const& context, IText const& text)
{
    context.json.BeginObject();
    Members(context.json, text)
        .Optional("Origin", &IText::Origin)
        .Optional("Transform", &IText::Transform)
        .Optional("TextJustification", &IText::TextJustification)
        .Optional("IsVertical", &IText::IsVertical)
        .Optional("LengthUnit", &IText::LengthUnit)
        .List("Lines", &IText::LineCount, [&](unsigned long long i) { DumpLine(context, text, i); });
    context.json.EndObject();
}

}  // namespace

void DumpAnnotationCallout(DumpContext const& context, IAnnotationCallout const& callout)
{
    DumpObject(context, "IAnnotationCallout", callout);
    DumpVisibility(context, callout);
    Members(context.json, callout)
        .Items("Children", &IAnnotationCallout::ChildCount, &IAnnotationCallout::ChildAt)
        .Optional("AnnotationPlaneId", &IAnnotationCallout::AnnotationPlaneId)
        .Pointer("Text", &IAnnotationCallout::Text, [&](IText const& text) { DumpText(context, text); });
}

void DumpAnnotationCalloutElement(DumpContext const& context, IAnnotationCalloutElement const& element)
{
    DumpObject(context, "IAnnotationCalloutElement", element);
    Members(context.json, element)
        .Items("Children", &IAnnotationCalloutElement::ChildCount, &IAnnotationCalloutElement::ChildAt)
        .Value("Styles", &IAnnotationCalloutElement::Styles);
}

}  // namespace KVR
