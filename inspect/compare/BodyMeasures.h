#pragma once

#include <array>
#include <optional>

namespace KVR
{

class BODY;
struct SceneComponent;

/// What is measured of bodies, in their own unit of length.
struct BodyMeasures
{
    double area = 0.0;
    /// That of the solids.
    double volume = 0.0;
    /// Of the faces.
    std::array<double, 3> centroid{};

    /// Nothing for a body that cannot be measured or has no area.
    static std::optional<BodyMeasures> Of(BODY const& body);
    /// Of all bodies of a component; nothing for one without, or with one that cannot be measured.
    static std::optional<BodyMeasures> Of(SceneComponent const& component);

    /// Whether all agree to such a fraction of the size.
    bool IsNear(BodyMeasures const& other, double tolerance) const;
};

}  // namespace KVR
