// The image of a texture, which is read when a host asks for it.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <optional>

#include "tests/appearance/AppearanceScene.h"

namespace KVR::Test
{

namespace
{

using T = IMaterialTexture;

// A texture that names an image file of its own folder, by its full path.
class ImageScene
{
public:
    explicit ImageScene(std::string_view bytes, std::string_view moreAttributes = "")
        : m_path(m_folder.NarrowPathOf("image.bin")),
          m_scene("TempFilePath=\"" + m_path + "\" " + std::string(moreAttributes))
    {
        m_folder.Write("image.bin", bytes);
    }

    // The answer, and the buffer afterwards: eight dots before.
    std::pair<int, std::string> Ask(int size)
    {
        std::string buffer = "........";
        int const answer = m_scene.Texture().EmbeddedTextureImage(size, buffer.data());
        return {answer, buffer};
    }
    TempFolder& Folder() { return m_folder; }
    XMLProducer& Producer() { return m_scene.Producer(); }
    // What the file holds; nothing when it is gone.
    std::optional<std::string> FileContent() const
    {
        std::ifstream file(m_path, std::ios::binary);
        if (!file)
            return {};
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
    T const& Texture() { return m_scene.Texture(); }

private:
    TempFolder m_folder;
    std::string m_path;
    TextureScene m_scene;
};

using Image = std::pair<int, std::string>;

TEST(TextureImage, OfTheRightSizeIsReadWhole)
{
    EXPECT_EQ(ImageScene("image").Ask(5), Image(1, "image..."));
}

TEST(TextureImage, OfASmallerSizeIsReadFromItsBeginning)
{
    EXPECT_EQ(ImageScene("image").Ask(3), Image(1, "ima....."));
}

TEST(TextureImage, OfALargerSizeIsNotSpecifiedAndPartlyWritten)
{
    EXPECT_EQ(ImageScene("image").Ask(8), Image(0, "image..."));
}

TEST(TextureImage, OfNoBytesIsSpecified)
{
    EXPECT_EQ(ImageScene("image").Ask(0), Image(1, "........"));
    EXPECT_EQ(ImageScene("").Ask(0), Image(1, "........"));
}

TEST(TextureImage, ASizeBelowZeroOrNoBufferReadsNothing)
{
    ImageScene scene("image");
    EXPECT_EQ(scene.Ask(-1), Image(0, "........"));
    EXPECT_EQ(scene.Ask(-2147483647 - 1), Image(0, "........"));
    EXPECT_EQ(scene.Texture().EmbeddedTextureImage(4, nullptr), kIsValueSpecified_No);
}

TEST(TextureImage, AMissingFileIsSpecifiedAndLeavesTheBufferAlone)
{
    TextureScene scene(R"(TempFilePath="/no/such/file" EmbeddedTextureImageSize="4")");
    std::string buffer = "........";
    EXPECT_EQ(scene.Texture().EmbeddedTextureImage(4, buffer.data()), kIsValueSpecified_Yes);
    EXPECT_EQ(buffer, "........");
}

TEST(TextureImage, AnEmptyPathAFolderAndAFifoCountAsMissingFiles)
{
    TempFolder folder;
    folder.MakeFolder("folder");
    folder.MakeFifo("fifo");
    for (std::string const& path : {std::string(), folder.NarrowPathOf("folder"), folder.NarrowPathOf("fifo")})
    {
        TextureScene scene("TempFilePath=\"" + path + "\"");
        std::string buffer = "........";
        EXPECT_EQ(scene.Texture().EmbeddedTextureImage(4, buffer.data()), kIsValueSpecified_Yes) << path;
        EXPECT_EQ(buffer, "........") << path;
    }
}

TEST(TextureImage, WithoutAPathIsNotSpecifiedWhateverItsSize)
{
    TextureScene scene(R"(EmbeddedTextureImageSize="4" EmbeddedTextureImageType="2")");
    std::string buffer = "........";
    EXPECT_EQ(scene.Texture().EmbeddedTextureImage(4, buffer.data()), kIsValueSpecified_No);
    EXPECT_EQ(buffer, "........");
    EXPECT_EQ(AnswerOf(scene.Texture(), &T::EmbeddedTextureImageSize), 4);
}

TEST(TextureImage, APathIsNotTakenFromTheScenesFolder)
{
    TextureScene scene(R"(TempFilePath="image-of-this-test.bin")");
    scene.WithFile("image-of-this-test.bin", "image");
    std::string buffer = "........";
    EXPECT_EQ(scene.Texture().EmbeddedTextureImage(5, buffer.data()), kIsValueSpecified_Yes);
    EXPECT_EQ(buffer, "........") << "the file beside the scene is not the one that is named";
}

TEST(TextureImage, IsReadAnewForEachCallAndItsFileIsLeftAlone)
{
    ImageScene scene("first");
    EXPECT_EQ(scene.Ask(5), Image(1, "first..."));
    scene.Folder().Write("image.bin", "again");
    EXPECT_EQ(scene.Ask(5), Image(1, "again..."));
}

TEST(TextureImage, ItsFileOutlivesTheTextureAndTheEnd)
{
    ImageScene disposed("image");
    EXPECT_EQ(disposed.Ask(5), Image(1, "image..."));
    disposed.Producer().Dispose("t");
    ASSERT_EQ(disposed.Producer().Load("t"), nullptr);
    EXPECT_EQ(disposed.FileContent(), "image");
    disposed.Producer().EndProcess();
    EXPECT_EQ(disposed.FileContent(), "image");
    ImageScene ended("image");
    ended.Producer().EndProcess();
    ASSERT_EQ(ended.Producer().Load("t"), nullptr);
    EXPECT_EQ(ended.FileContent(), "image");
}

TEST(TextureImage, SizeAndTypeOnlyRepeatTheAttributes)
{
    ImageScene scene("image", R"(EmbeddedTextureImageSize="99" EmbeddedTextureImageType="-3")");
    EXPECT_EQ(AnswerOf(scene.Texture(), &T::EmbeddedTextureImageSize), 99);
    EXPECT_EQ(AnswerOf(scene.Texture(), &T::EmbeddedTextureImageType), -3);
    EXPECT_EQ(scene.Ask(5), Image(1, "image..."));
}

}  // namespace

}  // namespace KVR::Test
