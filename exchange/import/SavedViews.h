#pragma once

#include <Bnd_Box.hxx>
#include <TDF_Label.hxx>
#include <functional>
#include <vector>

#include "authoring/SceneRecords.h"
#include "exchange/model/Losses.h"
#include "exchange/model/ModelDocument.h"

namespace KVR
{

/// The saved views of a model, each with a camera of its own; clipping planes are section planes of the camera.
struct SavedViews
{
    std::vector<Authoring::ViewRecord> views;
    std::vector<Authoring::CameraRecord> cameras;

    /// `boxOf` finds the model's box, and is asked when there are views; `idsOf` answers the ids of what a label
    /// became, `noteNamed` the id of a note by its label. What a view names becomes a member of it. A camera that turns
    /// its back on the model is turned around: writers of files differ in which way they give directions.
    static SavedViews Of(ModelDocument const& model, std::function<Bnd_Box()> const& boxOf,
                         std::function<std::vector<UTF8String>(TDF_Label const&)> const& idsOf,
                         std::function<UTF8String(std::string const&)> const& noteNamed, Losses& losses);
};

}  // namespace KVR
