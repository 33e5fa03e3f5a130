#include "host/export/GltfCameras.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "framework/api/ICamera.h"
#include "framework/api/IProducer.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "host/export/Placing.h"

namespace KVR
{

namespace
{

constexpr double kPi = 3.14159265358979323846;
// How deep a camera sees that does not say it, by its distance.
constexpr double kNearest = 1e-3;
constexpr double kFarthest = 1e3;

Triple Cross(Triple const& a, Triple const& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

std::optional<Triple> Unit(Triple const& direction)
{
    double const length = std::hypot(direction[0], direction[1], direction[2]);
    if (!std::isfinite(length) || !(length > 0.0))
        return std::nullopt;
    return Triple{direction[0] / length, direction[1] / length, direction[2] / length};
}

Triple Turned(Matrix const& upright, Vector const& direction)
{
    return PlacedPoint(upright, {direction[0], direction[1], direction[2]});
}

// Another direction, when up is along the direction of sight or missing.
Triple SideOf(Triple const& ahead, Triple const& up)
{
    if (std::optional<Triple> const side = Unit(Cross(ahead, up)))
        return *side;
    Triple const other = std::abs(ahead[1]) < 0.9 ? Triple{0.0, 1.0, 0.0} : Triple{1.0, 0.0, 0.0};
    return *Unit(Cross(ahead, other));
}

double MetresOf(ICamera const& camera, SceneModel const& scene)
{
    UnitTypeEnum unit = kUnitType_Unknown;
    double const metres = camera.LengthUnit(unit) == kIsValueSpecified_Yes ? MetresPer(unit) : 0.0;
    return metres > 0.0 ? metres : scene.metresPerUnit;
}

double Answered(IsValueSpecifiedEnum (ICamera::*question)(double&) const, ICamera const& camera, double otherwise)
{
    double value = 0.0;
    return (camera.*question)(value) == kIsValueSpecified_Yes && std::isfinite(value) && value > 0.0 ? value
                                                                                                      : otherwise;
}

// The way along the direction of sight to a plane.
std::optional<double> DepthOf(ICamera const& camera,
                              IsValueSpecifiedEnum (ICamera::*question)(Plane&) const, Triple const& sight)
{
    Plane plane;
    if ((camera.*question)(plane) != kIsValueSpecified_Yes)
        return std::nullopt;
    Position const from = camera.CameraPosition();
    Position const to = plane.Origin();
    double const depth =
        (to.X() - from.X()) * sight[0] + (to.Y() - from.Y()) * sight[1] + (to.Z() - from.Z()) * sight[2];
    return std::isfinite(depth) && depth > 0.0 ? std::optional(depth) : std::nullopt;
}

bool AddCamera(ICamera const& camera, std::string const& id, double metres, Matrix const& upright,
               tinygltf::Model& model)
{
    UnitVector const direction = camera.CameraDirection();
    std::optional<Triple> const sight = Unit({direction[0], direction[1], direction[2]});
    Position const position = camera.CameraPosition();
    Triple const place{position.X() * metres, position.Y() * metres, position.Z() * metres};
    if (!sight || !std::isfinite(place[0] + place[1] + place[2]))
        return false;
    Triple const ahead = *Unit(Turned(upright, direction));
    Triple const side = SideOf(ahead, Turned(upright, camera.CameraUpDirection()));
    Triple const up = Cross(side, ahead);
    Triple const origin = PlacedPoint(upright, place);

    double const distance = Answered(&ICamera::DistanceToViewPlane, camera, 1.0 / metres) * metres;
    double const aspect = Answered(&ICamera::AspectRatio, camera, 1.0);
    auto const nearPlane = DepthOf(camera, &ICamera::NearPlane, *sight);
    auto const farPlane = DepthOf(camera, &ICamera::FarPlane, *sight);
    double const nearest = nearPlane ? *nearPlane * metres : distance * kNearest;
    double farthest = farPlane ? *farPlane * metres : distance * kFarthest;
    if (farthest <= nearest)
        farthest = nearest * kFarthest;

    tinygltf::Camera made;
    std::string const label(UTF8String(camera.Label()).View());
    made.name = label.empty() ? id : label;
    if (camera.CameraType() == ICamera::kCameraType_Perspective)
    {
        made.type = "perspective";
        made.perspective.aspectRatio = aspect;
        made.perspective.yfov = std::min(Answered(&ICamera::ViewAngle, camera, kPi / 4.0), 0.99 * kPi);
        made.perspective.znear = nearest;
        made.perspective.zfar = farthest;
    }
    else
    {
        double const height =
            Answered(&ICamera::ViewWindowHeightForParallelCamera, camera, 2.0 * distance / metres) * metres;
        made.type = "orthographic";
        made.orthographic.ymag = height / 2.0;
        made.orthographic.xmag = height / 2.0 * aspect;
        made.orthographic.znear = nearest;
        made.orthographic.zfar = farthest;
    }
    tinygltf::Node node;
    node.name = made.name;
    node.camera = static_cast<int>(model.cameras.size());
    node.matrix = {side[0], side[1], side[2], 0.0, up[0],     up[1],     up[2],     0.0,
                   -ahead[0], -ahead[1], -ahead[2], 0.0, origin[0], origin[1], origin[2], 1.0};
    node.extras = tinygltf::Value(tinygltf::Value::Object{{"id", tinygltf::Value(id)}});
    model.cameras.push_back(std::move(made));
    model.scenes.front().nodes.push_back(static_cast<int>(model.nodes.size()));
    model.nodes.push_back(std::move(node));
    return true;
}

}  // namespace

void AddGltfCameras(ExportTask& task, Matrix const& upright, tinygltf::Model& model)
{
    for (std::string const& id : task.scene.cameraIds)
    {
        auto const* const camera = dynamic_cast<ICamera const*>(task.producer.Load(UTF8String(id)));
        if (camera && !AddCamera(*camera, id, MetresOf(*camera, task.scene), upright, model))
            task.notCarried.Add("cameras without a direction");
    }
}

}  // namespace KVR
