#pragma once

#include <xercesc/sax/InputSource.hpp>

#include "framework/api/UTF16String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// A file as Xerces reads it, opened by its UTF-8 name so that names in any script work under every locale. Its system
/// id is the absolute path, from which references in the document are resolved.
class KVR_XML_UTIL_API FileInputSource : public xercesc::InputSource
{
public:
    explicit FileInputSource(UTF16String const& path);
    ~FileInputSource() override;

    /// A stream that the caller owns; null when the file cannot be opened or is no regular one.
    xercesc::BinInputStream* makeStream() const override;

private:
    UTF16String m_path;
};

}  // namespace KVR
