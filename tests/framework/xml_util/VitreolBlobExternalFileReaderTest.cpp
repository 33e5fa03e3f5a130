#include "framework/xml_util/VitreolBlobExternalFileReader.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "framework/api/VitreolSerializedAsset.h"
#include "tests/framework/xml_util/AllocationMeter.h"
#include "tests/framework/xml_util/Damage.h"
#include "tests/support/ByteBuilder.h"
#include "tests/support/TempFolder.h"

namespace
{

using namespace KVR;
using Test::ByteBuilder;
using Test::TempFolder;

struct Asset
{
    std::string type;
    std::string bytes;
    bool operator==(Asset const&) const = default;
};
using Assets = std::map<std::string, Asset>;

void PrintTo(Asset const& asset, std::ostream* out)
{
    *out << asset.type << " of " << asset.bytes.size() << " bytes";
}

class AssetFile : public testing::Test
{
protected:
    ~AssetFile() override { Forget(); }

    // Adds to `m_assets` what a file of these bytes holds; whether the reader answers that all is well.
    bool Load(std::string_view bytes)
    {
        m_folder.Write("assets.bin", bytes);
        return LoadFile("assets.bin");
    }
    bool LoadFile(std::string_view name)
    {
        return VitreolBlobExternalFileReader(m_folder.PathOf(name)).LoadVitreolFromExternalFile(m_assets);
    }
    Assets Loaded() const
    {
        Assets assets;
        for (auto const& [id, asset] : m_assets)
        {
            std::string const bytes(static_cast<char const*>(asset->Data()), asset->Size());
            assets[std::string(id.View())] = {std::string(asset->Type().View()), bytes};
        }
        return assets;
    }
    void Forget()
    {
        for (auto const& entry : m_assets)
            delete entry.second;
        m_assets.clear();
    }

    TempFolder m_folder;
    std::map<UTF8String, VitreolSerializedAsset*> m_assets;
};

ByteBuilder Head(std::uint64_t count, std::uint64_t version = 1)
{
    return ByteBuilder().Raw("KVRASSET").U64(version).U64(count);
}

// Three assets, the second of which has no bytes.
ByteBuilder ThreeAssets(std::uint64_t count = 3)
{
    return Head(count)
        .String("style1")
        .String("wood")
        .U64(5)
        .Raw(std::string_view("\0oak\xFF", 5))
        .String("style2")
        .String("")
        .U64(0)
        .String("Räder")
        .String("metal")
        .U64(4)
        .Raw("gold");
}

Assets const kWhole = {
    {"style1", {"wood", std::string("\0oak\xFF", 5)}}, {"style2", {"", ""}}, {"Räder", {"metal", "gold"}}};

// The ids of the assets in file order, and where each of them ends.
struct Place
{
    char const* id;
    std::size_t end;
};
constexpr std::size_t kHeadSize = 24;
constexpr Place kPlaces[] = {{"style1", kHeadSize + 8 + 6 + 8 + 4 + 8 + 5},
                             {"style2", kHeadSize + 39 + 8 + 6 + 8 + 8},
                             {"Räder", kHeadSize + 39 + 30 + 8 + 6 + 8 + 5 + 8 + 4}};

// The assets that stand whole within so many first bytes.
Assets WholeWithin(std::size_t length)
{
    Assets assets;
    for (Place const& place : kPlaces)
    {
        if (place.end <= length)
            assets[place.id] = kWhole.at(place.id);
    }
    return assets;
}

TEST_F(AssetFile, GivesItsAssetsByStyleId)
{
    ASSERT_EQ(ThreeAssets().Bytes().size(), kPlaces[2].end);
    EXPECT_TRUE(Load(ThreeAssets()));
    EXPECT_EQ(Loaded(), kWhole);
    EXPECT_EQ(m_assets.at("style2")->Size(), 0U);
    EXPECT_EQ(m_assets.at("style2")->Data(), nullptr);
}

TEST_F(AssetFile, MayHoldNone)
{
    EXPECT_TRUE(Load(Head(0)));
    EXPECT_EQ(Loaded(), Assets());
}

TEST_F(AssetFile, IsReadToItsCountAlone)
{
    EXPECT_TRUE(Load(ThreeAssets(2)));
    EXPECT_EQ(Loaded(), WholeWithin(kPlaces[1].end));
}

TEST_F(AssetFile, MayHaveBytesBehindItsAssets)
{
    EXPECT_TRUE(Load(ThreeAssets().Raw("whatever follows")));
    EXPECT_EQ(Loaded(), kWhole);
}

TEST_F(AssetFile, HoldsAssetsOfAnySize)
{
    std::string bytes(3000001, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i % 251);
    EXPECT_TRUE(Load(Head(1).String("s").String("t").U64(bytes.size()).Raw(bytes)));
    EXPECT_EQ(Loaded(), (Assets{{"s", {"t", bytes}}}));
}

TEST_F(AssetFile, HoldsAssetsThatOutliveOneAnother)
{
    // Small ones share memory, a large one has its own.
    ByteBuilder file = Head(101);
    Assets expected;
    for (unsigned i = 0; i <= 100; ++i)
    {
        std::string const id = "s" + std::to_string(i);
        std::string const bytes(i == 50 ? 1500000 : 33333 + i, static_cast<char>(i));
        file.String(id).String("t").U64(bytes.size()).Raw(bytes);
        if (i % 10 == 0)
            expected[id] = {"t", bytes};
    }
    EXPECT_TRUE(Load(file));
    EXPECT_EQ(m_assets.size(), 101U);
    std::erase_if(m_assets,
                  [&](auto const& entry)
                  {
                      bool const isGone = !expected.contains(std::string(entry.first.View()));
                      if (isGone)
                          delete entry.second;
                      return isGone;
                  });
    EXPECT_EQ(Loaded(), expected);
    for (auto const& [id, asset] : m_assets)
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(asset->Data()) % alignof(std::max_align_t), 0U) << id.View();
}

