#pragma once

#include <optional>
#include <string>

#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneOptions.h"
#include "host/Command.h"
#include "producer/StoreNeeds.h"

namespace KVR
{

class IProducer;
class Output;
struct SceneReading;

/// A command that reads a scene and shows something of it on standard output.
class SceneCommand : public Command
{
public:
    /// Reads the scene, shows it, and complains of what could not be read or shown.
    ExitStatus Run() final;

protected:
    /// Declares the command with the options of all that read a scene.
    SceneCommand(CLI::App& program, std::string const& name, std::string const& description);

    /// Which of the side files the command asks for.
    virtual StoreNeeds Needs() const { return {}; }

    /// Called before the scene is read, and when it has been.
    virtual void BeginReading() {}
    virtual void EndReading() {}

    /// Writes what is to be shown. The answer is a sentence that tells what could not be, which is then the command's
    /// failure, or nothing.
    virtual std::string Show(IProducer& producer, SceneReading const& reading, Output& out) = 0;

    /// Whether a scene that could not be read is shown all the same, before the complaint.
    virtual bool ShowsFailures() const { return false; }

    SceneOptions& Scene() noexcept { return m_scene; }

    /// A sentence of this command on its scene.
    std::string OfScene(std::string const& text) const;

private:
    SceneOptions m_scene;
    // Made by Run, and kept as long as the command.
    std::optional<SceneFile> m_file;
};

}  // namespace KVR
