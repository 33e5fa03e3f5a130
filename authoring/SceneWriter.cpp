#include "authoring/SceneWriter.h"

#include <vector>

#include "authoring/XmlFile.h"
#include "authoring/elements/ElementWriters.h"
#include "authoring/elements/PropertyText.h"
#include "authoring/elements/SceneIds.h"
#include "authoring/elements/SideFiles.h"
#include "framework/api/Exception.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR::Authoring
{

namespace
{

void Check(bool holds, char const* message)
{
    if (!holds)
        throw GeneralException(message);
}

enum class Owner
{
    kNone,
    kFile,
    kAssembly,
    kPart
};

enum class SetKind
{
    kGeometricSet,
    kExtension
};

}  // namespace

struct SceneWriter::State
{
    State(UTF16String const& path, SceneWriterOptions const& options)
        : sideFiles(path, options), document(path, Names::Scene)
    {
    }

    SideFiles sideFiles;
    XmlFile document;
    SceneIds ids;
    Owner owner = Owner::kNone;
    std::vector<SetKind> sets;
    bool isChildSetOpen = false;
    unsigned long long propertyCount = 0;

    void Define(ObjectRecord const& object) { ids.Define(object.id); }

    template <class Records>
    void DefineAll(Records const& records)
    {
        for (auto const& record : records)
            Define(record);
    }

    void Begin(Owner kind, ElementName name, ObjectRecord const& object)
    {
        Check(owner == Owner::kNone && sets.empty(), "files and components do not nest");
        Define(object);
        owner = kind;
        document.Begin(name);
        WriteHead(document, object);
    }

    void End(Owner kind)
    {
        Check(owner == kind && sets.empty(), "what is closed was opened");
        if (isChildSetOpen)
            document.End();
        isChildSetOpen = false;
        document.End();
        owner = Owner::kNone;
    }

    void BeginComponent(Owner kind, ElementName name, ComponentRecord const& component)
    {
        Begin(kind, name, component);
        if (component.isSingleUnderRoot)
            document.Attribute(Names::IsSingleUnderRoot, "1");
        WriteUnit(document, component.unit);
        WriteStyleRefs(document, Names::Styles, component.styles);
        WriteChangeKey(document, component);
        WriteExtensionData(document, component);
        if (component.properties)
            WriteFileProperties(document, *component.properties);
        if (kind == Owner::kAssembly)
            WriteCrossLevel(document, component.crossLevel);
    }

    /// Makes the innermost open element one that takes geometry.
    void OpenGeometry(ObjectRecord const& object)
    {
        OpenChildSet();
        Define(object);
    }

    void OpenChildSet()
    {
        Check(owner != Owner::kFile, "a file names its children by their ids");
        if (owner == Owner::kNone || !sets.empty() || isChildSetOpen)
            return;
        document.Begin(Names::ChildSet);
        isChildSetOpen = true;
    }

    void BeginSet(SetKind kind, ElementName name, GeometryRecord const& set)
    {
        Check(kind == SetKind::kExtension || sets.empty() || sets.back() == SetKind::kGeometricSet,
              "an extension geometry holds no geometric sets");
        OpenGeometry(set);
        Authoring::BeginSet(document, name, set);
        sets.push_back(kind);
    }
};

SceneWriter::SceneWriter(UTF16String const& path, SceneWriterOptions const& options)
    : m_state(std::make_unique<State>(path, options))
{
}

SceneWriter::~SceneWriter() = default;

void SceneWriter::Universe(UniverseRecord const& universe)
{
    Check(m_state->owner == Owner::kNone && m_state->sets.empty(), "a universe stands under the root");
    WriteUniverse(m_state->document, universe);
}

void SceneWriter::BeginFile(FileRecord const& file)
{
    m_state->Begin(Owner::kFile, Names::IFile, file);
    XmlFile& document = m_state->document;
    document.Attribute(Names::IsRoot, file.isRoot ? "1" : "0");
    if (file.path)
        document.Attribute(Names::FileFullPath, file.path->View());
    if (file.lastModification)
        document.Attribute(Names::LastModificationTime, std::string_view(TimeText(*file.lastModification)));
    WriteChangeKey(document, file);
    WriteUnit(document, file.unit);
    if (file.properties)
        WriteFileProperties(document, *file.properties);
    if (!file.references.empty())
    {
        document.Begin(Names::RefFiles);
        for (auto const& [id, path] : file.references)
        {
            document.Begin(Names::RefFile);
            document.Attribute(Names::RefId, id.View());
            document.Attribute(Names::RefPath, path.View());
            document.End();
        }
        document.End();
    }
    WriteExtensionData(document, file);
    document.Begin(Names::ChildSet);
    for (FileChild const& child : file.children)
    {
        m_state->ids.Want(child.id);
        WriteFileChild(document, child);
    }
    document.End();
}

void SceneWriter::EndFile()
{
    m_state->End(Owner::kFile);
}

void SceneWriter::BeginAssembly(ComponentRecord const& assembly)
{
    m_state->BeginComponent(Owner::kAssembly, Names::IAssembly, assembly);
}

void SceneWriter::EndAssembly()
{
    m_state->End(Owner::kAssembly);
}

void SceneWriter::BeginPart(ComponentRecord const& part)
{
    m_state->BeginComponent(Owner::kPart, Names::IPart, part);
}

void SceneWriter::EndPart()
{
    m_state->End(Owner::kPart);
}

void SceneWriter::AttributeSet(AttributeSetRecord const& set)
{
    Check(m_state->owner != Owner::kNone && !m_state->isChildSetOpen, "attributes stand in front of geometry");
    m_state->DefineAll(set.textures);
    m_state->DefineAll(set.styles);
    m_state->DefineAll(set.layers);
    m_state->DefineAll(set.groups);
    m_state->DefineAll(set.levelsOfDetail);
    m_state->DefineAll(set.cameras);
    m_state->DefineAll(set.views);
    WriteAttributeSet(m_state->document, set);
}

void SceneWriter::Instance(InstanceRecord const& instance)
{
    Check(m_state->owner == Owner::kAssembly && m_state->sets.empty(), "an instance stands in an assembly");
    m_state->OpenGeometry(instance);
    m_state->ids.Want(instance.targetId);
    WriteInstance(m_state->document, instance);
}

void SceneWriter::FeatureOverride(FeatureOverrideRecord const& featureOverride)
{
    Check(m_state->owner == Owner::kAssembly && m_state->sets.empty(), "a feature override stands in an assembly");
    m_state->OpenGeometry(featureOverride);
    m_state->DefineAll(featureOverride.bodies);
    m_state->DefineAll(featureOverride.meshes);
    XmlFile& document = m_state->document;
    document.Begin(Names::IAssemblyFeatureOverride);
    WriteHead(document, featureOverride);
    document.Attribute(Names::Visibility, featureOverride.isVisible ? "1" : "0");
    document.Begin(Names::BaseOccPaths);
    for (OccurrencePath const& path : featureOverride.baseOccurrences)
    {
        document.Begin(Names::BaseOccPath);
        document.Attribute(Names::Path, std::string_view(PathText(path)));
        document.End();
    }
    document.End();
    document.Begin(Names::ChildSet);
    for (BodyRecord const& body : featureOverride.bodies)
        WriteBody(document, body);
    for (MeshRecord const& mesh : featureOverride.meshes)
        WriteMesh(document, mesh);
    document.End();
    WriteChangeKey(document, featureOverride);
    WriteExtensionData(document, featureOverride);
    document.End();
}

void SceneWriter::Body(BodyRecord const& body)
{
    m_state->OpenGeometry(body);
    WriteBody(m_state->document, body);
}

void SceneWriter::Mesh(MeshRecord const& mesh)
{
    m_state->OpenGeometry(mesh);
    WriteMesh(m_state->document, mesh);
}

void SceneWriter::Curve(CurveElementRecord const& curve)
{
    m_state->OpenGeometry(curve);
    WriteCurve(m_state->document, curve);
}

void SceneWriter::Point(PointRecord const& point)
{
    m_state->OpenGeometry(point);
    WritePoint(m_state->document, point);
}

void SceneWriter::PointCloud(PointCloudRecord const& cloud)
{
    m_state->OpenGeometry(cloud);
    WritePointCloud(m_state->document, cloud);
}

void SceneWriter::WorkAxis(WorkAxisRecord const& axis)
{
    Check(m_state->sets.empty(), "a set holds no work features");
    m_state->OpenGeometry(axis);
    WriteWorkAxis(m_state->document, axis);
}

void SceneWriter::WorkPlane(WorkPlaneRecord const& plane)
{
    Check(m_state->sets.empty(), "a set holds no work features");
    m_state->OpenGeometry(plane);
    WriteWorkPlane(m_state->document, plane);
}

void SceneWriter::WorkPoint(WorkPointRecord const& point)
{
    Check(m_state->sets.empty(), "a set holds no work features");
    m_state->OpenGeometry(point);
    WriteWorkPoint(m_state->document, point);
}

void SceneWriter::Sketch(SketchRecord const& sketch)
{
    Check(m_state->sets.empty(), "a set holds no sketches");
    m_state->OpenGeometry(sketch);
    m_state->DefineAll(sketch.points);
    m_state->DefineAll(sketch.curves);
    WriteSketch(m_state->document, sketch);
}

void SceneWriter::Callout(CalloutRecord const& callout)
{
    Check(m_state->sets.empty(), "a set holds no notes");
    m_state->OpenGeometry(callout);
    if (callout.plane)
        m_state->Define(*callout.plane);
    for (CalloutElementRecord const& element : callout.elements)
    {
        m_state->Define(element);
        m_state->DefineAll(element.curves);
        m_state->DefineAll(element.points);
        m_state->DefineAll(element.meshes);
    }
    for (UTF8String const& id : callout.childIds)
        m_state->ids.Want(id);
    WriteCallout(m_state->document, callout);
}

void SceneWriter::BeginGeometricSet(GeometryRecord const& set)
{
    m_state->BeginSet(SetKind::kGeometricSet, Names::IGeometricSet, set);
}

void SceneWriter::BeginExtensionGeometry(GeometryRecord const& set)
{
    m_state->BeginSet(SetKind::kExtension, Names::IExtensionGeometry, set);
}

void SceneWriter::EndSet()
{
    Check(!m_state->sets.empty(), "a set that is closed was opened");
    m_state->sets.pop_back();
    // The set and its children.
    m_state->document.End();
    m_state->document.End();
}

void SceneWriter::Property(UTF8String const& objectId, PropertyValue const& property)
{
    m_state->ids.Want(objectId);
    UTF8String const id("property" + std::to_string(++m_state->propertyCount));
    m_state->sideFiles.Properties().Property(id, objectId, property);
}

MeshStoreWriter& SceneWriter::Meshes()
{
    return m_state->sideFiles.Meshes();
}

SegmentStoreWriter& SceneWriter::Segments()
{
    return m_state->sideFiles.Segments();
}

KernelStoreWriter& SceneWriter::Kernel()
{
    return m_state->sideFiles.Kernel();
}

SubObjectPersistentIdWriter& SceneWriter::PersistentIds()
{
    return m_state->sideFiles.PersistentIds();
}

VitreolAssetWriter& SceneWriter::Assets()
{
    return m_state->sideFiles.Assets();
}

UTF8String SceneWriter::Blob(void const* bytes, std::size_t size)
{
    return m_state->sideFiles.Blob(bytes, size);
}

void SceneWriter::AddSideFile(UTF8String const& name)
{
    m_state->sideFiles.Add(name);
}

void SceneWriter::Finish()
{
    Check(m_state->owner == Owner::kNone && m_state->sets.empty(),
          "a scene is finished when what was opened is closed");
    m_state->ids.CheckAllCame();
    m_state->sideFiles.WriteSections(m_state->document);
    m_state->sideFiles.Finish();
    m_state->document.Finish(SideFileNotes::Text(m_state->sideFiles.Notes()) + '\n');
    m_state->sideFiles.Keep();
}

}  // namespace KVR::Authoring
