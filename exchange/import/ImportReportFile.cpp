#include "exchange/import/ImportReportFile.h"

#include <filesystem>
#include <system_error>

#include "exchange/run/NewFile.h"
#include "output/JsonWriter.h"

namespace KVR
{

namespace
{

namespace fs = std::filesystem;

bool IsSame(std::string const& one, std::string const& other)
{
    std::error_code error;
    return fs::equivalent(one, other, error) ||
           fs::absolute(one).lexically_normal() == fs::absolute(other).lexically_normal();
}

}  // namespace

std::string ProblemOfReport(std::string const& reportPath, std::string const& modelPath, std::string const& scenePath)
{
    if (reportPath.empty())
        return {};
    if (IsSame(reportPath, modelPath))
        return "the report would replace it";
    return IsSame(reportPath, scenePath) ? "the report would replace the scene" : std::string();
}

void WriteImportReport(ImportResult const& result, std::string const& reportPath, std::string const& modelPath,
                       std::string const& scenePath)
{
    NewFile file(reportPath);
    JsonWriter json(file.Out());
    json.BeginObject();
    json.Key("Model");
    json.String(modelPath);
    json.Key("Scene");
    json.String(scenePath);
    json.Key("Losses");
    json.BeginList();
    unsigned long long count = 0;
    for (ImportLoss const& loss : result.losses)
    {
        json.BeginObject();
        json.Key("Kind");
        json.String(loss.kind);
        json.Key("Count");
        json.Unsigned(loss.count);
        json.Key("Items");
        json.BeginList();
        for (std::string const& item : loss.items)
            json.String(item);
        json.EndList();
        json.EndObject();
        count += loss.count;
    }
    json.EndList();
    json.Key("LossCount");
    json.Unsigned(count);
    json.EndObject();
    json.EndDocument();
    file.Finish();
}

}  // namespace KVR
