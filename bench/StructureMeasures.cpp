#include "bench/StructureMeasures.h"

#include <functional>
#include <memory>
#include <random>
#include <stdexcept>
#include <vector>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "bench/BareParse.h"
#include "bench/ChildProcess.h"
#include "bench/ProcessorTime.h"
#include "bench/SceneGenerator.h"
#include "framework/api/IObject.h"
#include "framework/api/IdSet.h"
#include "producer/XMLProducer.h"

namespace KVR::Bench
{

namespace
{

constexpr unsigned kLoads = 1'000'000;

void Begin(IProducer& producer)
{
    producer.BeginProcess(IdSet(), nullptr, nullptr);
}

// What a process pays once, for its libraries' code and tables, is paid on a scene of next to nothing beforehand; what
// is measured is what the scene itself costs. As a host should, the process holds the platform for its lifetime.

Figures MeasureParse(Scenes const& scenes)
{
    xercesc::XMLPlatformUtils::Initialize();
    {
        xercesc::XercesDOMParser parser;
        ParseBare(parser, scenes.smallest);
    }
    double const memoryBefore = PeakResidentBytes();
    std::unique_ptr<xercesc::XercesDOMParser> parser;
    double const seconds = SecondsOf(
        [&]
        {
            parser = std::make_unique<xercesc::XercesDOMParser>();
            ParseBare(*parser, scenes.measured);
        });
    // The process ends with the document in it: taking it down is no part of the measurement.
    static_cast<void>(parser.release());
    return {{"seconds", seconds}, {"memory", PeakResidentBytes() - memoryBefore}};
}

std::vector<UTF8String> RandomIds(unsigned instances)
{
    std::mt19937 random(20240301);
    std::uniform_int_distribution<unsigned> pick(0, instances - 1);
    std::vector<UTF8String> ids;
    ids.reserve(kLoads);
    for (unsigned i = 0; i < kLoads; ++i)
        ids.emplace_back(InstanceId(pick(random)));
    return ids;
}

double MeasureLoads(IProducer& producer, unsigned instances)
{
    std::vector<UTF8String> const ids = RandomIds(instances);
    unsigned found = 0;
    double const seconds = SecondsOf(
        [&]
        {
            for (UTF8String const& id : ids)
                found += producer.Load(id) ? 1 : 0;
        });
    if (found != kLoads)
        throw std::runtime_error("The producer lacks instances of the scene");
    return seconds / kLoads * 1e9;
}

// Asks for objects when the scene was read, and answers how long one took in nanoseconds.
using Loads = std::function<double(IProducer& producer)>;

Figures RunProducer(Scenes const& scenes, Loads const& loads)
{
    xercesc::XMLPlatformUtils::Initialize();
    {
        XMLProducer producer(UTF16String(scenes.smallest.wstring()), nullptr);
        Begin(producer);
    }
    double const memoryBefore = PeakResidentBytes();
    double const residentBefore = ResidentBytes();
    XMLProducer producer(UTF16String(scenes.measured.wstring()), nullptr);
    double const begin = SecondsOf([&] { Begin(producer); });
    double const memory = PeakResidentBytes() - memoryBefore;
    double const kept = ResidentBytes() - residentBefore;
    double const load = loads(producer);
    double const end = SecondsOf([&] { producer.EndProcess(); });
    return {{"begin", begin}, {"memory", memory}, {"kept", kept}, {"load", load}, {"end", end}};
}

Round Measure(Scenes const& scenes, Loads const& loads)
{
    Figures const bare = InChildProcess([&] { return MeasureParse(scenes); });
    Figures const producer = InChildProcess([&] { return RunProducer(scenes, loads); });
    return {bare.at("seconds"),  bare.at("memory"),   producer.at("begin"), producer.at("memory"),
            producer.at("kept"), producer.at("load"), producer.at("end")};
}

}  // namespace

Round MeasureRound(Scenes const& scenes, unsigned instances)
{
    return Measure(scenes, [&](IProducer& producer) { return MeasureLoads(producer, instances); });
}

Round MeasureRound(Scenes const& scenes, std::string const& id)
{
    return Measure(scenes,
                   [&](IProducer& producer)
                   {
                       if (!producer.Load(UTF8String(id.c_str())))
                           throw std::runtime_error("The producer lacks an object of the scene");
                       return 0.0;
                   });
}

}  // namespace KVR::Bench
