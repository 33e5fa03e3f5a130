#include "exchange/meshes/ColorTexture.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "exchange/meshes/PngBytes.h"

namespace KVR
{

namespace
{

using ByteColor = MeshModel::ByteColor;
using Corners = std::array<ByteColor, 3>;

// As glTF numbers them: linear in both directions, without smaller pictures, which would mix what is side by side.
constexpr char kSampler[] = R"({"magFilter":9729,"minFilter":9729,"wrapS":33071,"wrapT":33071})";

Corners CornersOf(MeshModel::Mesh const& mesh, std::size_t triangle)
{
    if (!mesh.triangleColors.empty())
        return {mesh.triangleColors[triangle], mesh.triangleColors[triangle], mesh.triangleColors[triangle]};
    return {mesh.pointColors[mesh.corners[3 * triangle]], mesh.pointColors[mesh.corners[3 * triangle + 1]],
            mesh.pointColors[mesh.corners[3 * triangle + 2]]};
}

// The fourth pixel, which makes the change of colour an even one.
ByteColor Opposite(Corners const& corners)
{
    ByteColor color{};
    for (std::size_t i = 0; i < color.size(); ++i)
        color[i] = static_cast<std::uint8_t>(std::clamp(corners[1][i] + corners[2][i] - corners[0][i], 0, 255));
    return color;
}

// Blocks of four pixels, one for each of the triangles that differ.
class Blocks
{
public:
    explicit Blocks(std::vector<Corners> triangles) : m_blocks(std::move(triangles))
    {
        std::sort(m_blocks.begin(), m_blocks.end());
        m_blocks.erase(std::unique(m_blocks.begin(), m_blocks.end()), m_blocks.end());
    }

    std::size_t Count() const { return m_blocks.size(); }
    std::size_t PlaceOf(Corners const& corners) const
    {
        return static_cast<std::size_t>(std::lower_bound(m_blocks.begin(), m_blocks.end(), corners) - m_blocks.begin());
    }

    bool IsOpaque() const
    {
        return std::all_of(m_blocks.begin(), m_blocks.end(),
                           [](Corners const& corners)
                           { return corners[0][3] == 255 && corners[1][3] == 255 && corners[2][3] == 255; });
    }

    // Three places in the texture for each block.
    std::vector<double> Places() const
    {
        std::vector<double> places;
        places.reserve(6 * m_blocks.size());
        auto const width = static_cast<double>(2 * Columns());
        auto const height = static_cast<double>(2 * Rows());
        for (std::size_t i = 0; i < m_blocks.size(); ++i)
        {
            auto const column = static_cast<double>(2 * (i % Columns()));
            std::size_t const row = 2 * (i / Columns());
            for (auto const& [right, down] : {std::pair{0.5, 0.5}, {1.5, 0.5}, {0.5, 1.5}})
            {
                places.push_back((column + right) / width);
                places.push_back((static_cast<double>(row) + down) / height);
            }
        }
        return places;
    }

    std::string Picture() const
    {
        std::size_t const width = 2 * Columns();
        std::vector<unsigned char> pixels(4 * width * 2 * Rows());
        auto const put = [&](std::size_t column, std::size_t row, ByteColor const& color) {
            std::copy(color.begin(), color.end(),
                      pixels.begin() + static_cast<std::ptrdiff_t>(4 * (row * width + column)));
        };
        for (std::size_t i = 0; i < m_blocks.size(); ++i)
        {
            std::size_t const column = 2 * (i % Columns());
            std::size_t const row = 2 * (i / Columns());
            put(column, row, m_blocks[i][0]);
            put(column + 1, row, m_blocks[i][1]);
            put(column, row + 1, m_blocks[i][2]);
            put(column + 1, row + 1, Opposite(m_blocks[i]));
        }
        return PngBytes(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(2 * Rows()), pixels);
    }

private:
    std::size_t Columns() const
    {
        return static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(m_blocks.size()))));
    }
    std::size_t Rows() const { return (m_blocks.size() + Columns() - 1) / Columns(); }

    std::vector<Corners> m_blocks;
};

// The material of a triangle with the texture in place of its colour.
std::uint32_t Textured(MeshModel& model, std::uint32_t from, std::uint32_t texture, bool isOpaque)
{
    MeshModel::Material material;
    if (from != MeshModel::kNone)
        material = model.materials[from];
    material.color = {1.0, 1.0, 1.0, 1.0};
    material.colorTexture = texture;
    if (!isOpaque && material.details.empty())
        material.details = R"({"alphaMode":"BLEND"})";
    model.materials.push_back(std::move(material));
    return static_cast<std::uint32_t>(model.materials.size() - 1);
}

}  // namespace

bool MakeColorTexture(MeshModel& model, MeshModel::Mesh& mesh)
{
    if (!mesh.texture.empty())
        return false;
    std::vector<Corners> triangles;
    triangles.reserve(mesh.TriangleCount());
    for (std::size_t i = 0; i < mesh.TriangleCount(); ++i)
        triangles.push_back(CornersOf(mesh, i));
    Blocks const blocks(std::move(triangles));
    if (blocks.Count() > kMostColoredTriangles)
        return false;
    std::vector<std::uint32_t> cornerTexture;
    cornerTexture.reserve(mesh.corners.size());
    for (std::size_t i = 0; i < mesh.TriangleCount(); ++i)
    {
        std::size_t const block = blocks.PlaceOf(CornersOf(mesh, i));
        for (std::size_t corner = 0; corner < 3; ++corner)
            cornerTexture.push_back(static_cast<std::uint32_t>(3 * block + corner));
    }
    model.images.push_back({"colours", blocks.Picture(), {}});
    MeshModel::Texture texture;
    texture.image = model.images.size() - 1;
    texture.sampler = kSampler;
    model.textures.push_back(std::move(texture));
    mesh.texture = blocks.Places();
    mesh.cornerTexture = std::move(cornerTexture);
    mesh.materials.resize(mesh.TriangleCount(), MeshModel::kNone);
    std::map<std::uint32_t, std::uint32_t> made;
    bool const isOpaque = blocks.IsOpaque();
    for (std::uint32_t& material : mesh.materials)
    {
        auto const [entry, isNew] = made.try_emplace(material, MeshModel::kNone);
        if (isNew)
            entry->second = Textured(model, material, static_cast<std::uint32_t>(model.textures.size() - 1), isOpaque);
        material = entry->second;
    }
    return true;
}

}  // namespace KVR
