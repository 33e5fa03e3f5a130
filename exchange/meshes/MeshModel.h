#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "exchange/model/Losses.h"
#include "framework/api/CustomProperty.h"
#include "framework/api/Enums.h"
#include "framework/api/Matrix3d.h"

namespace KVR
{

/// What a file of meshes (STL, OBJ, PLY, glTF) holds, as plain lists. Texts are UTF-8 once the model is read. Colours
/// are fractions of sRGB from 0 to 1. All indices that stand in a model that was read are good.
struct MeshModel
{
    using Color = std::array<double, 4>;
    /// Red, green, blue and opacity.
    using ByteColor = std::array<std::uint8_t, 4>;
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    /// An image: bytes of the model, or a file.
    struct Image
    {
        std::string name;
        std::string bytes;
        /// Absolute; empty for one that has its bytes.
        std::string path;
    };
    /// A use of an image.
    struct Texture
    {
        std::size_t image = 0;
        std::optional<std::pair<double, double>> offset;
        std::optional<std::pair<double, double>> scale;
        /// In radians.
        std::optional<double> rotation;
        /// glTF's sampler as JSON; empty for none.
        std::string sampler;
    };
    struct Material
    {
        std::string name;
        std::optional<Color> color;
        std::optional<Color> ambient;
        std::optional<Color> specular;
        std::optional<Color> emission;
        std::optional<double> shininess;
        /// Of glTF's metallic-roughness model.
        std::optional<std::pair<double, double>> metallicRoughness;
        std::uint32_t colorTexture = kNone;
        std::uint32_t bumpTexture = kNone;
        /// What else glTF says of it, as JSON: alpha mode, sides, unlit; empty for nothing.
        std::string details;
    };

    /// Triangles, and perhaps lines and points, that share a list of points.
    struct Mesh
    {
        std::string name;
        /// Three for each point and each normal, two for each place in a texture, the second one down from the top.
        std::vector<double> points;
        std::vector<double> normals;
        std::vector<double> texture;
        /// Three for each triangle: the point of each corner, its normal and its place in a texture. The latter two
        /// are empty or as long, and kNone for a corner that has none.
        std::vector<std::uint32_t> corners;
        std::vector<std::uint32_t> cornerNormals;
        std::vector<std::uint32_t> cornerTexture;
        /// The material of each triangle, or kNone; empty for none at all.
        std::vector<std::uint32_t> materials;
        /// The first triangle of each piece that the file tells from the others; empty for one piece.
        std::vector<std::size_t> pieces;
        /// Of points and of triangles; empty for none. They hold in place of the material's colour.
        std::vector<ByteColor> pointColors;
        std::vector<ByteColor> triangleColors;
        /// Points along lines, and points that are points.
        std::vector<std::vector<std::uint32_t>> lines;
        std::vector<std::uint32_t> dots;
        /// Of lines and dots, or kNone.
        std::uint32_t lineMaterial = kNone;
        std::uint32_t dotMaterial = kNone;

        std::size_t PointCount() const noexcept { return points.size() / 3; }
        std::size_t TriangleCount() const noexcept { return corners.size() / 3; }
        bool IsEmpty() const noexcept { return corners.empty() && lines.empty() && dots.empty(); }
    };

    struct Placement
    {
        std::string name;
        std::size_t component = 0;
        Matrix3d transform;
        bool isVisible = true;
        std::vector<CustomProperty> properties;
    };
    /// An assembly, which has placements, or a part, which has meshes.
    struct Component
    {
        std::string name;
        bool isAssembly = false;
        std::vector<Placement> placements;
        std::vector<std::size_t> meshes;
        std::vector<CustomProperty> properties;
    };

    /// A camera where it stands: it looks along its direction.
    struct Camera
    {
        std::string name;
        bool isPerspective = true;
        std::array<double, 3> position{};
        std::array<double, 3> direction{0.0, 0.0, -1.0};
        std::array<double, 3> up{0.0, 1.0, 0.0};
        std::optional<double> aspectRatio;
        /// In radians.
        std::optional<double> viewAngle;
        std::optional<double> windowHeight;
        std::optional<double> nearest;
        std::optional<double> farthest;
    };

    std::vector<Image> images;
    std::vector<Texture> textures;
    std::vector<Material> materials;
    std::vector<Mesh> meshes;
    /// The first one is the root; one that places another comes before it.
    std::vector<Component> components;
    std::vector<Camera> cameras;

    UnitTypeEnum unit = kUnitType_Millimeter;
    bool isUnitStated = false;
    /// Names of elements of file properties with their texts.
    std::vector<std::pair<std::string, std::string>> header;
    /// What was found and has no place in the model, by kind; and sentences about what was taken of a damaged file.
    Losses losses;
    std::vector<std::string> remarks;
};

}  // namespace KVR
