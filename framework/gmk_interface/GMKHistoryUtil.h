#pragma once

#include <cstddef>

#include "framework/gmk_interface/Export.h"

namespace KVR
{

class ENTITY;
class HISTORY_STREAM;

/// Operations on the kernel's history streams. Null streams and entities have no effect.
class KVR_GMK_INTERFACE_API GMKHistoryUtil
{
public:
    /// Makes a stream, to be ended with DeleteHistoryStream.
    static void CreateHistoryStream(HISTORY_STREAM*& stream);
    /// Clears and ends a stream.
    static void DeleteHistoryStream(HISTORY_STREAM* stream) noexcept;
    /// What the calling thread makes from here on belongs to the stream; null for none.
    static void SetActiveHistoryStream(HISTORY_STREAM* stream) noexcept;
    /// The stream to which belongs what the calling thread makes, not owned; null when none is active.
    static HISTORY_STREAM* ActiveHistoryStream() noexcept;
    /// Moves entities to a stream of their own, which is split off from the stream of the first of them.
    static void CreateSeparateHistoryStream(std::size_t count, ENTITY* const* entities);
    /// Frees what is in the stream and in those split off from it.
    static void Clear(HISTORY_STREAM* stream) noexcept;
};

}  // namespace KVR
