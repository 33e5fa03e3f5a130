#pragma once

namespace KVR
{

class IProperty;
class IdSet;
class XMLProducerImpl;

/// Appends the property's id, again when it is there already; null has no effect.
void AddPropertyId(IProperty const* property, IdSet& ids);

/// Has the universe's database share the property; nothing without a property, a producer or a universe.
void AddPropertyToDatabase(IProperty const* property, XMLProducerImpl const* producer);

}  // namespace KVR
