#pragma once

#include <vector>

#include "exchange/source/Failure.h"
#include "framework/api/Event.h"

namespace KVR
{

/// Keeps what the events of a producer tell, in the order of their delivery.
class EventLog : public EventManager
{
public:
    void PostEvent(Event* event) const override;

    std::vector<Failure> const& Failures() const noexcept { return m_failures; }

private:
    // Events arrive through a const operation.
    mutable std::vector<Failure> m_failures;
};

}  // namespace KVR
