#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "framework/api/kvr_api.h"
#include "producer/XMLProducer.h"
#include "producer/XMLProducerOptions.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

/// A scene in a temporary folder, with the producer that reads it.
class TestScene
{
public:
    /// Writes the text to a file "scene.xml" of its own folder.
    explicit TestScene(std::string_view xml, std::string const& fileName = "scene.xml");

    /// Writes a side file beside the scene; folders on the way are made.
    TestScene& WithFile(std::string const& name, std::string_view bytes);
    /// Sets the prefix of new ids; to be called before Begin.
    TestScene& WithPrefix(char const* prefix);

    /// Runs BeginProcess.
    TestScene& Begin(EventManager const* events = nullptr);

    XMLProducer& Producer() { return *m_producer; }
    XMLProducerOptions& Options() { return m_options; }
    std::string const& Path() const { return m_path; }
    std::string const& Folder() const { return m_folder.Path(); }

    /// The object of that id; fails the test when there is none of that interface.
    template <class Interface>
    Interface& Get(char const* id)
    {
        auto* const object = dynamic_cast<Interface*>(m_producer->Load(id));
        if (!object)
            throw std::runtime_error(std::string("no such object: ") + id);
        return *object;
    }

    bool Has(char const* id) { return m_producer->Load(id) != nullptr; }
    /// The ids of a file's, assembly's or part's children.
    std::vector<std::string> ChildIds(char const* id);

private:
    TempFolder m_folder;
    std::string m_path;
    XMLProducerOptions m_options;
    std::unique_ptr<XMLProducer> m_producer;
};

/// Wide text of a test's narrow literal.
UTF16String Wide(char const* text);
/// The bytes of a value, for comparing.
std::string Text(UTF8String const& text);
std::string Text(UTF16String const& text);
std::vector<std::string> Ids(IdSet const& ids);

}  // namespace KVR::Test
