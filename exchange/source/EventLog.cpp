#include "exchange/source/EventLog.h"

#include "framework/api/Exception.h"

namespace KVR
{

void EventLog::PostEvent(Event* event) const
{
    // The event ends with this call: its content is copied, not the pointer. No other kind of event tells anything.
    if (auto const* exceptionEvent = dynamic_cast<ExceptionEvent const*>(event))
        m_failures.push_back(Failure::Of(exceptionEvent->CarriedException()));
}

}  // namespace KVR
