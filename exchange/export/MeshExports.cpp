#include <fmt/compile.h>
#include <fmt/format.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <limits>
#include <map>
#include <span>
#include <stdexcept>
#include <unordered_map>
#include <vector>

#include "exchange/export/FlatMesh.h"
#include "exchange/export/Formats.h"
#include "exchange/run/NewFile.h"

// Formats of triangles without structure: STL, OBJ and PLY, in the scene's unit of length or another one.
namespace KVR
{

namespace
{

static_assert(std::endian::native == std::endian::little, "the bytes of these formats start with the lowest");

std::array<std::uint32_t, 3> CornersOf(FlatGroup const& group, std::size_t triangle)
{
    std::uint32_t const* const corner = group.mesh.indices.data() + 3 * (group.run.firstTriangle + triangle);
    auto const first = static_cast<std::uint32_t>(group.run.firstVertex);
    if (group.isMirrored)
        return {corner[0] - first, corner[2] - first, corner[1] - first};
    return {corner[0] - first, corner[1] - first, corner[2] - first};
}

// Records of one size on their way to a file, which gets many at a time.
template <std::size_t kSize>
class RecordBlock
{
public:
    explicit RecordBlock(Output& out) : m_out(out), m_bytes(kSize * kMost) {}

    // The place for the next one, which the caller fills.
    char* Next()
    {
        if (m_used == m_bytes.size())
            Flush();
        m_used += kSize;
        return m_bytes.data() + m_used - kSize;
    }
    void Flush()
    {
        m_out.Put({m_bytes.data(), m_used});
        m_used = 0;
    }

private:
    static constexpr std::size_t kMost = 4096;

    Output& m_out;
    std::vector<char> m_bytes;
    std::size_t m_used = 0;
};

// At right angles to a triangle; zeros where there is none.
std::array<float, 3> NormalOfTriangle(std::array<std::array<float, 3>, 3> const& points)
{
    std::array<float, 3> normal{};
    double length = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        std::size_t const next = (axis + 1) % 3;
        std::size_t const last = (axis + 2) % 3;
        normal[axis] = (points[1][next] - points[0][next]) * (points[2][last] - points[0][last]) -
                       (points[1][last] - points[0][last]) * (points[2][next] - points[0][next]);
        length += static_cast<double>(normal[axis]) * static_cast<double>(normal[axis]);
    }
    length = std::sqrt(length);
    bool const isGood = length > 0.0 && std::isfinite(length);
    for (float& x : normal)
        x = isGood ? static_cast<float>(static_cast<double>(x) / length) : 0.0F;
    return normal;
}

unsigned char ByteOf(double fraction)
{
    return static_cast<unsigned char>(std::lround(fraction * 255.0));
}

// A text for a line of its own.
std::string Word(std::string text)
{
    for (char& c : text)
        if (static_cast<unsigned char>(c) <= ' ')
            c = '_';
    return text.empty() ? "unnamed" : text;
}

}  // namespace

void ExportStl(ExportTask& task)
{
    NewFile file(task.path);
    std::string head(80, ' ');
    std::string const text = "kvr_xml_producer, unit of length: " + FlatUnitName(FlatUnit(task));
    head.replace(0, text.size(), text);
    file.Out().Put(head);
    std::uint32_t count = 0;
    file.Put(count);
    // A normal, the three points, and a number that has no meaning.
    constexpr std::size_t kPoints = 3 * sizeof(float);
    RecordBlock<kPoints + 3 * kPoints + 2> block(file.Out());
    std::vector<std::array<float, 3>> vertices;
    ForEachTriangleGroup(task,
                         [&](FlatGroup const& group)
                         {
                             if (group.run.triangleCount > std::numeric_limits<std::uint32_t>::max() - count)
                                 throw std::runtime_error("it has more triangles than an STL file can hold");
                             count += static_cast<std::uint32_t>(group.run.triangleCount);
                             PlaceVertices(group, vertices);
                             for (std::size_t i = 0; i < group.run.triangleCount; ++i)
                             {
                                 auto const corners = CornersOf(group, i);
                                 std::array<std::array<float, 3>, 3> const points{
                                     vertices[corners[0]], vertices[corners[1]], vertices[corners[2]]};
                                 std::array<float, 3> const normal = NormalOfTriangle(points);
                                 char* const record = block.Next();
                                 std::memcpy(record, normal.data(), kPoints);
                                 std::memcpy(record + kPoints, points.data(), 3 * kPoints);
                                 std::memset(record + 4 * kPoints, 0, 2);
                             }
                         });
    block.Flush();
    file.Patch(80, {reinterpret_cast<char const*>(&count), sizeof count});
    file.Finish();
}

