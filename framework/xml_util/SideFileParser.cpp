#include "framework/xml_util/SideFileParser.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "framework/api/IOUtil.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/FileInputSource.h"
#include "framework/xml_util/PlainSideFile.h"
#include "framework/xml_util/ReadObserver.h"
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

// Hands elements to a receiver, but for the beginnings and ends that it was told of before.
class Handler final : public xercesc::DefaultHandler
{
public:
    Handler(SideFileReceiver& receiver, std::uint64_t told) : m_receiver(receiver), m_told(told) {}

    void startElement(XMLCh const*, XMLCh const*, XMLCh const* name, xercesc::Attributes const& attributes) override
    {
        if (IsTold())
            return;
        m_attributes.clear();
        // Without namespaces the local name is the name as written, which the qualified name is a copy of.
        for (XMLSize_t i = 0; i < attributes.getLength(); ++i)
            m_attributes.push_back({attributes.getLocalName(i), attributes.getValue(i)});
        m_receiver.Begin({name, m_attributes, m_locator});
    }
    void endElement(XMLCh const*, XMLCh const*, XMLCh const*) override
    {
        if (!IsTold())
            m_receiver.End();
    }
    void setDocumentLocator(xercesc::Locator const* locator) override { m_locator = locator; }

private:
    bool IsTold() { return m_told > 0 && m_told-- > 0; }

    SideFileReceiver& m_receiver;
    std::uint64_t m_told;
    xercesc::Locator const* m_locator = nullptr;
    std::vector<SideFileAttribute> m_attributes;
};

// Whether the byte is the same character in every encoding in which it can stand for one at all.
bool IsPlain(XMLByte byte)
{
    bool const isPrintable = static_cast<XMLByte>(byte - 0x20) < 0x7F - 0x20;
    bool const isWhiteSpace = static_cast<XMLByte>(byte - '\t') <= '\r' - '\t';
    return isPrintable | isWhiteSpace;
}

// The first byte that is not plain.
XMLByte const* FindOther(XMLByte const* from, XMLByte const* to)
{
    // Whole runs first, without a way out in the middle: that is what a compiler makes wide instructions of.
    constexpr std::ptrdiff_t kRun = 64;
    for (; to - from >= kRun; from += kRun)
    {
        XMLByte others = 0;
        for (std::ptrdiff_t i = 0; i < kRun; ++i)
            others |= static_cast<XMLByte>(!IsPlain(from[i]));
        if (others != 0)
            break;
    }
    return std::find_if_not(from, to, IsPlain);
}

// Hands the reader plain bytes as they come, but of others no more than the bytes up to the next ">". It decodes what
// it is handed as a whole and gives up all of it for a byte that is no text, so that with larger portions the elements
// in front of such a byte would be lost.
class TagByTagStream final : public xercesc::BinInputStream
{
public:
    explicit TagByTagStream(std::unique_ptr<xercesc::BinInputStream> file) : m_file(std::move(file)) {}

    XMLFilePos curPos() const override { return m_position; }
    XMLSize_t readBytes(XMLByte* const buffer, XMLSize_t const count) override
    {
        if (m_begin == m_end)
        {
            m_begin = 0;
            m_end = m_file->readBytes(m_bytes.data(), m_bytes.size());
        }
        XMLByte const* const from = m_bytes.data() + m_begin;
        XMLByte const* const to = m_bytes.data() + m_end;
        std::size_t const given = std::min<std::size_t>(static_cast<std::size_t>(PortionEnd(from, to) - from), count);
        std::copy_n(from, given, buffer);
        m_begin += given;
        m_position += given;
        return given;
    }
    XMLCh const* getContentType() const override { return nullptr; }

private:
    static XMLByte const* PortionEnd(XMLByte const* from, XMLByte const* to)
    {
        constexpr XMLByte kTagEnd = '>';
        XMLByte const* const other = FindOther(from, to);
        if (other == to)
            return to;
        // What stands in front of the tag that has the other byte is plain.
        auto const lastEnd = std::find(std::reverse_iterator(other), std::reverse_iterator(from), kTagEnd);
        if (lastEnd.base() != from)
            return lastEnd.base();
        XMLByte const* const end = std::find(other, to, kTagEnd);
        // Behind the byte of a ">" stand the zeros of a wider encoding.
        return std::find_if(end == to ? to : end + 1, to, [](XMLByte byte) { return byte != 0; });
    }

    std::unique_ptr<xercesc::BinInputStream> m_file;
    std::array<XMLByte, 16 * 1024> m_bytes;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    XMLFilePos m_position = 0;
};

class SideFileSource final : public FileInputSource
{
public:
    using FileInputSource::FileInputSource;

    xercesc::BinInputStream* makeStream() const override
    {
        std::unique_ptr<xercesc::BinInputStream> file(FileInputSource::makeStream());
        return file ? std::make_unique<TagByTagStream>(std::move(file)).release() : nullptr;
    }
};

bool ParseWithXerces(UTF16String const& path, SideFileReceiver& receiver, std::uint64_t told)
{
    XMLPlatformScope const platform;
    if (!platform.IsAcquired())
        return false;
    try
    {
        Handler handler(receiver, told);
        NoDocumentType noDocumentType;
        StopAtError stopAtError;
        SideFileSource const source(path);
        std::unique_ptr<xercesc::SAX2XMLReader> const reader(xercesc::XMLReaderFactory::createXMLReader());
        reader->setFeature(XMLUni::fgSAX2CoreNameSpaces, false);
        reader->setFeature(XMLUni::fgSAX2CoreValidation, false);
        reader->setFeature(XMLUni::fgXercesSchema, false);
        reader->setFeature(XMLUni::fgXercesLoadExternalDTD, false);
        // The reader is to take a portion when it has used up the one before, not to join the two.
        XMLSize_t lowWaterMark = 0;
        reader->setProperty(XMLUni::fgXercesLowWaterMark, &lowWaterMark);
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

}  // namespace

SideFileReceiver::SideFileReceiver() = default;
SideFileReceiver::~SideFileReceiver() = default;

bool ParseSideFile(UTF16String const& path, SideFileReceiver& receiver)
{
    // An observer is told lines and columns, which the parser alone knows.
    if (Observer()) [[unlikely]]
        return ParseWithXerces(path, receiver, 0);
    FilePtr const file(UTF8String(path), "rb");
    if (!file)
        return false;
    PlainSideFile plain(file, receiver);
    return plain.Read() || ParseWithXerces(path, receiver, plain.Told());
}

}  // namespace KVR
