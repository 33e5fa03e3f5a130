// The life of a producer: open, scan, end.

#include <cstdint>
#include <exception>
#include <filesystem>
#include <new>
#include <system_error>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "framework/api/Exception.h"
#include "framework/api/IObject.h"
#include "framework/api/LocaleHelper.h"
#include "framework/gmk_interface/GMKHistoryUtil.h"
#include "framework/xml_util/DocumentParser.h"
#include "framework/xml_util/FileInputSource.h"
#include "framework/xml_util/ReadObserver.h"
#include "framework/xml_util/XMLPlatform.h"
#include "producer/DocumentScan.h"
#include "producer/ObjectNodeIndex.h"
#include "producer/PropertyAttachment.h"
#include "producer/SideFileIndex.h"
#include "producer/StoreNeeds.h"
#include "producer/XMLProducerImpl.h"
#include "structure/XMLFileQueryResult.h"

namespace KVR
{

namespace
{

// A large document was most of what the process holds, below the objects, so that the allocator would keep it.
void TrimHeap(UTF16String const& documentPath)
{
#ifdef __GLIBC__
    constexpr std::uintmax_t kLargeDocument = 4 << 20;
    std::error_code error;
    std::uintmax_t const size = std::filesystem::file_size(UTF8String(documentPath).Value(), error);
    if (!error && size >= kLargeDocument)
        malloc_trim(0);
#endif
}

}  // namespace

XMLProducerImpl::XMLProducerImpl(UTF16String const& path, XMLProducerOptions* producerOptions)
    : objectCollector(std::make_unique<ObjectCollector>()),
      options(producerOptions),
      objectNodeIndex(std::make_unique<ObjectNodeIndex>()),
      sideFileIndex(std::make_unique<SideFileIndex>()),
      m_fileName(path)
{
}

XMLProducerImpl::~XMLProducerImpl()
{
    EndProcess();
}

// Whatever a parser throws at a bad file, the answer is false. A failed open keeps its hold on Xerces: the parser that
// failed lives until the end or the next try.
bool XMLProducerImpl::OpenDocument()
{
    if (m_parser && m_isParsed)
        return true;
    LocaleHelper const locale{UTF8String()};
    if (!m_isParsed && !XMLPlatform::Acquire())
        return false;
    try
    {
        m_parser = MakeDocumentParser();
        m_parser->parse(FileInputSource(m_fileName));
        m_isParsed = m_parser->getErrorCount() == 0;
    }
    catch (std::bad_alloc const&)
    {
        throw;
    }
    catch (xercesc::OutOfMemoryException const&)
    {
        throw std::bad_alloc();
    }
    catch (...)
    {
        m_isParsed = false;
    }
    return m_isParsed;
}

// What the query answers is taken beforehand, since the document may not be there any more when the host asks. Whoever
// listens to the reading looks into the document afterwards.
void XMLProducerImpl::ReleaseDocument()
{
    if (Observer())
        return;
    QueryFile();
    objectNodeIndex->Clear();
    m_parser.reset();
    if (StoreNeeds::Of(options).returnsMemory)
        TrimHeap(m_fileName);
}

FileQueryResult const* XMLProducerImpl::QueryFile()
{
    if (m_queryResult)
        return m_queryResult.get();
    m_queryResult = std::make_unique<XMLFileQueryResult>();
    try
    {
        if (OpenDocument())
            m_queryResult->Fill(m_parser.get());
    }
    catch (...)
    {
        // The host gets the result unfilled.
    }
    return m_queryResult.get();
}

RootId XMLProducerImpl::RootObjectId() const
{
    if (!rootId)
        throw GeneralException("Could not find the root object id.");
    return *rootId;
}

IUniverse const* XMLProducerImpl::LoadUniverse() const
{
    return universe.get();
}

IObject* XMLProducerImpl::Load(UTF8String const& id) const
{
    return objectCollector ? objectCollector->QueryObject(id) : nullptr;
}

void XMLProducerImpl::Dispose(UTF8String const& id)
{
    if (objectCollector)
        objectCollector->Dispose(id);
}

void XMLProducerImpl::BeginProcess(EventManager const* manager)
{
    // After the end there is nothing to read into.
    if (!objectCollector)
        return;
    eventManager = manager;
    if (!OpenDocument())
    {
        FileException exception;
        exception.SetFileName(m_fileName);
        exception.SetErrorCode(FileException::kFileErrorCode_CannotRead);
        exception.SetReporter(kComponentRole_Producer);
        throw FileException(exception);
    }
    ScanDocument(m_parser.get(), m_fileName, *this);
    if (StoreNeeds::Of(options).properties)
        AttachProperties(m_fileName, *this);
    ReleaseDocument();
}

// The parser goes late: readers that ended in an exception leave objects beside the document.
void XMLProducerImpl::EndProcess()
{
    rootId.reset();
    objectCollector.reset();
    m_objectIdMap.reset();
    m_queryResult.reset();
    sideFileIndex.reset();
    objectNodeIndex.reset();
    universe.reset();
    formerUniverses.clear();
    m_parser.reset();
    if (m_isParsed)
    {
        XMLPlatform::Release();
        GMKHistoryUtil::Clear(m_historyStream.get());
        m_isParsed = false;
    }
}

void XMLProducerImpl::SetNewObjectIdPrefix(UTF8String const& prefix)
{
    // The numbers go on from where a former prefix left them.
    m_objectIdMap = std::make_unique<IdMap>();
    m_newObjectIdPrefix = prefix;
}

}  // namespace KVR
