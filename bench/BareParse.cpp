#include "bench/BareParse.h"

#include <memory>
#include <stdexcept>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace KVR::Bench
{

void ParseBare(xercesc::XercesDOMParser& parser, std::filesystem::path const& scene)
{
    parser.setValidationScheme(xercesc::XercesDOMParser::Val_Never);
    parser.setDoNamespaces(true);
    parser.setDoSchema(true);
    parser.setCreateEntityReferenceNodes(true);
    parser.parse(scene.c_str());
    if (parser.getErrorCount() != 0)
        throw std::runtime_error("The scene did not parse");
}

void StreamBare(std::filesystem::path const& file)
{
    using xercesc::XMLUni;
    xercesc::DefaultHandler handler;
    std::unique_ptr<xercesc::SAX2XMLReader> const reader(xercesc::XMLReaderFactory::createXMLReader());
    reader->setFeature(XMLUni::fgSAX2CoreNameSpaces, false);
    reader->setFeature(XMLUni::fgSAX2CoreValidation, false);
    reader->setFeature(XMLUni::fgXercesSchema, false);
    reader->setContentHandler(&handler);
    reader->setErrorHandler(&handler);
    reader->parse(file.c_str());
}

}  // namespace KVR::Bench
