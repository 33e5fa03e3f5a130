#include <algorithm>
#include <cmath>

#include "exchange/export/GltfDocument.h"
#include "framework/api/LengthUnits.h"
#include "framework/api/kvr_api.h"

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

}  // namespace

void GltfDocument::AddCameras(Matrix const& turn)
{
    for (SceneReference const& listed : m_scene.Cameras())
    {
        auto const* const camera = dynamic_cast<ICamera const*>(listed.object);
        if (!camera)
            continue;
        UnitTypeEnum unit = kUnitType_Unknown;
        double metres = m_scene.MetresPerUnit();
        if (camera->LengthUnit(unit) == kIsValueSpecified_Yes && MetresOf(unit) > 0.0)
            metres = MetresOf(unit);
        Matrix const place = Product(turn, PlaceOf(*camera, metres));
        if (!std::all_of(place.begin(), place.end(), [](double element) { return std::abs(element) < kFurthest; }))
        {
            m_task.notCarried.Add("cameras that stand nowhere");
            continue;
        }
        double const nearest = DepthOr(&ICamera::NearPlane, *camera, kNearest / metres) * metres;
        double const farthest =
            std::max(DepthOr(&ICamera::FarPlane, *camera, kFarthest / metres) * metres, nearest * 2.0);
        double const aspect = PositiveOr(&ICamera::AspectRatio, *camera, 1.0);
        double const height = PositiveOr(&ICamera::ViewWindowHeightForParallelCamera, *camera, 1.0 / metres) * metres;
        tinygltf::Camera entry;
        entry.name = std::string(UTF8String(camera->Label()).View());
        if (camera->CameraType() == ICamera::kCameraType_Perspective)
        {
            entry.type = "perspective";
            entry.perspective.yfov = std::min(PositiveOr(&ICamera::ViewAngle, *camera, kViewAngle), 3.1);
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
        tinygltf::Node node;
        node.name = entry.name.empty() ? std::string(listed.id) : entry.name;
        node.camera = static_cast<int>(m_model.cameras.size());
        std::vector<double> columns;
        for (std::size_t column = 0; column < 4; ++column)
            for (std::size_t row = 0; row < 4; ++row)
                columns.push_back(place[4 * row + column]);
        node.matrix = columns;
        node.extras = Value(ExtrasOf(listed.id, camera));
        m_model.cameras.push_back(std::move(entry));
        m_cameraNodes[std::string(listed.id)] = AddNode(std::move(node), -1);
        if (auto const* const section = dynamic_cast<ISectionCamera const*>(camera))
            m_task.notCarried.Add("section planes", section->SectionPlaneCount());
    }
}

void GltfDocument::AddExtras()
{
    Value::Object extras;
    extras["lengthUnitInMetres"] = Value(m_scene.MetresPerUnit());
    Value::Array views;
    for (SceneReference const& listed : m_scene.Views())
    {
        auto const* const view = dynamic_cast<IView const*>(listed.object);
        if (!view)
            continue;
        Value::Object entry;
        entry["id"] = Value(std::string(listed.id));
        entry["label"] = Value(std::string(UTF8String(view->Label()).View()));
        entry["active"] = Value(view->IsActive());
        Value::Array cameras;
        IdSet const ids = view->CameraSet();
        for (unsigned long long i = 0; i < ids.Size(); ++i)
        {
            auto const node = m_cameraNodes.find(std::string(ids.At(i).View()));
            if (node != m_cameraNodes.end())
                cameras.emplace_back(node->second);
        }
        entry["cameraNodes"] = Value(cameras);
        Value::Array members;
        for (unsigned long long i = 0; i < view->ViewMemberCount(); ++i)
        {
            Value::Array path;
            IdSet const occurrence = view->OccurrencePathAt(i);
            for (unsigned long long step = 0; step < occurrence.Size(); ++step)
                path.emplace_back(std::string(occurrence.At(step).View()));
            Value::Object member;
            member["path"] = Value(path);
            member["visible"] = Value(view->EntityVisibilityAt(i));
            members.emplace_back(member);
        }
        entry["members"] = Value(members);
        views.emplace_back(entry);
    }
    if (!views.empty())
        extras["views"] = Value(views);
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
