// The smallest translation host: opens a scene and prints its product tree, a line for each occurrence.

#include <kvr/framework/api/kvr_api.h>
#include <kvr/producer/XMLProducer.h>
#include <kvr/producer/XMLProducerOptions.h>

#include <exception>
#include <iostream>
#include <string>

namespace
{

// A scene may refer back to itself.
constexpr unsigned kDeepest = 100;

void Print(KVR::XMLProducer& producer, KVR::UTF8String const& id, unsigned depth);

template <typename Owner>
void PrintWithChildren(KVR::XMLProducer& producer, char const* kind, Owner const& owner, unsigned depth)
{
    std::cout << std::string(2 * depth, ' ') << kind << ' ' << KVR::UTF8String(owner.Label()).Value() << '\n';
    for (unsigned long long i = 0; i < owner.ChildCount(); ++i)
        Print(producer, owner.ChildAt(i).Id(), depth + 1);
}

void Print(KVR::XMLProducer& producer, KVR::UTF8String const& id, unsigned depth)
{
    if (depth > kDeepest)
        return;
    // Objects name each other by id. What Load answers belongs to the producer; it is null for an id without an object.
    KVR::IObject* object = producer.Load(id);
    if (auto* file = dynamic_cast<KVR::IFile*>(object))
        PrintWithChildren(producer, "file", *file, depth);
    else if (auto* assembly = dynamic_cast<KVR::IAssembly*>(object))
        PrintWithChildren(producer, "assembly", *assembly, depth);
    else if (auto* part = dynamic_cast<KVR::IPart*>(object))
        PrintWithChildren(producer, "part", *part, depth);
    else if (auto* instance = dynamic_cast<KVR::IInstance*>(object))
        Print(producer, instance->TargetId().Id(), depth);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::cerr << "usage: host SCENE.xml\n";
        return 2;
    }
    KVR::XMLProducerOptions options;  // must outlive the producer
    KVR::XMLProducer producer(KVR::UTF16String(KVR::UTF8String(argv[1])), &options);
    try
    {
        producer.BeginProcess(KVR::IdSet(), nullptr, nullptr);  // reads the whole scene
        KVR::UTF8String const root = producer.RootObjectId().Id();
        if (!producer.Load(root))  // such as of a root file without an id
        {
            std::cerr << "host: the root of the scene is no object\n";
            return 1;
        }
        Print(producer, root, 0);
        producer.EndProcess();  // frees every object
    }
    catch (std::exception const& error)
    {
        std::cerr << "host: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
