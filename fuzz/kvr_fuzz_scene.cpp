// A scene document of any content through a whole producer: query, read, ask every object, end.

#include <cstdlib>
#include <string>

#include "describe/AskEverything.h"
#include "describe/SilentAnswers.h"
#include "framework/api/kvr_api.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "fuzz/InputFile.h"
#include "producer/XMLProducer.h"
#include "producer/XMLProducerOptions.h"

namespace
{

using namespace KVR;

// Asks for everything, and keeps nothing of it.
class Answers final : public SilentAnswers
{
public:
    // Kernel entities are measured by the kernel's own code.
    bool BeginMember(Row const& row) override { return !row.isMeasured; }
};

void Check(UTF8String const& id, IObject* object)
{
    if (!object)
        return;
    if (object->Id().Compare(id.Value()) != 0)
        std::abort();
    auto const* const instance = dynamic_cast<IInstance const*>(object);
    if (instance && !instance->Transform())
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    // Document types are Xerces-C's own affair and would let an input read files and expand without end.
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    static Fuzz::InputFile const file("scene.xml");
    file.Write(data, size);
    XMLProducerOptions options;
    XMLProducer producer(file.Path(), &options);
    if (size % 2 == 0)
        producer.SetNewObjectIdPrefix("n");
    if (size % 3 == 0)
        producer.QueryFile();
    try
    {
        producer.BeginProcess(IdSet(), nullptr, nullptr);
        static std::string const kExtensionTypes[] = {"t"};
        Answers answers;
        AskEverything(producer, {}, kExtensionTypes, answers,
                      [](UTF8String const& id, IObject* object, Interface const*) { Check(id, object); });
    }
    catch (Exception const&)
    {
        // A scene that is refused, or has no root.
    }
    producer.EndProcess();
    return 0;
}
