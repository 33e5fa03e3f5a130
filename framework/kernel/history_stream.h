#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "framework/kernel/Export.h"

namespace KVR
{

class curve;
class ENTITY;

/// Owns entities and free curves, and the streams that were split off from it.
class KVR_KERNEL_API HISTORY_STREAM
{
public:
    HISTORY_STREAM();
    /// Clears the stream. It must not be active in another thread than this one, in which it is so no more.
    ~HISTORY_STREAM();
    HISTORY_STREAM(HISTORY_STREAM const&) = delete;
    HISTORY_STREAM& operator=(HISTORY_STREAM const&) = delete;

    /// Takes the entity over, from the stream that it was in.
    void Add(ENTITY* entity);
    /// Gives an entity of this stream to the caller.
    void Remove(ENTITY* entity) noexcept;
    /// A new stream, owned by this one.
    HISTORY_STREAM* Split();
    /// Frees all entities, curves and streams in it.
    void Clear() noexcept;

    /// The number of entities in this stream and in those split off.
    std::size_t EntityCount() const noexcept;
    /// The number of curves in this stream and in those split off; destroyed ones are not counted.
    std::size_t CurveCount() const noexcept;
    /// The streams that were split off from this one, and from those.
    std::size_t StreamCount() const noexcept;

private:
    friend class curve;

    std::vector<ENTITY*> m_entities;
    std::vector<std::unique_ptr<curve>> m_curves;
    std::vector<std::unique_ptr<HISTORY_STREAM>> m_streams;
};

/// Whether there is a stream at that address, in any thread.
KVR_KERNEL_API bool gki_is_history_stream(HISTORY_STREAM const* stream);

}  // namespace KVR
