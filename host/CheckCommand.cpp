#include "host/CheckCommand.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <limits>
#include <map>
#include <stdexcept>

#include "exchange/source/MemoryLimit.h"
#include "host/CommonOptions.h"
#include "host/check/AccountTable.h"
#include "host/check/Baseline.h"
#include "host/check/CheckedScene.h"
#include "host/check/FixDiff.h"
#include "host/check/JsonFindings.h"
#include "host/check/TextFindings.h"
#include "output/Output.h"
#include "scene/NearestNames.h"

namespace KVR
{

namespace
{

void RequireRules(std::vector<std::string> const& names)
{
    for (std::string const& name : names)
    {
        if (FindRule(name))
            continue;
        NearestNames nearest(name, 1);
        for (Rule const& rule : AllRules())
        {
            nearest.Add(rule.id);
            nearest.Add(rule.name);
        }
        throw ArgumentError("there is no rule " + name + "; did you mean " + nearest.Names().front() + "?");
    }
}

}  // namespace

CheckCommand::CheckCommand(CLI::App& program)
    : Command(program, "check",
              "Tell what of scenes is lost in reading, odd, or probably not meant as it is read: unread elements and "
              "attributes, dropped objects, broken references, misread values, side files, geometry and units")
{
    CLI::App& arguments = Arguments();
    arguments.add_option("scenes", m_scenes, "The scene files")->required()->type_name("SCENE...");
    arguments.add_flag("--all", m_all, "Show every place of a finding, not ten of each kind");
    arguments.add_flag("--account", m_options.account,
                       "Print what became of all that the document and each side file hold");
    AddForms(arguments);
    AddRepeatedOption(arguments, "--rule", m_options.rules, "Look for this rule alone; may be repeated", "RULE");
    AddRepeatedOption(arguments, "--no-rule", m_options.noRules, "Leave this rule out; may be repeated", "RULE");
    arguments.add_option("--baseline", m_baseline, "Leave out what is known: a file that --json has printed before")
        ->type_name("FILE");
    arguments.add_option("--fail-on", m_failOn, "The least severity for an exit status of 1: note, warning or error")
        ->type_name("SEVERITY")
        ->transform(CLI::CheckedTransformer(std::map<std::string, Severity>{
            {"note", Severity::kNote}, {"warning", Severity::kWarning}, {"error", Severity::kError}}));
    arguments.add_flag("--allow-dtd", m_options.allowDtd,
                       "Allow a document type declaration, and with it entities and references to other documents, "
                       "also on the network; for scenes that you trust");
    arguments.add_flag("--insecure", m_options.insecure, "Restore kernel stores that the kernel judges insecure");
    AddMemoryOption(arguments, m_reading);
    m_color.AddTo(arguments);
}

void CheckCommand::AddForms(CLI::App& arguments)
{
    auto const set = [this](Form form) { return [this, form](std::int64_t) { m_form = form; }; };
    CLI::Option* const json = arguments.add_flag_function("--json", set(Form::kJson), "Print JSON");
    CLI::Option* const sarif =
        arguments.add_flag_function("--sarif", set(Form::kSarif), "Print a log in the format SARIF 2.1.0");
    CLI::Option* const fix = arguments.add_flag_function(
        "--fix", set(Form::kFix), "Print the changes that have one safe meaning, as a diff for patch -p0");
    json->excludes(sarif)->excludes(fix);
    sarif->excludes(fix);
}

std::vector<CheckedScene> CheckCommand::CheckAll() const
{
    Baseline known = m_baseline.empty() ? Baseline() : Baseline(m_baseline);
    std::vector<CheckedScene> scenes;
    for (std::string const& path : m_scenes)
    {
        SceneOptions reading = m_reading;
        reading.path = path;
        if (std::string const problem = MemoryProblem(reading); !problem.empty())
            throw std::runtime_error(fmt::format("{} cannot be read: {}", path, problem));
        CheckedScene& scene = scenes.emplace_back(CheckedScene{path, CheckScene(path, m_options), 0});
        known.TakeKnown(scene);
    }
    return scenes;
}

ExitStatus CheckCommand::Run()
{
    RequireRules(m_options.rules);
    RequireRules(m_options.noRules);
    std::vector<CheckedScene> const scenes = CheckAll();
    Output out(STDOUT_FILENO);
    if (m_form == Form::kJson)
        WriteFindingsAsJson(scenes, out);
    else if (m_form == Form::kSarif)
        WriteFindingsAsSarif(scenes, out);
    ExitStatus status = kExit_Good;
    TextFindingsOptions const text{m_color.IsWanted(), m_all ? std::numeric_limits<std::size_t>::max() : kMostPlaces};
    for (CheckedScene const& scene : scenes)
    {
        if (m_form == Form::kFix)
            out.Put(DiffOfFixes(scene.result.findings));
        if (m_form == Form::kText)
        {
            WriteFindings(scene, text, out);
            WriteAccounts(scene.result.accounts, out);
        }
        status = std::max(status, scene.Status(m_failOn));
    }
    out.Flush();
    return status;
}

}  // namespace KVR