TEST_F(AssetFile, GivesTheFirstOfTwoAssetsWithOneId)
{
    EXPECT_TRUE(Load(Head(3)
                         .String("s")
                         .String("first")
                         .U64(1)
                         .Raw("1")
                         .String("s")
                         .String("second")
                         .U64(1)
                         .Raw("2")
                         .String("t")
                         .String("third")
                         .U64(1)
                         .Raw("3")));
    EXPECT_EQ(Loaded(), (Assets{{"s", {"first", "1"}}, {"t", {"third", "3"}}}));
}

TEST_F(AssetFile, LeavesTheAssetsThatAreThereAlone)
{
    EXPECT_TRUE(Load(Head(1).String("style1").String("former").U64(1).Raw("1")));
    VitreolSerializedAsset const* const former = m_assets.at("style1");
    EXPECT_TRUE(Load(ThreeAssets()));
    EXPECT_EQ(m_assets.at("style1"), former);
    Assets expected = kWhole;
    expected["style1"] = {"former", "1"};
    EXPECT_EQ(Loaded(), expected);
}

TEST_F(AssetFile, WithAWrongHeadFails)
{
    EXPECT_FALSE(Load("KVRASSES" + ThreeAssets().Bytes().substr(8)));
    EXPECT_FALSE(Load("kvrasset" + ThreeAssets().Bytes().substr(8)));
    for (std::uint64_t const version : {std::uint64_t{0}, std::uint64_t{2}, std::uint64_t{1} << 56})
        EXPECT_FALSE(Load(Head(1, version).String("s").String("t").U64(0))) << version;
    EXPECT_FALSE(Load("<?xml version='1.0'?><Assets></Assets>"));
    EXPECT_FALSE(Load(std::string(100, '\0')));
    EXPECT_EQ(Loaded(), Assets());
}

TEST_F(AssetFile, ThatCannotBeOpenedFails)
{
    m_folder.MakeFolder("folder.bin");
    m_folder.MakeFifo("fifo.bin");
    for (char const* const name : {"missing.bin", "folder.bin", "fifo.bin", "", "no/such/folder.bin"})
        EXPECT_FALSE(LoadFile(name)) << name;
    EXPECT_EQ(Loaded(), Assets());
}

