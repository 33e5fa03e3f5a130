#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include "tests/support/FullScene.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

constexpr char const* kNoRoot = "Could not find the root object id.";

constexpr char const* kScene = R"(<Scene><IUniverse/><IFile ID="f"><ChildSet><P ID="p" Type="IPart"/>
    <P ID="q" Type="IPart"/></ChildSet></IFile><IPart ID="p" Label="P"/><IPart ID="q" Label="Q"/></Scene>)";

std::string RootMessage(XMLProducer const& producer)
{
    try
    {
        return "root " + Text(producer.RootObjectId().Id());
    }
    catch (GeneralException const& exception)
    {
        ComponentRoleEnum reporter = kComponentRole_Unknown;
        EXPECT_EQ(exception.Reporter(reporter), kIsValueSpecified_No);
        return Text(exception.Message());
    }
}

bool HasAssemblyStructure(XMLProducer& producer)
{
    bool has = false;
    EXPECT_EQ(producer.QueryFile()->HasAssemblyStructure(has), kIsValueSpecified_Yes);
    return has;
}

// What BeginProcess threw at the scene; the test fails when it threw nothing.
FileException Refusal(TestScene& scene)
{
    try
    {
        scene.Begin();
    }
    catch (FileException const& exception)
    {
        return exception;
    }
    ADD_FAILURE() << "the scene was read";
    return {};
}

void ExpectEnded(XMLProducer& producer)
{
    EXPECT_EQ(producer.Load("f"), nullptr);
    EXPECT_EQ(producer.LoadUniverse(), nullptr);
    EXPECT_EQ(RootMessage(producer), kNoRoot);
    EXPECT_NO_THROW(producer.Dispose("f"));
}

}  // namespace

TEST(Lifecycle, ANewProducerHasOpenedNothing)
{
    XMLProducerOptions options;
    XMLProducer producer(Wide("/nowhere/scene.xml"), &options);
    EXPECT_EQ(producer.LoadUniverse(), nullptr);
    EXPECT_EQ(producer.Load("f"), nullptr);
    EXPECT_NO_THROW(producer.Dispose("f"));
    EXPECT_NO_THROW(producer.Unload("f"));
}

TEST(Lifecycle, RootObjectIdBeforeBeginProcessThrows)
{
    TestScene scene(kScene);
    EXPECT_EQ(RootMessage(scene.Producer()), kNoRoot);
    scene.Producer().QueryFile();
    EXPECT_EQ(RootMessage(scene.Producer()), kNoRoot) << "a query builds no objects";
    EXPECT_EQ(RootMessage(scene.Begin().Producer()), "root f");
}

TEST(Lifecycle, RootObjectIdWithoutARootThrows)
{
    TestScene scene("<Scene/>");
    EXPECT_EQ(RootMessage(scene.Begin().Producer()), kNoRoot);
}

TEST(Lifecycle, LoadUniverseWithoutAnElementForItYieldsNull)
{
    TestScene scene("<Scene/>");
    EXPECT_EQ(scene.Begin().Producer().LoadUniverse(), nullptr);
}

TEST(Lifecycle, BeginProcessIgnoresItsIdSet)
{
    TestScene scene(kScene);
    IdSet ids;
    ids.AddWithUniquenessCheck("p");
    scene.Producer().BeginProcess(ids, nullptr, nullptr);
    EXPECT_TRUE(scene.Has("f"));
    EXPECT_TRUE(scene.Has("p"));
    EXPECT_TRUE(scene.Has("q"));
}

TEST(Lifecycle, OptionsMayBeNull)
{
    TempFolder const folder;
    XMLProducer producer(folder.Write("scene.xml", kScene), nullptr);
    producer.BeginProcess(IdSet(), nullptr, nullptr);
    EXPECT_NE(producer.Load("f"), nullptr);
}

