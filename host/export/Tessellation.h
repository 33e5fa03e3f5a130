#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "host/export/Export.h"
#include "host/export/SceneModel.h"
#include "host/export/Triangulation.h"

namespace KVR
{

/// A piece of geometry as triangles, lines and points, in its own unit and before its own transform.
struct Tessellation
{
    /// Triangles of one style: three places in `points` for each, counter-clockwise seen from outside.
    struct Group
    {
        /// Empty for what has that of the whole.
        std::string style;
        std::vector<std::uint32_t> corners;
    };

    std::vector<Triple> points;
    /// As many as there are points, of length 1; or none.
    std::vector<Triple> normals;
    /// As many as there are points, with v counted from the bottom up; or none.
    std::vector<std::array<float, 2>> texture;
    std::vector<Group> groups;
    std::vector<std::vector<Triple>> lines;
    std::vector<Triple> dots;

    bool IsEmpty() const noexcept { return groups.empty() && lines.empty() && dots.empty(); }
};

/// Makes the tessellation of a piece of geometry. What of it cannot be shown is counted: polygons with indices that
/// are none, or with coordinates that are no numbers, bodies and curves without a shape, and kinds of no format.
class Tessellator
{
public:
    explicit Tessellator(ExportTask& task) : m_task(task) {}

    Tessellation Of(ModelGeometry const& geometry);

private:
    void AddBody(ModelGeometry const& geometry, Tessellation& made);
    void AddLines(ModelGeometry const& geometry, Tessellation& made);

    ExportTask& m_task;
};

}  // namespace KVR
