#include <algorithm>
#include <array>
#include <cmath>

#include "exchange/meshes/FileBytes.h"
#include "exchange/meshes/GltfFile.h"

namespace KVR
{

namespace
{

enum ComponentType
{
    kInt8 = 5120,
    kUint8 = 5121,
    kInt16 = 5122,
    kUint16 = 5123,
    kUint32 = 5125,
    kFloat = 5126
};

// Of elements that have no bytes: their number is nothing but a claim.
constexpr std::size_t kMostWithoutBytes = std::size_t{1} << 20;

std::size_t SizeOf(int type)
{
    switch (type)
    {
        case kInt8:
        case kUint8:
            return 1;
        case kInt16:
        case kUint16:
            return 2;
        case kUint32:
        case kFloat:
            return 4;
        default:
            return 0;
    }
}

std::size_t WidthOf(std::string const& type)
{
    return type == "SCALAR" ? 1 : type == "VEC2" ? 2 : type == "VEC3" ? 3 : type == "VEC4" ? 4 : 0;
}

}  // namespace

GltfAccessor::GltfAccessor(GltfFile& file, std::size_t index, std::initializer_list<char const*> types)
{
    GltfFile::Json const& accessors = file.List("accessors");
    std::string const name = "accessor " + std::to_string(index);
    MeshReading& reading = file.Reading();
    if (index >= accessors.size())
    {
        reading.Damage(name + " is not among the " + WithCommas(accessors.size()));
        return;
    }
    GltfFile::Json const& accessor = accessors[index];
    std::string const type = GltfFile::Text(accessor, "type");
    m_width = WidthOf(type);
    m_type = static_cast<int>(GltfFile::Index(accessor, "componentType").value_or(0));
    std::size_t const size = SizeOf(m_type) * m_width;
    if (size == 0 || std::find(types.begin(), types.end(), type) == types.end())
    {
        reading.Damage(name + " has the type \"" + type.substr(0, 20) + "\" of " + std::to_string(m_type) +
                       ", which makes no sense there");
        return;
    }
    m_isNormalized = accessor.value("normalized", GltfFile::Json()) == true && m_type != kFloat;
    m_announced = GltfFile::Index(accessor, "count").value_or(0);
    std::optional<std::size_t> const view = GltfFile::Index(accessor, "bufferView");
    if (view)
    {
        std::string_view const bytes = file.View(*view);
        std::size_t const offset = GltfFile::Index(accessor, "byteOffset").value_or(0);
        m_bytes = bytes.substr(std::min(offset, bytes.size()));
        GltfFile::Json const& views = file.List("bufferViews");
        m_stride = *view < views.size() ? GltfFile::Index(views[*view], "byteStride").value_or(0) : 0;
        m_stride = m_stride < size ? size : m_stride;
        m_count = m_bytes.size() < size ? 0 : (m_bytes.size() - size) / m_stride + 1;
    }
    else
        m_count = kMostWithoutBytes;
    m_count = std::min(m_count, m_announced);
    if (m_count < m_announced)
        reading.Damage(name + " counts " + WithCommas(m_announced) + " elements, and its bytes are enough for " +
                       WithCommas(m_count));
    if (GltfFile::Json const& sparse = GltfFile::Object(accessor, "sparse"); !sparse.empty())
        ReadSparse(file, sparse);
}

void GltfAccessor::ReadSparse(GltfFile& file, GltfFile::Json const& sparse)
{
    GltfFile::Json const& indices = GltfFile::Object(sparse, "indices");
    GltfFile::Json const& values = GltfFile::Object(sparse, "values");
    auto const bytesOf = [&](GltfFile::Json const& part)
    {
        std::optional<std::size_t> const view = GltfFile::Index(part, "bufferView");
        std::string_view const bytes = view ? file.View(*view) : std::string_view();
        return bytes.substr(std::min(GltfFile::Index(part, "byteOffset").value_or(0), bytes.size()));
    };
    std::string_view const indexBytes = bytesOf(indices);
    m_sparseBytes = bytesOf(values);
    std::size_t const announced = GltfFile::Index(sparse, "count").value_or(0);
    int const type = static_cast<int>(GltfFile::Index(indices, "componentType").value_or(0));
    std::size_t const size = type == kFloat ? 0 : SizeOf(type);
    std::size_t const count =
        size == 0 ? 0
                  : std::min({announced, indexBytes.size() / size, m_sparseBytes.size() / (SizeOf(m_type) * m_width)});
    for (std::size_t i = 0; i < count; ++i)
    {
        std::uint32_t const element = size == 1   ? NumberAt<std::uint8_t>(indexBytes, i)
                                      : size == 2 ? NumberAt<std::uint16_t>(indexBytes, i * 2)
                                                  : NumberAt<std::uint32_t>(indexBytes, i * 4);
        if (element >= m_count || (!m_sparse.empty() && element <= m_sparse.back()))
            break;
        m_sparse.push_back(element);
    }
    if (m_sparse.size() < announced)
        file.Reading().Damage("a sparse accessor counts " + WithCommas(announced) + " elements, of which " +
                              WithCommas(m_sparse.size()) + " make sense");
}

double GltfAccessor::RawAt(std::string_view bytes, std::size_t place) const
{
    switch (m_type)
    {
        case kInt8:
            return NumberAt<std::int8_t>(bytes, place);
        case kUint8:
            return NumberAt<std::uint8_t>(bytes, place);
        case kInt16:
            return NumberAt<std::int16_t>(bytes, place);
        case kUint16:
            return NumberAt<std::uint16_t>(bytes, place);
        case kUint32:
            return NumberAt<std::uint32_t>(bytes, place);
        default:
            return static_cast<double>(NumberAt<float>(bytes, place));
    }
}

double GltfAccessor::Raw(std::size_t element, std::size_t number) const
{
    std::size_t const size = SizeOf(m_type);
    if (!m_sparse.empty())
    {
        auto const found = std::lower_bound(m_sparse.begin(), m_sparse.end(), element);
        if (found != m_sparse.end() && *found == element)
            return RawAt(m_sparseBytes, (static_cast<std::size_t>(found - m_sparse.begin()) * m_width + number) * size);
    }
    return m_stride == 0 ? 0.0 : RawAt(m_bytes, element * m_stride + number * size);
}

double GltfAccessor::At(std::size_t element, std::size_t number) const
{
    double const raw = Raw(element, number);
    if (!m_isNormalized)
        return raw;
    double const most = m_type == kInt8     ? 127.0
                        : m_type == kUint8  ? 255.0
                        : m_type == kInt16  ? 32767.0
                        : m_type == kUint16 ? 65535.0
                                            : 4294967295.0;
    return std::max(raw / most, -1.0);
}

}  // namespace KVR
