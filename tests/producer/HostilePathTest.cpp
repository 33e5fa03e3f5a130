// Where a scene and its side files may lie, and what they may be called.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "producer/SideFileIndex.h"
#include "producer/XMLProducerImpl.h"
#include "tests/support/ByteBuilder.h"
#include "tests/support/FullScene.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

constexpr char const* kScene = "<S><IPart ID='p'/></S>";

// Blanks, letters of several scripts, and characters that mean something in addresses and shells.
constexpr char const* kNames[] = {"with blanks .xml",
                                  "Gr\xC3\xB6\xC3\x9F"
                                  "e \xE6\xA8\xA1\xE5\x9E\x8B \xF0\x9F\x98\x80.xml",
                                  "100%25%.xml",
                                  "#a?b=c&d.xml",
                                  "a'b\"c`$d;e.xml",
                                  "-.xml",
                                  "a\\b.xml",
                                  "a:b.xml",
                                  "http:x.xml",
                                  "no extension",
                                  ".hidden",
                                  "tab\there.xml"};

// The text as the value of an attribute.
std::string Quoted(std::string const& text)
{
    std::string quoted = Replaced(text, "&", "&amp;");
    quoted = Replaced(quoted, "\"", "&quot;");
    return Replaced(quoted, "\t", "&#9;");
}

// What reached the index, read by a scene "dir/scene.xml" whose side files are named by the path.
class SidePath : public testing::Test
{
protected:
    void File(std::string const& name, std::string const& bytes) { m_folder.Write(name, bytes); }
    std::string Folder() const { return m_folder.Path(); }
    void MakeFifo(std::string const& name) { m_folder.MakeFifo(name); }

    bool FindsAssets(std::string const& path)
    {
        Scan("<VitreolMaterialInfo GenerateSerializedVitreol='True' Path=\"" + Quoted(path) + "\"/>");
        return m_producer->sideFileIndex->vitreolAssets.contains("s");
    }
    bool FindsPersistentIds(std::string const& path)
    {
        Scan("<SubObjectPersistentIdInfo GenerateSubObjectPersistentId='True' Path=\"" + Quoted(path) + "\"/>");
        return m_producer->sideFileIndex->subObjectPersistentIds.contains("o");
    }
    bool FindsBlob(std::string const& path)
    {
        try
        {
            Scan("<IUniverse><CustomData><CustomDataItem Type='8' Key='k' BlobBufferSize='4' Path=\"" + Quoted(path) +
                 "\"/></CustomData></IUniverse>");
        }
        catch (FileException const&)
        {
            return false;
        }
        UTF8String key;
        Variant value;
        return m_producer->LoadUniverse()->CustomDataAt(0, key, value) == kIsValueSpecified_Yes;
    }

    std::string const m_assets =
        ByteBuilder().Raw("KVRASSET").U64(1).U64(1).String("s").String("kind").String("asset").Bytes();
    std::string const m_ids =
        "<I><SubObjectPersistentIds ID='o'><SubObject DataId='d' PersistentId='p'/>"
        "</SubObjectPersistentIds></I>";

private:
    void Scan(std::string const& section)
    {
        m_producer =
            std::make_unique<XMLProducerImpl>(m_folder.Write("dir/scene.xml", "<S>" + section + "</S>"), nullptr);
        m_producer->BeginProcess(nullptr);
    }

    TempFolder m_folder;
    std::unique_ptr<XMLProducerImpl> m_producer;
};

std::string RefusedName(UTF16String const& path)
{
    XMLProducer producer(path, nullptr);
    bool has = true;
    EXPECT_EQ(producer.QueryFile()->HasAssemblyStructure(has), kIsValueSpecified_Yes);
    EXPECT_FALSE(has);
    try
    {
        producer.BeginProcess(IdSet(), nullptr, nullptr);
    }
    catch (FileException const& exception)
    {
        EXPECT_EQ(exception.ErrorCode(), 0);
        return Text(exception.FileName());
    }
    return "no refusal";
}

}  // namespace

TEST(ScenePath, MayHaveAnyCharacters)
{
    for (char const* const name : kNames)
    {
        TestScene scene(kScene, name);
        EXPECT_TRUE(Opens(scene)) << name;
        EXPECT_TRUE(scene.Has("p")) << name;
        TestScene inFolder(kScene, std::string(name) + "/scene.xml");
        EXPECT_TRUE(Opens(inFolder)) << name;
    }
}

TEST(ScenePath, MayBeRelativeAndHaveDots)
{
    TempFolder const folder;
    folder.MakeFolder("a/b");
    folder.Write("a/scene.xml", kScene);
    XMLProducer dots(folder.PathOf("a/b/.././b/../scene.xml"), nullptr);
    EXPECT_TRUE(Opens(dots));
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path(folder.NarrowPathOf("a/b"));
    XMLProducer relative(Wide("../scene.xml"), nullptr);
    EXPECT_TRUE(Opens(relative));
    EXPECT_EQ(RefusedName(Wide("none.xml")), "none.xml") << "named as the host named it";
    std::filesystem::current_path(before);
}

