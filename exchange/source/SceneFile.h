#pragma once

#include <string>
#include <vector>

#include "exchange/source/SceneOptions.h"
#include "producer/StoreNeeds.h"
#include "producer/XMLProducer.h"
#include "producer/XMLProducerOptions.h"

namespace KVR
{

/// A scene file with the producer that serves it. Making one opens nothing; it sets or clears the environment variable
/// by which document type declarations are refused, for the whole process.
class SceneFile
{
public:
    /// Of side files that are not needed, the producer reads what decides which objects there are.
    explicit SceneFile(SceneOptions const& options, StoreNeeds const& needs = {});
    SceneFile(SceneFile const&) = delete;
    SceneFile& operator=(SceneFile const&) = delete;

    XMLProducer& Producer() noexcept { return m_producer; }
    SceneOptions const& Options() const noexcept { return m_sceneOptions; }
    /// Whether the stores of geometry are read whatever they decide.
    bool NeedsGeometry() const noexcept { return m_needsGeometry; }
    /// The side files that BeginProcess could not read, as paths; each as often as the scene names it.
    std::vector<std::string> const& UnreadSideFiles() const noexcept { return m_unread; }

private:
    SceneOptions m_sceneOptions;
    bool m_needsGeometry;
    std::vector<std::string> m_unread;
    // In this order: the producer must go first.
    XMLProducerOptions m_options;
    XMLProducer m_producer;
};

}  // namespace KVR
