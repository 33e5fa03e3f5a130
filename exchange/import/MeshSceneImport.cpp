#include "exchange/import/MeshSceneImport.h"

#include <algorithm>
#include <filesystem>

#include "authoring/SceneWriter.h"
#include "exchange/import/MeshStyles.h"
#include "exchange/model/CleanText.h"

namespace KVR
{

namespace
{

using Mesh = MeshModel::Mesh;

class MeshSceneImporter
{
public:
    MeshSceneImporter(MeshModel const& model, std::string const& scenePath, ImportOptions const& options)
        : m_model(model), m_options(options), m_scene(UTF16String(UTF8String(scenePath)), {})
    {
        m_report.losses = model.losses;
        m_styles = MeshStyles::Of(model, scenePath, m_report.losses);
        for (MeshModel::Component const& component : model.components)
        {
            std::size_t& count = component.isAssembly ? m_report.counts.assemblies : m_report.counts.parts;
            m_ids.emplace_back((component.isAssembly ? "asm" : "part") + std::to_string(++count));
        }
    }

    ImportReport Import(std::string const& modelPath, std::string const& name)
    {
        Authoring::UniverseRecord universe;
        universe.upVector = {0.0, 0.0, 1.0};
        universe.frontVector = {0.0, -1.0, 0.0};
        m_scene.Universe(universe);
        WriteFile(modelPath, name);
        for (std::size_t i = 0; i < m_model.components.size(); ++i)
            WriteComponent(i);
        m_scene.Finish();
        return std::move(m_report);
    }

private:
    Authoring::UnitRecord Unit() const { return {m_model.unit, m_model.unit, kUnitType_Degree}; }

    void WriteFile(std::string const& modelPath, std::string const& name)
    {
        Authoring::FileRecord file;
        file.id = "file1";
        file.label = CleanText(name);
        if (!modelPath.empty())
            file.path = CleanText(std::filesystem::absolute(modelPath).lexically_normal().string());
        file.unit = Unit();
        file.properties.emplace();
        for (auto const& [element, text] : m_model.header)
            file.properties->texts.emplace_back(element, CleanText(text));
        file.children.emplace_back(m_ids.front(), m_model.components.front().isAssembly
                                                      ? Authoring::FileChildType::kAssembly
                                                      : Authoring::FileChildType::kPart);
        m_scene.BeginFile(file);
        Authoring::AttributeSetRecord attributes;
        attributes.styles = m_styles.styles;
        attributes.textures = m_styles.textures;
        for (std::string const& image : m_styles.images)
            m_scene.AddSideFile(UTF8String(image));
        for (MeshModel::Camera const& camera : m_model.cameras)
            AddView(attributes, camera);
        m_scene.AttributeSet(attributes);
        m_scene.EndFile();
    }

    // Each camera is a view of its own, of all that there is.
    void AddView(Authoring::AttributeSetRecord& attributes, MeshModel::Camera const& from) const
    {
        std::string const number = std::to_string(attributes.views.size() + 1);
        Authoring::CameraRecord camera;
        camera.id = UTF8String("camera" + number);
        camera.label = CleanText(from.name);
        camera.isPerspective = from.isPerspective;
        camera.lengthUnit = m_model.unit;
        camera.position = from.position;
        camera.direction = from.direction;
        camera.up = from.up;
        camera.aspectRatio = from.aspectRatio;
        camera.viewAngle = from.viewAngle;
        camera.windowHeight = from.windowHeight;
        auto const planeAt = [&](double distance)
        {
            Authoring::PlaneRecord plane;
            plane.normal = from.direction;
            for (std::size_t axis = 0; axis < 3; ++axis)
                plane.origin[axis] = from.position[axis] + distance * from.direction[axis];
            return plane;
        };
        if (from.nearest)
            camera.nearPlane = planeAt(*from.nearest);
        if (from.farthest)
            camera.farPlane = planeAt(*from.farthest);
        Authoring::ViewRecord view;
        view.id = UTF8String("view" + number);
        view.label = camera.label;
        view.lengthUnit = m_model.unit;
        view.cameraIds.push_back(camera.id);
        attributes.cameras.push_back(std::move(camera));
        attributes.views.push_back(std::move(view));
    }

