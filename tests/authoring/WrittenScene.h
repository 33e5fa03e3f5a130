#pragma once

#include <algorithm>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "authoring/SceneWriter.h"
#include "framework/api/kvr_api.h"
#include "producer/XMLProducer.h"
#include "producer/XMLProducerOptions.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

/// A folder to write a scene into, and its producer once it is written.
class WrittenScene
{
public:
    UTF16String Path() const { return m_folder.PathOf("scene.xml"); }
    std::string NarrowPath() const { return m_folder.NarrowPathOf("scene.xml"); }
    std::string File(char const* name) const { return m_folder.NarrowPathOf(name); }
    std::vector<std::string> Files() const
    {
        std::vector<std::string> names;
        for (std::filesystem::directory_entry const& entry : std::filesystem::directory_iterator(m_folder.Path()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    XMLProducer& Begin()
    {
        m_producer = std::make_unique<XMLProducer>(Path(), &m_options);
        m_producer->BeginProcess(IdSet(), nullptr, nullptr);
        return *m_producer;
    }
    template <class Interface>
    Interface& Get(char const* id)
    {
        auto* const object = dynamic_cast<Interface*>(m_producer->Load(id));
        if (!object)
            throw std::runtime_error(std::string("no such object: ") + id);
        return *object;
    }

private:
    TempFolder m_folder;
    XMLProducerOptions m_options;
    std::unique_ptr<XMLProducer> m_producer;
};

inline Matrix3d Moved(double x)
{
    Matrix3d matrix;
    matrix.SetElement(0, 3, x);
    return matrix;
}

inline Authoring::FileRecord RootFile(std::vector<Authoring::FileChild> children)
{
    Authoring::FileRecord file;
    file.id = "file";
    file.label = "File";
    file.children = std::move(children);
    return file;
}

template <class Record>
Record Named(char const* id, char const* label = "")
{
    Record record;
    record.id = id;
    record.label = label;
    return record;
}

/// A file with one open part in it.
inline void BeginPart(Authoring::SceneWriter& scene)
{
    scene.BeginFile(RootFile({{"part", Authoring::FileChildType::kPart}}));
    scene.EndFile();
    scene.BeginPart(Named<Authoring::ComponentRecord>("part", "Part"));
}

}  // namespace KVR::Test
