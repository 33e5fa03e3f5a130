#include "exchange/import/SceneImport.h"

#include <BRepTools.hxx>
#include <BRep_Tool.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "authoring/SceneWriter.h"
#include "exchange/import/Annotations.h"
#include "exchange/import/BodyMeshing.h"
#include "exchange/import/DocumentProperties.h"
#include "exchange/import/InstanceStyles.h"
#include "exchange/import/MeshRecord.h"
#include "exchange/import/ModelBox.h"
#include "exchange/import/NoteFacts.h"
#include "exchange/import/OccurrenceWays.h"
#include "exchange/import/PartPlan.h"
#include "exchange/import/SavedViews.h"
#include "exchange/import/SceneLayers.h"
#include "exchange/import/StyleTable.h"
#include "exchange/model/CleanText.h"
#include "exchange/model/StepCensus.h"
#include "framework/api/DataIdToPersistentIdMap.h"
#include "framework/api/Time.h"
#include "framework/api/UTF16String.h"
#include "framework/kernel/tessellation/BodyMesh.h"
#include "scene/ExtensionTypes.h"

namespace KVR
{

namespace
{

class SceneImporter
{
public:
    SceneImporter(ModelDocument const& model, std::string const& modelPath, std::string const& name,
                  std::string const& scenePath, ImportOptions const& options, TellStage const& tell)
        : m_model(model),
          m_modelPath(modelPath),
          m_name(name),
          m_options(options),
          m_tell(tell),
          m_plan(model.document),
          m_styles(model.document, scenePath, m_report.losses),
          m_scene(
              UTF16String(UTF8String(scenePath)),
              {.kernelForm = options.asText ? Authoring::KernelStoreForm::kText : Authoring::KernelStoreForm::kBinary,
               .meshLayout = Authoring::MeshStoreLayout::kMeshInfo})
    {
        m_report.losses = model.losses;
        NameUsages();
    }

    ImportReport Import()
    {
        PlanParts();
        if (m_options.withMeshes)
            m_meshing.emplace(m_plan, m_options.quality, m_tell);
        auto const idsOf = [this](TDF_Label const& label) { return IdsOf(label); };
        m_annotations = std::make_unique<Annotations>(m_model, m_plan, idsOf, m_report.losses);
        WriteUniverse();
        if (m_meshing)
        {
            m_report.deflection = m_meshing->Deflection();
            // Its memory is that of the meshes.
            if (m_model.release.valid())
                m_model.release.wait();
            m_meshing->Start();
        }
        WriteFile();
        for (std::size_t i = 0; i < m_plan.components.size(); ++i)
        {
            if (m_meshing)
                m_meshing->Wait(i);
            // Until all is meshed the threads that mesh tell how far they are.
            if (!m_meshing || m_meshing->IsDone())
                m_tell("writing", static_cast<double>(i) / static_cast<double>(m_plan.components.size()));
            if (m_plan.components[i].isAssembly)
                WriteAssembly(i);
            else
                WritePart(i);
        }
        CountLosses();
        m_scene.Finish();
        return std::move(m_report);
    }

private:
    // Open CASCADE calls a component by other texts of its usage, too.
    void NameUsages()
    {
        for (ComponentPlan& component : m_plan.components)
            for (std::size_t i = 0; i < component.instances.size(); ++i)
                if (StepUsage const* const usage = m_model.usages.Seek(component.origins[i].label);
                    usage && usage->name.find_first_not_of(' ') != std::string::npos)
                    component.instances[i].label = CleanText(usage->name);
    }

    void PlanParts()
    {
        PartPlan::Numbers numbers;
        m_parts.resize(m_plan.components.size());
        for (std::size_t i = 0; i < m_plan.components.size(); ++i)
            if (!m_plan.components[i].isAssembly)
                m_parts[i] =
                    std::make_unique<PartPlan>(m_plan.components[i], m_model, m_styles, numbers, m_report.losses);
    }

