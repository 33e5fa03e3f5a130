#pragma once

#include <set>
#include <string>

#include "exchange/certify/ModelFacts.h"
#include "framework/api/kvr_api.h"

namespace KVR::Certification
{

// What a scene says beside its geometry, into the tables of its facts.

/// `unit` is that of a text without one, in millimetres.
void AddSceneNote(ModelFacts& facts, IAnnotationCallout const& callout, double unit);
/// `roots` are the ids of the components that all others are in.
void AddSceneView(ModelFacts& facts, IProducer& producer, IView const& view, std::set<std::string> const& roots);
/// The values that are stated of a component.
std::set<std::string> ScenePropertiesOf(IProducer& producer, IComponent const& component);

}  // namespace KVR::Certification
