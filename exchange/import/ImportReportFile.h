#pragma once

#include <string>

#include "exchange/ImportModel.h"

namespace KVR
{

/// Why the report of an import must not stand at a path; empty for no reason.
std::string ProblemOfReport(std::string const& reportPath, std::string const& modelPath, std::string const& scenePath);

/// Lists what a model holds and its scene does not, as JSON. Throws std::system_error.
void WriteImportReport(ImportResult const& result, std::string const& reportPath, std::string const& modelPath,
                       std::string const& scenePath);

}  // namespace KVR
