#include <cmath>
#include <map>
#include <optional>
#include <stdexcept>

#include "exchange/certify/FactReaders.h"
#include "exchange/certify/FactTexts.h"
#include "exchange/certify/mesh/GltfBytes.h"
#include "exchange/certify/scene/SceneMeshFacts.h"

namespace KVR::Certification
{

namespace
{

using nlohmann::json;

constexpr std::size_t kDeepestNode = 2000;
constexpr std::size_t kMostNodes = 2'000'000;

double Srgb(double linear)
{
    return linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1.0 / 2.4) - 0.055;
}

FactPlace PlaceOfNode(json const& node)
{
    FactPlace place;
    if (auto const matrix = node.find("matrix"); matrix != node.end())
    {
        for (std::size_t i = 0; i < 16; ++i)
            place.rows[4 * (i % 4) + i / 4] = matrix->at(i);
        return place;
    }
    auto const r = node.value("rotation", std::vector<double>{0, 0, 0, 1});
    auto const s = node.value("scale", std::vector<double>{1, 1, 1});
    auto const t = node.value("translation", std::vector<double>{0, 0, 0});
    double const x = r.at(0);
    double const y = r.at(1);
    double const z = r.at(2);
    double const w = r.at(3);
    double const turn[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w)},
                               {2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w)},
                               {2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y)}};
    for (std::size_t row = 0; row < 3; ++row)
    {
        for (std::size_t column = 0; column < 3; ++column)
            place.rows[4 * row + column] = turn[row][column] * s.at(column);
        place.rows[4 * row + 3] = t.at(row);
    }
    return place;
}

struct Primitive
{
    std::vector<FactPoint> points;
    std::vector<FactPoint> normals;
    std::vector<std::size_t> corners;
    std::optional<std::string> color;
};

class GltfReader
{
public:
    GltfReader(GltfBytes const& bytes, bool isModel) : m_bytes(bytes), m_isModel(isModel)
    {
        for (json const& node : bytes.List("nodes"))
            m_isOwn = m_isOwn || KindOf(node);
    }

    ModelFacts Read()
    {
        m_facts.hasMesh = true;
        for (char const* const table : {kTable_DrawnColors, kTable_Normals})
            m_facts.tables[table];
        // From metres with y up to millimetres with z up.
        FactPlace place;
        place.rows = {1e3, 0, 0, 0, 0, 0, -1e3, 0, 0, 1e3, 0, 0, 0, 0, 0, 1};
        json const& scene = m_bytes.At("scenes", m_bytes.Json().value("scene", json(0)));
        for (json const& node : scene.value("nodes", json::array()))
            Walk(m_bytes.At("nodes", node), std::to_string(node.get<std::size_t>()), place, {}, kNoOccurrence);
        if (m_isOwn && !m_isModel)
            ReadOwn(scene.value("extras", json::object()), place);
        return std::move(m_facts);
    }

private:
    // Layers and views, as this project's export writes them.
    void ReadOwn(json const& extras, FactPlace const& upright)
    {
        m_facts.tables[kTable_Layers];
        for (json const& layer : extras.value("layers", json::array()))
            m_facts.Add(kTable_Layers, layer.value("label", ""), {},
                        static_cast<double>(layer.value("items", json::array()).size()));
        m_facts.tables[kTable_Views];
        for (json const& view : extras.value("views", json::array()))
            if (json const cameras = view.value("cameraNodes", json::array()); !cameras.empty())
            {
                json const& node = m_bytes.At("nodes", cameras.front());
                m_bytes.At("cameras", node.at("camera"));
                FactPlace const place = upright * PlaceOfNode(node);
                AddView(m_facts, view.value("label", ""), place.Of({}), place.OfDirection({0, 0, -1}),
                        place.OfDirection({0, 1, 0}));
            }
    }

    static constexpr std::size_t kNoOccurrence = static_cast<std::size_t>(-1);

