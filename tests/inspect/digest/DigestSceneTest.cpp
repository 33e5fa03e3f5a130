// The digest of what a scene serves.

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>

#include "describe/Comparison.h"
#include "framework/api/Exception.h"
#include "framework/api/IdSet.h"
#include "inspect/Digest.h"
#include "producer/XMLProducer.h"
#include "tests/inspect/digest/RewrittenScene.h"
#include "tests/inspect/document/SceneTags.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

constexpr char kComplete[] = KVR_EXAMPLES_DIR "/complete/complete.xml";

std::size_t ByChance(std::size_t count)
{
    return *rc::gen::inRange<std::size_t>(0, count);
}

struct ReadFile
{
    explicit ReadFile(std::string const& path) : producer(UTF16String(UTF8String(path)), nullptr)
    {
        producer.BeginProcess(IdSet(), nullptr, nullptr);
    }
    XMLProducer producer;
};

SceneDigests DigestsOf(std::string const& path, std::vector<std::string> const& extensionTypeIds = {})
{
    ReadFile file(path);
    return DigestScene(file.producer, extensionTypeIds);
}

// The digests of a document of its own.
SceneDigests DigestsOfText(std::string const& xml)
{
    TestScene scene(xml);
    scene.Begin();
    return DigestScene(scene.Producer());
}

std::string SceneWith(std::string const& rest)
{
    return R"(<Scene><IFile ID="f" Label="" IsRoot="1"><ChildSet><Child ID="p" Type="IPart"/></ChildSet></IFile>)" +
           rest + "</Scene>";
}

}  // namespace

class DigestOfExample : public testing::TestWithParam<char const*>
{
};

TEST_P(DigestOfExample, IsTheSameHoweverTheSceneIsWritten)
{
    std::string const name = GetParam();
    SceneDigests const digests = DigestsOf(std::string(KVR_EXAMPLES_DIR "/") + name + "/" + name + ".xml");
    rc::check(
        [&]
        {
            RewrittenScene const scene(name, &ByChance);
            SceneDigests const others = DigestsOf(scene.Path());
            for (std::size_t i = 0; i < digests.objects.size() && i < others.objects.size(); ++i)
                RC_ASSERT(digests.objects[i].id + digests.objects[i].digest.Text() ==
                          others.objects[i].id + others.objects[i].digest.Text());
            RC_ASSERT(digests.universe == others.universe);
            RC_ASSERT(digests.whole == others.whole);
        });
}

INSTANTIATE_TEST_SUITE_P(Examples, DigestOfExample, testing::Values("complete", "as1-oc-214"));

RC_GTEST_PROP(DigestScene, IsAnotherExactlyWhereTheScenesServeOther, ())
{
    static ReadFile original(kComplete);
    static SceneDigests const digests = DigestScene(original.producer);
    static std::string const text = TextOfFile(kComplete);
    static std::vector<SceneTag> const tags = TagsOf(text);
    std::size_t place = ByChance(tags.size());
    while (tags[place].attributes.empty())
        place = (place + 1) % tags.size();
    auto const& attributes = tags[place].attributes;
    TagAttribute const& attribute = attributes[ByChance(attributes.size())];
    std::string value = attribute.value;
    char const by = "0123456789abx. "[ByChance(15)];
    if (value.empty())
        value = by;
    else
        value[ByChance(value.size())] = by;
    // Objects are told apart by their ids, and a scene needs its root.
    RC_PRE(attribute.name != "ID" && attribute.name != "IsRoot");
    // A blob that is missing, or shorter than is said, ends the reading, and whether there are assemblies is told
    // before anything is served.
    RC_PRE(tags[place].name != "CustomDataItem" || (attribute.name != "Path" && attribute.name != "BlobBufferSize"));
    RC_PRE(tags[place].name != "Child" || attribute.name != "Type");
    std::string const changed = Replaced(text, attribute.valueBegin, attribute.value.size(), value);
    std::string const path = KVR_EXAMPLES_DIR "/complete/";
    TestScene scene(changed, "complete.xml");
    for (auto const& entry : std::filesystem::directory_iterator(path))
        if (entry.path().filename() != "complete.xml")
            scene.WithFile(entry.path().filename().string(), TextOfFile(entry.path()));
    scene.Begin();
    SceneDigests const others = DigestScene(scene.Producer());
    RC_LOG() << tags[place].name << ' ' << attribute.name << "=\"" << value << "\"";
    bool const serveTheSame = Compare(original.producer, scene.Producer()).empty();
    // The comparison asks for no extension data.
    if (!serveTheSame)
        RC_ASSERT(digests.whole != others.whole);
    else if (tags[place].name != "ExtensionData")
        RC_ASSERT(digests.whole == others.whole);
}

