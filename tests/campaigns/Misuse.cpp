// What docs/hosting.md allows and forbids hosts: what is allowed works, and what is forbidden is tried in a process of
// its own, which tells what comes of it.

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <xercesc/util/PlatformUtils.hpp>

#include "framework/api/kvr_api.h"
#include "framework/gmk_interface/DetachableGMKBrep.h"
#include "framework/kernel/entity.h"
#include "framework/xml_util/DocumentPolicy.h"
#include "producer/XMLProducer.h"
#include "producer/XMLProducerOptions.h"
#include "tests/campaigns/Campaign.h"
#include "tests/campaigns/Scenes.h"

namespace KVR::Campaigns
{

namespace
{

void Expect(bool isSo)
{
    if (!isSo)
        throw std::runtime_error("not as expected");
}

std::unique_ptr<XMLProducer> Made(std::string const& path, XMLProducerOptions* options = nullptr)
{
    return std::make_unique<XMLProducer>(UTF16String(UTF8String(path)), options);
}

std::unique_ptr<XMLProducer> Opened(std::string const& path)
{
    auto producer = Made(path);
    producer->BeginProcess(IdSet(), nullptr, nullptr);
    return producer;
}

std::size_t FacesOf(BODY const& body)
{
    return body.FaceList().size();
}

class Throwing final : public EventManager
{
public:
    void PostEvent(Event*) const override { throw std::runtime_error("the receiver"); }
};

class Ending final : public EventManager
{
public:
    explicit Ending(XMLProducer& producer) : m_producer(producer) {}
    void PostEvent(Event*) const override { m_producer.EndProcess(); }

private:
    XMLProducer& m_producer;
};

// A store whose content is not what was written posts an event.
void Spoil(std::string const& scene)
{
    std::string const store = (std::filesystem::path(scene).parent_path() / "complete.sab").string();
    std::string bytes = ReadBytes(store);
    bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 1);
    WriteBytes(store, bytes);
}

void Side(std::size_t threads, std::function<void()> const& work)
{
    std::vector<std::thread> all;
    for (std::size_t i = 0; i < threads; ++i)
        all.emplace_back(work);
    for (std::thread& thread : all)
        thread.join();
}

struct Use
{
    char const* name;
    bool isAllowed;
    void (*work)(std::string const& scene);
};

constexpr Use kUses[] = {
    {"EndProcess before all, and twice", true,
     [](std::string const& scene)
     {
         auto const producer = Made(scene);
         producer->EndProcess();
         producer->EndProcess();
         auto const other = Opened(scene);
         other->EndProcess();
         other->EndProcess();
     }},
    {"all questions to a producer that was never opened", true,
     [](std::string const& scene)
     {
         auto const producer = Made(scene);
         Expect(!producer->Load("body") && !producer->LoadUniverse());
         producer->Dispose("body");
         bool isThrown = false;
         try
         {
             static_cast<void>(producer->RootObjectId());
         }
         catch (GeneralException const&)
         {
             isThrown = true;
         }
         Expect(isThrown);
     }},
    {"BeginProcess once more, also behind the end", true,
     [](std::string const& scene)
     {
         auto const producer = Opened(scene);
         producer->BeginProcess(IdSet(), nullptr, nullptr);
         Expect(producer->Load("body"));
         producer->EndProcess();
         producer->BeginProcess(IdSet(), nullptr, nullptr);
         Expect(!producer->Load("body"));
     }},
    {"QueryFile before and behind BeginProcess", true,
     [](std::string const& scene)
     {
         auto const producer = Made(scene);
         Expect(producer->QueryFile() == producer->QueryFile());
         producer->BeginProcess(IdSet(), nullptr, nullptr);
         Expect(producer->QueryFile() && producer->Load("body"));
     }},
    {"Load of what was disposed of, and Dispose once more", true,
     [](std::string const& scene)
     {
         auto const producer = Opened(scene);
         producer->Dispose("body");
         producer->Dispose("body");
         Expect(!producer->Load("body") && producer->Load("text-body"));
     }},
    {"a detached body behind the end of its producer", true,
     [](std::string const& scene)
     {
         std::unique_ptr<BODY> body;
         {
             auto const producer = Opened(scene);
             body.reset(dynamic_cast<DetachableGMKBrep*>(producer->Load("body"))->DetachBody());
         }
         Expect(body && FacesOf(*body) > 0);
     }},
    {"a producer that another thread ends", true,
     [](std::string const& scene)
     {
         auto producer = Opened(scene);
         std::thread([&] { producer.reset(); }).join();
     }},
    {"the files of a scene that go behind BeginProcess", true,
     [](std::string const& scene)
     {
         auto const producer = Opened(scene);
         std::filesystem::remove_all(std::filesystem::path(scene).parent_path());
         Expect(dynamic_cast<IBrep*>(producer->Load("body"))->Body());
     }},
    {"a host that forks, and goes on in both processes", true,
     [](std::string const& scene)
     {
         auto const producer = Opened(scene);
         pid_t const process = fork();
         Expect(process >= 0 && producer->Load("body"));
         producer->EndProcess();
         if (process == 0)
             _exit(0);
         int status = 0;
         waitpid(process, &status, 0);
         Expect(status == 0);
     }},
    {"sixteen threads that ask sixteen producers", true,
     [](std::string const& scene)
     {
         std::mutex lock;
         Side(16, [&] { Expect(AskScene(scene, nullptr, &lock).empty()); });
     }},
    {"a receiver of events that throws", true,
     [](std::string const& scene)
     {
         Spoil(scene);
         Throwing const events;
         auto const producer = Made(scene);
         bool isThrown = false;
         try
         {
             producer->BeginProcess(IdSet(), nullptr, &events);
         }
         catch (std::runtime_error const&)
         {
             isThrown = true;
         }
         Expect(isThrown);
     }},
    {"a receiver of events that ends the producer", false,
     [](std::string const& scene)
     {
         Spoil(scene);
         auto const producer = Made(scene);
         producer->BeginProcess(IdSet(), nullptr, std::make_unique<Ending>(*producer).get());
     }},
    {"an object asked behind the end of its producer", false,
     [](std::string const& scene)
     {
         auto const producer = Opened(scene);
         IObject const* const object = producer->Load("body");
         producer->EndProcess();
         static_cast<void>(object->Label());
     }},
    {"an object asked behind its Dispose", false,
     [](std::string const& scene)
     {
         auto const producer = Opened(scene);
         auto* const body = dynamic_cast<IBrep*>(producer->Load("body"));
         producer->Dispose("body");
         static_cast<void>(body->Body());
     }},
    {"an object that the host deletes", false,
     [](std::string const& scene)
     {
         auto const producer = Opened(scene);
         delete producer->Load("body");
     }},
    {"a body that was not detached, and the host deletes", false,
     [](std::string const& scene)
     {
         auto const producer = Opened(scene);
         delete dynamic_cast<IBrep*>(producer->Load("body"))->Body();
     }},
    {"options that end before the scene is opened", false,
     [](std::string const& scene)
     {
         auto options = std::make_unique<XMLProducerOptions>();
         auto const producer = Made(scene, options.get());
         options.reset();
         producer->BeginProcess(IdSet(), nullptr, nullptr);
     }},
    {"Xerces-C ended under a producer", false,
     [](std::string const& scene)
     {
         auto const producer = Opened(scene);
         xercesc::XMLPlatformUtils::Terminate();
         xercesc::XMLPlatformUtils::Terminate();
         producer->EndProcess();
     }},
    {"sixteen threads that open producers without the lock", false,
     [](std::string const& scene)
     {
         Side(16,
              [&]
              {
                  for (int i = 0; i < 20; ++i)
                      Expect(AskScene(scene).empty());
              });
     }},
    {"two threads that open one producer", false,
     [](std::string const& scene)
     {
         auto const producer = Made(scene);
         Side(2, [&] { producer->BeginProcess(IdSet(), nullptr, nullptr); });
     }},
    {"two threads that ask and dispose of one producer's objects", false,
     [](std::string const& scene)
     {
         auto const producer = Opened(scene);
         Side(2,
              [&]
              {
                  for (char const* const id : {"body", "text-body"})
                  {
                      static_cast<void>(producer->Load(id));
                      producer->Dispose(id);
                  }
              });
     }},
};

// What came of it, in words; empty when it came to its end as it should.
std::string OutcomeOf(Use const& use, std::string const& scene)
{
    std::fflush(stdout);
    pid_t const process = fork();
    if (process < 0)
        throw std::runtime_error("no child process");
    if (process == 0)
    {
        alarm(60);
        std::freopen("/dev/null", "w", stderr);
        int status = 1;
        try
        {
            use.work(scene);
            status = 0;
        }
        catch (std::exception const&)
        {
            status = 2;
        }
        _exit(status);
    }
    int status = 0;
    waitpid(process, &status, 0);
    if (WIFSIGNALED(status))
        return WTERMSIG(status) == SIGALRM ? "hangs" : std::string("ends the process: ") + strsignal(WTERMSIG(status));
    if (WEXITSTATUS(status) == 2)
        return "other answers";
    return WEXITSTATUS(status) == 0 ? std::string() : "ends the process";
}

}  // namespace

void RunMisuse(double scale, Tally& tally)
{
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    std::uint64_t const times = Share(scale, 10);
    for (Use const& use : kUses)
    {
        std::vector<std::string> outcomes;
        for (std::uint64_t i = 0; i < times; ++i)
        {
            SceneCopies copies;
            std::string const outcome = OutcomeOf(use, copies.Make(SceneCopies::Kind::kComplete));
            ++tally.inputs;
            if (use.isAllowed && !outcome.empty())
                tally.Find(tally.wrong, std::string(use.name) + ": " + outcome);
            if (!use.isAllowed && std::find(outcomes.begin(), outcomes.end(), outcome) == outcomes.end())
                outcomes.push_back(outcome);
        }
        for (std::string const& outcome : outcomes)
            std::printf("  forbidden: %s: %s\n", use.name, outcome.empty() ? "no harm seen" : outcome.c_str());
    }
}

}  // namespace KVR::Campaigns
