#pragma once

#include "exchange/view/ViewIndex.h"
#include "exchange/view/ViewStyles.h"
#include "exchange/view/ViewText.h"

namespace KVR
{

/// The components of a viewer file, with what they place.
ViewJson ComponentsJson(Scene const& scene, ViewIndex const& index, ViewStyles const& styles);

/// Layers, groups and levels of detail, as members of one object. Ids of what is not in the file are left out.
ViewJson OrganisationJson(Scene const& scene, ViewIndex const& index, ViewStyles const& styles);

/// A unit of length; null for one that is none.
ViewJson UnitJson(UnitTypeEnum unit);

/// Properties as a list of names and values.
ViewJson PropertiesJson(std::vector<SceneProperty> const& properties);

/// Sets what any object may have: "persistentId", and "properties" with those of the scene's database in front of
/// `own`.
void SetIdentity(ViewJson& json, Scene const& scene, IObject const* object, std::vector<SceneProperty> const& own = {});

/// Where a component says of what density its material is, in kilograms for each cubic metre.
std::optional<double> DensityOf(SceneComponent const& component);

}  // namespace KVR
