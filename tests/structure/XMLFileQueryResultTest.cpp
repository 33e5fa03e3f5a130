#include "structure/XMLFileQueryResult.h"

#include <gtest/gtest.h>

#include "tests/structure/Answers.h"

namespace KVR::Test
{

TEST(XMLFileQueryResult, UnfilledItSupportsTheFileAndHasNoAssemblyStructure)
{
    XMLFileQueryResult const result;
    EXPECT_EQ(AnswerOf(result, &FileQueryResult::SupportsFile), true);
    EXPECT_EQ(AnswerOf(result, &FileQueryResult::HasAssemblyStructure), false);
}

TEST(XMLFileQueryResult, ItWritesItsAnswersOverWhatTheOutputsHeld)
{
    XMLFileQueryResult const result;
    bool supports = false;
    bool has = true;
    EXPECT_EQ(result.SupportsFile(supports), kIsValueSpecified_Yes);
    EXPECT_EQ(result.HasAssemblyStructure(has), kIsValueSpecified_Yes);
    EXPECT_TRUE(supports);
    EXPECT_FALSE(has);
}

TEST(XMLFileQueryResult, ItSpecifiesNoVersion)
{
    XMLFileQueryResult const result;
    UTF16String version(L"before");
    bool isFuture = true;
    EXPECT_EQ(result.FileVersion(version), kIsValueSpecified_No);
    EXPECT_EQ(result.FutureFileVersion(isFuture, version), kIsValueSpecified_No);
    EXPECT_EQ(Text(version), "before");
    EXPECT_TRUE(isFuture);
}

TEST(XMLFileQueryResult, FilledFromNoParserItStaysAsItWas)
{
    XMLFileQueryResult result;
    result.Fill(nullptr);
    EXPECT_EQ(AnswerOf(result, &FileQueryResult::HasAssemblyStructure), false);
}

TEST(XMLFileQueryResult, AProducerAnswersTheStructureOfItsDocument)
{
    TestScene assembly(InScene("<IFile ID='f'><ChildSet><Child ID='a' Type='IAssembly'/></ChildSet></IFile>"));
    EXPECT_EQ(AnswerOf(*assembly.Producer().QueryFile(), &FileQueryResult::HasAssemblyStructure), true);
    TestScene part(InScene("<IFile ID='f'><ChildSet><Child ID='a' Type='IPart'/></ChildSet></IFile>"));
    EXPECT_EQ(AnswerOf(*part.Producer().QueryFile(), &FileQueryResult::HasAssemblyStructure), false);
}

TEST(XMLFileQueryResult, AProducerOfADocumentThatIsNoneSupportsItAllTheSame)
{
    TestScene scene("<Scene>");
    FileQueryResult const* const result = scene.Producer().QueryFile();
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(AnswerOf(*result, &FileQueryResult::SupportsFile), true);
    EXPECT_EQ(AnswerOf(*result, &FileQueryResult::HasAssemblyStructure), false);
    EXPECT_EQ(scene.Producer().QueryFile(), result);
}

}  // namespace KVR::Test
