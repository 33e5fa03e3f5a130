#include "host/export/DefaultColors.h"

#include <algorithm>

#include "framework/api/Color.h"
#include "framework/api/IProducer.h"
#include "framework/api/IUniverse.h"

namespace KVR
{

DefaultColors::DefaultColors(IProducer& producer)
{
    IUniverse const* const universe = producer.LoadUniverse();
    if (!universe)
        return;
    auto const take = [](Color const& color, std::array<double, 3>& fractions)
    {
        fractions = {std::clamp(color.Red(), 0.0, 1.0), std::clamp(color.Green(), 0.0, 1.0),
                     std::clamp(color.Blue(), 0.0, 1.0)};
    };
    Color color;
    if (universe->DefaultSurfaceColor(color) == kIsValueSpecified_Yes)
        take(color, surface);
    if (universe->DefaultCurveColor(color) == kIsValueSpecified_Yes)
        take(color, curve);
}

}  // namespace KVR