    // The ids of what a label of the document became: a component, placement, body, face, edge or note, or for a
    // compound several of them.
    std::vector<UTF8String> IdsOf(TDF_Label const& label) const
    {
        if (UTF8String const id = m_plan.IdOf(label); !id.IsEmpty())
            return {id};
        if (m_annotations)
            if (UTF8String const id = m_annotations->IdOf(label); !id.IsEmpty())
                return {id};
        std::size_t const component = m_plan.ComponentOf(label.Father());
        if (component >= m_parts.size() || !m_parts[component])
            return {};
        TopoDS_Shape const shape = XCAFDoc_ShapeTool::GetShape(label);
        return shape.IsNull() ? std::vector<UTF8String>() : m_parts[component]->IdsOf(shape);
    }

    Authoring::UnitRecord Unit() const { return {m_model.unit, m_model.unit, kUnitType_Degree}; }

    void WriteUniverse()
    {
        Authoring::UniverseRecord universe;
        universe.upVector = {0.0, 0.0, 1.0};
        universe.frontVector = {0.0, -1.0, 0.0};
        m_scene.Universe(universe);
    }

    void WriteFile()
    {
        Authoring::FileRecord file;
        file.id = "file1";
        file.label = CleanText(m_name);
        if (!m_modelPath.empty())
            file.path = CleanText(std::filesystem::absolute(m_modelPath).lexically_normal().string());
        file.unit = Unit();
        file.properties = Properties();
        for (std::size_t const root : m_plan.roots)
            file.children.emplace_back(m_plan.components[root].id, m_plan.components[root].isAssembly
                                                                       ? Authoring::FileChildType::kAssembly
                                                                       : Authoring::FileChildType::kPart);
        m_scene.BeginFile(file);
        Authoring::AttributeSetRecord attributes;
        attributes.styles = m_styles.Styles();
        attributes.textures = m_styles.Textures();
        for (std::string const& image : m_styles.Images())
            m_scene.AddSideFile(UTF8String(image));
        auto const idsOf = [this](TDF_Label const& label) { return IdsOf(label); };
        attributes.layers = LayersOf(m_model.document, idsOf, m_report.losses);
        auto const noteNamed = [this](std::string const& label) { return m_annotations->IdOf(label); };
        OccurrenceWays ways(m_plan);
        for (std::size_t i = 0; i < m_plan.components.size(); ++i)
            for (Annotations::Note const& note : m_annotations->NotesOf(i))
                ways.Put(note.callout.id, i);
        auto const memberIds = [&](TDF_Label const& label)
        {
            std::vector<UTF8String> ids = IdsOf(label);
            // Bodies, faces and edges, whose labels are in that of their part.
            if (std::size_t const component = m_plan.ComponentOf(label.Father()); component < m_plan.components.size())
                for (UTF8String const& id : ids)
                    ways.Put(id, component);
            return ids;
        };
        // Of triangles where there are some.
        auto const boxOf = [&]
        {
            if (m_meshing)
                m_meshing->WaitForAll();
            return BoxOfModel(m_plan);
        };
        SavedViews views = SavedViews::Of(m_model, boxOf, memberIds, noteNamed, m_report.losses);
        for (Authoring::ViewRecord& view : views.views)
            ways.Lead(view, m_report.losses);
        attributes.views = std::move(views.views);
        attributes.cameras = std::move(views.cameras);
        m_scene.AttributeSet(attributes);
        m_scene.EndFile();
    }

    Authoring::FilePropertiesRecord Properties() const
    {
        Authoring::FilePropertiesRecord properties;
        for (auto const& [name, text] : m_model.header)
            properties.texts.emplace_back(name, CleanText(text));
        Time time;
        if (Time::FromString(UTF8String(m_model.creationTime), time))
            properties.creationDate = time.Value();
        return properties;
    }

