#pragma once

#include <tiny_gltf.h>

#include <TopoDS_Shape.hxx>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "authoring/SceneRecords.h"
#include "exchange/export/ShapeDocument.h"

namespace KVR::Test
{

/// What is wrong with import and export: changes of what import hands to the authoring library, and of what export
/// hands to its writers. The linker puts them between callers and functions of this program alone (tests/CMakeLists.txt
/// names these); nothing of it is in a library. What is not set changes nothing; where there is an answer, it is
/// whether the thing is handed on at all.
struct Breaks
{
    std::function<bool(Authoring::InstanceRecord&)> instance;
    /// Assemblies and parts.
    std::function<void(Authoring::ComponentRecord&)> component;
    std::function<bool(Authoring::BodyRecord&)> body;
    std::function<void(Authoring::PointRecord&)> point;
    std::function<void(Authoring::AttributeSetRecord&)> attributes;
    std::function<bool(Authoring::CalloutRecord&)> callout;
    /// Three numbers for each vertex or normal.
    std::function<void(std::vector<double>&)> vertices;
    std::function<void(std::vector<double>&)> normals;
    /// The shape of a body.
    std::function<TopoDS_Shape(TopoDS_Shape const&)> shape;
    /// Persistent ids by data ids.
    std::function<void(std::map<std::string, std::string>&)> persistentIds;
    std::function<void(ShapeDocument&)> step;
    std::function<void(tinygltf::Model&)> gltf;
};

/// Those that are in force, also in child processes that begin meanwhile.
Breaks& TheBreaks();

}  // namespace KVR::Test
