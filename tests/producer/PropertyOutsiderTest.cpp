// Objects of a host, which hold no properties of a file whatever their kind.

#include <gtest/gtest.h>

#include "producer/PropertyAttachment.h"
#include "producer/XMLProducerImpl.h"
#include "tests/framework/api/GeometryFakes.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

// How many properties an object of the id "o" lists of a file with one for it.
unsigned long long CountHeldBy(IObject* object)
{
    TempFolder const folder;
    folder.Write("s.kvrproperty", R"(<P><Property ID="a" ObjectID="o"/></P>)");
    XMLProducerImpl producer(folder.PathOf("s.xml"), nullptr);
    producer.objectCollector->AddObject(object);
    AttachProperties(folder.PathOf("s.xml"), producer);
    return object->PropertyIds().Size();
}

TEST(PropertyHolder, AnObjectThatIsNotTheScenesOwnIsNone)
{
    EXPECT_EQ(CountHeldBy(new FakePolygonMesh("o")), 0U);
    EXPECT_EQ(CountHeldBy(new FakeInstance("o")), 0U);
    EXPECT_EQ(CountHeldBy(new FakeGeometricSet("o")), 0U);
    EXPECT_EQ(CountHeldBy(new FakeBrep("o")), 0U);
}

}  // namespace

}  // namespace KVR::Test
