#include "fuzz/HostileScene.h"

#include "authoring/SceneWriter.h"
#include "framework/api/UTF8String.h"
#include "fuzz/HostileStores.h"

namespace KVR::Fuzz
{

namespace
{

using namespace Authoring;

constexpr std::size_t kMost = 6;

class Author
{
public:
    Author(FuzzedDataProvider& input, SceneWriter& writer) : m_input(input), m_writer(writer) {}

    void Write()
    {
        WriteUniverse();
        // Whether they are parts, by the order in which they are written.
        std::size_t const components = 1 + Count();
        for (std::size_t i = 0; i < components; ++i)
            m_ids.push_back(UTF8String("c" + std::to_string(i)));
        WriteFile();
        for (std::size_t i = 0; i < components; ++i)
            if (i + 1 == components || m_input.ConsumeBool())
                WritePart(m_ids[i]);
            else
                WriteAssembly(m_ids[i]);
        m_writer.Finish();
    }

private:
    std::size_t Count() { return m_input.ConsumeIntegralInRange<std::size_t>(0, kMost); }
    double Number() { return HostileNumber(m_input); }
    XYZ Triple()
    {
        XYZ triple;
        for (double& x : triple)
            x = Number();
        return triple;
    }
    UTF8String Text() { return UTF8String(m_input.ConsumeRandomLengthString(12)); }
    // Of anything that there is, or of nothing.
    UTF8String Id()
    {
        std::size_t const place = m_input.ConsumeIntegralInRange<std::size_t>(0, m_ids.size());
        return place < m_ids.size() ? m_ids[place] : UTF8String("nothing");
    }
    UTF8String NewId(char const* kind) { return m_ids.emplace_back(UTF8String(kind + std::to_string(m_ids.size()))); }
    std::vector<UTF8String> Ids(std::size_t count)
    {
        std::vector<UTF8String> ids;
        for (std::size_t i = 0; i < count; ++i)
            ids.push_back(Id());
        return ids;
    }
    Matrix3d Transform()
    {
        Matrix3d transform;
        if (m_input.ConsumeBool())
            for (int i = 0; i < 12; ++i)
                transform.SetElement(i / 4, i % 4, Number());
        return transform;
    }
    ColorRecord Color() { return {Number(), Number(), Number(), Number()}; }
    UnitRecord Unit()
    {
        UnitRecord unit;
        if (m_input.ConsumeBool())
            unit.length = static_cast<UnitTypeEnum>(m_input.ConsumeIntegralInRange<int>(0, 30));
        return unit;
    }
    std::vector<ExtensionDataRecord> Extensions()
    {
        static constexpr char const* kTypes[] = {"kvr.body",
                                                 "gltf.pbrMetallicRoughness",
                                                 "gltf.material",
                                                 "gltf.sampler",
                                                 "kvr.annotation.kind",
                                                 "kvr.annotation.references",
                                                 "kvr.annotation.details"};
        std::vector<ExtensionDataRecord> records;
        while (records.size() < kMost && m_input.ConsumeIntegralInRange<int>(0, 3) == 0)
            records.push_back({UTF8String(m_input.PickValueInArray(kTypes)),
                               UTF8String(m_input.ConsumeRandomLengthString(60)),
                               {},
                               {},
                               {}});
        return records;
    }
    void Dress(GeometryRecord& geometry, char const* kind)
    {
        geometry.id = NewId(kind);
        geometry.label = Text();
        geometry.isVisible = m_input.ConsumeIntegralInRange<int>(0, 7) != 0;
        geometry.styles = Ids(Count() / 3);
        geometry.unit = Unit();
        geometry.extensionData = Extensions();
        if (m_input.ConsumeIntegralInRange<int>(0, 3) == 0)
            geometry.transform = Transform();
    }

    void WriteUniverse()
    {
        UniverseRecord universe;
        universe.upVector = Triple();
        universe.frontVector = Triple();
        universe.surfaceColor = Color();
        m_writer.Universe(universe);
    }

