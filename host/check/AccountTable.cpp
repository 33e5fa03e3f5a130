#include "host/check/AccountTable.h"

#include <fmt/format.h>

#include <string_view>

#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

constexpr std::string_view kRow = "{:>12} {:>12} {:>12} {:>12} {:>12}  {}\n";

}  // namespace

void WriteAccounts(std::vector<Account> const& accounts, Output& out)
{
    if (accounts.empty())
        return;
    out.Put(fmt::format(kRow, "seen", "served", "defaulted", "dropped", "unread", ""));
    for (Account const& account : accounts)
    {
        out.Put(fmt::format(kRow, account.seen, account.served, account.defaulted, account.Dropped(), account.unread,
                            account.what + " of " + Escaped(account.file)));
        for (auto const& [rule, count] : account.dropped)
            out.Put(fmt::format("{:>51} by {} {}\n", count, rule->id, rule->name));
        if (!account.Agrees())
            out.Put("  the sums do not agree\n");
    }
}

}  // namespace KVR
