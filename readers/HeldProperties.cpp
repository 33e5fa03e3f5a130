#include "readers/HeldProperties.h"

#include "framework/api/IProperty.h"
#include "framework/api/IdSet.h"
#include "framework/api/PropertyDatabase.h"
#include "producer/XMLProducerImpl.h"

namespace KVR
{

void AddPropertyId(IProperty const* property, IdSet& ids)
{
    if (property)
        ids.AddWithoutUniquenessCheck(property->Id());
}

void AddPropertyToDatabase(IProperty const* property, XMLProducerImpl const* producer)
{
    if (!property || !producer)
        return;
    IUniverse const* const universe = producer->LoadUniverse();
    PropertyDatabase* const database = universe ? universe->PropertyDatabaseOf() : nullptr;
    if (database)
        database->AddProperty(property);
}

}  // namespace KVR
