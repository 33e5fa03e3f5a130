#pragma once

namespace KVR
{

class BODY;
class curve;
class JsonWriter;

/// Writes what a body is made of, and its volume, area and box, as an object; null for no body. A measure that cannot
/// be taken is null. The volume is that of the solids.
void DumpBody(JsonWriter& json, BODY const* body);

/// Writes a curve's length and ends as an object; null for no curve and for one that was destroyed. What an infinite
/// curve does not have is null.
void DumpKernelCurve(JsonWriter& json, curve const* kernelCurve);

}  // namespace KVR
