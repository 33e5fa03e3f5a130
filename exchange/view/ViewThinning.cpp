#include "exchange/view/ViewThinning.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

namespace KVR
{

namespace
{

constexpr unsigned kAttempts = 8;

double SizeOf(ViewMesh const& mesh)
{
    double size = 0.0;
    for (std::size_t axis = 0; mesh.box && axis < 3; ++axis)
        size = std::max(size, mesh.box->high[axis] - mesh.box->low[axis]);
    return size;
}

// For each vertex the one that stands for it: the first one of its cell. Normals that point elsewhere stay apart.
std::vector<std::uint32_t> Representatives(ViewPrimitive const& primitive, double cell)
{
    std::unordered_map<std::uint64_t, std::uint32_t> firsts;
    std::vector<std::uint32_t> result(primitive.positions.size() / 3);
    for (std::uint32_t vertex = 0; vertex < result.size(); ++vertex)
    {
        std::uint64_t key = 0;
        for (std::size_t axis = 0; axis < 3; ++axis)
        {
            double const place = std::floor(static_cast<double>(primitive.positions[3 * vertex + axis]) / cell);
            // 20 bits for each axis; there are less than 2^19 cells along a mesh.
            key = (key << 20U) | (static_cast<std::uint64_t>(static_cast<std::int64_t>(place)) & 0xFFFFFU);
        }
        if (!primitive.normals.empty())
        {
            float const* const normal = &primitive.normals[3 * vertex];
            std::size_t const axis = std::abs(normal[0]) >= std::max(std::abs(normal[1]), std::abs(normal[2])) ? 0
                                     : std::abs(normal[1]) >= std::abs(normal[2])                              ? 1
                                                                                                               : 2;
            key = (key << 3U) | (2 * axis + (normal[axis] < 0.0F ? 1 : 0));
        }
        result[vertex] = firsts.try_emplace(key, vertex).first->second;
    }
    return result;
}

// The triangles that are left, as places among those of the primitive; one at least, whatever it looks like.
std::vector<std::size_t> Left(ViewPrimitive const& primitive, std::vector<std::uint32_t> const& representatives)
{
    std::vector<std::size_t> left;
    for (std::size_t i = 0; i + 2 < primitive.indices.size(); i += 3)
    {
        std::uint32_t const a = representatives[primitive.indices[i]];
        std::uint32_t const b = representatives[primitive.indices[i + 1]];
        std::uint32_t const c = representatives[primitive.indices[i + 2]];
        if (a != b && b != c && c != a)
            left.push_back(i / 3);
    }
    // A mesh without anything is none.
    if (left.empty())
        left.push_back(0);
    return left;
}

void Thin(ViewPrimitive& primitive, double cell)
{
    std::vector<std::uint32_t> const representatives = Representatives(primitive, cell);
    std::vector<std::size_t> const left = Left(primitive, representatives);
    ViewPrimitive thin;
    thin.role = primitive.role;
    thin.style = primitive.style;
    std::unordered_map<std::uint32_t, std::uint32_t> numbers;
    std::size_t range = 0;
    for (std::size_t place = 0; place < left.size(); ++place)
    {
        bool isNewRange = place == 0 && !primitive.ranges.empty();
        while (range + 1 < primitive.ranges.size() && primitive.ranges[range + 1] <= left[place])
        {
            ++range;
            isNewRange = true;
        }
        if (isNewRange)
        {
            thin.ranges.push_back(static_cast<std::uint32_t>(place));
            thin.numbers.push_back(primitive.numbers[range]);
        }
        for (std::size_t corner = 0; corner < 3; ++corner)
        {
            std::uint32_t const old = representatives[primitive.indices[3 * left[place] + corner]];
            auto const [number, isNew] = numbers.try_emplace(old, static_cast<std::uint32_t>(numbers.size()));
            thin.indices.push_back(number->second);
            for (std::size_t axis = 0; isNew && axis < 3; ++axis)
                thin.positions.push_back(primitive.positions[3 * old + axis]);
            for (std::size_t axis = 0; isNew && !primitive.normals.empty() && axis < 3; ++axis)
                thin.normals.push_back(primitive.normals[3 * old + axis]);
        }
    }
    primitive = std::move(thin);
}

// How many triangles are drawn when cells are that fraction of each mesh.
unsigned long long CountAt(std::vector<ViewMesh> const& meshes, std::vector<unsigned long long> const& uses,
                           double fraction)
{
    unsigned long long count = 0;
    for (std::size_t i = 0; i < uses.size(); ++i)
        for (ViewPrimitive const& primitive : meshes[i].primitives)
            if (uses[i] > 0 && primitive.role == ViewPrimitive::Role::kFaces)
                count +=
                    uses[i] *
                    Left(primitive, Representatives(primitive, std::max(SizeOf(meshes[i]) * fraction, 1e-30))).size();
    return count;
}

}  // namespace

unsigned long long DrawnTriangles(std::vector<ViewMesh> const& meshes, std::vector<unsigned long long> const& uses)
{
    unsigned long long count = 0;
    for (std::size_t i = 0; i < uses.size(); ++i)
        count += uses[i] * meshes[i].TriangleCount();
    return count;
}

Thinned ThinMeshes(std::vector<ViewMesh>& meshes, std::vector<unsigned long long> const& uses,
                   unsigned long long mostTriangles)
{
    Thinned result{DrawnTriangles(meshes, uses), 0};
    result.to = result.from;
    if (result.from <= mostTriangles)
        return result;
    // In powers of 2 of the size of a mesh.
    double fine = -12.0;
    double coarse = -2.0;
    for (unsigned i = 0; i < kAttempts; ++i)
    {
        double const middle = 0.5 * (fine + coarse);
        (CountAt(meshes, uses, std::exp2(middle)) > mostTriangles ? fine : coarse) = middle;
    }
    for (std::size_t i = 0; i < meshes.size(); ++i)
    {
        double const cell = std::max(SizeOf(meshes[i]) * std::exp2(coarse), 1e-30);
        for (ViewPrimitive& primitive : meshes[i].primitives)
            if (primitive.role == ViewPrimitive::Role::kFaces)
                Thin(primitive, cell);
    }
    result.to = DrawnTriangles(meshes, uses);
    return result;
}

}  // namespace KVR
