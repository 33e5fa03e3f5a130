#include <pybind11/stl.h>

#include <TopoDS_Shape.hxx>
#include <algorithm>

#include "describe/BodyFacts.h"
#include "framework/api/IBrep.h"
#include "framework/api/IPointCloud.h"
#include "framework/kernel/entity.h"
#include "python/BodyPiece.h"
#include "scene/CurvePoints.h"
#include "scene/SceneBox.h"
#include "scene/ScenePoints.h"
#include "scene/ShapeMeasures.h"

namespace KVR::Python
{

namespace
{

/// The arrays of a mesh, which all its occurrences share.
struct MeshArrays
{
    ModelPointer model;
    SceneMesh const* mesh;
};

struct BodyFace
{
    char const* kind;
    std::optional<double> radius;
    double area;
    std::string dataId;
};

// A view of numbers of the mesh, which the array keeps alive through its base. It cannot be written to: other
// occurrences and exports see the same numbers.
template <class T>
py::array View(py::object const& owner, std::vector<T> const& numbers, py::ssize_t width)
{
    auto const rows = static_cast<py::ssize_t>(numbers.size()) / width;
    std::vector<py::ssize_t> const shape = width == 1 ? std::vector{rows} : std::vector{rows, width};
    py::array_t<T> array(shape, numbers.data(), owner);
    array.attr("setflags")(py::arg("write") = false);
    return array;
}

template <class T>
py::object ViewOrNone(py::object const& owner, std::vector<T> const& numbers, py::ssize_t width)
{
    return numbers.empty() ? py::object(py::none()) : View(owner, numbers, width);
}

SceneMesh const& MeshIn(py::object const& owner)
{
    return *owner.cast<MeshArrays const&>().mesh;
}

py::object MeshOfGeometry(ModelPointer const& model, SceneGeometry const& geometry)
{
    if (geometry.mesh)
        return py::cast(MeshArrays{model, &model->meshes.Of(*geometry.mesh)});
    if (geometry.body && geometry.body->Body())
        return py::cast(MeshArrays{model, &model->meshes.Of(*geometry.body)});
    return py::none();
}

py::object BodyOfGeometry(ModelPointer const& model, SceneGeometry const& geometry)
{
    if (!geometry.body || !geometry.body->Body())
        return py::none();
    return py::cast(BodyPiece{model, geometry.body, geometry.metresPerUnit});
}

char const* TextOf(GeometryKind kind)
{
    constexpr char const* kTexts[] = {"body", "mesh", "curve", "point", "cloud", "other"};
    return kTexts[static_cast<std::size_t>(kind)];
}

char const* TextOf(ShapeMeasures::SurfaceKind kind)
{
    constexpr char const* kTexts[] = {"plane", "cylinder", "cone", "sphere", "torus", "b-spline", "other"};
    return kTexts[static_cast<std::size_t>(kind)];
}

std::vector<BodyFace> FacesOf(BodyPiece const& piece)
{
    std::vector<BodyFace> faces;
    for (ShapeMeasures::Surface const& surface : ShapeMeasures::Of(piece.Body().Shape()).faces)
        faces.push_back({TextOf(surface.kind), surface.radius, surface.area, {}});
    for (BODY::SubId const& id : piece.Body().FaceDataIds())
    {
        if (id.place < faces.size() && faces[id.place].dataId.empty())
            faces[id.place].dataId = id.dataId;
    }
    return faces;
}

Matrix TransformOf(GeometryPiece const& piece)
{
    SceneGeometry const& geometry = *piece.geometry;
    if (piece.occurrence)
        return Product(piece.occurrence->place, piece.occurrence->state.PlaceOf(geometry, *piece.component));
    return OccurrenceState(*piece.component).PlaceOf(geometry, *piece.component);
}

SceneStyle const* StyleOf(GeometryPiece const& piece)
{
    return piece.occurrence ? piece.occurrence->state.StyleOf(*piece.geometry)
                            : OccurrenceState(*piece.component).StyleOf(*piece.geometry);
}

py::array ArrayOfPoints(std::vector<double> const& points)
{
    return py::array_t<double>({static_cast<py::ssize_t>(points.size()) / 3, py::ssize_t{3}}, points.data());
}

py::object PointsOf(GeometryPiece const& piece)
{
    if (piece.geometry->point)
        return ArrayOfPoints(ScenePoints::Of(*piece.geometry->point).points);
    if (piece.geometry->cloud)
        return ArrayOfPoints(ScenePoints::Of(*piece.geometry->cloud).points);
    return py::none();
}

py::list LinesOf(GeometryPiece const& piece, double deflection)
{
    py::list lines;
    if (!piece.geometry->curve)
        return lines;
    SceneLines const found =
        CurvePoints::Of(*piece.geometry->curve, CurvePoints::ToleranceOf(Deflection{deflection, true}));
    for (std::size_t i = 0; i < found.Count(); ++i)
    {
        auto const line = found.At(i);
        lines.append(ArrayOfPoints({line.begin(), line.end()}));
    }
    return lines;
}

void BindMesh(py::module_& module)
{
    using Face = SceneMesh::Face;
    py::class_<Face>(module, "MeshFace", KVR_DOC(Face, Face))
        .def_readonly("visible", &Face::isVisible, KVR_DOC(Face, isVisible))
        .def_property_readonly("data_id", [](Face const& face) { return Text(face.dataId); })
        .def_property_readonly("persistent_id", [](Face const& face) { return Text(face.persistentId); });
    py::class_<MeshArrays>(module, "Mesh", KVR_DOC(SceneMesh, SceneMesh))
        .def_property_readonly(
            "positions", [](py::object const& self) { return View(self, MeshIn(self).positions, 3); },
            KVR_DOC(SceneMesh, positions))
        .def_property_readonly(
            "normals", [](py::object const& self) { return ViewOrNone(self, MeshIn(self).normals, 3); },
            "Three for each vertex, of length 1; zeros for vertices without one, None when there are none.")
        .def_property_readonly(
            "texture", [](py::object const& self) { return ViewOrNone(self, MeshIn(self).texture, 2); },
            "Two for each vertex; None when there are none.")
        .def_property_readonly(
            "triangles", [](py::object const& self) { return View(self, MeshIn(self).indices, 3); },
            KVR_DOC(SceneMesh, indices))
        .def_property_readonly(
            "face_ids", [](py::object const& self) { return ViewOrNone(self, MeshIn(self).faceOfTriangle, 1); },
            "For each triangle the place of its face in faces, 2**32 - 1 for none; None when there are no faces.")
        .def_property_readonly("faces", [](MeshArrays const& arrays) { return arrays.mesh->faces; })
        .def_property_readonly(
            "styles",
            [](MeshArrays const& arrays)
            {
                py::list runs;
                for (SceneMesh::Run const& run : arrays.mesh->runs)
                    runs.append(py::make_tuple(Text(run.style), run.firstTriangle, run.triangleCount));
                return runs;
            },
            "Runs of triangles of one style of their own: its id, the first triangle and how many there are.");
}

void BindBody(py::module_& module)
{
    py::class_<BodyFace>(module, "Face", KVR_DOC(Surface, Surface))
        .def_readonly("kind", &BodyFace::kind, KVR_DOC(SurfaceKind, SurfaceKind))
        .def_readonly("radius", &BodyFace::radius, KVR_DOC(Surface, radius))
        .def_readonly("area", &BodyFace::area, KVR_DOC(Surface, area))
        .def_property_readonly("data_id", [](BodyFace const& face) { return Text(face.dataId); });
    py::class_<BodyPiece>(module, "Body", KVR_DOC(IBrep, IBrep))
        .def_property_readonly(
            "volume", [](BodyPiece const& body) { return Volume(body.Body()); },
            "That of its solids, in the cube of its unit; None when it cannot be computed.")
        .def_property_readonly(
            "area", [](BodyPiece const& body) { return Area(body.Body()); },
            "In the square of its unit; None when it cannot be computed.")
        .def_property_readonly(
            "centroid", [](BodyPiece const& body) { return Centroid(body.Body()); },
            "The centre of its solids, in its own coordinates; None without a volume.")
        .def_property_readonly(
            "box", [](BodyPiece const& body) { return BoundingBox(body.Body()); },
            "The low corner, then the high one; None for an empty body.")
        .def_property_readonly("faces", &FacesOf, "Its faces, each once.")
        .def_readonly("metres_per_unit", &BodyPiece::metresPerUnit, "The length of its unit.");
}

}  // namespace

py::tuple GeometryOf(ModelPointer const& model, SceneComponent const& component, OccurrencePointer const& occurrence)
{
    py::tuple pieces(component.geometry.size());
    for (std::size_t i = 0; i < component.geometry.size(); ++i)
        pieces[i] = GeometryPiece{model, &component, &component.geometry[i], occurrence};
    return pieces;
}

py::object MeshOf(ModelPointer const& model, SceneComponent const& component)
{
    auto const mesh = std::find_if(component.geometry.begin(), component.geometry.end(),
                                   [](SceneGeometry const& geometry) { return geometry.mesh != nullptr; });
    if (mesh != component.geometry.end())
        return MeshOfGeometry(model, *mesh);
    auto const body = std::find_if(component.geometry.begin(), component.geometry.end(),
                                   [](SceneGeometry const& geometry) { return geometry.body != nullptr; });
    return body != component.geometry.end() ? MeshOfGeometry(model, *body) : py::none();
}

py::object BodyOf(ModelPointer const& model, SceneComponent const& component)
{
    auto const body = std::find_if(component.geometry.begin(), component.geometry.end(),
                                   [](SceneGeometry const& geometry) { return geometry.body != nullptr; });
    return body != component.geometry.end() ? BodyOfGeometry(model, *body) : py::none();
}

void BindGeometry(py::module_& module)
{
    BindMesh(module);
    BindBody(module);
    py::class_<GeometryPiece>(module, "Geometry", KVR_DOC(SceneGeometry, SceneGeometry))
        .def_property_readonly(
            "kind", [](GeometryPiece const& piece) { return TextOf(piece.geometry->kind); },
            "'body', 'mesh', 'curve', 'point', 'cloud' or 'other'.")
        .def_property_readonly("id", [](GeometryPiece const& piece) { return Text(piece.geometry->id); })
        .def_property_readonly("label", [](GeometryPiece const& piece) { return Text(piece.geometry->label); })
        .def_property_readonly(
            "class_name", [](GeometryPiece const& piece) { return Text(piece.geometry->className); },
            KVR_DOC(SceneGeometry, className))
        .def_property_readonly(
            "body_id", [](GeometryPiece const& piece) { return Text(piece.geometry->bodyId); },
            KVR_DOC(SceneGeometry, bodyId))
        .def_property_readonly(
            "visible",
            [](GeometryPiece const& piece) {
                return piece.occurrence ? piece.occurrence->state.IsVisible(*piece.geometry)
                                        : piece.geometry->isVisible;
            },
            "Whether it is shown where it occurs; by itself, what it says of itself.")
        .def_property_readonly(
            "transform", [](GeometryPiece const& piece) { return ArrayOf(TransformOf(piece)); },
            "From its own coordinates to the root's in the scene's unit; by itself, to its component's.")
        .def_property_readonly(
            "style", [](GeometryPiece const& piece) { return StyleOrNone(piece.model, StyleOf(piece)); },
            KVR_DOC(OccurrenceState, StyleOf))
        .def_property_readonly(
            "metres_per_unit", [](GeometryPiece const& piece) { return piece.geometry->metresPerUnit; },
            KVR_DOC(SceneGeometry, metresPerUnit))
        .def_property_readonly(
            "mesh", [](GeometryPiece const& piece) { return MeshOfGeometry(piece.model, *piece.geometry); },
            "Its triangles; None for what has none.")
        .def_property_readonly(
            "body", [](GeometryPiece const& piece) { return BodyOfGeometry(piece.model, *piece.geometry); },
            "None for what is no body.")
        .def_property_readonly("points", &PointsOf, "Of a point or a cloud, an array; None for anything else.")
        .def("lines", &LinesOf, py::arg("deflection") = 1e-3, KVR_DOC(CurvePoints, CurvePoints));
}

}  // namespace KVR::Python
