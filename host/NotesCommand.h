#pragma once

#include "host/ColorOption.h"
#include "host/SceneCommand.h"
#include "host/notes/NotesOptions.h"

namespace KVR
{

/// The command "notes": the annotation callouts as text or JSON.
class NotesCommand final : public SceneCommand
{
public:
    explicit NotesCommand(CLI::App& program);

private:
    StoreNeeds Needs() const override { return StoreNeeds::None(); }
    std::string Show(IProducer& producer, SceneReading const& reading, Output& out) override;

    NotesOptions m_options;
    ColorOption m_color;
};

}  // namespace KVR
