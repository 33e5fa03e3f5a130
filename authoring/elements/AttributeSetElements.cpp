#include "authoring/XmlFile.h"
#include "authoring/elements/ElementWriters.h"
#include "framework/xml_util/EnumTexts.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR::Authoring
{

namespace
{

template <class Value>
void WriteOptional(XmlFile& file, AttributeName name, std::optional<Value> const& value)
{
    if (value)
        file.Attribute(name, *value);
}

void WriteOptional(XmlFile& file, AttributeName name, std::optional<UTF8String> const& value)
{
    if (value)
        file.Attribute(name, value->View());
}

template <class First, class Second>
void WritePair(XmlFile& file, ElementName name, AttributeName first, AttributeName second,
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
    file.Begin(Names::IMaterialTexture);
    WriteHead(file, texture);
    WriteOptional(file, Names::TextureFileReference, texture.fileReference);
    WriteOptional(file, Names::RotateAngle, texture.rotation);
    WriteOptional(file, Names::RepeatU, texture.repeatU);
    WriteOptional(file, Names::RepeatV, texture.repeatV);
    WriteOptional(file, Names::TempFilePath, texture.imagePath);
    WriteOptional(file, Names::EmbeddedTextureImageSize, texture.imageSize);
    WriteOptional(file, Names::EmbeddedTextureImageType, texture.imageType);
    WritePair(file, Names::TextureDimensions, Names::Width, Names::Height, texture.dimensions);
    WritePair(file, Names::TextureOffset, Names::X, Names::Y, texture.offset);
    WritePair(file, Names::TextureScale, Names::X, Names::Y, texture.scale);
    WriteExtensionData(file, texture);
    file.End();
}

void BeginColor(XmlFile& file, ElementName name, ColorRecord const& color)
{
    file.Begin(name);
    file.Attribute(Names::FractionRed, color.red);
    file.Attribute(Names::FractionGreen, color.green);
    file.Attribute(Names::FractionBlue, color.blue);
    file.Attribute(Names::FractionAlpha, color.alpha);
}

void WriteTextureRef(XmlFile& file, ElementName name, std::optional<UTF8String> const& texture)
{
    if (!texture)
        return;
    file.Begin(name);
    file.Attribute(Names::TextureId, texture->View());
    file.End();
}

void WriteStyle(XmlFile& file, StyleRecord const& style)
{
    file.Begin(Names::IRenderStyle);
    WriteHead(file, style);
    if (style.pointMarker)
        file.Attribute(Names::PointStyleMarkerType, WholeText(kPointStyleMarkerTypeTexts, *style.pointMarker));
    WriteOptional(file, Names::PointStyleMarkerSize, style.pointSize);
    if (style.curveFont)
        file.Attribute(Names::CurveStyleFont, WholeText(kCurveStyleFontTypeTexts, *style.curveFont));
    WriteOptional(file, Names::CurveStyleWidth, style.curveWidth);
    WriteChangeKey(file, style);
    if (style.diffuse)
    {
        BeginColor(file, Names::DiffuseColor, *style.diffuse);
        WriteOptional(file, Names::DiffuseFactor, style.diffuseFactor);
        WriteOptional(file, Names::Shininess, style.shininess);
        WriteOptional(file, Names::Reflection, style.reflection);
        WriteOptional(file, Names::Transparency, style.transparency);
        file.End();
    }
    if (style.ambient)
        WriteColor(file, Names::AmbientColor, *style.ambient);
    if (style.emission)
        WriteColor(file, Names::EmissionColor, *style.emission);
    if (style.specular)
        WriteColor(file, Names::SpecularColor, *style.specular);
    WriteTextureRef(file, Names::DiffuseTexture, style.diffuseTexture);
    WriteTextureRef(file, Names::BumpMap, style.bumpMap);
    if (style.library)
    {
        file.Begin(Names::VitreolStyleInfo);
        file.Attribute(Names::VitreolLibraryId, style.library->libraryId.View());
        file.Attribute(Names::VitreolAssetDefinitionId, style.library->definitionId.View());
        file.Attribute(Names::VitreolAssetInstanceVersionGUID, style.library->versionGuid.View());
        file.End();
    }
    WriteExtensionData(file, style);
    file.End();
}

void WriteItems(XmlFile& file, std::vector<UTF8String> const& ids)
{
    file.Begin(Names::GeometryItems);
    file.Attribute(Names::Items, std::string_view(ItemsText(ids)));
    file.End();
}

void WriteLayer(XmlFile& file, LayerRecord const& layer)
{
    file.Begin(Names::ILayer);
    WriteHead(file, layer);
    file.Begin(Names::LayerInfo);
    file.Attribute(Names::ID, layer.number);
    file.Attribute(Names::Description, layer.description.View());
    file.Attribute(Names::Visibility, layer.isVisible ? "True" : "False");
    file.End();
    WriteItems(file, layer.itemIds);
    WriteStyleRefs(file, Names::Styles, layer.styles);
    WriteChangeKey(file, layer);
    WriteExtensionData(file, layer);
    file.End();
}

void WriteGroup(XmlFile& file, GroupRecord const& group)
{
    file.Begin(Names::IGroup);
    WriteHead(file, group);
    WriteItems(file, group.itemIds);
    WriteExtensionData(file, group);
    file.End();
}

void WriteLevelOfDetail(XmlFile& file, LevelOfDetailRecord const& level)
{
    file.Begin(Names::ILod);
    WriteHead(file, level);
    file.Attribute(Names::Description, level.description.View());
    file.End();
}

void WritePlaneData(XmlFile& file, PlaneRecord const& plane)
{
    file.Begin(Names::PlaneData);
    WriteXYZ(file, Names::Origin, plane.origin);
    WriteXYZ(file, Names::Normal, plane.normal);
    if (plane.reference)
        WriteXYZ(file, Names::Reference, *plane.reference);
    file.End();
}

void WriteClippingPlane(XmlFile& file, ElementName name, std::optional<PlaneRecord> const& plane)
{
    if (!plane)
        return;
    file.Begin(name);
    WritePlaneData(file, *plane);
    file.End();
}

void WriteCamera(XmlFile& file, CameraRecord const& camera)
{
    file.Begin(Names::ICamera);
    WriteHead(file, camera);
    file.Attribute(Names::Type, TextOfValue(kCameraTypeTexts, camera.isPerspective ? ICamera::kCameraType_Perspective
                                                                                   : ICamera::kCameraType_Parallel));
    WriteOptional(file, Names::DistanceToViewPlane, camera.distanceToViewPlane);
    WriteOptional(file, Names::AspectRatio, camera.aspectRatio);
    WriteOptional(file, Names::ViewAngle, camera.viewAngle);
    WriteOptional(file, Names::ViewWindowHeightForParallelCamera, camera.windowHeight);
    if (camera.nearPlane || camera.farPlane)
        file.Attribute(Names::IsDepthFieldDefined, "1");
    WriteUnit(file, {.length = camera.lengthUnit, .displayLength = {}, .displayAngle = {}});
    WriteXYZ(file, Names::CameraPosition, camera.position);
    WriteXYZ(file, Names::CameraDirection, camera.direction);
    WriteXYZ(file, Names::CameraUpDirection, camera.up);
    WriteClippingPlane(file, Names::NearPlane, camera.nearPlane);
    WriteClippingPlane(file, Names::FarPlane, camera.farPlane);
    if (!camera.sectionPlanes.empty() || !camera.sectioningOperations.IsEmpty())
    {
        file.Begin(Names::ISectionCamera);
        for (PlaneRecord const& plane : camera.sectionPlanes)
            WritePlaneData(file, plane);
        if (!camera.sectioningOperations.IsEmpty())
        {
            file.Begin(Names::SectioningOperations);
            file.Text(camera.sectioningOperations.View());
            file.End();
        }
        file.End();
    }
    file.End();
}

void WriteMember(XmlFile& file, ViewRecord::Member const& member)
{
    file.Begin(Names::ViewMemberChild);
    file.Begin(Names::OccurrencePath);
    file.Attribute(Names::Path, std::string_view(PathText(member.path)));
    file.End();
    file.Begin(Names::EntityVisibility);
    file.Attribute(Names::Visibility, member.isVisible ? "1" : "0");
    file.End();
    WriteStyleRefs(file, Names::Styles, member.styles);
    if (member.transform)
    {
        file.Begin(Names::Transform);
        file.Text(TransformText(*member.transform));
        file.End();
    }
    file.End();
}

void WriteView(XmlFile& file, ViewRecord const& view)
{
    file.Begin(Names::IView);
    WriteHead(file, view);
    file.Attribute(Names::Visibility, view.isVisible ? "1" : "0");
    file.Attribute(Names::IsActive, view.isActive ? "1" : "0");
    WriteUnit(file, {.length = view.lengthUnit, .displayLength = {}, .displayAngle = {}});
    if (!view.members.empty())
    {
        file.Begin(Names::ViewMember);
        for (ViewRecord::Member const& member : view.members)
            WriteMember(file, member);
        file.End();
    }
    if (!view.cameraIds.empty())
    {
        file.Begin(Names::CameraSet);
        for (UTF8String const& id : view.cameraIds)
        {
            file.Begin(Names::CameraRef);
            file.Attribute(Names::ID, id.View());
            file.End();
        }
        file.End();
    }
    file.End();
}

template <class Record>
void WriteSet(XmlFile& file, ElementName name, std::vector<Record> const& records,
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
    file.Begin(Names::AttributeSet);
    WriteSet(file, Names::TextureSet, set.textures, &WriteTexture);
    WriteSet(file, Names::StyleSet, set.styles, &WriteStyle);
    WriteSet(file, Names::LayerSet, set.layers, &WriteLayer);
    WriteSet(file, Names::GroupSet, set.groups, &WriteGroup);
    WriteSet(file, Names::LodSet, set.levelsOfDetail, &WriteLevelOfDetail);
    WriteSet(file, Names::CameraSet, set.cameras, &WriteCamera);
    WriteSet(file, Names::ViewSet, set.views, &WriteView);
    file.End();
}

}  // namespace KVR::Authoring
