#pragma once

#include <string>

#include "authoring/Export.h"
#include "authoring/StoreFile.h"
#include "framework/api/CustomProperty.h"

namespace KVR::Authoring
{

/// Writes a property file, streaming: XML in UTF-8 with an element "Property" for each. It stands beside the scene
/// file, under the same name with the extension ".kvrproperty".
///
/// Operations throw FileException when the file system refuses, and GeneralException for what the file cannot hold: a
/// text that is not UTF-8 or has a character that XML does not know, a number that is infinite or none, a time that is
/// no date of the years 1 to 9999.
class KVR_AUTHORING_API PropertyWriter
{
public:
    /// The property file's own path.
    explicit PropertyWriter(UTF16String const& path);
    /// Without a Finish nothing stays behind.
    ~PropertyWriter();

    /// A property with its own id and the id of its object. Ids may repeat.
    void Property(UTF8String const& id, UTF8String const& objectId, CustomProperty const& content);

    /// Ends the document; the file appears. Nothing can be written afterwards.
    void Finish();

private:
    StoreFile m_file;
    /// The element under way; it goes to the file as a whole.
    std::string m_element;
};

}  // namespace KVR::Authoring
