#include "exchange/run/NewFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <system_error>

#include "exchange/run/WorkFolder.h"
#include "tests/host/ResourceLimit.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

std::string BytesOf(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

int ErrorOf(std::function<void()> const& work)
{
    try
    {
        work();
        return 0;
    }
    catch (std::system_error const& error)
    {
        return error.code().value();
    }
}

}  // namespace

TEST(NewFile, HoldsWhatWasPutAndPatched)
{
    TempFolder const folder;
    std::string const path = folder.NarrowPathOf("f");
    folder.Write("f", "something longer that was there");
    NewFile file(path);
    file.Out().Put("abc");
    file.Put(std::uint16_t{0x3130});
    file.Patch(1, "XY");
    file.Out().Put("end");
    file.Finish();
    EXPECT_EQ(BytesOf(path), "aXY01end");
}

TEST(NewFile, GoesWhenItIsNotFinished)
{
    TempFolder const folder;
    std::string const path = folder.NarrowPathOf("f");
    {
        NewFile file(path);
        file.Out().Put(std::string(100'000, 'x'));
        EXPECT_TRUE(std::filesystem::exists(path));
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(NewFile, AFullDiskIsAnErrorAndLeavesNoFile)
{
    // Every write to this device finds it full.
    EXPECT_EQ(ErrorOf(
                  []
                  {
                      NewFile file("/dev/full");
                      file.Out().Put("x");
                      file.Out().Flush();
                  }),
              ENOSPC);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full")) << "a device is no file that goes with the object";
    TempFolder const folder;
    std::string const path = folder.NarrowPathOf("f");
    auto* const former = std::signal(SIGXFSZ, SIG_IGN);
    {
        ResourceLimit const limit(RLIMIT_FSIZE, 1000);
        EXPECT_EQ(ErrorOf(
                      [&]
                      {
                          NewFile file(path);
                          file.Out().Put(std::string(2000, 'x'));
                          file.Finish();
                      }),
                  EFBIG);
        EXPECT_EQ(ErrorOf(
                      [&]
                      {
                          NewFile file(path);
                          file.Patch(1000, "x");
                      }),
                  EFBIG);
    }
    std::signal(SIGXFSZ, former);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(NewFile, AFolderThatRefusesIsAnError)
{
    TempFolder const folder;
    EXPECT_EQ(ErrorOf([&] { NewFile file(folder.NarrowPathOf("none/f")); }), ENOENT);
    EXPECT_EQ(ErrorOf([&] { NewFile file(folder.Path()); }), EISDIR);
    if (geteuid() != 0)
    {
        chmod(folder.Path().c_str(), 0500);
        EXPECT_EQ(ErrorOf([&] { NewFile file(folder.NarrowPathOf("f")); }), EACCES);
        EXPECT_EQ(ErrorOf([&] { WorkFolder work(folder.NarrowPathOf("f")); }), EACCES);
        chmod(folder.Path().c_str(), 0700);
    }
}

TEST(WorkFolder, GivesItsFilesTheirPlacesTogetherOrNoneAtAll)
{
    TempFolder const folder;
    folder.Write("a.xml", "before");
    {
        WorkFolder const work(folder.NarrowPathOf("a.xml"));
        std::ofstream(work.Inside()) << "lost";
    }
    EXPECT_EQ(BytesOf(folder.NarrowPathOf("a.xml")), "before");
    {
        WorkFolder const work(folder.NarrowPathOf("a.xml"));
        std::ofstream(work.Inside()) << "after";
        std::ofstream(work.Inside().replace_filename("a.mesh")) << "mesh";
        EXPECT_THAT(work.Names(), testing::UnorderedElementsAre("a.xml", "a.mesh"));
        work.MoveIntoPlace();
    }
    EXPECT_EQ(BytesOf(folder.NarrowPathOf("a.xml")), "after");
    EXPECT_EQ(BytesOf(folder.NarrowPathOf("a.mesh")), "mesh");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 2);
}

TEST(WorkFolder, WhatCannotBePlacedLeavesAllAsItWas)
{
    TempFolder const folder;
    folder.Write("a.mesh", "before");
    folder.Write("a.old", "old");
    auto const place = [&](bool isFree)
    {
        WorkFolder const work(folder.NarrowPathOf("a.xml"));
        std::ofstream(work.Inside()) << "after";
        std::ofstream(work.Inside().replace_filename("a.mesh")) << "mesh";
        std::ofstream(work.Inside().replace_filename("a.new")) << "new";
        // The last to be placed.
        if (!isFree)
            folder.MakeFolder("a.xml");
        work.MoveIntoPlace({"a.old", "a.missing"});
    };
    EXPECT_EQ(ErrorOf([&] { place(false); }), EISDIR);
    EXPECT_EQ(BytesOf(folder.NarrowPathOf("a.mesh")), "before");
    EXPECT_EQ(BytesOf(folder.NarrowPathOf("a.old")), "old");
    EXPECT_FALSE(std::filesystem::exists(folder.NarrowPathOf("a.new")));
    std::filesystem::remove(folder.NarrowPathOf("a.xml"));
    place(true);
    EXPECT_EQ(BytesOf(folder.NarrowPathOf("a.mesh")), "mesh");
    EXPECT_FALSE(std::filesystem::exists(folder.NarrowPathOf("a.old")));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 3);
}

TEST(WorkFolder, IsClearedForWorkThatBeginsAgain)
{
    TempFolder const folder;
    WorkFolder const work(folder.NarrowPathOf("a.xml"));
    for (int i = 0; i < 100; ++i)
        std::ofstream(work.Inside().replace_filename("a." + std::to_string(i))) << "mesh";
    EXPECT_EQ(work.Names().size(), 100U);
    work.Clear();
    EXPECT_EQ(work.Names().size(), 0U);
}

}  // namespace KVR::Test
