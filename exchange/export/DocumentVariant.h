#pragma once

#include <TDF_Label.hxx>
#include <gp_Mat.hxx>
#include <string>
#include <vector>

#include "scene/SceneComponent.h"

namespace KVR
{

/// A component as it stands in a document: as itself, or changed by a mirror, a scale, or an override of a place.
struct DocumentVariant
{
    /// What became of a placement.
    struct Place
    {
        /// The component of the assembly; null for a placement that is not in the document.
        TDF_Label label;
        /// What it refers to; null without a label.
        DocumentVariant const* target = nullptr;
    };

    SceneComponent const* component = nullptr;
    /// The component's place in the scene.
    std::size_t index = 0;
    /// Tells it from other variants of the component; empty for the first one.
    std::string key;
    TDF_Label label;
    bool isAssembly = false;
    /// What changes the component's shapes, in its coordinates; the identity for the component as itself.
    gp_Mat change;
    /// The geometry of an assembly itself, which is a part of its own in a document; null without any.
    TDF_Label ownGeometry;
    /// Of an assembly, beside the placements of its component.
    std::vector<Place> places;
};

}  // namespace KVR
