#include <cmath>
#include <filesystem>
#include <limits>
#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <unordered_set>

#include "host/UnitText.h"
#include "host/export/Drawing.h"
#include "host/export/ExportFile.h"
#include "host/export/Formats.h"
#include "host/export/GltfCameras.h"
#include "host/export/GltfExtras.h"
#include "host/export/GltfMeshes.h"
#include "host/export/Occurrences.h"
#include "host/export/OutputBuffer.h"
#include "host/export/Placing.h"

namespace KVR
{

namespace
{

constexpr int kNoNode = -1;

// Turns the scene's upward direction into glTF's, +Y, about the axis at right angles to both.
Matrix Upright(std::array<double, 3> const& up)
{
    double const cosine = up[1];
    if (cosine < -1.0 + 1e-9)
        return {1, 0, 0, 0, 0, -1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1};
    // The axis, times the sine of the angle: up x Y.
    double const x = -up[2];
    double const z = up[0];
    double const share = 1.0 / (1.0 + cosine);
    return {cosine + share * x * x, -z, share * x * z, 0.0, z,   cosine, -x,  0.0,
            share * x * z,          x,  cosine + share * z * z, 0.0, 0.0, 0.0,    0.0, 1.0};
}

class GltfExporter
{
public:
    explicit GltfExporter(ExportTask& task)
        : m_task(task), m_upright(Upright(task.scene.upVector)), m_meshes(task, m_model), m_drawing(task)
    {
    }

    tinygltf::Model& Make()
    {
        m_model.asset.version = "2.0";
        m_model.asset.generator = "kvr " KVR_VERSION;
        m_model.scenes.emplace_back();
        m_model.defaultScene = 0;
        WalkOccurrences(m_task.scene, Above{},
                        [&](Above const& above, ModelPlacement const* placement, ModelComponent const& component,
                            OccurrenceState const& state) { return Enter(above, placement, component, state); });
        AddGltfCameras(m_task, m_upright, m_model);
        m_meshes.Finish();
        m_hidden += m_drawing.Hidden();
        PutSceneExtras();
        m_task.notCarried.Add("hidden objects", m_hidden);
        return m_model;
    }

private:
    struct Above
    {
        int node = kNoNode;
        ModelComponent const* component = nullptr;
        /// Of the node and all above it what no node could have, and what is below has to have.
        Matrix rest = kIdentity;
    };

    std::optional<Above> Enter(Above const& above, ModelPlacement const* placement, ModelComponent const& component,
                               OccurrenceState const& state)
    {
        if (!state.isVisible)
        {
            ++m_hidden;
            return std::nullopt;
        }
        tinygltf::Node node;
        bool const isInstance = placement && !placement->id.empty();
        node.name = isInstance && !placement->label.empty() ? placement->label : component.label;
        if (node.name.empty())
            node.name = component.id;
        nlohmann::json extras = {{"component", component.id}};
        if (isInstance)
        {
            extras["id"] = placement->id;
            PutObjectExtras(m_task, placement->object, extras);
        }
        node.extras = ExtrasOf(extras);
        if (m_seen.insert(&component).second)
            m_components[component.id] = ComponentExtras(m_task, component);
        Matrix const place = Product(Sound(state.transform), above.component ? UnitChange(component, *above.component)
                                                                             : RootScale(component));
        Above below;
        below.component = &component;
        below.rest = PutPlace(Product(above.rest, place), node);
        below.node = AddNode(above.node, std::move(node));
        Draw(component, state, below);
        return below;
    }

    Matrix RootScale(ModelComponent const& root) const
    {
        Matrix scale = kIdentity;
        scale[0] = scale[5] = scale[10] = root.metresPerUnit;
        return Product(m_upright, scale);
    }

    // Gives the node a transform when it can have it, and answers what is left of it.
    static Matrix PutPlace(Matrix const& place, tinygltf::Node& node)
    {
        if (!IsDecomposable(place))
            return place;
        if (place != kIdentity)
            for (std::size_t column = 0; column < 4; ++column)
                for (std::size_t row = 0; row < 4; ++row)
                    node.matrix.push_back(place[4 * row + column]);
        return kIdentity;
    }

    int AddNode(int above, tinygltf::Node&& node)
    {
        if (m_model.nodes.size() >= static_cast<std::size_t>(std::numeric_limits<int>::max()))
            throw std::runtime_error("it would have too many nodes");
        int const index = static_cast<int>(m_model.nodes.size());
        m_model.nodes.push_back(std::move(node));
        auto& siblings = above == kNoNode ? m_model.scenes.front().nodes
                                          : m_model.nodes[static_cast<std::size_t>(above)].children;
        siblings.push_back(index);
        return index;
    }