namespace
{

class ObjWriter
{
public:
    explicit ObjWriter(ExportTask& task)
        : m_task(task), m_library(std::filesystem::path(task.path).replace_extension(".mtl")), m_file(task.path)
    {
    }

    void Write()
    {
        m_file.Out().Put(fmt::format("# kvr_xml_producer, unit of length: {}\nmtllib {}\n",
                                     FlatUnitName(FlatUnit(m_task)), m_library.filename().string()));
        ForEachTriangleGroup(
            m_task, [this](FlatGroup const& group) { Put(group); }, [this](FlatLines const& lines) { Put(lines); });
        m_file.Finish();
        NewFile library(m_library.string());
        library.Out().Put(m_materialText);
        library.Finish();
    }

private:
    void Put(FlatGroup const& group)
    {
        Begin(group.occurrence, group.style, false);
        std::size_t const count = group.run.vertexCount;
        PlaceVertices(group, m_placed);
        for (std::array<float, 3> const& vertex : m_placed)
            Put("v", vertex);
        if (group.run.hasNormals)
            for (std::size_t i = 0; i < count; ++i)
                Put("vn", NormalOf(group, static_cast<std::uint32_t>(i)));
        if (group.run.hasTexture)
            for (std::size_t i = 0; i < count; ++i)
                // Here the second one counts from the bottom.
                m_text += fmt::format(FMT_COMPILE("vt {} {}\n"), group.mesh.texture[2 * (group.run.firstVertex + i)],
                                      1.0F - group.mesh.texture[2 * (group.run.firstVertex + i) + 1]);
        for (std::size_t i = 0; i < group.run.triangleCount; ++i)
        {
            m_text += 'f';
            for (std::uint32_t const corner : CornersOf(group, i))
                PutCorner(group.run, corner);
            m_text += '\n';
            Flush(kBlock);
        }
        m_vertices += count;
        m_normals += group.run.hasNormals ? count : 0;
        m_textures += group.run.hasTexture ? count : 0;
        Flush(0);
    }

    void PutCorner(SceneMesh::Run const& run, std::uint32_t corner)
    {
        auto const out = std::back_inserter(m_text);
        fmt::format_to(out, FMT_COMPILE(" {}"), m_vertices + corner + 1);
        if (run.hasTexture)
            fmt::format_to(out, FMT_COMPILE("/{}"), m_textures + corner + 1);
        if (run.hasNormals)
            fmt::format_to(out, FMT_COMPILE("{}/{}"), run.hasTexture ? "" : "/", m_normals + corner + 1);
    }

    void Put(FlatLines const& lines)
    {
        Begin(lines.occurrence, lines.style, true);
        for (std::size_t place = 0; place < lines.lines.Count(); ++place)
        {
            std::span<double const> const line = lines.lines.At(place);
            std::size_t const count = line.size() / 3;
            for (std::size_t i = 0; i < count; ++i)
                Put("v", PlacedPoint(lines.transform, line.data() + 3 * i));
            m_text += count == 1 ? 'p' : 'l';
            for (std::size_t i = 0; i < count; ++i)
                fmt::format_to(std::back_inserter(m_text), FMT_COMPILE(" {}"), ++m_vertices);
            m_text += '\n';
        }
        Flush(0);
    }

    void Put(char const* word, std::array<float, 3> const& numbers)
    {
        fmt::format_to(std::back_inserter(m_text), FMT_COMPILE("{} {} {} {}\n"), word, numbers[0], numbers[1],
                       numbers[2]);
        Flush(kBlock);
    }

    void Begin(FlatOccurrence const& occurrence, SceneStyle const* style, bool isCurve)
    {
        bool const hasColor = style && style->diffuse;
        auto const [entry, isNew] = m_materials.try_emplace({hasColor ? style : nullptr, !hasColor && isCurve});
        if (isNew)
        {
            // With a number, since ids may differ in what a word has no place for.
            entry->second = fmt::format("{}.{}",
                                        hasColor  ? Word(std::string(style->id))
                                        : isCurve ? "curve"
                                                  : "surface",
                                        m_materials.size());
            std::array<double, 3> const color = hasColor  ? *style->diffuse
                                                : isCurve ? m_task.scene.DefaultCurveColor()
                                                          : m_task.scene.DefaultSurfaceColor();
            m_materialText += fmt::format("newmtl {}\nKd {} {} {}\nd {}\n", entry->second, color[0], color[1], color[2],
                                          hasColor ? style->opacity : 1.0);
            if (hasColor && style->emission)
                m_materialText +=
                    fmt::format("Ke {} {} {}\n", (*style->emission)[0], (*style->emission)[1], (*style->emission)[2]);
        }
        if (occurrence.number != m_occurrence)
            m_text += fmt::format("o {}\n", UniqueName(Word(occurrence.name)));
        m_occurrence = occurrence.number;
        m_text += fmt::format("usemtl {}\n", entry->second);
    }