    Authoring::ComponentRecord Component(std::size_t index)
    {
        ComponentPlan const& plan = m_plan.components[index];
        Authoring::ComponentRecord component;
        component.id = plan.id;
        component.label = plan.name;
        component.unit = Unit();
        component.isSingleUnderRoot = m_plan.roots.size() == 1 && m_plan.roots.front() == index;
        if (UTF8String const style = m_styles.StyleOf(plan.label, false); !style.IsEmpty())
            component.styles.push_back(style);
        component.properties = PropertiesOfComponent(m_model, plan.label, m_report.losses);
        return component;
    }

    void WriteAssembly(std::size_t index)
    {
        ComponentPlan const& plan = m_plan.components[index];
        Authoring::ComponentRecord assembly = Component(index);
        assembly.crossLevel.styles = InstanceStyles(m_plan, plan, m_styles, m_report.losses);
        m_scene.BeginAssembly(assembly);
        for (std::size_t i = 0; i < plan.instances.size(); ++i)
        {
            Authoring::InstanceRecord const& instance = plan.instances[i];
            m_scene.Instance(instance);
            for (Authoring::PropertyValue const& property :
                 PropertiesOfUsage(m_model, plan.origins[i].label, m_report.losses))
                m_scene.Property(instance.id, property);
            ++m_report.counts.instances;
        }
        WriteNotes(index);
        m_scene.EndAssembly();
        ++m_report.counts.assemblies;
    }

    void WritePart(std::size_t index)
    {
        m_scene.BeginPart(Component(index));
        PartPlan const& part = *m_parts[index];
        // A part that stands under the root has no instance that could hide it.
        bool const isShown = m_plan.components[index].isVisible;
        for (BodyPlan const& body : part.bodies)
            if (body.isPoint)
                WritePoint(body, isShown);
            else
                WriteBody(part, body, isShown);
        WriteNotes(index);
        m_scene.EndPart();
        ++m_report.counts.parts;
        if (m_meshing)
            m_meshing->Release(index, std::exchange(m_written, {}));
    }

    void WritePoint(BodyPlan const& body, bool isShown)
    {
        Authoring::PointRecord point;
        Dress(point, body, isShown);
        point.id = body.id;
        gp_Pnt const position = BRep_Tool::Pnt(TopoDS::Vertex(body.shape));
        point.position = {position.X() + 0.0, position.Y() + 0.0, position.Z() + 0.0};
        m_scene.Point(point);
    }

    void Dress(Authoring::GeometryRecord& geometry, BodyPlan const& body, bool isShown) const
    {
        geometry.label = body.name;
        geometry.isVisible = body.isVisible && isShown;
        geometry.unit = Unit();
        if (!body.style.IsEmpty())
            geometry.styles.push_back(body.style);
    }

    void WriteBody(PartPlan const& part, BodyPlan const& body, bool isShown)
    {
        bool const hasBody = m_options.withBreps && body.hasGeometry;
        if (hasBody)
            WriteBrep(part, body, isShown);
        if (m_options.withMeshes && !body.meshId.IsEmpty())
            WriteMesh(part, body, isShown, hasBody);
        else if (!hasBody)
            m_report.losses.AddItem("wires and edges, since bodies were not wanted", std::string(body.id.View()));
        // Triangles are in the mesh; the store of bodies needs none. Those of faces without surface stay.
        if (hasBody)
            m_written.push_back(body.shape);
        ++m_report.counts.bodies;
    }

