#pragma once

#include <memory>

#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

class IProperty;

/// Holds the properties of the file beside a scene file, as StreamProperties gives them; who needs each but once is
/// better served by that. The constructor streams the file.
class KVR_XML_UTIL_API PropertyReader
{
public:
    explicit PropertyReader(UTF16String const& sceneFilePath);
    /// Releases the properties; those that somebody retained live on.
    ~PropertyReader();
    PropertyReader(PropertyReader const&) = delete;
    PropertyReader& operator=(PropertyReader const&) = delete;

    /// The number of "Property" elements, usable or not.
    unsigned long long PropertyCount() const noexcept;
    /// The property, held by the reader, and the id of its object. False, with the outputs left alone, for an element
    /// without "ID" or "ObjectID", one whose value does not convert, and an index at or beyond the count.
    bool PropertyAndObjectIdAt(unsigned long long index, IProperty*& property, UTF8String& objectId) const;

private:
    class Content;
    std::unique_ptr<Content> m_content;
};

}  // namespace KVR
