#pragma once

#include <span>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/util/XercesDefs.hpp>

#include "framework/api/UTF16String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// An attribute of an element, by its name as written, prefix and all.
struct SideFileAttribute
{
    XMLCh const* name;
    XMLCh const* value;
};

/// The beginning of an element. All of it is valid during the call.
struct SideFileElement
{
    /// As written, prefix and all.
    XMLCh const* name;
    /// In the order of the file, each name once.
    std::span<SideFileAttribute const> attributes;
    /// Behind the start tag; known to every ReadObserver, and null when there is none.
    xercesc::Locator const* place;
};

/// Takes the elements of a side file. What it throws goes on to the caller.
class KVR_XML_UTIL_API SideFileReceiver
{
public:
    virtual ~SideFileReceiver();
    SideFileReceiver(SideFileReceiver const&) = delete;
    SideFileReceiver& operator=(SideFileReceiver const&) = delete;

    virtual void Begin(SideFileElement const& element) = 0;  ///< Takes the next element.
    virtual void End() = 0;                                  ///< The innermost element that was begun has ended.

protected:
    SideFileReceiver();
};

/// Streams the elements of an XML side file. Side files are read without document types: a file ends at a declaration
/// of one that has, or refers to, any content. Whatever stood before an error has reached the receiver, an error of
/// encoding included.
///
/// Answers whether the file was there and well-formed to its end. An exception of the receiver's own (out of memory)
/// goes on.
KVR_XML_UTIL_API bool ParseSideFile(UTF16String const& path, SideFileReceiver& receiver);

}  // namespace KVR
