#include "framework/xml_util/XMLBrep.h"

#include "framework/api/IProperty.h"

namespace KVR
{

XMLBrep::XMLBrep(UTF8String const& id, UTF16String const& label, BODY* body, IBrep::ProducerGeometryTypeEnum type)
    : ObjectState(id, label)
{
    SetSrcGeomType(type);
    TakeBody(body);
}

XMLBrep::~XMLBrep() = default;

void XMLBrep::AppendProperty(IProperty const* property)
{
    if (property)
        m_propertyIds.AddWithoutUniquenessCheck(property->Id());
}

}  // namespace KVR
