#pragma once

#include <string>
#include <vector>

#include "exchange/source/SceneOptions.h"
#include "producer/XMLProducer.h"
#include "producer/XMLProducerOptions.h"

namespace KVR
{

/// A scene file with the producer that serves it. Making one opens nothing; it sets or clears the environment variable
/// by which document type declarations are refused, for the whole process.
class SceneFile
{
public:
    explicit SceneFile(SceneOptions const& options);
    SceneFile(SceneFile const&) = delete;
    SceneFile& operator=(SceneFile const&) = delete;

    XMLProducer& Producer() noexcept { return m_producer; }
    SceneOptions const& Options() const noexcept { return m_sceneOptions; }
    /// The side files that BeginProcess could not read, as paths; each as often as the scene names it.
    std::vector<std::string> const& UnreadSideFiles() const noexcept { return m_unread; }

private:
    SceneOptions m_sceneOptions;
    std::vector<std::string> m_unread;
    // In this order: the producer must go first.
    XMLProducerOptions m_options;
    XMLProducer m_producer;
};

}  // namespace KVR
