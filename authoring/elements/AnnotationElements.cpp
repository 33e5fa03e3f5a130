#include "authoring/XmlFile.h"
#include "authoring/elements/ElementWriters.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR::Authoring
{

namespace
{

// A text fragment's flags are written out.
void WriteFlag(XmlFile& file, AttributeName name, std::optional<bool> flag)
{
    if (flag)
        file.Attribute(name, *flag ? "True" : "False");
}

void WriteFragment(XmlFile& file, TextFragmentRecord const& fragment)
{
    file.Begin(Names::ITextFragment);
    file.Attribute(Names::Value, fragment.value.View());
    if (fragment.fontName)
        file.Attribute(Names::FontName, fragment.fontName->View());
    WriteFlag(file, Names::IsBold, fragment.isBold);
    WriteFlag(file, Names::IsItalic, fragment.isItalic);
    if (fragment.height)
        file.Attribute(Names::Height, *fragment.height);
    if (fragment.color)
        WriteColor(file, Names::TextColor, *fragment.color);
    file.End();
}

void WriteText(XmlFile& file, TextRecord const& text)
{
    file.Begin(Names::IText);
    if (text.lengthUnit)
        file.Attribute(Names::LengthUnit, UnitText(*text.lengthUnit));
    if (text.origin)
        WriteXYZ(file, Names::Origin, *text.origin);
    if (text.transform)
    {
        file.Begin(Names::Transform);
        file.Text(TransformText(*text.transform));
        file.End();
    }
    for (std::vector<TextFragmentRecord> const& line : text.lines)
    {
        file.Begin(Names::ITextLine);
        for (TextFragmentRecord const& fragment : line)
            WriteFragment(file, fragment);
        file.End();
    }
    file.End();
}

void WriteElement(XmlFile& file, CalloutElementRecord const& element)
{
    file.Begin(Names::IAnnotationCalloutElement);
    WriteHead(file, element);
    WriteStyleRefs(file, Names::Styles, element.styles);
    file.Begin(Names::ChildSet);
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
    file.Begin(Names::IAnnotationCallout);
    WriteHead(file, callout);
    file.Attribute(Names::Visibility, callout.isVisible ? "1" : "0");
    if (callout.text)
        WriteText(file, *callout.text);
    if (callout.plane)
    {
        file.Begin(Names::AnnotationPlane);
        WriteWorkPlane(file, *callout.plane);
        file.End();
    }
    file.Begin(Names::ChildSet);
    for (UTF8String const& id : callout.childIds)
    {
        file.Begin(Names::Child);
        file.Attribute(Names::ID, id.View());
        file.End();
    }
    for (CalloutElementRecord const& element : callout.elements)
        WriteElement(file, element);
    file.End();
    WriteExtensionData(file, callout);
    file.End();
}

}  // namespace KVR::Authoring
