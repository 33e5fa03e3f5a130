#include "exchange/view/ViewMeasures.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <string>
#include <vector>

namespace KVR
{

namespace
{

char const* TextOfKind(ShapeMeasures::SurfaceKind kind)
{
    using Kind = ShapeMeasures::SurfaceKind;
    switch (kind)
    {
        case Kind::kPlane:
            return "plane";
        case Kind::kCylinder:
            return "cylinder";
        case Kind::kCone:
            return "cone";
        case Kind::kSphere:
            return "sphere";
        case Kind::kTorus:
            return "torus";
        case Kind::kBSpline:
            return "bspline";
        case Kind::kOther:
            break;
    }
    return "other";
}

char const* TextOfKind(ShapeMeasures::CurveKind kind)
{
    using Kind = ShapeMeasures::CurveKind;
    switch (kind)
    {
        case Kind::kLine:
            return "line";
        case Kind::kCircle:
            return "circle";
        case Kind::kEllipse:
            return "ellipse";
        case Kind::kBSpline:
            return "bspline";
        case Kind::kOther:
        case Kind::kNone:
            break;
    }
    return "other";
}

ViewJson NumberOrNull(double number)
{
    return number > 0.0 ? ViewJson(number) : ViewJson();
}

// A list of what there is of each, unless there is nothing of any.
template <class List, class Answer>
void SetList(ViewJson& json, char const* name, List const& list, Answer const& answer)
{
    ViewJson answers = ViewJson::array();
    bool isEmpty = true;
    for (auto const& one : list)
    {
        ViewJson value = answer(one);
        isEmpty =
            isEmpty && (value.is_null() || (value.is_string() && value.get_ref<ViewJson::string_t const&>().empty()));
        answers.push_back(std::move(value));
    }
    if (!isEmpty)
        json[name] = std::move(answers);
}

template <class List>
ViewJson NamesJson(List const& list)
{
    ViewJson json = ViewJson::object();
    SetList(json, "dataIds", list, [](auto const& one) { return ViewJson(one.dataId); });
    SetList(json, "persistentIds", list, [](auto const& one) { return ViewJson(one.persistentId); });
    return json;
}

template <class Value>
ViewJson ValueOrNull(std::optional<Value> const& value)
{
    if constexpr (std::is_same_v<Value, double>)
        return value ? ViewJson(*value) : ViewJson();
    else
        return value ? JsonOf(*value) : ViewJson();
}

void SetCurves(ViewJson& json, std::vector<ShapeMeasures::Curve> const& curves)
{
    SetList(json, "curve", curves, [](auto const& one) { return ViewJson(TextOfKind(one.kind)); });
    SetList(json, "length", curves, [](auto const& one) { return NumberOrNull(one.length); });
    SetList(json, "radius", curves, [](auto const& one) { return ValueOrNull(one.radius); });
    SetList(json, "center", curves, [](auto const& one) { return ValueOrNull(one.center); });
}

double LengthOf(std::span<double const> points)
{
    double length = 0.0;
    for (std::size_t i = 3; i + 2 < points.size(); i += 3)
        length += std::hypot(points[i] - points[i - 3], points[i + 1] - points[i - 2], points[i + 2] - points[i - 1]);
    return length;
}

}  // namespace

ViewJson FacesJson(SceneMesh const& mesh, ShapeMeasures const* body)
{
    ViewJson json = NamesJson(mesh.faces);
    if (body && body->faces.size() == mesh.faces.size())
    {
        SetList(json, "surface", body->faces, [](auto const& one) { return ViewJson(TextOfKind(one.kind)); });
        SetList(json, "radius", body->faces, [](auto const& one) { return ValueOrNull(one.radius); });
        SetList(json, "area", body->faces, [](auto const& one) { return NumberOrNull(one.area); });
    }
    ViewJson hidden = ViewJson::array();
    for (std::size_t i = 0; i < mesh.faces.size(); ++i)
        if (!mesh.faces[i].isVisible)
            hidden.push_back(i);
    SetUnlessEmpty(json, "hidden", std::move(hidden));
    return json;
}

ViewJson EdgesJson(SceneMesh const& mesh, ShapeMeasures const* body)
{
    ViewJson json = NamesJson(mesh.edges);
    std::vector<ShapeMeasures::Curve> curves = body ? body->edges : std::vector<ShapeMeasures::Curve>();
    // A mesh made of a body has no edges for what has no curve.
    if (curves.size() > mesh.edges.size())
        std::erase_if(curves, [](auto const& one) { return one.kind == ShapeMeasures::CurveKind::kNone; });
    if (!curves.empty() && curves.size() == mesh.edges.size())
        SetCurves(json, curves);
    else
        SetList(json, "length", mesh.edges,
                [&](SceneMesh::Edge const& edge)
                {
                    std::span const points(mesh.edgePoints);
                    return NumberOrNull(LengthOf(points.subspan(3 * edge.firstPoint, 3 * edge.pointCount)));
                });
    return json;
}

ViewJson EdgesJson(SceneLines const& lines, ShapeMeasures const& measures)
{
    ViewJson json = ViewJson::object();
    if (measures.edges.size() == lines.Count())
    {
        SetCurves(json, measures.edges);
        return json;
    }
    std::vector<std::span<double const>> list;
    for (std::size_t i = 0; i < lines.Count(); ++i)
        list.push_back(lines.At(i));
    bool const isPolyline = !measures.edges.empty() &&
                            std::all_of(measures.edges.begin(), measures.edges.end(),
                                        [](auto const& one) { return one.kind == ShapeMeasures::CurveKind::kLine; });
    if (isPolyline)
        json["curve"] = std::vector<std::string>(lines.Count(), "polyline");
    SetList(json, "length", list, [](std::span<double const> points) { return NumberOrNull(LengthOf(points)); });
    return json;
}

void SetUnlessEmpty(ViewJson& json, char const* name, ViewJson&& value)
{
    if (!value.empty())
        json[name] = std::move(value);
}

}  // namespace KVR
