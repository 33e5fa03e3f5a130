#pragma once

#include "framework/gmk_interface/DetachableGMKBrep.h"
#include "framework/xml_util/Export.h"
#include "framework/xml_util/ObjectState.h"

namespace KVR
{

class IProperty;

/// A boundary representation of a scene.
class KVR_XML_UTIL_API XMLBrep : public ObjectState<DetachableGMKBrep>
{
public:
    /// Owns the body, which may be null, unless it is detached.
    XMLBrep(UTF8String const& id, UTF16String const& label, BODY* body, IBrep::ProducerGeometryTypeEnum type);
    ~XMLBrep() override;

    /// Lists the property's id, again when it is listed already; null has no effect. The property itself is not kept.
    void AppendProperty(IProperty const* property);
};

}  // namespace KVR
