#include "exchange/model/StepHealing.h"

#include <BRep_Builder.hxx>
#include <Interface_Static.hxx>
#include <Message_ProgressScope.hxx>
#include <Resource_Manager.hxx>
#include <STEPControl_Reader.hxx>
#include <ShapeProcess_ShapeContext.hxx>
#include <Standard_Failure.hxx>
#include <TopoDS_Iterator.hxx>
#include <TransferBRep_ShapeBinder.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSAlgo.hxx>
#include <XSAlgo_AlgoContainer.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>
#include <algorithm>
#include <atomic>
#include <future>
#include <numeric>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include "exchange/model/SharedShapes.h"
#include "exchange/run/Beside.h"

namespace KVR
{

namespace
{

using TShape = TopoDS_TShape const*;

// What Open CASCADE asked to be mended, and what it will be told of the outcome.
class Body : public Standard_Transient
{
    DEFINE_STANDARD_RTTI_INLINE(Body, Standard_Transient)

public:
    TopoDS_Shape shape;
    double precision = 0.0;
    double maxTolerance = 0.0;
    std::string resource;
    std::string sequence;
    bool isNonManifold = false;
    Handle(ShapeProcess_ShapeContext) context;
    TopoDS_Shape mended;
    // What was transferred on the way to it: behind the first of these places, to the last.
    int first = 0;
    int last = 0;
};

// Takes the place of Open CASCADE's mending: bodies pass as they are, and are noted.
class BodyCollector : public XSAlgo_AlgoContainer
{
    DEFINE_STANDARD_RTTI_INLINE(BodyCollector, XSAlgo_AlgoContainer)

public:
    explicit BodyCollector(Handle(XSAlgo_AlgoContainer) mending) : m_mending(std::move(mending))
    {
        SetToolContainer(m_mending->ToolContainer());
    }

    TopoDS_Shape ProcessShape(TopoDS_Shape const& shape, double precision, double maxTolerance, char const* resource,
                              char const* sequence, Handle(Standard_Transient) & info,
                              Message_ProgressRange const& progress, bool isNonManifold) const override
    {
        // A sequence of the user's own shares its tolerances among all bodies.
        if (!info.IsNull() || shape.IsNull() || !shape.Location().IsIdentity() ||
            shape.Orientation() != TopAbs_FORWARD || HasOwnSequence(resource, sequence))
        {
            m_isCertain = false;
            return m_mending->ProcessShape(shape, precision, maxTolerance, resource, sequence, info, progress,
                                           isNonManifold);
        }
        Handle(Body) const body = new Body();
        body->shape = shape;
        body->precision = precision;
        body->maxTolerance = maxTolerance;
        body->resource = resource;
        body->sequence = sequence;
        body->isNonManifold = isNonManifold;
        body->context = new ShapeProcess_ShapeContext(shape, Interface_Static::CVal(resource));
        body->context->SetDetalisation(TopAbs_EDGE);
        m_bodies.push_back(body);
        info = body;
        return shape;
    }

    void MergeTransferInfo(Handle(Transfer_TransientProcess) const& process, Handle(Standard_Transient) const& info,
                           int first) const override
    {
        if (auto const body = Handle(Body)::DownCast(info); !body.IsNull())
        {
            body->first = first;
            body->last = process->NbMapped();
        }
        else
            m_mending->MergeTransferInfo(process, info, first);
    }

    using XSAlgo_AlgoContainer::MergeTransferInfo;

    std::vector<Handle(Body)> const& Bodies() const { return m_bodies; }
    bool IsCertain() const { return m_isCertain; }

private:
    static bool HasOwnSequence(char const* resource, char const* sequence)
    {
        char const* const file = Interface_Static::CVal(resource);
        char const* const name = Interface_Static::CVal(sequence);
        Handle(ShapeProcess_Context) const context = new ShapeProcess_Context(file ? file : "");
        return context->ResourceManager()->Find((std::string(name ? name : sequence) + ".exec.op").c_str());
    }

