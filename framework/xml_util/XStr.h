#pragma once

#include <string>
#include <xercesc/util/XercesDefs.hpp>

#include "framework/xml_util/Export.h"

namespace KVR
{

/// Narrow text as document text, for the length of a scope.
class KVR_XML_UTIL_API XStr
{
public:
    /// From UTF-8; null gives the empty text.
    explicit XStr(char const* text);
    ~XStr();
    XStr(XStr const&) = delete;
    XStr& operator=(XStr const&) = delete;

    /// Valid while this object lives.
    XMLCh const* unicodeForm() const noexcept { return m_text.c_str(); }

private:
    std::u16string m_text;
};

}  // namespace KVR
