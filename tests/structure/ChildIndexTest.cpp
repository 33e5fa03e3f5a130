// What a child index that is out of range tells the host, by every interface that throws the system's own exception.

#include <gtest/gtest.h>

#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

// The message; empty when nothing was thrown. Nobody reports it.
template <class Interface>
std::string MessageOf(TestScene& scene, char const* id)
{
    try
    {
        static_cast<void>(scene.Get<Interface>(id).ChildAt(99));
    }
    catch (GeneralException const& exception)
    {
        ComponentRoleEnum reporter = kComponentRole_Producer;
        EXPECT_EQ(exception.Reporter(reporter), kIsValueSpecified_No) << id;
        EXPECT_EQ(reporter, kComponentRole_Producer) << id << ": the output is left alone";
        return Text(exception.Message());
    }
    return {};
}

}  // namespace

TEST(ChildIndex, OutOfRangeIsAnExceptionWithoutAReporter)
{
    TestScene scene(InScene(
        "<IFile ID='f' Label=''/><IAssembly ID='a' Label=''/><IGeometricSet ID='g'/><IExtensionGeometry ID='e'/>"
        "<IAnnotationCallout ID='c'><ChildSet><IAnnotationCalloutElement ID='d'/></ChildSet>"
        "</IAnnotationCallout>"));
    scene.Begin();
    EXPECT_EQ(MessageOf<IFile>(scene, "f"), "Invalid index to child of XMLFile.");
    EXPECT_EQ(MessageOf<IAssembly>(scene, "a"), "Invalid index to child of XMLAssembly.");
    EXPECT_EQ(MessageOf<IGeometricSet>(scene, "g"), "Invalid index to child of XMLGeometricSet.");
    EXPECT_EQ(MessageOf<IExtensionGeometry>(scene, "e"), "Invalid index to child of XMLExtensionGeometry.");
    EXPECT_EQ(MessageOf<IAnnotationCallout>(scene, "c"), "Invalid index to child of XMLAnnotationCallout.");
    EXPECT_EQ(MessageOf<IAnnotationCalloutElement>(scene, "d"),
              "Invalid index to child of XMLAnnotationCalloutElement.");
}

}  // namespace KVR::Test
