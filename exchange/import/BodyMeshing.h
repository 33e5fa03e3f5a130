#pragma once

#include <IMeshTools_Parameters.hxx>
#include <Message_ProgressRange.hxx>
#include <Message_ProgressScope.hxx>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <future>
#include <mutex>
#include <vector>

#include "exchange/ImportModel.h"
#include "exchange/import/ProductPlan.h"
#include "exchange/model/SharedShapes.h"
#include "exchange/run/StageProgress.h"

namespace KVR
{

/// Meshes the bodies of all components of a model at one measure, on all processors, while those that are done are
/// taken. Components that share faces, edges or vertices are meshed one after the other in their order, so that the
/// triangles are the same however many processors there are.
class BodyMeshing
{
public:
    /// Finds the measure; nothing is meshed yet. Tells the stage "meshing" later on, from any thread, but not from two
    /// at once. The plan outlives the object. Throws ModelError for a length that is absurd beside the model.
    BodyMeshing(ProductPlan const& plan, MeshQuality const& quality, TellStage const& tell);
    /// Waits for what is being meshed; what nobody has begun is left out.
    ~BodyMeshing();
    BodyMeshing(BodyMeshing const&) = delete;
    BodyMeshing& operator=(BodyMeshing const&) = delete;

    /// How far triangles may be from bodies, in the model's unit; 0 when there is nothing to mesh.
    double Deflection() const noexcept { return m_deflection; }

    /// Begins, on all processors but the one that the caller has. Until a component was waited for, nobody else may
    /// look at its bodies.
    void Start();
    /// Returns when a component has its triangles, and those that share anything with it; until then the caller's
    /// thread meshes, too. Throws what meshing throws, in whichever thread.
    void Wait(std::size_t component);
    /// The same for all components.
    void WaitForAll();
    /// Whether all components have their triangles; then nothing is told any more.
    bool IsDone() const;

    /// Takes the triangles from bodies of a component, as soon as no other component needs them that shares anything
    /// with it: each component is released once, after it was waited for. Those of faces without surface stay.
    void Release(std::size_t component, std::vector<TopoDS_Shape> bodies);

private:
    struct Group
    {
        ShapeGroup shapes;
        /// Whether its faces are divided among processors: what comes behind would not keep the others busy as long.
        bool isInParallel = false;
        std::vector<Message_ProgressRange> ranges;
        bool isDone = false;
        std::size_t released = 0;
        std::vector<TopoDS_Shape> bodies;
    };

    bool MeshNext();
    void MeshAll();

    ProductPlan const& m_plan;
    double m_deflection = 0.0;
    IMeshTools_Parameters m_parameters;
    Handle(StageProgress) m_indicator;
    Message_ProgressScope m_scope;
    std::vector<Group> m_groups;
    /// The group of each component; their number for one without bodies.
    std::vector<std::size_t> m_groupOf;
    mutable std::mutex m_mutex;
    std::condition_variable m_isNews;
    std::size_t m_next = 0;
    std::size_t m_done = 0;
    std::exception_ptr m_failure;
    std::vector<std::future<void>> m_threads;
};

}  // namespace KVR
