#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "structure/XMLFile.h"
#include "tests/structure/Answers.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::ThrowsMessage;

std::string FileText(std::string const& attributes, std::string const& content = "")
{
    return InScene("<IFile ID='f' " + attributes + ">" + content + "</IFile>");
}

std::string FileWith(std::string const& content)
{
    return FileText("Label=''", content);
}

// A scene with a file "f", read.
class FileScene
{
public:
    explicit FileScene(std::string const& text) : m_scene(text) { m_scene.Begin(); }
    IFile& operator*() { return m_scene.Get<IFile>("f"); }
    IFile* operator->() { return &**this; }
    TestScene& Scene() { return m_scene; }

private:
    TestScene m_scene;
};

std::string RefFileOf(IFile const& file, unsigned long long index)
{
    UTF8String id;
    UTF16String path;
    if (file.RefFileAt(index, id, path) != kIsValueSpecified_Yes)
        return "none";
    return Text(id) + " at " + Text(path);
}

class VisitedFile : public ObjectVisitor
{
public:
    void Visit(IFile* object) override { file = object; }
    IFile* file = nullptr;
};

}  // namespace

TEST(XMLFile, WithItsIdAloneEverythingElseIsEmptyOrNotSpecified)
{
    FileScene file(InScene("<IFile ID='f'/>"));
    EXPECT_EQ(Text(file->Id()), "f");
    EXPECT_EQ(Text(file->Label()), "");
    EXPECT_EQ(file->FileProperties(), nullptr);
    EXPECT_EQ(file->ChildCount(), 0u);
    EXPECT_EQ(TextOf(*file, &IFile::FileFullPath), std::nullopt);
    EXPECT_FALSE(AnswerOf(*file, &IFile::LastModificationTime));
    EXPECT_EQ(file->RefFileCount(), 0u);
    EXPECT_EQ(UnitsOf(*file), UnitAnswers());
    EXPECT_EQ(ChangeKeyOf(*file), std::nullopt);
    EXPECT_EQ(TextOf(*file, &IFile::VersionPersistentId), std::nullopt);
    EXPECT_FALSE(ExtensionOf(*file, ""));
    EXPECT_FALSE(file->IsThreadSafe());
    for (IdSet const& set : {file->PropertyIds(), file->StyleSet(), file->TextureSet(), file->LayerSet(),
                             file->GroupSet(), file->LodSet(), file->CameraSet(), file->ViewSet()})
        EXPECT_TRUE(set.IsEmpty());
}

TEST(XMLFile, AnExtensionDataChangeKeyIsNeverSpecified)
{
    FileScene file(FileWith("<ExtensionData TypeId='t'/><ChangeKey>k</ChangeKey>"));
    UTF8String key("before");
    EXPECT_EQ(file->ExtensionDataChangeKeyByTypeId("t", kSnapshotVersion_Current, key), kIsValueSpecified_No);
    EXPECT_EQ(Text(key), "before");
}

TEST(XMLFile, EveryAttributeIsRead)
{
    FileScene file(
        FileText("Label='L \xC3\xB6' FileFullPath='C:\\models\\\xC3\xB6 a.asm' IsRoot='1' "
                 "VersionPersistentId='v1' LastModificationTime='2024-03-01T12:30:00'"));
    EXPECT_EQ(Text(file->Label()), "L \xC3\xB6");
    EXPECT_EQ(TextOf(*file, &IFile::FileFullPath), "C:\\models\\\xC3\xB6 a.asm");
    EXPECT_TRUE(file->IsRoot());
    EXPECT_EQ(TextOf(*file, &IFile::VersionPersistentId), "v1");
    auto const time = AnswerOf(*file, &IFile::LastModificationTime);
    ASSERT_TRUE(time);
    EXPECT_EQ(time->Value().tm_year, 124);
    EXPECT_EQ(time->Value().tm_mon, 2);
    EXPECT_EQ(time->Value().tm_mday, 1);
    EXPECT_EQ(time->Value().tm_hour, 12);
    EXPECT_EQ(time->Value().tm_min, 30);
}