    static bool KindOf(json const& node)
    {
        return node.contains("extras") && node["extras"].is_object() && node["extras"].contains("kind");
    }

    // Cameras and lights by themselves are none.
    static bool IsComponent(json const& node)
    {
        bool const isOther =
            node.contains("camera") || node.value("extensions", json::object()).contains("KHR_lights_punctual");
        return node.contains("mesh") || node.contains("children") || !isOther;
    }

    void Walk(json const& node, std::string const& id, FactPlace const& above, std::string path, std::size_t owner)
    {
        if (++m_depth > kDeepestNode || ++m_nodes > kMostNodes)
            throw std::runtime_error("its nodes are too deep or too many");
        FactPlace const place = above * PlaceOfNode(node);
        if (m_isOwn ? KindOf(node) : IsComponent(node))
        {
            ModelFacts::Occurrence occurrence = m_isOwn ? OwnOccurrence(node, id) : ForeignOccurrence(node, id);
            occurrence.path = owner == kNoOccurrence ? occurrence.name : path + '/' + occurrence.name;
            path = occurrence.path;
            owner = m_facts.occurrences.size();
            m_facts.occurrences.push_back(std::move(occurrence));
        }
        if (node.contains("mesh") && owner != kNoOccurrence)
            AddMesh(m_facts.occurrences[owner], node["mesh"], place);
        for (json const& child : node.value("children", json::array()))
            Walk(m_bytes.At("nodes", child), std::to_string(child.get<std::size_t>()), place, path, owner);
        --m_depth;
    }

    ModelFacts::Occurrence OwnOccurrence(json const& node, std::string const& nodeId) const
    {
        json const& extras = node["extras"];
        ModelFacts::Occurrence occurrence;
        std::string const id = extras.value("id", "");
        // A node without a label has the id for its name.
        std::string const label = node.value("name", "") == id ? "" : node.value("name", "");
        occurrence.componentName = extras.value("componentLabel", label);
        occurrence.name = label.empty() ? occurrence.componentName : label;
        occurrence.component = extras.value("component", id);
        occurrence.isPart = extras["kind"] == "IPart";
        if (m_isModel && !occurrence.isPart)
            occurrence.component = "node " + nodeId;
        return occurrence;
    }

    ModelFacts::Occurrence ForeignOccurrence(json const& node, std::string const& id) const
    {
        ModelFacts::Occurrence occurrence;
        bool const isMesh = node.contains("mesh");
        std::string const mesh = isMesh ? m_bytes.At("meshes", node["mesh"]).value("name", "") : "";
        occurrence.name = node.value("name", mesh);
        occurrence.componentName = mesh.empty() ? occurrence.name : mesh;
        occurrence.component = isMesh ? "mesh " + node["mesh"].dump() : "node " + id;
        occurrence.isPart = isMesh && node.value("children", json::array()).empty();
        return occurrence;
    }

    std::vector<Primitive> const& PrimitivesOf(json const& index)
    {
        auto const [entry, isNew] = m_meshes.try_emplace(index.get<std::size_t>());
        if (!isNew)
            return entry->second;
        for (json const& primitive : m_bytes.At("meshes", index).at("primitives"))
            if (int const mode = primitive.value("mode", 4); mode >= 4 && mode <= 6)
                entry->second.push_back(PrimitiveOf(primitive, mode));
        return entry->second;
    }

