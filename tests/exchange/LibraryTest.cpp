#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <stdexcept>

#include "exchange/CertifyModel.h"
#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"
#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneReading.h"
#include "tests/support/TempFolder.h"

// The library as a program uses it that is not kvr.
namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string const kModel = std::string(KVR_EXAMPLES_DIR) + "/models/as1-oc-214.stp";

SceneOptions ExampleScene()
{
    SceneOptions scene;
    scene.path = std::string(KVR_EXAMPLES_DIR) + "/as1-oc-214/as1-oc-214.xml";
    return scene;
}

std::size_t FilesIn(TempFolder const& folder)
{
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.Path()), {}));
}

// The stages in their order, each once.
class Stages
{
public:
    Progress Callback()
    {
        return [this](ProgressReport const& report)
        {
            if (m_names.empty() || m_names.back() != report.stage)
                m_names.push_back(report.stage);
            if (report.fraction)
            {
                EXPECT_GE(*report.fraction, 0.0);
                EXPECT_LE(*report.fraction, 1.0);
            }
            return true;
        };
    }
    std::vector<std::string> const& Names() const { return m_names; }

private:
    std::vector<std::string> m_names;
};

// Runs work with a callback that says no at the first, second, ... stage or fraction until it is no longer asked, and
// expects that it is cancelled each time; then with one that throws.
void ExpectCancelledAnywhere(std::function<Outcome(Progress const&)> const& work, int least)
{
    int at = 0;
    for (bool isAsked = true; isAsked; ++at)
    {
        isAsked = false;
        int changes = -1;
        std::string former;
        Outcome const outcome = work(
            [&](ProgressReport const& report)
            {
                std::string const now = report.stage + (report.fraction ? "+" : "");
                changes += now != former ? 1 : 0;
                former = now;
                isAsked = changes >= at;
                return !isAsked;
            });
        EXPECT_EQ(outcome, isAsked ? Outcome::kCancelled : Outcome::kDone) << at;
    }
    EXPECT_GT(at, least);
    EXPECT_THROW(work([](ProgressReport const&) -> bool { throw std::out_of_range("enough"); }), std::out_of_range);
}

}  // namespace

TEST(ImportModel, AnswersWhatTheSceneHolds)
{
    TempFolder const folder;
    Stages stages;
    ImportResult const result = ImportModel(kModel, folder.NarrowPathOf("scene.xml"), {}, stages.Callback());
    ASSERT_EQ(result.outcome, Outcome::kDone) << result.failure;
    EXPECT_EQ(result.counts.assemblies, 4u);
    EXPECT_EQ(result.counts.parts, 5u);
    EXPECT_EQ(result.counts.instances, 13u);
    EXPECT_EQ(result.counts.bodies, 5u);
    EXPECT_EQ(result.counts.triangles, 2048u);
    EXPECT_EQ(result.unit, kUnitType_Millimeter);
    EXPECT_TRUE(result.isUnitStated);
    EXPECT_TRUE(result.hasAnnotations);
    EXPECT_GT(result.deflection, 0.0);
    EXPECT_THAT(result.remarks, IsEmpty());
    EXPECT_THAT(result.losses, IsEmpty());
    EXPECT_THAT(stages.Names(), ElementsAre("reading", "transferring", "meshing", "writing"));
}

TEST(ImportModel, TellsLossesAsDataAndInWords)
{
    TempFolder const folder;
    ImportResult const result = ImportModel(std::string(KVR_EXAMPLES_DIR) + "/models/nist_plate_creo_lbls.stp",
                                            folder.NarrowPathOf("scene.xml"));
    ASSERT_EQ(result.outcome, Outcome::kDone) << result.failure;
    EXPECT_THAT(result.losses, testing::Contains(AllOf(testing::Field(&ImportLoss::kind, "construction geometry"),
                                                       testing::Field(&ImportLoss::count, 2u),
                                                       testing::Field(&ImportLoss::items, testing::SizeIs(2)))));
    EXPECT_THAT(result.remarks, testing::Contains("not in the scene: 2 construction geometry"));
}

TEST(ImportModel, AFailureIsASentenceThatIsSafeOnATerminal)
{
    TempFolder const folder;
    ImportResult const result = ImportModel(folder.NarrowPathOf("no\x1b[2J.stp"), folder.NarrowPathOf("scene.xml"));
    EXPECT_EQ(result.outcome, Outcome::kFailed);
    EXPECT_THAT(result.failure, testing::EndsWith("no\\u001b[2J.stp: there is no such file"));
    EXPECT_EQ(FilesIn(folder), 0u);
}

