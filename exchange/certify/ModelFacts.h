#pragma once

#include <array>
#include <optional>
#include <set>
#include <string>

namespace KVR
{

/// Measures of triangles or bodies, added up over occurrences. Lengths are in one unit for all that is compared.
struct Measures
{
    double volume = 0.0;
    double area = 0.0;
    /// The centre of the volume or, where there is none, of the area, times that.
    std::array<double, 3> volumeMoment{};
    std::array<double, 3> areaMoment{};
};

/// What a model, a scene or a file holds, counted over all occurrences where not said otherwise. What is not set has no
/// place in it.
struct ModelFacts
{
    std::optional<unsigned long long> assemblies;
    std::optional<unsigned long long> parts;
    std::optional<unsigned long long> instances;
    /// Of parts.
    std::optional<unsigned long long> occurrences;
    std::optional<unsigned long long> solids;
    std::optional<unsigned long long> faces;
    std::optional<unsigned long long> edges;
    std::optional<unsigned long long> triangles;
    /// Different names of assemblies, parts and instances.
    std::optional<std::set<std::string>> names;
    /// Different colours in use, as "#rrggbbaa".
    std::optional<std::set<std::string>> colors;
    /// Those that triangles are seen in.
    std::optional<std::set<std::string>> drawnColors;
    std::optional<std::set<std::string>> layers;
    std::optional<unsigned long long> layerMembers;
    std::optional<unsigned long long> annotations;
    /// Those of them that are drawn.
    std::optional<unsigned long long> drawings;
    std::optional<unsigned long long> views;
    /// Of bodies, by their surfaces.
    std::optional<Measures> bodies;
    /// Of triangles.
    std::optional<Measures> mesh;
    /// Around the triangles: the lowest and the highest corner.
    std::optional<std::array<double, 6>> box;

    void AddPoint(double x, double y, double z);

    std::string Text() const;
    /// Throws std::exception for a text that Text did not give.
    static ModelFacts Of(std::string const& text);
};

/// Adds the measures of a triangle.
void AddTriangle(Measures& measures, std::array<double, 3> const& a, std::array<double, 3> const& b,
                 std::array<double, 3> const& c);

/// "#rrggbbaa" of a colour in fractions of sRGB.
std::string ColorText(double red, double green, double blue, double alpha);

}  // namespace KVR
