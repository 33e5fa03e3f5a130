#include "host/check/CheckedScene.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string_view>

namespace KVR
{

std::array<std::size_t, 3> CheckedScene::Counts() const
{
    std::array<std::size_t, 3> counts{};
    for (Finding const& finding : result.findings)
        ++counts.at(static_cast<std::size_t>(finding.rule->severity));
    return counts;
}

ExitStatus CheckedScene::Status(Severity failOn) const
{
    std::vector<Account> const& accounts = result.accounts;
    if (!std::all_of(accounts.begin(), accounts.end(), [](Account const& account) { return account.Agrees(); }))
        return kExit_AccountsDisagree;
    std::vector<Finding> const& findings = result.findings;
    bool const isBad = std::any_of(findings.begin(), findings.end(),
                                   [&](Finding const& finding) { return finding.rule->severity >= failOn; });
    return isBad ? kExit_Failed : kExit_Good;
}

std::string FingerprintOf(Finding const& finding)
{
    // FNV-1a with 64 bits.
    std::uint64_t hash = 0xCBF29CE484222325U;
    auto const add = [&](std::string_view text)
    {
        for (char const c : text)
            hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
        // Between texts, so that what one has at its end and another at its beginning are told apart.
        hash = (hash ^ 0xFFU) * 0x100000001B3U;
    };
    add(finding.rule->id);
    add(std::filesystem::path(finding.file).filename().string());
    add(finding.path);
    add(finding.objectId);
    add(finding.found);
    return fmt::format("{:016x}", hash);
}

std::string MessageOf(Finding const& finding)
{
    std::string message(finding.rule->sentence);
    if (!finding.found.empty())
        message += ": " + finding.found;
    if (!finding.readAs.empty())
        message += "; " + finding.readAs;
    for (std::string const& reason : finding.reasons)
        message += "; " + reason;
    if (!finding.meant.empty())
        message += "; probably meant: " + finding.meant;
    return message;
}

}  // namespace KVR
