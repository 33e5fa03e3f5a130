#include "scene/MeshQuality.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"
#include "tests/support/TempFolder.h"

// How finely import and export mesh bodies.
namespace KVR::Test
{

namespace
{

constexpr MeshQuality kFine{{5e-4, true}, 0.2, false};
constexpr MeshQuality kRelative{{1e-3, true}, 0.5, true};
// In millimetres: the model's diagonal is some 260.
constexpr MeshQuality kLength{{0.02, false}, 0.5, false};

class MeshQualityOf : public testing::Test
{
protected:
    std::size_t Imported(MeshQuality const& quality, bool withMeshes = true)
    {
        ImportOptions options;
        options.quality = quality;
        options.withMeshes = withMeshes;
        ImportResult const result = ImportModel(std::string(KVR_EXAMPLES_DIR) + "/models/as1-oc-214.stp",
                                                m_folder.NarrowPathOf("scene.xml"), options);
        EXPECT_EQ(result.outcome, Outcome::kDone) << result.failure;
        return result.counts.triangles;
    }

    // The triangles of a binary STL file.
    std::uintmax_t Exported(MeshQuality const& quality)
    {
        std::string const path = m_folder.NarrowPathOf("out.stl");
        SceneOptions scene;
        scene.path = m_folder.NarrowPathOf("scene.xml");
        ExportOptions options;
        options.quality = quality;
        ExportResult const result = ExportScene(scene, path, options);
        EXPECT_EQ(result.outcome, Outcome::kDone) << result.failure;
        return (std::filesystem::file_size(path) - 84) / 50;
    }

    TempFolder m_folder;
};

}  // namespace

TEST_F(MeshQualityOf, AnImportIsThatOfAllItsBodies)
{
    std::size_t const usual = Imported({});
    EXPECT_EQ(usual, 2048U);
    EXPECT_GT(Imported({{1e-3, true}, 0.2, false}), usual);
    EXPECT_GT(Imported(kRelative), usual);
    EXPECT_GT(Imported(kLength), usual);
}

TEST_F(MeshQualityOf, ALengthThatIsAbsurdBesideTheModelIsRefusedWithTheLeast)
{
    ImportOptions options;
    options.quality.deflection = {1e-4, false};
    ImportResult const result = ImportModel(std::string(KVR_EXAMPLES_DIR) + "/models/as1-oc-214.stp",
                                            m_folder.NarrowPathOf("scene.xml"), options);
    EXPECT_EQ(result.outcome, Outcome::kFailed);
    EXPECT_THAT(result.failure, testing::EndsWith(", so that bodies can be meshed to 0.000264 at the finest"));
}

TEST_F(MeshQualityOf, AnExportIsThatOfBodiesWithoutMeshes)
{
    Imported({}, false);
    std::uintmax_t const usual = Exported({});
    EXPECT_GT(Exported(kFine), usual);
    EXPECT_GT(Exported(kRelative), usual);
    EXPECT_GT(Exported(kLength), usual);
}

}  // namespace KVR::Test