    Handle(XSAlgo_AlgoContainer) m_mending;
    mutable std::vector<Handle(Body)> m_bodies;
    mutable bool m_isCertain = true;
};

// Open CASCADE's way of mending, put back at the end.
class CollectorInPlace
{
public:
    CollectorInPlace() : m_before(XSAlgo::AlgoContainer()), m_collector(new BodyCollector(m_before))
    {
        XSAlgo::SetAlgoContainer(m_collector);
    }

    ~CollectorInPlace() { XSAlgo::SetAlgoContainer(m_before); }

    CollectorInPlace(CollectorInPlace const&) = delete;
    CollectorInPlace& operator=(CollectorInPlace const&) = delete;

    Handle(BodyCollector) const& Collector() const { return m_collector; }

private:
    Handle(XSAlgo_AlgoContainer) m_before;
    Handle(BodyCollector) m_collector;
};

// One body after the other, as those that share a part of their shapes have to be.
void Mend(std::vector<Handle(Body)> const& bodies, ShapeGroup const& group, XSAlgo_AlgoContainer const& mending,
          Message_ProgressRange const& progress)
{
    Message_ProgressScope scope(progress, nullptr, static_cast<double>(group.members.size()));
    for (std::size_t const place : group.members)
    {
        Message_ProgressRange const range = scope.Next();
        if (!scope.More())
            return;
        Body& body = *bodies[place];
        Handle(Standard_Transient) info = body.context;
        body.mended = mending.ProcessShape(body.shape, body.precision, body.maxTolerance, body.resource.c_str(),
                                           body.sequence.c_str(), info, range, body.isNonManifold);
    }
}

std::vector<ShapeGroup> GroupsOf(std::vector<Handle(Body)> const& bodies)
{
    std::vector<TopoDS_Shape> shapes;
    shapes.reserve(bodies.size());
    for (Handle(Body) const& body : bodies)
        shapes.push_back(body->shape);
    return SharedShapes(shapes);
}

// False when one of them failed, which Open CASCADE would have noted beside the body.
bool MendAll(std::vector<Handle(Body)> const& bodies, Handle(XSAlgo_AlgoContainer) const& mending,
             Message_ProgressRange const& progress)
{
    std::vector<ShapeGroup> groups = GroupsOf(bodies);
    // The largest first, so that no thread is left with it at the end.
    std::stable_sort(groups.begin(), groups.end(),
                     [](ShapeGroup const& a, ShapeGroup const& b) { return a.faces > b.faces; });
    double const all = std::accumulate(groups.begin(), groups.end(), 0.0,
                                       [](double sum, ShapeGroup const& group) { return sum + 1.0 + group.faces; });
    Message_ProgressScope scope(progress, nullptr, all);
    std::vector<Message_ProgressRange> ranges;
    ranges.reserve(groups.size());
    for (ShapeGroup const& group : groups)
        ranges.push_back(scope.Next(1.0 + group.faces));
    std::atomic<std::size_t> next = 0;
    auto const work = [&]
    {
        for (std::size_t i = next++; i < groups.size(); i = next++)
            Mend(bodies, groups[i], *mending, ranges[i]);
    };
    std::size_t const threads = std::min<std::size_t>(groups.size(), std::max(1u, std::thread::hardware_concurrency()));
    std::vector<std::future<void>> others;
    for (std::size_t i = 1; i < threads; ++i)
        others.push_back(std::async(kBesideIfPossible, work));
    try
    {
        work();
        for (std::future<void>& other : others)
            other.get();
    }
    catch (Standard_Failure const&)
    {
        return false;
    }
    return std::none_of(bodies.begin(), bodies.end(), [](Handle(Body) const& body) { return body->mended.IsNull(); });
}

// The places of a process that were filled on the way to a body, as a process of their own: Open CASCADE looks through
// all that it is given.
void TellProcess(Handle(Transfer_TransientProcess) const& process, Body const& body,
                 XSAlgo_AlgoContainer const& mending)
{
    int const first = std::max(body.first, 1);
    Handle(Transfer_TransientProcess) const part = new Transfer_TransientProcess(body.last - first + 1);
    for (int i = first; i <= body.last; ++i)
        if (!process->MapItem(i).IsNull())
            part->Bind(process->Mapped(i), process->MapItem(i));
    mending.MergeTransferInfo(part, body.context, 1);
}

// Puts mended bodies where those that were not stand in assemblies.
class Exchange
{
public:
    explicit Exchange(std::vector<Handle(Body)> const& bodies)
    {
        for (Handle(Body) const& body : bodies)
        {
            // What was put into an assembly once is no longer free, though it may stand alone in the end.
            body->mended.Free(body->mended.Free() && body->shape.Free());
            m_isCertain = m_now.emplace(body->shape.TShape().get(), body->mended).second && m_isCertain;
        }
    }

