#include "framework/api/SegmentInfo.h"

namespace KVR
{

PolygonIndexSet::PolygonIndexSet() = default;
PolygonIndexSet::~PolygonIndexSet() = default;
VertexIndexSet::VertexIndexSet() = default;
VertexIndexSet::~VertexIndexSet() = default;
EdgeSegmentInfo::EdgeSegmentInfo() = default;
EdgeSegmentInfo::~EdgeSegmentInfo() = default;
FaceSegmentInfo::FaceSegmentInfo() = default;
FaceSegmentInfo::~FaceSegmentInfo() = default;

}  // namespace KVR
