#pragma once

#include <cstdint>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/util/XercesDefs.hpp>

#include "framework/api/UTF16String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// An element of a document that streams by. The pointers are valid during the call.
struct StreamedElement
{
    /// Counts all elements in the order of their start tags, from 0.
    std::uint64_t number = 0;
    /// 0 for the root.
    std::uint64_t depth = 0;
    /// As written, prefix and all.
    XMLCh const* name = nullptr;
    /// As written, declarations of namespaces among them.
    xercesc::Attributes const* attributes = nullptr;
    /// Behind the start tag, both from 1.
    std::uint64_t line = 0;
    std::uint64_t column = 0;
    /// The bytes of the document up to there; 0 for an element that an entity brought.
    std::uint64_t end = 0;
};

/// Takes the elements of a document. What it throws goes on to the caller.
class KVR_XML_UTIL_API DocumentReceiver
{
public:
    virtual ~DocumentReceiver();
    DocumentReceiver(DocumentReceiver const&) = delete;
    DocumentReceiver& operator=(DocumentReceiver const&) = delete;

    virtual void Receive(StreamedElement const& element) = 0;  ///< Takes the next element.
    /// The element of that number has ended: the bytes of the document up to there, 0 as above.
    virtual void ReceiveEnd(std::uint64_t number, std::uint64_t end);

protected:
    DocumentReceiver();
};

/// How a stream ended.
struct DocumentStreamEnd
{
    /// Whether the document was well-formed, and the policy let it be read to its end.
    bool isWhole = false;
    /// Where it was not; 0 where that is not known.
    std::uint64_t line = 0;
    std::uint64_t column = 0;
};

/// Reads a document under the policy of this moment without keeping it, in a time in proportion to its bytes and in a
/// memory in proportion to its depth. Throws std::bad_alloc.
KVR_XML_UTIL_API DocumentStreamEnd StreamDocument(UTF16String const& path, DocumentReceiver& receiver);

}  // namespace KVR
