#include "exchange/meshes/GltfCompressedView.h"

#ifdef KVR_HAS_MESHOPTIMIZER
#include <meshoptimizer.h>
#endif

namespace KVR
{

#ifdef KVR_HAS_MESHOPTIMIZER

namespace
{

// A group of 16 bytes takes 2 bits at the least.
constexpr std::size_t kMostTimes = 64;
// Behind the codes of triangles, and those of other indices; each after a byte that says what follows.
constexpr std::size_t kTriangleTail = 16;
constexpr std::size_t kSequenceTail = 4;
constexpr std::size_t kMostStride = 256;

struct Claims
{
    std::string mode;
    std::string filter;
    std::size_t count = 0;
    std::size_t stride = 0;
};

bool MakesSense(Claims const& claims)
{
    if (claims.mode != "ATTRIBUTES")
        return (claims.mode == "INDICES" || (claims.mode == "TRIANGLES" && claims.count % 3 == 0)) &&
               (claims.stride == 2 || claims.stride == 4) && (claims.filter.empty() || claims.filter == "NONE");
    if (claims.stride == 0 || claims.stride % 4 != 0 || claims.stride > kMostStride)
        return false;
    return claims.filter.empty() || claims.filter == "NONE" || claims.filter == "EXPONENTIAL" ||
           (claims.filter == "OCTAHEDRAL" && (claims.stride == 4 || claims.stride == 8)) ||
           (claims.filter == "QUATERNION" && claims.stride == 8);
}

// Whether so many bytes can hold what is claimed.
bool HasRoom(Claims const& claims, std::size_t size)
{
    if (claims.mode == "ATTRIBUTES")
        return claims.count <= size * kMostTimes / claims.stride;
    std::size_t const tail = 1 + (claims.mode == "TRIANGLES" ? kTriangleTail : kSequenceTail);
    return size >= tail && claims.count <= (size - tail) * (claims.mode == "TRIANGLES" ? 3 : 1);
}

int Decode(Claims const& claims, std::string_view bytes, std::string& decoded)
{
    auto const* const source = reinterpret_cast<unsigned char const*>(bytes.data());
    if (claims.mode == "TRIANGLES")
        return meshopt_decodeIndexBuffer(decoded.data(), claims.count, claims.stride, source, bytes.size());
    if (claims.mode == "INDICES")
        return meshopt_decodeIndexSequence(decoded.data(), claims.count, claims.stride, source, bytes.size());
    return meshopt_decodeVertexBuffer(decoded.data(), claims.count, claims.stride, source, bytes.size());
}

void Filter(Claims const& claims, std::string& decoded)
{
    if (claims.filter == "OCTAHEDRAL")
        meshopt_decodeFilterOct(decoded.data(), claims.count, claims.stride);
    else if (claims.filter == "QUATERNION")
        meshopt_decodeFilterQuat(decoded.data(), claims.count, claims.stride);
    else if (claims.filter == "EXPONENTIAL")
        meshopt_decodeFilterExp(decoded.data(), claims.count, claims.stride);
}

}  // namespace

bool CanDecompressGltf()
{
    return true;
}

std::string DecompressedGltfView(GltfFile::Json const& json, std::string_view bytes, std::size_t length,
                                 std::string const& name)
{
    Claims const claims{GltfFile::Text(json, "mode"), GltfFile::Text(json, "filter"),
                        GltfFile::Index(json, "count").value_or(0), GltfFile::Index(json, "byteStride").value_or(0)};
    if (!MakesSense(claims))
        throw ModelError(name + " is compressed in a way that makes no sense");
    if (!HasRoom(claims, bytes.size()))
        throw ModelError(name + " counts " + WithCommas(claims.count) + " elements, which " + WithCommas(bytes.size()) +
                         " compressed bytes cannot hold");
    if (claims.count * claims.stride != length)
        throw ModelError(name + " announces " + WithCommas(length) + " bytes, and " +
                         WithCommas(claims.count * claims.stride) + " are compressed");
    std::string decoded(length, '\0');
    if (claims.count > 0 && Decode(claims, bytes, decoded) != 0)
        throw ModelError(name + " is compressed, and its bytes are damaged");
    Filter(claims, decoded);
    return decoded;
}

#else

bool CanDecompressGltf()
{
    return false;
}

std::string DecompressedGltfView(GltfFile::Json const&, std::string_view, std::size_t, std::string const& name)
{
    throw ModelError(name + " is compressed with EXT_meshopt_compression, which this build cannot read");
}

#endif

}  // namespace KVR
