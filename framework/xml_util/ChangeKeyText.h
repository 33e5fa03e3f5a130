#pragma once

#include <memory>
#include <xercesc/util/XercesDefs.hpp>

#include "framework/api/Enums.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// The text by which a host tells whether an object has changed: a copy of the document's, since objects stay when the
/// document goes. Most objects have none, and pay a pointer.
class KVR_XML_UTIL_API ChangeKeyText
{
public:
    ChangeKeyText() = default;
    /// Copies the text; null is none.
    explicit ChangeKeyText(XMLCh const* text);

    /// Not specified when there is no text; the empty one is one.
    IsValueSpecifiedEnum Text(UTF8String& text) const;

private:
    std::unique_ptr<XMLCh[]> m_text;
};

}  // namespace KVR
