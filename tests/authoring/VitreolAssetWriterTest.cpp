#include "authoring/VitreolAssetWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <filesystem>
#include <map>
#include <memory>

#include "framework/api/Exception.h"
#include "framework/api/VitreolSerializedAsset.h"
#include "framework/xml_util/VitreolBlobExternalFileReader.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using Authoring::VitreolAssetWriter;
using Bytes = std::vector<unsigned char>;

struct AssetLists
{
    std::string type;
    Bytes content;

    friend bool operator==(AssetLists const&, AssetLists const&) = default;
};

using Assets = std::map<std::string, AssetLists>;

// What the file's reader makes of it; nothing when it says that the file is damaged.
Assets ReadBack(UTF16String const& path)
{
    std::map<UTF8String, VitreolSerializedAsset*> read;
    VitreolBlobExternalFileReader reader(path);
    bool const isWhole = reader.LoadVitreolFromExternalFile(read);
    Assets assets;
    for (auto const& [id, pointer] : read)
    {
        std::unique_ptr<VitreolSerializedAsset> const asset(pointer);
        auto const* const bytes = static_cast<unsigned char const*>(asset->Data());
        assets[Text(id)] = {Text(asset->Type()), Bytes(bytes, bytes + asset->Size())};
    }
    return isWhole ? assets : Assets();
}

TEST(VitreolAssetWriter, WhatItWritesReadsBackWhateverItHolds)
{
    bool const holds = rc::check(
        []
        {
            TempFolder const folder;
            UTF16String const path = folder.PathOf("a.assets");
            auto const written = *rc::gen::arbitrary<std::map<std::string, std::pair<std::string, Bytes>>>();
            Assets expected;
            VitreolAssetWriter writer(path);
            for (auto const& [id, asset] : written)
            {
                // Keys of the map differ; as bytes they go to the file whatever they are.
                writer.Asset(UTF8String(id), UTF8String(asset.first), asset.second);
                expected[id] = {asset.first, asset.second};
            }
            writer.Finish();
            RC_ASSERT(ReadBack(path) == expected);
        });
    EXPECT_TRUE(holds);
}

TEST(VitreolAssetWriter, AnEmptyFileIsWhole)
{
    TempFolder const folder;
    VitreolAssetWriter writer(folder.PathOf("a.assets"));
    writer.Finish();
    std::map<UTF8String, VitreolSerializedAsset*> read;
    VitreolBlobExternalFileReader reader(folder.PathOf("a.assets"));
    EXPECT_TRUE(reader.LoadVitreolFromExternalFile(read));
    EXPECT_TRUE(read.empty());
}

TEST(VitreolAssetWriter, RefusesASecondAssetOfOneStyleAndGoesOn)
{
    TempFolder const folder;
    VitreolAssetWriter writer(folder.PathOf("a.assets"));
    writer.Asset("oak", "wood", Bytes{1, 2});
    EXPECT_THROW(writer.Asset("oak", "wood", Bytes{3}), GeneralException);
    writer.Asset("elm", "wood", Bytes{});
    writer.Finish();
    EXPECT_EQ(ReadBack(folder.PathOf("a.assets")), (Assets{{"oak", {"wood", {1, 2}}}, {"elm", {"wood", {}}}}));
}

TEST(VitreolAssetWriter, WithoutAFinishNothingStaysBehind)
{
    TempFolder const folder;
    {
        VitreolAssetWriter writer(folder.PathOf("a.assets"));
        writer.Asset("oak", "wood", Bytes{1});
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(VitreolAssetWriter, AFolderThatIsNotThereIsAFileException)
{
    TempFolder const folder;
    EXPECT_THROW(VitreolAssetWriter(folder.PathOf("none/a.assets")), FileException);
}

TEST(VitreolAssetWriter, AStyleOfASceneTakesItsAsset)
{
    TestScene scene(R"(<Scene><VitreolMaterialInfo GenerateSerializedVitreol="True" Path="a.assets"/>
        <IFile ID="f" Label=""><AttributeSet><StyleSet><IRenderStyle ID="oak"/></StyleSet></AttributeSet></IFile>
        </Scene>)");
    VitreolAssetWriter writer(Wide((scene.Folder() + "/a.assets").c_str()));
    writer.Asset("oak", "wood", Bytes{0xDE, 0xAD});
    writer.Finish();
    scene.Begin();
    VitreolSerializedAsset const* const asset = scene.Get<IVitreolRenderStyle>("oak").SerializedAsset();
    ASSERT_NE(asset, nullptr);
    EXPECT_EQ(Text(asset->Type()), "wood");
    EXPECT_EQ(asset->Size(), 2U);
}

}  // namespace

}  // namespace KVR::Test