TEST(ImportModel, AUnitOfNoLengthIsAFailure)
{
    TempFolder const folder;
    ImportOptions options;
    options.unit = kUnitType_Degree;
    ImportResult const result = ImportModel(kModel, folder.NarrowPathOf("scene.xml"), options);
    EXPECT_EQ(result.outcome, Outcome::kFailed);
    EXPECT_THAT(result.failure, testing::HasSubstr("no length"));
    EXPECT_EQ(FilesIn(folder), 0u);
}

TEST(ImportModel, IsCancelledAnywhereAndLeavesNothing)
{
    TempFolder const folder;
    ExpectCancelledAnywhere(
        [&](Progress const& progress)
        {
            Outcome const outcome = ImportModel(kModel, folder.NarrowPathOf("scene.xml"), {}, progress).outcome;
            EXPECT_EQ(FilesIn(folder) == 0, outcome != Outcome::kDone);
            std::filesystem::remove_all(folder.Path());
            std::filesystem::create_directory(folder.Path());
            return outcome;
        },
        2);
}

TEST(ExportScene, WritesTheSameOfAFileAndOfAnOpenProducer)
{
    for (std::string const extension : {".glb", ".stl", ".brep"})
    {
        TempFolder const folder;
        Stages stages;
        std::string const first = folder.NarrowPathOf("first" + extension);
        std::string const second = folder.NarrowPathOf("second" + extension);
        ExportResult const ofFile = ExportScene(ExampleScene(), first, {}, stages.Callback());
        ASSERT_EQ(ofFile.outcome, Outcome::kDone) << ofFile.failure;
        EXPECT_THAT(stages.Names(), ElementsAre("reading", "writing"));
        SceneFile file(ExampleScene());
        SceneReading const reading = SceneReading::Of(file.Producer());
        ExportResult const ofProducer = ExportScene(file.Producer(), *reading.rootId, second);
        ASSERT_EQ(ofProducer.outcome, Outcome::kDone) << ofProducer.failure;
        EXPECT_EQ(ofFile.remarks, ofProducer.remarks);
        EXPECT_EQ(std::filesystem::file_size(first), std::filesystem::file_size(second));
        EXPECT_EQ(FilesIn(folder), 2u);
    }
}

TEST(ExportScene, ATargetOfNoFormatIsAFailure)
{
    ExportResult const result = ExportScene(ExampleScene(), "/tmp/out.xyz");
    EXPECT_EQ(result.outcome, Outcome::kFailed);
    EXPECT_THAT(result.failure, testing::StartsWith("/tmp/out.xyz: it has none of the extensions .glb .gltf"));
}

TEST(ExportScene, IsCancelledAnywhereAndLeavesNothing)
{
    TempFolder const folder;
    std::string const target = folder.NarrowPathOf("out.glb");
    SceneFile file(ExampleScene());
    SceneReading const reading = SceneReading::Of(file.Producer());
    for (bool const isOpen : {false, true})
        ExpectCancelledAnywhere(
            [&](Progress const& progress)
            {
                Outcome const outcome =
                    isOpen ? ExportScene(file.Producer(), *reading.rootId, target, {}, progress).outcome
                           : ExportScene(ExampleScene(), target, {}, progress).outcome;
                EXPECT_EQ(FilesIn(folder) == 0, outcome != Outcome::kDone);
                std::filesystem::remove(target);
                return outcome;
            },
            1);
}

TEST(CertifyModel, AnswersItsRowsAsData)
{
    Stages stages;
    CertifyResult const result = CertifyModel(kModel, {}, stages.Callback());
    ASSERT_EQ(result.outcome, Outcome::kDone) << result.failure;
    EXPECT_THAT(result.stages, ElementsAre("source", "scene", "STEP", "GLB"));
    ASSERT_FALSE(result.rows.empty());
    for (CertificateRow const& row : result.rows)
    {
        EXPECT_THAT(row.values, SizeIs(4)) << row.name;
        EXPECT_EQ(row.isGood, row.differences.empty()) << row.name;
    }
    EXPECT_THAT(stages.Names(), testing::Contains("comparing"));
}

TEST(CertifyModel, IsCancelledAnywhere)
{
    ExpectCancelledAnywhere([](Progress const& progress) { return CertifyModel(kModel, {}, progress).outcome; }, 8);
}

TEST(CertifyModel, AModelThatIsNoneIsAFailure)
{
    CertifyResult const result = CertifyModel("/nowhere.stp");
    EXPECT_EQ(result.outcome, Outcome::kFailed);
    EXPECT_EQ(result.failure, "/nowhere.stp: there is no such file");
    EXPECT_THAT(result.rows, IsEmpty());
}

}  // namespace KVR::Test
