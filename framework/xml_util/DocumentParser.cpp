#include "framework/xml_util/DocumentParser.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_set>
#include <xercesc/dom/DOMNode.hpp>
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

#include "framework/xml_util/DocumentMemory.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"

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

// Counts the different names that it is shown. A name mostly is that which stood in the same place of the last element
// of the kind, or else among the latest with its beginning and end, and costs a comparison or two.
class NameCount
{
public:
    NameCount() { m_before.fill(u""); }

    // The number of names with this one, that of an attribute at a place in an element of a kind. Kinds are numbered
    // one after the other.
    std::size_t Add(XMLCh const* name, std::size_t kind, std::size_t place)
    {
        XMLCh const*& before = m_before[(kind * kPlaces + place) % m_before.size()];
        if (!AreEqual(before, name))
            before = Kept(name);
        return m_names.size();
    }

private:
    static constexpr std::size_t kPlaces = 16;

    // Without their lengths, as most are equal.
    static bool AreEqual(XMLCh const* a, XMLCh const* b)
    {
        for (; *a == *b; ++a, ++b)
            if (*a == 0)
                return true;
        return false;
    }

    XMLCh const* Kept(std::u16string_view name)
    {
        // Names of one length that begin and end alike are few.
        std::size_t const size = name.size();
        std::size_t const hash = size == 0 ? 0 : size * 37 + name[0] + name[size / 2] * 7U + name[size - 1] * 3U;
        std::u16string const*& latest = m_latest[hash % m_latest.size()];
        if (latest == nullptr || *latest != name)
            latest = &*m_names.emplace(name).first;
        return latest->c_str();
    }

    // Their texts stay where they are.
    std::unordered_set<std::u16string> m_names;
    std::array<std::u16string const*, 256> m_latest{};
    std::array<XMLCh const*, 64 * kPlaces> m_before;
};

// Elements whose own text nobody asks for, as long as all that they stand in are such: of these the text content would
// be their text, too.
constexpr ElementName kContainers[] = {Names::IInstance, Names::ChildSet,   Names::IAssembly,      Names::IPart,
                                       Names::IFile,     Names::IBrep,      Names::IPolygonMesh,   Names::ViewSet,
                                       Names::IView,     Names::ViewMember, Names::ViewMemberChild};

bool IsContainer(XMLCh const* prefix, XMLCh const* name)
{
    return (!prefix || *prefix == 0) && std::any_of(std::begin(kContainers), std::end(kContainers),
                                                    [&](ElementName container) { return Equals(name, container); });
}

bool IsSpace(XMLCh const* text, XMLSize_t length)
{
    return std::all_of(text, text + length,
                       [](XMLCh character)
                       { return character == u' ' || character == u'\n' || character == u'\t' || character == u'\r'; });
}

// A base, so that the memory is there before the parser and goes after it.
struct MemoryOfParser
{
    DocumentMemory memory{xercesc::XMLPlatformUtils::fgMemoryManager};
};

// Makes no nodes of the space by which lines and indents part the elements of a container. In a document written for
// people a fifth of the time and memory went into these.
class SceneParser : private MemoryOfParser, public XercesDOMParser
{
public:
    SceneParser() : XercesDOMParser(nullptr, &memory, nullptr) {}

    void startElement(xercesc::XMLElementDecl const& element, unsigned int urlId, XMLCh const* prefix,
                      xercesc::RefVectorOf<xercesc::XMLAttr> const& attributes, XMLSize_t attributeCount, bool isEmpty,
                      bool isRoot) override
    {
        // The root is one by any name.
        bool const isContainer = m_containers == m_depth && (isRoot || IsContainer(prefix, element.getBaseName()));
        ++m_depth;
        if (isContainer)
            m_containers = m_depth;
        XercesDOMParser::startElement(element, urlId, prefix, attributes, attributeCount, isEmpty, isRoot);
    }

    void endElement(xercesc::XMLElementDecl const& element, unsigned int urlId, bool isRoot,
                    XMLCh const* prefix) override
    {
        --m_depth;
        m_containers = std::min(m_containers, m_depth);
        XercesDOMParser::endElement(element, urlId, isRoot, prefix);
    }

    void docCharacters(XMLCh const* text, XMLSize_t length, bool isCData) override
    {
        bool const isLeftOut = m_containers == m_depth && !isCData && IsSpace(text, length) &&
                               fCurrentParent->getNodeType() == xercesc::DOMNode::ELEMENT_NODE;
        if (!isLeftOut)
            XercesDOMParser::docCharacters(text, length, isCData);
    }

protected:
    /// How many elements are open.
    std::size_t Depth() const noexcept { return m_depth; }

private:
    std::size_t m_depth = 0;
    /// How many of them, from the root on, are containers.
    std::size_t m_containers = 0;
};

class PolicyParser final : public SceneParser
{
public:
    explicit PolicyParser(DocumentPolicy const& policy) : m_policy(policy), m_files(policy.otherDocuments)
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
        SceneParser::doctypeDecl(element, publicId, systemId, hasInternal, hasExternal);
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
            if (m_attributeNames.Add(attributes.elementAt(i)->getName(), element.getId(), i) > m_policy.maxNames)
                Refuse(DocumentRefusal::kNames);
        if (Depth() >= m_policy.maxDepth)
            Refuse(DocumentRefusal::kDepth);
        SceneParser::startElement(element, urlId, prefix, attributes, attributeCount, isEmpty, isRoot);
    }

    void error(unsigned int code, XMLCh const* domain, xercesc::XMLErrorReporter::ErrTypes type, XMLCh const* text,
               XMLCh const* systemId, XMLCh const* publicId, XMLFileLoc line, XMLFileLoc column) override
    {
        if (code == xercesc::XMLErrs::EntityExpansionLimitExceeded &&
            xercesc::XMLString::equals(domain, xercesc::XMLUni::fgXMLErrDomain))
            Refuse(DocumentRefusal::kEntities);
        SceneParser::error(code, domain, type, text, systemId, publicId, line, column);
    }

private:
    DocumentPolicy const m_policy;
    FilesAlone m_files;
    xercesc::HandlerBase m_deafEar;
    xercesc::SecurityManager m_security;
    NameCount m_attributeNames;
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
        parser = std::make_unique<SceneParser>();
    else
        parser = std::make_unique<PolicyParser>(policy);
    parser->setValidationScheme(XercesDOMParser::Val_Never);
    parser->setDoNamespaces(true);
    parser->setDoSchema(policy.schemas);
    parser->setCreateEntityReferenceNodes(true);
    return parser;
}

}  // namespace KVR
