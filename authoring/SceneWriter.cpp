#include "authoring/SceneWriter.h"

#include <xxhash.h>
#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "authoring/PropertyWriter.h"
#include "authoring/XmlFile.h"
#include "authoring/elements/ElementWriters.h"
#include "authoring/elements/PropertyText.h"
#include "framework/api/Exception.h"

namespace KVR::Authoring
{

namespace
{

void Check(bool holds, char const* message)
{
    if (!holds)
        throw GeneralException(message);
}

// Ids are known by their digests: two that differ and share one do not come up in practice.
struct IdDigest
{
    XXH128_hash_t digest;

    explicit IdDigest(UTF8String const& id) : digest(XXH3_128bits(id.Value(), id.Size())) {}
    bool operator==(IdDigest const& other) const { return XXH128_isEqual(digest, other.digest) != 0; }
};

struct IdDigestHash
{
    std::size_t operator()(IdDigest const& id) const { return id.digest.low64; }
};

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

UTF8String Removed(UTF8String const& path, std::string_view extension)
{
    std::string_view const text = path.View();
    return UTF8String(text.substr(0, text.size() - extension.size()));
}

}  // namespace

struct SceneWriter::State
{
    State(UTF16String const& path, SceneWriterOptions const& chosen)
        : options(chosen),
          extension(boost::filesystem::path(UTF8String(path).Value()).extension().string()),
          stem(Removed(UTF8String(path), extension)),
          document(path, "Scene")
    {
    }

    SceneWriterOptions options;
    std::string extension;
    /// The scene's path without its extension.
    UTF8String stem;
    XmlFile document;
    Owner owner = Owner::kNone;
    std::vector<SetKind> sets;
    bool isChildSetOpen = false;
    std::unordered_set<IdDigest, IdDigestHash> ids;
    /// Ids that were named and have not come yet.
    std::unordered_map<IdDigest, UTF8String, IdDigestHash> wanted;
    unsigned long long propertyCount = 0;
    unsigned long long blobCount = 0;
    std::optional<MeshStoreWriter> meshes;
    std::optional<SegmentStoreWriter> segments;
    std::optional<KernelStoreWriter> kernel;
    std::optional<SubObjectPersistentIdWriter> persistentIds;
    std::optional<VitreolAssetWriter> assets;
    std::optional<PropertyWriter> properties;
    /// Side files that stand already, and go again when the scene is not finished.
    std::vector<UTF16String> standing;

    ~State()
    {
        boost::system::error_code ignored;
        for (UTF16String const& path : standing)
            boost::filesystem::remove(UTF8String(path).Value(), ignored);
    }
    State(State const&) = delete;
    State& operator=(State const&) = delete;

    template <class Writer>
    void FinishSideFile(std::optional<Writer>& writer, std::string_view ending)
    {
        if (!writer)
            return;
        writer->Finish();
        standing.push_back(Beside(ending));
    }

    UTF16String Beside(std::string_view ending) const { return UTF16String(stem + UTF8String(ending)); }
    /// As the scene names a file beside it.
    std::string NameOf(std::string_view ending) const
    {
        return boost::filesystem::path(stem.Value()).filename().string() + std::string(ending);
    }
    char const* MeshEnding() const { return options.meshLayout == MeshStoreLayout::kMeshInfo ? ".mesh" : ".geometry"; }
    char const* KernelEnding() const { return options.kernelForm == KernelStoreForm::kBinary ? ".sab" : ".sat"; }

    void Define(ObjectRecord const& object)
    {
        if (object.id.IsEmpty())
            throw GeneralException("an object needs an id");
        IdDigest const digest(object.id);
        if (!ids.insert(digest).second)
            throw GeneralException(UTF8String("two objects have the id ") + object.id);
        wanted.erase(digest);
    }

    template <class Records>
    void DefineAll(Records const& records)
    {
        for (auto const& record : records)
            Define(record);
    }