    void WriteComponent(std::size_t index)
    {
        MeshModel::Component const& component = m_model.components[index];
        Authoring::ComponentRecord record;
        record.id = m_ids[index];
        record.label = CleanText(component.name);
        record.unit = Unit();
        record.isSingleUnderRoot = index == 0;
        if (!component.properties.empty())
            record.properties.emplace().custom = component.properties;
        if (!component.isAssembly)
        {
            m_scene.BeginPart(record);
            for (std::size_t const mesh : component.meshes)
                WriteGeometry(m_model.meshes[mesh]);
            m_scene.EndPart();
            return;
        }
        m_scene.BeginAssembly(record);
        for (MeshModel::Placement const& placement : component.placements)
            WriteInstance(placement);
        m_scene.EndAssembly();
    }

    void WriteInstance(MeshModel::Placement const& placement)
    {
        Authoring::InstanceRecord instance;
        instance.id = UTF8String("inst" + std::to_string(++m_report.counts.instances));
        instance.label =
            CleanText(placement.name.empty() ? m_model.components[placement.component].name : placement.name);
        instance.targetId = m_ids[placement.component];
        instance.transform = placement.transform;
        instance.isVisible = placement.isVisible;
        m_scene.Instance(instance);
        for (CustomProperty const& property : placement.properties)
            m_scene.Property(instance.id, property);
    }

    void Dress(Authoring::GeometryRecord& geometry, std::string const& name, std::uint32_t material) const
    {
        geometry.label = CleanText(name);
        geometry.unit = Unit();
        if (UTF8String const style = m_styles.IdOf(material); !style.IsEmpty())
            geometry.styles.push_back(style);
    }

    void WriteGeometry(Mesh const& mesh)
    {
        if (!m_options.withMeshes)
        {
            if (!mesh.corners.empty())
                m_report.losses.AddItem("meshes, since none were wanted", NameOf(mesh));
            m_report.losses.AddOf("lines and points, since no meshes were wanted", NameOf(mesh),
                                  mesh.lines.size() + mesh.dots.size());
            return;
        }
        if (!mesh.corners.empty())
            WriteMesh(mesh);
        for (std::vector<std::uint32_t> const& line : mesh.lines)
            WriteLine(mesh, line);
        if (mesh.dots.size() == 1)
        {
            Authoring::PointRecord point;
            Dress(point, mesh.name, mesh.dotMaterial);
            point.id = UTF8String("point" + std::to_string(++m_pointCount));
            point.position = PointOf(mesh, mesh.dots.front());
            m_scene.Point(point);
        }
        else if (!mesh.dots.empty())
            WriteCloud(mesh);
        m_report.counts.bodies += mesh.IsEmpty() ? 0 : 1;
    }

    // In a scene the second one counts up from the bottom.
    static std::vector<double> FromTheBottom(std::vector<double> places)
    {
        for (std::size_t i = 1; i < places.size(); i += 2)
            places[i] = 1.0 - places[i];
        return places;
    }

    static std::string NameOf(Mesh const& mesh) { return mesh.name.empty() ? "a mesh without a name" : mesh.name; }

    static Authoring::XYZ PointOf(Mesh const& mesh, std::uint32_t point)
    {
        double const* const place = mesh.points.data() + 3 * std::size_t{point};
        return {place[0], place[1], place[2]};
    }

    void WriteLine(Mesh const& mesh, std::vector<std::uint32_t> const& line)
    {
        Authoring::CurveElementRecord curve;
        Dress(curve, mesh.name, mesh.lineMaterial);
        curve.id = UTF8String("curve" + std::to_string(++m_curveCount));
        Authoring::PolylineRecord polyline;
        for (std::uint32_t const point : line)
            polyline.points.push_back(PointOf(mesh, point));
        m_scene.Meshes().Curve(curve.id, {polyline});
        m_scene.Curve(curve);
    }

    void WriteCloud(Mesh const& mesh)
    {
        Authoring::PointCloudRecord cloud;
        Dress(cloud, mesh.name, MeshModel::kNone);
        if (mesh.dotMaterial != MeshModel::kNone)
            m_report.losses.AddItem("styles of point clouds", NameOf(mesh));
        cloud.id = UTF8String("cloud" + std::to_string(++m_pointCount));
        for (std::uint32_t const point : mesh.dots)
            cloud.points.push_back(PointOf(mesh, point));
        m_scene.PointCloud(cloud);
    }