TEST(DigestScene, ListsObjectsByTheirIds)
{
    SceneDigests const digests = DigestsOf(kComplete);
    EXPECT_TRUE(std::is_sorted(digests.objects.begin(), digests.objects.end(),
                               [](ObjectDigest const& a, ObjectDigest const& b) { return a.id < b.id; }));
    std::map<std::string, std::string> kinds;
    for (ObjectDigest const& object : digests.objects)
        kinds[object.id] = object.className;
    EXPECT_EQ(kinds["part"], "IPart");
    EXPECT_EQ(kinds["camera"], "ISectionCamera");
    EXPECT_EQ(digests.whole.Text().size(), 32U);
}

TEST(DigestScene, ChangesForTheObjectAloneThatAnswersOtherwise)
{
    auto const scene = [](std::string const& label, std::string const& x)
    {
        return DigestsOfText(SceneWith(R"(<IPart ID="p" Label=")" + label + R"("><ChildSet><IPoint ID="q"><Point X=")" +
                                       x + R"(" Y="0" Z="0"/></IPoint></ChildSet></IPart>)"));
    };
    SceneDigests const digests = scene("a", "1.5");
    SceneDigests const others = scene("a", "1.25");
    ASSERT_EQ(digests.objects.size(), 3U);
    EXPECT_NE(digests.whole, others.whole);
    EXPECT_EQ(digests.objects[0].digest, others.objects[0].digest);
    EXPECT_EQ(digests.objects[1].digest, others.objects[1].digest);
    EXPECT_NE(digests.objects[2].digest, others.objects[2].digest);
    EXPECT_NE(digests.whole, scene("b", "1.5").whole);
    EXPECT_EQ(digests.whole, scene("a", "15e-1").whole);
    // A zero has no sign.
    EXPECT_EQ(scene("a", "0").whole, scene("a", "-0.0").whole);
}

TEST(DigestScene, TakesTheOrderOfChildrenForAnAnswer)
{
    auto const scene = [](char const* first, char const* second)
    {
        return DigestsOfText(SceneWith(std::string(R"(<IPart ID="p" Label=""><ChildSet><IPoint ID=")") + first +
                                       R"("/><IPoint ID=")" + second + R"("/></ChildSet></IPart>)"));
    };
    SceneDigests const digests = scene("a", "b");
    SceneDigests const others = scene("b", "a");
    EXPECT_NE(digests.whole, others.whole);
    EXPECT_EQ(digests.objects[0].digest, others.objects[0].digest);
}

TEST(DigestScene, SeesTheShapeOfABodyBehindEqualMeasures)
{
    TempFolder folder;
    std::string const source = KVR_EXAMPLES_DIR "/complete/";
    for (char const* const extension : {"xml", "blob", "mesh", "geometry", "seg", "assets", "ids.xml", "sab", "sat"})
        folder.Write(std::string("complete.") + extension, TextOfFile(source + "complete." + extension));
    SceneDigests const digests = DigestsOf(folder.NarrowPathOf("complete.xml"));
    // A bit in the middle of a number of the text store: the body is another one, or none.
    std::string store = TextOfFile(source + "complete.sat");
    std::size_t const at = store.find("10 0 0");
    ASSERT_NE(at, std::string::npos);
    store.replace(at, 6, "11 0 0");
    folder.Write("complete.sat", store);
    SceneDigests const others = DigestsOf(folder.NarrowPathOf("complete.xml"));
    EXPECT_NE(digests.whole, others.whole);
}

TEST(DigestScene, SeesExtensionDataOfTheTypesAskedFor)
{
    auto const digest = [](std::string const& data, std::vector<std::string> const& types)
    {
        TestScene scene(SceneWith(R"(<IPart ID="p" Label=""><ExtensionData TypeId="t" Content=")" + data +
                                  R"("/><ExtensionData TypeId="kvr.body" Content="b"/></IPart>)"));
        scene.Begin();
        return DigestScene(scene.Producer(), types).whole;
    };
    EXPECT_EQ(digest("x", {}), digest("y", {}));
    EXPECT_NE(digest("x", {"t"}), digest("y", {"t"}));
    EXPECT_EQ(digest("x", {"t", "u"}), digest("x", {"u", "t", "t"}));
    // The program's own types count in any case.
    EXPECT_EQ(digest("x", {}), digest("x", {"kvr.body"}));
    EXPECT_NE(digest("x", {}), DigestsOfText(SceneWith(R"(<IPart ID="p" Label=""/>)")).whole);
}

TEST(DigestScene, RefusesASceneWithoutARoot)
{
    TestScene scene("<Scene><IPart ID=\"p\" Label=\"\"/></Scene>");
    scene.Begin();
    EXPECT_THROW(static_cast<void>(DigestScene(scene.Producer())), GeneralException);
}

}  // namespace KVR::Test