    // With a number behind it when the name is taken.
    std::string UniqueName(std::string const& name)
    {
        std::string unique = name;
        for (std::size_t& count = m_names[name]; count > 0 && m_names.count(unique) > 0;)
            unique = fmt::format("{}.{}", name, ++count);
        ++m_names[unique];
        return unique;
    }

    void Flush(std::size_t above)
    {
        if (m_text.size() <= above)
            return;
        m_file.Out().Put(m_text);
        m_text.clear();
    }

    static constexpr std::size_t kBlock = std::size_t{64} * 1024;

    ExportTask& m_task;
    std::filesystem::path m_library;
    NewFile m_file;
    std::string m_text;
    std::string m_materialText;
    /// The vertices of the group in hand.
    std::vector<std::array<float, 3>> m_placed;
    /// The materials' names by style, and whether it is the colour of curves without one.
    std::map<std::pair<SceneStyle const*, bool>, std::string> m_materials;
    /// Those in use, with the last number behind each.
    std::unordered_map<std::string, std::size_t> m_names;
    std::size_t m_occurrence = 0;
    std::size_t m_vertices = 0;
    std::size_t m_normals = 0;
    std::size_t m_textures = 0;
};

}  // namespace

void ExportObj(ExportTask& task)
{
    ObjWriter(task).Write();
}

void ExportPly(ExportTask& task)
{
    // The counts stand in the head with room for the longest.
    static constexpr char kHead[] =
        "ply\nformat binary_little_endian 1.0\ncomment kvr_xml_producer, unit of length: {}\nelement vertex "
        "{:<10}\nproperty float x\n"
        "property float y\nproperty float z\nelement face {:<10}\nproperty list uchar int vertex_indices\n"
        "property uchar red\nproperty uchar green\nproperty uchar blue\nproperty uchar alpha\nend_header\n";
    std::uint32_t vertexCount = 0;
    std::uint32_t faceCount = 0;
    NewFile file(task.path);
    std::string const unit = FlatUnitName(FlatUnit(task));
    file.Out().Put(fmt::format(kHead, unit, 0, 0));
    std::vector<std::array<float, 3>> vertices;
    std::uint32_t firstVertex = 0;
    // A count, three vertices and a colour.
    RecordBlock<17> faces(file.Out());
    ForEachTriangleGroupTwice(
        task,
        [&](FlatGroup const& group)
        {
            if (group.run.vertexCount > 0x7FFFFFFF - vertexCount)
                throw std::runtime_error("it has more vertices than a PLY file can hold");
            PlaceVertices(group, vertices);
            file.Out().Put({reinterpret_cast<char const*>(vertices.data()), vertices.size() * sizeof vertices[0]});
            vertexCount += static_cast<std::uint32_t>(group.run.vertexCount);
        },
        [&](FlatGroup const& group)
        {
            std::array<double, 3> const color =
                group.style && group.style->diffuse ? *group.style->diffuse : task.scene.DefaultSurfaceColor();
            std::array<unsigned char, 4> const bytes{ByteOf(color[0]), ByteOf(color[1]), ByteOf(color[2]),
                                                     ByteOf(group.style ? group.style->opacity : 1.0)};
            for (std::size_t i = 0; i < group.run.triangleCount; ++i)
            {
                std::array<std::uint32_t, 3> corners = CornersOf(group, i);
                for (std::uint32_t& corner : corners)
                    corner += firstVertex;
                char* const record = faces.Next();
                *record = 3;
                std::memcpy(record + 1, corners.data(), sizeof corners);
                std::memcpy(record + 13, bytes.data(), sizeof bytes);
            }
            firstVertex += static_cast<std::uint32_t>(group.run.vertexCount);
            faceCount += static_cast<std::uint32_t>(group.run.triangleCount);
        });
    faces.Flush();
    file.Patch(0, fmt::format(kHead, unit, vertexCount, faceCount));
    file.Finish();
}

}  // namespace KVR