TEST(XMLFile, NamesOfAttributesAreExact)
{
    // A lone file would be the root in any case.
    FileScene file(
        InScene("<IFile ID='f' label='L' fileFullPath='p' FILEFULLPATH='p' isroot='1' versionPersistentId='v' "
                "lastModificationTime='2024-03-01T12:30:00'/><IFile ID='g'/>"));
    EXPECT_EQ(Text(file->Label()), "");
    EXPECT_FALSE(file->IsRoot());
    EXPECT_EQ(TextOf(*file, &IFile::FileFullPath), std::nullopt);
    EXPECT_EQ(TextOf(*file, &IFile::VersionPersistentId), std::nullopt);
    EXPECT_FALSE(AnswerOf(*file, &IFile::LastModificationTime));
}

TEST(XMLFile, AnEmptyFullPathOrVersionPersistentIdIsNotSpecifiedAndLeavesTheOutputAlone)
{
    FileScene file(FileText("FileFullPath='' VersionPersistentId=''"));
    UTF16String path(L"before");
    EXPECT_EQ(file->FileFullPath(path), kIsValueSpecified_No);
    EXPECT_EQ(Text(path), "before");
    UTF8String id("before");
    EXPECT_EQ(file->VersionPersistentId(id), kIsValueSpecified_No);
    EXPECT_EQ(Text(id), "before");
}

TEST(XMLFile, AModificationTimeThatIsNoneIsNotSpecifiedAndLeavesTheOutputAlone)
{
    Time before;
    ASSERT_TRUE(Time::FromString("2001-02-03", before));
    for (char const* const text : {"", "now", "2024-02-30T00:00:00", "2024-03-01T12:30:00 CET", "1709294400"})
    {
        FileScene file(FileText(std::string("LastModificationTime='") + text + "'"));
        Time time = before;
        EXPECT_EQ(file->LastModificationTime(time), kIsValueSpecified_No) << text;
        EXPECT_EQ(time.Value().tm_year, 101) << text;
    }
}

// Of two files neither becomes the root for being alone.
TEST(XMLFile, IsRootIsTrueForOneAndForTheWordTrueInAnyCase)
{
    for (auto const& [text, isRoot] : std::initializer_list<std::pair<char const*, bool>>{{"1", true},
                                                                                          {"true", true},
                                                                                          {"True", true},
                                                                                          {"TRUE", true},
                                                                                          {"0", false},
                                                                                          {"", false},
                                                                                          {" 1", false},
                                                                                          {"01", false},
                                                                                          {"2", false},
                                                                                          {"yes", false},
                                                                                          {"truee", false}})
    {
        TestScene scene(InScene("<IFile ID='f' IsRoot='" + std::string(text) + "'/><IFile ID='g'/>"));
        scene.Begin();
        EXPECT_EQ(scene.Get<IFile>("f").IsRoot(), isRoot) << text;
        EXPECT_FALSE(scene.Get<IFile>("g").IsRoot()) << text;
    }
}

TEST(XMLFile, ALoneFileIsTheRootWhateverItSays)
{
    FileScene file(FileText("IsRoot='0'"));
    EXPECT_TRUE(file->IsRoot());
    EXPECT_EQ(Text(file.Scene().Producer().RootObjectId().Id()), "f");
}

TEST(XMLFile, AllThreeUnitsOfAUnitElementGiveTheDisplayLengthUnitAlone)
{
    FileScene file(
        FileWith("<Unit LengthUnit='kUnitType_Inch' DisplayAngleUnit='kUnitType_Degree' "
                 "DisplayLengthUnit='kUnitType_Foot'/>"));
    EXPECT_EQ(UnitsOf(*file), (UnitAnswers{std::nullopt, std::nullopt, kUnitType_Foot}));
}