    void Want(UTF8String const& id)
    {
        IdDigest const digest(id);
        if (!ids.contains(digest))
            wanted.emplace(digest, id);
    }

    void Begin(Owner kind, std::string_view name, ObjectRecord const& object)
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

    void BeginComponent(Owner kind, std::string_view name, ComponentRecord const& component)
    {
        Begin(kind, name, component);
        if (component.isSingleUnderRoot)
            document.Attribute("IsSingleUnderRoot", "1");
        WriteUnit(document, component.unit);
        WriteStyleRefs(document, "Styles", component.styles);
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
        document.Begin("ChildSet");
        isChildSetOpen = true;
    }

    void BeginSet(SetKind kind, std::string_view name, GeometryRecord const& set)
    {
        Check(kind == SetKind::kExtension || sets.empty() || sets.back() == SetKind::kGeometricSet,
              "an extension geometry holds no geometric sets");
        OpenGeometry(set);
        Authoring::BeginSet(document, name, set);
        sets.push_back(kind);
    }

    void Section(std::string_view name, std::string_view condition, std::string_view ending)
    {
        document.Begin(name);
        if (!condition.empty())
            document.Attribute(condition, "True");
        document.Attribute("Path", std::string_view(NameOf(ending)));
        document.End();
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
    m_state->Begin(Owner::kFile, "IFile", file);
    XmlFile& document = m_state->document;
    document.Attribute("IsRoot", file.isRoot ? "1" : "0");
    if (file.path)
        document.Attribute("FileFullPath", file.path->View());
    if (file.lastModification)
        document.Attribute("LastModificationTime", std::string_view(TimeText(*file.lastModification)));
    WriteChangeKey(document, file);
    WriteUnit(document, file.unit);
    if (file.properties)
        WriteFileProperties(document, *file.properties);
    if (!file.references.empty())
    {
        document.Begin("RefFiles");
        for (auto const& [id, path] : file.references)
        {
            document.Begin("RefFile");
            document.Attribute("RefId", id.View());
            document.Attribute("RefPath", path.View());
            document.End();
        }
        document.End();
    }
    WriteExtensionData(document, file);
    document.Begin("ChildSet");
    for (UTF8String const& id : file.childIds)
    {
        m_state->Want(id);
        document.Begin("Child");
        document.Attribute("ID", id.View());
        document.End();
    }
    document.End();
}

void SceneWriter::EndFile()
{
    m_state->End(Owner::kFile);
}

void SceneWriter::BeginAssembly(ComponentRecord const& assembly)
{
    m_state->BeginComponent(Owner::kAssembly, "IAssembly", assembly);
}

void SceneWriter::EndAssembly()
{
    m_state->End(Owner::kAssembly);
}

void SceneWriter::BeginPart(ComponentRecord const& part)
{
    m_state->BeginComponent(Owner::kPart, "IPart", part);
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
    m_state->Want(instance.targetId);
    WriteInstance(m_state->document, instance);
}

void SceneWriter::FeatureOverride(FeatureOverrideRecord const& featureOverride)
{
    Check(m_state->owner == Owner::kAssembly && m_state->sets.empty(), "a feature override stands in an assembly");
    m_state->OpenGeometry(featureOverride);
    m_state->DefineAll(featureOverride.bodies);
    m_state->DefineAll(featureOverride.meshes);
    XmlFile& document = m_state->document;
    document.Begin("IAssemblyFeatureOverride");
    WriteHead(document, featureOverride);
    document.Attribute("Visibility", featureOverride.isVisible ? "1" : "0");
    document.Begin("BaseOccPaths");
    for (OccurrencePath const& path : featureOverride.baseOccurrences)
    {
        document.Begin("BaseOccPath");
        document.Attribute("Path", std::string_view(PathText(path)));
        document.End();
    }
    document.End();
    document.Begin("ChildSet");
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
        m_state->Want(id);
    WriteCallout(m_state->document, callout);
}

void SceneWriter::BeginGeometricSet(GeometryRecord const& set)
{
    m_state->BeginSet(SetKind::kGeometricSet, "IGeometricSet", set);
}

void SceneWriter::BeginExtensionGeometry(GeometryRecord const& set)
{
    m_state->BeginSet(SetKind::kExtension, "IExtensionGeometry", set);
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
    if (!m_state->properties)
        m_state->properties.emplace(m_state->Beside(".kvrproperty"));
    m_state->Want(objectId);
    UTF8String const id("property" + std::to_string(++m_state->propertyCount));
    m_state->properties->Property(id, objectId, property);
}

MeshStoreWriter& SceneWriter::Meshes()
{
    if (!m_state->meshes)
        m_state->meshes.emplace(m_state->Beside(m_state->MeshEnding()), m_state->options.meshLayout);
    return *m_state->meshes;
}

SegmentStoreWriter& SceneWriter::Segments()
{
    if (!m_state->segments)
        m_state->segments.emplace(m_state->Beside(".seg"));
    return *m_state->segments;
}

KernelStoreWriter& SceneWriter::Kernel()
{
    if (!m_state->kernel)
        m_state->kernel.emplace(m_state->Beside(m_state->KernelEnding()), m_state->options.kernelForm);
    return *m_state->kernel;
}

SubObjectPersistentIdWriter& SceneWriter::PersistentIds()
{
    if (!m_state->persistentIds)
        m_state->persistentIds.emplace(m_state->Beside(".ids.xml"));
    return *m_state->persistentIds;
}

VitreolAssetWriter& SceneWriter::Assets()
{
    if (!m_state->assets)
        m_state->assets.emplace(m_state->Beside(".assets"));
    return *m_state->assets;
}

UTF8String SceneWriter::Blob(void const* bytes, std::size_t size)
{
    std::string const ending = ".blob" + std::to_string(++m_state->blobCount);
    StoreFile file(m_state->Beside(ending));
    file.Bytes(bytes, size);
    file.Commit();
    m_state->standing.push_back(m_state->Beside(ending));
    return UTF8String(m_state->NameOf(ending));
}

void SceneWriter::Finish()
{
    State& state = *m_state;
    Check(state.owner == Owner::kNone && state.sets.empty(), "a scene is finished when what was opened is closed");
    if (!state.wanted.empty())
        throw GeneralException(UTF8String("no object has the id ") + state.wanted.begin()->second);
    if (state.kernel)
        state.Section("SatInfo", {}, state.KernelEnding());
    if (state.meshes && state.options.meshLayout == MeshStoreLayout::kMeshInfo)
        state.Section("MeshInfo", "GenerateMesh", state.MeshEnding());
    else if (state.meshes)
        state.Section("GeometryInfo", "GenerateGeometry", state.MeshEnding());
    // Behind the meshes: a reader takes segments only for meshes that it knows.
    if (state.segments)
        state.Section("MeshSegmentInfo", "GenerateMeshSegment", ".seg");
    if (state.assets)
        state.Section("VitreolMaterialInfo", "GenerateSerializedVitreol", ".assets");
    if (state.persistentIds)
        state.Section("SubObjectPersistentIdInfo", "GenerateSubObjectPersistentId", ".ids.xml");
    state.FinishSideFile(state.kernel, state.KernelEnding());
    state.FinishSideFile(state.meshes, state.MeshEnding());
    state.FinishSideFile(state.segments, ".seg");
    state.FinishSideFile(state.assets, ".assets");
    state.FinishSideFile(state.persistentIds, ".ids.xml");
    state.FinishSideFile(state.properties, ".kvrproperty");
    if (!state.properties)
    {
        boost::system::error_code ignored;
        boost::filesystem::remove(UTF8String(state.Beside(".kvrproperty")).Value(), ignored);
    }
    state.document.Finish();
    state.standing.clear();
}

}  // namespace KVR::Authoring
