#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

#include "authoring/Export.h"
#include "framework/api/UTF8String.h"

namespace KVR::Authoring
{

class StoreFile;

/// A point or vector: three doubles, x, y, z, in the length unit of the curve object.
using Triple = std::array<double, 3>;

/// Record type 1. In the file: root point (3 f64), direction (3 f64), parameter start (f64), parameter end (f64).
struct LineRecord
{
    Triple rootPoint{};
    Triple direction{};
    double start = 0.0;
    double end = 0.0;
};

/// Record type 2. In the file: origin (3 f64), direction (3 f64).
struct RayRecord
{
    Triple origin{};
    Triple direction{1.0, 0.0, 0.0};
};

/// Record type 3. In the file: closed (byte), periodic (byte), centre (3 f64), major axis with the length of the larger
/// radius (3 f64), normal (3 f64), smaller radius by larger one (f64), parameter start and end in radians (f64 each).
struct EllipseRecord
{
    bool isClosed = false;
    bool isPeriodic = false;
    Triple center{};
    Triple majorAxis{1.0, 0.0, 0.0};
    Triple normal{0.0, 0.0, 1.0};
    double radiusRatio = 1.0;
    double start = 0.0;
    double end = 0.0;
};

/// Record type 4. In the file: closed (byte), periodic (byte), point count n (u64), n points (3 f64 each), has vectors
/// (u64, 1 or 0), and with vectors n of them (3 f64 each). A closed polyline does not repeat its first point: the
/// reader does.
struct PolylineRecord
{
    bool isClosed = false;
    bool isPeriodic = false;
    std::vector<Triple> points;
    /// As many as points.
    std::optional<std::vector<Triple>> vectors;
};

struct CurveRecord;

/// A part of a composite, with its values in the composite's three lists.
struct CompositeSegment
{
    /// Never empty: a reader takes an empty id for a damaged record.
    UTF8String id;
    std::shared_ptr<CurveRecord const> curve;
    std::uint32_t flag = 0;
    double start = 0.0;
    double end = 0.0;
    std::uint32_t value = 0;
};

/// Record type 5. In the file: closed (byte), periodic (byte), segment count n (u64), n segments (a word that no reader
/// uses (u64), record type (u64), id (string), the payload of that type), n flags (u64 each), n intervals (2 f64 each),
/// n values (u64 each).
struct CompositeRecord
{
    bool isClosed = false;
    bool isPeriodic = false;
    std::vector<CompositeSegment> segments;
};

/// Record type 6. In the file: closed (byte), periodic (byte), knot count (u64), knots (f64 each), control point count
/// p (u64), p points (3 f64 each), rational (u64, 1 or 0), of a rational curve p weights (f64 each), degree (u64),
/// parameter start and end (f64 each). The degree stands behind the control points.
struct NurbsRecord
{
    bool isClosed = false;
    bool isPeriodic = false;
    std::vector<double> knots;
    std::vector<Triple> controlPoints;
    /// As many as control points.
    std::optional<std::vector<double>> weights;
    std::uint64_t degree = 1;
    double start = 0.0;
    double end = 0.0;
};

/// A curve of one of the six kinds.
struct CurveRecord
{
    std::variant<LineRecord, RayRecord, EllipseRecord, PolylineRecord, CompositeRecord, NurbsRecord> curve;

    /// 1 to 6, in the order of the variant.
    std::uint64_t Type() const noexcept { return curve.index() + 1; }
};

/// Writes the payload of a curve record. Throws GeneralException for lists whose lengths do not agree, and for a
/// segment without id or curve.
KVR_AUTHORING_API void WriteCurvePayload(StoreFile& file, CurveRecord const& record);

}  // namespace KVR::Authoring
