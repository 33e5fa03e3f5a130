#include "exchange/meshes/GltfMeshes.h"

#include <algorithm>
#include <cmath>

namespace KVR
{

namespace
{

using Json = GltfFile::Json;

enum Mode
{
    kPoints = 0,
    kLines = 1,
    kLineLoop = 2,
    kLineStrip = 3,
    kTriangles = 4,
    kTriangleStrip = 5,
    kTriangleFan = 6
};

// A corner takes a byte at the least; what is shared may be so many times.
constexpr std::size_t kMostShares = 4;
constexpr std::size_t kLeastRoom = std::size_t{1} << 20;

std::size_t TriangleCount(std::size_t mode, std::size_t corners)
{
    return mode == kTriangles ? corners / 3 : corners < 3 ? 0 : corners - 2;
}

}  // namespace

struct GltfMeshes::Primitive
{
    std::size_t mode = kTriangles;
    std::uint32_t material = MeshModel::kNone;
    std::optional<GltfAccessor> points;
    std::optional<GltfAccessor> normals;
    std::optional<GltfAccessor> texture;
    std::optional<GltfAccessor> colors;
    std::optional<GltfAccessor> indices;
    // Where its first point, normal and place in a texture stand in the mesh.
    std::size_t firstPoint = 0;
    std::size_t firstNormal = 0;
    std::size_t firstTexture = 0;

