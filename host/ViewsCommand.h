#pragma once

#include "host/SceneCommand.h"

namespace KVR
{

/// The command "views": the views and cameras as a table or JSON.
class ViewsCommand final : public SceneCommand
{
public:
    explicit ViewsCommand(CLI::App& program);

private:
    StoreNeeds Needs() const override { return StoreNeeds::None(); }
    std::string Show(IProducer& producer, SceneReading const& reading, Output& out) override;

    bool m_asJson = false;
};

}  // namespace KVR
