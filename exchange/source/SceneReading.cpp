#include "exchange/source/SceneReading.h"

#include <exception>

#include "exchange/source/EventLog.h"
#include "framework/api/IProducer.h"
#include "framework/api/IdSet.h"

namespace KVR
{

namespace
{

template <class Step>
std::optional<Failure> FailureOf(Step step)
{
    try
    {
        step();
        return std::nullopt;
    }
    catch (std::exception const& exception)
    {
        return Failure::Of(exception);
    }
}

}  // namespace

SceneReading SceneReading::Of(IProducer& producer)
{
    SceneReading reading;
    EventLog events;
    if (FailureOf([&] { reading.query = producer.QueryFile(); }))
        reading.query = nullptr;
    reading.failure = FailureOf([&] { producer.BeginProcess(IdSet(), nullptr, &events); });
    reading.rootFailure = FailureOf([&] { reading.rootId = producer.RootObjectId().Id(); });
    reading.events = events.Failures();
    return reading;
}

}  // namespace KVR
