#include "describe/Rows.h"
#include "framework/api/ICamera.h"
#include "framework/api/IGroup.h"
#include "framework/api/ILayer.h"
#include "framework/api/ILod.h"
#include "framework/api/IView.h"

namespace KVR
{

namespace
{

constexpr auto kNamed = Interface::Form::Named;

constexpr Row kLayerRows[] = {
    Inherits<ILayer, IObject>(),
    Inherits<ILayer, IVisible>(),
    Value<&ILayer::Description>("Description"),
    Value<&ILayer::LayerNumber>("LayerNumber"),
    Value<&ILayer::GeometryItems>("GeometryItems").RefersTo(Refers::Set),
    Value<&ILayer::Styles>("Styles").RefersTo(Refers::Set),
};

constexpr Row kGroupRows[] = {
    Inherits<IGroup, IObject>(),
    Value<&IGroup::Description>("Description"),
    Value<&IGroup::GeometryItems>("GeometryItems").RefersTo(Refers::Set),
};

constexpr Row kLodRows[] = {
    Inherits<ILod, IObject>(),
    Value<&ILod::Description>("Description"),
};

constexpr Row kCameraRows[] = {
    Inherits<ICamera, IObject>(),
    Value<&ICamera::CameraType>("CameraType"),
    Value<&ICamera::LengthUnit>("LengthUnit"),
    Value<&ICamera::CameraPosition>("CameraPosition"),
    Value<&ICamera::CameraDirection>("CameraDirection"),
    Value<&ICamera::CameraUpDirection>("CameraUpDirection"),
    Value<&ICamera::DistanceToViewPlane>("DistanceToViewPlane"),
    Value<&ICamera::AspectRatio>("AspectRatio"),
    Value<&ICamera::ViewAngle>("ViewAngle"),
    Value<&ICamera::ViewWindowHeightForParallelCamera>("ViewWindowHeightForParallelCamera"),
    Value<&ICamera::IsDepthFieldDefined>("IsDepthFieldDefined"),
    Value<&ICamera::NearPlane>("NearPlane"),
    Value<&ICamera::FarPlane>("FarPlane"),
};

constexpr Row kSectionCameraRows[] = {
    Inherits<ISectionCamera, ICamera>(),
    List<&ISectionCamera::SectionPlaneCount, &ISectionCamera::SectionPlaneAt>("SectionPlanes"),
    Value<&ISectionCamera::SectioningOperations>("SectioningOperations"),
};

constexpr Row kPlaneRows[] = {
    Value<&Plane::Origin>("Origin"),
    Value<&Plane::Normal>("Normal"),
    Value<&Plane::ReferenceDirection>("ReferenceDirection"),
};

constexpr Row kViewMemberRows[] = {
    OfItem<&IView::OccurrencePathAt>("OccurrencePath"),
    OfItem<&IView::EntityVisibilityAt>("EntityVisibility"),
    OfItem<&IView::EntityTransformAt>("EntityTransform"),
    OfItem<&IView::EntityStylesAt>("EntityStyles").RefersTo(Refers::Set),
};
constexpr Interface kViewMember{"ViewMember", kViewMemberRows};

constexpr Row kViewRows[] = {
    Inherits<IView, IObject>(),
    Inherits<IView, IVisible>(),
    Value<&IView::IsActive>("IsActive"),
    Value<&IView::LengthUnit>("LengthUnit"),
    Items<&IView::ViewMemberCount, IView, unsigned long long, &kViewMember>("ViewMembers").RefersTo(Refers::SetOfEach),
    Value<&IView::CameraSet>("CameraSet").RefersTo(Refers::Set),
};

}  // namespace

Interface const TableOf<ILayer>::kTable = {"ILayer", kLayerRows, kNamed};
Interface const TableOf<IGroup>::kTable = {"IGroup", kGroupRows, kNamed};
Interface const TableOf<ILod>::kTable = {"ILod", kLodRows, kNamed};
Interface const TableOf<ICamera>::kTable = {"ICamera", kCameraRows, kNamed};
Interface const TableOf<ISectionCamera>::kTable = {"ISectionCamera", kSectionCameraRows, kNamed};
Interface const TableOf<IView>::kTable = {"IView", kViewRows, kNamed};
Interface const TableOf<Plane>::kTable = {"Plane", kPlaneRows};

}  // namespace KVR
