#include "exchange/export/GltfPrimitives.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <set>

#include "framework/api/kvr_api.h"
#include "framework/kernel/entity.h"

namespace KVR
{

namespace
{

using tinygltf::Value;

constexpr char kFeatures[] = "EXT_mesh_features";

// Those of a run in lists of their own, in which a vertex that faces share is one for each of them.
struct CopiedNumbers
{
    explicit CopiedNumbers(RunNumbers const& of)
        : positions(of.positions.begin(), of.positions.end()),
          normals(of.normals.begin(), of.normals.end()),
          texture(of.texture.begin(), of.texture.end()),
          indices(of.indices.begin(), of.indices.end())
    {
        for (std::uint32_t& index : indices)
            index -= static_cast<std::uint32_t>(of.firstVertex);
    }

    RunNumbers View() const { return {positions, normals, texture, indices, 0}; }

    std::vector<double> positions;
    std::vector<float> normals;
    std::vector<float> texture;
    std::vector<std::uint32_t> indices;
    /// The face of each vertex, the number of faces for none.
    std::vector<float> faces;
    std::set<std::uint32_t> facesUsed;
};

template <class Number>
void Repeat(std::vector<Number>& numbers, std::size_t vertex, std::size_t width)
{
    for (std::size_t i = 0; !numbers.empty() && i < width; ++i)
        numbers.push_back(numbers[width * vertex + i]);
}

// Gives each vertex its face.
void TellFacesApart(CopiedNumbers& numbers, SceneMesh const& mesh, SceneMesh::Run const& run)
{
    constexpr std::uint32_t kUnset = SceneMesh::kNoFace - 1;
    auto const faceCount = static_cast<std::uint32_t>(mesh.faces.size());
    std::vector<std::uint32_t> faceOf(run.vertexCount, kUnset);
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> copies;
    for (std::size_t i = 0; i < numbers.indices.size(); ++i)
    {
        std::uint32_t const face = std::min(mesh.faceOfTriangle[run.firstTriangle + i / 3], faceCount);
        numbers.facesUsed.insert(face);
        std::uint32_t& index = numbers.indices[i];
        if (faceOf[index] == kUnset)
            faceOf[index] = face;
        if (faceOf[index] == face)
            continue;
        auto const [copy, isNew] = copies.try_emplace({index, face}, static_cast<std::uint32_t>(faceOf.size()));
        if (isNew)
        {
            faceOf.push_back(face);
            Repeat(numbers.positions, index, 3);
            Repeat(numbers.normals, index, 3);
            Repeat(numbers.texture, index, 2);
        }
        index = copy->second;
    }
    for (std::uint32_t const face : faceOf)
        numbers.faces.push_back(static_cast<float>(face));
}

// Null when no face has an id.
Value IdsOf(std::vector<SceneMesh::Face> const& faces)
{
    Value::Array ids;
    bool hasId = false;
    for (SceneMesh::Face const& face : faces)
    {
        std::string const& id = face.persistentId.empty() ? face.dataId : face.persistentId;
        hasId = hasId || !id.empty();
        ids.emplace_back(id);
    }
    // Beyond this a float has no place for each number.
    constexpr std::size_t kMostFaces = std::size_t{1} << 24U;
    return hasId && faces.size() < kMostFaces ? Value(ids) : Value();
}

}  // namespace

RunNumbers RunNumbers::Of(SceneMesh const& mesh, SceneMesh::Run const& run)
{
    auto const part = [](auto const& list, std::size_t width, std::size_t first, std::size_t count)
    { return std::span(list).subspan(width * first, width * count); };
    RunNumbers numbers;
    numbers.positions = part(mesh.positions, 3, run.firstVertex, run.vertexCount);
    if (run.hasNormals)
        numbers.normals = part(mesh.normals, 3, run.firstVertex, run.vertexCount);
    if (run.hasTexture)
        numbers.texture = part(mesh.texture, 2, run.firstVertex, run.vertexCount);
    numbers.indices = part(mesh.indices, 3, run.firstTriangle, run.triangleCount);
    numbers.firstVertex = run.firstVertex;
    return numbers;
}

GltfPrimitives::GltfPrimitives(ExportTask& task, tinygltf::Model& model)
    : m_task(task), m_model(model), m_buffers(model)
{
    for (SceneComponent const& component : task.scene.Components())
        for (SceneGeometry const& geometry : component.geometry)
            if (geometry.body)
                m_bodies.emplace(geometry.id, geometry.body);
}

GltfGeometry const& GltfPrimitives::Of(SceneGeometry const& geometry)
{
    auto const [entry, isNew] = m_geometry.try_emplace(geometry.object);
    GltfGeometry& made = entry->second;
    if (!isNew || m_task.watch.LeavesOut(geometry))
        return made;
    auto const work = m_task.watch.Begin(geometry);
    switch (geometry.kind)
    {
        case GeometryKind::kMesh:
        case GeometryKind::kBody:
            AddTriangles(made, MeshOf(geometry));
            if (made.drawings.empty() && geometry.body)
                AddLines(made.drawings, m_task.samples.LinesOf(geometry));
            break;
        case GeometryKind::kCurve:
            AddLines(made.drawings, m_task.samples.LinesOf(geometry));
            break;
        case GeometryKind::kPoint:
            AddPoint(made.drawings, *geometry.point);
            break;
        case GeometryKind::kCloud:
        case GeometryKind::kOther:
            break;
    }
    if (made.drawings.empty())
        m_task.notCarried.Add("pieces of geometry with nothing to draw");
    return made;
}

double GltfPrimitives::SizeOf(SceneGeometry const& geometry) const
{
    double size = 0.0;
    auto const found = m_geometry.find(geometry.object);
    if (found == m_geometry.end())
        return size;
    for (GltfDrawing const& drawing : found->second.drawings)
    {
        auto const points = static_cast<std::size_t>(drawing.primitive.attributes.at("POSITION"));
        std::vector<double> const& low = m_model.accessors[points].minValues;
        std::vector<double> const& high = m_model.accessors[points].maxValues;
        size = std::max(size, std::hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]));
    }
    return size;
}

