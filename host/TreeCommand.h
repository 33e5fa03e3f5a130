#pragma once

#include "host/ColorOption.h"
#include "host/SceneCommand.h"
#include "host/tree/TreeOptions.h"

namespace KVR
{

/// The command "tree": the product tree as text or JSON.
class TreeCommand final : public SceneCommand
{
public:
    explicit TreeCommand(CLI::App& program);

private:
    StoreNeeds Needs() const override;
    std::string Show(IProducer& producer, SceneReading const& reading, Output& out) override;

    TreeOptions m_options;
    ColorOption m_color;
};

}  // namespace KVR
