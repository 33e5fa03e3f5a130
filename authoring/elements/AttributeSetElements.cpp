#include "authoring/XmlFile.h"
#include "authoring/elements/ElementWriters.h"

namespace KVR::Authoring
{

namespace
{

template <class Value>
void WriteOptional(XmlFile& file, std::string_view name, std::optional<Value> const& value)
{
    if (value)
        file.Attribute(name, *value);
}

void WriteOptional(XmlFile& file, std::string_view name, std::optional<UTF8String> const& value)
{
    if (value)
        file.Attribute(name, value->View());
}

template <class First, class Second>
void WritePair(XmlFile& file, std::string_view name, std::string_view first, std::string_view second,
               std::optional<std::pair<First, Second>> const& value)
{
    if (!value)
        return;
    file.Begin(name);
    file.Attribute(first, value->first);
    file.Attribute(second, value->second);
    file.End();
}

void WriteTexture(XmlFile& file, TextureRecord const& texture)
{
    file.Begin("IMaterialTexture");
    WriteHead(file, texture);
    WriteOptional(file, "TextureFileReference", texture.fileReference);
    WriteOptional(file, "RotateAngle", texture.rotation);
    WriteOptional(file, "RepeatU", texture.repeatU);
    WriteOptional(file, "RepeatV", texture.repeatV);
    WriteOptional(file, "TempFilePath", texture.imagePath);
    WriteOptional(file, "EmbeddedTextureImageSize", texture.imageSize);
    WriteOptional(file, "EmbeddedTextureImageType", texture.imageType);
    WritePair(file, "TextureDimensions", "Width", "Height", texture.dimensions);
    WritePair(file, "TextureOffset", "X", "Y", texture.offset);
    WritePair(file, "TextureScale", "X", "Y", texture.scale);
    WriteExtensionData(file, texture);
    file.End();
}

void BeginColor(XmlFile& file, std::string_view name, ColorRecord const& color)
{
    file.Begin(name);
    file.Attribute("FractionRed", color.red);
    file.Attribute("FractionGreen", color.green);
    file.Attribute("FractionBlue", color.blue);
    file.Attribute("FractionAlpha", color.alpha);
}

void WriteTextureRef(XmlFile& file, std::string_view name, std::optional<UTF8String> const& texture)
{
    if (!texture)
        return;
    file.Begin(name);
    file.Attribute("TextureId", texture->View());
    file.End();
}

void WriteStyle(XmlFile& file, StyleRecord const& style)
{
    file.Begin("IRenderStyle");
    WriteHead(file, style);
    if (style.pointMarker)
        file.Attribute("PointStyleMarkerType",
                       std::string_view("kPointStyleMarkerType_" + std::string(style.pointMarker->View())));
    WriteOptional(file, "PointStyleMarkerSize", style.pointSize);
    if (style.curveFont)
        file.Attribute("CurveStyleFont",
                       std::string_view("kCurveStyleFontType_" + std::string(style.curveFont->View())));
    WriteOptional(file, "CurveStyleWidth", style.curveWidth);
    WriteChangeKey(file, style);
    if (style.diffuse)
    {
        BeginColor(file, "DiffuseColor", *style.diffuse);
        WriteOptional(file, "DiffuseFactor", style.diffuseFactor);
        WriteOptional(file, "Shininess", style.shininess);
        WriteOptional(file, "Reflection", style.reflection);
        WriteOptional(file, "Transparency", style.transparency);
        file.End();
    }
    if (style.ambient)
        WriteColor(file, "AmbientColor", *style.ambient);
    if (style.emission)
        WriteColor(file, "EmissionColor", *style.emission);
    if (style.specular)
        WriteColor(file, "SpecularColor", *style.specular);
    WriteTextureRef(file, "DiffuseTexture", style.diffuseTexture);
    WriteTextureRef(file, "BumpMap", style.bumpMap);
    if (style.library)
    {
        file.Begin("VitreolStyleInfo");
        file.Attribute("VitreolLibraryId", style.library->libraryId.View());
        file.Attribute("VitreolAssetDefinitionId", style.library->definitionId.View());
        file.Attribute("VitreolAssetInstanceVersionGUID", style.library->versionGuid.View());
        file.End();
    }
    WriteExtensionData(file, style);
    file.End();
}

void WriteItems(XmlFile& file, std::vector<UTF8String> const& ids)
{
    file.Begin("GeometryItems");
    file.Attribute("Items", std::string_view(ItemsText(ids)));
    file.End();
}

void WriteLayer(XmlFile& file, LayerRecord const& layer)
{
    file.Begin("ILayer");
    WriteHead(file, layer);
    file.Begin("LayerInfo");
    file.Attribute("ID", layer.number);
    file.Attribute("Description", layer.description.View());
    file.Attribute("Visibility", layer.isVisible ? "True" : "False");
    file.End();
    WriteItems(file, layer.itemIds);
    WriteStyleRefs(file, "Styles", layer.styles);
    WriteChangeKey(file, layer);
    WriteExtensionData(file, layer);
    file.End();
}

void WriteGroup(XmlFile& file, GroupRecord const& group)
{
    file.Begin("IGroup");
    WriteHead(file, group);
    WriteItems(file, group.itemIds);
    WriteExtensionData(file, group);
    file.End();
}

void WriteLevelOfDetail(XmlFile& file, LevelOfDetailRecord const& level)
{
    file.Begin("ILod");
    WriteHead(file, level);
    file.Attribute("Description", level.description.View());
    file.End();
}

void WritePlaneData(XmlFile& file, PlaneRecord const& plane)
{
    file.Begin("PlaneData");
    WriteXYZ(file, "Origin", plane.origin);
    WriteXYZ(file, "Normal", plane.normal);
    if (plane.reference)
        WriteXYZ(file, "Reference", *plane.reference);
    file.End();
}

void WriteClippingPlane(XmlFile& file, std::string_view name, std::optional<PlaneRecord> const& plane)
{
    if (!plane)
        return;
    file.Begin(name);
    WritePlaneData(file, *plane);
    file.End();
}

void WriteCamera(XmlFile& file, CameraRecord const& camera)
{
    file.Begin("ICamera");
    WriteHead(file, camera);
    file.Attribute("Type", camera.isPerspective ? "kCameraType_Perspective" : "kCameraType_Parallel");
    WriteOptional(file, "DistanceToViewPlane", camera.distanceToViewPlane);
    WriteOptional(file, "AspectRatio", camera.aspectRatio);
    WriteOptional(file, "ViewAngle", camera.viewAngle);
    WriteOptional(file, "ViewWindowHeightForParallelCamera", camera.windowHeight);
    if (camera.nearPlane || camera.farPlane)
        file.Attribute("IsDepthFieldDefined", "1");
    WriteUnit(file, {.length = camera.lengthUnit, .displayLength = {}, .displayAngle = {}});
    WriteXYZ(file, "CameraPosition", camera.position);
    WriteXYZ(file, "CameraDirection", camera.direction);
    WriteXYZ(file, "CameraUpDirection", camera.up);
    WriteClippingPlane(file, "NearPlane", camera.nearPlane);
    WriteClippingPlane(file, "FarPlane", camera.farPlane);
    if (!camera.sectionPlanes.empty() || !camera.sectioningOperations.IsEmpty())
    {
        file.Begin("ISectionCamera");
        for (PlaneRecord const& plane : camera.sectionPlanes)
            WritePlaneData(file, plane);
        if (!camera.sectioningOperations.IsEmpty())
        {
            file.Begin("SectioningOperations");
            file.Text(camera.sectioningOperations.View());
            file.End();
        }
        file.End();
    }
    file.End();
}

void WriteMember(XmlFile& file, ViewRecord::Member const& member)
{
    file.Begin("ViewMemberChild");
    file.Begin("OccurrencePath");
    file.Attribute("Path", std::string_view(PathText(member.path)));
    file.End();
    file.Begin("EntityVisibility");
    file.Attribute("Visibility", member.isVisible ? "1" : "0");
    file.End();
    WriteStyleRefs(file, "Styles", member.styles);
    if (member.transform)
    {
        file.Begin("Transform");
        file.Text(TransformText(*member.transform));
        file.End();
    }
    file.End();
}

void WriteView(XmlFile& file, ViewRecord const& view)
{
    file.Begin("IView");
    WriteHead(file, view);
    file.Attribute("Visibility", view.isVisible ? "1" : "0");
    file.Attribute("IsActive", view.isActive ? "1" : "0");
    WriteUnit(file, {.length = view.lengthUnit, .displayLength = {}, .displayAngle = {}});
    if (!view.members.empty())
    {
        file.Begin("ViewMember");
        for (ViewRecord::Member const& member : view.members)
            WriteMember(file, member);
        file.End();
    }
    if (!view.cameraIds.empty())
    {
        file.Begin("CameraSet");
        for (UTF8String const& id : view.cameraIds)
        {
            file.Begin("CameraRef");
            file.Attribute("ID", id.View());
            file.End();
        }
        file.End();
    }
    file.End();
}

template <class Record>
void WriteSet(XmlFile& file, std::string_view name, std::vector<Record> const& records,
              void (*write)(XmlFile&, Record const&))
{
    if (records.empty())
        return;
    file.Begin(name);
    for (Record const& record : records)
        write(file, record);
    file.End();
}

}  // namespace

void WriteAttributeSet(XmlFile& file, AttributeSetRecord const& set)
{
    file.Begin("AttributeSet");
    WriteSet(file, "TextureSet", set.textures, &WriteTexture);
    WriteSet(file, "StyleSet", set.styles, &WriteStyle);
    WriteSet(file, "LayerSet", set.layers, &WriteLayer);
    WriteSet(file, "GroupSet", set.groups, &WriteGroup);
    WriteSet(file, "LodSet", set.levelsOfDetail, &WriteLevelOfDetail);
    WriteSet(file, "CameraSet", set.cameras, &WriteCamera);
    WriteSet(file, "ViewSet", set.views, &WriteView);
    file.End();
}

}  // namespace KVR::Authoring
