#include <array>
#include <cstdio>

#include "authoring/XmlFile.h"
#include "authoring/XmlText.h"
#include "authoring/elements/ElementWriters.h"
#include "authoring/elements/PropertyText.h"
#include "framework/api/Exception.h"
#include "framework/xml_util/XMLStrUtil.h"

namespace KVR::Authoring
{

std::string_view UnitText(UnitTypeEnum unit)
{
    return XMLStrUtil::UnitTypeToString(unit);
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
    file.Attribute("ID", object.id.View());
    file.Attribute("Label", object.label.View());
    if (object.versionPersistentId)
        file.Attribute("VersionPersistentId", object.versionPersistentId->View());
}

void WriteChangeKey(XmlFile& file, ObjectRecord const& object)
{
    if (!object.changeKey)
        return;
    file.Begin("ChangeKey");
    file.Text(object.changeKey->View());
    file.End();
}

void WriteExtensionData(XmlFile& file, ObjectRecord const& object)
{
    for (ExtensionDataRecord const& data : object.extensionData)
    {
        file.Begin("ExtensionData");
        file.Attribute("TypeId", data.typeId.View());
        file.Attribute("Content", data.content.View());
        if (data.occurrencePath)
        {
            file.Attribute("Type", "kObjectPathTypeEnum_OccurancePath");
            file.Attribute("OccurrencePath", std::string_view(PathText(*data.occurrencePath)));
        }
        if (data.lengthUnit)
            file.Attribute("LengthUnit", UnitText(*data.lengthUnit));
        if (data.transform)
            file.Attribute("Transformation", std::string_view(TransformText(*data.transform)));
        file.End();
    }
}

void WriteUnit(XmlFile& file, UnitRecord const& unit)
{
    if (!unit.length && !unit.displayLength && !unit.displayAngle)
        return;
    file.Begin("Unit");
    if (unit.length)
        file.Attribute("LengthUnit", UnitText(*unit.length));
    if (unit.displayAngle)
        file.Attribute("DisplayAngleUnit", UnitText(*unit.displayAngle));
    if (unit.displayLength)
        file.Attribute("DisplayLengthUnit", UnitText(*unit.displayLength));
    file.End();
}

void WriteStyleRefs(XmlFile& file, std::string_view name, std::span<UTF8String const> styles)
{
    if (styles.empty())
        return;
    file.Begin(name);
    for (UTF8String const& style : styles)
    {
        file.Begin("StyleRef");
        file.Attribute("ID", style.View());
        file.End();
    }
    file.End();
}

void WriteXYZ(XmlFile& file, std::string_view name, XYZ const& value)
{
    file.Begin(name);
    file.Attribute("X", value[0]);
    file.Attribute("Y", value[1]);
    file.Attribute("Z", value[2]);
    file.End();
}

void WriteColor(XmlFile& file, std::string_view name, ColorRecord const& color)
{
    file.Begin(name);
    file.Attribute("FractionRed", color.red);
    file.Attribute("FractionGreen", color.green);
    file.Attribute("FractionBlue", color.blue);
    file.Attribute("FractionAlpha", color.alpha);
    file.End();
}

namespace
{

void WriteVectorText(XmlFile& file, std::string_view name, std::optional<XYZ> const& value)
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
    file.Begin("ViewData");
    WriteVectorText(file, "UpVector", up);
    WriteVectorText(file, "FrontVector", front);
    file.End();
}

void WriteText(XmlFile& file, std::string_view name, std::string_view text)
{
    file.Begin(name);
    file.Text(text);
    file.End();
}

}  // namespace

void WriteFileProperties(XmlFile& file, FilePropertiesRecord const& properties)
{
    file.Begin("FileProperties");
    for (auto const& [name, text] : properties.texts)
        WriteText(file, name, text.View());
    if (properties.creationDate)
        WriteText(file, "CreationDate", TimeText(*properties.creationDate));
    if (properties.massUnit)
        WriteText(file, "MassUnit", UnitText(*properties.massUnit));
    if (properties.timeUnit)
        WriteText(file, "TimeUnit", UnitText(*properties.timeUnit));
    WriteViewData(file, properties.upVector, properties.frontVector);
    if (!properties.custom.empty())
    {
        file.Begin("CustomProperties");
        for (PropertyValue const& property : properties.custom)
        {
            ValueText const value = ValueText::Of(property);
            file.Begin("CustomProperty");
            file.Attribute("Key", UTF8String(property.Name()).View());
            file.Attribute("Type", value.type);
            file.Attribute("Value", std::string_view(value.value));
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
    file.Begin("CustomDataItem");
    file.Attribute("Key", data.key.View());
    if (data.text)
    {
        file.Attribute("Type", "5");
        file.Attribute("Value", data.text->View());
    }
    else if (data.blob)
    {
        file.Attribute("Type", "8");
        file.Attribute("Path", data.blob->first.View());
        file.Attribute("BlobBufferSize", static_cast<long long>(data.blob->second));
    }
    else if (data.ids)
    {
        file.Attribute("Type", "9");
        for (UTF8String const& id : *data.ids)
        {
            file.Begin("ID");
            file.Attribute("Value", id.View());
            file.End();
        }
    }
    else
        file.Attribute("Type", "0");
    file.End();
}

}  // namespace

void WriteUniverse(XmlFile& file, UniverseRecord const& universe)
{
    file.Begin("IUniverse");
    WriteViewData(file, universe.upVector, universe.frontVector);
    if (universe.curveColor)
        WriteColor(file, "DefaultCurveColor", *universe.curveColor);
    if (universe.surfaceColor)
        WriteColor(file, "DefaultSurfaceColor", *universe.surfaceColor);
    if (!universe.customData.empty())
    {
        file.Begin("CustomData");
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
    file.Begin("CrossLevelAttributes");
    file.Begin("Visibilities");
    for (auto const& [path, isVisible] : crossLevel.visibilities)
    {
        file.Begin("EntityVisibility");
        file.Attribute("Path", std::string_view(PathText(path)));
        file.Attribute("Visibility", isVisible ? "1" : "0");
        file.End();
    }
    file.End();
    file.Begin("Styles");
    for (auto const& [path, styles] : crossLevel.styles)
    {
        file.Begin("EntityStyles");
        file.Attribute("Path", std::string_view(PathText(path)));
        WriteStyleRefs(file, "Styles", styles);
        file.End();
    }
    file.End();
    file.Begin("Transformations");
    for (auto const& [path, transform] : crossLevel.transforms)
    {
        file.Begin("EntityTransformation");
        file.Attribute("Path", std::string_view(PathText(path)));
        file.Attribute("Transformation", std::string_view(TransformText(transform)));
        file.End();
    }
    file.End();
    file.End();
}

void WriteInstance(XmlFile& file, InstanceRecord const& instance)
{
    file.Begin("IInstance");
    WriteHead(file, instance);
    file.Attribute("Visibility", instance.isVisible ? "1" : "0");
    file.Attribute("NetVisibility", instance.isVisible ? "1" : "0");
    file.Begin("Child");
    file.Attribute("ID", instance.targetId.View());
    if (!instance.transform.IsIdentity())
        file.Attribute("Transformation", std::string_view(TransformText(instance.transform)));
    file.End();
    WriteUnit(file, instance.unit);
    WriteStyleRefs(file, "Styles", instance.styles);
    WriteStyleRefs(file, "NetStyles", instance.netStyles);
    WriteChangeKey(file, instance);
    WriteExtensionData(file, instance);
    file.End();
}

}  // namespace KVR::Authoring
