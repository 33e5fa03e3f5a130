#include "host/certify/CertifyTexts.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <vector>

#include "output/SafeText.h"

namespace KVR
{

namespace
{

constexpr std::size_t kWidth = 100;
constexpr std::size_t kShownDifferences = 10;

using Line = std::vector<std::string>;

Line HeadOf(CertifyResult const& result)
{
    Line head{"millimetres"};
    head.insert(head.end(), result.stages.begin(), result.stages.end());
    head.emplace_back("verdict");
    return head;
}

// A value that is the same as the one before is not repeated where the line would be too long.
std::string LineText(Line const& line, std::vector<std::size_t> const& widths)
{
    std::string text;
    for (std::size_t i = 0; i < line.size(); ++i)
    {
        std::string cell = line[i];
        if (cell.size() > widths[i])
            cell = cell.substr(0, widths[i] - 1) + "~";
        text += fmt::format("{:<{}}  ", cell, widths[i]);
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text + '\n';
}

std::vector<std::string> FirstDifferences(CertifyResult const& result, std::size_t& left)
{
    std::vector<std::string> first;
    for (CertificateRow const& row : result.rows)
        for (std::string const& difference : row.differences)
        {
            if (first.size() < kShownDifferences)
                first.push_back(row.name + ": " + difference);
            else
                ++left;
        }
    return first;
}

std::string Html(std::string const& text)
{
    std::string safe;
    for (char const c : Escaped(text))
        switch (c)
        {
            case '<':
                safe += "&lt;";
                break;
            case '>':
                safe += "&gt;";
                break;
            case '&':
                safe += "&amp;";
                break;
            case '"':
                safe += "&quot;";
                break;
            default:
                safe += c;
        }
    return safe;
}

std::string Base64(std::string const& bytes)
{
    static constexpr char kSigns[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3)
    {
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = (group << 8U) | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U);
        for (std::size_t k = 0; k < 4; ++k)
            text += i + k <= bytes.size() ? kSigns[(group >> (18U - 6U * k)) & 63U] : '=';
    }
    return text;
}

}  // namespace

std::string CertifyTable(CertifyResult const& result)
{
    std::vector<Line> lines{HeadOf(result)};
    for (CertificateRow const& row : result.rows)
    {
        Line& line = lines.emplace_back(Line{row.name});
        for (std::string const& value : row.values)
            line.push_back(value.empty() ? "-" : value);
        line.emplace_back(row.isGood ? "equal" : "DIFFERENT");
    }
    std::vector<std::size_t> widths(lines.front().size(), 0);
    for (Line const& line : lines)
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], line[i].size());
    // What remains beside the names and the verdicts is shared.
    std::size_t const stages = std::max<std::size_t>(1, result.stages.size());
    std::size_t const room = (kWidth - widths.front() - widths.back() - 2 * (stages + 1)) / stages;
    for (std::size_t i = 1; i + 1 < widths.size(); ++i)
        widths[i] = std::min(widths[i], room);
    std::string text;
    for (Line const& line : lines)
        text += LineText(line, widths);
    for (std::string const& absence : result.absences)
        text += Escaped(absence) + '\n';
    std::size_t left = 0;
    for (std::string const& difference : FirstDifferences(result, left))
        text += Escaped(difference) + '\n';
    if (left > 0)
        text += fmt::format("and {} more differences\n", left);
    return text;
}

std::string CertifyJson(std::string const& model, CertifyResult const& result)
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
        entry["Differences"] = row.differences;
        rows.push_back(entry);
    }
    object["Rows"] = rows;
    object["Absences"] = result.absences;
    object["Remarks"] = result.remarks;
    return object.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

std::string CertifyPage(std::string const& model, CertifyResult const& result)
{
    std::string page = fmt::format(
        "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>{0}</title>\n"
        "<style>body{{font-family:sans-serif}}td,th{{padding:0 1em 0 0;text-align:left}}"
        ".no{{color:#b00}}img{{max-width:49%}}</style></head><body>\n"
        "<h1>{0}</h1>\n<p>{1}</p>\n",
        Html(model), result.isEqual ? "equal" : "different");
    for (auto const& [stage, picture] : result.pictures)
        page +=
            picture.empty()
                ? fmt::format("<p>There is no picture of {}: no program that draws it was found.</p>\n", Html(stage))
                : fmt::format("<img alt=\"{}\" src=\"data:image/png;base64,{}\">\n", Html(stage), Base64(picture));
    page += "<table><tr>";
    for (std::string const& cell : HeadOf(result))
        page += "<th>" + Html(cell) + "</th>";
    page += "</tr>\n";
    for (CertificateRow const& row : result.rows)
    {
        page += "<tr><td>" + Html(row.name) + "</td>";
        for (std::string const& value : row.values)
            page += "<td>" + (value.empty() ? "-" : Html(value)) + "</td>";
        page += row.isGood ? "<td>equal</td></tr>\n" : "<td class=\"no\">different</td></tr>\n";
    }
    page += "</table>\n<ul>\n";
    for (std::string const& absence : result.absences)
        page += "<li>" + Html(absence) + "</li>\n";
    for (std::string const& remark : result.remarks)
        page += "<li>" + Html(remark) + "</li>\n";
    for (CertificateRow const& row : result.rows)
        for (std::string const& difference : row.differences)
            page += "<li class=\"no\">" + Html(row.name + ": " + difference) + "</li>\n";
    return page + "</ul>\n</body></html>\n";
}

}  // namespace KVR
