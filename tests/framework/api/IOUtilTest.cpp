#include "framework/api/IOUtil.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <bit>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <type_traits>

#include "framework/api/AssertOption.h"

namespace
{

using namespace KVR;

static_assert(!std::is_copy_constructible_v<FilePtr> && !std::is_copy_assignable_v<FilePtr>);

class IOUtilFiles : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "kvr_ioutil_XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        m_folder = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    UTF8String Path(char const* name) const { return UTF8String((m_folder / name).string()); }

    UTF8String Written(char const* name, std::string const& content) const
    {
        std::ofstream(m_folder / name, std::ios::binary) << content;
        return Path(name);
    }

    // Every way to read: the operation and the scope object, text and binary.
    static bool OpensToRead(UTF8String const& path)
    {
        int opened = 0;
        for (char const* const mode : {"r", "rb"})
        {
            std::FILE* const file = IOUtil::OpenFile(path, mode);
            opened += file ? 1 : 0;
            IOUtil::CloseFile(file);
            opened += static_cast<std::FILE*>(FilePtr(path, mode)) ? 1 : 0;
        }
        EXPECT_TRUE(opened == 0 || opened == 4) << path.Value();
        return opened == 4;
    }

private:
    std::filesystem::path m_folder;
};

TEST_F(IOUtilFiles, ARegularFileIsReadToItsEnd)
{
    UTF8String const path = Written("scene.bin", std::string("a\0\r\n\x1A\xFF", 6));
    EXPECT_TRUE(OpensToRead(path));
    FilePtr const file(path, "rb");
    ASSERT_NE(static_cast<std::FILE*>(file), nullptr);
    char bytes[10];
    EXPECT_EQ(std::fread(bytes, 1, sizeof bytes, file), 6U);
    EXPECT_EQ(std::memcmp(bytes, "a\0\r\n\x1A\xFF", 6), 0);
    EXPECT_TRUE(std::feof(file));
}

TEST_F(IOUtilFiles, AnEmptyFileOpens)
{
    EXPECT_TRUE(OpensToRead(Written("empty", "")));
}

TEST_F(IOUtilFiles, ANameOutsideAsciiOpens)
{
    EXPECT_TRUE(
        OpensToRead(Written("Gr\xC3\xB6\xC3\x9F"
                            "e \xF0\x9F\x94\xA9",
                            "x")));
}

TEST_F(IOUtilFiles, ALinkToARegularFileOpens)
{
    UTF8String const target = Written("target", "x");
    ASSERT_EQ(symlink(target.Value(), Path("link").Value()), 0);
    EXPECT_TRUE(OpensToRead(Path("link")));
}

TEST_F(IOUtilFiles, AMissingFileDoesNotOpen)
{
    EXPECT_FALSE(OpensToRead(Path("missing")));
    EXPECT_FALSE(OpensToRead(Path("missing/below")));
    EXPECT_FALSE(OpensToRead(""));
}

TEST_F(IOUtilFiles, ADanglingLinkDoesNotOpen)
{
    ASSERT_EQ(symlink(Path("nowhere").Value(), Path("link").Value()), 0);
    EXPECT_FALSE(OpensToRead(Path("link")));
}

TEST_F(IOUtilFiles, ADirectoryDoesNotOpen)
{
    EXPECT_FALSE(OpensToRead(Path("")));
    EXPECT_FALSE(OpensToRead(Path(".")));
    EXPECT_FALSE(OpensToRead("/"));
}

TEST_F(IOUtilFiles, AFifoWithoutAWriterDoesNotOpenAndIsNotWaitedFor)
{
    ASSERT_EQ(mkfifo(Path("fifo").Value(), 0600), 0);
    EXPECT_FALSE(OpensToRead(Path("fifo")));
    ASSERT_EQ(symlink(Path("fifo").Value(), Path("link").Value()), 0);
    EXPECT_FALSE(OpensToRead(Path("link")));
}

TEST_F(IOUtilFiles, ADeviceDoesNotOpen)
{
    EXPECT_FALSE(OpensToRead("/dev/null"));
    EXPECT_FALSE(OpensToRead("/dev/zero"));
}

TEST_F(IOUtilFiles, ASocketDoesNotOpen)
{
    struct sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    UTF8String const path = Path("socket");
    ASSERT_LT(path.Size(), sizeof address.sun_path);
    std::memcpy(address.sun_path, path.Value(), path.Size());
    int const descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(descriptor, 0);
    ASSERT_EQ(bind(descriptor, reinterpret_cast<struct sockaddr const*>(&address), sizeof address), 0);
    EXPECT_FALSE(OpensToRead(path));
    close(descriptor);
}

TEST_F(IOUtilFiles, AFileIsWrittenAndReadBack)
{
    {
        FilePtr const file(Path("new"), "wb");
        ASSERT_NE(static_cast<std::FILE*>(file), nullptr);
        EXPECT_EQ(std::fwrite("abc", 1, 3, file), 3U);
    }
    FilePtr const file(Path("new"), "rb");
    ASSERT_NE(static_cast<std::FILE*>(file), nullptr);
    char bytes[4] = {};
    EXPECT_EQ(std::fread(bytes, 1, 4, file), 3U);
    EXPECT_STREQ(bytes, "abc");
}

TEST_F(IOUtilFiles, FilesAreClosedWithTheirScopeAndFailedOpensHoldNothing)
{
    UTF8String const path = Written("file", "x");
    auto const openDescriptors = []
    {
        std::filesystem::directory_iterator const entries("/proc/self/fd");
        return std::distance(begin(entries), end(entries));
    };
    auto const before = openDescriptors();
    for (int i = 0; i < 100; ++i)
    {
        EXPECT_TRUE(OpensToRead(path));
        EXPECT_FALSE(OpensToRead(Path("")));
        EXPECT_FALSE(OpensToRead("/dev/null"));
        EXPECT_FALSE(OpensToRead(Path("missing")));
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(IOUtil, ClosingNullHasNoEffect)
{
    IOUtil::CloseFile(nullptr);
    EXPECT_TRUE(noexcept(IOUtil::CloseFile(nullptr)));
}

TEST(IOUtil, KnowsTheByteOrderOfTheMachine)
{
    unsigned const one = 1;
    unsigned char first = 0;
    std::memcpy(&first, &one, 1);
    EXPECT_EQ(IOUtil::IsBigEndian(), first == 0);
}

TEST(AssertOption, IsEnabledInBuildsWithAssertions)
{
#if defined(NDEBUG)
    EXPECT_FALSE(AssertOption::IsAssertEnabled());
#else
    EXPECT_TRUE(AssertOption::IsAssertEnabled());
#endif
}

}  // namespace
