#pragma once

#include "exchange/view/ViewText.h"
#include "scene/CurvePoints.h"
#include "scene/SceneMesh.h"
#include "scene/ShapeMeasures.h"

namespace KVR
{

/// What is known of the faces and edges of a mesh, as lists by their numbers. `body` is what was measured of the body
/// that it is the mesh of, or null; it counts where it has as many.
ViewJson FacesJson(SceneMesh const& mesh, ShapeMeasures const* body);
ViewJson EdgesJson(SceneMesh const& mesh, ShapeMeasures const* body);
/// The same of the lines of a curve, or of a body without faces.
ViewJson EdgesJson(SceneLines const& lines, ShapeMeasures const& measures);

/// Sets a member unless it has none itself.
void SetUnlessEmpty(ViewJson& json, char const* name, ViewJson&& value);

}  // namespace KVR
