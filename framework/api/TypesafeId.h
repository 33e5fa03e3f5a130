#pragma once

#include "framework/api/Export.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

class IAnnotationCallout;
class IAssemblyFeatureOverride;
class IComponent;
class IFile;
class IGeometricSet;
class IGeometry;
class IInstance;
class IObject;

/// An id together with the kind of place it was found in. Every constructor and `Create` takes the id of the object it
/// is given, by its `Id()`; a null object gives the empty id. The object itself is not kept.
class KVR_API TypesafeId
{
public:
    virtual ~TypesafeId();
    TypesafeId& operator=(TypesafeId const&) = default;

    /// The id itself, for IProducer::Load; empty when there was no object. Owned by this object.
    UTF8String const& Id() const noexcept { return m_id; }

protected:
    TypesafeId() = default;
    explicit TypesafeId(UTF8String id) noexcept;
    TypesafeId(TypesafeId const&) = default;

private:
    UTF8String m_id;
};

/// The id of the scene's root file.
class KVR_API RootId : public TypesafeId
{
public:
    explicit RootId(IFile const* file);
    RootId(RootId const&) = default;
    RootId& operator=(RootId const&) = default;
    ~RootId() override;
};

/// The id of a child; the classes below say of whom.
class KVR_API ChildId : public TypesafeId
{
public:
    ~ChildId() override;

protected:
    using TypesafeId::TypesafeId;
    ChildId() = default;
    ChildId(ChildId const&) = default;
    ChildId& operator=(ChildId const&) = default;
};

/// What stands under a file: a component, an instance or any other object.
class KVR_API FileChildId : public ChildId
{
public:
    FileChildId(FileChildId const&) = default;
    FileChildId& operator=(FileChildId const&) = default;
    ~FileChildId() override;
    /// The id of the object.
    static FileChildId Create(IObject* object);

private:
    using ChildId::ChildId;
};

/// What stands in an assembly: an instance, geometry, a note or a feature override.
class KVR_API AssemblyChildId : public ChildId
{
public:
    explicit AssemblyChildId(IGeometry const* geometry);
    explicit AssemblyChildId(IGeometricSet const* set);
    explicit AssemblyChildId(IInstance const* instance);
    explicit AssemblyChildId(IAnnotationCallout const* callout);
    explicit AssemblyChildId(IAssemblyFeatureOverride const* featureOverride);
    AssemblyChildId(AssemblyChildId const&) = default;
    AssemblyChildId& operator=(AssemblyChildId const&) = default;
    ~AssemblyChildId() override;
    /// The id of the object.
    static AssemblyChildId Create(IObject* object);

private:
    using ChildId::ChildId;
};

/// What stands in a part: geometry or a note.
class KVR_API PartChildId : public ChildId
{
public:
    explicit PartChildId(IGeometry const* geometry);
    explicit PartChildId(IAnnotationCallout const* callout);
    PartChildId(PartChildId const&) = default;
    PartChildId& operator=(PartChildId const&) = default;
    ~PartChildId() override;
    /// The id of the object.
    static PartChildId Create(IObject* object);

private:
    using ChildId::ChildId;
};

/// What an instance places: a component or a file.
class KVR_API InstanceChildId : public ChildId
{
public:
    explicit InstanceChildId(IFile const* file);
    explicit InstanceChildId(IComponent const* component);
    InstanceChildId(InstanceChildId const&) = default;
    InstanceChildId& operator=(InstanceChildId const&) = default;
    ~InstanceChildId() override;
};

/// What stands in a feature override: a body or a mesh.
class KVR_API AssemblyFeatureOverrideChildId : public ChildId
{
public:
    AssemblyFeatureOverrideChildId(AssemblyFeatureOverrideChildId const&) = default;
    AssemblyFeatureOverrideChildId& operator=(AssemblyFeatureOverrideChildId const&) = default;
    ~AssemblyFeatureOverrideChildId() override;
    /// The id of the object.
    static AssemblyFeatureOverrideChildId Create(IObject* object);

private:
    using ChildId::ChildId;
};

/// What belongs to a note: an element that it is drawn with, or an object that it points at.
class KVR_API AnnotationCalloutChildId : public ChildId
{
public:
    AnnotationCalloutChildId(AnnotationCalloutChildId const&) = default;
    AnnotationCalloutChildId& operator=(AnnotationCalloutChildId const&) = default;
    ~AnnotationCalloutChildId() override;
    /// The id of the object.
    static AnnotationCalloutChildId Create(IObject* object);

private:
    using ChildId::ChildId;
};

/// What stands in an element of a note: a curve, a point or a mesh.
class KVR_API AnnotationCalloutElementChildId : public ChildId
{
public:
    AnnotationCalloutElementChildId(AnnotationCalloutElementChildId const&) = default;
    AnnotationCalloutElementChildId& operator=(AnnotationCalloutElementChildId const&) = default;
    ~AnnotationCalloutElementChildId() override;
    /// The id of the object.
    static AnnotationCalloutElementChildId Create(IObject* object);

private:
    using ChildId::ChildId;
};

/// What stands in the geometry of an extension.
class KVR_API ExtensionGeometryChildId : public ChildId
{
public:
    ExtensionGeometryChildId(ExtensionGeometryChildId const&) = default;
    ExtensionGeometryChildId& operator=(ExtensionGeometryChildId const&) = default;
    ~ExtensionGeometryChildId() override;
    /// The id of the object.
    static ExtensionGeometryChildId Create(IObject* object);

private:
    using ChildId::ChildId;
};

/// What stands in a geometric set.
class KVR_API GeometricSetChildId : public ChildId
{
public:
    GeometricSetChildId(GeometricSetChildId const&) = default;
    GeometricSetChildId& operator=(GeometricSetChildId const&) = default;
    ~GeometricSetChildId() override;
    /// The id of the object.
    static GeometricSetChildId Create(IObject* object);

private:
    using ChildId::ChildId;
};

}  // namespace KVR
