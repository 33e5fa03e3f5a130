#pragma once

#include <map>
#include <string>

#include "exchange/certify/Bulk.h"

namespace KVR
{

class IPolygonMesh;

}  // namespace KVR

namespace KVR::Certification
{

/// What a mesh of a scene is at a place: without the polygons of face segments that are hidden.
struct SceneMeshFacts
{
    SceneMeshFacts(IPolygonMesh const& mesh, FactPlace const& place);

    unsigned long long triangles = 0;
    unsigned long long hiddenFaces = 0;
    Bulk bulk;
    /// By the first style of the polygons' material; empty for those without.
    std::map<std::string, double> areaOfStyle;
    bool hasNormals = false;
    /// The angles between normals and triangles in degrees, times the area.
    double normalAngles = 0.0;
};

/// The mean angle in degrees between three normals and the triangle that they belong to; 0 for a triangle or normals
/// without a direction. All are in the coordinates of one mesh.
double AngleOfNormals(FactPoint const (&corners)[3], FactPoint const (&normals)[3]);

}  // namespace KVR::Certification
