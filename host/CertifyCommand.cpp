#include "host/CertifyCommand.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <nlohmann/json.hpp>

#include "exchange/CertifyModel.h"
#include "host/CommonOptions.h"
#include "host/LongWork.h"
#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

std::string TableOf(CertifyResult const& result)
{
    std::vector<std::vector<std::string>> lines;
    lines.push_back({"millimetres"});
    lines.back().insert(lines.back().end(), result.stages.begin(), result.stages.end());
    lines.back().insert(lines.back().end(), {"difference", "verdict"});
    for (CertificateRow const& row : result.rows)
    {
        lines.push_back({row.name});
        for (std::string const& value : row.values)
            lines.back().push_back(value.empty() ? "-" : value);
        lines.back().push_back(row.difference == 0.0 ? "0" : fmt::format("{:.1e}", row.difference));
        lines.back().push_back(row.isGood ? "equal" : "DIFFERENT");
    }
    std::vector<std::size_t> widths(lines.front().size(), 0);
    for (auto const& line : lines)
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], line[i].size());
    std::string text;
    for (auto const& line : lines)
    {
        std::string row;
        for (std::size_t i = 0; i < line.size(); ++i)
            row += fmt::format("{:<{}}  ", line[i], widths[i]);
        row.erase(row.find_last_not_of(' ') + 1);
        text += row + '\n';
    }
    return text;
}

std::string JsonOf(std::string const& model, CertifyResult const& result)
{
    nlohmann::ordered_json object;
    object["Model"] = model;
    object["Verdict"] = result.isEqual ? "equal" : "different";
    nlohmann::ordered_json rows = nlohmann::ordered_json::array();
    for (CertificateRow const& row : result.rows)
    {
        nlohmann::ordered_json entry;
        entry["Name"] = row.name;
        for (std::size_t i = 0; i < result.stages.size(); ++i)
            entry[result.stages[i]] =
                row.values[i].empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(row.values[i]);
        entry["Difference"] = row.difference;
        entry["Verdict"] = row.isGood ? "equal" : "different";
        rows.push_back(entry);
    }
    object["Rows"] = rows;
    object["Remarks"] = result.remarks;
    return object.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

}  // namespace

CertifyCommand::CertifyCommand(CLI::App& program)
    : Command(
          program, "certify",
          "Make a scene of a model, export it to STEP and GLB, read all of them back, and show whether they hold the "
          "same. The exit status is 1 when they do not")
{
    Arguments().add_option("model", m_model, "The model's file")->required()->type_name("MODEL");
    AddJsonOption(Arguments(), m_asJson);
    Arguments().add_flag("--quiet", m_isQuiet, "Show no progress and no remarks");
}

ExitStatus CertifyCommand::Run()
{
    CertifyResult const result =
        Watched(!m_isQuiet, [&](Progress const& progress) { return CertifyModel(m_model, progress); });
    if (result.outcome != Outcome::kDone)
        return ComplainOf(result, "interrupted");
    if (!m_isQuiet && !m_asJson)
        for (std::string const& remark : result.remarks)
            Complain(Escaped(m_model) + ": " + Escaped(remark));
    Output out(STDOUT_FILENO);
    out.Put(m_asJson ? JsonOf(m_model, result) : TableOf(result));
    out.Flush();
    return result.isEqual ? kExit_Good : kExit_Failed;
}

}  // namespace KVR
