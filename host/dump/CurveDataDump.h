#pragma once

namespace KVR
{

struct DumpContext;
class ICurveData;

// Analytic curve data.

/// Writes the object that stands for the data; null for null and for composites nested deeper than any that is read.
void DumpCurveData(DumpContext const& context, ICurveData* data);

}  // namespace KVR