SceneMesh GltfPrimitives::MeshOf(SceneGeometry const& geometry)
{
    SceneMesh mesh = geometry.mesh ? SceneMesh::Of(*geometry.mesh) : m_task.samples.MeshOf(geometry);
    m_task.notCarried.Add("polygons whose indices make no sense", mesh.brokenPolygons);
    m_task.notCarried.Add("faces that could not be meshed", mesh.facesWithoutTriangles);
    if (auto const body = m_bodies.find(geometry.bodyId); geometry.mesh && body != m_bodies.end())
        mesh.TakeIdsOf(*body->second);
    return mesh;
}

void GltfPrimitives::AddTriangles(GltfGeometry& made, SceneMesh const& mesh)
{
    made.faces = mesh.faceOfTriangle.empty() ? Value() : IdsOf(mesh.faces);
    // As much as it takes when no vertex has to be doubled and all indices are long.
    m_buffers.Reserve(sizeof(float) *
                      (mesh.positions.size() + mesh.normals.size() + mesh.texture.size() + mesh.indices.size()));
    for (SceneMesh::Run const& run : mesh.runs)
        AddRun(made, mesh, run);
}

void GltfPrimitives::AddRun(GltfGeometry& made, SceneMesh const& mesh, SceneMesh::Run const& run)
{
    GltfDrawing& drawing = made.drawings.emplace_back();
    drawing.style = m_task.scene.StyleOf(run.style);
    drawing.surface = run.hasTexture ? GltfSurface::kTextured : GltfSurface::kPlain;
    tinygltf::Primitive& primitive = drawing.primitive;
    primitive.mode = TINYGLTF_MODE_TRIANGLES;
    if (!made.faces.IsArray())
        return AddNumbers(primitive, RunNumbers::Of(mesh, run));
    CopiedNumbers numbers(RunNumbers::Of(mesh, run));
    TellFacesApart(numbers, mesh, run);
    auto const faceCount = static_cast<std::uint32_t>(mesh.faces.size());
    bool const hasNone = numbers.facesUsed.erase(faceCount) > 0;
    primitive.attributes["_FEATURE_ID_0"] = m_buffers.AddFloats(numbers.faces, TINYGLTF_TYPE_SCALAR);
    Value::Object feature;
    feature["featureCount"] = Value(std::max(1, static_cast<int>(numbers.facesUsed.size())));
    feature["attribute"] = Value(0);
    feature["label"] = Value(std::string("face"));
    if (hasNone)
        feature["nullFeatureId"] = Value(static_cast<int>(faceCount));
    Value::Object features;
    features["featureIds"] = Value(Value::Array{Value(feature)});
    primitive.extensions[kFeatures] = Value(features);
    UseExtension(m_model, kFeatures);
    AddNumbers(primitive, numbers.View());
}

void GltfPrimitives::AddNumbers(tinygltf::Primitive& primitive, RunNumbers const& numbers)
{
    primitive.attributes["POSITION"] = m_buffers.AddPoints(numbers.positions);
    if (!numbers.normals.empty())
        primitive.attributes["NORMAL"] = m_buffers.AddFloats(numbers.normals, TINYGLTF_TYPE_VEC3);
    if (!numbers.texture.empty())
        primitive.attributes["TEXCOORD_0"] = m_buffers.AddFloats(numbers.texture, TINYGLTF_TYPE_VEC2);
    primitive.indices = m_buffers.AddIndices(numbers.indices, numbers.firstVertex, numbers.positions.size() / 3);
}

void GltfPrimitives::AddLines(std::vector<GltfDrawing>& drawings, SceneLines const& lines)
{
    for (std::size_t i = 0; i < lines.Count(); ++i)
    {
        GltfDrawing& drawing = drawings.emplace_back();
        drawing.surface = GltfSurface::kCurve;
        drawing.primitive.mode = TINYGLTF_MODE_LINE_STRIP;
        drawing.primitive.attributes["POSITION"] = m_buffers.AddPoints(lines.At(i));
    }
}

void GltfPrimitives::AddPoint(std::vector<GltfDrawing>& drawings, IPoint const& point)
{
    std::array<double, 3> const position{point.X(), point.Y(), point.Z()};
    for (double const x : position)
        if (!(std::abs(x) <= std::numeric_limits<float>::max()))
            return;
    GltfDrawing& drawing = drawings.emplace_back();
    drawing.surface = GltfSurface::kCurve;
    drawing.primitive.mode = TINYGLTF_MODE_POINTS;
    drawing.primitive.attributes["POSITION"] = m_buffers.AddPoints(position);
}

}  // namespace KVR
