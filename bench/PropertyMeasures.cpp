#include "bench/PropertyMeasures.h"

#include <fmt/format.h>
#include <malloc.h>
#include <fstream>
#include <stdexcept>
#include <string>
#include <xercesc/util/PlatformUtils.hpp>

#include "authoring/PropertyWriter.h"
#include "bench/BareParse.h"
#include "bench/ChildProcess.h"
#include "bench/ProcessorTime.h"
#include "framework/api/IObject.h"
#include "framework/api/IdSet.h"
#include "producer/XMLProducer.h"

namespace KVR::Bench
{

namespace
{

constexpr unsigned kInstances = 1000;

UTF8String Text(std::string const& text)
{
    return UTF8String(text.c_str());
}

CustomProperty Content(unsigned index)
{
    UTF16String const name(Text(fmt::format("Property {}", index % 50)));
    CustomProperty content;
    switch (index % 5)
    {
        case 0:
            content.SetProperty(name, static_cast<int>(index));
            break;
        case 1:
            content.SetProperty(name, index * 0.25);
            break;
        case 2:
            content.SetProperty(name, index % 2 == 0);
            break;
        case 3:
        {
            struct tm time = {};
            time.tm_year = 124;
            time.tm_mon = 2;
            time.tm_mday = 1;
            time.tm_sec = static_cast<int>(index % 60);
            content.SetProperty(name, time);
            break;
        }
        default:
            content.SetProperty(name, UTF16String(Text(fmt::format("supplier no. {}", index % 1000))));
    }
    return content;
}

double BytesInUse()
{
    struct mallinfo2 const info = mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

unsigned long long PropertiesOf(IProducer& producer)
{
    unsigned long long count = 0;
    for (unsigned i = 0; i < kInstances; ++i)
    {
        if (IObject const* const object = producer.Load(Text(fmt::format("i{}", i))))
            count += object->PropertyIds().Size();
    }
    return count;
}

Figures RunBare(PropertyScene const& scene, PropertyScene const& smallest)
{
    xercesc::XMLPlatformUtils::Initialize();
    StreamBare(smallest.properties);
    return {{"seconds", SecondsOf([&] { StreamBare(scene.properties); })}};
}

void Begin(IProducer& producer)
{
    producer.BeginProcess(IdSet(), nullptr, nullptr);
}

// What a process and the scene itself cost is paid beforehand, on the same scene with one property.
Figures RunProducer(PropertyScene const& scene, PropertyScene const& smallest)
{
    xercesc::XMLPlatformUtils::Initialize();
    XMLProducer first(UTF16String(smallest.scene.wstring()), nullptr);
    Begin(first);
    double const peakBefore = PeakResidentBytes();
    double const usedBefore = BytesInUse();
    XMLProducer producer(UTF16String(scene.scene.wstring()), nullptr);
    double const seconds = SecondsOf([&] { Begin(producer); });
    double const kept = BytesInUse() - usedBefore;
    double const peak = PeakResidentBytes() - peakBefore;
    if (PropertiesOf(producer) != (scene.isKept ? scene.entries : 0))
        throw std::runtime_error("The scene answers another number of properties");
    return {{"seconds", seconds}, {"kept", kept}, {"peak", peak}};
}

}  // namespace

void WritePropertyScene(PropertyScene const& scene)
{
    std::ofstream document(scene.scene);
    document << "<Scene><IUniverse/><IFile ID=\"f\" Label=\"\"><ChildSet><C ID=\"a\"/></ChildSet></IFile><IPart "
                "ID=\"p\" Label=\"\"/><IAssembly ID=\"a\" Label=\"\"><ChildSet>";
    for (unsigned i = 0; i < kInstances; ++i)
        document << fmt::format("<IInstance ID=\"i{}\"><Child ID=\"p\"/></IInstance>", i);
    document << "</ChildSet></IAssembly></Scene>";
    if (!document.flush())
        throw std::runtime_error("Cannot write the scene");
    Authoring::PropertyWriter writer{UTF16String(scene.properties.wstring())};
    unsigned const perObject = std::max(1U, scene.entries / kInstances);
    for (unsigned i = 0; i < scene.entries; ++i)
        writer.Property(Text(fmt::format("property{}", i)),
                        Text(fmt::format("{}{}", scene.isKept ? "i" : "none", i / perObject % kInstances)), Content(i));
    writer.Finish();
}

PropertyRound MeasureProperties(PropertyScene const& scene, PropertyScene const& smallest)
{
    Figures const bare = InChildProcess([&] { return RunBare(scene, smallest); });
    Figures const producer = InChildProcess([&] { return RunProducer(scene, smallest); });
    return {bare.at("seconds"), producer.at("seconds"), producer.at("kept"), producer.at("peak") - producer.at("kept")};
}

}  // namespace KVR::Bench
