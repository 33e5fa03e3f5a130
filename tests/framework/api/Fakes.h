#pragma once

// Objects of every interface that answer as little as an interface lets them, so that what a test sees is what the
// interface does by itself.

#include <utility>

#include "framework/api/kvr_api.h"

// The interface of curves names the array of the geometry kernel, which these tests do without.
namespace KVR::GMK
{
template <class T>
class gmk_array
{
};
}  // namespace KVR::GMK

namespace KVR
{

template <class Interface>
class FakeObject : public Interface
{
public:
    explicit FakeObject(UTF8String id = UTF8String("fake")) : m_id(std::move(id)) {}

    UTF8String Id() const override { return m_id; }
    UTF16String Label() const override { return {}; }
    IsValueSpecifiedEnum ChangeKey(SnapshotVersionEnum, UTF8String&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum VersionPersistentId(UTF8String&) const override { return kIsValueSpecified_No; }

private:
    UTF8String m_id;
};

template <class Interface>
class FakeVisible : public FakeObject<Interface>
{
public:
    using FakeObject<Interface>::FakeObject;

    bool IsVisible() const override { return m_visible; }
    void SetVisible(bool visible) { m_visible = visible; }

private:
    bool m_visible = true;
};

template <class Interface>
class FakeGeometry : public FakeVisible<Interface>
{
public:
    using FakeVisible<Interface>::FakeVisible;

    Matrix3d const* Transform() const override { return nullptr; }
    double AngularTolerance() const override { return -1.0; }
    double LinearTolerance() const override { return -1.0; }
    double ParamTolerance() const override { return -1.0; }
};

template <class Interface>
class FakeSets : public FakeObject<Interface>
{
public:
    using FakeObject<Interface>::FakeObject;

    IdSet StyleSet() const override { return {}; }
    IdSet TextureSet() const override { return {}; }
    IdSet LayerSet() const override { return {}; }
    IdSet GroupSet() const override { return {}; }
    IdSet LodSet() const override { return {}; }
    IdSet CameraSet() const override { return {}; }
    IdSet ViewSet() const override { return {}; }
    KVR::FileProperties* FileProperties() const override { return nullptr; }
    unsigned long long ChildCount() const override { return 0; }
};

template <class Interface>
class FakeComponent : public FakeSets<Interface>
{
public:
    using FakeSets<Interface>::FakeSets;

    IdSet Styles() const override { return {}; }
    bool IsSingleUnderRoot() const override { return false; }
};

// An owner without children: asking it for one is a bad index.
template <class Base, class ChildIdT>
class FakeOwner : public Base
{
public:
    using Base::Base;

    unsigned long long ChildCount() const override { return 0; }
    ChildIdT ChildAt(unsigned long long) const override { ThrowInvalidSubscript(); }
};

using FakeGenericObject = FakeObject<IGenericObject>;
using FakeCoordSys = FakeObject<ICoordSys>;
using FakeRenderStyle = FakeObject<IRenderStyle>;
using FakePart = FakeOwner<FakeComponent<IPart>, PartChildId>;
using FakeGeometricSet = FakeOwner<FakeGeometry<IGeometricSet>, GeometricSetChildId>;
using FakeExtensionGeometry = FakeOwner<FakeGeometry<IExtensionGeometry>, ExtensionGeometryChildId>;

class FakeFile : public FakeOwner<FakeSets<IFile>, FileChildId>
{
public:
    using FakeOwner::FakeOwner;

    bool IsRoot() const override { return false; }
    IsValueSpecifiedEnum FileFullPath(UTF16String&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum LastModificationTime(Time&) const override { return kIsValueSpecified_No; }
    unsigned long long RefFileCount() const override { return 0; }
    IsValueSpecifiedEnum RefFileAt(unsigned long long, UTF8String&, UTF16String&) const override
    {
        return kIsValueSpecified_No;
    }
};

class FakeAssembly : public FakeOwner<FakeComponent<IAssembly>, AssemblyChildId>
{
public:
    using FakeOwner::FakeOwner;

    unsigned long long CrossLevelVisibilityCount() const override { return 0; }
    void CrossLevelVisibilityAt(unsigned long long, IdSet&, bool&) const override {}
    unsigned long long CrossLevelStyleCount() const override { return 0; }
    void CrossLevelStyleAt(unsigned long long, IdSet&, IdSet&) const override {}
    unsigned long long CrossLevelTransformCount() const override { return 0; }
    void CrossLevelTransformAt(unsigned long long, IdSet&, Matrix3d&) const override {}
};

class FakeInstance : public FakeVisible<IInstance>
{
public:
    using FakeVisible::FakeVisible;

