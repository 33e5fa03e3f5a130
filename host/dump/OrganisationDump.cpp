#include "host/dump/OrganisationDump.h"

#include "framework/api/ICamera.h"
#include "framework/api/IGroup.h"
#include "framework/api/ILayer.h"
#include "framework/api/ILod.h"
#include "framework/api/IView.h"
#include "host/dump/DumpContext.h"
#include "host/dump/Members.h"
#include "host/dump/SharedDump.h"

namespace KVR
{

namespace
{

void DumpViewMember(DumpContext const& context, IView const& view, unsigned long long index)
{
    JsonWriter& json = context.json;
    json.BeginObject();
    json.Key("OccurrencePath");
    WriteValue(json, Ask([&] { return view.OccurrencePathAt(index); }));
    json.Key("EntityVisibility");
    WriteValue(json, Ask([&] { return view.EntityVisibilityAt(index); }));
    json.Key("EntityTransform");
    WriteValue(json, Ask([&] { return view.EntityTransformAt(index); }));
    json.Key("EntityStyles");
    WriteValue(json, Ask([&] { return view.EntityStylesAt(index); }));
    json.EndObject();
}

}  // namespace

void DumpLayer(DumpContext const& context, ILayer const& layer)
{
    DumpObject(context, "ILayer", layer);
    DumpVisibility(context, layer);
    Members(context.json, layer)
        .Value("Description", &ILayer::Description)
        .Value("LayerNumber", &ILayer::LayerNumber)
        .Value("GeometryItems", &ILayer::GeometryItems)
        .Value("Styles", &ILayer::Styles);
}

void DumpGroup(DumpContext const& context, IGroup const& group)
{
    DumpObject(context, "IGroup", group);
    Members(context.json, group)
        .Value("Description", &IGroup::Description)
        .Value("GeometryItems", &IGroup::GeometryItems);
}

void DumpLod(DumpContext const& context, ILod const& lod)
{
    DumpObject(context, "ILod", lod);
    Members(context.json, lod).Value("Description", &ILod::Description);
}

void DumpCamera(DumpContext const& context, ICamera const& camera)
{
    auto const* sectionCamera = dynamic_cast<ISectionCamera const*>(&camera);
    DumpObject(context, sectionCamera ? "ISectionCamera" : "ICamera", camera);
    Members(context.json, camera)
        .Value("CameraType", &ICamera::CameraType)
        .Optional("LengthUnit", &ICamera::LengthUnit)
        .Value("CameraPosition", &ICamera::CameraPosition)
        .Value("CameraDirection", &ICamera::CameraDirection)
        .Value("CameraUpDirection", &ICamera::CameraUpDirection)
        .Optional("DistanceToViewPlane", &ICamera::DistanceToViewPlane)
        .Optional("AspectRatio", &ICamera::AspectRatio)
        .Optional("ViewAngle", &ICamera::ViewAngle)
        .Optional("ViewWindowHeightForParallelCamera", &ICamera::ViewWindowHeightForParallelCamera)
        .Optional("IsDepthFieldDefined", &ICamera::IsDepthFieldDefined)
        .Optional("NearPlane", &ICamera::NearPlane)
        .Optional("FarPlane", &ICamera::FarPlane);
    if (sectionCamera)
        Members(context.json, *sectionCamera)
            .Items("SectionPlanes", &ISectionCamera::SectionPlaneCount, &ISectionCamera::SectionPlaneAt)
            .Value("SectioningOperations", &ISectionCamera::SectioningOperations);
}

void DumpView(DumpContext const& context, IView const& view)
{
    DumpObject(context, "IView", view);
    DumpVisibility(context, view);
    Members(context.json, view)
        .Value("IsActive", &IView::IsActive)
        .Optional("LengthUnit", &IView::LengthUnit)
        .List("ViewMembers", &IView::ViewMemberCount, [&](unsigned long long i) { DumpViewMember(context, view, i); })
        .Value("CameraSet", &IView::CameraSet);
}

}  // namespace KVR
