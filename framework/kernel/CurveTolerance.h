#pragma once

namespace KVR
{

/// How far a polyline may be from its curve.
struct CurveTolerance
{
    /// As a fraction of the diagonal of the box around the piece.
    double fraction = 1e-3;
    /// In the curve's own unit of length. Counts instead of the fraction where it is greater than 0.
    double length = 0.0;
};

}  // namespace KVR
