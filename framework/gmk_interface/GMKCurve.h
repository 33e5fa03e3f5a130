#pragma once

#include "framework/api/ICurve.h"
#include "framework/kernel/gmk_array.h"

namespace KVR
{

/// A curve object that holds curves of the geometry kernel.
class GMKCurve : public ICurve
{
public:
    GMK::gmk_array<curve*> KernelCurves() const override { return m_kernelCurves; }

protected:
    GMK::gmk_array<curve*> m_kernelCurves;
};

}  // namespace KVR
