#pragma once

#include <memory>

#include "framework/kernel/Export.h"
#include "framework/kernel/outcome.h"

class Geom_Curve;
namespace opencascade
{
template <class T>
class handle;
}

namespace KVR
{

class EDGE;
class HISTORY_STREAM;

/// A free curve with its range. It belongs to the stream that was active when it was made; destroying it frees what it
/// holds, and what is left of it stays with the stream, so that a pointer to a destroyed curve does no harm until the
/// stream is cleared.
class KVR_KERNEL_API curve
{
public:
    ~curve();
    curve(curve const&) = delete;
    curve& operator=(curve const&) = delete;

    /// The curve of Open CASCADE, in place; a null handle when it was destroyed. Include <Geom_Curve.hxx> to use it.
    opencascade::handle<Geom_Curve> const& Geometry() const noexcept { return *m_geometry; }
    /// The parameter at which the curve begins.
    double First() const noexcept { return m_first; }
    /// The parameter at which the curve ends.
    double Last() const noexcept { return m_last; }

    /// Whether Destroy was called.
    bool IsDestroyed() const noexcept;
    /// Frees the geometry; what is left ends with the stream. Once more has no effect.
    void Destroy() noexcept;

    /// A curve in the active stream; null when there is no active stream to own it, or for a null handle.
    static curve* Make(opencascade::handle<Geom_Curve> const& geometry, double first, double last);

private:
    curve(opencascade::handle<Geom_Curve> const& geometry, double first, double last);

    std::unique_ptr<opencascade::handle<Geom_Curve>> m_geometry;
    double m_first;
    double m_last;
};

/// Makes curves.
class KVR_KERNEL_API GKI_MAKE_CURVE
{
public:
    /// A free curve that follows the edge from its start to its end, in the active stream. With `sharesGeometry` false
    /// the geometry is a copy. A bad outcome, with the output left alone, for a null edge, one without a curve in
    /// space, and when no stream is active.
    static outcome from_edge(EDGE* edge, bool sharesGeometry, curve*& made);
};

namespace GMK
{

/// A view of a curve with which it is destroyed.
struct KVR_KERNEL_API curve_xs
{
    explicit curve_xs(curve* viewed) noexcept : crv(viewed) {}
    /// Destroys the curve; null, and a curve that was destroyed before, have no effect.
    void destroy() noexcept;
    curve* crv;
};

}  // namespace GMK

}  // namespace KVR
