#include "scene/reader/ObjectKind.h"

#include "framework/api/IObject.h"

namespace KVR
{

ObjectKind::ObjectKind(IObject& object)
{
    object.AcceptVisitor(this);
}

}  // namespace KVR
