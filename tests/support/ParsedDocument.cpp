#include "tests/support/ParsedDocument.h"

#include <stdexcept>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/XMLStrUtil.h"

namespace KVR::Test
{

namespace
{

class ThrowFatalErrors final : public xercesc::ErrorHandler
{
public:
    void warning(xercesc::SAXParseException const&) override {}
    void error(xercesc::SAXParseException const&) override {}
    void fatalError(xercesc::SAXParseException const& error) override
    {
        throw std::runtime_error(XMLStrUtil::XMLStrToAStr(error.getMessage()).Value());
    }
    void resetErrors() override {}
};

// The next node of a walk over all nodes, in document order; null behind the last.
xercesc::DOMNode* Next(xercesc::DOMNode* node)
{
    if (node->getFirstChild())
        return node->getFirstChild();
    while (node && !node->getNextSibling())
        node = node->getParentNode();
    return node ? node->getNextSibling() : nullptr;
}

}  // namespace

ParsedDocument::ParsedDocument(std::string_view xml)
{
    if (!m_platform.IsAcquired())
        throw std::runtime_error("Xerces cannot be initialised");
    m_parser = std::make_unique<xercesc::XercesDOMParser>();
    m_parser->setValidationScheme(xercesc::XercesDOMParser::Val_Never);
    m_parser->setDoNamespaces(true);
    m_parser->setDoSchema(true);
    m_parser->setCreateEntityReferenceNodes(true);
    ThrowFatalErrors errors;
    m_parser->setErrorHandler(&errors);
    xercesc::MemBufInputSource const source(reinterpret_cast<XMLByte const*>(xml.data()), xml.size(), "document");
    m_parser->parse(source);
    m_parser->setErrorHandler(nullptr);
}

ParsedDocument::~ParsedDocument() = default;

xercesc::DOMDocument& ParsedDocument::Document() const
{
    return *m_parser->getDocument();
}

xercesc::DOMElement* ParsedDocument::Root() const
{
    return Document().getDocumentElement();
}

xercesc::DOMNode* ParsedDocument::FirstNamed(std::u16string_view name) const
{
    xercesc::DOMNode* node = &Document();
    while (node && !Equals(node->getNodeName(), name))
        node = Next(node);
    return node;
}

}  // namespace KVR::Test
