#include "exchange/run/StageProgress.h"

#include <string>

namespace KVR
{

TellStage EachPercent(std::function<void(ProgressReport const&)> tell)
{
    return [tell = std::move(tell), last = std::string(), lastPercent = 0](char const* stage, double fraction) mutable
    {
        int const percent = static_cast<int>(100.0 * fraction);
        if (last == stage && lastPercent == percent)
            return;
        last = stage;
        lastPercent = percent;
        tell({last, fraction});
    };
}

void StageProgress::Show(Message_ProgressScope const&, Standard_Boolean)
{
    double const fraction = GetPosition();
    int const percent = static_cast<int>(100.0 * fraction);
    if (!m_tell || percent <= m_percent)
        return;
    m_percent = percent;
    m_tell(m_stage, fraction);
}

}  // namespace KVR
