#include <tiny_gltf.h>

#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "exchange/certify/FactReaders.h"
#include "scene/Scene.h"

namespace KVR
{

namespace
{

using Point = std::array<double, 3>;

// From metres with y up to millimetres with z up.
constexpr Matrix kToMillimetres{1e3, 0, 0, 0, 0, 0, -1e3, 0, 0, 1e3, 0, 0, 0, 0, 0, 1};

double Srgb(double linear)
{
    return linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1.0 / 2.4) - 0.055;
}

Matrix MatrixOf(tinygltf::Node const& node)
{
    Matrix matrix = kIdentity;
    for (std::size_t i = 0; i < node.matrix.size() && i < 16; ++i)
        matrix[4 * (i % 4) + i / 4] = node.matrix[i];
    return matrix;
}

class GlbReader
{
public:
    explicit GlbReader(tinygltf::Model const& model) : m_model(model) {}

    ModelFacts Read()
    {
        m_facts.occurrences = m_facts.triangles = m_facts.views = m_facts.layerMembers = 0;
        m_facts.names.emplace();
        m_facts.drawnColors.emplace();
        m_facts.layers.emplace();
        tinygltf::Scene const& scene = m_model.scenes.at(0);
        for (int const node : scene.nodes)
            if (m_model.nodes.at(static_cast<std::size_t>(node)).camera < 0)
                Walk(m_model.nodes.at(static_cast<std::size_t>(node)), kToMillimetres);
        if (scene.extras.Has("views"))
            m_facts.views = scene.extras.Get("views").ArrayLen();
        if (scene.extras.Has("layers"))
        {
            tinygltf::Value const& layers = scene.extras.Get("layers");
            for (std::size_t i = 0; i < layers.ArrayLen(); ++i)
            {
                m_facts.layers->insert(layers.Get(static_cast<int>(i)).Get("label").Get<std::string>());
                *m_facts.layerMembers += layers.Get(static_cast<int>(i)).Get("items").ArrayLen();
            }
        }
        return std::move(m_facts);
    }

private:
    void Walk(tinygltf::Node const& node, Matrix const& place)
    {
        Matrix const all = Product(place, MatrixOf(node));
        if (node.extras.Has("kind"))
        {
            if (node.extras.Get("kind").Get<std::string>() == "IPart")
                ++*m_facts.occurrences;
            // A node without a label has the id for its name.
            if (node.name != node.extras.Get("id").Get<std::string>())
                m_facts.names->insert(node.name);
            if (node.extras.Has("componentLabel"))
                if (std::string const label = node.extras.Get("componentLabel").Get<std::string>(); !label.empty())
                    m_facts.names->insert(label);
        }
        if (node.mesh >= 0)
            AddMesh(m_model.meshes.at(static_cast<std::size_t>(node.mesh)), all);
        for (int const child : node.children)
            Walk(m_model.nodes.at(static_cast<std::size_t>(child)), all);
    }

    void AddMesh(tinygltf::Mesh const& mesh, Matrix const& place)
    {
        for (tinygltf::Primitive const& primitive : mesh.primitives)
        {
            if (primitive.mode != TINYGLTF_MODE_TRIANGLES)
                continue;
            if (primitive.material >= 0)
            {
                auto const& material = m_model.materials.at(static_cast<std::size_t>(primitive.material));
                auto const& color = material.pbrMetallicRoughness.baseColorFactor;
                if (material.name != "default")
                    m_facts.drawnColors->insert(ColorText(Srgb(color[0]), Srgb(color[1]), Srgb(color[2]), color[3]));
            }
            std::vector<Point> points = PointsOf(primitive.attributes.at("POSITION"), place);
            Measures& measures = m_facts.mesh ? *m_facts.mesh : m_facts.mesh.emplace();
            std::vector<std::uint32_t> const indices = IndicesOf(primitive.indices);
            for (std::size_t i = 0; i + 2 < indices.size(); i += 3)
            {
                AddTriangle(measures, points.at(indices[i]), points.at(indices[i + 1]), points.at(indices[i + 2]));
                ++*m_facts.triangles;
            }
        }
    }

    unsigned char const* BytesOf(tinygltf::Accessor const& accessor) const
    {
        auto const& view = m_model.bufferViews.at(static_cast<std::size_t>(accessor.bufferView));
        return m_model.buffers.at(static_cast<std::size_t>(view.buffer)).data.data() + view.byteOffset +
               accessor.byteOffset;
    }

    std::vector<Point> PointsOf(int index, Matrix const& place)
    {
        auto const& accessor = m_model.accessors.at(static_cast<std::size_t>(index));
        unsigned char const* const bytes = BytesOf(accessor);
        std::vector<Point> points;
        for (std::size_t i = 0; i < accessor.count; ++i)
        {
            std::array<float, 3> values;
            std::memcpy(values.data(), bytes + i * sizeof values, sizeof values);
            Point point{};
            for (std::size_t row = 0; row < 3; ++row)
                point[row] = place[4 * row] * static_cast<double>(values[0]) +
                             place[4 * row + 1] * static_cast<double>(values[1]) +
                             place[4 * row + 2] * static_cast<double>(values[2]) + place[4 * row + 3];
            points.push_back(point);
            m_facts.AddPoint(point[0], point[1], point[2]);
        }
        return points;
    }

    std::vector<std::uint32_t> IndicesOf(int index) const
    {
        auto const& accessor = m_model.accessors.at(static_cast<std::size_t>(index));
        unsigned char const* const bytes = BytesOf(accessor);
        std::size_t const width = accessor.componentType == TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT ? 2 : 4;
        std::vector<std::uint32_t> indices(accessor.count, 0);
        for (std::size_t i = 0; i < accessor.count; ++i)
            std::memcpy(&indices[i], bytes + i * width, width);
        return indices;
    }

    tinygltf::Model const& m_model;
    ModelFacts m_facts;
};

}  // namespace

ModelFacts FactsOfGlb(std::string const& path)
{
    tinygltf::TinyGLTF reader;
    tinygltf::Model model;
    std::string error;
    std::string warning;
    std::ifstream file(path, std::ios::binary);
    std::vector<unsigned char> const bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (!file.good() && !file.eof())
        throw std::runtime_error("the exported GLB cannot be read");
    if (!reader.LoadBinaryFromMemory(&model, &error, &warning, bytes.data(), static_cast<unsigned>(bytes.size())))
        throw std::runtime_error("the exported GLB cannot be read: " + error);
    return GlbReader(model).Read();
}

}  // namespace KVR
