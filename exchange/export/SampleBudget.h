#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "scene/CurvePoints.h"
#include "scene/SceneComponent.h"
#include "scene/SceneMesh.h"

namespace KVR
{

/// The triangles and points that an export makes of bodies and curves: in proportion to what these are made of, beside
/// a number that is there for all together. What would take more is made coarser, and when that does not help is left
/// out; a remark names it then.
class SampleBudget
{
public:
    /// For all together.
    static constexpr std::uint64_t kShared = 1'000'000;
    static constexpr std::uint64_t kPerFace = 2'000;
    /// Of a body; also for each piece of a curve.
    static constexpr std::uint64_t kPerEdge = 500;
    /// For each pole of their surfaces and curves.
    static constexpr std::uint64_t kPerPole = 20;

    /// Remarks are sentences without their full stop. The list has to outlive it.
    SampleBudget(MeshQuality const& quality, std::vector<std::string>& remarks, std::uint64_t shared = kShared)
        : m_quality(quality), m_remarks(remarks), m_shared(shared)
    {
    }

    /// The triangles of a body. To be asked once for each: what it takes is taken.
    SceneMesh MeshOf(SceneGeometry const& geometry);
    /// The lines of a curve, or of the edges of a body; empty for other geometry. To be asked once for each.
    SceneLines LinesOf(SceneGeometry const& geometry);

private:
    void Take(std::uint64_t count, std::uint64_t own) noexcept;
    void TellCoarser(SceneGeometry const& geometry, double factor, std::uint64_t most);

    MeshQuality m_quality;
    std::vector<std::string>& m_remarks;
    /// What is left of that for all together.
    std::uint64_t m_shared;
};

}  // namespace KVR
