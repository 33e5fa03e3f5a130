#pragma once

#include <string>

#include "authoring/Export.h"
#include "authoring/StoreFile.h"
#include "framework/api/DataIdToPersistentIdMap.h"

namespace KVR::Authoring
{

/// Writes a side file of persistent ids, streaming: XML in UTF-8 with an element "SubObjectPersistentIds" for each
/// object and in it an element "SubObject" for each face or edge.
///
/// Operations throw FileException when the file system refuses, and GeneralException for a text that is not UTF-8 or
/// has a character that XML does not know.
class KVR_AUTHORING_API SubObjectPersistentIdWriter
{
public:
    explicit SubObjectPersistentIdWriter(UTF16String const& path);
    /// Without a Finish nothing stays behind.
    ~SubObjectPersistentIdWriter();

    /// The persistent ids of the faces and edges of one object, by their data ids. An object may come more than once.
    void Object(UTF8String const& objectId, DataIdToPersistentIdMap const& ids);
    /// Ends the document; the file appears. Nothing can be written afterwards.
    void Finish();

private:
    StoreFile m_file;
    /// The element under way; it goes to the file as a whole.
    std::string m_element;
};

}  // namespace KVR::Authoring
