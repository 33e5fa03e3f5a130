#pragma once

#include "framework/kernel/Export.h"

namespace KVR
{

class BODY;

enum BODY_TYPE : int
{
    kBodyType_Empty,
    kBodyType_Solid,
    kBodyType_Sheet,
    kBodyType_Wire,
    kBodyType_Mixed
};

/// What a body is made of: solids alone, faces outside of solids alone, edges outside of faces alone, or of more than
/// one of them. A body of vertices alone counts as empty.
KVR_KERNEL_API BODY_TYPE gki_body_type(BODY const& body);

}  // namespace KVR
