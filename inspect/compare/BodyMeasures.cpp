#include "inspect/compare/BodyMeasures.h"

#include <cmath>

#include "describe/BodyFacts.h"
#include "framework/api/IBrep.h"
#include "scene/SceneComponent.h"

namespace KVR
{

std::optional<BodyMeasures> BodyMeasures::Of(BODY const& body)
{
    auto const faces = MomentsOfFaces(body);
    if (!faces || !(faces->area > 0.0) || !std::isfinite(faces->area))
        return std::nullopt;
    double const volume = Volume(body).value_or(0.0);
    return std::isfinite(volume) ? std::optional(BodyMeasures{faces->area, volume, faces->centroid}) : std::nullopt;
}

std::optional<BodyMeasures> BodyMeasures::Of(SceneComponent const& component)
{
    std::optional<BodyMeasures> sum;
    for (SceneGeometry const& geometry : component.geometry)
    {
        BODY const* const body = geometry.body ? geometry.body->Body() : nullptr;
        if (!body)
            continue;
        std::optional<BodyMeasures> const own = Of(*body);
        if (!own)
            return std::nullopt;
        if (!sum)
            sum.emplace();
        for (std::size_t i = 0; i < 3; ++i)
            sum->centroid[i] = (sum->centroid[i] * sum->area + own->centroid[i] * own->area) / (sum->area + own->area);
        sum->area += own->area;
        sum->volume += own->volume;
    }
    return sum;
}

bool BodyMeasures::IsNear(BodyMeasures const& other, double tolerance) const
{
    double const size = std::sqrt(area);
    auto const agree = [&](double a, double b, double measure) { return std::abs(a - b) <= tolerance * measure; };
    return agree(area, other.area, area) && agree(volume, other.volume, size * area) &&
           agree(centroid[0], other.centroid[0], size) && agree(centroid[1], other.centroid[1], size) &&
           agree(centroid[2], other.centroid[2], size);
}

}  // namespace KVR
