#pragma once

#include "framework/api/IBrep.h"
#include "framework/kernel/entity.h"
#include "python/SceneModel.h"

namespace KVR::Python
{

/// A body, with the length of its unit.
struct BodyPiece
{
    ModelPointer model;
    IBrep const* brep;
    double metresPerUnit;

    BODY const& Body() const { return *brep->Body(); }
};

}  // namespace KVR::Python
