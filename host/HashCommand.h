#pragma once

#include <string>
#include <vector>

#include "host/SceneCommand.h"

namespace KVR
{

/// The command "hash": a digest of all that a scene serves, or one for each object.
class HashCommand final : public SceneCommand
{
public:
    explicit HashCommand(CLI::App& program);

private:
    std::string Show(IProducer& producer, SceneReading const& reading, Output& out) override;

    std::vector<std::string> m_extensionTypeIds;
    bool m_parts = false;
};

}  // namespace KVR
