#include "framework/xml_util/XStr.h"

#include "framework/api/Unicode.h"

namespace KVR
{

XStr::XStr(char const* text) : m_text(Unicode::Utf16FromUtf8(text ? text : "")) {}
XStr::~XStr() = default;

}  // namespace KVR
