#include "exchange/import/BodyMeshing.h"

#include <fmt/format.h>

#include <BRepTools.hxx>
#include <Precision.hxx>
#include <algorithm>
#include <cmath>
#include <thread>
#include <utility>

#include "exchange/import/ModelBox.h"
#include "exchange/model/ModelError.h"
#include "exchange/run/Beside.h"
#include "framework/kernel/tessellation/ShapeMesher.h"

namespace KVR
{

namespace
{

// Of the diagonal: what is finer takes more memory than there is.
constexpr double kFinest = 1e-6;

// 0 where nothing can be meshed.
double DeflectionOf(ProductPlan const& plan, MeshQuality const& quality)
{
    double const diagonal = DiagonalOfModel(plan);
    double const deflection = quality.deflection.value * (quality.deflection.isFraction ? diagonal : 1.0);
    // Of numbers that are too large to be squared nothing can be meshed.
    if (!(diagonal > 0.0) || !std::isfinite(diagonal) || !(deflection > 0.0))
        return 0.0;
    double const finest = kFinest * diagonal;
    if (!quality.deflection.isFraction && deflection < finest)
        throw ModelError(fmt::format("its diagonal is {:.3g}, so that bodies can be meshed to {:.3g} at the finest",
                                     diagonal, finest));
    return deflection;
}

}  // namespace

BodyMeshing::BodyMeshing(ProductPlan const& plan, MeshQuality const& quality, TellStage const& tell)
    : m_plan(plan),
      m_deflection(DeflectionOf(plan, quality)),
      m_indicator(new StageProgress("meshing", tell)),
      m_scope(m_indicator->Start(), nullptr, static_cast<double>(std::max<std::size_t>(plan.components.size(), 1)))
{
    m_parameters.Relative = quality.isRelative && quality.deflection.isFraction;
    // Open CASCADE refuses what is finer than its own tolerance.
    m_parameters.Deflection =
        m_parameters.Relative ? quality.deflection.value : std::max(m_deflection, Precision::Confusion());
    m_parameters.Angle = quality.angle;
    std::vector<TopoDS_Shape> shapes;
    shapes.reserve(plan.components.size());
    for (ComponentPlan const& component : plan.components)
        shapes.push_back(component.shape);
    for (ShapeGroup& shared : SharedShapes(shapes))
        m_groups.emplace_back().shapes = std::move(shared);
    m_groupOf.assign(shapes.size(), m_groups.size());
    for (std::size_t i = 0; i < m_groups.size(); ++i)
        for (std::size_t const member : m_groups[i].shapes.members)
        {
            m_groupOf[member] = i;
            m_groups[i].ranges.push_back(m_scope.Next());
        }
    int facesBehind = 0;
    for (auto group = m_groups.rbegin(); group != m_groups.rend(); ++group)
    {
        group->isInParallel = group->shapes.faces >= facesBehind;
        facesBehind += group->shapes.faces;
    }
}

BodyMeshing::~BodyMeshing()
{
    {
        std::lock_guard const lock(m_mutex);
        m_next = m_groups.size();
    }
    for (std::future<void> const& thread : m_threads)
        thread.wait();
}

void BodyMeshing::Start()
{
    // Without a measure nothing is meshed.
    if (m_deflection == 0.0)
        m_next = m_done = m_groups.size();
    if (m_done == m_groups.size())
        m_scope.Close();
    std::size_t const processors = std::max(1u, std::thread::hardware_concurrency());
    for (std::size_t i = 1; i < std::min(processors, m_groups.size() - m_next); ++i)
        m_threads.push_back(std::async(kBesideIfPossible, [this] { MeshAll(); }));
}

// False when there is nothing left to begin.
bool BodyMeshing::MeshNext()
{
    std::size_t place = 0;
    {
        std::lock_guard const lock(m_mutex);
        if (m_next == m_groups.size() || m_failure)
            return false;
        place = m_next++;
    }
    Group& group = m_groups[place];
    IMeshTools_Parameters parameters = m_parameters;
    parameters.InParallel = group.isInParallel;
    std::exception_ptr failure;
    try
    {
        for (std::size_t i = 0; i < group.ranges.size(); ++i)
        {
            // A copy takes over, and tells of its end here.
            Message_ProgressRange const range(group.ranges[i]);
            MeshShape(m_plan.components[group.shapes.members[i]].shape, parameters, range);
        }
    }
    catch (...)
    {
        failure = std::current_exception();
    }
    {
        std::lock_guard const lock(m_mutex);
        group.isDone = true;
        // The end of the scope tells what no component counted for.
        if (++m_done == m_groups.size())
            m_scope.Close();
        if (failure && !m_failure)
            m_failure = failure;
    }
    m_isNews.notify_all();
    return true;
}

void BodyMeshing::MeshAll()
{
    while (MeshNext())
    {
    }
}

void BodyMeshing::Wait(std::size_t component)
{
    std::size_t const place = m_groupOf[component];
    if (place == m_groups.size() || m_deflection == 0.0)
        return;
    auto const isOver = [&] { return m_groups[place].isDone || m_failure; };
    for (;;)
    {
        {
            std::lock_guard const lock(m_mutex);
            if (isOver())
                break;
        }
        if (!MeshNext())
            break;
    }
    std::unique_lock lock(m_mutex);
    m_isNews.wait(lock, isOver);
    if (m_failure)
        std::rethrow_exception(m_failure);
}

void BodyMeshing::WaitForAll()
{
    for (std::size_t i = 0; i < m_groupOf.size(); ++i)
        Wait(i);
}

bool BodyMeshing::IsDone() const
{
    std::lock_guard const lock(m_mutex);
    return m_done == m_groups.size();
}

void BodyMeshing::Release(std::size_t component, std::vector<TopoDS_Shape> bodies)
{
    if (m_groupOf[component] == m_groups.size())
        return;
    Group& group = m_groups[m_groupOf[component]];
    std::move(bodies.begin(), bodies.end(), std::back_inserter(group.bodies));
    if (++group.released < group.shapes.members.size())
        return;
    for (TopoDS_Shape const& body : group.bodies)
        BRepTools::Clean(body);
    group.bodies.clear();
}

}  // namespace KVR
