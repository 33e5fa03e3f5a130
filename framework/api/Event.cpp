#include "framework/api/Event.h"

#include "framework/api/Exception.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

Event::Event() = default;
Event::~Event() = default;
IMessageProvider::~IMessageProvider() = default;
EventManager::~EventManager() = default;

ExceptionEvent::ExceptionEvent(EventTypeEnum type, Exception const& exception)
    : m_exception(exception.Clone()), m_type(type)
{
}

ExceptionEvent::~ExceptionEvent() = default;

Event* ExceptionEvent::Clone() const
{
    return new ExceptionEvent(m_type, *m_exception);
}

UTF16String ExceptionEvent::Message(IMessageProvider* provider) const
{
    return provider ? provider->MessageOf(*m_exception) : UTF16String(UTF8String(m_exception->what()));
}

}  // namespace KVR