TEST(Lifecycle, BeginProcessIgnoresItsFilter)
{
    TestScene scene(kScene);
    FilterOptions const filter;
    IdSet ids;
    ids.AddWithoutUniquenessCheck("q");
    scene.Producer().BeginProcess(ids, &filter, nullptr);
    for (char const* const id : {"f", "p", "q"})
        EXPECT_TRUE(scene.Has(id)) << id;
    EXPECT_EQ(scene.ChildIds("f"), (std::vector<std::string>{"p", "q"}));
    EXPECT_NE(scene.Producer().LoadUniverse(), nullptr);
}

TEST(Lifecycle, QueryFileFollowedByBeginProcessParsesOnce)
{
    TestScene scene(kScene);
    EXPECT_TRUE(HasAssemblyStructure(scene.Producer()));
    // What the file holds by now is of no interest any more.
    std::filesystem::remove(scene.Path());
    scene.Begin();
    EXPECT_TRUE(scene.Has("f"));
}

TEST(Lifecycle, BeginProcessFollowedByQueryFileParsesOnce)
{
    TestScene scene(kScene);
    scene.Begin();
    std::filesystem::remove(scene.Path());
    EXPECT_TRUE(HasAssemblyStructure(scene.Producer()));
}

TEST(Lifecycle, BeginProcessReleasesTheDocument)
{
    std::string scene = "<S><IFile ID='f' IsRoot='1'>";
    scene +=
        "<ChildSet><Child ID='p' Type='IPart'/></ChildSet></IFile><IPart ID='p'><ChangeKey>key</ChangeKey></IPart>";
    for (int i = 0; i < 100'000; ++i)
        scene += "<Unknown Text='" + std::to_string(i) + "'/>";
    TestScene large(scene + "</S>");
    std::size_t const before = mallinfo2().uordblks;
    large.Begin();
    EXPECT_LT(mallinfo2().uordblks, before + (1U << 20U)) << "of 100,000 elements nothing stays";
    UTF8String key;
    EXPECT_EQ(large.Get<IPart>("p").ChangeKey(kSnapshotVersion_Current, key), kIsValueSpecified_Yes);
    EXPECT_EQ(Text(key), "key");
}

TEST(Lifecycle, TheQueryRunsOnce)
{
    TestScene scene("<Scene");
    FileQueryResult const* const first = scene.Producer().QueryFile();
    EXPECT_FALSE(HasAssemblyStructure(scene.Producer()));
    std::ofstream(scene.Path()) << kScene;
    EXPECT_EQ(scene.Producer().QueryFile(), first);
    EXPECT_FALSE(HasAssemblyStructure(scene.Producer())) << "asked again, the file would be seen to be good by now";
}

TEST(Lifecycle, QueryFileOfAFileThatCannotBeParsedGivesTheUnfilledResult)
{
    for (char const* const text : {"", "<Scene", "<Scene></scene>", "no document"})
    {
        TestScene scene(text);
        FileQueryResult const* result = nullptr;
        ASSERT_NO_THROW(result = scene.Producer().QueryFile()) << text;
        ASSERT_NE(result, nullptr);
        bool supports = false;
        EXPECT_EQ(result->SupportsFile(supports), kIsValueSpecified_Yes);
        EXPECT_TRUE(supports);
        EXPECT_FALSE(HasAssemblyStructure(scene.Producer()));
    }
    XMLProducer missing(Wide("/nowhere/scene.xml"), nullptr);
    EXPECT_FALSE(HasAssemblyStructure(missing));
}

TEST(Lifecycle, AFileThatCannotBeParsedMakesBeginProcessThrowAFileException)
{
    for (char const* const text : {"", "<Scene", "<Scene></scene>", "<Scene a='1' a='2'/>", "<Scene>&unknown;</Scene>",
                                   "<p:Scene/>", "<Scene/><Scene/>", "<Scene>\x01</Scene>"})
    {
        TestScene scene(text);
        FileException const refusal = Refusal(scene);
        EXPECT_EQ(Text(refusal.FileName()), scene.Path()) << text;
        EXPECT_EQ(refusal.ErrorCode(), 0);
        ComponentRoleEnum reporter = kComponentRole_Unknown;
        EXPECT_EQ(refusal.Reporter(reporter), kIsValueSpecified_Yes);
        EXPECT_EQ(reporter, 2);
        EXPECT_EQ(RootMessage(scene.Producer()), kNoRoot);
        EXPECT_EQ(scene.Producer().LoadUniverse(), nullptr);
    }
}

TEST(Lifecycle, AFileThatIsMissingMakesBeginProcessThrowAFileException)
{
    TestScene scene(kScene);
    std::filesystem::remove(scene.Path());
    EXPECT_EQ(Text(Refusal(scene).FileName()), scene.Path());
    EXPECT_EQ(Text(Refusal(scene).FileName()), scene.Path()) << "again";
    std::ofstream(scene.Path()) << kScene;
    EXPECT_TRUE(scene.Begin().Has("f")) << "the file is there now, and nothing of the failure is left";
}

TEST(Lifecycle, AQueryThatFailedLeavesBeginProcessItsOwnTry)
{
    TestScene scene("<Scene");
    EXPECT_FALSE(HasAssemblyStructure(scene.Producer()));
    EXPECT_EQ(Text(Refusal(scene).FileName()), scene.Path());
    std::ofstream(scene.Path()) << kScene;
    EXPECT_TRUE(scene.Begin().Has("f"));
    EXPECT_FALSE(HasAssemblyStructure(scene.Producer())) << "the result stays as it was";
}

TEST(Lifecycle, AnUnknownIdLoadsNull)
{
    TestScene scene(kScene);
    scene.Begin();
    for (char const* const id : {"", "F", "f ", "unknown", "scene.xml"})
        EXPECT_FALSE(scene.Has(id)) << id;
}

TEST(Lifecycle, ADisposedObjectIsNotFoundAndNotBuiltAgain)
{
    TestScene scene(kScene);
    scene.Begin();
    scene.Producer().Dispose("p");
    EXPECT_FALSE(scene.Has("p"));
    EXPECT_TRUE(scene.Has("q"));
    EXPECT_EQ(scene.ChildIds("f"), (std::vector<std::string>{"", "q"})) << "the file looks its children up each time";
    EXPECT_NO_THROW(scene.Producer().Dispose("p"));
    EXPECT_NO_THROW(scene.Producer().Dispose("unknown"));
    EXPECT_FALSE(scene.Has("p"));
    scene.Producer().Dispose("f");
    EXPECT_EQ(RootMessage(scene.Producer()), "root f") << "the id is kept as it was";
}

TEST(Lifecycle, UnloadHasNoEffect)
{
    TestScene scene(kScene);
    scene.Begin();
    IObject* const part = scene.Producer().Load("p");
    scene.Producer().Unload("p");
    EXPECT_EQ(scene.Producer().Load("p"), part);
}

TEST(Lifecycle, BeginProcessTwiceRegistersASecondSetAndDoesNoHarm)
{
    TestScene scene(kScene);
    scene.Begin();
    IObject* const file = scene.Producer().Load("f");
    IUniverse const* const universe = scene.Producer().LoadUniverse();
    scene.Begin();
    EXPECT_EQ(scene.Producer().Load("f"), file) << "of two objects with one id the first is answered";
    EXPECT_EQ(RootMessage(scene.Producer()), "root f");
    EXPECT_NE(scene.Producer().LoadUniverse(), nullptr);
    EXPECT_NE(scene.Producer().LoadUniverse(), universe) << "the universe is replaced";
    EXPECT_EQ(universe->CustomDataCount(), 0U) << "the former one lives on";
    EXPECT_EQ(scene.ChildIds("f"), (std::vector<std::string>{"p", "q"}));
    scene.Producer().Dispose("p");
    EXPECT_FALSE(scene.Has("p")) << "both of the id are gone";
}

TEST(Lifecycle, EndProcessInEveryStateAndTwiceDoesNoHarm)
{
    {
        TestScene created(kScene);
        created.Producer().EndProcess();
        ExpectEnded(created.Producer());
        created.Producer().EndProcess();
        ExpectEnded(created.Producer());
    }
    {
        TestScene parsed(kScene);
        parsed.Producer().QueryFile();
        parsed.Producer().EndProcess();
        parsed.Producer().EndProcess();
        ExpectEnded(parsed.Producer());
    }
    {
        TestScene refused("<Scene");
        EXPECT_FALSE(Opens(refused));
        refused.Producer().EndProcess();
        refused.Producer().EndProcess();
        ExpectEnded(refused.Producer());
    }
    {
        TestScene brokenOff(R"(<S><IUniverse><CustomData><CustomDataItem Type="8" Key="k" Path="none"
            BlobBufferSize="9"/></CustomData></IUniverse><IFile ID="f"/></S>)");
        EXPECT_FALSE(Opens(brokenOff)) << "the blob is missing";
        brokenOff.Producer().EndProcess();
        brokenOff.Producer().EndProcess();
        ExpectEnded(brokenOff.Producer());
    }
    TestScene scanned(kScene);
    scanned.Begin();
    scanned.Producer().EndProcess();
    ExpectEnded(scanned.Producer());
    scanned.Producer().EndProcess();
    ExpectEnded(scanned.Producer());
}

TEST(Lifecycle, AProducerIsNotReopenedAfterItsEnd)
{
    TestScene scene(kScene);
    scene.Begin();
    scene.Producer().EndProcess();
    EXPECT_NO_THROW(scene.Begin());
    ExpectEnded(scene.Producer());
    EXPECT_NE(scene.Producer().QueryFile(), nullptr) << "a query does no harm";
    ExpectEnded(scene.Producer());
}

TEST(Lifecycle, TheHostsHoldOnXercesOutlivesEveryProducer)
{
    xercesc::XMLPlatformUtils::Initialize();
    {
        TestScene good(kScene);
        good.Begin().Producer().EndProcess();
        TestScene bad("<Scene");
        EXPECT_FALSE(Opens(bad));
    }
    // Without a hold of its own the host would now be left without the service that transcodes.
    XMLCh* text = xercesc::XMLString::transcode("text");
    EXPECT_EQ(xercesc::XMLString::stringLen(text), 4U);
    xercesc::XMLString::release(&text);
    xercesc::XMLPlatformUtils::Terminate();
}

TEST(Lifecycle, AProducerThatHasEndedLetsGoOfXercesOnce)
{
    xercesc::XMLPlatformUtils::Initialize();
    // Many, since failed producers before may have left holds of theirs.
    for (int i = 0; i < 300; ++i)
    {
        TestScene scene(kScene);
        scene.Begin().Producer().EndProcess();
    }
    XMLCh* text = xercesc::XMLString::transcode("text");
    EXPECT_EQ(xercesc::XMLString::stringLen(text), 4U);
    xercesc::XMLString::release(&text);
    xercesc::XMLPlatformUtils::Terminate();
}

TEST(Lifecycle, TheFullSceneAnswersWhatItSays)
{
    TestScene scene(FullScene());
    WriteSideFiles(scene);
    scene.Begin();
    SceneAnswers const answers = WalkScene(scene.Producer(), FullSceneIds());
    std::string const kAbsent = "\nAbsent: ";
    EXPECT_EQ(answers.files, 1U);
    EXPECT_EQ(answers.assemblies, 2U);
    EXPECT_EQ(answers.parts, 2U);
    EXPECT_EQ(answers.instances, 4U);
    EXPECT_EQ(answers.shapes, 15U);
    EXPECT_EQ(answers.notes, 2U);
    std::vector<std::string> absent;
    for (auto at = answers.text.find(kAbsent); at != std::string::npos; at = answers.text.find(kAbsent, at + 1))
        absent.push_back(
            answers.text.substr(at + kAbsent.size(), answers.text.find('\n', at + 1) - at - kAbsent.size()));
    // An element that names nothing, ids that nobody names, the empty one among them, and styles without an element.
    EXPECT_THAT(absent, testing::ElementsAre("ghost", "evil", "", "s3", "s6", "s4", "s5", "s7"));
    EXPECT_EQ(answers.absent, absent.size());
}

}  // namespace KVR::Test