    void WriteBrep(PartPlan const& part, BodyPlan const& body, bool isShown)
    {
        Authoring::BodyRecord record;
        Dress(record, body, isShown);
        record.id = body.id;
        record.type = body.type;
        std::vector<Authoring::SubEntityId> faceIds;
        std::vector<Authoring::SubEntityId> edgeIds;
        EditableDataIdToPersistentIdMap persistentIds;
        for (bool const isFace : {true, false})
        {
            TopTools_IndexedMapOfShape shapes;
            TopExp::MapShapes(body.shape, isFace ? TopAbs_FACE : TopAbs_EDGE, shapes);
            for (int i = 1; i <= shapes.Extent(); ++i)
            {
                auto const place = static_cast<std::uint32_t>(i - 1);
                UTF8String const id = isFace ? PartPlan::FaceId(body, place) : PartPlan::EdgeId(body, place);
                (isFace ? faceIds : edgeIds).push_back({place, id});
                UTF8String const style = StyleOf(part, shapes(i));
                // That of a body which is a face or an edge is the body's.
                if (!style.IsEmpty() && !shapes(i).IsSame(body.shape))
                    (isFace ? record.faces : record.edges).push_back({id, {style}});
                auto const entity = m_model.entityIds.find(shapes(i).TShape().get());
                if (entity != m_model.entityIds.end())
                    persistentIds.Add(id, UTF8String(entity->second));
            }
        }
        m_scene.Kernel().Body(body.id, body.shape, faceIds, edgeIds);
        if (persistentIds.Size() > 0)
            m_scene.PersistentIds().Object(body.id, persistentIds);
        m_scene.Body(record);
    }

    // The style of a face or edge that differs from that of its body.
    static UTF8String StyleOf(PartPlan const& part, TopoDS_Shape const& shape)
    {
        SubShapeInfo const* const info = part.subShapes.Seek(shape);
        return info ? info->style : UTF8String();
    }

    void WriteMesh(PartPlan const& part, BodyPlan const& body, bool isShown, bool hasBody)
    {
        BodyMesh const mesh(body.shape);
        m_report.losses.AddOf("faces that could not be meshed", body.id.View(), mesh.FacesWithoutTriangles());
        if (mesh.IsEmpty())
            return;
        Authoring::MeshRecord record;
        Dress(record, body, isShown);
        record.id = body.meshId;
        if (hasBody)
            record.extensionData.push_back({kBodyTypeId, body.id, {}, {}, {}});
        m_scene.Mesh(record);
        WriteBodyMesh(
            mesh, body.meshId, m_scene.Meshes(), m_scene.Segments(),
            [&](TopoDS_Shape const& face) { return StyleOf(part, face); },
            [&](TopoDS_Shape const& face)
            {
                SubShapeInfo const* const info = part.subShapes.Seek(face);
                return !info || info->isVisible;
            });
        m_report.counts.triangles += mesh.TriangleCount();
    }

    void WriteNotes(std::size_t index)
    {
        for (Annotations::Note const& note : m_annotations->NotesOf(index))
        {
            for (auto const& [id, curve] : note.curves)
                m_scene.Meshes().Curve(id, curve);
            m_scene.Callout(note.callout);
        }
    }

    void CountLosses()
    {
        CountComments(m_model.document, m_report.losses);
        if (m_model.step)
            CountStepLosses(*m_model.step, m_annotations->Entities(), m_report.losses);
        for (TopoDS_Shape const& shape : m_written)
            BRepTools::Clean(shape);
    }

    ModelDocument const& m_model;
    std::string m_modelPath;
    std::string m_name;
    ImportOptions m_options;
    TellStage const& m_tell;
    ImportReport m_report;
    ProductPlan m_plan;
    StyleTable m_styles;
    Authoring::SceneWriter m_scene;
    std::vector<std::unique_ptr<PartPlan>> m_parts;
    std::unique_ptr<Annotations> m_annotations;
    std::vector<TopoDS_Shape> m_written;
    /// The last, so that its threads end before what they work at.
    std::optional<BodyMeshing> m_meshing;
};

}  // namespace

ImportReport WriteSceneOf(ModelDocument const& model, std::string const& modelPath, std::string const& name,
                          std::string const& scenePath, ImportOptions const& options, TellStage const& tell)
{
    return SceneImporter(model, modelPath, name, scenePath, options, tell).Import();
}

}  // namespace KVR
