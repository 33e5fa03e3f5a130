#include <algorithm>
#include <cmath>
#include <map>

#include "exchange/meshes/GltfMeshes.h"
#include "exchange/model/CleanText.h"
#include "framework/api/UTF16String.h"

// glTF 2.0: nodes, which become placements of assemblies and parts, and cameras.
namespace KVR
{

namespace
{

using Json = GltfFile::Json;
using Matrix = std::array<double, 16>;

constexpr Matrix kIdentity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
// Readers of scenes follow no more.
constexpr std::size_t kMostLevels = 1000;

Matrix Product(Matrix const& a, Matrix const& b)
{
    Matrix product{};
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column)
            for (std::size_t i = 0; i < 4; ++i)
                product[4 * row + column] += a[4 * row + i] * b[4 * i + column];
    return product;
}

Matrix MatrixOf(Json const& node)
{
    Matrix matrix = kIdentity;
    if (auto const columns = GltfFile::Numbers(node, "matrix", 16))
    {
        for (std::size_t row = 0; row < 3; ++row)
            for (std::size_t column = 0; column < 4; ++column)
                matrix[4 * row + column] = (*columns)[4 * column + row];
        return matrix;
    }
    if (auto const q = GltfFile::Numbers(node, "rotation", 4))
    {
        double const length = std::sqrt((*q)[0] * (*q)[0] + (*q)[1] * (*q)[1] + (*q)[2] * (*q)[2] + (*q)[3] * (*q)[3]);
        if (length > 0.0 && std::isfinite(length))
        {
            double const x = (*q)[0] / length;
            double const y = (*q)[1] / length;
            double const z = (*q)[2] / length;
            double const w = (*q)[3] / length;
            matrix = {1 - 2 * (y * y + z * z),
                      2 * (x * y - z * w),
                      2 * (x * z + y * w),
                      0,
                      2 * (x * y + z * w),
                      1 - 2 * (x * x + z * z),
                      2 * (y * z - x * w),
                      0,
                      2 * (x * z - y * w),
                      2 * (y * z + x * w),
                      1 - 2 * (x * x + y * y),
                      0,
                      0,
                      0,
                      0,
                      1};
        }
    }
    if (auto const scale = GltfFile::Numbers(node, "scale", 3))
        for (std::size_t row = 0; row < 3; ++row)
            for (std::size_t column = 0; column < 3; ++column)
                matrix[4 * row + column] *= (*scale)[column];
    if (auto const move = GltfFile::Numbers(node, "translation", 3))
        for (std::size_t row = 0; row < 3; ++row)
            matrix[4 * row + 3] = (*move)[row];
    return matrix;
}

Matrix3d TransformOf(Matrix matrix)
{
    // Turns by right angles leave dust in the last digits.
    for (double& element : matrix)
        if (double const whole = std::round(element); std::abs(whole) <= 1.0 && std::abs(element - whole) < 1e-15)
            element = whole + 0.0;
    Matrix3d transform;
    transform.SetElements(matrix);
    return transform;
}

class GltfScene
{
public:
    explicit GltfScene(GltfFile& file)
        : m_file(file),
          m_model(file.Reading().model),
          m_materials(file),
          m_meshes(file, m_materials),
          m_isPlaced(file.List("nodes").size(), false)
    {
    }

    void Read()
    {
        m_model.unit = kUnitType_Meter;
        m_model.isUnitStated = true;
        ReadAsset();
        m_model.components.emplace_back().isAssembly = true;
        ReadRoots();
        // Those above come first.
        for (std::size_t i = 0; i < m_work.size(); ++i)
        {
            ReadNode(Work(m_work[i]));
            m_file.Reading().Tell(m_work.size() + i, 2 * m_work.size());
        }
        m_meshes.Finish();
        CountOthers();
    }

private:
    struct Work
    {
        std::size_t node = 0;
        // The component that it stands in.
        std::size_t parent = 0;
        std::size_t level = 0;
        Matrix place = kIdentity;
    };

    void ReadAsset()
    {
        Json const& asset = GltfFile::Object(m_file.Root(), "asset");
        m_isOfExport = GltfFile::Text(asset, "generator") == "kvr_xml_producer";
        for (auto const& [member, element] : {std::pair{"generator", "SendingSystem"}, {"copyright", "Description"}})
            if (std::string text = GltfFile::Text(asset, member); !text.empty())
                m_model.header.emplace_back(element, std::move(text));
    }

    void ReadRoots()
    {
        Json const& scenes = m_file.List("scenes");
        std::size_t const index = GltfFile::Index(m_file.Root(), "scene").value_or(0);
        if (scenes.empty())
            return AddAllRoots();
        if (index >= scenes.size())
            m_file.Reading().Damage("its scene is not among the " + WithCommas(scenes.size()));
        Json const& scene = scenes[std::min(index, scenes.size() - 1)];
        m_model.components.front().name = GltfFile::Text(scene, "name");
        for (std::size_t i = 0; i < scenes.size(); ++i)
            if (&scenes[i] != &scene)
                m_model.losses.AddItem("scenes beside the one that is shown", m_file.NameOf("scenes", i));
        AddChildren(scene, "nodes", 0, 0, kIdentity);
    }

