#pragma once

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

    XMLProducer& Producer() noexcept { return m_producer; }

private:
    // In this order: the producer must go first.
    XMLProducerOptions m_options;
    XMLProducer m_producer;
};

}  // namespace KVR
