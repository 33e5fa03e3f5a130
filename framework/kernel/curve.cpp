#include "framework/kernel/curve.h"

#include <BRep_Tool.hxx>
#include <Geom_Curve.hxx>
#include <Standard_Failure.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <utility>

#include "framework/kernel/KernelMessages.h"
#include "framework/kernel/MemoryWatch.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/history_stream.h"

namespace KVR
{

using opencascade::handle;

curve::curve(handle<Geom_Curve> const& geometry, double first, double last)
    : m_geometry(std::make_unique<handle<Geom_Curve>>(geometry)), m_first(first), m_last(last)
{
}

curve::~curve() = default;

bool curve::IsDestroyed() const noexcept
{
    return m_geometry->IsNull();
}

void curve::Destroy() noexcept
{
    m_geometry->Nullify();
}

curve* curve::Make(handle<Geom_Curve> const& geometry, double first, double last)
{
    HISTORY_STREAM* const stream = gki_global_data().activeStream;
    if (!stream || geometry.IsNull())
        return nullptr;
    std::unique_ptr<curve> made(new curve(geometry, first, last));
    stream->m_curves.push_back(std::move(made));
    return stream->m_curves.back().get();
}

outcome GKI_MAKE_CURVE::from_edge(EDGE* edge, bool sharesGeometry, curve*& made)
{
    if (!edge)
        return {outcome::kBadArgument, "there is no edge"};
    MemoryWatch const watch;
    try
    {
        TopoDS_Edge const& shape = TopoDS::Edge(edge->Shape());
        double first = 0.0;
        double last = 0.0;
        // With the edge's place in it, a copy unless the edge is where its geometry is.
        handle<Geom_Curve> geometry = BRep_Tool::Curve(shape, first, last);
        if (geometry.IsNull())
            return {outcome::kBadGeometry, "the edge has no curve in space"};
        if (shape.Orientation() == TopAbs_REVERSED)
        {
            double const reversedFirst = geometry->ReversedParameter(last);
            last = geometry->ReversedParameter(first);
            first = reversedFirst;
            geometry = geometry->Reversed();
        }
        else if (!sharesGeometry)
        {
            geometry = handle<Geom_Curve>::DownCast(geometry->Copy());
        }
        curve* const result = curve::Make(geometry, first, last);
        if (!result)
            return {outcome::kBadArgument, "no history stream is active"};
        made = result;
        return {};
    }
    catch (Standard_Failure const& failure)
    {
        watch.Check(failure);
        return {outcome::kBadGeometry, KernelFailureText(failure)};
    }
}

void GMK::curve_xs::destroy() noexcept
{
    if (crv)
        crv->Destroy();
}

}  // namespace KVR
