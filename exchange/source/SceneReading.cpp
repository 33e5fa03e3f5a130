#include "exchange/source/SceneReading.h"

#include <exception>
#include <new>

#include "exchange/source/EventLog.h"
#include "exchange/source/MemoryLimit.h"
#include "exchange/source/SceneFile.h"
#include "exchange/source/SideFileCheck.h"
#include "framework/api/Exception.h"
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
    catch (std::bad_alloc const&)
    {
        throw;
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

SceneReading SceneReading::Of(SceneFile& file)
{
    SceneReading reading;
    if (std::string const problem = MemoryProblem(file.Options()); !problem.empty())
    {
        reading.failure = Failure::Of(GeneralException(UTF8String(problem)));
        return reading;
    }
    bool const isStrict = file.Options().strict;
    using Extent = SideFileCheck::Extent;
    SideFileCheck check(file.Options().path, isStrict || file.NeedsGeometry() ? Extent::kContents : Extent::kSizes);
    if (!isStrict || check.Problems().empty())
    {
        reading = Of(file.Producer());
        for (std::string const& path : file.UnreadSideFiles())
            check.AddUnread(path);
    }
    if (isStrict && !reading.failure && !check.Problems().empty())
        reading.failure = Failure::Of(GeneralException(UTF8String(check.Sentence())));
    if (!isStrict)
        reading.sideFileProblems = check.Problems();
    return reading;
}

}  // namespace KVR