    void Draw(ModelComponent const& component, OccurrenceState const& state, Above const& here)
    {
        std::vector<DrawnGeometry> const& drawn = m_drawing.Of(component, state);
        for (DrawnGeometry const& piece : drawn)
        {
            ModelGeometry const& geometry = component.geometry[piece.place];
            Matrix const place = GeometryPlace(geometry, component);
            bool const isAlone = drawn.size() == 1 && component.placements.empty() && place == kIdentity;
            tinygltf::Node node;
            Matrix const rest = isAlone ? here.rest : PutPlace(Product(here.rest, place), node);
            int const mesh = m_meshes.Of(geometry, piece, rest);
            if (mesh == GltfMeshes::kNone)
                continue;
            if (isAlone)
            {
                m_model.nodes[static_cast<std::size_t>(here.node)].mesh = mesh;
                continue;
            }
            node.mesh = mesh;
            node.name = m_model.meshes[static_cast<std::size_t>(mesh)].name;
            AddNode(here.node, std::move(node));
        }
    }

    void PutSceneExtras()
    {
        nlohmann::json extras = {{"unit", UnitText(m_task.scene.unit)}, {"components", std::move(m_components)}};
        if (nlohmann::json layers = LayerExtras(m_task.scene); !layers.empty())
            extras["layers"] = std::move(layers);
        if (nlohmann::json views = ViewExtras(m_task); !views.empty())
            extras["views"] = std::move(views);
        if (m_hidden > 0)
            extras["hidden"] = m_hidden;
        m_model.scenes.front().extras = ExtrasOf(extras);
    }

    ExportTask& m_task;
    Matrix m_upright;
    tinygltf::Model m_model;
    GltfMeshes m_meshes;
    Drawing m_drawing;
    std::unordered_set<ModelComponent const*> m_seen;
    nlohmann::json m_components = nlohmann::json::object();
    unsigned long long m_hidden = 0;
};

// What a name is in the path of a URI.
std::string UriOf(std::string const& name)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string uri;
    for (char const character : name)
    {
        auto const byte = static_cast<unsigned char>(character);
        bool const isPlain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                             (byte >= '0' && byte <= '9') || byte == '-' || byte == '.' || byte == '_' || byte == '~';
        if (isPlain)
            uri += character;
        else
            uri += {'%', kDigits[byte >> 4U], kDigits[byte & 15U]};
    }
    return uri;
}

// The model's JSON, and its bytes in a file beside it.
void WriteWithBytesBeside(tinygltf::Model& model, std::string const& path)
{
    std::filesystem::path const bytesPath = std::filesystem::path(path).replace_extension(".bin");
    std::vector<unsigned char> bytes;
    if (!model.buffers.empty())
        bytes.swap(model.buffers.front().data);
    // A buffer that is in a file is no business of the text's writer, which would write it into the text.
    model.buffers.clear();
    std::ostringstream text;
    if (!tinygltf::TinyGLTF().WriteGltfSceneToStream(&model, text, false, false))
        throw std::runtime_error("its text could not be made");
    nlohmann::json json = nlohmann::json::parse(text.str());
    if (!bytes.empty())
    {
        json["buffers"] = {{{"byteLength", bytes.size()}, {"uri", UriOf(bytesPath.filename().string())}}};
        ExportFile file(bytesPath.string());
        file.Out().Put({reinterpret_cast<char const*>(bytes.data()), bytes.size()});
        file.Finish();
    }
    ExportFile file(path);
    file.Out().Put(json.dump() + '\n');
    file.Finish();
}

}  // namespace

void ExportGltf(ExportTask& task)
{
    GltfExporter exporter(task);
    tinygltf::Model& model = exporter.Make();
    std::string extension = std::filesystem::path(task.path).extension().string();
    if (extension.size() == 5)
    {
        WriteWithBytesBeside(model, task.path);
        return;
    }
    // Sizes in the file have 32 bits.
    constexpr std::size_t kMostBytes = std::numeric_limits<std::uint32_t>::max() - (std::size_t{256} << 20U);
    if (!model.buffers.empty() && model.buffers.front().data.size() > kMostBytes)
        throw std::runtime_error("its geometry is larger than a .glb file can be; a .gltf file can hold it");
    ExportFile file(task.path);
    OutputBuffer buffer(file.Out());
    std::ostream stream(&buffer);
    stream.exceptions(std::ios::badbit);
    if (!tinygltf::TinyGLTF().WriteGltfSceneToStream(&model, stream, false, true))
        throw std::runtime_error("its text could not be made");
    file.Finish();
}

}  // namespace KVR
