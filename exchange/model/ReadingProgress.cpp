#include "exchange/model/ReadingProgress.h"

namespace KVR
{

void ReadingProgress::Show(Message_ProgressScope const&, Standard_Boolean)
{
    double const fraction = GetPosition();
    int const percent = static_cast<int>(100.0 * fraction);
    if (!m_tell || percent == m_percent)
        return;
    m_percent = percent;
    m_tell(fraction);
}

}  // namespace KVR
