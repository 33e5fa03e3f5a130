#pragma once

#include <cstddef>
#include <memory>

#include "host/SceneCommand.h"

namespace KVR
{

class ReadingMeter;

/// The command "stats": what the geometry of a scene takes, by component, and what of it is there more than once.
class StatsCommand final : public SceneCommand
{
public:
    explicit StatsCommand(CLI::App& program);
    ~StatsCommand() override;

private:
    void BeginReading() override;
    void EndReading() override;
    std::string Show(IProducer& producer, SceneReading const& reading, Output& out) override;

    bool m_asJson = false;
    bool m_asHtml = false;
    std::size_t m_most = 20;
    std::unique_ptr<ReadingMeter> m_meter;
};

}  // namespace KVR
