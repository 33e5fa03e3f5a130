#pragma once

#include "framework/api/IGeometry.h"

namespace KVR
{

/// Curves and points drawn together.
class KVR_API ISketch : public IGeometry
{
public:
    enum SketchTypeEnum : int
    {
        kSketchType_2D = 0,
        kSketchType_3D = 1
    };

    ~ISketch() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    /// Whether the sketch lies in a plane; a sketch that does not say is not served.
    virtual SketchTypeEnum SketchType() const = 0;
    /// The ids of the curves, each once and in document order; empty when there are none.
    virtual IdSet CurveIds() const = 0;
    /// The ids of the points, each once and in document order; empty when there are none.
    virtual IdSet PointIds() const = 0;
    /// The number of curves and points together.
    virtual unsigned long long ChildCount() const = 0;
    /// The id of a curve, or of a point for an index beyond the number of curves. Kept: the index is not lowered by
    /// that number, so that the first points of a sketch with curves are not reached; PointIds has them all. The empty
    /// id for an index beyond the count; std::out_of_range for one that its list does not hold.
    virtual UTF8String ChildIdAt(unsigned long long index) const = 0;
};

}  // namespace KVR
