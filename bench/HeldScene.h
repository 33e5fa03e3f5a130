#pragma once

#include <filesystem>
#include <stdexcept>

#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneReading.h"
#include "framework/api/UTF8String.h"

namespace KVR::Bench
{

/// A scene that a producer holds.
class HeldScene
{
public:
    /// Throws std::runtime_error when the scene cannot be read.
    explicit HeldScene(std::filesystem::path const& path)
        : m_file(OptionsOf(path)), m_reading(SceneReading::Of(m_file.Producer()))
    {
        if (!m_reading.rootId)
            throw std::runtime_error("The scene cannot be read");
    }

    IProducer& Producer() noexcept { return m_file.Producer(); }
    UTF8String const& RootId() const noexcept { return *m_reading.rootId; }

private:
    static SceneOptions OptionsOf(std::filesystem::path const& path)
    {
        SceneOptions options;
        options.path = path.string();
        return options;
    }

    SceneFile m_file;
    SceneReading m_reading;
};

}  // namespace KVR::Bench
