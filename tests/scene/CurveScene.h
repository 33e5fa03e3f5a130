#pragma once

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "authoring/MeshStoreWriter.h"
#include "framework/api/kvr_api.h"
#include "scene/CurvePoints.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

/// A scene with one curve "c" of one record.
struct CurveScene
{
    explicit CurveScene(Authoring::CurveRecord const& record) : scene(StoreScene(kMeshInfo, {}, {"c"}))
    {
        Authoring::MeshStoreWriter writer(Wide((scene.Folder() + "/s.mesh").c_str()),
                                          Authoring::MeshStoreLayout::kMeshInfo);
        writer.Curve("c", record);
        writer.Finish();
        scene.Begin();
    }
    ICurve& Curve() { return scene.Get<ICurve>("c"); }
    ICurveData& Data() { return *Curve().CurveDataAt(0); }

    TestScene scene;
};

inline double Apart(double const* a, double const* b)
{
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

/// The greatest distance of the curve's points, of which so many are looked at between two parameters, from the line.
inline double Deviation(ICurveData const& curve, double first, double last, std::span<double const> line,
                        int looks = 5000)
{
    double greatest = 0.0;
    for (int i = 0; i <= looks; ++i)
    {
        Position at;
        if (curve.Evaluate_ex(i == looks ? last : first + (last - first) * i / looks, at) != kDataReturnCode_Ok)
            return std::numeric_limits<double>::infinity();
        double const point[] = {at.X(), at.Y(), at.Z()};
        double least = std::numeric_limits<double>::infinity();
        for (std::size_t k = 0; k + 3 < line.size(); k += 3)
        {
            double const* const a = &line[k];
            double const* const b = a + 3;
            double length = 0.0;
            double part = 0.0;
            for (int axis = 0; axis < 3; ++axis)
            {
                length += (b[axis] - a[axis]) * (b[axis] - a[axis]);
                part += (b[axis] - a[axis]) * (point[axis] - a[axis]);
            }
            double const share = length > 0.0 ? std::clamp(part / length, 0.0, 1.0) : 0.0;
            double const foot[] = {a[0] + share * (b[0] - a[0]), a[1] + share * (b[1] - a[1]),
                                   a[2] + share * (b[2] - a[2])};
            least = std::min(least, Apart(point, foot));
        }
        greatest = std::max(greatest, least);
    }
    return greatest;
}

/// The diagonal of the box around points.
inline double ExtentOf(std::span<double const> points)
{
    double low[] = {points[0], points[1], points[2]};
    double high[] = {points[0], points[1], points[2]};
    for (std::size_t i = 0; i < points.size(); ++i)
    {
        low[i % 3] = std::min(low[i % 3], points[i]);
        high[i % 3] = std::max(high[i % 3], points[i]);
    }
    return Apart(low, high);
}

}  // namespace KVR::Test