TEST(ScenePath, ThatNamesNoRegularFileIsRefused)
{
    TempFolder const folder;
    EXPECT_EQ(RefusedName(folder.MakeFolder("folder.xml")), folder.NarrowPathOf("folder.xml"));
    EXPECT_EQ(RefusedName(folder.MakeFifo("fifo.xml")), folder.NarrowPathOf("fifo.xml")) << "nobody waits for a writer";
    EXPECT_EQ(RefusedName(folder.PathOf("missing.xml")), folder.NarrowPathOf("missing.xml"));
    EXPECT_EQ(RefusedName(folder.PathOf("missing/scene.xml")), folder.NarrowPathOf("missing/scene.xml"));
    EXPECT_EQ(RefusedName(folder.Write("empty.xml", "")), folder.NarrowPathOf("empty.xml"));
    EXPECT_EQ(RefusedName(folder.PathOf("empty.xml/scene.xml")), folder.NarrowPathOf("empty.xml/scene.xml"));
    EXPECT_EQ(RefusedName(Wide("/dev/null")), "/dev/null");
    EXPECT_EQ(RefusedName(Wide("/dev/zero")), "/dev/zero");
    EXPECT_EQ(RefusedName(UTF16String()), "");
    EXPECT_EQ(RefusedName(Wide("http://127.0.0.1:1/scene.xml")), "http://127.0.0.1:1/scene.xml")
        << "a path is a path and no address";
    std::string const long_(100000, 'x');
    EXPECT_EQ(RefusedName(Wide(long_.c_str())), long_);
}

TEST(ScenePath, MayBeALinkToARegularFile)
{
    TempFolder const folder;
    folder.Write("scene.xml", kScene);
    std::filesystem::create_symlink("scene.xml", folder.NarrowPathOf("link.xml"));
    XMLProducer producer(folder.PathOf("link.xml"), nullptr);
    EXPECT_TRUE(Opens(producer));
    std::filesystem::create_symlink("loop.xml", folder.NarrowPathOf("loop.xml"));
    EXPECT_EQ(RefusedName(folder.PathOf("loop.xml")), folder.NarrowPathOf("loop.xml"));
}

TEST_F(SidePath, IsTakenFromTheScenesFolderWhateverItsCharacters)
{
    for (char const* const name : kNames)
    {
        File(std::string("dir/") + name, m_assets);
        EXPECT_TRUE(FindsAssets(name)) << name;
        EXPECT_TRUE(FindsBlob(name)) << name;
        File(std::string("dir/") + name, m_ids);
        EXPECT_TRUE(FindsPersistentIds(name)) << name;
    }
}

TEST_F(SidePath, MayLeadUpAndThroughFolders)
{
    File("up.bin", m_assets);
    File("up.xml", m_ids);
    File("dir/sub/down.bin", m_assets);
    File("dir/sub/down.xml", m_ids);
    for (char const* const prefix : {"../", "./.././", "sub/../../", "../dir/../"})
    {
        EXPECT_TRUE(FindsAssets(std::string(prefix) + "up.bin")) << prefix;
        EXPECT_TRUE(FindsBlob(std::string(prefix) + "up.bin")) << prefix;
        EXPECT_TRUE(FindsPersistentIds(std::string(prefix) + "up.xml")) << prefix;
    }
    EXPECT_TRUE(FindsAssets("sub/down.bin"));
    EXPECT_TRUE(FindsBlob("sub//down.bin"));
    EXPECT_TRUE(FindsPersistentIds("sub/down.xml"));
}

TEST_F(SidePath, ThatIsAbsoluteStandsForAssetsAndBlobsAndIsAppendedForPersistentIds)
{
    File("elsewhere.bin", m_assets);
    File("elsewhere.xml", m_ids);
    EXPECT_TRUE(FindsAssets(Folder() + "/elsewhere.bin"));
    EXPECT_TRUE(FindsBlob(Folder() + "/elsewhere.bin"));
    EXPECT_FALSE(FindsPersistentIds(Folder() + "/elsewhere.xml"));
    File("dir/here.xml", m_ids);
    EXPECT_TRUE(FindsPersistentIds("/here.xml")) << "appended to the scene's folder";
    File("dir/here.bin", m_assets);
    EXPECT_FALSE(FindsAssets("/here.bin"));
    EXPECT_FALSE(FindsBlob("/here.bin"));
}

TEST_F(SidePath, ThatIsEmptyOrBlankNamesNoFile)
{
    for (char const* const path : {"", " ", ".", "..", "/", "//", "./", "sub"})
    {
        File("dir/sub/x", "");
        EXPECT_FALSE(FindsAssets(path)) << path;
        EXPECT_FALSE(FindsBlob(path)) << path;
        EXPECT_FALSE(FindsPersistentIds(path)) << path;
    }
}

TEST_F(SidePath, ThatNamesAFifoOrADeviceCountsAsOneThatCannotBeOpened)
{
    File("dir/x", "");
    MakeFifo("dir/fifo");
    for (std::string const& path : {std::string("fifo"), std::string("/dev/zero"), std::string("/dev/null"),
                                    std::string("../../../../../../../../dev/zero")})
    {
        EXPECT_FALSE(FindsAssets(path)) << path;
        EXPECT_FALSE(FindsBlob(path)) << path;
        EXPECT_FALSE(FindsPersistentIds(path)) << path;
    }
}

TEST_F(SidePath, OfASceneWithoutAFolderIsTakenFromTheCurrentOne)
{
    File("dir/assets.bin", m_assets);
    File("dir/scene.xml", "<S><VitreolMaterialInfo GenerateSerializedVitreol='True' Path='assets.bin'/></S>");
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path(Folder() + "/dir");
    XMLProducerImpl producer(Wide("scene.xml"), nullptr);
    producer.BeginProcess(nullptr);
    std::filesystem::current_path(before);
    EXPECT_TRUE(producer.sideFileIndex->vitreolAssets.contains("s"));
}

}  // namespace KVR::Test
