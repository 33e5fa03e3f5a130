#include "framework/xml_util/XMLBrep.h"

namespace KVR
{

XMLBrep::XMLBrep(UTF8String const& id, UTF16String const& label, BODY* body, IBrep::ProducerGeometryTypeEnum type)
    : ObjectState(id, label)
{
    SetSrcGeomType(type);
    TakeBody(body);
}

XMLBrep::~XMLBrep() = default;

}  // namespace KVR