    std::size_t Count() const { return indices ? indices->Count() : points->Count(); }
    std::size_t Announced() const { return indices ? indices->Announced() : points->Announced(); }
    std::size_t ElementAt(std::size_t corner) const { return indices ? indices->IndexAt(corner) : corner; }
};

GltfMeshes::GltfMeshes(GltfFile& file, GltfFileMaterials const& materials)
    : m_file(file), m_model(file.Reading().model), m_materials(materials), m_meshes(file.List("meshes").size())
{
    m_room = kLeastRoom + kMostShares * file.Size();
}

std::vector<std::size_t> const& GltfMeshes::Of(std::size_t mesh)
{
    if (!m_meshes[mesh])
        Read(mesh);
    return *m_meshes[mesh];
}

void GltfMeshes::Finish()
{
    m_file.Reading().Short(m_taken, m_announced, "triangles");
    for (std::size_t i = 0; i < m_meshes.size(); ++i)
        if (!m_meshes[i])
            m_model.losses.AddItem("meshes that stand nowhere in the scene", m_file.NameOf("meshes", i));
}

void GltfMeshes::Read(std::size_t index)
{
    m_current = &m_meshes[index].emplace();
    Json const& mesh = m_file.List("meshes")[index];
    std::string const name = GltfFile::Text(mesh, "name");
    if (!mesh.is_object() || !mesh.contains("primitives") || !mesh["primitives"].is_array())
        return m_file.Reading().Damage("mesh " + std::to_string(index) + " has no primitives");
    for (Json const& primitive : mesh["primitives"])
        ReadPrimitive(name, primitive);
    if (mesh.contains("extras"))
        m_model.losses.AddItem("extras of meshes", m_file.NameOf("meshes", index));
}

void GltfMeshes::ReadPrimitive(std::string const& name, Json const& json)
{
    Json const& attributes = GltfFile::Object(json, "attributes");
    std::optional<std::size_t> const points = GltfFile::Index(attributes, "POSITION");
    if (!points)
        return m_file.Reading().Damage("a primitive of mesh \"" + name.substr(0, 80) + "\" has no points");
    Primitive primitive;
    primitive.mode = GltfFile::Index(json, "mode").value_or(kTriangles);
    auto const find = [&](std::optional<GltfAccessor>& accessor, Json const& object, char const* member,
                          std::initializer_list<char const*> types)
    {
        if (auto const index = GltfFile::Index(object, member))
            accessor.emplace(m_file, *index, types);
    };
    find(primitive.points, attributes, "POSITION", {"VEC3"});
    find(primitive.normals, attributes, "NORMAL", {"VEC3"});
    find(primitive.texture, attributes, "TEXCOORD_0", {"VEC2"});
    find(primitive.colors, attributes, "COLOR_0", {"VEC3", "VEC4"});
    find(primitive.indices, json, "indices", {"SCALAR"});
    if (m_file.Entry("materials", json, "material"))
        primitive.material = static_cast<std::uint32_t>(*GltfFile::Index(json, "material"));
    if (primitive.mode > kTriangleFan)
        return m_file.Reading().Damage("a primitive of mesh \"" + name.substr(0, 80) + "\" has a mode that is none");
    if (primitive.Count() > m_room)
        throw ModelError("its primitives name the same bytes too often");
    m_room -= primitive.Count();
    if (primitive.colors && !ReadColors(primitive))
        primitive.colors.reset();
    m_places.Begin();
    MeshModel::Mesh& mesh = MeshFor(primitive, name);
    primitive.firstPoint = mesh.PointCount();
    primitive.firstNormal = mesh.normals.size() / 3;
    primitive.firstTexture = mesh.texture.size() / 2;
    if (primitive.mode >= kTriangles)
        AddTriangles(mesh, primitive);
    else
        AddLines(mesh, primitive);
    CountOthers(name, json);
}

// Whether they say anything: all white is the material's colour.
bool GltfMeshes::ReadColors(Primitive& primitive)
{
    GltfAccessor const& colors = *primitive.colors;
    for (std::size_t i = 0; i < colors.Count(); ++i)
        for (std::size_t part = 0; part < colors.Width(); ++part)
            if (colors.At(i, part) < 1.0)
                return true;
    return false;
}

MeshModel::Mesh& GltfMeshes::MeshFor(Primitive const& primitive, std::string const& name)
{
    bool const isSurface = primitive.mode >= kTriangles;
    for (std::size_t const known : *m_current)
    {
        MeshModel::Mesh& mesh = m_model.meshes[known];
        if (isSurface ? !mesh.corners.empty() && mesh.pointColors.empty() == !primitive.colors
                      : mesh.corners.empty() && mesh.pointColors.empty() == !primitive.colors &&
                            (primitive.mode == kPoints ? mesh.lines.empty() && mesh.dotMaterial == primitive.material
                                                       : mesh.dots.empty() && mesh.lineMaterial == primitive.material))
            return mesh;
    }
    m_current->push_back(m_model.meshes.size());
    m_model.meshes.emplace_back().name = name;
    return m_model.meshes.back();
}

// The place of an element in the mesh; nothing for one that is not there or no point.
std::optional<std::uint32_t> GltfMeshes::PointOf(MeshModel::Mesh& mesh, Primitive& primitive, std::size_t element)
{
    GltfAccessor const& points = *primitive.points;
    if (element >= points.Count())
    {
        m_file.Reading().Damage("a primitive of mesh \"" + mesh.name.substr(0, 80) + "\" names point " +
                                WithCommas(element) + " of " + WithCommas(points.Count()));
        return {};
    }
    for (std::size_t axis = 0; axis < 3; ++axis)
        if (!std::isfinite(points.At(element, axis)))
        {
            m_file.Reading().Damage("a point of mesh \"" + mesh.name.substr(0, 80) + "\" is no number");
            return {};
        }
    return m_places.Of(
        element, mesh.PointCount(),
        [&]
        {
            auto const number = [&](GltfAccessor const& list, std::size_t part)
            {
                double const x = element < list.Count() && part < list.Width() ? list.At(element, part) : 0.0;
                return std::isfinite(x) ? x : 0.0;
            };
            for (std::size_t axis = 0; axis < 3; ++axis)
                mesh.points.push_back(points.At(element, axis));
            if (primitive.normals)
            {
                double const n[3] = {number(*primitive.normals, 0), number(*primitive.normals, 1),
                                     number(*primitive.normals, 2)};
                double const length = std::hypot(n[0], n[1], n[2]);
                // Those that are good stay as they are, but for the digits that their type does not have.
                for (double const x : n)
                    mesh.normals.push_back(length > 0.0 ? x / length : 0.0);
            }
            if (primitive.texture)
                mesh.texture.insert(mesh.texture.end(), {number(*primitive.texture, 0), number(*primitive.texture, 1)});
            if (primitive.colors)
            {
                MeshModel::Color color = primitive.material == MeshModel::kNone
                                             ? MeshModel::Color{1.0, 1.0, 1.0, 1.0}
                                             : m_materials.LinearColorOf(primitive.material);
                for (std::size_t part = 0; part < primitive.colors->Width(); ++part)
                    color[part] *= std::clamp(number(*primitive.colors, part), 0.0, 1.0);
                color = GltfFileMaterials::Srgb(color);
                MeshModel::ByteColor& bytes = mesh.pointColors.emplace_back();
                for (std::size_t part = 0; part < 4; ++part)
                    bytes[part] = static_cast<std::uint8_t>(std::lround(color[part] * 255.0));
            }
        });
}

void GltfMeshes::AddTriangles(MeshModel::Mesh& mesh, Primitive& primitive)
{
    std::size_t const count = TriangleCount(primitive.mode, primitive.Count());
    m_announced += TriangleCount(primitive.mode, primitive.Announced());
    if (primitive.mode == kTriangles && primitive.Announced() % 3 != 0)
        m_file.Reading().Damage("a primitive of mesh \"" + mesh.name.substr(0, 80) + "\" has " +
                                WithCommas(primitive.Announced()) + " corners, which are no whole triangles");
    mesh.pieces.push_back(mesh.TriangleCount());
    for (std::size_t i = 0; i < count; ++i)
    {
        std::array<std::size_t, 3> places{3 * i, 3 * i + 1, 3 * i + 2};
        if (primitive.mode == kTriangleStrip)
            places = {i + i % 2, i + 1 - i % 2, i + 2};
        else if (primitive.mode == kTriangleFan)
            places = {i + 1, i + 2, 0};
        std::array<std::uint32_t, 3> points{};
        bool isGood = true;
        for (std::size_t corner = 0; corner < 3 && isGood; ++corner)
        {
            auto const point = PointOf(mesh, primitive, primitive.ElementAt(places[corner]));
            isGood = point.has_value();
            points[corner] = point.value_or(0);
        }
        if (!isGood)
            continue;
        ++m_taken;
        mesh.materials.push_back(primitive.material);
        for (std::uint32_t const point : points)
        {
            std::size_t const local = point - primitive.firstPoint;
            std::size_t const normal = primitive.firstNormal + local;
            bool const hasNormal =
                primitive.normals && (mesh.normals[3 * normal] != 0.0 || mesh.normals[3 * normal + 1] != 0.0 ||
                                      mesh.normals[3 * normal + 2] != 0.0);
            mesh.corners.push_back(point);
            mesh.cornerNormals.push_back(hasNormal ? static_cast<std::uint32_t>(normal) : MeshModel::kNone);
            mesh.cornerTexture.push_back(primitive.texture ? static_cast<std::uint32_t>(primitive.firstTexture + local)
                                                           : MeshModel::kNone);
        }
    }
}

void GltfMeshes::AddLines(MeshModel::Mesh& mesh, Primitive& primitive)
{
    std::vector<std::uint32_t> points;
    for (std::size_t i = 0; i < primitive.Count(); ++i)
    {
        auto const point = PointOf(mesh, primitive, primitive.ElementAt(i));
        if (!point)
            return m_model.losses.AddItem("lines of points that are not there", mesh.name);
        points.push_back(*point);
    }
    if (primitive.mode == kPoints)
    {
        mesh.dotMaterial = primitive.material;
        mesh.dots.insert(mesh.dots.end(), points.begin(), points.end());
        return;
    }
    mesh.lineMaterial = primitive.material;
    if (primitive.mode == kLines)
        for (std::size_t i = 0; i + 1 < points.size(); i += 2)
            mesh.lines.push_back({points[i], points[i + 1]});
    else if (points.size() >= 2)
    {
        if (primitive.mode == kLineLoop)
            points.push_back(points.front());
        mesh.lines.push_back(std::move(points));
    }
}

void GltfMeshes::CountOthers(std::string_view mesh, Json const& json)
{
    Losses& losses = m_model.losses;
    if (json.contains("targets") && json["targets"].is_array())
        losses.AddOf("morph targets", "mesh " + std::string(mesh), json["targets"].size());
    for (auto const& [name, content] : GltfFile::Object(json, "extensions").items())
        losses.AddItem("extensions of primitives", name);
    for (auto const& [name, content] : GltfFile::Object(json, "attributes").items())
        if (name != "POSITION" && name != "NORMAL" && name != "TEXCOORD_0" && name != "COLOR_0")
            losses.AddItem("attributes of primitives", name);
}

}  // namespace KVR