TEST_F(AssetFile, IsFoundByANameInAnyScript)
{
    m_folder.Write("meine Räder/日本 😀.bin", ThreeAssets());
    EXPECT_TRUE(LoadFile("meine Räder/日本 😀.bin"));
    EXPECT_EQ(Loaded(), kWhole);
}

TEST_F(AssetFile, ThatEndsEarlyFailsWithTheWholeAssetsInFront)
{
    ForEachPrefix(ThreeAssets(),
                  [this](std::string_view prefix)
                  {
                      Forget();
                      EXPECT_FALSE(Load(prefix)) << prefix.size();
                      EXPECT_EQ(Loaded(), WholeWithin(prefix.size())) << prefix.size();
                  });
}

TEST_F(AssetFile, GivesTheWholeAssetsInFrontOfAByteThatChanged)
{
    ForEachFlip(ThreeAssets(),
                [this](std::string_view damaged, std::size_t place)
                {
                    Forget();
                    AllocationMeter const meter;
                    bool const isLoaded = Load(damaged);
                    EXPECT_LT(meter.Peak(), 512 * 1024) << place;
                    Assets const assets = Loaded();
                    // A count that changed may be smaller than before.
                    if (place < kHeadSize)
                    {
                        EXPECT_TRUE(place >= 16 || (!isLoaded && assets.empty())) << place;
                        return;
                    }
                    EXPECT_LE(assets.size(), 3U) << place;
                    for (auto const& [id, asset] : WholeWithin(place))
                    {
                        ASSERT_EQ(assets.count(id), 1U) << place;
                        EXPECT_EQ(assets.at(id), asset) << place;
                    }
                });
}

class AssetFileClaims : public AssetFile
{
protected:
    // Expects the load to fail with the assets in front of the claim, and next to no memory taken on its word.
    void ExpectRefused(ByteBuilder const& file, Assets const& expected)
    {
        Forget();
        m_folder.Write("assets.bin", file);
        AllocationMeter const meter;
        bool const isLoaded = LoadFile("assets.bin");
        std::ptrdiff_t const peak = meter.Peak();
        EXPECT_FALSE(isLoaded);
        EXPECT_EQ(Loaded(), expected);
        EXPECT_LT(peak, 512 * 1024);
    }
};

TEST_F(AssetFileClaims, ThatTheFileDoesNotBackTakeNoMemory)
{
    constexpr std::uint64_t kClaims[] = {
        1000000,
        (std::uint64_t{1} << 31) - 1,
        std::uint64_t{1} << 31,
        std::uint64_t{1} << 32,
        std::uint64_t{1} << 60,
        (std::uint64_t{1} << 63) - 1,
        std::uint64_t{1} << 63,
        std::numeric_limits<std::uint64_t>::max(),
    };
    Assets const first = {{"a", {"t", "1"}}};
    for (std::uint64_t const claim : kClaims)
    {
        ByteBuilder const front = Head(2).String("a").String("t").U64(1).Raw("1");
        ExpectRefused(ThreeAssets(claim), kWhole);
        ExpectRefused(Head(claim), {});
        ExpectRefused(ByteBuilder(front).U64(claim).Raw("an id"), first);
        ExpectRefused(ByteBuilder(front).String("b").U64(claim).Raw("a type"), first);
        ExpectRefused(ByteBuilder(front).String("b").String("t").U64(claim).Raw("bytes"), first);
    }
}

TEST_F(AssetFileClaims, AreReadNoLongerThanTheFileIs)
{
    // Each record takes 24 bytes of the file at least, so that a count without end ends with them.
    ByteBuilder file = Head(std::numeric_limits<std::uint64_t>::max());
    for (int i = 0; i < 10000; ++i)
        file.String("").String("").U64(0);
    ExpectRefused(file, {{"", {"", ""}}});
}

}  // namespace
