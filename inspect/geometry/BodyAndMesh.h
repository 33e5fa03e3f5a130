#pragma once

#include <string>
#include <vector>

namespace KVR
{

struct SceneComponent;
struct SceneGeometry;

/// A mesh of a component with the body that it is the mesh of: the one that it names or, where a component has just one
/// body and one mesh, that.
struct BodyAndMesh
{
    SceneGeometry const* body = nullptr;
    SceneGeometry const* mesh = nullptr;

    static std::vector<BodyAndMesh> Of(SceneComponent const& component);

    /// How the box of the mesh lies beside that of the body, both in metres and in the component's coordinates.
    struct Boxes
    {
        /// The diagonal of the mesh's box by that of the body's; 1 for what has no box.
        double ratio = 1.0;
        bool areApart = false;

        /// Whether no coarseness of a mesh explains it.
        bool AreFar() const noexcept { return areApart || ratio > kMost || ratio < 1.0 / kMost; }

        /// The box of a body may be larger than it, and one in a slanted place is.
        static constexpr double kMost = 2.2;
    };
    Boxes CompareBoxes() const;

    /// The unit in which the numbers of the mesh seem to be, such as "kUnitType_Inch", for a mesh so many times too
    /// large; empty for none.
    std::string MeantUnit(double ratio) const;
};

}  // namespace KVR
