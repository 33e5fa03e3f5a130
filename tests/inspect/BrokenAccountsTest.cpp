// Accounts are no tautology: a reader that tells one record too few, or one too many, makes them disagree.

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/api/IdSet.h"
#include "inspect/Accounting.h"
#include "inspect/SceneCheck.h"
#include "inspect/document/DocumentRules.h"
#include "inspect/document/DocumentTally.h"
#include "inspect/document/ReadRecord.h"
#include "producer/XMLProducer.h"
#include "tests/inspect/document/CheckedText.h"

namespace KVR::Test
{

namespace
{

// Takes down the reading of a scene, all but one thing.
class BrokenRecord final : public ReadRecord
{
public:
    enum class Break
    {
        kNone,
        kForgetsARecord,
        kTellsARecordTwice,
        kForgetsAProperty,
        kTellsAPropertyTwice
    };

    BrokenRecord(Break broken, std::string_view kind) : m_break(broken), m_kind(kind) {}

    void RecordRead(StoreRecord const& record) override
    {
        bool const isIt = record.kind == m_kind && m_count++ == 0;
        if (!isIt || m_break != Break::kForgetsARecord)
            ReadRecord::RecordRead(record);
        if (isIt && m_break == Break::kTellsARecordTwice)
            ReadRecord::RecordRead(record);
    }
    void PropertyMet(PropertyTexts const& texts, bool isMade) override
    {
        bool const isIt = m_properties++ == 0;
        if (!isIt || m_break != Break::kForgetsAProperty)
            ReadRecord::PropertyMet(texts, isMade);
        if (isIt && m_break == Break::kTellsAPropertyTwice)
            ReadRecord::PropertyMet(texts, isMade);
    }
    void PropertyHanded(bool isFound, bool isHeld) override
    {
        if (!Properties().empty())
            ReadRecord::PropertyHanded(isFound, isHeld);
    }

private:
    Break m_break;
    std::string m_kind;
    int m_count = 0;
    int m_properties = 0;
};

using Break = BrokenRecord::Break;

// The files whose accounts disagree.
std::vector<std::string> Disagreeing(std::string const& path, BrokenRecord& record)
{
    CheckOptions options;
    options.account = true;
    XMLProducer producer(UTF16String(UTF8String(path)), nullptr);
    {
        ReadObserverScope const observed(record);
        producer.BeginProcess(IdSet(), nullptr, nullptr);
    }
    SceneCheck check(path, options, producer, record);
    DocumentTally const tally = CheckDocument(check);
    std::vector<std::string> files;
    for (Account const& account : MakeAccounts(check, tally))
    {
        if (!account.Agrees())
            files.push_back(account.file.substr(account.file.rfind('/') + 1));
    }
    return files;
}

std::vector<std::string> DisagreeingInExample(Break broken, std::string_view kind)
{
    BrokenRecord record(broken, kind);
    return Disagreeing(std::string(KVR_EXAMPLES_DIR) + "/complete/complete.xml", record);
}

using Files = std::vector<std::string>;

}  // namespace

TEST(BrokenAccounts, AgreeWhenNothingIsBroken)
{
    EXPECT_EQ(DisagreeingInExample(Break::kNone, {}), Files());
}

TEST(BrokenAccounts, DisagreeWhenARecordIsForgotten)
{
    for (auto const& [kind, file] : {std::pair{"mesh", "complete.mesh"}, std::pair{"curve", "complete.geometry"},
                                     std::pair{"segments", "complete.seg"}, std::pair{"asset", "complete.assets"},
                                     std::pair{"ids", "complete.ids.xml"}, std::pair{"edge", "complete.sab"}})
    {
        EXPECT_EQ(DisagreeingInExample(Break::kForgetsARecord, kind), Files{file}) << kind;
        EXPECT_EQ(DisagreeingInExample(Break::kTellsARecordTwice, kind), Files{file}) << kind;
    }
}

TEST(BrokenAccounts, DisagreeWhenAPropertyIsForgotten)
{
    EXPECT_EQ(DisagreeingInExample(Break::kForgetsAProperty, {}), Files{"complete.kvrproperty"});
    EXPECT_EQ(DisagreeingInExample(Break::kTellsAPropertyTwice, {}), Files{"complete.kvrproperty"});
}

// In a file that is cut short a record that was there and is not told is no less missing.
TEST(BrokenAccounts, DisagreeInAFileThatIsShort)
{
    std::string const folder = std::string(KVR_EXAMPLES_DIR) + "/complete/";
    TempFolder const copy;
    std::string const path = copy.Path() + "/scene.xml";
    WriteBytes(path, "<Scene><VitreolMaterialInfo GenerateSerializedVitreol=\"True\" Path=\"scene.assets\"/></Scene>");
    std::string assets = BytesOf(folder + "complete.assets");
    assets.replace(16, 1, 1, '\x02');
    WriteBytes(copy.Path() + "/scene.assets", assets);
    BrokenRecord whole(Break::kNone, "asset");
    EXPECT_EQ(Disagreeing(path, whole), Files());
    BrokenRecord broken(Break::kForgetsARecord, "asset");
    EXPECT_EQ(Disagreeing(path, broken), Files{"scene.assets"});
}

}  // namespace KVR::Test