TEST(XMLFile, AUnitElementWithoutAGoodDisplayLengthUnitSpecifiesAnUnknownOne)
{
    for (char const* const unit : {"<Unit LengthUnit='kUnitType_Inch'/>", "<Unit DisplayLengthUnit='inch'/>",
                                   "<Unit DisplayLengthUnit='kUnitType_Foot'/><Unit/>"})
    {
        FileScene file(FileWith(unit));
        EXPECT_EQ(UnitsOf(*file), (UnitAnswers{std::nullopt, std::nullopt, kUnitType_Unknown})) << unit;
    }
}

TEST(XMLFile, TheOlderFormOfUnitsAndAUnitInAnotherCaseAreSkipped)
{
    FileScene file(
        FileWith("<UnitAndTolerance LengthUnit='kUnitType_Inch' DisplayLengthUnit='kUnitType_Inch'/>"
                 "<unit DisplayLengthUnit='kUnitType_Inch'/>"));
    EXPECT_EQ(UnitsOf(*file), UnitAnswers());
}

TEST(XMLFile, SetDisplayLengthUnitReplacesWhatWasRead)
{
    FileScene file(FileWith("<Unit DisplayLengthUnit='kUnitType_Foot'/>"));
    file->SetDisplayLengthUnit(kUnitType_Mile);
    EXPECT_EQ(UnitsOf(*file), (UnitAnswers{std::nullopt, std::nullopt, kUnitType_Mile}));
}

TEST(XMLFile, AChangeKeyIsItsElementsTextWhateverTheVersion)
{
    FileScene file(FileWith("<ChangeKey>first</ChangeKey><ChangeKey> se<b>co</b>nd </ChangeKey>"));
    EXPECT_EQ(ChangeKeyOf(*file), " second ");
    EXPECT_EQ(ChangeKeyOf(*file, static_cast<SnapshotVersionEnum>(7)), " second ");
}

TEST(XMLFile, AnEmptyChangeKeyIsSpecified)
{
    FileScene file(FileWith("<ChangeKey/>"));
    EXPECT_EQ(ChangeKeyOf(*file), "");
}

TEST(XMLFile, EveryExtensionDataElementIsAddedAndTheFirstOfATypeIsAnswered)
{
    FileScene file(
        FileWith("<ExtensionData TypeId='a' Content='1'/><ExtensionData TypeId='b' Content='2'/>"
                 "<ExtensionData TypeId='a' Content='3'/>"));
    EXPECT_EQ(ExtensionTextOf(*file, "a"), "1");
    EXPECT_EQ(ExtensionTextOf(*file, "b"), "2");
    EXPECT_EQ(ExtensionTextOf(*file, "c"), std::nullopt);
}

TEST(XMLFile, ExtensionDataWithoutATypeIsAddedUnderTheEmptyType)
{
    FileScene file(FileWith("<ExtensionData Content='1'/>"));
    EXPECT_EQ(ExtensionTextOf(*file, ""), "1");
}

TEST(XMLFile, OfTwoFilePropertiesTheLastAreServed)
{
    FileScene file(
        FileWith("<FileProperties><Title>first</Title><Author>a</Author></FileProperties>"
                 "<fileProperties><Title>other</Title></fileProperties>"
                 "<FileProperties><Title>last</Title></FileProperties>"));
    ASSERT_NE(file->FileProperties(), nullptr);
    EXPECT_EQ(TextOf(*file->FileProperties(), &FileProperties::Title), "last");
    EXPECT_EQ(TextOf(*file->FileProperties(), &FileProperties::Author), std::nullopt);
}

TEST(XMLFile, ChildrenOfOtherNamesAreSkipped)
{
    FileScene file(
        FileWith("text<childSet><Child ID='x'/></childSet><Styles><StyleRef ID='s'/></Styles>"
                 "<changekey>k</changekey><extensiondata TypeId='t'/><Title>t</Title>"
                 "<refFiles><RefFile RefId='r' RefPath='p'/></refFiles><?ChildSet ID='x'?>"));
    EXPECT_EQ(file->ChildCount(), 0u);
    EXPECT_EQ(ChangeKeyOf(*file), std::nullopt);
    EXPECT_FALSE(ExtensionOf(*file, "t"));
    EXPECT_EQ(file->RefFileCount(), 0u);
    EXPECT_EQ(file->FileProperties(), nullptr);
}

