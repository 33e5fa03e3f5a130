#include "exchange/view/ViewLooks.h"

#include <algorithm>
#include <cmath>

#include "framework/api/LengthUnits.h"
#include "framework/api/kvr_api.h"
#include "scene/SceneCamera.h"
#include "scene/SceneView.h"

namespace KVR
{

namespace
{

using Triple = std::array<double, 3>;

double MetresOr(std::optional<UnitTypeEnum> const& unit, double otherwise)
{
    double const metres = unit ? MetresOf(*unit) : 0.0;
    return metres > 0.0 ? metres : otherwise;
}

// False, with a direction left as it is, for one without a length.
bool Normalize(Triple& v)
{
    double const length = std::hypot(v[0], v[1], v[2]);
    if (!(length > 0.0) || !std::isfinite(length))
        return false;
    for (double& x : v)
        x /= length;
    return true;
}

Triple Cross(Triple const& a, Triple const& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Triple TripleOf(UnitVector const& v)
{
    return {v[0], v[1], v[2]};
}

Triple TripleOf(Position const& p, double scale)
{
    return {p.X() * scale, p.Y() * scale, p.Z() * scale};
}

bool IsPlace(Triple const& point)
{
    constexpr double kFarthest = 1e30;
    return std::all_of(point.begin(), point.end(), [](double x) { return std::abs(x) < kFarthest; });
}

ViewJson PlaneJson(Plane const& plane, double scale)
{
    Triple normal = TripleOf(plane.Normal());
    Triple const origin = TripleOf(plane.Origin(), scale);
    if (!Normalize(normal) || !IsPlace(origin))
        return {};
    return {{"origin", JsonOf(origin)}, {"normal", JsonOf(normal)}};
}

void SetLength(ViewJson& json, char const* name, std::optional<double> const& value, double scale)
{
    if (value && std::isfinite(*value * scale) && *value > 0.0)
        json[name] = *value * scale;
}

// Null for a camera that stands nowhere.
ViewJson CameraJson(SceneCamera const& camera, Scene const& scene)
{
    double const scale = MetresOr(camera.lengthUnit, scene.MetresPerUnit()) / scene.MetresPerUnit();
    Triple const position = TripleOf(camera.position, scale);
    if (!IsPlace(position))
        return {};
    Triple direction = TripleOf(camera.direction);
    if (!Normalize(direction))
        direction = {0.0, 0.0, -1.0};
    Triple right = Cross(direction, TripleOf(camera.upDirection));
    if (!Normalize(right))
    {
        right = Cross(direction, std::abs(direction[2]) < 0.9 ? Triple{0.0, 0.0, 1.0} : Triple{0.0, 1.0, 0.0});
        Normalize(right);
    }
    ViewJson json{{"id", camera.id.View()}, {"label", UTF8String(camera.label).View()}};
    json["type"] = camera.type == ICamera::kCameraType_Perspective ? "perspective" : "parallel";
    json["position"] = JsonOf(position);
    json["direction"] = JsonOf(direction);
    json["up"] = JsonOf(Cross(right, direction));
    SetLength(json, "distance", camera.distanceToViewPlane, scale);
    SetLength(json, "aspect", camera.aspectRatio, 1.0);
    SetLength(json, "angle", camera.viewAngle, 1.0);
    SetLength(json, "height", camera.windowHeight, scale);
    auto const setPlane = [&](char const* name, std::optional<Plane> const& plane)
    {
        if (ViewJson entry = plane ? PlaneJson(*plane, scale) : ViewJson(); !entry.is_null())
            json[name] = std::move(entry);
    };
    setPlane("near", camera.nearPlane);
    setPlane("far", camera.farPlane);
    for (Plane const& plane : camera.sectionPlanes)
        if (ViewJson entry = PlaneJson(plane, scale); !entry.is_null())
            json["sections"].push_back(std::move(entry));
    SetText(json, "operations", camera.sectioningOperations.View());
    return json;
}

// Resolves the members of a view.
class Members
{
public:
    Members(Scene const& scene, ViewIndex const& index, ViewStyles const& styles, ViewOccurrences& occurrences,
            ViewTransforms& transforms)
        : m_scene(scene), m_index(index), m_styles(styles), m_occurrences(occurrences), m_transforms(transforms)
    {
    }

    void Set(ViewJson& json, IView const& view, double metres)
    {
        std::size_t unresolved = 0;
        ViewJson members = ViewJson::object();
        for (SceneViewMember const& member : SceneView::MembersOf(view))
            unresolved += Add(members, member, metres) ? 0 : 1;
        if (!members.empty())
            json["members"] = std::move(members);
        if (unresolved > 0)
            json["unresolved"] = unresolved;
    }

private:
    bool Add(ViewJson& members, SceneViewMember const& member, double metres)
    {
        std::vector<std::string_view> path;
        for (unsigned long long i = 0; i < member.path.Size(); ++i)
            path.push_back(member.path.At(i).View());
        ViewOccurrences::End const end = m_occurrences.Find(path);
        if (end.occurrence == kNoIndex)
            return false;
        std::size_t const place = m_occurrences.ComponentOf(end.occurrence);
        SceneComponent const& component = m_scene.Components()[place];
        SceneGeometry const* const geometry = end.rest ? GeometryOf(component, *end.rest) : nullptr;
        if (end.rest && !geometry)
            return false;
        ViewJson const none = -1;
        members["occurrence"].push_back(end.occurrence);
        members["geometry"].push_back(
            geometry
                ? ViewJson(m_index.GeometryAt(place, static_cast<std::size_t>(geometry - component.geometry.data())))
                : none);
        members["visible"].push_back(member.isVisible ? 1 : 0);
        Matrix const moved = PlaceOf(&member.transform);
        members["transform"].push_back(
            moved == kIdentity
                ? none
                : ViewJson(m_transforms.IndexOf(geometry ? InGeometry(moved, *geometry, component, metres)
                                                         : InAbove(moved, end.occurrence, component, metres))));
        members["style"].push_back(member.styles.IsEmpty() ? -1 : m_styles.IndexOf(member.styles.At(0).View()));
        return true;
    }

    // What is said of a body holds for its mesh.
    static SceneGeometry const* GeometryOf(SceneComponent const& component, std::string_view id)
    {
        SceneGeometry const* found = nullptr;
        for (SceneGeometry const& geometry : component.geometry)
            if ((geometry.id == id && !found) || (geometry.bodyId == id && !geometry.bodyId.empty()))
                found = &geometry;
        return found;
    }

    static Matrix Shifted(Matrix matrix, double factor)
    {
        for (std::size_t const i : {3, 7, 11})
            matrix[i] *= factor;
        return matrix;
    }

    static Matrix InGeometry(Matrix const& moved, SceneGeometry const& geometry, SceneComponent const& component,
                             double metres)
    {
        return Product(Scaling(geometry.metresPerUnit / component.metresPerUnit),
                       Shifted(moved, metres / geometry.metresPerUnit));
    }

    Matrix InAbove(Matrix const& moved, std::size_t occurrence, SceneComponent const& component, double metres) const
    {
        std::size_t const above = m_occurrences.AboveOf(occurrence);
        double const unit = above == kNoIndex ? m_scene.MetresPerUnit()
                                              : m_scene.Components()[m_occurrences.ComponentOf(above)].metresPerUnit;
        return Product(Shifted(moved, metres / unit), Scaling(component.metresPerUnit / unit));
    }

    Scene const& m_scene;
    ViewIndex const& m_index;
    ViewStyles const& m_styles;
    ViewOccurrences& m_occurrences;
    ViewTransforms& m_transforms;
};

}  // namespace

ViewJson LooksJson(ExportTask& task, ViewIndex const& index, ViewStyles const& styles, ViewOccurrences& occurrences,
                   ViewTransforms& transforms)
{
    Scene const& scene = task.scene;
    ViewJson cameras = ViewJson::array();
    std::unordered_map<std::string_view, std::size_t> cameraAt;
    for (SceneReference const& listed : scene.Cameras())
    {
        auto const* const camera = dynamic_cast<ICamera const*>(listed.object);
        if (!camera)
            continue;
        ViewJson entry = CameraJson(SceneCamera::Of(*camera), scene);
        task.notCarried.Add("cameras that stand nowhere", entry.is_null() ? 1 : 0);
        if (entry.is_null())
            continue;
        cameraAt.emplace(listed.id, cameras.size());
        cameras.push_back(std::move(entry));
    }
    ViewJson views = ViewJson::array();
    for (SceneReference const& listed : scene.Views())
    {
        auto const* const object = dynamic_cast<IView const*>(listed.object);
        if (!object)
            continue;
        SceneView const view = SceneView::Of(*object);
        ViewJson entry{{"id", listed.id},
                       {"label", UTF8String(view.label).View()},
                       {"visible", view.isVisible},
                       {"active", view.isActive}};
        ViewJson own = ViewJson::array();
        for (unsigned long long i = 0; i < view.cameras.Size(); ++i)
            if (auto const found = cameraAt.find(view.cameras.At(i).View()); found != cameraAt.end())
                own.push_back(found->second);
        entry["cameras"] = std::move(own);
        Members(scene, index, styles, occurrences, transforms)
            .Set(entry, *object, MetresOr(view.lengthUnit, scene.MetresPerUnit()));
        views.push_back(std::move(entry));
    }
    return {{"cameras", std::move(cameras)}, {"views", std::move(views)}};
}

}  // namespace KVR
