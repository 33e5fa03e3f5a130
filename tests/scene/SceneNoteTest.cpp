#include "scene/SceneNote.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

constexpr char kScene[] = R"(<Scene>
  <IFile ID="f" Label="file"><ChildSet><C ID="door" Type="IPart"/></ChildSet></IFile>
  <IPart ID="door" Label="door"><ChildSet><IPoint ID="hole" Label="hole 3"/>
    <IAnnotationCallout ID="n1" Label="edge">
      <IText><ITextLine><ITextFragment Value="Deburr " IsBold="True"/><ITextFragment Value="all" IsItalic="True"/>
        <ITextFragment Value="!" IsBold="False"/></ITextLine><ITextLine/></IText>
      <AnnotationPlane><IWorkPlane ID="w" Label="front"><Origin X="1" Y="2.5"/><Normal Z="1"/></IWorkPlane>
      </AnnotationPlane>
      <ChildSet><Child ID="hole"/><IAnnotationCalloutElement ID="e" Label="leader"><ChildSet>
        <IPoint ID="q"/></ChildSet></IAnnotationCalloutElement></ChildSet></IAnnotationCallout>
    <IAnnotationCallout ID="n2" Label="" Visibility="0"><AnnotationPlane><Child ID="hole"/></AnnotationPlane>
      <ExtensionData TypeId='kvr.annotation.kind' Content='tolerance'/>
      <ExtensionData TypeId='kvr.annotation.references' Content=',a,,b c,'/>
      <ExtensionData TypeId='kvr.annotation.details' Content='{"type":"position"}'/>
    </IAnnotationCallout>
    <IAnnotationCallout ID="n3" Label="">
      <ExtensionData TypeId='kvr.annotation.kind' Content='something else'/></IAnnotationCallout>
    </ChildSet></IPart>
</Scene>)";

struct Notes
{
    Notes() : scene(kScene) { scene.Begin(); }
    SceneNote Of(char const* id) { return SceneNote::Of(scene.Producer(), scene.Get<IAnnotationCallout>(id)); }

    TestScene scene;
};

void ExpectRef(SceneObjectRef const& ref, std::string_view kind, std::string const& label, std::string const& id)
{
    EXPECT_EQ(ref.kind, kind);
    EXPECT_EQ(Text(ref.label), label);
    EXPECT_EQ(Text(ref.id), id);
}

TEST(SceneNote, HasTextPlaneAndTargets)
{
    SceneNote const note = Notes().Of("n1");
    EXPECT_EQ(Text(note.id), "n1");
    EXPECT_EQ(Text(note.label), "edge");
    EXPECT_TRUE(note.isVisible);
    ASSERT_TRUE(note.text);
    ASSERT_EQ(note.text->size(), 2U);
    EXPECT_EQ(SceneNote::Joined(note.text->front()), "Deburr all!");
    EXPECT_TRUE(note.text->front()[0].isBold);
    EXPECT_FALSE(note.text->front()[0].isItalic);
    EXPECT_TRUE(note.text->front()[1].isItalic);
    EXPECT_FALSE(note.text->front()[2].isBold);
    EXPECT_THAT(note.text->back(), IsEmpty());
    ASSERT_TRUE(note.plane);
    ExpectRef(note.plane->object, "IWorkPlane", "front", "w");
    EXPECT_THAT(note.plane->origin, Optional(ElementsAre(1, 2.5, 0)));
    EXPECT_THAT(note.plane->normal, Optional(ElementsAre(0, 0, 1)));
    EXPECT_FALSE(note.plane->reference);
    ASSERT_EQ(note.targets.size(), 2U);
    ExpectRef(note.targets[0].object, "IPoint", "hole 3", "hole");
    EXPECT_THAT(note.targets[0].parts, IsEmpty());
    ExpectRef(note.targets[1].object, "IAnnotationCalloutElement", "leader", "e");
    ASSERT_EQ(note.targets[1].parts.size(), 1U);
    ExpectRef(note.targets[1].parts[0], "IPoint", "", "q");
    EXPECT_EQ(note.kind, "");
    EXPECT_THAT(note.references, IsEmpty());
    EXPECT_EQ(note.details, "");
}

TEST(SceneNote, HasWhatItsExtensionDataTell)
{
    SceneNote const note = Notes().Of("n2");
    EXPECT_FALSE(note.isVisible);
    EXPECT_FALSE(note.text);
    EXPECT_THAT(note.targets, IsEmpty());
    // A plane of another kind has no place.
    ASSERT_TRUE(note.plane);
    ExpectRef(note.plane->object, "IPoint", "hole 3", "hole");
    EXPECT_FALSE(note.plane->origin);
    EXPECT_FALSE(note.plane->normal);
    EXPECT_EQ(note.kind, "tolerance");
    EXPECT_THAT(note.references, ElementsAre("a", "b c"));
    EXPECT_EQ(note.details, R"({"type":"position"})");
    EXPECT_EQ(Notes().Of("n3").kind, "");
}

TEST(SceneObjectRef, TellsWhatAnIdStandsFor)
{
    TestScene scene(kScene);
    IProducer& producer = scene.Begin().Producer();
    ExpectRef(SceneObjectRef::Of(producer, "f"), "IFile", "file", "f");
    ExpectRef(SceneObjectRef::Of(producer, "n1"), "IAnnotationCallout", "edge", "n1");
    ExpectRef(SceneObjectRef::Of(producer, "nowhere"), "missing", "", "nowhere");
    ExpectRef(SceneObjectRef::Of(producer, ""), "missing", "", "");
}

}  // namespace

}  // namespace KVR::Test
