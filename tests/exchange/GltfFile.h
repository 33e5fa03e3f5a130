#pragma once

#include <array>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace KVR::Test
{

/// A glTF file, read back. Whatever does not fit together throws.
class GltfFile
{
public:
    using Point = std::array<double, 3>;

    /// What a primitive shows, where its node puts it: corners of triangles, or points.
    struct Shown
    {
        /// Of the node that has the mesh, and of those above it, with "/" between.
        std::string path;
        std::vector<Point> points;
        std::vector<std::size_t> indices;
        nlohmann::json primitive;
        nlohmann::json material;
        nlohmann::json node;
    };

    explicit GltfFile(std::string const& path);

    nlohmann::json document;
    std::vector<Shown> shown;

    /// The first whose path ends so.
    Shown const& At(std::string const& pathEnd) const;
    bool Has(std::string const& pathEnd) const;
    std::vector<std::vector<double>> Numbers(nlohmann::json const& accessorIndex) const;

private:
    using Matrix = std::array<double, 16>;

    void Walk(std::size_t node, Matrix const& above, std::string const& path);

    std::string m_bytes;
};

}  // namespace KVR::Test
