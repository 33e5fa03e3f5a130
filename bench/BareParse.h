#pragma once

#include <filesystem>
#include <xercesc/parsers/XercesDOMParser.hpp>

namespace KVR::Bench
{

/// Parses a scene as the producer does. Throws std::runtime_error when it is not well-formed.
void ParseBare(xercesc::XercesDOMParser& parser, std::filesystem::path const& scene);

/// The same of a side file, without a document: as a stream, with nobody listening.
void StreamBare(std::filesystem::path const& file);

}  // namespace KVR::Bench
