#include <algorithm>
#include <cmath>

#include "exchange/export/GltfDocument.h"
#include "exchange/export/GltfPlace.h"
#include "framework/api/LengthUnits.h"
#include "framework/api/kvr_api.h"
#include "scene/SceneView.h"

// Cameras and views of a glTF document.
namespace KVR
{

namespace
{

using tinygltf::Value;
using Triple = std::array<double, 3>;

// Of a camera that says nothing of it: an angle in radians, and how near and far it sees in metres.
constexpr double kViewAngle = 0.8;
constexpr double kNearest = 1e-4;
constexpr double kFarthest = 1e4;
// Beyond this a camera stands nowhere.
constexpr double kFurthest = 1e30;

double Length(Triple const& v)
{
    return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

Triple Cross(Triple const& a, Triple const& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

bool Normalize(Triple& v)
{
    double const length = Length(v);
    if (!(length > 0.0) || !std::isfinite(length))
        return false;
    for (double& x : v)
        x /= length;
    return true;
}

Triple TripleOf(UnitVector const& v)
{
    return {v[0], v[1], v[2]};
}

// Where a camera stands, which looks along its negative z with y up.
Matrix PlaceOf(ICamera const& camera, double metres)
{
    Triple back = TripleOf(camera.CameraDirection());
    for (double& x : back)
        x = -x;
    if (!Normalize(back))
        back = {0.0, 0.0, 1.0};
    Triple right = Cross(TripleOf(camera.CameraUpDirection()), back);
    if (!Normalize(right))
    {
        right = Cross(std::abs(back[2]) < 0.9 ? Triple{0.0, 0.0, 1.0} : Triple{0.0, 1.0, 0.0}, back);
        Normalize(right);
    }
    Triple const up = Cross(back, right);
    Position const position = camera.CameraPosition();
    return {right[0], up[0], back[0], position.X() * metres, right[1], up[1], back[1], position.Y() * metres,
            right[2], up[2], back[2], position.Z() * metres, 0,        0,     0,       1};
}

double PositiveOr(IsValueSpecifiedEnum (ICamera::*get)(double&) const, ICamera const& camera, double otherwise)
{
    double value = 0.0;
    return (camera.*get)(value) == kIsValueSpecified_Yes && value > 0.0 && std::isfinite(value) ? value : otherwise;
}

// How far away a plane is along the direction of sight; what the camera does not say, or is behind it, is as given.
double DepthOr(IsValueSpecifiedEnum (ICamera::*get)(Plane&) const, ICamera const& camera, double otherwise)
{
    Plane plane;
    Triple ahead = TripleOf(camera.CameraDirection());
    if ((camera.*get)(plane) != kIsValueSpecified_Yes || !Normalize(ahead))
        return otherwise;
    Position const eye = camera.CameraPosition();
    Position const origin = plane.Origin();
    double const depth =
        (origin.X() - eye.X()) * ahead[0] + (origin.Y() - eye.Y()) * ahead[1] + (origin.Z() - eye.Z()) * ahead[2];
    return depth > 0.0 && std::isfinite(depth) ? depth : otherwise;
}

tinygltf::Camera EntryOf(ICamera const& camera, double metres)
{
    double const nearest = DepthOr(&ICamera::NearPlane, camera, kNearest / metres) * metres;
    double const farthest = std::max(DepthOr(&ICamera::FarPlane, camera, kFarthest / metres) * metres, nearest * 2.0);
    double const aspect = PositiveOr(&ICamera::AspectRatio, camera, 1.0);
    double const height = PositiveOr(&ICamera::ViewWindowHeightForParallelCamera, camera, 1.0 / metres) * metres;
    tinygltf::Camera entry;
    entry.name = UTF8String(camera.Label()).Value();
    if (camera.CameraType() == ICamera::kCameraType_Perspective)
    {
        entry.type = "perspective";
        entry.perspective.yfov = std::min(PositiveOr(&ICamera::ViewAngle, camera, kViewAngle), 3.1);
        entry.perspective.aspectRatio = aspect;
        entry.perspective.znear = nearest;
        entry.perspective.zfar = farthest;
    }
    else
    {
        entry.type = "orthographic";
        entry.orthographic.ymag = height / 2.0;
        entry.orthographic.xmag = height * aspect / 2.0;
        entry.orthographic.znear = nearest;
        entry.orthographic.zfar = farthest;
    }
    return entry;
}

}  // namespace

void GltfDocument::AddCameras(Matrix const& turn)
{
    for (SceneReference const& listed : m_scene.Cameras())
        AddCamera(listed, turn);
    for (SceneReference const& listed : m_scene.Views())
        if (dynamic_cast<IView const*>(listed.object))
            m_views.push_back(ViewOf(listed));
    for (SceneReference const& listed : m_scene.Cameras())
        if (auto const camera = m_cameras.find(listed.id); camera != m_cameras.end() && !camera->second.isInView)
            AddCameraNode(camera->first, UTF8String(camera->second.object->Label()).Value(), {});
}

void GltfDocument::AddCamera(SceneReference const& listed, Matrix const& turn)
{
    auto const* const camera = dynamic_cast<ICamera const*>(listed.object);
    if (!camera)
        return;
    UnitTypeEnum unit = kUnitType_Unknown;
    double metres = m_scene.MetresPerUnit();
    if (camera->LengthUnit(unit) == kIsValueSpecified_Yes && MetresOf(unit) > 0.0)
        metres = MetresOf(unit);
    Matrix const place = Product(turn, PlaceOf(*camera, metres));
    if (!std::all_of(place.begin(), place.end(), [](double element) { return std::abs(element) < kFurthest; }))
        return m_task.notCarried.Add("cameras that stand nowhere");
    tinygltf::Camera entry = EntryOf(*camera, metres);
    m_cameras[std::string(listed.id)] = {camera, static_cast<int>(m_model.cameras.size()), ColumnsOf(place)};
    m_model.cameras.push_back(std::move(entry));
    if (auto const* const section = dynamic_cast<ISectionCamera const*>(camera))
        m_task.notCarried.Add("section planes", section->SectionPlaneCount());
}

void GltfDocument::AddCameraNode(std::string const& id, std::string const& name, Value::Object extras)
{
    Camera& camera = m_cameras.at(id);
    camera.isInView = true;
    tinygltf::Node node;
    node.name = name.empty() ? id : name;
    node.camera = camera.index;
    node.matrix = camera.matrix;
    Value::Object const own = ExtrasOf(id, camera.object);
    extras.insert(own.begin(), own.end());
    node.extras = Value(extras);
    AddNode(std::move(node), -1);
}

Value GltfDocument::ViewOf(SceneReference const& listed)
{
    auto const& view = dynamic_cast<IView const&>(*listed.object);
    std::string const id(listed.id);
    std::string const label = UTF8String(view.Label()).Value();
    Value::Object entry;
    entry["id"] = Value(id);
    entry["label"] = Value(label);
    entry["active"] = Value(view.IsActive());
    Value::Array nodes;
    IdSet const cameras = view.CameraSet();
    for (unsigned long long i = 0; i < cameras.Size(); ++i)
    {
        std::string const camera = cameras.At(i).Value();
        if (m_cameras.count(camera) == 0)
            continue;
        nodes.emplace_back(static_cast<int>(m_model.nodes.size()));
        AddCameraNode(camera, label.empty() ? id : label, {{"view", Value(id)}});
    }
    entry["cameraNodes"] = Value(nodes);
    Value::Array members;
    for (SceneViewMember const& member : SceneView::MembersOf(view))
    {
        Value::Array path;
        for (unsigned long long step = 0; step < member.path.Size(); ++step)
            path.emplace_back(std::string(member.path.At(step).View()));
        Value::Object made;
        made["path"] = Value(path);
        made["visible"] = Value(member.isVisible);
        members.emplace_back(made);
    }
    entry["members"] = Value(members);
    return Value(entry);
}

void GltfDocument::AddExtras()
{
    Value::Object extras;
    extras["lengthUnitInMetres"] = Value(m_scene.MetresPerUnit());
    if (!m_views.empty())
        extras["views"] = Value(m_views);
    Value::Array layers;
    for (SceneLayer const& layer : m_scene.Layers())
    {
        Value::Object entry;
        entry["id"] = Value(std::string(layer.id));
        entry["label"] = Value(std::string(layer.label));
        entry["number"] = Value(layer.number);
        entry["visible"] = Value(layer.isVisible);
        Value::Array items;
        for (std::string_view const item : layer.items)
            items.emplace_back(std::string(item));
        entry["items"] = Value(items);
        layers.emplace_back(entry);
    }
    if (!layers.empty())
        extras["layers"] = Value(layers);
    m_model.scenes.front().extras = Value(extras);
}

}  // namespace KVR
