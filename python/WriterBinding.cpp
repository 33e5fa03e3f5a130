#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cmath>

#include "authoring/SceneWriter.h"
#include "framework/api/IBrep.h"
#include "framework/kernel/entity.h"
#include "python/Bindings.h"
#include "python/BodyPiece.h"
#include "python/Units.h"

namespace KVR::Python
{

namespace
{

using Authoring::SceneWriter;

using Doubles = py::array_t<double, py::array::c_style | py::array::forcecast>;
using Indices = py::array_t<std::int64_t, py::array::c_style | py::array::forcecast>;
using Properties = std::vector<std::pair<std::string, py::object>>;

UTF8String Utf8(std::string const& text)
{
    return UTF8String(text);
}

std::vector<UTF8String> Ids(std::vector<std::string> const& texts)
{
    return {texts.begin(), texts.end()};
}

Authoring::UnitRecord UnitOf(std::optional<std::string> const& name)
{
    Authoring::UnitRecord unit;
    if (name)
        unit.length = UnitOfName(*name);
    return unit;
}

Matrix3d MatrixOf(Doubles const& numbers)
{
    if (numbers.ndim() != 2 || numbers.shape(0) != Matrix3d::kDimension || numbers.shape(1) != Matrix3d::kDimension)
        throw py::value_error("a transform is 4 by 4");
    std::array<double, Matrix3d::kElementCount> elements{};
    std::copy_n(numbers.data(), elements.size(), elements.begin());
    Matrix3d matrix;
    matrix.SetElements(elements);
    return matrix;
}

std::span<double const> Triples(Doubles const& numbers, char const* problem)
{
    if (numbers.ndim() != 2 || numbers.shape(1) != 3)
        throw py::value_error(problem);
    std::span<double const> const found(numbers.data(), static_cast<std::size_t>(numbers.size()));
    if (!std::all_of(found.begin(), found.end(), [](double number) { return std::isfinite(number); }))
        throw py::value_error("a coordinate is infinite or none");
    return found;
}

// What all that shows has in common.
struct Shown
{
    std::string id;
    std::string label;
    bool visible;
    std::vector<std::string> styles;
    std::optional<Doubles> transform;
    std::optional<std::string> unit;
};

template <class Record>
Record RecordOf(Shown const& shown)
{
    Record record;
    record.id = Utf8(shown.id);
    record.label = Utf8(shown.label);
    record.isVisible = shown.visible;
    record.styles = Ids(shown.styles);
    record.unit = UnitOf(shown.unit);
    if (shown.transform)
        record.transform = MatrixOf(*shown.transform);
    return record;
}

CustomProperty PropertyOf(std::string const& name, py::object const& value)
{
    CustomProperty property;
    UTF16String const key{Utf8(name)};
    if (py::isinstance<py::bool_>(value))
        property.SetProperty(key, value.cast<bool>());
    else if (py::isinstance<py::int_>(value))
        property.SetProperty(key, value.cast<int>());
    else if (py::isinstance<py::float_>(value))
        property.SetProperty(key, value.cast<double>());
    else
        property.SetProperty(key, UTF16String(Utf8(py::str(value).cast<std::string>())));
    return property;
}

Authoring::ComponentRecord ComponentOf(std::string const& id, std::string const& label,
                                       std::optional<std::string> const& unit, std::vector<std::string> const& styles,
                                       Properties const& properties)
{
    Authoring::ComponentRecord record;
    record.id = Utf8(id);
    record.label = Utf8(label);
    record.unit = UnitOf(unit);
    record.styles = Ids(styles);
    if (!properties.empty())
        record.properties.emplace();
    for (auto const& [name, value] : properties)
        record.properties->custom.push_back(PropertyOf(name, value));
    return record;
}

void WriteMesh(SceneWriter& writer, Shown const& shown, Doubles const& positions, Indices const& triangles,
               std::optional<Doubles> const& normals)
{
    std::span<double const> const points = Triples(positions, "positions are n by 3");
    if (triangles.ndim() != 2 || triangles.shape(1) != 3)
        throw py::value_error("triangles are n by 3");
    std::span<double const> directions;
    if (normals)
        directions = Triples(*normals, "normals are n by 3");
    if (normals && directions.size() != points.size())
        throw py::value_error("there are as many normals as positions");
    std::span<std::int64_t const> const corners(triangles.data(), static_cast<std::size_t>(triangles.size()));
    for (std::int64_t const corner : corners)
    {
        if (corner < 0 || corner >= positions.shape(0))
            throw py::index_error("a triangle has a vertex that is not there");
    }
    writer.Mesh(RecordOf<Authoring::MeshRecord>(shown));
    auto& meshes = writer.Meshes();
    meshes.BeginMesh(
        Utf8(shown.id),
        {.vertexCount = points.size() / 3, .normalCount = directions.size() / 3, .polygonCount = corners.size() / 3});
    meshes.Vertices(points);
    if (!directions.empty())
        meshes.Normals(directions);
    for (std::size_t i = 0; i < corners.size(); i += 3)
    {
        std::array<std::uint64_t, 3> polygon{};
        std::copy_n(corners.begin() + static_cast<std::ptrdiff_t>(i), 3, polygon.begin());
        Authoring::PolygonRecord record;
        record.vertices = polygon;
        if (!directions.empty())
            record.normals = polygon;
        meshes.Polygon(record);
    }
    meshes.EndMesh();
}

void WriteBody(SceneWriter& writer, Shown const& shown, BodyPiece const& body)
{
    writer.Body(RecordOf<Authoring::BodyRecord>(shown));
    std::vector<Authoring::SubEntityId> faces;
    for (BODY::SubId const& id : body.Body().FaceDataIds())
        faces.push_back({id.place, Utf8(id.dataId)});
    writer.Kernel().Body(Utf8(shown.id), body.Body().Shape(), faces);
}

void WritePoints(SceneWriter& writer, Shown const& shown, Doubles const& points)
{
    std::span<double const> const numbers = Triples(points, "points are n by 3");
    auto record = RecordOf<Authoring::PointCloudRecord>(shown);
    for (std::size_t i = 0; i < numbers.size(); i += 3)
        record.points.push_back({numbers[i], numbers[i + 1], numbers[i + 2]});
    writer.PointCloud(record);
}

using Rgb = std::array<double, 3>;

Authoring::StyleRecord StyleOf(std::string const& id, std::string const& label, Rgb const& diffuse, double transparency)
{
    Authoring::StyleRecord record;
    record.id = Utf8(id);
    record.label = Utf8(label);
    record.diffuse = Authoring::ColorRecord{diffuse[0], diffuse[1], diffuse[2], 1.0};
    if (transparency != 0.0)
        record.transparency = transparency;
    return record;
}

Authoring::LayerRecord LayerOf(std::string const& id, std::string const& label, long long number, bool visible,
                               std::vector<std::string> const& items)
{
    Authoring::LayerRecord record;
    record.id = Utf8(id);
    record.label = Utf8(label);
    record.number = number;
    record.description = record.label;
    record.isVisible = visible;
    record.itemIds = Ids(items);
    return record;
}

void WriteFile(SceneWriter& writer, std::string const& id, std::string const& label,
               std::optional<std::string> const& unit, std::vector<std::pair<std::string, bool>> const& children,
               std::vector<Authoring::StyleRecord> const& styles, std::vector<Authoring::LayerRecord> const& layers)
{
    Authoring::FileRecord record;
    record.id = Utf8(id);
    record.label = Utf8(label);
    record.unit = UnitOf(unit);
    for (auto const& [child, isAssembly] : children)
        record.children.emplace_back(
            Utf8(child), isAssembly ? Authoring::FileChildType::kAssembly : Authoring::FileChildType::kPart);
    writer.BeginFile(record);
    Authoring::AttributeSetRecord set;
    set.styles = styles;
    set.layers = layers;
    if (!styles.empty() || !layers.empty())
        writer.AttributeSet(set);
    writer.EndFile();
}

void WriteInstance(SceneWriter& writer, Shown const& shown, std::string const& target)
{
    auto record = RecordOf<Authoring::InstanceRecord>(shown);
    record.targetId = Utf8(target);
    writer.Instance(record);
}

}  // namespace

void BindWriter(py::module_& module)
{
    py::class_<Shown>(module, "Shown")
        .def(py::init<std::string, std::string, bool, std::vector<std::string>, std::optional<Doubles>,
                      std::optional<std::string>>());
    py::class_<Authoring::StyleRecord>(module, "StyleRecord").def(py::init(&StyleOf));
    py::class_<Authoring::LayerRecord>(module, "LayerRecord").def(py::init(&LayerOf));
    py::class_<SceneWriter>(module, "SceneWriter", KVR_DOC(SceneWriter, SceneWriter))
        .def(py::init([](std::string const& path)
                      { return std::make_unique<SceneWriter>(UTF16String{UTF8String(path)}); }))
        .def("begin_assembly", [](SceneWriter& writer, std::string const& id, std::string const& label,
                                  std::optional<std::string> const& unit, std::vector<std::string> const& styles,
                                  Properties const& properties)
             { writer.BeginAssembly(ComponentOf(id, label, unit, styles, properties)); })
        .def("end_assembly", &SceneWriter::EndAssembly)
        .def("begin_part",
             [](SceneWriter& writer, std::string const& id, std::string const& label,
                std::optional<std::string> const& unit, std::vector<std::string> const& styles,
                Properties const& properties) { writer.BeginPart(ComponentOf(id, label, unit, styles, properties)); })
        .def("end_part", &SceneWriter::EndPart)
        .def("instance", &WriteInstance)
        .def("mesh", &WriteMesh)
        .def("body", &WriteBody)
        .def("points", &WritePoints)
        .def("file", &WriteFile)
        .def("finish", &SceneWriter::Finish);
}

}  // namespace KVR::Python
