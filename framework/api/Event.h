#pragma once

#include <memory>

#include "framework/api/Export.h"
#include "framework/api/UTF16String.h"

namespace KVR
{

class Exception;

/// Something that happened while a scene was read and did not stop the reading.
class KVR_API Event
{
public:
    virtual ~Event();

protected:
    Event();
    Event(Event const&) = default;
    Event& operator=(Event const&) = default;
};

/// Words an exception for the user; a host supplies it in its user's language.
class KVR_API IMessageProvider
{
public:
    virtual ~IMessageProvider();
    /// The words for the exception, as the user is to read them.
    virtual UTF16String MessageOf(Exception const& exception) = 0;
};

/// An event that carries an exception. It holds a copy of its own, so that an event that was cloned stays whole when
/// the producer has destroyed the first one and its exception.
class KVR_API ExceptionEvent : public Event
{
public:
    enum EventTypeEnum : int
    {
        kEventType_Exception = 0
    };

    ExceptionEvent(EventTypeEnum type, Exception const& exception);
    ~ExceptionEvent() override;

    /// The kind of the event: that of an exception for every event of this producer.
    EventTypeEnum Type() const noexcept { return m_type; }
    /// The exception, owned by the event.
    Exception const& CarriedException() const noexcept { return *m_exception; }
    /// A copy of the event, owned by the caller.
    virtual Event* Clone() const;
    /// What the provider says of the exception; without a provider the exception's own words.
    virtual UTF16String Message(IMessageProvider* provider) const;

private:
    std::unique_ptr<Exception> m_exception;
    EventTypeEnum m_type;
};

/// Receives a producer's events; the host derives from it.
class KVR_API EventManager
{
public:
    virtual ~EventManager();
    /// Delivers the event on the producer's thread. The producer destroys it after the call: a receiver that keeps it
    /// must clone it.
    virtual void PostEvent(Event* event) const = 0;
};

}  // namespace KVR
