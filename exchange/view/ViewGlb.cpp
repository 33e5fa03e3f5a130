#include "exchange/view/ViewGlb.h"

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <span>
#include <stdexcept>
#include <string>

#include "exchange/view/ViewMesh.h"
#include "exchange/view/ViewText.h"

namespace KVR
{

namespace
{

static_assert(std::endian::native == std::endian::little, "the bytes of GLB start with the lowest");

// Numbers of glTF.
constexpr int kUnsignedInt = 5125;
constexpr int kFloat = 5126;
constexpr std::uint32_t kMagic = 0x46546C67;
constexpr std::uint32_t kVersion = 2;
constexpr std::uint32_t kJsonChunk = 0x4E4F534A;
constexpr std::uint32_t kBinaryChunk = 0x004E4942;

template <class Number>
std::string_view BytesOf(std::vector<Number> const& numbers)
{
    return {reinterpret_cast<char const*>(numbers.data()), numbers.size() * sizeof(Number)};
}

struct RoleNames
{
    char const* role;
    int mode;
};

RoleNames NamesOf(ViewPrimitive::Role role)
{
    switch (role)
    {
        case ViewPrimitive::Role::kFaces:
            return {"faces", 4};
        case ViewPrimitive::Role::kEdges:
            return {"edges", 1};
        case ViewPrimitive::Role::kLines:
            return {"lines", 1};
        case ViewPrimitive::Role::kPoints:
            break;
    }
    return {"points", 0};
}

// The document, and what is to follow it: each piece has a view of its own.
class GlbLayout
{
public:
    explicit GlbLayout(std::vector<ViewMesh> const& meshes)
    {
        m_accessors = m_views = ViewJson::array();
        ViewJson list = ViewJson::array();
        for (ViewMesh const& mesh : meshes)
            list.push_back(JsonOf(mesh));
        m_document["asset"] = {{"version", "2.0"}, {"generator", "kvr_xml_producer"}};
        if (list.empty())
            return;
        m_document["meshes"] = std::move(list);
        m_document["accessors"] = std::move(m_accessors);
        m_document["bufferViews"] = std::move(m_views);
        m_document["buffers"] = ViewJson::array({{{"byteLength", m_size}}});
    }

    ViewJson const& Document() const noexcept { return m_document; }
    std::vector<std::string_view> const& Pieces() const noexcept { return m_pieces; }
    std::size_t Size() const noexcept { return m_size; }

private:
    ViewJson JsonOf(ViewMesh const& mesh)
    {
        ViewJson primitives = ViewJson::array();
        for (ViewPrimitive const& primitive : mesh.primitives)
            primitives.push_back(JsonOf(primitive));
        ViewJson json{{"primitives", std::move(primitives)}};
        if (mesh.origin != std::array<double, 3>{})
            json["extras"]["origin"] = KVR::JsonOf(mesh.origin);
        return json;
    }

    ViewJson JsonOf(ViewPrimitive const& primitive)
    {
        RoleNames const names = NamesOf(primitive.role);
        ViewJson json{{"mode", names.mode}};
        json["attributes"]["POSITION"] = AddPoints(primitive.positions);
        if (!primitive.normals.empty())
            json["attributes"]["NORMAL"] = Add(primitive.normals, 3);
        if (!primitive.indices.empty())
            json["indices"] = Add(primitive.indices, 1);
        ViewJson extras{{"role", names.role}};
        if (primitive.style >= 0)
            extras["style"] = primitive.style;
        if (!primitive.ranges.empty())
        {
            extras["ranges"] = Add(primitive.ranges, 1);
            extras["numbers"] = Add(primitive.numbers, 1);
        }
        json["extras"] = std::move(extras);
        return json;
    }

    template <class Number>
    std::size_t Add(std::vector<Number> const& numbers, std::size_t width)
    {
        constexpr bool isFloat = std::is_same_v<Number, float>;
        std::string_view const bytes = BytesOf(numbers);
        m_views.push_back({{"buffer", 0}, {"byteOffset", m_size}, {"byteLength", bytes.size()}});
        m_pieces.push_back(bytes);
        m_size += bytes.size();
        m_accessors.push_back({{"bufferView", m_views.size() - 1},
                               {"componentType", isFloat ? kFloat : kUnsignedInt},
                               {"count", numbers.size() / width},
                               {"type", width == 3 ? "VEC3" : "SCALAR"}});
        return m_accessors.size() - 1;
    }

    std::size_t AddPoints(std::vector<float> const& points)
    {
        std::size_t const accessor = Add(points, 3);
        std::array<float, 3> low;
        std::array<float, 3> high;
        low.fill(std::numeric_limits<float>::max());
        high.fill(std::numeric_limits<float>::lowest());
        for (std::size_t i = 0; i < points.size(); ++i)
        {
            low[i % 3] = std::min(low[i % 3], points[i]);
            high[i % 3] = std::max(high[i % 3], points[i]);
        }
        m_accessors[accessor]["min"] = low;
        m_accessors[accessor]["max"] = high;
        return accessor;
    }

    ViewJson m_document;
    ViewJson m_accessors;
    ViewJson m_views;
    std::vector<std::string_view> m_pieces;
    std::size_t m_size = 0;
};

template <std::size_t Count>
void PutWords(std::function<void(std::string_view)> const& put, std::array<std::uint32_t, Count> const& words)
{
    put({reinterpret_cast<char const*>(words.data()), sizeof words});
}

}  // namespace

void WriteGlb(std::vector<ViewMesh> const& meshes, std::function<void(std::string_view)> const& put)
{
    GlbLayout const layout(meshes);
    std::string json = TextOf(layout.Document());
    json.resize((json.size() + 3) / 4 * 4, ' ');
    // The heads of the file and of two chunks.
    constexpr std::size_t kHeads = 28;
    std::size_t const size = kHeads + json.size() + layout.Size();
    if (size > std::numeric_limits<std::uint32_t>::max())
        throw std::runtime_error("its geometry takes more than 4 GiB; --only shows a part of it");
    bool const hasNumbers = layout.Size() > 0;
    PutWords(put, std::array{kMagic, kVersion, static_cast<std::uint32_t>(hasNumbers ? size : size - 8),
                             static_cast<std::uint32_t>(json.size()), kJsonChunk});
    put(json);
    if (hasNumbers)
        PutWords(put, std::array{static_cast<std::uint32_t>(layout.Size()), kBinaryChunk});
    for (std::string_view const piece : layout.Pieces())
        put(piece);
}

}  // namespace KVR
