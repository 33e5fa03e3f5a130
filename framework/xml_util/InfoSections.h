#pragma once

#include <optional>

#include "framework/xml_util/FormatNames.h"

namespace KVR
{

/// An element under the root that names a side file. Its switch, where it has one, must be exactly "True" and its
/// "Path" present, or the file is not touched.
struct InfoSection
{
    ElementName name;
    std::optional<AttributeName> switchAttribute;
};

namespace InfoSections
{

inline constexpr InfoSection kKernelStore{Names::SatInfo, std::nullopt};
inline constexpr InfoSection kGeometryStore{Names::GeometryInfo, Names::GenerateGeometry};
inline constexpr InfoSection kSegmentStore{Names::MeshSegmentInfo, Names::GenerateMeshSegment};
inline constexpr InfoSection kMeshStore{Names::MeshInfo, Names::GenerateMesh};
inline constexpr InfoSection kAssets{Names::VitreolMaterialInfo, Names::GenerateSerializedVitreol};
inline constexpr InfoSection kPersistentIds{Names::SubObjectPersistentIdInfo, Names::GenerateSubObjectPersistentId};

inline constexpr FormatName kSwitchedOn{u"True", "True"};

}  // namespace InfoSections

}  // namespace KVR
