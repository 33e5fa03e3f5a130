#include "framework/xml_util/ChangeKeyText.h"

#include <algorithm>
#include <string>

#include "framework/xml_util/XMLStrUtil.h"

namespace KVR
{

ChangeKeyText::ChangeKeyText(XMLCh const* text)
{
    if (!text)
        return;
    std::size_t const size = std::char_traits<XMLCh>::length(text) + 1;
    m_text = std::make_unique_for_overwrite<XMLCh[]>(size);
    std::copy_n(text, size, m_text.get());
}

IsValueSpecifiedEnum ChangeKeyText::Text(UTF8String& text) const
{
    if (!m_text)
        return kIsValueSpecified_No;
    text = XMLStrUtil::XMLStrToAStr(m_text.get());
    return kIsValueSpecified_Yes;
}

}  // namespace KVR
