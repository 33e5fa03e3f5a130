#pragma once

#include <tiny_gltf.h>

#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/export/Drawing.h"
#include "host/export/GltfBuffer.h"
#include "host/export/GltfMaterials.h"
#include "host/export/Tessellation.h"

namespace KVR
{

/// The meshes of a glTF model: geometry is written once, however often and in whatever style it is placed.
class GltfMeshes
{
public:
    static constexpr int kNone = -1;

    GltfMeshes(ExportTask& task, tinygltf::Model& model);

    /// The index of a mesh of the geometry in its style, after a change of its points, which is the identity but where
    /// a node cannot have the transform; kNone when there is nothing to show.
    int Of(ModelGeometry const& geometry, DrawnGeometry const& drawn, Matrix const& change);

    void Finish() { m_buffer.Finish(); }

private:
    struct Triangles
    {
        std::string style;
        int indices;
    };
    struct Piece
    {
        int positions = kNone;
        int normals = kNone;
        int texture = kNone;
        std::vector<Triangles> triangles;
        /// Primitives of lines and points: their modes, positions and indices.
        struct Thin
        {
            int mode;
            int positions;
            int indices;
        };
        std::vector<Thin> thin;
        /// The meshes by their style, with a sign of whether faces keep theirs.
        std::unordered_map<std::string, int> meshes;
    };

    Piece& PieceOf(ModelGeometry const& geometry, Matrix const& change);
    void Write(Tessellation& shown, Matrix const& change, Piece& piece);
    void WriteLines(Tessellation const& shown, Piece& piece);
    int AddMesh(ModelGeometry const& geometry, DrawnGeometry const& drawn, Piece const& piece);

    ExportTask& m_task;
    tinygltf::Model& m_model;
    GltfBuffer m_buffer;
    GltfMaterials m_materials;
    Tessellator m_tessellator;
    std::unordered_map<ModelGeometry const*, Piece> m_pieces;
    std::map<std::pair<ModelGeometry const*, Matrix>, Piece> m_changedPieces;
};

}  // namespace KVR
