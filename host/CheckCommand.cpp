#include "host/CheckCommand.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>

#include "host/check/CheckText.h"
#include "output/Output.h"

namespace KVR
{

namespace
{

// An account whose sums do not agree is a mistake of this program, and told apart from all that a scene may have.
constexpr auto kExit_AccountsDisagree = static_cast<ExitStatus>(3);

ExitStatus StatusOf(CheckResult const& result)
{
    if (!std::all_of(result.accounts.begin(), result.accounts.end(),
                     [](Account const& account) { return account.Agrees(); }))
        return kExit_AccountsDisagree;
    bool const hasError =
        std::any_of(result.findings.begin(), result.findings.end(),
                    [](Finding const& finding) { return finding.rule->severity == Severity::kError; });
    return hasError ? kExit_Failed : kExit_Good;
}

}  // namespace

CheckCommand::CheckCommand(CLI::App& program)
    : Command(program, "check",
              "Tell what of scenes is lost in reading, odd, or probably not meant as it is read: unread elements and "
              "attributes, dropped objects, broken references, misread values")
{
    CLI::App& arguments = Arguments();
    arguments.add_option("scenes", m_scenes, "The scene files")->required()->type_name("SCENE");
    arguments.add_flag("--all", m_all, "Show every place of a finding, not ten of each kind");
    arguments.add_flag("--account", m_options.account,
                       "Print what became of all that the document and each side file hold");
    arguments.add_flag("--allow-dtd", m_options.allowDtd,
                       "Allow a document type declaration, and with it entities and references to other documents, "
                       "also on the network; for scenes that you trust");
    arguments.add_flag("--insecure", m_options.insecure, "Restore kernel stores that the kernel judges insecure");
}

ExitStatus CheckCommand::Run()
{
    ExitStatus status = kExit_Good;
    Output out(STDOUT_FILENO);
    for (std::string const& scene : m_scenes)
    {
        CheckResult const result = CheckScene(scene, m_options);
        WriteCheckText(result, m_all, out);
        if (m_options.account)
            WriteAccounts(result, out);
        status = std::max(status, StatusOf(result));
    }
    out.Flush();
    return status;
}

}  // namespace KVR
