#pragma once

namespace KVR
{

class ProductPlan;

/// The length of the diagonal of the box around all occurrences of a model's parts, from points on their edges and the
/// nodes of their triangles; 0 for a model without any.
double DiagonalOfModel(ProductPlan const& plan);

}  // namespace KVR
