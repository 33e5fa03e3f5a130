// A scene that the input tells to write, and the reading of it: what was accepted is served as it was written, and what
// is refused leaves no file.

#include <unistd.h>

#include <fuzzer/FuzzedDataProvider.h>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include "authoring/SceneWriter.h"
#include "framework/api/kvr_api.h"
#include "fuzz/InputFile.h"
#include "producer/XMLProducer.h"
#include "producer/XMLProducerOptions.h"

namespace
{

using namespace KVR;
using namespace KVR::Authoring;

void Expect(bool isGood)
{
    if (!isGood)
        std::abort();
}

bool IsSame(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0 || (a == 0.0 && b == 0.0);
}

// What the scene has to serve, by id.
struct Written
{
    std::map<std::string, UTF8String> labels;
    std::map<std::string, XYZ> points;
    std::map<std::string, InstanceRecord> instances;
    std::map<std::string, PropertyValue> properties;
};

class Author
{
public:
    Author(FuzzedDataProvider& input, SceneWriter& writer) : m_input(input), m_writer(writer) {}

    Written Write()
    {
        m_writer.BeginPart(Labelled(ComponentRecord(), "part"));
        while (m_input.ConsumeBool())
            AddPoint();
        m_writer.EndPart();
        m_writer.BeginAssembly(Labelled(ComponentRecord(), "assembly"));
        while (m_input.ConsumeBool())
            AddInstance();
        m_writer.EndAssembly();
        FileRecord file = Labelled(FileRecord(), "file");
        file.children.emplace_back("assembly", FileChildType::kAssembly);
        m_writer.BeginFile(file);
        m_writer.EndFile();
        m_writer.Finish();
        return std::move(m_written);
    }

private:
    template <class Record>
    Record Labelled(Record record, std::string const& id)
    {
        record.id = UTF8String(id);
        if (m_input.ConsumeBool())
        {
            record.label = UTF8String(m_input.ConsumeRandomLengthString(40));
            m_written.labels[id] = record.label;
        }
        return record;
    }

    std::string NewId()
    {
        std::string const text = m_input.ConsumeRandomLengthString(8);
        return text + std::to_string(m_written.points.size() + m_written.instances.size());
    }

    void AddPoint()
    {
        std::string const id = NewId();
        PointRecord point = Labelled(PointRecord(), id);
        for (double& x : point.position)
            x = m_input.ConsumeFloatingPoint<double>();
        m_written.points[id] = point.position;
        m_writer.Point(point);
    }

    void AddInstance()
    {
        std::string const id = NewId();
        InstanceRecord instance = Labelled(InstanceRecord(), id);
        instance.targetId = UTF8String("part");
        instance.isVisible = m_input.ConsumeBool();
        for (std::size_t i = 0; i < 12; ++i)
            if (m_input.ConsumeBool())
                instance.transform.SetElement(static_cast<int>(i / 4), static_cast<int>(i % 4),
                                              m_input.ConsumeFloatingPoint<double>());
        m_written.instances[id] = instance;
        m_writer.Instance(instance);
        if (m_input.ConsumeBool())
            AddProperty(id);
    }

    void AddProperty(std::string const& id)
    {
        PropertyValue property;
        property.SetProperty(UTF16String(UTF8String(m_input.ConsumeRandomLengthString(20))),
                             UTF16String(UTF8String(m_input.ConsumeRandomLengthString(20))));
        m_written.properties.insert_or_assign(id, property);
        m_writer.Property(UTF8String(id), property);
    }

    FuzzedDataProvider& m_input;
    SceneWriter& m_writer;
    Written m_written;
};

void Check(Written const& written, XMLProducer& producer)
{
    for (auto const& [id, label] : written.labels)
    {
        auto const* const object = producer.Load(UTF8String(id));
        Expect(object && UTF8String(object->Label()).View() == label.View());
    }
    for (auto const& [id, position] : written.points)
    {
        auto const* const point = dynamic_cast<IPoint const*>(producer.Load(UTF8String(id)));
        Expect(point && IsSame(point->X(), position[0]) && IsSame(point->Y(), position[1]) &&
               IsSame(point->Z(), position[2]));
    }
    for (auto const& [id, record] : written.instances)
    {
        auto const* const instance = dynamic_cast<IInstance const*>(producer.Load(UTF8String(id)));
        Expect(instance && instance->TargetId().Id().View() == record.targetId.View() &&
               instance->IsVisible() == record.isVisible);
        for (std::size_t i = 0; i < 12; ++i)
            Expect(IsSame(instance->Transform()->Elements()[i], record.transform.Elements()[i]));
    }
    for (auto const& [id, property] : written.properties)
        Expect(producer.Load(UTF8String(id))->PropertyIds().Size() == 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static Fuzz::InputFile const file("scene.xml");
    FuzzedDataProvider input(data, size);
    Written written;
    std::string const path(UTF8String(file.Path()).View());
    try
    {
        SceneWriter writer(file.Path());
        written = Author(input, writer).Write();
    }
    catch (Exception const&)
    {
        Expect(::access(path.c_str(), F_OK) != 0);
        return 0;
    }
    XMLProducerOptions options;
    XMLProducer producer(file.Path(), &options);
    producer.BeginProcess(IdSet(), nullptr, nullptr);
    Check(written, producer);
    producer.EndProcess();
    ::unlink(path.c_str());
    ::unlink((path.substr(0, path.size() - 4) + ".kvrproperty").c_str());
    return 0;
}
