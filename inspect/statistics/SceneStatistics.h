#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "inspect/statistics/GeometryTwins.h"

namespace KVR
{

class ReadingMeter;

/// What the geometry of a scene takes, by component. Assemblies and files count what is directly in them. Geometry that
/// several components list counts for the first of them.
struct SceneStatistics
{
    struct Amount
    {
        unsigned long long bodies = 0;
        unsigned long long meshes = 0;
        /// Of bodies; of a mesh without a body in its component its face segments.
        unsigned long long faces = 0;
        unsigned long long triangles = 0;
        unsigned long long vertices = 0;
        /// Of side files. Of a body, its store by the share of the store's faces and edges that are its.
        double bytes = 0.0;
        /// Processor time of reading those bytes: of meshes as it was measured, of bodies by the same share.
        double seconds = 0.0;
        /// What it takes in memory, by the factors of the estimate that kvr info prints.
        double memory = 0.0;

        void Add(Amount const& other, double times = 1.0);
    };

    struct Component
    {
        std::size_t index = 0;
        unsigned long long occurrences = 0;
        Amount own;
    };

    /// What sharing one object instead of twins would save.
    struct Duplicates
    {
        GeometryTwins twins;
        Amount saved;
    };

    /// Those with bodies, meshes or bytes of their own, the largest in bytes first.
    std::vector<Component> components;
    /// Of all of them, once.
    Amount all;
    /// Of all of them, as often as they occur.
    Amount occurring;
    std::vector<Duplicates> duplicates;
    Amount saved;
    /// Of assemblies and parts.
    unsigned long long occurrences = 0;
    /// Processor time of reading the scene, its document included.
    double seconds = 0.0;

    /// Of a scene that was read while the meter listened.
    static SceneStatistics Of(Scene const& scene, ReadingMeter const& meter);
};

}  // namespace KVR
