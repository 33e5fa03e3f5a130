#pragma once

namespace KVR
{

// Custom properties of components and instances in which a scene keeps what a model says of a product or its usage.

constexpr char kProperty_RevisionDescription[] = "revision description";
constexpr char kProperty_ProductCategory[] = "product category";
constexpr char kProperty_UsageId[] = "usage id";
constexpr char kProperty_UsageDescription[] = "usage description";
constexpr char kProperty_ReferenceDesignator[] = "reference designator";

/// What stands behind the name of a number in the name of the text that is its unit: "millimetre", "kilogram metre^-3".
constexpr char kProperty_UnitEnd[] = " unit";

}  // namespace KVR
