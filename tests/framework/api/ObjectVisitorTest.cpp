#include "framework/api/ObjectVisitor.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "framework/api/ObjectCollector.h"
#include "tests/framework/api/GeometryFakes.h"

namespace
{

using namespace KVR;

// Notes the interface of what it visits.
class Noter : public ObjectVisitor
{
public:
    std::string visited;
    IObject const* object = nullptr;

    void Visit(IGenericObject* o) override { Note("GenericObject", o); }
    void Visit(IView* o) override { Note("View", o); }
    void Visit(ICamera* o) override { Note("Camera", o); }
    void Visit(IAssemblyFeatureOverride* o) override { Note("AssemblyFeatureOverride", o); }
    void Visit(IAnnotationCalloutElement* o) override { Note("AnnotationCalloutElement", o); }
    void Visit(IAnnotationCallout* o) override { Note("AnnotationCallout", o); }
    void Visit(IMaterialTexture* o) override { Note("MaterialTexture", o); }
    void Visit(IExtensionGeometry* o) override { Note("ExtensionGeometry", o); }
    void Visit(IPointCloud* o) override { Note("PointCloud", o); }
    void Visit(ILod* o) override { Note("Lod", o); }
    void Visit(IPolygonMesh* o) override { Note("PolygonMesh", o); }
    void Visit(ICoordSys* o) override { Note("CoordSys", o); }
    void Visit(IWorkPlane* o) override { Note("WorkPlane", o); }
    void Visit(IWorkAxis* o) override { Note("WorkAxis", o); }
    void Visit(IWorkPoint* o) override { Note("WorkPoint", o); }
    void Visit(ISketch* o) override { Note("Sketch", o); }
    void Visit(ICurve* o) override { Note("Curve", o); }
    void Visit(IPoint* o) override { Note("Point", o); }
    void Visit(IRenderStyle* o) override { Note("RenderStyle", o); }
    void Visit(IGroup* o) override { Note("Group", o); }
    void Visit(IInstance* o) override { Note("Instance", o); }
    void Visit(IAssembly* o) override { Note("Assembly", o); }
    void Visit(IFile* o) override { Note("File", o); }
    void Visit(IPart* o) override { Note("Part", o); }
    void Visit(IGeometricSet* o) override { Note("GeometricSet", o); }
    void Visit(ILayer* o) override { Note("Layer", o); }
    void Visit(IBrep* o) override { Note("Brep", o); }

private:
    void Note(char const* kind, IObject const* o)
    {
        visited += kind;
        object = o;
    }
};

template <class FakeT, class InterfaceT>
struct Kind
{
    using Fake = FakeT;
    using Interface = InterfaceT;
};

template <class KindT>
class ObjectVisitorOf : public testing::Test
{
};

using Kinds =
    testing::Types<Kind<FakeGenericObject, IGenericObject>, Kind<FakeView, IView>, Kind<FakeCamera, ICamera>,
                   Kind<FakeAssemblyFeatureOverride, IAssemblyFeatureOverride>,
                   Kind<FakeAnnotationCalloutElement, IAnnotationCalloutElement>,
                   Kind<FakeAnnotationCallout, IAnnotationCallout>, Kind<FakeMaterialTexture, IMaterialTexture>,
                   Kind<FakeExtensionGeometry, IExtensionGeometry>, Kind<FakePointCloud, IPointCloud>,
                   Kind<FakeLod, ILod>, Kind<FakePolygonMesh, IPolygonMesh>, Kind<FakeCoordSys, ICoordSys>,
                   Kind<FakeWorkPlane, IWorkPlane>, Kind<FakeWorkAxis, IWorkAxis>, Kind<FakeWorkPoint, IWorkPoint>,
                   Kind<FakeSketch, ISketch>, Kind<FakeCurve, ICurve>, Kind<FakePoint, IPoint>,
                   Kind<FakeRenderStyle, IRenderStyle>, Kind<FakeGroup, IGroup>, Kind<FakeInstance, IInstance>,
                   Kind<FakeAssembly, IAssembly>, Kind<FakeFile, IFile>, Kind<FakePart, IPart>,
                   Kind<FakeGeometricSet, IGeometricSet>, Kind<FakeLayer, ILayer>, Kind<FakeBrep, IBrep>>;
TYPED_TEST_SUITE(ObjectVisitorOf, Kinds);

// What the visitor notes when it is handed the interface itself: the overload that the compiler picks.
template <class Interface>
std::string NameOf(Interface* object)
{
    Noter noter;
    static_cast<ObjectVisitor&>(noter).Visit(object);
    return noter.visited;
}

TYPED_TEST(ObjectVisitorOf, AcceptVisitorCallsTheOverloadOfTheInterfaceOnce)
{
    typename TypeParam::Fake fake(UTF8String("id"));
    typename TypeParam::Interface& interface = fake;
    IObject& object = interface;
    Noter noter;
    object.AcceptVisitor(&noter);
    EXPECT_FALSE(noter.visited.empty());
    EXPECT_EQ(noter.visited, NameOf(&interface));
    EXPECT_EQ(noter.object, &object);
}

TYPED_TEST(ObjectVisitorOf, ANullVisitorHasNoEffect)
{
    typename TypeParam::Fake fake(UTF8String("id"));
    EXPECT_NO_THROW(static_cast<IObject&>(fake).AcceptVisitor(nullptr));
    EXPECT_EQ(fake.Id(), UTF8String("id"));
}

TYPED_TEST(ObjectVisitorOf, AVisitorThatOverridesNothingHasNoEffect)
{
    typename TypeParam::Fake fake(UTF8String("id"));
    ObjectVisitor visitor;
    EXPECT_NO_THROW(static_cast<IObject&>(fake).AcceptVisitor(&visitor));
    EXPECT_EQ(fake.Id(), UTF8String("id"));
}

TYPED_TEST(ObjectVisitorOf, VisitingACollectorRegistersTheObject)
{
    auto* const fake = new typename TypeParam::Fake(UTF8String("id"));
    ObjectCollector collector;
    IObject* const object = fake;
    object->AcceptVisitor(&collector);
    EXPECT_EQ(collector.QueryObject("id"), object);
}

TYPED_TEST(ObjectVisitorOf, AnObjectIsDestroyedThroughItsInterface)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<typename TypeParam::Interface>);
}

template <template <class...> class List, class... KindTs>
std::vector<std::string> NamesOf(List<KindTs...>)
{
    auto const nameOf = [](auto&& fake)
    {
        Noter noter;
        fake.AcceptVisitor(&noter);
        return noter.visited;
    };
    return {nameOf(typename KindTs::Fake())...};
}

TEST(ObjectVisitor, HasTwentySevenKindsWithNamesOfTheirOwn)
{
    std::vector<std::string> const names = NamesOf(Kinds());
    EXPECT_EQ(names.size(), 27U);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), 27U);
}

TEST(ObjectVisitor, ASectionCameraVisitsAsACamera)
{
    FakeSectionCamera camera;
    Noter noter;
    camera.AcceptVisitor(&noter);
    EXPECT_EQ(noter.visited, "Camera");
}

TEST(ObjectVisitor, AStyleOfTheMaterialLibraryVisitsAsAStyle)
{
    FakeVitreolRenderStyle style;
    Noter noter;
    style.AcceptVisitor(&noter);
    EXPECT_EQ(noter.visited, "RenderStyle");
}

}  // namespace
