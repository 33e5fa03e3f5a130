#include "host/export/GltfMeshes.h"

#include <algorithm>

#include "host/export/GltfExtras.h"
#include "host/export/Placing.h"

namespace KVR
{

namespace
{

void Change(Matrix const& change, std::vector<Triple>& points)
{
    for (Triple& point : points)
        point = PlacedPoint(change, point);
}

}  // namespace

GltfMeshes::GltfMeshes(ExportTask& task, tinygltf::Model& model)
    : m_task(task), m_model(model), m_buffer(model), m_materials(task, model), m_tessellator(task)
{
}

int GltfMeshes::Of(ModelGeometry const& geometry, DrawnGeometry const& drawn, Matrix const& change)
{
    Piece& piece = PieceOf(geometry, change);
    if (piece.triangles.empty() && piece.thin.empty())
        return kNone;
    auto const [entry, isNew] = piece.meshes.try_emplace((drawn.keepsFaceStyles ? '+' : '-') + drawn.style, kNone);
    if (isNew)
        entry->second = AddMesh(geometry, drawn, piece);
    return entry->second;
}

GltfMeshes::Piece& GltfMeshes::PieceOf(ModelGeometry const& geometry, Matrix const& change)
{
    bool isNew = false;
    Piece* piece = nullptr;
    if (change == kIdentity)
    {
        auto const result = m_pieces.try_emplace(&geometry);
        isNew = result.second;
        piece = &result.first->second;
    }
    else
    {
        auto const result = m_changedPieces.try_emplace({&geometry, change});
        isNew = result.second;
        piece = &result.first->second;
    }
    if (isNew)
    {
        Tessellation shown = m_tessellator.Of(geometry);
        Write(shown, change, *piece);
    }
    return *piece;
}

void GltfMeshes::Write(Tessellation& shown, Matrix const& change, Piece& piece)
{
    if (change != kIdentity)
    {
        Change(change, shown.points);
        Change(change, shown.dots);
        for (std::vector<Triple>& line : shown.lines)
            Change(change, line);
        NormalPlacing const placing(change);
        for (Triple& normal : shown.normals)
            normal = placing.Placed(normal);
        if (IsMirrored(change))
            for (Tessellation::Group& group : shown.groups)
                for (std::size_t i = 0; i + 2 < group.corners.size(); i += 3)
                    std::swap(group.corners[i + 1], group.corners[i + 2]);
    }
    if (!shown.groups.empty())
    {
        piece.positions = m_buffer.Positions(shown.points);
        if (!shown.normals.empty())
            piece.normals = m_buffer.Normals(shown.normals);
        if (!shown.texture.empty())
            piece.texture = m_buffer.Texture(shown.texture);
        for (Tessellation::Group const& group : shown.groups)
            piece.triangles.push_back({group.style, m_buffer.Indices(group.corners, shown.points.size())});
    }
    WriteLines(shown, piece);
    if (!shown.dots.empty())
        piece.thin.push_back({TINYGLTF_MODE_POINTS, m_buffer.Positions(shown.dots), kNone});
}

// One line is a strip; of several, each has its segments in one primitive.
void GltfMeshes::WriteLines(Tessellation const& shown, Piece& piece)
{
    if (shown.lines.size() == 1)
        piece.thin.push_back({TINYGLTF_MODE_LINE_STRIP, m_buffer.Positions(shown.lines.front()), kNone});
    if (shown.lines.size() < 2)
        return;
    std::vector<Triple> points;
    std::vector<std::uint32_t> indices;
    for (std::vector<Triple> const& line : shown.lines)
    {
        for (std::size_t i = 0; i + 1 < line.size(); ++i)
            for (std::size_t const end : {i, i + 1})
                indices.push_back(static_cast<std::uint32_t>(points.size() + end));
        points.insert(points.end(), line.begin(), line.end());
    }
    int const positions = m_buffer.Positions(points);
    piece.thin.push_back({TINYGLTF_MODE_LINE, positions, m_buffer.Indices(indices, points.size())});
}

int GltfMeshes::AddMesh(ModelGeometry const& geometry, DrawnGeometry const& drawn, Piece const& piece)
{
    tinygltf::Mesh mesh;
    mesh.name = geometry.label.empty() ? geometry.id : geometry.label;
    nlohmann::json extras = {{"id", geometry.id}, {"type", geometry.className}};
    if (!geometry.bodyId.empty())
        extras["body"] = geometry.bodyId;
    PutObjectExtras(m_task, geometry.object, extras);
    mesh.extras = ExtrasOf(extras);
    for (Triangles const& triangles : piece.triangles)
    {
        tinygltf::Primitive primitive;
        primitive.mode = TINYGLTF_MODE_TRIANGLES;
        primitive.attributes["POSITION"] = piece.positions;
        if (piece.normals != kNone)
            primitive.attributes["NORMAL"] = piece.normals;
        if (piece.texture != kNone)
            primitive.attributes["TEXCOORD_0"] = piece.texture;
        primitive.indices = triangles.indices;
        bool const hasOwn = drawn.keepsFaceStyles && !triangles.style.empty();
        primitive.material = m_materials.Of(hasOwn ? triangles.style : drawn.style, false);
        mesh.primitives.push_back(std::move(primitive));
    }
    for (Piece::Thin const& thin : piece.thin)
    {
        tinygltf::Primitive primitive;
        primitive.mode = thin.mode;
        primitive.attributes["POSITION"] = thin.positions;
        primitive.indices = thin.indices;
        primitive.material = m_materials.Of(drawn.style, true);
        mesh.primitives.push_back(std::move(primitive));
    }
    m_model.meshes.push_back(std::move(mesh));
    return static_cast<int>(m_model.meshes.size()) - 1;
}

}  // namespace KVR
