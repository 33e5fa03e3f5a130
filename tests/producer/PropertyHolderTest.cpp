// Which kinds of objects hold properties, each kind by itself.

#include <gtest/gtest.h>

#include "framework/xml_util/XMLObject.h"
#include "producer/PropertyAttachment.h"
#include "producer/XMLProducerImpl.h"
#include "tests/framework/api/GeometryFakes.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

// An object of some kind with the state that objects of a scene share.
template <class Fake>
class Stateful : public Fake, public XMLObject
{
public:
    Stateful() : Fake("o"), XMLObject("o", UTF16String()) {}
    IdSet PropertyIds() const override { return m_propertyIds; }
};

// How many properties an object lists of a file with two for it.
unsigned long long CountHeldBy(IObject* object)
{
    TempFolder const folder;
    folder.Write("s.kvrproperty", R"(<P><Property ID="a" ObjectID="o"/><Property ID="b" ObjectID="o"/></P>)");
    XMLProducerImpl producer(folder.PathOf("s.xml"), nullptr);
    producer.objectCollector->AddObject(object);
    AttachProperties(folder.PathOf("s.xml"), producer);
    return object->PropertyIds().Size();
}

template <class Fake>
unsigned long long CountHeldByKind()
{
    return CountHeldBy(new Stateful<Fake>);
}

TEST(PropertyHolder, MeshesInstancesSetsAndBodiesAreOnes)
{
    EXPECT_EQ(CountHeldByKind<FakePolygonMesh>(), 2U);
    EXPECT_EQ(CountHeldByKind<FakeInstance>(), 2U);
    EXPECT_EQ(CountHeldByKind<FakeGeometricSet>(), 2U);
    EXPECT_EQ(CountHeldByKind<FakeBrep>(), 2U);
}

TEST(PropertyHolder, NoOtherKindIsOne)
{
    EXPECT_EQ(CountHeldByKind<FakeFile>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeAssembly>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakePart>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeAssemblyFeatureOverride>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeCurve>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakePoint>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakePointCloud>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeSketch>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeExtensionGeometry>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeWorkAxis>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeWorkPlane>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeAnnotationCallout>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeAnnotationCalloutElement>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeRenderStyle>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeVitreolRenderStyle>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeMaterialTexture>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeLayer>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeGroup>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeLod>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeCamera>(), 0U);
    EXPECT_EQ(CountHeldByKind<FakeView>(), 0U);
}

TEST(PropertyHolder, AnObjectWithoutTheSharedStateIsNone)
{
    EXPECT_EQ(CountHeldBy(new FakeBrep("o")), 0U);
}

}  // namespace

}  // namespace KVR::Test
