#include "structure/FilePropertiesHolder.h"

#include <gtest/gtest.h>

#include "tests/structure/Answers.h"
#include "tests/support/ParsedDocument.h"

namespace KVR::Test
{

namespace
{

std::unique_ptr<ParsedDocument> Titled(std::string const& title)
{
    return std::make_unique<ParsedDocument>("<FileProperties><Title>" + title + "</Title></FileProperties>");
}

}  // namespace

TEST(FilePropertiesHolder, IsEmptyAtFirst)
{
    FilePropertiesHolder const holder;
    EXPECT_EQ(holder.Get(), nullptr);
}

TEST(FilePropertiesHolder, ServesTheLastAndKeepsThePointersOfAllBeforeIt)
{
    FilePropertiesHolder holder;
    std::vector<FileProperties const*> held;
    for (int i = 0; i < 50; ++i)
    {
        holder.Read(Titled(std::to_string(i))->Root());
        held.push_back(holder.Get());
    }
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(TextOf(*held[static_cast<std::size_t>(i)], &FileProperties::Title), std::to_string(i));
    EXPECT_EQ(holder.Get(), held.back());
}

TEST(FilePropertiesHolder, TheTextsOutliveTheElementTheyCameFrom)
{
    FilePropertiesHolder holder;
    holder.Read(Titled("kept")->Root());
    EXPECT_EQ(TextOf(*holder.Get(), &FileProperties::Title), "kept");
}

TEST(FilePropertiesHolder, EveryOwnerAnswersTheSamePointerUntilTheEnd)
{
    std::string const twice =
        "<FileProperties><Title>1</Title></FileProperties>"
        "<FileProperties><Title>2</Title></FileProperties>";
    TestScene scene(InScene("<IFile ID='f'>" + twice + "</IFile><IAssembly ID='a'>" + twice +
                            "</IAssembly><IPart ID='p'>" + twice + "</IPart>"));
    scene.Begin();
    FileProperties* const ofFile = scene.Get<IFile>("f").FileProperties();
    FileProperties* const ofAssembly = scene.Get<IAssembly>("a").FileProperties();
    FileProperties* const ofPart = scene.Get<IPart>("p").FileProperties();
    for (FileProperties const* const properties : {ofFile, ofAssembly, ofPart})
    {
        ASSERT_NE(properties, nullptr);
        EXPECT_EQ(TextOf(*properties, &FileProperties::Title), "2");
    }
    scene.Producer().Dispose("p");
    EXPECT_EQ(scene.Get<IFile>("f").FileProperties(), ofFile);
    EXPECT_EQ(scene.Get<IAssembly>("a").FileProperties(), ofAssembly);
    EXPECT_EQ(TextOf(*ofFile, &FileProperties::Title), "2");
}

}  // namespace KVR::Test
