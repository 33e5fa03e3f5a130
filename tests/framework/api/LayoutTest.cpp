// The order of bases and of virtual operations, which a host has in it once it is built.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "tests/framework/api/GeometryFakes.h"

namespace
{

using namespace KVR;

// The first base of an object shares its address.
template <class Base, class Interface>
bool StandsFirst(Interface const& object)
{
    return static_cast<void const*>(static_cast<Base const*>(&object)) == static_cast<void const*>(&object);
}

template <class Before, class Behind, class Interface>
bool StandsBefore(Interface const& object)
{
    return static_cast<void const*>(static_cast<Before const*>(&object)) <
           static_cast<void const*>(static_cast<Behind const*>(&object));
}

TEST(Layout, BasesStandInTheirOrder)
{
    FakePoint const point;
    IGeometry const& geometry = point;
    EXPECT_TRUE(StandsFirst<IObject>(geometry));
    EXPECT_TRUE((StandsBefore<IObject, ITransformable>(geometry)));
    EXPECT_TRUE((StandsBefore<ITransformable, IUnit>(geometry)));
    EXPECT_TRUE((StandsBefore<IUnit, IVisible>(geometry)));

    FakePart const part;
    IComponent const& component = part;
    EXPECT_TRUE(StandsFirst<IObject>(component));
    EXPECT_TRUE((StandsBefore<IObject, IAttributeSets>(component)));
    EXPECT_TRUE((StandsBefore<IAttributeSets, IUnit>(component)));

    FakeFile const fakeFile;
    IFile const& file = fakeFile;
    EXPECT_TRUE(StandsFirst<IAttributeSets>(file));
    EXPECT_TRUE((StandsBefore<IAttributeSets, IObject>(file)));
    EXPECT_TRUE((StandsBefore<IObject, IUnit>(file)));

    FakeInstance const fakeInstance;
    IInstance const& instance = fakeInstance;
    EXPECT_TRUE(StandsFirst<ITransformable>(instance));
    EXPECT_TRUE((StandsBefore<ITransformable, IObject>(instance)));
    EXPECT_TRUE((StandsBefore<IObject, IUnit>(instance)));
    EXPECT_TRUE((StandsBefore<IUnit, IVisible>(instance)));

    FakeBrep const fakeBrep;
    IBrep const& brep = fakeBrep;
    EXPECT_TRUE(StandsFirst<IGeometry>(brep));
    EXPECT_TRUE((StandsBefore<IGeometry, ISubEntityStyles>(brep)));
    EXPECT_TRUE((StandsBefore<ISubEntityStyles, ISubObjectPersistentIds>(brep)));

    FakeAssemblyFeatureOverride const fakeOverride;
    IAssemblyFeatureOverride const& featureOverride = fakeOverride;
    EXPECT_TRUE(StandsFirst<IObject>(featureOverride));
    EXPECT_TRUE((StandsBefore<IObject, IVisible>(featureOverride)));

    FakeVitreolRenderStyle const fakeStyle;
    IVitreolRenderStyle const& style = fakeStyle;
    EXPECT_TRUE(StandsFirst<IRenderStyle>(style));
    EXPECT_TRUE(StandsFirst<IObject>(style));

    FakeMaterialTexture const fakeTexture;
    IMaterialTexture const& texture = fakeTexture;
    EXPECT_TRUE(StandsFirst<IObject>(texture));

    FakeLayer const fakeLayer;
    ILayer const& layer = fakeLayer;
    EXPECT_TRUE(StandsFirst<IObject>(layer));
    EXPECT_TRUE((StandsBefore<IObject, IVisible>(layer)));
}

#if defined(__GNUC__) && defined(__x86_64__)

// In this C++ ABI a pointer to a virtual operation holds one more than the offset of its slot, eight bytes a slot.
template <class Operation>
std::int64_t SlotOf(Operation operation)
{
    std::int64_t word = 0;
    static_assert(sizeof operation == 2 * sizeof word);
    std::memcpy(&word, &operation, sizeof word);
    EXPECT_EQ(word % 8, 1) << "not virtual";
    return word / 8;
}

// The operations stand slot by slot from `first` on.
template <class... Operations>
void ExpectSlots(std::int64_t first, Operations... operations)
{
    std::vector<std::int64_t> const slots{SlotOf(operations)...};
    for (std::size_t i = 0; i < slots.size(); ++i)
        EXPECT_EQ(slots[i], first + static_cast<std::int64_t>(i)) << "operation " << i;
}

// A destructor takes two slots.
constexpr std::int64_t kBehindDestructor = 2;

constexpr std::int64_t kBehindObject = 11;

TEST(Layout, OperationsOfAnObjectStandInTheirOrder)
{
    ExpectSlots(kBehindDestructor, &IObject::AcceptVisitor, &IObject::Id, &IObject::Label, &IObject::IsThreadSafe,
                &IObject::ExtensionDataByTypeId, &IObject::ExtensionDataChangeKeyByTypeId, &IObject::ChangeKey,
                &IObject::VersionPersistentId, &IObject::PropertyIds);
}

TEST(Layout, OperationsOfGeometryStandBehindThoseOfAnObject)
{
    ExpectSlots(kBehindObject, &IGeometry::AngularTolerance, &IGeometry::LinearTolerance, &IGeometry::ParamTolerance,
                &IGeometry::IsNetVisible, &IGeometry::Styles, &IGeometry::NetStyles);
}

TEST(Layout, OperationsOfAComponentStandBehindThoseOfAnObject)
{
    ExpectSlots(kBehindObject, &IComponent::FileProperties, &IComponent::Styles, &IComponent::IsSingleUnderRoot,
                &IComponent::ChildCount, &IAssembly::ChildAt);
    ExpectSlots(kBehindObject + 4, &IPart::ChildAt);
}

template <class Style>
using ColorGetter = IsValueSpecifiedEnum (Style::*)(Color&) const;
template <class Style>
using NumberGetter = IsValueSpecifiedEnum (Style::*)(double&) const;

// A library style has the operations of a style in the same slots.
template <class Style>
void ExpectStyleSlots()
{
    ExpectSlots(kBehindObject, &Style::DiffuseColor, &Style::DiffuseTexture, &Style::DiffuseFactor,
                &Style::AmbientColor, &Style::AmbientTexture, &Style::AmbientFactor, &Style::EmissionColor,
                &Style::EmissionTexture, &Style::EmissionFactor, &Style::SpecularColor, &Style::SpecularTexture,
                &Style::SpecularFactor, &Style::Shininess, &Style::ShaderType, &Style::Reflection, &Style::Eccentricity,
                &Style::Rolloff, static_cast<ColorGetter<Style>>(&Style::Transparency),
                static_cast<NumberGetter<Style>>(&Style::Transparency), &Style::BumpMap, &Style::CutoutTexture,
                &Style::PointStyleMarker, &Style::PointStyleMarkerSize, &Style::CurveStyleFont, &Style::CurveStyleWidth,
                &Style::CurveStyleFillArea);
}

TEST(Layout, OperationsOfAStyleStandBehindThoseOfAnObject)
{
    ExpectStyleSlots<IRenderStyle>();
}

TEST(Layout, OperationsOfALibraryStyleStandBehindThoseOfAStyle)
{
    ExpectStyleSlots<IVitreolRenderStyle>();
    ExpectSlots(kBehindObject + 26, &IVitreolRenderStyle::SerializedAsset, &IVitreolRenderStyle::VitreolLibraryId,
                &IVitreolRenderStyle::AssetDefinitionId, &IVitreolRenderStyle::AssetInstanceVersionGUID,
                &IVitreolRenderStyle::BestFitDiffuseColor);
}

TEST(Layout, OperationsOfATextureStandBehindThoseOfAnObject)
{
    using T = IMaterialTexture;
    ExpectSlots(kBehindObject, &T::TextureType, &T::TextureFileReference, &T::EmbeddedTextureImageSize,
                &T::EmbeddedTextureImage, &T::EmbeddedTextureImageType, &T::TextureDimensions, &T::TextureCenter,
                &T::TextureOffset, &T::TextureScale, &T::TextureSizeForScale, &T::RotateAngle, &T::ProjectType,
                &T::ProcedureU, &T::RepeatU, &T::ProcedureV, &T::RepeatV, &T::ProceduralName, &T::TintColor,
                &T::AssetId, &T::TextureTransform);
}

TEST(Layout, OperationsOfAFeatureOverrideStandBehindThoseOfAnObject)
{
    ExpectSlots(kBehindObject, &IAssemblyFeatureOverride::ChildCount, &IAssemblyFeatureOverride::ChildAt,
                &IAssemblyFeatureOverride::BaseOccPaths);
}

TEST(Layout, OperationsOfTheMixinsStandBeforeTheDestructor)
{
    ExpectSlots(0, &ITransformable::Transform);
    ExpectSlots(0, &IUnit::LengthUnit, &IUnit::DisplayAngleUnit, &IUnit::DisplayLengthUnit);
    ExpectSlots(0, &IVisible::IsVisible);
    ExpectSlots(0, &ISubEntityStyles::StylesMap);
    ExpectSlots(0, &ISubObjectPersistentIds::PersistentIDsMap);
    ExpectSlots(0, &IAttributeSets::StyleSet, &IAttributeSets::TextureSet, &IAttributeSets::LayerSet,
                &IAttributeSets::GroupSet, &IAttributeSets::LodSet, &IAttributeSets::CameraSet,
                &IAttributeSets::ViewSet);
}

TEST(Layout, OperationsOfAProducerStandInTheirOrder)
{
    ExpectSlots(kBehindDestructor, &IProducer::QueryFile, &IProducer::RootObjectId, &IProducer::LoadUniverse,
                &IProducer::Load, &IProducer::Unload, &IProducer::Dispose, &IProducer::BeginProcess,
                &IProducer::EndProcess);
}

template <class Visitor, class... Visited>
void ExpectVisitSlots()
{
    ExpectSlots(kBehindDestructor, static_cast<void (Visitor::*)(Visited*)>(&Visitor::Visit)...);
}

template <class Visitor>
void ExpectObjectVisitSlots()
{
    ExpectVisitSlots<Visitor, IGenericObject, IView, ICamera, IAssemblyFeatureOverride, IAnnotationCalloutElement,
                     IAnnotationCallout, IMaterialTexture, IExtensionGeometry, IPointCloud, ILod, IPolygonMesh,
                     ICoordSys, IWorkPlane, IWorkAxis, IWorkPoint, ISketch, ICurve, IPoint, IRenderStyle, IGroup,
                     IInstance, IAssembly, IFile, IPart, IGeometricSet, ILayer, IBrep>();
}

TEST(Layout, VisitsOfObjectsStandInTheirOrder)
{
    ExpectObjectVisitSlots<ObjectVisitor>();
    ExpectObjectVisitSlots<ObjectCollector>();
    ExpectSlots(kBehindDestructor + 27, &ObjectCollector::Dispose);
}

TEST(Layout, VisitsOfCurveDataStandInTheirOrder)
{
    ExpectVisitSlots<CurveDataVisitor, ITrimmedCurveData, IEvaluatedCurveData, IOffsetCurveData, IHelixData,
                     ITransformedCurveData, IIntCurveData, IConicData, IPowerBasisCurveData, ICompositeCurveData,
                     INurbsCurveData, IEllipseData, IPolyLineData, IRayData, IStraightData>();
}

#endif

}  // namespace
