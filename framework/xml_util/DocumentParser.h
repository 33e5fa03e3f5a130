#pragma once

#include <memory>
#include <optional>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/XMLEntityResolver.hpp>

#include "framework/xml_util/DocumentPolicy.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// A parser for the document of a scene, under the policy of this moment: with namespaces, without validation, with
/// nodes for entity references. Parsing throws, and LastDocumentRefusal tells why, when the policy refuses the
/// document. XMLPlatform must be acquired for as long as the parser lives.
KVR_XML_UTIL_API std::unique_ptr<xercesc::XercesDOMParser> MakeDocumentParser();

/// What keeps a parser to the other documents that the policy lets it open; null when that is all. To be kept for as
/// long as the parser.
std::unique_ptr<xercesc::XMLEntityResolver> MakeEntityResolver(DocumentPolicy const& policy);

/// What LastDocumentRefusal answers to this thread.
void NoteDocumentRefusal(std::optional<DocumentRefusal> refusal) noexcept;

}  // namespace KVR
