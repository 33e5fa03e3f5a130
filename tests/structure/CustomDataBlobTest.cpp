#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

using namespace std::string_literals;

std::string BlobText(std::string const& attributes, char const* key = "k")
{
    return std::string("<CustomDataItem Type='8' Key='") + key + "' " + attributes + "/>";
}

std::string SceneOf(std::string const& items)
{
    return InScene("<IUniverse><CustomData>" + items + "</CustomData></IUniverse><IPart ID='p' Label='L'/>");
}

// The bytes of the blob at the index; nothing when there is no blob.
std::optional<std::string> BlobAt(TestScene& scene, unsigned long long index = 0)
{
    UTF8String key;
    Variant value;
    if (scene.Producer().LoadUniverse()->CustomDataAt(index, key, value) != kIsValueSpecified_Yes)
        return {};
    Blob const* const blob = value.BlobValue();
    if (!blob)
        return {};
    return std::string(static_cast<char const*>(blob->Data()), blob->Size());
}

// The file that reading the scene complains about, below the scene's folder, or what else became of it.
std::string FileComplainedAbout(TestScene& scene)
{
    try
    {
        scene.Begin();
    }
    catch (FileException const& exception)
    {
        EXPECT_EQ(exception.ErrorCode(), FileException::kFileErrorCode_CannotRead);
        EXPECT_EQ(exception.ErrorCode(), 0);
        return Text(exception.FileName());
    }
    return "none";
}

}  // namespace

TEST(CustomDataBlob, ItsBytesComeFromTheFileBesideTheScene)
{
    TestScene scene(SceneOf(BlobText("Path='a.bin' BlobBufferSize='5'")));
    scene.WithFile("a.bin", "\0\xFF\x0A<\x80"s).Begin();
    EXPECT_EQ(BlobAt(scene), "\0\xFF\x0A<\x80"s);
}

TEST(CustomDataBlob, ALongerFileGivesItsFirstBytes)
{
    TestScene scene(SceneOf(BlobText("Path='a.bin' BlobBufferSize='2'")));
    scene.WithFile("a.bin", "abcdef").Begin();
    EXPECT_EQ(BlobAt(scene), "ab");
}

TEST(CustomDataBlob, ARelativePathIsTakenFromTheScenesFolder)
{
    TestScene scene(SceneOf(BlobText("Path='sub/b \u00F6.bin' BlobBufferSize='1'", "below") +
                            BlobText("Path='sub/../c.bin' BlobBufferSize='1'", "around")));
    scene.WithFile("sub/b \u00F6.bin", "b").WithFile("c.bin", "c").Begin();
    EXPECT_EQ(BlobAt(scene, 0), "b");
    EXPECT_EQ(BlobAt(scene, 1), "c");
}

TEST(CustomDataBlob, AnAbsolutePathStandsAsItIs)
{
    TempFolder const elsewhere;
    elsewhere.Write("d.bin", "dd");
    TestScene scene(SceneOf(BlobText("Path='" + elsewhere.NarrowPathOf("d.bin") + "' BlobBufferSize='2'")));
    scene.Begin();
    EXPECT_EQ(BlobAt(scene), "dd");
}

TEST(CustomDataBlob, OfSizeZeroIsAValueWithoutBytesAndTouchesNoFile)
{
    TestScene scene(
        SceneOf(BlobText("Path='missing.bin' BlobBufferSize='0'", "a") + BlobText("BlobBufferSize='0'", "b")));
    scene.Begin();
    EXPECT_EQ(BlobAt(scene, 0), "");
    EXPECT_EQ(BlobAt(scene, 1), "");
}

