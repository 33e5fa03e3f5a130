#include "exchange/model/ReadingProgress.h"

#include <cstdio>

namespace KVR
{

ReadingProgress::~ReadingProgress()
{
    if (m_isShown && m_percent >= 0)
        std::fputs("\r\033[K", stderr);
}

void ReadingProgress::Show(Message_ProgressScope const&, Standard_Boolean)
{
    int const percent = static_cast<int>(100.0 * GetPosition());
    if (!m_isShown || percent == m_percent)
        return;
    m_percent = percent;
    std::fprintf(stderr, "\rreading %3d %%", percent);
}

}  // namespace KVR
