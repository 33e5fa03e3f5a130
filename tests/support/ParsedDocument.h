#pragma once

#include <memory>
#include <string_view>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "framework/xml_util/XMLPlatform.h"

namespace KVR::Test
{

/// A document from its text, parsed with the settings that a scene is parsed with. Its nodes live as long as it does.
class ParsedDocument
{
public:
    /// Throws std::runtime_error with the parser's message for a text that is not well-formed.
    explicit ParsedDocument(std::string_view xml);
    ~ParsedDocument();
    ParsedDocument(ParsedDocument const&) = delete;
    ParsedDocument& operator=(ParsedDocument const&) = delete;

    xercesc::DOMDocument& Document() const;
    xercesc::DOMElement* Root() const;
    /// The first node of that name in document order, of whatever type (an element, a processing instruction, an
    /// entity reference); null when there is none.
    xercesc::DOMNode* FirstNamed(std::u16string_view name) const;

private:
    // Outlives the parser.
    XMLPlatformScope m_platform;
    std::unique_ptr<xercesc::XercesDOMParser> m_parser;
};

}  // namespace KVR::Test