    // A shape that is neither a body nor made of bodies may be a changed copy of one.
    bool IsCertain() const { return m_isCertain; }

    TopoDS_Shape Of(TopoDS_Shape const& shape)
    {
        auto known = m_now.find(shape.TShape().get());
        if (known == m_now.end())
        {
            TopoDS_Shape const made = Made(shape.Located(TopLoc_Location()).Oriented(TopAbs_FORWARD));
            known = m_now.emplace(shape.TShape().get(), made).first;
        }
        TopoDS_Shape placed = known->second;
        placed.Location(shape.Location() * placed.Location());
        placed.Orientation(TopAbs::Compose(shape.Orientation(), placed.Orientation()));
        return placed;
    }

private:
    TopoDS_Shape Made(TopoDS_Shape const& shape)
    {
        if (shape.ShapeType() != TopAbs_COMPOUND)
        {
            m_isCertain = false;
            return shape;
        }
        TopoDS_Shape compound = shape.EmptyCopied();
        BRep_Builder const builder;
        for (TopoDS_Iterator child(shape); child.More(); child.Next())
            builder.Add(compound, Of(child.Value()));
        compound.Free(shape.Free());
        return compound;
    }

    std::unordered_map<TShape, TopoDS_Shape> m_now;
    bool m_isCertain = true;
};

bool ExchangeBodies(Handle(Transfer_TransientProcess) const& process, std::vector<Handle(Body)> const& bodies)
{
    std::vector<bool> isPartOfBody(static_cast<std::size_t>(process->NbMapped()) + 1);
    for (Handle(Body) const& body : bodies)
        for (int i = body->first + 1; i <= body->last; ++i)
            isPartOfBody[static_cast<std::size_t>(i)] = true;
    Exchange exchange(bodies);
    for (int i = 1; i <= process->NbMapped(); ++i)
        if (!isPartOfBody[static_cast<std::size_t>(i)])
            for (Handle(Transfer_Binder) binder = process->MapItem(i); !binder.IsNull(); binder = binder->NextResult())
                if (auto const shape = Handle(TransferBRep_ShapeBinder)::DownCast(binder);
                    !shape.IsNull() && !shape->Result().IsNull())
                    shape->SetResult(exchange.Of(shape->Result()));
    return exchange.IsCertain();
}

}  // namespace

bool TransferInParallel(STEPControl_Reader& reader, Message_ProgressRange const& progress)
{
    // Of the work, in hundredths.
    constexpr double kCollecting = 15;
    constexpr double kMending = 85;
    CollectorInPlace const place;
    Message_ProgressScope scope(progress, nullptr, kCollecting + kMending);
    int const roots = reader.NbRootsForTransfer();
    Handle(XSControl_TransferReader) const transfer = reader.WS()->TransferReader();
    transfer->BeginTransfer();
    {
        // Not as the reader asks for it, which marks the smooth edges of what it gets.
        Message_ProgressScope collecting(scope.Next(kCollecting), nullptr, roots);
        for (int i = 1; i <= roots && collecting.More(); ++i)
            transfer->TransferOne(reader.RootForTransfer(i), true, collecting.Next());
    }
    BodyCollector const& collector = *place.Collector();
    Handle(XSAlgo_AlgoContainer) const mending = new XSAlgo_AlgoContainer();
    mending->SetToolContainer(collector.ToolContainer());
    if (!collector.IsCertain() || !MendAll(collector.Bodies(), mending, scope.Next(kMending)))
        return false;
    Handle(Transfer_TransientProcess) const process = transfer->TransientProcess();
    for (Handle(Body) const& body : collector.Bodies())
    {
        TellProcess(process, *body, *mending);
        body->context.Nullify();
    }
    return ExchangeBodies(process, collector.Bodies());
}

}  // namespace KVR
