#include "host/PaintedText.h"

#include "output/Output.h"
#include "output/SafeText.h"

namespace KVR
{

void PaintedText::Paint(std::string_view code)
{
    if (!m_inColor)
        return;
    m_out.Put("\x1b[");
    m_out.Put(code);
    m_out.Put('m');
}

void PaintedText::PutObject(std::string_view kind, std::string_view label, std::string_view id)
{
    Paint(kKind);
    m_out.Put(kind);
    Paint(kPlain);
    m_out.Put(" \"");
    PutEscaped(m_out, label);
    m_out.Put("\" ");
    Paint(kId);
    PutEscaped(m_out, id);
    Paint(kPlain);
}

void PaintedText::PutVisibility(bool isVisible, std::string_view end)
{
    Paint(isVisible ? kPlain : kHidden);
    m_out.Put(isVisible ? std::string_view(", visible") : std::string_view(", hidden"));
    m_out.Put(end);
    Paint(kPlain);
}

}  // namespace KVR
