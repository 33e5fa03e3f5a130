#pragma once

#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

class IProperty;

/// Takes the properties of a file as they are read.
class PropertyReceiver
{
public:
    virtual ~PropertyReceiver() = default;
    /// A "Property" element, with the id of its object. The property lives until the call ends unless it is retained;
    /// null, with an empty id, for an element without "ID" or "ObjectID" and one whose value does not convert.
    virtual void Receive(IProperty* property, UTF8String const& objectId) = 0;
};

/// Streams the property file beside a scene file: the same name with the extension ".kvrproperty". Nothing of it is
/// kept. A missing file is an empty one, and one that is not well-formed gives what stood before the error. What the
/// receiver throws goes on.
KVR_XML_UTIL_API void StreamProperties(UTF16String const& sceneFilePath, PropertyReceiver& receiver);

}  // namespace KVR
