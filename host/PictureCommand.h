#pragma once

#include <optional>
#include <string>

#include "exchange/DrawPicture.h"
#include "host/Command.h"
#include "host/MeshArguments.h"

namespace KVR
{

/// The command "picture": a scene, or a model, as a PNG file.
class PictureCommand final : public Command
{
public:
    explicit PictureCommand(CLI::App& program);

    ExitStatus Run() override;

private:
    std::string m_source;
    std::string m_target;
    PictureOptions m_picture;
    std::string m_size = "1280x960";
    std::string m_background = "#ffffff";
    std::string m_up;
    MeshArguments m_meshing;
    std::optional<unsigned> m_timeout;
    bool m_isQuiet = false;
};

}  // namespace KVR
