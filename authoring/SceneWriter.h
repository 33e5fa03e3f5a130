#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "authoring/Export.h"
#include "authoring/KernelStoreWriter.h"
#include "authoring/MeshStoreWriter.h"
#include "authoring/SceneRecords.h"
#include "authoring/SubObjectPersistentIdWriter.h"
#include "authoring/VitreolAssetWriter.h"
#include "framework/api/UTF16String.h"

namespace KVR::Authoring
{

/// The forms of the side files.
struct SceneWriterOptions
{
    KernelStoreForm kernelForm = KernelStoreForm::kBinary;
    MeshStoreLayout meshLayout = MeshStoreLayout::kMeshInfo;
};

/// Writes a complete scene: the document and, beside it, the side files that it needs, each under the scene's whole
/// name with an extension of its own ("gate.xml.mesh"), so that two scenes of one folder do not meet; properties alone
/// stand in "gate.kvrproperty", where a reader looks for them. The document notes size and digest of each (see
/// framework/xml_util/SideFileNotes.h), for which Finish reads them once more. Everything is streamed, so that a scene
/// may be larger than memory: what stays are sixteen bytes for each id, and the shapes of the kernel stores.
///
/// Objects go where they are written: geometry and instances into the component that is open, or under the root when
/// none is. Ids are checked: two objects of one id are refused at once, and a scene that names a component or child
/// that it does not have, when it is finished. The document and the side files appear at Finish, each whole, the
/// document last; without a Finish nothing stays behind.
///
/// Operations throw FileException when the file system refuses, and GeneralException for an id that is empty or taken,
/// for a text that is not UTF-8 or has a character that XML does not know, for a number that is infinite or none, for a
/// type that the format has no text for, and for calls that do not fit together. After an exception the scene cannot be
/// finished.
class KVR_AUTHORING_API SceneWriter
{
public:
    explicit SceneWriter(UTF16String const& path, SceneWriterOptions const& options = {});
    ~SceneWriter();
    SceneWriter(SceneWriter const&) = delete;
    SceneWriter& operator=(SceneWriter const&) = delete;

    /// "IUniverse": what belongs to the scene as a whole. Under the root alone, and once: of several a reader takes the
    /// last.
    void Universe(UniverseRecord const& universe);

    /// A file with its child ids; what it declares is written before EndFile. Between, AttributeSet alone is called.
    void BeginFile(FileRecord const& file);
    /// Closes the file.
    void EndFile();

    /// Components do not nest: an instance places one in another.
    void BeginAssembly(ComponentRecord const& assembly);
    /// Closes the assembly.
    void EndAssembly();
    /// A part; what is written before EndPart stands in it.
    void BeginPart(ComponentRecord const& part);
    /// Closes the part.
    void EndPart();

    /// What the open file or component declares. Behind the geometry of a component it is refused.
    void AttributeSet(AttributeSetRecord const& set);

    /// In an assembly alone.
    void Instance(InstanceRecord const& instance);
    /// Bodies and meshes that stand for occurrences below; in an assembly alone.
    void FeatureOverride(FeatureOverrideRecord const& featureOverride);

    /// A body, dressed; the body itself goes to Kernel() under the same id.
    void Body(BodyRecord const& body);
    /// A mesh, dressed; the mesh itself goes to Meshes() under the same id.
    void Mesh(MeshRecord const& mesh);
    /// A curve, dressed; the curve itself goes to Meshes() or, with entities, its edges to Kernel().
    void Curve(CurveElementRecord const& curve);
    /// A point with its position.
    void Point(PointRecord const& point);
    /// Points in one object.
    void PointCloud(PointCloudRecord const& cloud);
    /// An axis of construction; not in a set.
    void WorkAxis(WorkAxisRecord const& axis);
    /// A plane of construction; not in a set.
    void WorkPlane(WorkPlaneRecord const& plane);
    /// A point of construction; not in a set.
    void WorkPoint(WorkPointRecord const& point);
    /// A sketch with its points and curves; not in a set.
    void Sketch(SketchRecord const& sketch);
    /// A note with its text, plane and elements; not in a set.
    void Callout(CalloutRecord const& callout);
    /// "IGeometricSet": geometry that is written before EndSet stands in the set. Sets nest.
    void BeginGeometricSet(GeometryRecord const& set);
    /// "IExtensionGeometry", in the same way; it holds no geometric sets.
    void BeginExtensionGeometry(GeometryRecord const& set);
    /// Closes the innermost set.
    void EndSet();

    /// A property of a mesh, instance, geometric set or body, by that object's id.
    void Property(UTF8String const& objectId, PropertyValue const& property);

    /// The mesh store, NAME.mesh or NAME.geometry by the options; made at the first call and finished with the scene,
    /// as are the next four. Owned by the writer.
    MeshStoreWriter& Meshes();
    /// The segment store, NAME.seg; a mesh's segments need its mesh.
    SegmentStoreWriter& Segments();
    /// The kernel store, NAME.sab or NAME.sat by the options.
    KernelStoreWriter& Kernel();
    /// The persistent ids of faces and edges, NAME.ids.
    SubObjectPersistentIdWriter& PersistentIds();
    /// The material assets, NAME.assets.
    VitreolAssetWriter& Assets();
    /// Writes a blob, NAME.blobN, and answers the path by which custom data of the universe names it.
    UTF8String Blob(void const* bytes, std::size_t size);
    /// Notes another file in the scene's folder, by its name there: one that the caller writes and the scene names,
    /// such as the image of a texture. It is whole when Finish is called, which throws FileException when it cannot be
    /// read.
    void AddSideFile(UTF8String const& name);

    /// The names that side files of a scene of that name can have, whatever the options and whether it needs them or
    /// not; without blobs, and what AddSideFile adds.
    static std::vector<std::string> SideFileNames(std::string const& sceneName);

    /// Writes what is still held. A property file of an earlier scene of this name is removed when this one has none,
    /// since it would count as this scene's.
    void Finish();

private:
    struct State;

    std::unique_ptr<State> m_state;
};

}  // namespace KVR::Authoring