    // Without a scene what is no child stands at the root.
    void AddAllRoots()
    {
        Json const& nodes = m_file.List("nodes");
        std::vector<bool> isChild(nodes.size(), false);
        for (Json const& node : nodes)
            if (node.is_object() && node.contains("children") && node["children"].is_array())
                for (Json const& child : node["children"])
                    if (child.is_number_unsigned() && child.get<std::size_t>() < nodes.size())
                        isChild[child.get<std::size_t>()] = true;
        for (std::size_t i = 0; i < nodes.size(); ++i)
            if (!isChild[i])
            {
                m_isPlaced[i] = true;
                m_work.push_back({i, 0, 1, kIdentity});
            }
    }

    void AddChildren(Json const& object, char const* member, std::size_t component, std::size_t level,
                     Matrix const& place)
    {
        if (!object.is_object() || !object.contains(member) || !object[member].is_array())
            return;
        for (Json const& child : object[member])
        {
            std::size_t const index = child.is_number_unsigned() ? child.get<std::size_t>() : m_isPlaced.size();
            if (index >= m_isPlaced.size())
                m_file.Reading().Damage("an index of nodes is not among the " + WithCommas(m_isPlaced.size()));
            else if (m_isPlaced[index])
                m_file.Reading().Damage("node " + std::to_string(index) + " stands in two places, or in itself");
            else if (level >= kMostLevels)
                m_model.losses.AddItem("nodes more than 1,000 levels deep", m_file.NameOf("nodes", index));
            else
            {
                m_isPlaced[index] = true;
                m_work.push_back({index, component, level + 1, place});
            }
        }
    }

    void ReadNode(Work const& work)
    {
        Json const& node = m_file.List("nodes")[work.node];
        Matrix own = MatrixOf(node);
        if (!std::all_of(own.begin(), own.end(), [](double element) { return std::isfinite(element); }))
        {
            m_file.Reading().Damage("node " + std::to_string(work.node) + " stands nowhere");
            own = kIdentity;
        }
        Matrix const place = Product(work.place, own);
        ReadCamera(node, place);
        Json const* const mesh = m_file.Entry("meshes", node, "mesh");
        bool const hasChildren = node.is_object() && node.contains("children") && !node["children"].empty();
        bool const hasLight = GltfFile::Object(node, "extensions").contains("KHR_lights_punctual");
        if (hasLight)
            m_model.losses.AddItem("lights", m_file.NameOf("nodes", work.node));
        if (!mesh && !hasChildren && (hasLight || node.contains("camera")))
            return;
        std::string const name = GltfFile::Text(node, "name");
        MeshModel::Placement placement;
        placement.name = name;
        placement.transform = TransformOf(own);
        placement.isVisible = GltfFile::Extension(node, "KHR_node_visibility").value("visible", Json()) != false;
        placement.component = ComponentOf(node, mesh && !hasChildren);
        if (m_isOfExport)
            DressAsExported(m_model.components[placement.component], GltfFile::Object(node, "extras"));
        else
            AddProperties(placement.properties, GltfFile::Object(node, "extras"));
        std::size_t const component = placement.component;
        m_model.components[work.parent].placements.push_back(std::move(placement));
        if (m_model.components[component].isAssembly)
            AddChildren(node, "children", component, work.level, place);
    }

    // What a node places: the part of its mesh, or an assembly of what is below, with its mesh.
    std::size_t ComponentOf(Json const& node, bool isLeaf)
    {
        std::string const name = GltfFile::Text(node, "name");
        if (isLeaf)
            return PartOf({*GltfFile::Index(node, "mesh")}, name);
        if (std::vector<std::size_t> const meshes = MeshesOfExportedPart(node); !meshes.empty())
        {
            for (Json const& child : node["children"])
                m_isPlaced[child.get<std::size_t>()] = true;
            return PartOf(meshes, name);
        }
        std::size_t const assembly = m_model.components.size();
        m_model.components.emplace_back().isAssembly = true;
        m_model.components.back().name = name;
        if (m_file.Entry("meshes", node, "mesh"))
        {
            MeshModel::Placement inner;
            inner.component = PartOf({*GltfFile::Index(node, "mesh")}, name);
            m_model.components[assembly].placements.push_back(std::move(inner));
        }
        return assembly;
    }

    // The export writes a part as a node, with a node below it for each piece of geometry.
    std::vector<std::size_t> MeshesOfExportedPart(Json const& node)
    {
        if (!m_isOfExport || GltfFile::Text(GltfFile::Object(node, "extras"), "kind") != "IPart" ||
            !node.contains("children") || !node["children"].is_array())
            return {};
        std::vector<std::size_t> meshes;
        for (Json const& child : node["children"])
        {
            std::size_t const index = child.is_number_unsigned() ? child.get<std::size_t>() : m_isPlaced.size();
            if (index >= m_isPlaced.size() || m_isPlaced[index])
                return {};
            Json const& below = m_file.List("nodes")[index];
            std::optional<std::size_t> const mesh = GltfFile::Index(below, "mesh");
            if (!mesh || *mesh >= m_file.List("meshes").size() || below.contains("children") ||
                MatrixOf(below) != kIdentity)
                return {};
            meshes.push_back(*mesh);
        }
        return meshes;
    }

