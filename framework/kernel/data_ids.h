#pragma once

#include <string>
#include <utility>

#include "framework/kernel/Export.h"
#include "framework/kernel/gmk_array.h"
#include "framework/kernel/outcome.h"

namespace KVR
{

class ENTITY;

/// A record of a data id.
class DXID_DATA
{
public:
    explicit DXID_DATA(std::string dataId) : m_dataId(std::move(dataId)) {}
    /// The data id, owned by the record.
    std::string const& dx_id() const noexcept { return m_dataId; }

private:
    std::string m_dataId;
};

/// Appends the data ids of an entity in the order in which it got them. A bad outcome for null.
KVR_KERNEL_API outcome gki_get_datax_id(ENTITY* entity, GMK::gmk_array<DXID_DATA>& ids);

}  // namespace KVR
