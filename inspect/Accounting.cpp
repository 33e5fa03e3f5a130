#include "inspect/Accounting.h"

#include <map>
#include <string_view>

#include "framework/xml_util/DocumentStream.h"
#include "framework/xml_util/SideFileParser.h"
#include "inspect/RootChildren.h"
#include "inspect/SceneCheck.h"
#include "inspect/StoreCount.h"
#include "inspect/document/DocumentTally.h"
#include "inspect/document/ReadRecord.h"
#include "inspect/rules/SideFileRuleTable.h"
#include "inspect/rules/SideFileRules.h"
#include "inspect/rules/UsedIds.h"

namespace KVR
{

namespace
{

using ByRule = std::map<std::string_view, std::uint64_t>;

// Counts a document's elements and attributes.
class Census final : public DocumentReceiver
{
public:
    void Receive(StreamedElement const& element) override { count += 1 + element.attributes->getLength(); }

    std::uint64_t count = 0;
};

void SetDropped(Account& account, ByRule const& dropped)
{
    for (auto const& [id, count] : dropped)
        account.dropped.emplace_back(FindRule(id), count);
}

Account OfDocument(SceneCheck const& check, DocumentTally const& tally)
{
    Account account;
    account.file = check.Path();
    account.what = "elements and attributes";
    Census census;
    static_cast<void>(StreamDocument(UTF16String(UTF8String(check.Path())), census));
    account.seen = census.count;
    account.served = tally.served;
    account.defaulted = tally.defaulted;
    account.unread = tally.unread;
    SetDropped(account, tally.dropped);
    return account;
}

Account OfSection(SectionRecord const& section, UsedIds const& used)
{
    Account account;
    account.file = section.path;
    account.what = "records";
    StoreCount const count = StoreCount::Of(section);
    account.seen = count.records;
    account.unread = count.OutOfReach(section);
    ByRule dropped;
    for (StoreRecord const& record : section.records)
    {
        if (record.kind == "unknown")
            ++account.unread;
        else if (Rule const* const rule = DropOf(record, used))
            ++dropped[rule->id];
        else
            ++account.served;
    }
    SetDropped(account, dropped);
    return account;
}

Account OfProperties(SceneCheck const& check)
{
    Account account;
    account.file = check.PropertyFile();
    account.what = "properties";
    RootChildren census;
    static_cast<void>(ParseSideFile(UTF16String(UTF8String(account.file)), census));
    account.seen = census.count;
    ByRule dropped;
    for (PropertyRecord const& property : check.Record().Properties())
    {
        if (!property.isMade)
            ++dropped[SideFileRule::kNoProperty.id];
        else if (!property.isFound)
            ++dropped[SideFileRule::kNoObject.id];
        else if (!property.isHeld)
            ++dropped[SideFileRule::kNoHolder.id];
        else if (property.misread && !property.misread->isUnderstood)
            ++account.defaulted;
        else
            ++account.served;
    }
    SetDropped(account, dropped);
    return account;
}

}  // namespace

std::vector<Account> MakeAccounts(SceneCheck const& check, DocumentTally const& tally)
{
    std::vector<Account> accounts{OfDocument(check, tally)};
    UsedIds const used = UsedIds::Of(check.Record());
    for (SectionRecord const& section : check.Record().Sections())
    {
        if (section.state == SectionState::kRead)
            accounts.push_back(OfSection(section, used));
    }
    Account properties = OfProperties(check);
    if (properties.seen != 0 || !check.Record().Properties().empty())
        accounts.push_back(std::move(properties));
    return accounts;
}

}  // namespace KVR
