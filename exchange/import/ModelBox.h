#pragma once

namespace KVR
{

class ProductPlan;

/// The length of the diagonal of a model's box as Open CASCADE finds it before anything is meshed, which is at times
/// larger than it need be; 0 for a model without geometry.
double DiagonalOfModel(ProductPlan const& plan);

}  // namespace KVR
