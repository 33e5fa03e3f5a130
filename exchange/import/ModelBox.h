#pragma once

#include <Bnd_Box.hxx>

namespace KVR
{

class ProductPlan;

/// A model's box as Open CASCADE finds it: close around what is meshed, and at times larger than it need be before.
Bnd_Box BoxOfModel(ProductPlan const& plan);

/// The length of the diagonal of a model's box as Open CASCADE finds it before anything is meshed, which is at times
/// larger than it need be; 0 for a model without geometry.
double DiagonalOfModel(ProductPlan const& plan);

}  // namespace KVR
