#pragma once

#include <string>

#include "exchange/CertifyModel.h"

namespace KVR
{

// A certificate as text, as JSON and as a page. `model` is the name of the file.

/// The table, at most 100 columns wide, what formats have no place for, and the first ten differences.
std::string CertifyTable(CertifyResult const& result);
/// All there is, each difference by name.
std::string CertifyJson(std::string const& model, CertifyResult const& result);
/// A page of HTML that refers to nothing else: the table, all differences, and the pictures that there are.
std::string CertifyPage(std::string const& model, CertifyResult const& result);

}  // namespace KVR