    void WriteFile()
    {
        FileRecord file;
        file.id = "file";
        file.label = Text();
        file.unit = Unit();
        file.children.emplace_back(m_ids[0], m_input.ConsumeBool() ? FileChildType::kAssembly : FileChildType::kPart);
        m_writer.BeginFile(file);
        AttributeSetRecord set;
        for (std::size_t i = Count(); i > 0; --i)
            set.styles.push_back(Style());
        for (std::size_t i = Count() / 2; i > 0; --i)
        {
            LayerRecord layer;
            layer.id = NewId("l");
            layer.label = Text();
            layer.isVisible = m_input.ConsumeBool();
            layer.itemIds = Ids(Count());
            set.layers.push_back(layer);
        }
        for (std::size_t i = Count() / 2; i > 0; --i)
            AddView(set);
        m_writer.AttributeSet(set);
        m_writer.EndFile();
    }

    StyleRecord Style()
    {
        StyleRecord style;
        style.id = NewId("s");
        style.label = Text();
        style.diffuse = Color();
        style.transparency = Number();
        style.extensionData = Extensions();
        return style;
    }

    void AddView(AttributeSetRecord& set)
    {
        CameraRecord camera;
        camera.id = NewId("k");
        camera.isPerspective = m_input.ConsumeBool();
        camera.position = Triple();
        camera.direction = Triple();
        camera.up = Triple();
        camera.viewAngle = Number();
        camera.windowHeight = Number();
        if (m_input.ConsumeBool())
            camera.sectionPlanes.push_back({Triple(), Triple(), Triple()});
        ViewRecord view;
        view.id = NewId("v");
        view.label = Text();
        view.cameraIds = {camera.id};
        for (std::size_t i = Count(); i > 0; --i)
            view.members.push_back({Ids(1 + Count() / 3), m_input.ConsumeBool(), Ids(Count() / 3), Transform()});
        set.cameras.push_back(camera);
        set.views.push_back(view);
    }

    ComponentRecord Component(UTF8String const& id)
    {
        ComponentRecord component;
        component.id = id;
        component.label = Text();
        component.unit = Unit();
        component.styles = Ids(Count() / 3);
        for (std::size_t i = Count() / 3; i > 0; --i)
            component.crossLevel.styles.emplace_back(Ids(1 + Count() / 3), Ids(1));
        return component;
    }

    void WriteAssembly(UTF8String const& id)
    {
        m_writer.BeginAssembly(Component(id));
        for (std::size_t i = 1 + Count(); i > 0; --i)
        {
            InstanceRecord instance;
            instance.id = NewId("i");
            instance.label = Text();
            instance.targetId = Id();
            instance.transform = Transform();
            instance.isVisible = m_input.ConsumeIntegralInRange<int>(0, 7) != 0;
            instance.styles = Ids(Count() / 3);
            m_writer.Instance(instance);
        }
        m_writer.EndAssembly();
    }

    void WritePart(UTF8String const& id)
    {
        m_writer.BeginPart(Component(id));
        for (std::size_t i = 1 + Count(); i > 0; --i)
            switch (m_input.ConsumeIntegralInRange<int>(0, 5))
            {
                case 0:
                    WriteCurve();
                    break;
                case 1:
                    WriteNote();
                    break;
                case 2:
                {
                    PointRecord point;
                    Dress(point, "p");
                    point.position = Triple();
                    m_writer.Point(point);
                    break;
                }
                case 3:
                    WriteMesh();
                    break;
                default:
                    WriteBody();
            }
        m_writer.EndPart();
    }

    void WriteBody()
    {
        BodyRecord body;
        Dress(body, "b");
        std::vector<SubEntityId> faces;
        for (std::size_t i = Count(); i > 0; --i)
        {
            faces.push_back({static_cast<std::uint32_t>(faces.size()), NewId("f")});
            body.faces.push_back({faces.back().dataId, Ids(1)});
        }
        TopoDS_Shape const shape = HostileShape(m_input);
        if (!shape.IsNull())
            m_writer.Kernel().Body(body.id, shape, faces);
        m_writer.Body(body);
    }