    Matrix3d const* Transform() const override { return nullptr; }
    InstanceChildId TargetId() const override { return InstanceChildId(static_cast<IFile const*>(nullptr)); }
    bool IsNetVisible() const override { return true; }
    IdSet Styles() const override { return {}; }
    IdSet NetStyles() const override { return {}; }
    void SetLengthUnit(UnitTypeEnum) override {}
    void SetDisplayAngleUnit(UnitTypeEnum) override {}
    void SetDisplayLengthUnit(UnitTypeEnum) override {}
};

class FakeAssemblyFeatureOverride
    : public FakeOwner<FakeVisible<IAssemblyFeatureOverride>, AssemblyFeatureOverrideChildId>
{
public:
    using FakeOwner::FakeOwner;

    void BaseOccPaths(OccurrencePathCollection&) const override {}
};

class FakeAnnotationCallout : public FakeOwner<FakeVisible<IAnnotationCallout>, AnnotationCalloutChildId>
{
public:
    using FakeOwner::FakeOwner;

    IsValueSpecifiedEnum AnnotationPlaneId(UTF8String&) const override { return kIsValueSpecified_No; }
    IText* Text() const override { return nullptr; }
};

class FakeAnnotationCalloutElement
    : public FakeOwner<FakeObject<IAnnotationCalloutElement>, AnnotationCalloutElementChildId>
{
public:
    using FakeOwner::FakeOwner;

    IdSet Styles() const override { return {}; }
};

class FakeVitreolRenderStyle : public FakeObject<IVitreolRenderStyle>
{
public:
    using FakeObject::FakeObject;

    VitreolSerializedAsset const* SerializedAsset() const override { return nullptr; }
    IsValueSpecifiedEnum VitreolLibraryId(UTF16String&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum AssetDefinitionId(UTF16String&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum AssetInstanceVersionGUID(UTF16String&) const override { return kIsValueSpecified_No; }
};

class FakeMaterialTexture : public FakeObject<IMaterialTexture>
{
public:
    using FakeObject::FakeObject;

    IsValueSpecifiedEnum TextureType(int&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum TextureFileReference(UTF16String&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum EmbeddedTextureImageSize(int&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum EmbeddedTextureImage(int, void*) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum EmbeddedTextureImageType(int&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum TextureDimensions(int&, int&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum TextureCenter(double&, double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum TextureOffset(double&, double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum TextureScale(double&, double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum TextureSizeForScale(double&, double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum RotateAngle(double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum ProjectType(int&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum ProcedureU(int&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum RepeatU(double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum ProcedureV(int&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum RepeatV(double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum ProceduralName(UTF16String&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum TintColor(Color&) const override { return kIsValueSpecified_No; }
    UTF8String AssetId() const override { return {}; }
    IsValueSpecifiedEnum TextureTransform(Matrix3d&) const override { return kIsValueSpecified_No; }
};

class FakeLod : public FakeObject<ILod>
{
public:
    using FakeObject::FakeObject;

    UTF16String Description() const override { return {}; }
};

class FakeGroup : public FakeObject<IGroup>
{
public:
    using FakeObject::FakeObject;

    UTF16String Description() const override { return {}; }
    IdSet const& GeometryItems() const override { return m_items; }

private:
    IdSet m_items;
};

class FakeLayer : public FakeVisible<ILayer>
{
public:
    using FakeVisible::FakeVisible;

    UTF16String Description() const override { return {}; }
    int LayerNumber() const override { return 0; }
    IdSet const& GeometryItems() const override { return m_items; }
    IdSet const& Styles() const override { return m_items; }

private:
    IdSet m_items;
};

template <class Interface>
class FakeCameraOf : public FakeObject<Interface>
{
public:
    using FakeObject<Interface>::FakeObject;

    ICamera::CameraTypeEnum CameraType() const override { return ICamera::kCameraType_Parallel; }
    IsValueSpecifiedEnum LengthUnit(UnitTypeEnum&) const override { return kIsValueSpecified_No; }
    Position CameraPosition() const override { return {}; }
    UnitVector CameraDirection() const override { return {}; }
    UnitVector CameraUpDirection() const override { return {}; }
    IsValueSpecifiedEnum DistanceToViewPlane(double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum AspectRatio(double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum ViewAngle(double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum ViewWindowHeightForParallelCamera(double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum IsDepthFieldDefined(bool&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum NearPlane(Plane&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum FarPlane(Plane&) const override { return kIsValueSpecified_No; }
};

using FakeCamera = FakeCameraOf<ICamera>;

class FakeSectionCamera : public FakeCameraOf<ISectionCamera>
{
public:
    using FakeCameraOf::FakeCameraOf;

    unsigned long long SectionPlaneCount() const override { return 0; }
    Plane SectionPlaneAt(unsigned long long) const override { return {}; }
    UTF8String SectioningOperations() const override { return {}; }
};

class FakeView : public FakeVisible<IView>
{
public:
    using FakeVisible::FakeVisible;

    bool IsActive() const override { return false; }
    unsigned long long ViewMemberCount() const override { return 0; }
    IdSet OccurrencePathAt(unsigned long long) const override { return {}; }
    bool EntityVisibilityAt(unsigned long long) const override { return false; }
    Matrix3d EntityTransformAt(unsigned long long) const override { return {}; }
    IsValueSpecifiedEnum LengthUnit(UnitTypeEnum&) const override { return kIsValueSpecified_No; }
    IdSet EntityStylesAt(unsigned long long) const override { return {}; }
    IdSet CameraSet() const override { return {}; }
};

}  // namespace KVR