    Primitive PrimitiveOf(json const& source, int mode) const
    {
        Primitive primitive;
        auto const points = [&](char const* name)
        {
            std::vector<FactPoint> list;
            if (auto const found = source.at("attributes").find(name); found != source.at("attributes").end())
            {
                std::vector<double> const numbers = m_bytes.Numbers(*found, 3);
                for (std::size_t i = 0; i + 2 < numbers.size(); i += 3)
                    list.push_back({numbers[i], numbers[i + 1], numbers[i + 2]});
            }
            return list;
        };
        primitive.points = points("POSITION");
        primitive.normals = points("NORMAL");
        std::vector<std::size_t> order;
        if (source.contains("indices"))
            for (double const index : m_bytes.Numbers(source["indices"], 1))
                order.push_back(static_cast<std::size_t>(index));
        else
            for (std::size_t i = 0; i < primitive.points.size(); ++i)
                order.push_back(i);
        for (std::size_t i = 2; i < order.size(); i += mode == 4 ? 3 : 1)
        {
            // Triangles, a strip, of which every other is turned, or a fan.
            bool const isTurned = mode == 5 && i % 2 == 1;
            primitive.corners.push_back(order[mode == 6 ? 0 : i - 2 + (isTurned ? 1 : 0)]);
            primitive.corners.push_back(order[i - 1 - (isTurned ? 1 : 0)]);
            primitive.corners.push_back(order[i]);
        }
        if (source.contains("material"))
            primitive.color = ColorOf(m_bytes.At("materials", source["material"]));
        return primitive;
    }

    std::optional<std::string> ColorOf(json const& material) const
    {
        // What has no style has this one.
        if (m_isOwn && material.value("name", "") == "default")
            return {};
        auto const color = material.value("pbrMetallicRoughness", json::object())
                               .value("baseColorFactor", std::vector<double>{1, 1, 1, 1});
        double const alpha = material.value("alphaMode", "OPAQUE") == "OPAQUE" ? 1.0 : color.at(3);
        return ColorText(Srgb(color.at(0)), Srgb(color.at(1)), Srgb(color.at(2)), alpha);
    }

    void AddMesh(ModelFacts::Occurrence& occurrence, json const& index, FactPlace const& place)
    {
        bool const mirrors = place.Determinant() < 0.0;
        Bulk bulk;
        double angles = 0.0;
        for (Primitive const& primitive : PrimitivesOf(index))
        {
            std::vector<FactPoint> moved;
            moved.reserve(primitive.points.size());
            for (FactPoint const& point : primitive.points)
                moved.push_back(place.Of(point));
            double const before = bulk.area;
            for (std::size_t i = 0; i + 2 < primitive.corners.size(); i += 3)
            {
                std::size_t const* const at = &primitive.corners[i];
                double const area = bulk.area;
                bulk.AddTriangle(moved.at(at[0]), moved.at(at[mirrors ? 2 : 1]), moved.at(at[mirrors ? 1 : 2]));
                for (std::size_t k = 0; k < 3; ++k)
                    bulk.AddPoint(moved[at[k]]);
                ++occurrence.triangles;
                if (primitive.normals.size() == primitive.points.size())
                    angles +=
                        (bulk.area - area) *
                        AngleOfNormals({primitive.points[at[0]], primitive.points[at[1]], primitive.points[at[2]]},
                                       {primitive.normals[at[0]], primitive.normals[at[1]], primitive.normals[at[2]]});
            }
            if (primitive.color)
                m_facts.Add(kTable_DrawnColors, ModelFacts::Joined(occurrence.path, *primitive.color),
                            {bulk.area - before});
            if (primitive.normals.empty())
                continue;
            m_facts.Add(kTable_Normals, occurrence.path, {angles}, before == 0.0 ? 1.0 : 0.0);
            angles = 0.0;
        }
        bulk.absoluteVolume = std::abs(bulk.volume);
        occurrence.mesh.Add(bulk);
    }

    GltfBytes const& m_bytes;
    bool m_isModel = false;
    bool m_isOwn = false;
    ModelFacts m_facts;
    std::map<std::size_t, std::vector<Primitive>> m_meshes;
    std::size_t m_depth = 0;
    std::size_t m_nodes = 0;
};

}  // namespace

ModelFacts FactsOfGltf(std::string const& path, bool isModel)
{
    GltfBytes const bytes(path);
    return GltfReader(bytes, isModel).Read();
}

}  // namespace KVR::Certification
