#pragma once

#include <array>
#include <optional>
#include <string>

#include "exchange/ConvertModel.h"
#include "exchange/Export.h"
#include "exchange/Progress.h"

namespace KVR
{

struct PictureOptions
{
    /// How the scene is read, or made of a model, and what of it is drawn: as on the way to OBJ.
    ConvertOptions source;
    /// The id or label of a saved view: what it shows, moves and paints, as its first camera sees it; section planes
    /// are not drawn, which a remark tells. Everything, seen from above and aside, when it is empty.
    std::string view = {};
    /// Which axis of the scene points up; the one nearest to what the scene states unless given.
    std::optional<UpAxis> up = {};
    /// In pixels, from 1 to kLargestPicture.
    unsigned width = 1280;
    unsigned height = 960;
    /// Fractions of sRGB from 0 to 1.
    std::array<double, 3> background{1.0, 1.0, 1.0};
};

/// The largest width and height of a picture, in pixels.
constexpr unsigned kLargestPicture = 8192;

/// Draws a scene, or a model, as a PNG file. The file appears whole or not at all; what was there is replaced. A target
/// that does not end in ".png", or is the source, is a failure, and so is a view that the scene does not have, and a
/// machine without the program f3d, which does the drawing. Processes, progress and exceptions are as for ConvertModel.
KVR_EXCHANGE_API ConvertResult DrawPicture(std::string const& source, std::string const& path,
                                           PictureOptions const& options = {}, Progress const& progress = {});

}  // namespace KVR
