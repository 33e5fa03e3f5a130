#pragma once

#include <functional>

#include "framework/api/UTF16String.h"
#include "producer/XMLProducerOptions.h"

namespace KVR
{

/// What a program that shows little of a scene needs of the side files; all of it until something else is said. The
/// objects are the same, and answer the same but for what stands in files that are not needed.
struct StoreNeeds
{
    /// Bodies, curves of edges, meshes and curves. Where they are not needed, a store is opened when the first curve is
    /// read: whether there is an object for a curve depends on what the stores hold.
    bool geometry = true;
    bool segments = true;
    bool assets = true;
    bool persistentIds = true;
    bool properties = true;

    /// Whether the memory of a large document goes back to the system when it has been read. A program that at once
    /// fills as much with something else, and then ends, keeps it, instead of asking for each page anew.
    bool returnsMemory = true;

    /// Whether a mesh store holds what the scene says; asked when geometry is not needed. Such a store is not opened,
    /// and each mesh of the document is one without polygons. All others are read; all are if there is nobody to ask.
    std::function<bool(UTF16String const& path)> isWhole = {};

    static StoreNeeds None() { return {false, false, false, false, false}; }
    bool NeedsAll() const noexcept { return geometry && segments && assets && persistentIds && properties; }

    /// To be called before BeginProcess.
    static void Set(XMLProducerOptions& options, StoreNeeds const& needs) { options.SetNeeds(needs); }
    /// What was set; of null, all.
    static StoreNeeds const& Of(XMLProducerOptions const* options);
};

}  // namespace KVR
