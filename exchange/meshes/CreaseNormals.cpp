#include "exchange/meshes/CreaseNormals.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "exchange/meshes/PointWeld.h"

namespace KVR
{

namespace
{

using Triple = std::array<double, 3>;

// Around a point of more triangles each has its own normal: to compare all with all would take too long.
constexpr std::size_t kMostAround = 512;

double Dot(Triple const& a, Triple const& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Triple Minus(Triple const& a, Triple const& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Triple Unit(Triple const& v)
{
    // Scaled first, so that neither tiny nor huge triangles lose theirs.
    double const largest = std::max({std::abs(v[0]), std::abs(v[1]), std::abs(v[2])});
    if (!(largest > 0.0) || !std::isfinite(largest))
        return {};
    Triple const scaled{v[0] / largest, v[1] / largest, v[2] / largest};
    double const length = std::sqrt(Dot(scaled, scaled));
    return {scaled[0] / length + 0.0, scaled[1] / length + 0.0, scaled[2] / length + 0.0};
}

class CreaseWork
{
public:
    CreaseWork(MeshModel::Mesh& mesh, double angle)
        // Angles that are the same but for their last digits are the same.
        : m_mesh(mesh), m_cosine(std::cos(std::min(angle, 180.0) * M_PI / 180.0) - 1e-6)
    {
    }

    void Do()
    {
        m_mesh.cornerNormals.resize(m_mesh.corners.size(), MeshModel::kNone);
        MeasureTriangles();
        SortCorners();
        for (std::size_t first = 0; first < m_order.size();)
        {
            std::size_t end = first;
            while (end < m_order.size() && m_place[m_order[end]] == m_place[m_order[first]])
                ++end;
            AddAround(first, end);
            first = end;
        }
    }

private:
    Triple PointOf(std::size_t corner) const
    {
        double const* const point = m_mesh.points.data() + 3 * std::size_t{m_mesh.corners[corner]};
        return {point[0], point[1], point[2]};
    }

    void MeasureTriangles()
    {
        m_normals.resize(m_mesh.TriangleCount());
        m_angles.resize(m_mesh.corners.size());
        for (std::size_t i = 0; i < m_normals.size(); ++i)
        {
            Triple const points[3] = {PointOf(3 * i), PointOf(3 * i + 1), PointOf(3 * i + 2)};
            Triple const side = Unit(Minus(points[1], points[0]));
            Triple const other = Unit(Minus(points[2], points[0]));
            m_normals[i] = Unit({side[1] * other[2] - side[2] * other[1], side[2] * other[0] - side[0] * other[2],
                                 side[0] * other[1] - side[1] * other[0]});
            for (std::size_t corner = 0; corner < 3; ++corner)
                m_angles[3 * i + corner] =
                    static_cast<float>(std::acos(std::clamp(Dot(Unit(Minus(points[(corner + 1) % 3], points[corner])),
                                                                Unit(Minus(points[(corner + 2) % 3], points[corner]))),
                                                            -1.0, 1.0)));
        }
    }

    // Corners by the places of their points.
    void SortCorners()
    {
        PointWeld weld;
        std::vector<std::uint32_t> placeOfPoint(m_mesh.PointCount());
        for (std::size_t i = 0; i < placeOfPoint.size(); ++i)
            placeOfPoint[i] = weld.Add({m_mesh.points[3 * i], m_mesh.points[3 * i + 1], m_mesh.points[3 * i + 2]});
        m_place.resize(m_mesh.corners.size());
        std::vector<std::size_t> firsts(weld.Count() + 1, 0);
        for (std::size_t i = 0; i < m_place.size(); ++i)
            ++firsts[(m_place[i] = placeOfPoint[m_mesh.corners[i]]) + 1];
        std::partial_sum(firsts.begin(), firsts.end(), firsts.begin());
        m_order.resize(m_place.size());
        for (std::size_t i = 0; i < m_place.size(); ++i)
            m_order[firsts[m_place[i]]++] = i;
    }

    void AddAround(std::size_t first, std::size_t end)
    {
        // Of this point: the normals that it has.
        std::size_t const firstNormal = m_mesh.normals.size() / 3;
        for (std::size_t i = first; i < end; ++i)
        {
            std::size_t const corner = m_order[i];
            if (m_mesh.cornerNormals[corner] != MeshModel::kNone)
                continue;
            Triple const& own = m_normals[corner / 3];
            Triple sum{};
            for (std::size_t j = first; j < end && end - first <= kMostAround; ++j)
            {
                Triple const& other = m_normals[m_order[j] / 3];
                if (Dot(own, other) < m_cosine)
                    continue;
                for (std::size_t axis = 0; axis < 3; ++axis)
                    sum[axis] += static_cast<double>(m_angles[m_order[j]]) * other[axis];
            }
            Triple normal = Unit(sum);
            if (Dot(normal, normal) == 0.0)
                normal = Dot(own, own) > 0.0 ? own : Triple{0.0, 0.0, 1.0};
            m_mesh.cornerNormals[corner] = NormalOf(normal, firstNormal);
        }
    }

    // The sums of neighbours differ in their last digits.
    std::uint32_t NormalOf(Triple const& normal, std::size_t from)
    {
        std::size_t const count = m_mesh.normals.size() / 3;
        for (std::size_t i = count; i > from && count - i < 8; --i)
        {
            double const* const known = m_mesh.normals.data() + 3 * (i - 1);
            if (Dot(normal, {known[0], known[1], known[2]}) > 1.0 - 1e-12)
                return static_cast<std::uint32_t>(i - 1);
        }
        m_mesh.normals.insert(m_mesh.normals.end(), normal.begin(), normal.end());
        return static_cast<std::uint32_t>(count);
    }

    MeshModel::Mesh& m_mesh;
    double m_cosine;
    std::vector<Triple> m_normals;
    std::vector<float> m_angles;
    std::vector<std::uint32_t> m_place;
    std::vector<std::size_t> m_order;
};

}  // namespace

void AddCreaseNormals(MeshModel::Mesh& mesh, double angle)
{
    bool const isComplete =
        mesh.cornerNormals.size() == mesh.corners.size() &&
        std::find(mesh.cornerNormals.begin(), mesh.cornerNormals.end(), MeshModel::kNone) == mesh.cornerNormals.end();
    if (!mesh.corners.empty() && !isComplete)
        CreaseWork(mesh, angle).Do();
}

}  // namespace KVR
