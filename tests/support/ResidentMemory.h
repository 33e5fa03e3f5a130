#pragma once

namespace KVR::Test
{

/// The memory of this process that is resident, in kB.
long ResidentMemoryKB();

}  // namespace KVR::Test
