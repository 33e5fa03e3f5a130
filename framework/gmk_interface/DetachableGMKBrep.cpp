#include "framework/gmk_interface/DetachableGMKBrep.h"

namespace KVR
{

DetachableGMKBrep::DetachableGMKBrep() = default;
DetachableGMKBrep::~DetachableGMKBrep() = default;

BODY* DetachableGMKBrep::DetachBody()
{
    BODY* const body = GiveBody();
    m_isDetached = m_isDetached || body;
    return body;
}

}  // namespace KVR
