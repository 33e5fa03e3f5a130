#pragma once

#include <set>
#include <string>

#include "exchange/certify/FactPlace.h"
#include "exchange/certify/ModelFacts.h"
#include "framework/api/kvr_api.h"

namespace KVR::Certification
{

// What a scene says beside its geometry, into the tables of its facts.

/// `unit` is that of a text without one, in millimetres.
void AddSceneNote(ModelFacts& facts, IAnnotationCallout const& callout, double unit);
/// `roots` are the ids of the components that all others are in.
/// `upright` leads from the scene to z up.
void AddSceneView(ModelFacts& facts, IProducer& producer, IView const& view, std::set<std::string> const& roots,
                  FactPlace const& upright);
/// The values that are stated of a component.
std::set<std::string> ScenePropertiesOf(IProducer& producer, IComponent const& component);

}  // namespace KVR::Certification
