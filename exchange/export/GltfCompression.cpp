#include "exchange/export/GltfCompression.h"

#include <stdexcept>

#include "exchange/ExportScene.h"

#ifdef KVR_HAS_MESHOPTIMIZER
#include <meshoptimizer.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <unordered_set>
#endif

namespace KVR
{

#ifdef KVR_HAS_MESHOPTIMIZER

namespace
{

using Bytes = std::vector<unsigned char>;
using nlohmann::ordered_json;

constexpr char kExtension[] = "EXT_meshopt_compression";

struct Encoded
{
    Bytes bytes;
    char const* mode = "";
    std::size_t stride = 0;
};

std::vector<unsigned> IndicesOf(unsigned char const* bytes, std::size_t count, std::size_t width)
{
    std::vector<unsigned> indices(count, 0);
    for (std::size_t i = 0; i < count; ++i)
        std::memcpy(&indices[i], bytes + i * width, width);
    return indices;
}

Encoded EncodeIndices(unsigned char const* bytes, std::size_t count, std::size_t width, bool areTriangles)
{
    std::vector<unsigned> const indices = IndicesOf(bytes, count, width);
    std::size_t const vertices = std::size_t{*std::max_element(indices.begin(), indices.end())} + 1;
    Encoded made{{}, areTriangles ? "TRIANGLES" : "INDICES", width};
    meshopt_encodeIndexVersion(1);
    made.bytes.resize(areTriangles ? meshopt_encodeIndexBufferBound(count, vertices)
                                   : meshopt_encodeIndexSequenceBound(count, vertices));
    made.bytes.resize(areTriangles
                          ? meshopt_encodeIndexBuffer(made.bytes.data(), made.bytes.size(), indices.data(), count)
                          : meshopt_encodeIndexSequence(made.bytes.data(), made.bytes.size(), indices.data(), count));
    return made;
}

Encoded EncodeVertices(unsigned char const* bytes, std::size_t count, std::size_t stride)
{
    Encoded made{{}, "ATTRIBUTES", stride};
    meshopt_encodeVertexVersion(0);
    made.bytes.resize(meshopt_encodeVertexBufferBound(count, stride));
    made.bytes.resize(meshopt_encodeVertexBuffer(made.bytes.data(), made.bytes.size(), bytes, count, stride));
    return made;
}

// The accessors of indices of triangles; the others are of lines.
std::unordered_set<int> TriangleIndices(tinygltf::Model const& model)
{
    std::unordered_set<int> accessors;
    for (tinygltf::Mesh const& mesh : model.meshes)
        for (tinygltf::Primitive const& primitive : mesh.primitives)
            if (primitive.mode == TINYGLTF_MODE_TRIANGLES)
                accessors.insert(primitive.indices);
    return accessors;
}

// Appends and answers where.
std::size_t Append(Bytes& to, unsigned char const* bytes, std::size_t size)
{
    to.resize((to.size() + 3) / 4 * 4);
    std::size_t const offset = to.size();
    to.insert(to.end(), bytes, bytes + size);
    return offset;
}

}  // namespace

bool CanCompress()
{
    return true;
}

void CompressGltf(tinygltf::Model const& model, Bytes& bytes, ordered_json& document)
{
    std::unordered_set<int> const triangles = TriangleIndices(model);
    std::vector<int> accessorOf(model.bufferViews.size(), -1);
    for (std::size_t i = 0; i < model.accessors.size(); ++i)
        accessorOf[static_cast<std::size_t>(model.accessors[i].bufferView)] = static_cast<int>(i);
    Bytes all;
    // Where the numbers would be without the extension, in a buffer that no one has.
    std::size_t unpacked = 0;
    for (std::size_t i = 0; i < model.bufferViews.size(); ++i)
    {
        tinygltf::BufferView const& view = model.bufferViews[i];
        unsigned char const* const source = bytes.data() + view.byteOffset;
        ordered_json& entry = document["bufferViews"][i];
        Encoded encoded;
        if (accessorOf[i] >= 0)
        {
            std::size_t const count = model.accessors[static_cast<std::size_t>(accessorOf[i])].count;
            std::size_t const width = view.byteLength / count;
            encoded = view.target == TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER
                          ? EncodeIndices(source, count, width, triangles.count(accessorOf[i]) > 0)
                          : EncodeVertices(source, count, width);
        }
        // What is small, and images, stay as they are.
        if (encoded.bytes.empty() || encoded.bytes.size() >= view.byteLength)
        {
            entry["byteOffset"] = Append(all, source, view.byteLength);
            continue;
        }
        std::size_t const offset = Append(all, encoded.bytes.data(), encoded.bytes.size());
        entry["extensions"][kExtension] = {{"buffer", 0},
                                           {"byteOffset", offset},
                                           {"byteLength", encoded.bytes.size()},
                                           {"byteStride", encoded.stride},
                                           {"mode", encoded.mode},
                                           {"count", view.byteLength / encoded.stride}};
        entry["buffer"] = 1;
        entry["byteOffset"] = unpacked;
        unpacked += (view.byteLength + 3) / 4 * 4;
    }
    bytes = std::move(all);
    document["buffers"] = ordered_json::array({{{"byteLength", bytes.size()}}});
    if (unpacked == 0)
        return;
    document["buffers"].push_back({{"byteLength", unpacked}, {"extensions", {{kExtension, {{"fallback", true}}}}}});
    document["extensionsUsed"].push_back(kExtension);
    document["extensionsRequired"].push_back(kExtension);
}

#else

bool CanCompress()
{
    return false;
}

void CompressGltf(tinygltf::Model const&, std::vector<unsigned char>&, nlohmann::ordered_json&)
{
    throw std::runtime_error("this build has no encoder that compresses glTF");
}

#endif

}  // namespace KVR
