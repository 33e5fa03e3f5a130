#pragma once

#include "exchange/export/ShapeDocument.h"

namespace KVR
{

struct SceneComponent;

/// What the file properties of a component say of a product.
ShapeDocument::Product ProductOf(SceneComponent const& component);
/// A custom property of a component that is neither its measure nor its material.
void AddToProduct(ShapeDocument::Product& product, SceneProperty const& property);
/// What the properties of an instance say of its usage.
ShapeDocument::Usage UsageOf(TDF_Label const& label, std::vector<SceneProperty> const& properties);

}  // namespace KVR
