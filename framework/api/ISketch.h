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
    virtual SketchTypeEnum SketchType() const = 0;
    virtual IdSet CurveIds() const = 0;
    virtual IdSet PointIds() const = 0;
    /// The number of curves and points together.
    virtual unsigned long long ChildCount() const = 0;
    /// The empty id for an index beyond the count; std::out_of_range for one that its list does not hold.
    virtual UTF8String ChildIdAt(unsigned long long index) const = 0;
};

}  // namespace KVR