    // The name and the properties that a component had before it was exported.
    void DressAsExported(MeshModel::Component& component, Json const& extras)
    {
        if (std::string label = GltfFile::Text(extras, "componentLabel"); !label.empty())
            component.name = std::move(label);
        if (component.properties.empty())
            AddProperties(component.properties, GltfFile::Object(extras, "componentProperties"));
    }

    static void AddProperties(std::vector<CustomProperty>& properties, Json const& object)
    {
        for (auto const& [name, value] : object.items())
            AddProperty(properties.emplace_back(), name, value);
    }

    static void AddProperty(CustomProperty& property, std::string const& name, Json const& value)
    {
        UTF16String const key(CleanText(name));
        if (value.is_number() && std::isfinite(value.get<double>()))
            property.SetProperty(key, value.get<double>());
        else
            property.SetProperty(key,
                                 UTF16String(CleanText(value.is_string() ? value.get<std::string>() : value.dump())));
    }

    // The part of meshes; by the name of the first node that shows it when they have none of their own.
    std::size_t PartOf(std::vector<std::size_t> const& meshes, std::string const& nodeName)
    {
        auto const [entry, isNew] = m_partOf.try_emplace(meshes, m_model.components.size());
        if (!isNew)
            return entry->second;
        m_model.components.emplace_back();
        MeshModel::Component part;
        part.name = GltfFile::Text(m_file.List("meshes")[meshes.front()], "name");
        if (part.name.empty())
            part.name = nodeName;
        for (std::size_t const mesh : meshes)
        {
            std::vector<std::size_t> const& read = m_meshes.Of(mesh);
            part.meshes.insert(part.meshes.end(), read.begin(), read.end());
        }
        m_model.components[entry->second] = std::move(part);
        return entry->second;
    }

    void ReadCamera(Json const& node, Matrix const& place)
    {
        Json const* const entry = m_file.Entry("cameras", node, "camera");
        if (!entry)
            return;
        MeshModel::Camera camera;
        camera.name = GltfFile::Text(node, "name");
        if (camera.name.empty())
            camera.name = GltfFile::Text(*entry, "name");
        camera.isPerspective = GltfFile::Text(*entry, "type") != "orthographic";
        auto const column = [&](std::size_t index, double sign)
        {
            std::array<double, 3> triple{place[index], place[4 + index], place[8 + index]};
            double const length = index == 3 ? 1.0 : std::hypot(triple[0], triple[1], triple[2]);
            for (double& x : triple)
                x = length > 0.0 ? sign * x / length + 0.0 : 0.0;
            return triple;
        };
        camera.position = column(3, 1.0);
        camera.direction = column(2, -1.0);
        camera.up = column(1, 1.0);
        Json const& lens = GltfFile::Object(*entry, camera.isPerspective ? "perspective" : "orthographic");
        camera.nearest = GltfFile::Number(lens, "znear");
        camera.farthest = GltfFile::Number(lens, "zfar");
        camera.viewAngle = GltfFile::Number(lens, "yfov");
        camera.aspectRatio = GltfFile::Number(lens, "aspectRatio");
        if (auto const height = GltfFile::Number(lens, "ymag"); height && *height > 0.0)
        {
            camera.windowHeight = 2.0 * *height;
            camera.aspectRatio = GltfFile::Number(lens, "xmag").value_or(*height) / *height;
        }
        bool isFinite = true;
        for (auto const& triple : {camera.position, camera.direction, camera.up})
            isFinite = isFinite && std::all_of(triple.begin(), triple.end(), [](double x) { return std::isfinite(x); });
        if (isFinite)
            m_model.cameras.push_back(std::move(camera));
        else
            m_file.Reading().Damage("a camera stands nowhere");
    }

    void CountOthers()
    {
        Losses& losses = m_model.losses;
        for (char const* const list : {"animations", "skins"})
            for (std::size_t i = 0; i < m_file.List(list).size(); ++i)
                losses.AddItem(list, m_file.NameOf(list, i));
        for (std::size_t i = 0; i < m_isPlaced.size(); ++i)
            if (!m_isPlaced[i])
                losses.AddItem("nodes outside of the scene", m_file.NameOf("nodes", i));
        for (auto const& [name, content] : GltfFile::Object(m_file.Root(), "extensions").items())
            losses.AddItem("extensions of the document", name);
    }

    GltfFile& m_file;
    MeshModel& m_model;
    GltfFileMaterials m_materials;
    GltfMeshes m_meshes;
    // Those of one mesh, and of several that the export made of one part.
    std::map<std::vector<std::size_t>, std::size_t> m_partOf;
    bool m_isOfExport = false;
    std::vector<bool> m_isPlaced;
    std::vector<Work> m_work;
};

}  // namespace

void ReadGltfMeshes(MeshReading& reading, std::string_view bytes)
{
    GltfFile file(reading, bytes);
    GltfScene(file).Read();
}

}  // namespace KVR
