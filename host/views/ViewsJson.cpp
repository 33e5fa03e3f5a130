#include "describe/JsonAnswers.h"
#include "host/views/SceneViews.h"
#include "host/views/Views.h"
#include "output/JsonWriter.h"

namespace KVR
{

namespace
{

// Members of one object, by the names that a dump has for them where it has them, too.
template <class Value>
void Member(JsonWriter& json, std::string_view name, Value const& value)
{
    json.Key(name);
    WriteValue(json, value);
}

void WriteView(JsonWriter& json, SceneView const& view)
{
    json.BeginObject();
    Member(json, "Id", view.id);
    Member(json, "Label", view.label);
    Member(json, "IsVisible", view.isVisible);
    Member(json, "IsActive", view.isActive);
    Member(json, "LengthUnit", view.lengthUnit);
    Member(json, "ViewMemberCount", view.members);
    Member(json, "HiddenMemberCount", view.hiddenMembers);
    Member(json, "CameraSet", view.cameras);
    json.EndObject();
}

void WriteCamera(JsonWriter& json, SceneCamera const& camera)
{
    json.BeginObject();
    Member(json, "Id", camera.id);
    Member(json, "Label", camera.label);
    json.Key("Class");
    json.String(camera.isSectionCamera ? "ISectionCamera" : "ICamera");
    json.Key("Type");
    json.String(camera.type == ICamera::kCameraType_Perspective ? "perspective" : "parallel");
    Member(json, "LengthUnit", camera.lengthUnit);
    Member(json, "CameraPosition", camera.position);
    Member(json, "CameraDirection", camera.direction);
    Member(json, "CameraUpDirection", camera.upDirection);
    if (camera.isSectionCamera)
    {
        json.Key("SectionPlanes");
        json.BeginList();
        for (Plane const& plane : camera.sectionPlanes)
            WriteValue(json, plane);
        json.EndList();
        Member(json, "SectioningOperations", camera.sectioningOperations);
    }
    json.EndObject();
}

}  // namespace

void WriteViewsAsJson(SceneViews const& views, Output& out)
{
    JsonWriter json(out);
    unsigned long long sectionCameras = 0;
    json.BeginObject();
    json.Key("Views");
    json.BeginList();
    for (SceneView const& view : views.views)
        WriteView(json, view);
    json.EndList();
    json.Key("Cameras");
    json.BeginList();
    for (SceneCamera const& camera : views.cameras)
    {
        WriteCamera(json, camera);
        sectionCameras += camera.isSectionCamera ? 1 : 0;
    }
    json.EndList();
    json.Key("Totals");
    json.BeginObject();
    Member(json, "Views", views.views.size());
    Member(json, "Cameras", views.cameras.size());
    Member(json, "SectionCameras", sectionCameras);
    json.EndObject();
    json.EndObject();
    json.EndDocument();
}

}  // namespace KVR
