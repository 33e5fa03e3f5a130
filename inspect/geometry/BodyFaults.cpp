#include "inspect/geometry/BodyFaults.h"

#include <BRepCheck_Analyzer.hxx>
#include <BRepCheck_ListOfStatus.hxx>
#include <BRepCheck_Result.hxx>
#include <BRep_Tool.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <array>

#include "framework/kernel/KernelMessages.h"

namespace KVR
{

namespace
{

struct StatusText
{
    BRepCheck_Status status;
    char const* text;
};

constexpr auto kStatusTexts = std::to_array<StatusText>({
    {BRepCheck_InvalidPointOnCurve, "a vertex lies beside its edge"},
    {BRepCheck_InvalidPointOnCurveOnSurface, "a vertex lies beside its edge on the face"},
    {BRepCheck_InvalidPointOnSurface, "a vertex lies beside its face"},
    {BRepCheck_No3DCurve, "an edge has no curve"},
    {BRepCheck_Multiple3DCurve, "an edge has several curves"},
    {BRepCheck_Invalid3DCurve, "the curve of an edge is bad"},
    {BRepCheck_NoCurveOnSurface, "an edge has no curve on its face"},
    {BRepCheck_InvalidCurveOnSurface, "an edge does not lie on its face"},
    {BRepCheck_InvalidCurveOnClosedSurface, "the seam of a closed face is bad"},
    {BRepCheck_InvalidSameRangeFlag, "the curves of an edge have different ranges"},
    {BRepCheck_InvalidSameParameterFlag, "the curves of an edge run differently"},
    {BRepCheck_InvalidDegeneratedFlag, "an edge that is a point has a length"},
    {BRepCheck_FreeEdge, "an edge belongs to no second face"},
    {BRepCheck_InvalidMultiConnexity, "an edge belongs to more than two faces"},
    {BRepCheck_InvalidRange, "the range of an edge is bad"},
    {BRepCheck_EmptyWire, "an outline has no edges"},
    {BRepCheck_RedundantEdge, "an outline has an edge twice"},
    {BRepCheck_SelfIntersectingWire, "an outline crosses itself"},
    {BRepCheck_NoSurface, "a face has no surface"},
    {BRepCheck_InvalidWire, "an outline is bad"},
    {BRepCheck_RedundantWire, "a face has an outline twice"},
    {BRepCheck_IntersectingWires, "the outlines of a face cross each other"},
    {BRepCheck_InvalidImbricationOfWires, "the outlines of a face do not lie in one another"},
    {BRepCheck_EmptyShell, "a shell has no faces"},
    {BRepCheck_RedundantFace, "a shell has a face twice"},
    {BRepCheck_InvalidImbricationOfShells, "the shells of a solid do not lie in one another"},
    {BRepCheck_UnorientableShape, "its faces have no common outside"},
    {BRepCheck_NotClosed, "an outline or a shell is not closed"},
    {BRepCheck_NotConnected, "its pieces are not connected"},
    {BRepCheck_SubshapeNotInShape, "a piece of it is not in it"},
    {BRepCheck_BadOrientation, "a face or an outline is turned over"},
    {BRepCheck_BadOrientationOfSubshape, "a face or an edge is turned over within what it belongs to"},
    {BRepCheck_InvalidPolygonOnTriangulation, "the points of an edge do not fit the triangles of its face"},
    {BRepCheck_InvalidToleranceValue, "a tolerance is greater than what it belongs to"},
    {BRepCheck_EnclosedRegion, "a solid encloses a space of its own"},
    {BRepCheck_CheckFail, "a piece of it could not be looked at"},
});

char const* TextOf(BRepCheck_Status status)
{
    auto const* const found = std::find_if(kStatusTexts.begin(), kStatusTexts.end(),
                                           [&](StatusText const& row) { return row.status == status; });
    return found == kStatusTexts.end() ? "it is invalid" : found->text;
}

class Collector
{
public:
    explicit Collector(BRepCheck_Analyzer const& analyzer) : m_analyzer(analyzer) {}

    // What a piece says of itself, and of its place in the pieces that have it.
    void Add(TopoDS_Shape const& piece)
    {
        Handle(BRepCheck_Result) const& result = m_analyzer.Result(piece);
        if (result.IsNull())
            return;
        Add(result->Status());
        for (result->InitContextIterator(); result->MoreShapeInContext(); result->NextShapeInContext())
            Add(result->StatusOnShape());
    }

    BodyFaults found;

private:
    void Add(BRepCheck_ListOfStatus const& list)
    {
        for (BRepCheck_ListIteratorOfListOfStatus at(list); at.More(); at.Next())
            if (at.Value() != BRepCheck_NoError)
                Add(TextOf(at.Value()));
    }

    void Add(char const* text)
    {
        auto const place = std::find_if(found.faults.begin(), found.faults.end(),
                                        [&](BodyFaults::Fault const& fault) { return fault.text == text; });
        if (place == found.faults.end())
            found.faults.push_back({text, 1});
        else
            ++place->count;
    }

    BRepCheck_Analyzer const& m_analyzer;
};

// Edges and outlines are compared with one another, pair by pair.
bool IsLong(TopoDS_Shape const& shape)
{
    for (TopExp_Explorer wire(shape, TopAbs_WIRE); wire.More(); wire.Next())
    {
        int edges = 0;
        for (TopExp_Explorer edge(wire.Current(), TopAbs_EDGE); edge.More(); edge.Next())
            if (++edges > BodyFaults::kMostEdgesOfWire)
                return true;
    }
    return false;
}

}  // namespace

BodyFaults BodyFaults::Of(TopoDS_Shape const& shape)
{
    try
    {
        BRepCheck_Analyzer const analyzer(shape, !IsLong(shape));
        if (analyzer.IsValid())
            return {};
        Collector collector(analyzer);
        for (TopAbs_ShapeEnum const kind : {TopAbs_VERTEX, TopAbs_EDGE, TopAbs_WIRE, TopAbs_FACE, TopAbs_SHELL,
                                            TopAbs_SOLID, TopAbs_COMPSOLID, TopAbs_COMPOUND})
        {
            TopTools_IndexedMapOfShape pieces;
            TopExp::MapShapes(shape, kind, pieces);
            for (int i = 1; i <= pieces.Extent(); ++i)
                collector.Add(pieces(i));
        }
        if (collector.found.faults.empty())
            collector.found.faults.push_back({"it is invalid", 1});
        return collector.found;
    }
    catch (Standard_Failure const& failure)
    {
        return {{{KernelFailureText(failure), 1}}};
    }
}

bool IsClosedBody(TopoDS_Shape const& shape)
{
    bool hasShells = false;
    for (TopExp_Explorer shell(shape, TopAbs_SHELL); shell.More(); shell.Next())
    {
        hasShells = true;
        if (!BRep_Tool::IsClosed(shell.Current()))
            return false;
    }
    return hasShells && !TopExp_Explorer(shape, TopAbs_FACE, TopAbs_SHELL).More() &&
           !TopExp_Explorer(shape, TopAbs_SHELL, TopAbs_SOLID).More();
}

}  // namespace KVR
