#pragma once

#include <array>
#include <optional>

namespace KVR
{

class BODY;
class curve;

// What is measured of the kernel's entities, as wholes: for dumps, and to tell whether bodies are the same. A measure
// that cannot be taken is nothing, and so is what an infinite curve does not have. ShapeMeasures measures for people
// and expressions, face by face: there a face that cannot be measured counts as none, and solids count as they are
// used, whatever their direction.

unsigned long long SolidCount(BODY const& body);
unsigned long long FaceCount(BODY const& body);
unsigned long long EdgeCount(BODY const& body);
unsigned long long VertexCount(BODY const& body);
/// That of the solids.
std::optional<double> Volume(BODY const& body);
std::optional<double> Area(BODY const& body);
/// The area of the faces, each once, and their centre.
struct FaceMoments
{
    double area = 0.0;
    std::array<double, 3> centroid{};
};
std::optional<FaceMoments> MomentsOfFaces(BODY const& body);
/// The centre of the solids; nothing without a volume.
std::optional<std::array<double, 3>> Centroid(BODY const& body);
/// The low corner, then the high one.
std::optional<std::array<double, 6>> BoundingBox(BODY const& body);

std::optional<double> Length(curve const& kernelCurve);
std::optional<std::array<double, 3>> Start(curve const& kernelCurve);
std::optional<std::array<double, 3>> End(curve const& kernelCurve);

}  // namespace KVR
