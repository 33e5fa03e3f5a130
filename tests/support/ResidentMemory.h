#pragma once

namespace KVR::Test
{

/// The memory of this process that is resident, in kB.
long ResidentMemoryKB();
/// The most memory that this process ever had, in kB, used or not.
long PeakMemoryKB();

}  // namespace KVR::Test
