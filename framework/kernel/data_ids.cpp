#include "framework/kernel/data_ids.h"

#include "framework/kernel/entity.h"

namespace KVR
{

outcome gki_get_datax_id(ENTITY* entity, GMK::gmk_array<DXID_DATA>& ids)
{
    if (!entity)
        return {outcome::kBadArgument, "there is no entity"};
    for (std::string const& dataId : entity->DataIds())
        ids.Push(DXID_DATA(dataId));
    return {};
}

}  // namespace KVR
