#pragma once

namespace KVR
{

/// How far triangles may be from the body that they stand for: a length above 0 in the unit of whoever is meshed, or a
/// fraction of the diagonal of its box.
struct Deflection
{
    double value = 1e-3;
    bool isFraction = true;
};

/// How finely bodies are meshed.
struct MeshQuality
{
    Deflection deflection;
    /// The greatest angle between the normals of neighbouring triangles, in radians.
    double angle = 0.5;
    /// Whether a deflection that is a fraction is one of the size of each edge, and not of the whole box.
    bool isRelative = false;
};

}  // namespace KVR
