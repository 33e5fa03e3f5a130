#include "framework/xml_util/VitreolBinaryDataExternalFileReader.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include "framework/api/Exception.h"
#include "tests/framework/xml_util/AllocationMeter.h"
#include "tests/support/TempFolder.h"

namespace
{

using namespace KVR;
using Test::TempFolder;

std::string Narrow(UTF16String const& text)
{
    return UTF8String(text).Value();
}

class BinaryDataFile : public testing::Test
{
protected:
    using Reader = VitreolBinaryDataExternalFileReader;

    Reader ReaderOf(std::string const& path) const
    {
        return Reader(m_folder.PathOf("scene.xml"), UTF16String(UTF8String(path)));
    }
    // So many first bytes of the file.
    std::string Read(std::string const& path, std::size_t size) const
    {
        std::string bytes(size, '?');
        ReaderOf(path).Read(bytes.data(), size);
        return bytes;
    }
    // The name in the exception that both operations throw; the text "nothing" when one does not.
    std::string NameOfFailure(Reader const& reader, std::size_t size) const
    {
        std::vector<char> buffer(size);
        std::string name = NameThrownBy([&] { reader.Read(buffer.data(), size); });
        EXPECT_EQ(NameThrownBy([&] { reader.Require(size); }), name);
        return name;
    }
    template <class Action>
    static std::string NameThrownBy(Action action)
    {
        try
        {
            action();
        }
        catch (FileException const& exception)
        {
            EXPECT_EQ(exception.ErrorCode(), FileException::kFileErrorCode_CannotRead);
            EXPECT_EQ(static_cast<int>(exception.ErrorCode()), 0);
            return Narrow(exception.FileName());
        }
        return "nothing";
    }

    TempFolder m_folder;
};

TEST_F(BinaryDataFile, IsReadFromTheFolderOfTheScene)
{
    m_folder.Write("data.bin", std::string("\0\xFFmore", 6));
    EXPECT_EQ(Read("data.bin", 6), std::string("\0\xFFmore", 6));
    EXPECT_NO_THROW(ReaderOf("data.bin").Require(6));
}

TEST_F(BinaryDataFile, IsReadByAnAbsolutePath)
{
    TempFolder const other;
    other.Write("data.bin", "elsewhere");
    m_folder.Write("data.bin", "beside the scene");
    EXPECT_EQ(Read(other.NarrowPathOf("data.bin"), 9), "elsewhere");
}

TEST_F(BinaryDataFile, IsReadByAPathThatGoesUp)
{
    m_folder.Write("data.bin", "above");
    m_folder.MakeFolder("inner");
    std::string bytes(5, '?');
    Reader(m_folder.PathOf("inner/scene.xml"), L"../data.bin").Read(bytes.data(), bytes.size());
    EXPECT_EQ(bytes, "above");
}

TEST_F(BinaryDataFile, IsReadByANameInAnyScript)
{
    m_folder.Write("meine Räder/日本 😀.bin", "found");
    EXPECT_EQ(Read("meine Räder/日本 😀.bin", 5), "found");
}

TEST_F(BinaryDataFile, IsReadFromItsBeginningAsOftenAsItIsAsked)
{
    m_folder.Write("data.bin", "abcdef");
    auto const reader = ReaderOf("data.bin");
    for (int i = 0; i < 3; ++i)
    {
        std::string bytes(3, '?');
        reader.Read(bytes.data(), bytes.size());
        EXPECT_EQ(bytes, "abc");
    }
}

TEST_F(BinaryDataFile, IsOpenedWhenItIsReadAndNotBefore)
{
    auto const reader = ReaderOf("later.bin");
    m_folder.Write("later.bin", "data");
    EXPECT_EQ(NameOfFailure(reader, 4), "nothing");
}

TEST_F(BinaryDataFile, ThatIsTooShortThrowsWithItsFullPath)
{
    m_folder.Write("data.bin", "four");
    EXPECT_EQ(NameOfFailure(ReaderOf("data.bin"), 3), "nothing");
    EXPECT_EQ(NameOfFailure(ReaderOf("data.bin"), 4), "nothing");
    EXPECT_EQ(NameOfFailure(ReaderOf("data.bin"), 5), m_folder.NarrowPathOf("data.bin"));
    EXPECT_EQ(NameOfFailure(ReaderOf("data.bin"), 1000000), m_folder.NarrowPathOf("data.bin"));
    m_folder.Write("empty.bin", "");
    EXPECT_EQ(NameOfFailure(ReaderOf("empty.bin"), 1), m_folder.NarrowPathOf("empty.bin"));
}

TEST_F(BinaryDataFile, ThatCannotBeOpenedThrowsWithItsFullPath)
{
    EXPECT_EQ(NameOfFailure(ReaderOf("missing Räder.bin"), 1), m_folder.NarrowPathOf("missing Räder.bin"));
    EXPECT_EQ(NameOfFailure(ReaderOf("/no/such/file.bin"), 1), "/no/such/file.bin");
    m_folder.MakeFolder("folder.bin");
    EXPECT_EQ(NameOfFailure(ReaderOf("folder.bin"), 1), m_folder.NarrowPathOf("folder.bin"));
    m_folder.MakeFifo("fifo.bin");
    EXPECT_EQ(NameOfFailure(ReaderOf("fifo.bin"), 1), m_folder.NarrowPathOf("fifo.bin"));
    EXPECT_EQ(NameOfFailure(ReaderOf(""), 1), "");
}

TEST_F(BinaryDataFile, OfNoBytesIsAlwaysThere)
{
    m_folder.Write("data.bin", "data");
    for (char const* const path : {"data.bin", "missing.bin", ""})
    {
        EXPECT_NO_THROW(ReaderOf(path).Read(nullptr, 0)) << path;
        EXPECT_NO_THROW(ReaderOf(path).Require(0)) << path;
    }
}

TEST_F(BinaryDataFile, IsRefusedForASizeBeyondItWithoutMemoryTaken)
{
    m_folder.Write("data.bin", "data");
    auto const reader = ReaderOf("data.bin");
    constexpr unsigned long long kSizes[] = {1ULL << 31, 1ULL << 32, 1ULL << 60, 1ULL << 63,
                                             std::numeric_limits<unsigned long long>::max()};
    for (unsigned long long const size : kSizes)
    {
        AllocationMeter const meter;
        std::string const name = NameThrownBy([&] { reader.Require(size); });
        std::ptrdiff_t const peak = meter.Peak();
        EXPECT_EQ(name, m_folder.NarrowPathOf("data.bin")) << size;
        EXPECT_LT(peak, 64 * 1024) << size;
    }
}

TEST_F(BinaryDataFile, BeyondFourGigabytesIsMeasuredRight)
{
    // Without bytes of its own on the disk.
    m_folder.Write("large.bin", "");
    constexpr unsigned long long kSize = (1ULL << 32) + 5;
    std::filesystem::resize_file(m_folder.NarrowPathOf("large.bin"), kSize);
    auto const reader = ReaderOf("large.bin");
    EXPECT_NO_THROW(reader.Require(kSize));
    EXPECT_THROW(reader.Require(kSize + 1), FileException);
}

}  // namespace