    void WriteMesh()
    {
        MeshRecord mesh;
        Dress(mesh, "m");
        MeshHead head;
        head.vertexCount = 3 + Count();
        head.normalCount = Count();
        head.polygonCount = 1 + Count();
        MeshStoreWriter& store = m_writer.Meshes();
        store.BeginMesh(mesh.id, head);
        store.Vertices(Numbers(3 * head.vertexCount));
        store.Normals(Numbers(3 * head.normalCount));
        std::vector<SegmentStoreWriter::Indices> faces(1);
        for (std::size_t i = 0; i < head.polygonCount; ++i)
        {
            std::vector<std::uint64_t> corners;
            for (std::size_t k = 3 + Count() / 3; k > 0; --k)
                corners.push_back(m_input.ConsumeIntegralInRange<std::uint64_t>(0, head.vertexCount - 1));
            PolygonRecord polygon;
            polygon.vertices = corners;
            if (m_input.ConsumeBool())
                polygon.material = store.AddMaterial(Id());
            store.Polygon(polygon);
            faces[0].push_back(i);
        }
        store.EndMesh();
        if (m_input.ConsumeBool())
            m_writer.Segments().Mesh(mesh.id, faces, {}, {true});
        m_writer.Mesh(mesh);
    }

    std::vector<double> Numbers(std::size_t count)
    {
        std::vector<double> numbers;
        for (std::size_t i = 0; i < count; ++i)
            numbers.push_back(Number());
        return numbers;
    }

    CurveRecord Curve()
    {
        switch (m_input.ConsumeIntegralInRange<int>(0, 4))
        {
            case 0:
                return {LineRecord{Triple(), Triple(), Number(), Number()}};
            case 1:
                return {EllipseRecord{m_input.ConsumeBool(), m_input.ConsumeBool(), Triple(), Triple(), Triple(),
                                      Number(), Number(), Number()}};
            case 2:
                return {PolylineRecord{false, false, {Triple(), Triple(), Triple()}, {}}};
            case 3:
                return {RayRecord{Triple(), Triple()}};
            default:
            {
                NurbsRecord nurbs;
                nurbs.degree = 1 + Count() / 2;
                for (std::size_t i = nurbs.degree + 1 + Count(); i > 0; --i)
                    nurbs.controlPoints.push_back(Triple());
                nurbs.knots = Numbers(nurbs.controlPoints.size() + nurbs.degree + 1);
                if (m_input.ConsumeBool())
                    nurbs.weights = Numbers(nurbs.controlPoints.size());
                nurbs.start = Number();
                nurbs.end = Number();
                return {nurbs};
            }
        }
    }

    void WriteCurve()
    {
        CurveElementRecord curve;
        Dress(curve, "e");
        m_writer.Meshes().Curve(curve.id, Curve());
        m_writer.Curve(curve);
    }

    void WriteNote()
    {
        CalloutRecord callout;
        callout.id = NewId("n");
        callout.label = Text();
        callout.extensionData = Extensions();
        callout.childIds = Ids(Count() / 2);
        TextRecord text;
        text.origin = Triple();
        text.lines.resize(Count() / 2);
        for (std::vector<TextFragmentRecord>& line : text.lines)
            line.push_back({Text(), Text(), {}, {}, Number(), Color()});
        callout.text = text;
        if (m_input.ConsumeBool())
        {
            callout.plane.emplace();
            callout.plane->id = NewId("w");
            callout.plane->plane = {Triple(), Triple(), Triple()};
        }
        m_writer.Callout(callout);
    }

    FuzzedDataProvider& m_input;
    SceneWriter& m_writer;
    // All that may be referred to.
    std::vector<UTF8String> m_ids;
};

}  // namespace

void WriteHostileScene(std::string const& path, FuzzedDataProvider& input)
{
    SceneWriterOptions options;
    options.kernelForm = input.ConsumeBool() ? KernelStoreForm::kText : KernelStoreForm::kBinary;
    options.meshLayout = input.ConsumeBool() ? MeshStoreLayout::kMeshInfo : MeshStoreLayout::kGeometryInfo;
    {
        SceneWriter writer{UTF16String(UTF8String(path)), options};
        Author(input, writer).Write();
    }
    ChangeStores(path, options.kernelForm == KernelStoreForm::kText, input);
}

}  // namespace KVR::Fuzz