TEST(XMLFile, RefFilesAreListedInDocumentOrderWithRepeats)
{
    FileScene file(
        FileWith("<RefFiles><RefFile RefId='b' RefPath='p/1'/>text<Other RefId='a' RefPath='\xC3\xB6'/>"
                 "<RefFile RefId='b' RefPath='p/1'/></RefFiles>"
                 "<RefFiles><RefFile RefId='c' RefPath='p/2'/></RefFiles>"));
    ASSERT_EQ(file->RefFileCount(), 4u);
    EXPECT_EQ(RefFileOf(*file, 0), "b at p/1");
    EXPECT_EQ(RefFileOf(*file, 1), "a at \xC3\xB6");
    EXPECT_EQ(RefFileOf(*file, 2), "b at p/1");
    EXPECT_EQ(RefFileOf(*file, 3), "c at p/2");
}

TEST(XMLFile, ARefFileWithOneOfItsAttributesIsSkippedAndAnEmptyOneCounts)
{
    FileScene file(
        FileWith("<RefFiles><RefFile RefId='a'/><RefFile RefPath='p'/><RefFile/>"
                 "<RefFile refId='a' RefPath='p'/><RefFile RefId='' RefPath=''/></RefFiles>"));
    ASSERT_EQ(file->RefFileCount(), 1u);
    EXPECT_EQ(RefFileOf(*file, 0), " at ");
}

TEST(XMLFile, ARefFileOfAnEmptyListOrABadIndexIsNotSpecifiedAndLeavesTheOutputsAlone)
{
    FileScene empty(FileWith("<RefFiles/>"));
    FileScene one(FileWith("<RefFiles><RefFile RefId='a' RefPath='p'/></RefFiles>"));
    UTF8String id("before");
    UTF16String path(L"before");
    EXPECT_EQ(empty->RefFileAt(0, id, path), kIsValueSpecified_No);
    EXPECT_EQ(empty->RefFileAt(~0ull, id, path), kIsValueSpecified_No);
    EXPECT_EQ(one->RefFileAt(1, id, path), kIsValueSpecified_No);
    EXPECT_EQ(Text(id), "before");
    EXPECT_EQ(Text(path), "before");
}

TEST(XMLFile, AChildAtTheCountThrowsOutOfRange)
{
    FileScene empty(FileWith(""));
    EXPECT_THAT([&] { empty->ChildAt(0); }, ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"));
    FileScene one(FileWith("<ChildSet><Child ID='x'/></ChildSet>"));
    ASSERT_EQ(one->ChildCount(), 1u);
    EXPECT_THAT([&] { one->ChildAt(1); }, ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"));
}

TEST(XMLFile, AChildBeyondTheCountThrowsItsOwnMessage)
{
    FileScene empty(FileWith(""));
    FileScene one(FileWith("<ChildSet><Child ID='x'/></ChildSet>"));
    for (unsigned long long const index : {2ull, 3ull, ~0ull})
    {
        EXPECT_THAT([&] { one->ChildAt(index); },
                    ThrowsMessage<GeneralException>("Invalid index to child of XMLFile."));
        EXPECT_THAT([&] { empty->ChildAt(index - 1); },
                    ThrowsMessage<GeneralException>("Invalid index to child of XMLFile."));
    }
}

TEST(XMLFile, VisitsAsAFile)
{
    FileScene file(FileWith(""));
    VisitedFile visitor;
    file->AcceptVisitor(&visitor);
    EXPECT_EQ(visitor.file, &*file);
    file->AcceptVisitor(nullptr);
}

TEST(XMLFile, ANodeThatIsNoElementIsNotRead)
{
    XMLFile file(UTF16String(), nullptr);
    EXPECT_FALSE(file.ReadFromXML(nullptr));
    EXPECT_EQ(file.ChildCount(), 0u);
}

}  // namespace KVR::Test
