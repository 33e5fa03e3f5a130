#include <array>
#include <cstdio>

#include "authoring/XmlFile.h"
#include "authoring/XmlText.h"
#include "authoring/elements/ElementWriters.h"
#include "authoring/elements/PropertyText.h"
#include "framework/api/Exception.h"
#include "framework/api/UnitText.h"
#include "framework/xml_util/EnumTexts.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"

namespace KVR::Authoring
{

std::string_view UnitText(UnitTypeEnum unit)
{
    char const* const text = TextOfUnit(unit);
    return text ? std::string_view(text) : std::string_view();
}

std::string TransformText(Matrix3d const& transform)
{
    std::string text;
    for (double const element : transform.Elements())
    {
        if (!text.empty())
            text += ' ';
        text += NumberText(element);
    }
    return text;
}

std::string PathText(OccurrencePath const& path)
{
    std::string text;
    for (UTF8String const& id : path)
    {
        if (id.Find(']') >= 0)
            throw GeneralException("an id in an occurrence path has no bracket");
        text += '[';
        text += id.View();
        text += ']';
    }
    return text;
}

std::string ItemsText(std::span<UTF8String const> ids)
{
    std::string text;
    for (UTF8String const& id : ids)
    {
        if (id.IsEmpty() || id.View().find_first_of(", \t\r\n") != std::string_view::npos)
            throw GeneralException("an id in a list of items has no comma or blank");
        if (!text.empty())
            text += ',';
        text += id.View();
    }
    return text;
}

void WriteHead(XmlFile& file, ObjectRecord const& object)
{
    file.Attribute(Names::ID, object.id.View());
    file.Attribute(Names::Label, object.label.View());
    if (object.versionPersistentId)
        file.Attribute(Names::VersionPersistentId, object.versionPersistentId->View());
}

void WriteChangeKey(XmlFile& file, ObjectRecord const& object)
{
    if (!object.changeKey)
        return;
    file.Begin(Names::ChangeKey);
    file.Text(object.changeKey->View());
    file.End();
}

void WriteExtensionData(XmlFile& file, ObjectRecord const& object)
{
    for (ExtensionDataRecord const& data : object.extensionData)
    {
        file.Begin(Names::ExtensionData);
        file.Attribute(Names::TypeId, data.typeId.View());
        file.Attribute(Names::Content, data.content.View());
        if (data.occurrencePath)
        {
            file.Attribute(Names::Type,
                           TextOfValue(kObjectPathTypeTexts, ExtensionDataContent::kObjectPathType_Occurrence));
            file.Attribute(Names::OccurrencePath, std::string_view(PathText(*data.occurrencePath)));
        }
        if (data.lengthUnit)
            file.Attribute(Names::LengthUnit, UnitText(*data.lengthUnit));
        if (data.transform)
            file.Attribute(Names::Transformation, std::string_view(TransformText(*data.transform)));
        file.End();
    }
}

void WriteUnit(XmlFile& file, UnitRecord const& unit)
{
    if (!unit.length && !unit.displayLength && !unit.displayAngle)
        return;
    file.Begin(Names::Unit);
    if (unit.length)
        file.Attribute(Names::LengthUnit, UnitText(*unit.length));
    if (unit.displayAngle)
        file.Attribute(Names::DisplayAngleUnit, UnitText(*unit.displayAngle));
    if (unit.displayLength)
        file.Attribute(Names::DisplayLengthUnit, UnitText(*unit.displayLength));
    file.End();
}

void WriteStyleRefs(XmlFile& file, ElementName name, std::span<UTF8String const> styles)
{
    if (styles.empty())
        return;
    file.Begin(name);
    for (UTF8String const& style : styles)
    {
        file.Begin(Names::StyleRef);
        file.Attribute(Names::ID, style.View());
        file.End();
    }
    file.End();
}

void WriteXYZ(XmlFile& file, ElementName name, XYZ const& value)
{
    file.Begin(name);
    file.Attribute(Names::X, value[0]);
    file.Attribute(Names::Y, value[1]);
    file.Attribute(Names::Z, value[2]);
    file.End();
}

void WriteColor(XmlFile& file, ElementName name, ColorRecord const& color)
{
    file.Begin(name);
    file.Attribute(Names::FractionRed, color.red);
    file.Attribute(Names::FractionGreen, color.green);
    file.Attribute(Names::FractionBlue, color.blue);
    file.Attribute(Names::FractionAlpha, color.alpha);
    file.End();
}

namespace
{

void WriteVectorText(XmlFile& file, ElementName name, std::optional<XYZ> const& value)
{
    if (!value)
        return;
    file.Begin(name);
    file.Text(NumberText((*value)[0]) + ',' + NumberText((*value)[1]) + ',' + NumberText((*value)[2]));
    file.End();
}

void WriteViewData(XmlFile& file, std::optional<XYZ> const& up, std::optional<XYZ> const& front)
{
    if (!up && !front)
        return;
    file.Begin(Names::ViewData);
    WriteVectorText(file, Names::UpVector, up);
    WriteVectorText(file, Names::FrontVector, front);
    file.End();
}

// File properties have names of the caller's, too.
void WriteText(XmlFile& file, std::string_view name, std::string_view text)
{
    file.Begin(name);
    file.Text(text);
    file.End();
}

}  // namespace

void WriteFileProperties(XmlFile& file, FilePropertiesRecord const& properties)
{
    file.Begin(Names::FileProperties);
    for (auto const& [name, text] : properties.texts)
        WriteText(file, name, text.View());
    if (properties.creationDate)
        WriteText(file, Names::CreationDate, TimeText(*properties.creationDate));
    if (properties.massUnit)
        WriteText(file, Names::MassUnit, UnitText(*properties.massUnit));
    if (properties.timeUnit)
        WriteText(file, Names::TimeUnit, UnitText(*properties.timeUnit));
    WriteViewData(file, properties.upVector, properties.frontVector);
    if (!properties.custom.empty())
    {
        file.Begin(Names::CustomProperties);
        for (PropertyValue const& property : properties.custom)
        {
            ValueText const value = ValueText::Of(property);
            file.Begin(Names::CustomProperty);
            file.Attribute(Names::Key, UTF8String(property.Name()).View());
            file.Attribute(Names::Type, value.type);
            file.Attribute(Names::Value, std::string_view(value.value));
            file.End();
        }
        file.End();
    }
    file.End();
}

namespace
{

void WriteCustomData(XmlFile& file, UniverseRecord::CustomData const& data)
{
    file.Begin(Names::CustomDataItem);
    file.Attribute(Names::Key, data.key.View());
    if (data.text)
    {
        file.Attribute(Names::Type, "5");
        file.Attribute(Names::Value, data.text->View());
    }
    else if (data.blob)
    {
        file.Attribute(Names::Type, "8");
        file.Attribute(Names::Path, data.blob->first.View());
        file.Attribute(Names::BlobBufferSize, static_cast<long long>(data.blob->second));
    }
    else if (data.ids)
    {
        file.Attribute(Names::Type, "9");
        for (UTF8String const& id : *data.ids)
        {
            file.Begin(Names::ID);
            file.Attribute(Names::Value, id.View());
            file.End();
        }
    }
    else
        file.Attribute(Names::Type, "0");
    file.End();
}

}  // namespace

void WriteFileChild(XmlFile& file, FileChild const& child)
{
    // In the order of the enumerators.
    constexpr ElementName kTypes[] = {Names::IAssembly,
                                      Names::IPart,
                                      Names::IAnnotationCallout,
                                      Names::IBrep,
                                      Names::IPolygonMesh,
                                      Names::ICurve,
                                      Names::IPoint,
                                      Names::IPointCloud,
                                      Names::ISketch,
                                      Names::IGeometricSet,
                                      Names::IExtensionGeometry,
                                      Names::IWorkAxis,
                                      Names::IWorkPlane,
                                      Names::IWorkPoint};
    static_assert(std::size(kTypes) == static_cast<std::size_t>(FileChildType::kWorkPoint) + 1);
    file.Begin(Names::Child);
    file.Attribute(Names::ID, child.id.View());
    file.Attribute(Names::Type, std::string_view(kTypes[static_cast<std::size_t>(child.type)]));
    file.End();
}

void WriteUniverse(XmlFile& file, UniverseRecord const& universe)
{
    file.Begin(Names::IUniverse);
    WriteViewData(file, universe.upVector, universe.frontVector);
    if (universe.curveColor)
        WriteColor(file, Names::DefaultCurveColor, *universe.curveColor);
    if (universe.surfaceColor)
        WriteColor(file, Names::DefaultSurfaceColor, *universe.surfaceColor);
    if (!universe.customData.empty())
    {
        file.Begin(Names::CustomData);
        for (UniverseRecord::CustomData const& data : universe.customData)
            WriteCustomData(file, data);
        file.End();
    }
    file.End();
}

void WriteCrossLevel(XmlFile& file, CrossLevelRecord const& crossLevel)
{
    if (crossLevel.visibilities.empty() && crossLevel.styles.empty() && crossLevel.transforms.empty())
        return;
    file.Begin(Names::CrossLevelAttributes);
    file.Begin(Names::Visibilities);
    for (auto const& [path, isVisible] : crossLevel.visibilities)
    {
        file.Begin(Names::EntityVisibility);
        file.Attribute(Names::Path, std::string_view(PathText(path)));
        file.Attribute(Names::Visibility, isVisible ? "1" : "0");
        file.End();
    }
    file.End();
    file.Begin(Names::Styles);
    for (auto const& [path, styles] : crossLevel.styles)
    {
        file.Begin(Names::EntityStyles);
        file.Attribute(Names::Path, std::string_view(PathText(path)));
        WriteStyleRefs(file, Names::Styles, styles);
        file.End();
    }
    file.End();
    file.Begin(Names::Transformations);
    for (auto const& [path, transform] : crossLevel.transforms)
    {
        file.Begin(Names::EntityTransformation);
        file.Attribute(Names::Path, std::string_view(PathText(path)));
        file.Attribute(Names::Transformation, std::string_view(TransformText(transform)));
        file.End();
    }
    file.End();
    file.End();
}

void WriteInstance(XmlFile& file, InstanceRecord const& instance)
{
    file.Begin(Names::IInstance);
    WriteHead(file, instance);
    file.Attribute(Names::Visibility, instance.isVisible ? "1" : "0");
    file.Attribute(Names::NetVisibility, instance.isVisible ? "1" : "0");
    file.Begin(Names::Child);
    file.Attribute(Names::ID, instance.targetId.View());
    if (!instance.transform.IsIdentity())
        file.Attribute(Names::Transformation, std::string_view(TransformText(instance.transform)));
    file.End();
    WriteUnit(file, instance.unit);
    WriteStyleRefs(file, Names::Styles, instance.styles);
    WriteStyleRefs(file, Names::NetStyles, instance.netStyles);
    WriteChangeKey(file, instance);
    WriteExtensionData(file, instance);
    file.End();
}

}  // namespace KVR::Authoring
