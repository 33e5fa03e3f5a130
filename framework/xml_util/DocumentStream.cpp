#include "framework/xml_util/DocumentStream.h"

#include <memory>
#include <new>
#include <vector>
#include <xercesc/parsers/SAX2XMLReaderImpl.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "framework/xml_util/DocumentParser.h"
#include "framework/xml_util/FileInputSource.h"
#include "framework/xml_util/XMLPlatform.h"

namespace KVR
{

namespace
{

using xercesc::XMLUni;

struct StreamRefused
{
};

class Handler final : public xercesc::DefaultHandler
{
public:
    Handler(xercesc::SAX2XMLReader const& reader, DocumentPolicy const& policy, DocumentReceiver& receiver)
        : m_reader(reader), m_policy(policy), m_receiver(receiver)
    {
    }

    void setDocumentLocator(xercesc::Locator const* locator) override { m_locator = locator; }
    void startElement(XMLCh const*, XMLCh const*, XMLCh const* name, xercesc::Attributes const& attributes) override
    {
        if (m_open.size() >= m_policy.maxDepth || attributes.getLength() > m_policy.maxAttributes)
            throw StreamRefused();
        m_receiver.Receive({m_number, m_open.size(), name, &attributes, m_locator->getLineNumber(),
                            m_locator->getColumnNumber(), EndOfTag()});
        m_open.push_back(m_number++);
    }
    void endElement(XMLCh const*, XMLCh const*, XMLCh const*) override
    {
        m_receiver.ReceiveEnd(m_open.back(), EndOfTag());
        m_open.pop_back();
    }
    void startDTD(XMLCh const*, XMLCh const*, XMLCh const*) override
    {
        if (!m_policy.documentTypes)
            throw StreamRefused();
    }
    void startEntity(XMLCh const*) override { ++m_entities; }
    void endEntity(XMLCh const*) override { --m_entities; }
    void fatalError(xercesc::SAXParseException const& error) override { throw xercesc::SAXParseException(error); }

private:
    std::uint64_t EndOfTag() const { return m_entities == 0 ? m_reader.getSrcOffset() : 0; }

    xercesc::SAX2XMLReader const& m_reader;
    DocumentPolicy const& m_policy;
    DocumentReceiver& m_receiver;
    xercesc::Locator const* m_locator = nullptr;
    std::uint64_t m_number = 0;
    /// The numbers of the elements that are open.
    std::vector<std::uint64_t> m_open;
    std::uint64_t m_entities = 0;
};

void Parse(UTF16String const& path, DocumentPolicy const& policy, DocumentReceiver& receiver)
{
    auto const reader = std::make_unique<xercesc::SAX2XMLReaderImpl>();
    std::unique_ptr<xercesc::XMLEntityResolver> const resolver = MakeEntityResolver(policy);
    xercesc::SecurityManager security;
    reader->setFeature(XMLUni::fgSAX2CoreNameSpaces, true);
    reader->setFeature(XMLUni::fgSAX2CoreNameSpacePrefixes, true);
    reader->setFeature(XMLUni::fgSAX2CoreValidation, false);
    reader->setFeature(XMLUni::fgXercesSchema, policy.schemas);
    reader->setFeature(XMLUni::fgXercesCalculateSrcOfs, true);
    if (resolver)
        reader->setXMLEntityResolver(resolver.get());
    if (policy.maxEntities != DocumentPolicy::kNoLimit)
    {
        security.setEntityExpansionLimit(policy.maxEntities);
        reader->setProperty(XMLUni::fgXercesSecurityManager, &security);
    }
    Handler handler(*reader, policy, receiver);
    reader->setContentHandler(&handler);
    reader->setLexicalHandler(&handler);
    reader->setErrorHandler(&handler);
    reader->parse(FileInputSource(path));
}

}  // namespace

DocumentReceiver::DocumentReceiver() = default;
DocumentReceiver::~DocumentReceiver() = default;
void DocumentReceiver::ReceiveEnd(std::uint64_t, std::uint64_t) {}

DocumentStreamEnd StreamDocument(UTF16String const& path, DocumentReceiver& receiver)
{
    XMLPlatformScope const platform;
    if (!platform.IsAcquired())
        return {};
    DocumentPolicy const policy = CurrentDocumentPolicy();
    try
    {
        Parse(path, policy, receiver);
        return {true, 0, 0};
    }
    catch (xercesc::OutOfMemoryException const&)
    {
        throw std::bad_alloc();
    }
    catch (xercesc::SAXParseException const& error)
    {
        return {false, error.getLineNumber(), error.getColumnNumber()};
    }
    catch (xercesc::SAXException const&)
    {
    }
    catch (xercesc::XMLException const&)
    {
    }
    catch (StreamRefused const&)
    {
    }
    catch (std::bad_alloc const&)
    {
        throw;
    }
    catch (...)
    {
        // A resolver's refusal.
    }
    return {};
}

}  // namespace KVR