TEST(CustomDataBlob, ABadSizeAddsAKeyWithoutAValueAndTouchesNoFile)
{
    for (char const* const size : {"BlobBufferSize='abc'", "BlobBufferSize=''", "BlobBufferSize='-1'",
                                   "BlobBufferSize='1.0'", "BlobBufferSize='99999999999999999999999'", ""})
    {
        TestScene scene(SceneOf(BlobText("Path='missing.bin' "s + size)));
        scene.Begin();
        IUniverse const* const universe = scene.Producer().LoadUniverse();
        ASSERT_EQ(universe->CustomDataCount(), 1u) << size;
        UTF8String key;
        Variant value;
        EXPECT_EQ(universe->CustomDataAt(0, key, value), kIsValueSpecified_No) << size;
        EXPECT_EQ(Text(key), "k") << size;
    }
}

TEST(CustomDataBlob, OfTwoWithOneKeyTheFirstStays)
{
    TestScene scene(SceneOf(BlobText("Path='a.bin' BlobBufferSize='1'") + BlobText("Path='b.bin' BlobBufferSize='1'")));
    scene.WithFile("a.bin", "a").WithFile("b.bin", "b").Begin();
    EXPECT_EQ(BlobAt(scene, 0), "a");
    EXPECT_EQ(BlobAt(scene, 1), "a");
}

TEST(CustomDataBlob, AMissingFileEndsTheReadingWithItsNameAndCode0)
{
    TestScene scene(SceneOf(BlobText("Path='missing.bin' BlobBufferSize='1'")));
    EXPECT_EQ(FileComplainedAbout(scene), scene.Folder() + "/missing.bin");
    EXPECT_EQ(scene.Producer().LoadUniverse(), nullptr);
    EXPECT_FALSE(scene.Has("p"));
}

TEST(CustomDataBlob, AMissingFileIsComplainedAboutForARepeatedKeyToo)
{
    TestScene scene(
        SceneOf("<CustomDataItem Type='5' Key='k' Value='v'/>" + BlobText("Path='missing.bin' BlobBufferSize='1'")));
    EXPECT_EQ(FileComplainedAbout(scene), scene.Folder() + "/missing.bin");
}

TEST(CustomDataBlob, AShortFileEndsTheReadingAtEveryLength)
{
    std::string const bytes = "abcdefgh";
    for (std::size_t length = 0; length < bytes.size(); ++length)
    {
        TestScene scene(SceneOf(BlobText("Path='a.bin' BlobBufferSize='8'")));
        scene.WithFile("a.bin", bytes.substr(0, length));
        EXPECT_EQ(FileComplainedAbout(scene), scene.Folder() + "/a.bin") << length;
    }
}

TEST(CustomDataBlob, AnImmenseSizeIsAShortFileAndTakesNoMemory)
{
    for (char const* const size : {"18446744073709551615", "9223372036854775807", "1000000000000"})
    {
        TestScene scene(SceneOf(BlobText("Path='a.bin' BlobBufferSize='"s + size + "'")));
        scene.WithFile("a.bin", "abc");
        EXPECT_EQ(FileComplainedAbout(scene), scene.Folder() + "/a.bin") << size;
    }
}

TEST(CustomDataBlob, AFolderInPlaceOfAFileCannotBeRead)
{
    TestScene scene(SceneOf(BlobText("Path='folder' BlobBufferSize='1'")));
    scene.WithFile("folder/inside", "x");
    EXPECT_EQ(FileComplainedAbout(scene), scene.Folder() + "/folder");
}

TEST(CustomDataBlob, AnEmptyOrMissingPathIsAFileWithoutAName)
{
    TestScene empty(SceneOf(BlobText("Path='' BlobBufferSize='1'")));
    EXPECT_EQ(FileComplainedAbout(empty), "");
    TestScene missing(SceneOf(BlobText("BlobBufferSize='1'")));
    EXPECT_EQ(FileComplainedAbout(missing), "");
}

TEST(CustomDataBlob, AProducerThatFailedOnABlobCanBeEndedAndDestroyed)
{
    TestScene scene(SceneOf(BlobText("Path='missing.bin' BlobBufferSize='1'")));
    EXPECT_NE(FileComplainedAbout(scene), "none");
    scene.Producer().EndProcess();
    EXPECT_EQ(scene.Producer().LoadUniverse(), nullptr);
}

}  // namespace KVR::Test
