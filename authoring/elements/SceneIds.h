#pragma once

#include <xxhash.h>
#include <unordered_map>
#include <unordered_set>

#include "framework/api/UTF8String.h"

namespace KVR::Authoring
{

/// The ids of a scene that is being written. They are kept as digests of sixteen bytes: two that differ and share one
/// do not come up in practice.
class SceneIds
{
public:
    /// Enters the id of an object. Throws GeneralException for one that is empty or taken.
    void Define(UTF8String const& id);
    /// Notes that an object of that id has to come, unless it is there.
    void Want(UTF8String const& id);
    /// Throws GeneralException when an object that was wanted has not come.
    void CheckAllCame() const;

private:
    struct Digest
    {
        XXH128_hash_t value;

        explicit Digest(UTF8String const& id) : value(XXH3_128bits(id.Value(), id.Size())) {}
        bool operator==(Digest const& other) const { return XXH128_isEqual(value, other.value) != 0; }
    };
    struct DigestHash
    {
        std::size_t operator()(Digest const& digest) const { return digest.value.low64; }
    };

    std::unordered_set<Digest, DigestHash> m_ids;
    std::unordered_map<Digest, UTF8String, DigestHash> m_wanted;
};

}  // namespace KVR::Authoring
