#include "framework/kernel/tessellation/ShapeMesher.h"

#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Tool.hxx>
#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <stdexcept>

#include "framework/kernel/MemoryWatch.h"

namespace KVR
{

namespace
{

void Mesh(TopoDS_Shape const& shape, IMeshTools_Parameters const& parameters, Message_ProgressRange const& progress)
{
    MemoryWatch const watch;
    try
    {
        BRepMesh_IncrementalMesh const meshed(shape, parameters, progress);
    }
    catch (Standard_Failure const& failure)
    {
        // Faces that it came to have their triangles.
        watch.Check(failure);
    }
    catch (std::runtime_error const&)
    {
        if (!parameters.InParallel)
            throw;
        // The system has no more threads.
        IMeshTools_Parameters alone = parameters;
        alone.InParallel = false;
        Mesh(shape, alone, {});
    }
}

bool IsBare(TopoDS_Face const& face)
{
    TopLoc_Location location;
    return BRep_Tool::Triangulation(face, location).IsNull();
}

}  // namespace

void MeshShape(TopoDS_Shape const& shape, IMeshTools_Parameters const& parameters,
               Message_ProgressRange const& progress)
{
    Mesh(shape, parameters, progress);
    if (progress.UserBreak())
        return;
    // What fails in one of the mesher's own threads is seen by nobody: the faces that it left are tried once more, in
    // this one.
    constexpr int kMostTries = 100;
    int tries = 0;
    IMeshTools_Parameters alone = parameters;
    alone.InParallel = false;
    for (TopExp_Explorer face(shape, TopAbs_FACE); face.More() && tries < kMostTries; face.Next())
    {
        TopoDS_Face const& bare = TopoDS::Face(face.Current());
        if (!IsBare(bare))
            continue;
        ++tries;
        MemoryWatch const watch;
        Mesh(bare, alone, {});
        if (IsBare(bare))
            watch.Check();
    }
}

}  // namespace KVR