    // What all triangles have in common is the mesh's, what differs that of the triangles.
    void WriteMesh(Mesh const& mesh)
    {
        bool const isUniform = std::adjacent_find(mesh.materials.begin(), mesh.materials.end(),
                                                  std::not_equal_to<>()) == mesh.materials.end();
        Authoring::MeshRecord record;
        Dress(record, mesh.name, isUniform && !mesh.materials.empty() ? mesh.materials.front() : MeshModel::kNone);
        record.id = UTF8String("mesh" + std::to_string(++m_meshCount));
        m_scene.Mesh(record);
        Authoring::MeshStoreWriter& store = m_scene.Meshes();
        bool const hasTexture = !mesh.texture.empty();
        store.BeginMesh(record.id, {mesh.PointCount(), mesh.normals.size() / 3, mesh.TriangleCount(),
                                    hasTexture ? std::uint64_t{1} : 0, 0});
        store.Vertices(mesh.points);
        store.Normals(mesh.normals);
        if (hasTexture)
            store.TextureSet(2, FromTheBottom(mesh.texture));
        WritePolygons(mesh, isUniform);
        store.EndMesh();
        m_report.counts.triangles += mesh.TriangleCount();
        WriteSegments(mesh, record.id);
    }

    void WritePolygons(Mesh const& mesh, bool isUniform)
    {
        Authoring::MeshStoreWriter& store = m_scene.Meshes();
        std::vector<std::optional<std::uint64_t>> entries(m_model.materials.size());
        for (std::size_t i = 0; i < mesh.TriangleCount(); ++i)
        {
            std::array<std::uint64_t, 3> corners;
            std::array<std::uint64_t, 3> normals;
            std::array<Authoring::TextureReference, 3> texture;
            bool hasTexture = !mesh.texture.empty();
            for (std::size_t corner = 0; corner < 3; ++corner)
            {
                std::size_t const place = 3 * i + corner;
                corners[corner] = mesh.corners[place];
                normals[corner] = mesh.cornerNormals[place];
                hasTexture = hasTexture && mesh.cornerTexture[place] != MeshModel::kNone;
                texture[corner].vertex = hasTexture ? mesh.cornerTexture[place] : 0;
            }
            Authoring::PolygonRecord polygon;
            polygon.vertices = corners;
            polygon.normals = normals;
            if (hasTexture)
                polygon.textures = texture;
            std::uint32_t const material = isUniform ? MeshModel::kNone : mesh.materials[i];
            if (material != MeshModel::kNone && !entries[material])
                entries[material] = store.AddMaterial(m_styles.IdOf(material));
            if (material != MeshModel::kNone)
                polygon.material = entries[material];
            store.Polygon(polygon);
        }
    }

    // A segment for each piece of the mesh.
    void WriteSegments(Mesh const& mesh, UTF8String const& id)
    {
        std::vector<std::size_t> firsts = mesh.pieces;
        if (firsts.empty())
            firsts.push_back(0);
        firsts.push_back(mesh.TriangleCount());
        std::vector<Authoring::SegmentStoreWriter::Indices> segments;
        for (std::size_t i = 0; i + 1 < firsts.size(); ++i)
        {
            if (firsts[i] == firsts[i + 1])
                continue;
            Authoring::SegmentStoreWriter::Indices& segment = segments.emplace_back();
            for (std::size_t triangle = firsts[i]; triangle < firsts[i + 1]; ++triangle)
                segment.push_back(triangle);
        }
        m_scene.Segments().Mesh(id, segments, {}, std::vector<bool>(segments.size(), true));
    }

    MeshModel const& m_model;
    ImportOptions const& m_options;
    ImportReport m_report;
    Authoring::SceneWriter m_scene;
    MeshStyles m_styles;
    // Of the components.
    std::vector<UTF8String> m_ids;
    std::size_t m_meshCount = 0;
    std::size_t m_curveCount = 0;
    std::size_t m_pointCount = 0;
};

}  // namespace

ImportReport WriteSceneOf(MeshModel const& model, std::string const& modelPath, std::string const& name,
                          std::string const& scenePath, ImportOptions const& options)
{
    return MeshSceneImporter(model, scenePath, options).Import(modelPath, name);
}

}  // namespace KVR
