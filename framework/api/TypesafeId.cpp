#include "framework/api/TypesafeId.h"

#include <utility>

#include "framework/api/IAnnotationCallout.h"
#include "framework/api/IAssemblyFeatureOverride.h"
#include "framework/api/IComponent.h"
#include "framework/api/IFile.h"
#include "framework/api/IGeometricSet.h"
#include "framework/api/IInstance.h"

namespace KVR
{

namespace
{
template <class Object>
UTF8String IdOf(Object const* object)
{
    return object ? object->Id() : UTF8String();
}
}  // namespace

TypesafeId::TypesafeId(UTF8String id) noexcept : m_id(std::move(id)) {}

TypesafeId::~TypesafeId() = default;
RootId::~RootId() = default;
ChildId::~ChildId() = default;
FileChildId::~FileChildId() = default;
AssemblyChildId::~AssemblyChildId() = default;
PartChildId::~PartChildId() = default;
InstanceChildId::~InstanceChildId() = default;
AssemblyFeatureOverrideChildId::~AssemblyFeatureOverrideChildId() = default;
AnnotationCalloutChildId::~AnnotationCalloutChildId() = default;
AnnotationCalloutElementChildId::~AnnotationCalloutElementChildId() = default;
ExtensionGeometryChildId::~ExtensionGeometryChildId() = default;
GeometricSetChildId::~GeometricSetChildId() = default;

RootId::RootId(IFile const* file) : TypesafeId(IdOf(file)) {}

AssemblyChildId::AssemblyChildId(IGeometry const* geometry) : ChildId(IdOf(geometry)) {}
AssemblyChildId::AssemblyChildId(IGeometricSet const* set) : ChildId(IdOf(set)) {}
AssemblyChildId::AssemblyChildId(IInstance const* instance) : ChildId(IdOf(instance)) {}
AssemblyChildId::AssemblyChildId(IAnnotationCallout const* callout) : ChildId(IdOf(callout)) {}
AssemblyChildId::AssemblyChildId(IAssemblyFeatureOverride const* featureOverride) : ChildId(IdOf(featureOverride)) {}

PartChildId::PartChildId(IGeometry const* geometry) : ChildId(IdOf(geometry)) {}
PartChildId::PartChildId(IAnnotationCallout const* callout) : ChildId(IdOf(callout)) {}

InstanceChildId::InstanceChildId(IFile const* file) : ChildId(IdOf(file)) {}
InstanceChildId::InstanceChildId(IComponent const* component) : ChildId(IdOf(component)) {}

FileChildId FileChildId::Create(IObject* object)
{
    return FileChildId(IdOf(object));
}
AssemblyChildId AssemblyChildId::Create(IObject* object)
{
    return AssemblyChildId(IdOf(object));
}
PartChildId PartChildId::Create(IObject* object)
{
    return PartChildId(IdOf(object));
}
AssemblyFeatureOverrideChildId AssemblyFeatureOverrideChildId::Create(IObject* object)
{
    return AssemblyFeatureOverrideChildId(IdOf(object));
}
AnnotationCalloutChildId AnnotationCalloutChildId::Create(IObject* object)
{
    return AnnotationCalloutChildId(IdOf(object));
}
AnnotationCalloutElementChildId AnnotationCalloutElementChildId::Create(IObject* object)
{
    return AnnotationCalloutElementChildId(IdOf(object));
}
ExtensionGeometryChildId ExtensionGeometryChildId::Create(IObject* object)
{
    return ExtensionGeometryChildId(IdOf(object));
}
GeometricSetChildId GeometricSetChildId::Create(IObject* object)
{
    return GeometricSetChildId(IdOf(object));
}

}  // namespace KVR
