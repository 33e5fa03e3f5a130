#include "framework/xml_util/SideFileParser.h"

#include <memory>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/sax2/LexicalHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "framework/xml_util/FileInputSource.h"
#include "framework/xml_util/XMLPlatform.h"

namespace KVR
{

namespace
{

using xercesc::XMLUni;

struct DocumentTypeFound
{
};

// Ends the parse at a document type declaration, before anything in it is acted on.
class NoDocumentType final : public xercesc::DefaultHandler
{
public:
    void startDTD(XMLCh const*, XMLCh const*, XMLCh const*) override { throw DocumentTypeFound(); }
};

// Without this the reader would go on behind a fatal error.
class StopAtError final : public xercesc::DefaultHandler
{
public:
    void fatalError(xercesc::SAXParseException const& error) override { throw xercesc::SAXParseException(error); }
};

}  // namespace

bool ParseSideFile(UTF16String const& path, xercesc::DefaultHandler& handler)
{
    XMLPlatformScope const platform;
    if (!platform.IsAcquired())
        return false;
    try
    {
        NoDocumentType noDocumentType;
        StopAtError stopAtError;
        FileInputSource const source(path);
        std::unique_ptr<xercesc::SAX2XMLReader> const reader(xercesc::XMLReaderFactory::createXMLReader());
        reader->setFeature(XMLUni::fgSAX2CoreNameSpaces, false);
        reader->setFeature(XMLUni::fgSAX2CoreValidation, false);
        reader->setFeature(XMLUni::fgXercesSchema, false);
        reader->setFeature(XMLUni::fgXercesLoadExternalDTD, false);
        reader->setContentHandler(&handler);
        reader->setLexicalHandler(&noDocumentType);
        reader->setErrorHandler(&stopAtError);
        reader->parse(source);
        return true;
    }
    catch (xercesc::OutOfMemoryException const&)
    {
        throw std::bad_alloc();
    }
    catch (xercesc::SAXException const&)
    {
    }
    catch (xercesc::XMLException const&)
    {
    }
    catch (DocumentTypeFound const&)
    {
    }
    return false;
}

}  // namespace KVR
