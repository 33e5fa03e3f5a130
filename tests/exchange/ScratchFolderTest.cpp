#include "output/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

namespace fs = std::filesystem;

using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

std::vector<std::string> NamesIn(std::string const& folder)
{
    std::vector<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename());
    return names;
}

// What a process leaves that makes a folder, puts something into it, and ends without a word.
std::string LeftIn(TempFolder const& folder, std::string const& name = "work-")
{
    pid_t const process = fork();
    if (process == 0)
    {
        ScratchFolder const left(folder.Path(), name);
        fs::create_directories(left.Path() / "deep/er");
        std::ofstream(left.Path() / "deep/er/file") << "content";
        _exit(0);
    }
    waitpid(process, nullptr, 0);
    std::vector<std::string> const names = NamesIn(folder.Path());
    EXPECT_THAT(names, SizeIs(1));
    return folder.NarrowPathOf(names.at(0));
}

}  // namespace

TEST(ScratchFolder, GoesWithAllThatIsInIt)
{
    TempFolder const folder;
    {
        ScratchFolder const scratch(folder.Path(), "work-");
        fs::create_directories(scratch.Path() / "a/b");
        std::ofstream(scratch.Path() / "file") << "content";
        EXPECT_THAT(NamesIn(scratch.Path()), UnorderedElementsAre("a", "file"));
        EXPECT_EQ(fs::status(scratch.Path()).permissions(), fs::perms::owner_all);
    }
    EXPECT_THAT(NamesIn(folder.Path()), IsEmpty());
}

TEST(ScratchFolder, WhatAProcessLeftIsRemovedByTheNext)
{
    TempFolder const folder;
    std::string const left = LeftIn(folder);
    // Another name looks after its own.
    ScratchFolder const other(folder.Path(), "other-");
    EXPECT_TRUE(fs::exists(left + "/files/deep/er/file"));
    ScratchFolder const scratch(folder.Path(), "work-");
    EXPECT_FALSE(fs::exists(left));
}

TEST(ScratchFolder, WhatIsInUseStays)
{
    TempFolder const folder;
    ScratchFolder const first(folder.Path(), "work-");
    std::ofstream(first.Path() / "file") << "content";
    // Also by a process that was forked while it was there, when whoever made it has ended.
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    pid_t const process = fork();
    if (process == 0)
    {
        close(ends[1]);
        ScratchFolder const second(folder.Path(), "work-");
        // The one that goes on waits until the test ends it, or itself.
        char byte = 0;
        _exit(fork() == 0 ? static_cast<int>(read(ends[0], &byte, 1)) : 0);
    }
    close(ends[0]);
    waitpid(process, nullptr, 0);
    {
        ScratchFolder const third(folder.Path(), "work-");
        EXPECT_THAT(NamesIn(folder.Path()), SizeIs(3));
    }
    EXPECT_THAT(NamesIn(folder.Path()), SizeIs(2));
    EXPECT_TRUE(fs::exists(first.Path() / "file"));
    close(ends[1]);
}

TEST(ScratchFolder, WhatIsNotSurelyTheProgramsStays)
{
    TempFolder const folder;
    std::string const left = LeftIn(folder);
    std::string const lock = fs::path(left) / ".kvr-lock";
    ASSERT_TRUE(fs::exists(lock));
    // The right name alone; a lock of another content; a lock that is a link; a folder that is a link; a longer name.
    fs::create_directory(folder.NarrowPathOf("work-backup"));
    fs::create_directory(folder.NarrowPathOf("work-123456"));
    std::ofstream(folder.NarrowPathOf("work-123456/.kvr-lock")) << "mine";
    fs::create_directory(folder.NarrowPathOf("work-abcdef"));
    fs::copy(lock, folder.NarrowPathOf("lock"));
    fs::create_symlink(folder.NarrowPathOf("lock"), folder.NarrowPathOf("work-abcdef/.kvr-lock"));
    fs::create_directory(folder.NarrowPathOf("mine"));
    fs::copy(lock, folder.NarrowPathOf("mine/.kvr-lock"));
    fs::create_symlink(folder.NarrowPathOf("mine"), folder.NarrowPathOf("work-ABCDEF"));
    fs::create_directory(folder.NarrowPathOf("work-1234567"));
    fs::copy(lock, folder.NarrowPathOf("work-1234567/.kvr-lock"));
    {
        ScratchFolder const scratch(folder.Path(), "work-");
    }
    EXPECT_THAT(NamesIn(folder.Path()), UnorderedElementsAre("work-backup", "work-123456", "work-abcdef", "lock",
                                                             "mine", "work-ABCDEF", "work-1234567"));
    EXPECT_TRUE(fs::exists(folder.NarrowPathOf("mine/.kvr-lock")));
}

TEST(ScratchFolder, WhatARemovalInItsMidstLeftIsStillKnown)
{
    TempFolder const folder;
    std::string const left = LeftIn(folder);
    fs::remove_all(left + "/files");
    {
        ScratchFolder const scratch(folder.Path(), "work-");
    }
    EXPECT_THAT(NamesIn(folder.Path()), IsEmpty());
}

TEST(ScratchFolder, WhatNeverGotItsLockGoesWhenItIsOld)
{
    TempFolder const folder;
    auto const make = [&](std::string const& name, std::string const& file, char const* content)
    {
        fs::create_directory(folder.NarrowPathOf(name));
        if (!file.empty())
            std::ofstream(folder.NarrowPathOf(name + '/' + file)) << content;
    };
    make("work-empty1", "", "");
    make("work-begun1", ".kvr-lock-new", "a folder of");
    make("work-other1", ".kvr-lock-new", "my own words");
    make("work-files1", "file", "content");
    make("work-both12", ".kvr-lock-new", "a folder of");
    std::ofstream(folder.NarrowPathOf("work-both12/file")) << "content";
    {
        // It may be on its way.
        ScratchFolder const scratch(folder.Path(), "work-");
    }
    EXPECT_THAT(NamesIn(folder.Path()), SizeIs(5));
    for (std::string const& name : NamesIn(folder.Path()))
        fs::last_write_time(folder.NarrowPathOf(name), fs::file_time_type::clock::now() - std::chrono::hours(1));
    {
        ScratchFolder const scratch(folder.Path(), "work-");
    }
    EXPECT_THAT(NamesIn(folder.Path()), UnorderedElementsAre("work-other1", "work-files1", "work-both12"));
    EXPECT_TRUE(fs::exists(folder.NarrowPathOf("work-both12/.kvr-lock-new")));
}

}  // namespace KVR::Test
