#include "exchange/export/DefaultColors.h"

#include <algorithm>

#include "framework/api/Color.h"
#include "framework/api/IProducer.h"
#include "framework/api/IUniverse.h"

namespace KVR
{

DefaultColors::DefaultColors(IProducer& producer)
{
    IUniverse const* const universe = producer.LoadUniverse();
    Color color;
    if (universe && universe->DefaultCurveColor(color) == kIsValueSpecified_Yes)
        curve = {std::clamp(color.Red(), 0.0, 1.0), std::clamp(color.Green(), 0.0, 1.0),
                 std::clamp(color.Blue(), 0.0, 1.0)};
}

}  // namespace KVR
