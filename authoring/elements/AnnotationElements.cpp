#include "authoring/XmlFile.h"
#include "authoring/elements/ElementWriters.h"

namespace KVR::Authoring
{

namespace
{

// A text fragment's flags are written out.
void WriteFlag(XmlFile& file, std::string_view name, std::optional<bool> flag)
{
    if (flag)
        file.Attribute(name, *flag ? "True" : "False");
}

void WriteFragment(XmlFile& file, TextFragmentRecord const& fragment)
{
    file.Begin("ITextFragment");
    file.Attribute("Value", fragment.value.View());
    if (fragment.fontName)
        file.Attribute("FontName", fragment.fontName->View());
    WriteFlag(file, "IsBold", fragment.isBold);
    WriteFlag(file, "IsItalic", fragment.isItalic);
    if (fragment.height)
        file.Attribute("Height", *fragment.height);
    if (fragment.color)
        WriteColor(file, "TextColor", *fragment.color);
    file.End();
}

void WriteText(XmlFile& file, TextRecord const& text)
{
    file.Begin("IText");
    if (text.lengthUnit)
        file.Attribute("LengthUnit", UnitText(*text.lengthUnit));
    if (text.origin)
        WriteXYZ(file, "Origin", *text.origin);
    if (text.transform)
    {
        file.Begin("Transform");
        file.Text(TransformText(*text.transform));
        file.End();
    }
    for (std::vector<TextFragmentRecord> const& line : text.lines)
    {
        file.Begin("ITextLine");
        for (TextFragmentRecord const& fragment : line)
            WriteFragment(file, fragment);
        file.End();
    }
    file.End();
}

void WriteElement(XmlFile& file, CalloutElementRecord const& element)
{
    file.Begin("IAnnotationCalloutElement");
    WriteHead(file, element);
    WriteStyleRefs(file, "Styles", element.styles);
    file.Begin("ChildSet");
    for (CurveElementRecord const& curve : element.curves)
        WriteCurve(file, curve);
    for (PointRecord const& point : element.points)
        WritePoint(file, point);
    for (MeshRecord const& mesh : element.meshes)
        WriteMesh(file, mesh);
    file.End();
    WriteExtensionData(file, element);
    file.End();
}

}  // namespace

void WriteCallout(XmlFile& file, CalloutRecord const& callout)
{
    file.Begin("IAnnotationCallout");
    WriteHead(file, callout);
    file.Attribute("Visibility", callout.isVisible ? "1" : "0");
    if (callout.text)
        WriteText(file, *callout.text);
    if (callout.plane)
    {
        file.Begin("AnnotationPlane");
        WriteWorkPlane(file, *callout.plane);
        file.End();
    }
    file.Begin("ChildSet");
    for (UTF8String const& id : callout.childIds)
    {
        file.Begin("Child");
        file.Attribute("ID", id.View());
        file.End();
    }
    for (CalloutElementRecord const& element : callout.elements)
        WriteElement(file, element);
    file.End();
    WriteExtensionData(file, callout);
    file.End();
}

}  // namespace KVR::Authoring
