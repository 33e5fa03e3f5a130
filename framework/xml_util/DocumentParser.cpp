#include "framework/xml_util/DocumentParser.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLEntityResolver.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/util/XMLURL.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace KVR
{

namespace
{

using xercesc::XercesDOMParser;

struct RefusedDocument
{
};

[[noreturn]] void Refuse(DocumentRefusal refusal)
{
    NoteDocumentRefusal(refusal);
    throw RefusedDocument();
}

// Whether the parser would look for it in the file system: it takes what is no address for a path.
bool IsFile(xercesc::XMLResourceIdentifier const& identifier)
{
    try
    {
        xercesc::XMLURL const url(identifier.getBaseURI(), identifier.getSystemId());
        return url.isRelative() || url.getProtocol() == xercesc::XMLURL::File;
    }
    catch (xercesc::XMLException const&)
    {
        return true;
    }
}

class FilesAlone final : public xercesc::XMLEntityResolver
{
public:
    explicit FilesAlone(DocumentPolicy::OtherDocuments others) : m_others(others) {}

    // Null: the parser finds it by itself.
    xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* identifier) override
    {
        if (m_others == DocumentPolicy::OtherDocuments::kNone || !IsFile(*identifier))
            Refuse(DocumentRefusal::kOtherDocument);
        return nullptr;
    }

private:
    DocumentPolicy::OtherDocuments m_others;
};

// Counts the different names that it is shown. Most are among the latest of their kind, and cost a comparison.
class NameCount
{
public:
    std::size_t Add(XMLCh const* name)
    {
        XMLCh const* end = name;
        std::uint32_t hash = 2166136261U;
        for (; *end != 0; ++end)
            hash = (hash ^ *end) * 16777619U;
        std::u16string_view const text(name, static_cast<std::size_t>(end - name));
        std::u16string const*& latest = m_latest[hash % m_latest.size()];
        if (latest == nullptr || *latest != text)
            latest = &*m_names.emplace(text).first;
        return m_names.size();
    }

private:
    std::unordered_set<std::u16string> m_names;
    std::array<std::u16string const*, 256> m_latest{};
};

class PolicyParser final : public XercesDOMParser
{
public:
    explicit PolicyParser(DocumentPolicy const& policy)
        : XercesDOMParser(nullptr, xercesc::XMLPlatformUtils::fgMemoryManager, nullptr),
          m_policy(policy),
          m_files(policy.otherDocuments)
    {
        // Errors come to error() as soon as there is somebody to hear them.
        setErrorHandler(&m_deafEar);
        if (policy.otherDocuments != DocumentPolicy::OtherDocuments::kAll)
            setXMLEntityResolver(&m_files);
        if (policy.maxEntities == DocumentPolicy::kNoLimit)
            return;
        m_security.setEntityExpansionLimit(policy.maxEntities);
        setSecurityManager(&m_security);
    }

    void doctypeDecl(xercesc::DTDElementDecl const& element, XMLCh const* publicId, XMLCh const* systemId,
                     bool hasInternal, bool hasExternal) override
    {
        if (!m_policy.documentTypes)
            Refuse(DocumentRefusal::kDocumentType);
        XercesDOMParser::doctypeDecl(element, publicId, systemId, hasInternal, hasExternal);
    }

    void startElement(xercesc::XMLElementDecl const& element, unsigned int urlId, XMLCh const* prefix,
                      xercesc::RefVectorOf<xercesc::XMLAttr> const& attributes, XMLSize_t attributeCount, bool isEmpty,
                      bool isRoot) override
    {
        if (attributeCount > m_policy.maxAttributes)
            Refuse(DocumentRefusal::kAttributes);
        // They are numbered from 1 in the order in which their names were met.
        if (element.getId() > m_policy.maxNames && element.getId() != xercesc::XMLElementDecl::fgInvalidElemId)
            Refuse(DocumentRefusal::kNames);
        for (XMLSize_t i = 0; i < attributeCount; ++i)
            if (m_attributeNames.Add(attributes.elementAt(i)->getName()) > m_policy.maxNames)
                Refuse(DocumentRefusal::kNames);
        if (m_depth >= m_policy.maxDepth)
            Refuse(DocumentRefusal::kDepth);
        ++m_depth;
        XercesDOMParser::startElement(element, urlId, prefix, attributes, attributeCount, isEmpty, isRoot);
    }

    void endElement(xercesc::XMLElementDecl const& element, unsigned int urlId, bool isRoot,
                    XMLCh const* prefix) override
    {
        --m_depth;
        XercesDOMParser::endElement(element, urlId, isRoot, prefix);
    }

    void error(unsigned int code, XMLCh const* domain, xercesc::XMLErrorReporter::ErrTypes type, XMLCh const* text,
               XMLCh const* systemId, XMLCh const* publicId, XMLFileLoc line, XMLFileLoc column) override
    {
        if (code == xercesc::XMLErrs::EntityExpansionLimitExceeded &&
            xercesc::XMLString::equals(domain, xercesc::XMLUni::fgXMLErrDomain))
            Refuse(DocumentRefusal::kEntities);
        XercesDOMParser::error(code, domain, type, text, systemId, publicId, line, column);
    }

private:
    DocumentPolicy const m_policy;
    FilesAlone m_files;
    xercesc::HandlerBase m_deafEar;
    xercesc::SecurityManager m_security;
    NameCount m_attributeNames;
    std::size_t m_depth = 0;
};

}  // namespace

std::unique_ptr<xercesc::XMLEntityResolver> MakeEntityResolver(DocumentPolicy const& policy)
{
    if (policy.otherDocuments == DocumentPolicy::OtherDocuments::kAll)
        return nullptr;
    return std::make_unique<FilesAlone>(policy.otherDocuments);
}

std::unique_ptr<XercesDOMParser> MakeDocumentParser()
{
    NoteDocumentRefusal(std::nullopt);
    DocumentPolicy const policy = CurrentDocumentPolicy();
    std::unique_ptr<XercesDOMParser> parser;
    if (policy == DocumentPolicy())
        parser = std::make_unique<XercesDOMParser>(nullptr, xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
    else
        parser = std::make_unique<PolicyParser>(policy);
    parser->setValidationScheme(XercesDOMParser::Val_Never);
    parser->setDoNamespaces(true);
    parser->setDoSchema(policy.schemas);
    parser->setCreateEntityReferenceNodes(true);
    return parser;
}

}  // namespace KVR
