#pragma once

#include "host/SceneCommand.h"
#include "host/dump/DumpOptions.h"

namespace KVR
{

/// The command "dump": everything that a scene serves as JSON, also what there is of one that could not be read.
class DumpCommand final : public SceneCommand
{
public:
    explicit DumpCommand(CLI::App& program);

private:
    std::string Show(IProducer& producer, SceneReading const& reading, Output& out) override;
    bool ShowsFailures() const override { return true; }

    DumpOptions m_options;
};

}  // namespace KVR
