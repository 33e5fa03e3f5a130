#include "exchange/meshes/MeshParts.h"

#include <map>
#include <tuple>

#include "exchange/meshes/ColorTexture.h"
#include "exchange/meshes/MeshReading.h"

namespace KVR
{

namespace
{

using ByteColor = MeshModel::ByteColor;

// The colour that a triangle has, if it has one, and whether it is the same all over it.
struct TriangleColor
{
    std::optional<ByteColor> color;
    bool isMean = false;
};

TriangleColor ColorOf(MeshModel::Mesh const& mesh, std::size_t triangle)
{
    if (!mesh.triangleColors.empty())
        return {mesh.triangleColors[triangle], false};
    ByteColor const* const all = mesh.pointColors.data();
    ByteColor const& a = all[mesh.corners[3 * triangle]];
    ByteColor const& b = all[mesh.corners[3 * triangle + 1]];
    ByteColor const& c = all[mesh.corners[3 * triangle + 2]];
    if (a == b && b == c)
        return {a, false};
    ByteColor mean;
    for (std::size_t i = 0; i < mean.size(); ++i)
        mean[i] = static_cast<std::uint8_t>((a[i] + b[i] + c[i] + 1) / 3);
    return {mean, true};
}

MeshModel::Color Fractions(ByteColor const& color)
{
    return {color[0] / 255.0, color[1] / 255.0, color[2] / 255.0, color[3] / 255.0};
}

class Folder
{
public:
    explicit Folder(MeshModel& model) : m_model(model) {}

    void Fold()
    {
        for (MeshModel::Mesh& mesh : m_model.meshes)
            for (std::size_t i = 0; HasColors(mesh) && i < mesh.TriangleCount() && m_folded.size() <= kMostColors; ++i)
                m_folded.try_emplace({*ColorOf(mesh, i).color, MaterialOf(mesh, i)}, MeshModel::kNone);
        bool const hasRoom = m_folded.size() <= kMostColors;
        for (MeshModel::Mesh& mesh : m_model.meshes)
        {
            if (!HasColors(mesh))
            {
                m_model.losses.AddOf("colours of points that are in no triangle", mesh.name, mesh.pointColors.size());
                continue;
            }
            if (hasRoom)
                m_model.losses.AddOf("changes of colour within triangles, which have the mean", mesh.name,
                                     FoldMesh(mesh));
            else if (!MakeColorTexture(m_model, mesh))
                m_model.losses.AddOf(
                    mesh.triangleColors.empty() ? "colours of points" : "colours of triangles", mesh.name,
                    mesh.triangleColors.empty() ? mesh.pointColors.size() : mesh.triangleColors.size());
        }
    }

private:
    static bool HasColors(MeshModel::Mesh const& mesh)
    {
        return !mesh.corners.empty() && (!mesh.pointColors.empty() || !mesh.triangleColors.empty());
    }
    static std::uint32_t MaterialOf(MeshModel::Mesh const& mesh, std::size_t triangle)
    {
        return mesh.materials.empty() ? MeshModel::kNone : mesh.materials[triangle];
    }

    unsigned long long FoldMesh(MeshModel::Mesh& mesh)
    {
        unsigned long long means = 0;
        mesh.materials.resize(mesh.TriangleCount(), MeshModel::kNone);
        for (std::size_t i = 0; i < mesh.TriangleCount(); ++i)
        {
            TriangleColor const color = ColorOf(mesh, i);
            means += color.isMean ? 1 : 0;
            std::uint32_t& material = m_folded.at({*color.color, mesh.materials[i]});
            if (material == MeshModel::kNone)
                material = Colored(mesh.materials[i], *color.color);
            mesh.materials[i] = material;
        }
        return means;
    }

    // The material with another colour.
    std::uint32_t Colored(std::uint32_t from, ByteColor const& color)
    {
        MeshModel::Material material;
        if (from != MeshModel::kNone)
            material = m_model.materials[from];
        material.color = Fractions(color);
        m_model.materials.push_back(std::move(material));
        return static_cast<std::uint32_t>(m_model.materials.size() - 1);
    }

    MeshModel& m_model;
    std::map<std::pair<ByteColor, std::uint32_t>, std::uint32_t> m_folded;
};

}  // namespace

void MakePartsOfMeshes(MeshModel& model, std::string const& name)
{
    MeshModel::Component root;
    root.name = TextOfBytes(name);
    root.isAssembly = model.meshes.size() > 1;
    if (!root.isAssembly && !model.meshes.empty())
        root.meshes.push_back(0);
    model.components.push_back(root);
    for (std::size_t i = 0; root.isAssembly && i < model.meshes.size(); ++i)
    {
        MeshModel::Component part;
        part.name = model.meshes[i].name;
        part.meshes.push_back(i);
        MeshModel::Placement placement;
        placement.name = part.name;
        placement.component = model.components.size();
        model.components.push_back(std::move(part));
        model.components.front().placements.push_back(std::move(placement));
    }
}

void FoldColors(MeshModel& model)
{
    Folder(model).Fold();
}

}  // namespace KVR
