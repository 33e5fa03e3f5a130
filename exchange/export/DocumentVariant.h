#pragma once

#include <TDF_Label.hxx>
#include <gp_Mat.hxx>
#include <string>
#include <vector>

#include "scene/Scene.h"

namespace KVR
{

/// A component as it stands in a document: as itself, or changed by a mirror, a scale, or an override of a place.
struct DocumentVariant
{
    struct Child
    {
        /// Null for the geometry of an assembly itself, which is a part of its own in a document.
        ScenePlacement const* placement = nullptr;
        /// The component of the assembly.
        TDF_Label label;
        /// Null without a placement.
        DocumentVariant const* target = nullptr;
    };

    SceneComponent const* component = nullptr;
    /// Tells it from other variants of the component; empty for the first one.
    std::string key;
    TDF_Label label;
    bool isAssembly = false;
    /// What changes the component's shapes, in its coordinates; the identity for the component as itself.
    gp_Mat change;
    std::vector<Child> children;
};

}  // namespace KVR
