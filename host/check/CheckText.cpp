#include "host/check/CheckText.h"

#include <cstddef>
#include <map>
#include <string>

#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

constexpr std::size_t kMostPlaces = 10;

std::string PlaceText(Finding const& finding)
{
    std::string text = Escaped(finding.file);
    if (finding.line != 0)
        text += ":" + std::to_string(finding.line) + ":" + std::to_string(finding.column);
    else if (finding.end != 0)
        text += ": bytes " + std::to_string(finding.begin) + " to " + std::to_string(finding.end);
    return text;
}

void WriteFinding(Finding const& finding, Output& out)
{
    out.Put("  " + PlaceText(finding) + ": " + Escaped(finding.found));
    if (!finding.readAs.empty())
        out.Put(": " + Escaped(finding.readAs));
    if (!finding.meant.empty())
        out.Put("; probably meant: " + Escaped(finding.meant));
    out.Put('\n');
    if (!finding.path.empty())
        out.Put("    in " + Escaped(finding.path) + "\n");
    for (std::string const& reason : finding.reasons)
        out.Put("    because " + Escaped(reason) + "\n");
}

}  // namespace

void WriteCheckText(CheckResult const& result, bool all, Output& out)
{
    std::map<std::string_view, std::vector<Finding const*>> byRule;
    for (Finding const& finding : result.findings)
        byRule[finding.rule->id].push_back(&finding);
    for (auto const& [id, findings] : byRule)
    {
        Rule const& rule = *findings.front()->rule;
        out.Put(std::string(id) + " " + std::string(TextOf(rule.severity)) + ": " + std::string(rule.sentence) + " (" +
                std::to_string(findings.size()) + ")\n");
        std::size_t shown = 0;
        for (Finding const* const finding : findings)
        {
            if (!all && shown == kMostPlaces)
                break;
            WriteFinding(*finding, out);
            ++shown;
        }
        if (shown < findings.size())
            out.Put("  and " + std::to_string(findings.size() - shown) + " more; see --all\n");
    }
}

void WriteAccounts(CheckResult const& result, Output& out)
{
    for (Account const& account : result.accounts)
    {
        out.Put(Escaped(account.file) + ": " + std::to_string(account.seen) + " " + account.what + ": " +
                std::to_string(account.served) + " served, " + std::to_string(account.defaulted) +
                " understood with a default, " + std::to_string(account.Dropped()) + " dropped, " +
                std::to_string(account.unread) + " unread\n");
        for (auto const& [rule, count] : account.dropped)
            out.Put("  dropped by " + std::string(rule->id) + " " + std::string(rule->name) + ": " +
                    std::to_string(count) + "\n");
        if (!account.Agrees())
            out.Put("  the sums do not agree\n");
    }
}

}  // namespace KVR
