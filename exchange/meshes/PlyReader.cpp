#include <algorithm>
#include <filesystem>

#include "exchange/meshes/FileBytes.h"
#include "exchange/meshes/MeshReading.h"
#include "exchange/meshes/PlyHeader.h"
#include "exchange/meshes/PolygonCorners.h"
#include "exchange/meshes/TextWords.h"

// PLY: elements one after the other, each a row of numbers and lists of numbers.
namespace KVR
{

namespace
{

using Element = PlyHeader::Element;
using Property = PlyHeader::Property;
using Type = PlyHeader::Type;

constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

// The place of the first property that has one of the names.
std::size_t PlaceOf(Element const& element, std::initializer_list<std::string_view> names)
{
    for (std::size_t i = 0; i < element.properties.size(); ++i)
        if (std::find(names.begin(), names.end(), element.properties[i].name) != names.end())
            return i;
    return kNowhere;
}

// The numbers behind the head, one after the other, whatever their form.
class PlyNumbers
{
public:
    PlyNumbers(PlyHeader const& header, std::string_view bytes)
        : m_form(header.form), m_bytes(bytes), m_place(header.size)
    {
    }

    std::size_t Place() const noexcept { return m_place; }
    std::size_t Left() const noexcept { return m_bytes.size() - m_place; }

    // Nothing at the end, and for a word that is no number.
    std::optional<double> Next(Type type)
    {
        if (m_form == PlyHeader::Form::kText)
            return NextWord();
        std::size_t const size = PlyHeader::SizeOf(type);
        if (Left() < size)
            return {};
        std::size_t const place = m_place;
        m_place += size;
        switch (type)
        {
            case Type::kInt8:
                return At<std::int8_t>(place);
            case Type::kUint8:
                return At<std::uint8_t>(place);
            case Type::kInt16:
                return At<std::int16_t>(place);
            case Type::kUint16:
                return At<std::uint16_t>(place);
            case Type::kInt32:
                return At<std::int32_t>(place);
            case Type::kUint32:
                return At<std::uint32_t>(place);
            case Type::kFloat32:
                return At<float>(place);
            default:
                return At<double>(place);
        }
    }

private:
    template <class Number>
    double At(std::size_t place) const
    {
        return static_cast<double>(NumberAt<Number>(m_bytes, place, m_form == PlyHeader::Form::kBigEndian));
    }
    std::optional<double> NextWord()
    {
        constexpr std::string_view kBlanks = " \t\r\n";
        std::size_t const first = std::min(m_bytes.find_first_not_of(kBlanks, m_place), m_bytes.size());
        std::size_t const end = std::min(m_bytes.find_first_of(kBlanks, first), m_bytes.size());
        std::optional<double> const number = NumberOf<double>(m_bytes.substr(first, end - first));
        if (number)
            m_place = end;
        return number;
    }

    PlyHeader::Form m_form;
    std::string_view m_bytes;
    std::size_t m_place;
};

// An element as it was read: a number for each property that is no list, and the lists.
struct Row
{
    std::vector<double> numbers;
    std::vector<std::vector<double>> lists;
};

class PlyFile
{
public:
    PlyFile(MeshReading& reading, std::string_view bytes)
        : m_reading(reading), m_bytes(bytes), m_header(PlyHeader::Of(bytes)), m_numbers(m_header, bytes)
    {
    }

    PlyHeader const& Header() const noexcept { return m_header; }

    MeshModel::Mesh Read()
    {
        bool isWhole = true;
        for (Element const& element : m_header.elements)
            isWhole = ReadElement(element, isWhole) && isWhole;
        if (isWhole && HasMore())
            m_reading.Damage(WithCommas(m_numbers.Left()) + " bytes follow what its head announces");
        if (!m_mesh.triangleColors.empty())
            m_mesh.triangleColors.resize(m_mesh.TriangleCount(), {255, 255, 255, 255});
        if (m_mesh.texture.empty())
            m_mesh.cornerTexture.clear();
        if (m_mesh.corners.empty())
            for (std::uint32_t i = 0; i < m_mesh.PointCount(); ++i)
                if (m_isGood[i])
                    m_mesh.dots.push_back(i);
        return std::move(m_mesh);
    }

private:
    // Of a text line ends may follow, and blanks.
    bool HasMore() const
    {
        std::string_view const rest = m_bytes.substr(m_numbers.Place());
        return m_header.form == PlyHeader::Form::kText ? rest.find_first_not_of(" \t\r\n") != std::string_view::npos
                                                       : !rest.empty();
    }

    // Whether all of them were there.
    bool ReadElement(Element const& element, bool isThere)
    {
        bool const isVertex = element.name == "vertex";
        bool const isFace = element.name == "face" || element.name == "tristrips";
        std::string const kind = isVertex ? "vertices" : isFace ? "faces" : "elements " + TextOfBytes(element.name);
        std::size_t const least = element.LeastSize(m_header.form);
        if (element.count > 0 && least == 0)
        {
            m_reading.Damage("its head announces " + kind + " without content");
            return false;
        }
        // The last word of a text has nothing behind it.
        unsigned long long const most = least == 0 ? 0 : isThere ? (m_numbers.Left() + 1) / least : 0;
        if (element.count > most && !m_reading.options.isLenient)
            m_reading.Damage("its head counts " + WithCommas(element.count) + ' ' + kind +
                             ", and what follows has room for " + WithCommas(most));
        unsigned long long taken = 0;
        if (isVertex || isFace)
            Begin(element);
        Row row;
        while (taken < std::min(element.count, most) && ReadRow(element, row))
        {
            if (isVertex)
                AddVertex(row);
            else if (isFace)
                AddFace(row, element.name == "tristrips");
            ++taken;
            m_reading.Tell(m_numbers.Place(), m_bytes.size());
        }
        if (!isVertex && !isFace)
            m_reading.model.losses.AddOf(kind, "the file", taken);
        m_reading.Short(taken, element.count, kind.c_str());
        return taken == element.count;
    }

    bool ReadRow(Element const& element, Row& row)
    {
        row.numbers.assign(element.properties.size(), 0.0);
        row.lists.resize(element.properties.size());
        for (std::size_t i = 0; i < element.properties.size(); ++i)
        {
            Property const& property = element.properties[i];
            std::optional<double> const number = m_numbers.Next(property.isList ? property.countType : property.type);
            if (!number)
                return false;
            row.numbers[i] = *number;
            row.lists[i].clear();
            if (!property.isList)
                continue;
            std::size_t const size = m_header.form == PlyHeader::Form::kText ? 1 : PlyHeader::SizeOf(property.type);
            if (!(*number >= 0.0) || *number * static_cast<double>(size) > static_cast<double>(m_numbers.Left()))
                return false;
            for (double left = *number; left >= 1.0; --left)
            {
                std::optional<double> const item = m_numbers.Next(property.type);
                if (!item)
                    return false;
                row.lists[i].push_back(*item);
            }
        }
        return true;
    }

    void Begin(Element const& element)
    {
        m_element = &element;
        m_points = {PlaceOf(element, {"x"}), PlaceOf(element, {"y"}), PlaceOf(element, {"z"})};
        m_normals = {PlaceOf(element, {"nx"}), PlaceOf(element, {"ny"}), PlaceOf(element, {"nz"})};
        m_colors = {PlaceOf(element, {"red", "r", "diffuse_red"}), PlaceOf(element, {"green", "g", "diffuse_green"}),
                    PlaceOf(element, {"blue", "b", "diffuse_blue"}), PlaceOf(element, {"alpha", "a", "diffuse_alpha"})};
        m_texture = {PlaceOf(element, {"u", "s", "texture_u", "texture_s"}),
                     PlaceOf(element, {"v", "t", "texture_v", "texture_t"})};
        m_indices = PlaceOf(element, {"vertex_indices", "vertex_index"});
        m_faceTexture = PlaceOf(element, {"texcoord"});
        if (element.name == "vertex" && std::find(m_points.begin(), m_points.end(), kNowhere) != m_points.end())
            throw ModelError("its vertices have no x, y and z");
        if (element.name != "vertex" && m_indices == kNowhere && element.count > 0)
            throw ModelError("its faces name no vertices");
        m_hasVertexTexture = m_hasVertexTexture || (element.name == "vertex" && Has(m_texture));
    }

    template <std::size_t N>
    static bool Has(std::array<std::size_t, N> const& places, std::size_t count = N)
    {
        return std::find(places.begin(), places.begin() + static_cast<std::ptrdiff_t>(count), kNowhere) ==
               places.begin() + static_cast<std::ptrdiff_t>(count);
    }

    std::optional<MeshModel::ByteColor> ColorOf(Row const& row) const
    {
        if (!Has(m_colors, 3))
            return {};
        MeshModel::ByteColor color{0, 0, 0, 255};
        for (std::size_t i = 0; i < 4; ++i)
        {
            if (m_colors[i] == kNowhere)
                continue;
            Type const type = m_element->properties[m_colors[i]].type;
            bool const isFraction = type == Type::kFloat32 || type == Type::kFloat64;
            double const most = isFraction ? 1.0 : type == Type::kUint16 || type == Type::kInt16 ? 65535.0 : 255.0;
            double const value = row.numbers[m_colors[i]] / most;
            color[i] = static_cast<std::uint8_t>(value > 0.0 ? std::lround(std::min(value, 1.0) * 255.0) : 0);
        }
        return color;
    }

    void AddVertex(Row const& row)
    {
        bool isGood = true;
        for (std::size_t const place : m_points)
        {
            bool const isFinite = std::isfinite(row.numbers[place]);
            isGood = isGood && isFinite;
            m_mesh.points.push_back(isFinite ? row.numbers[place] : 0.0);
        }
        m_isGood.push_back(isGood);
        if (!isGood)
            m_reading.Damage("vertex " + WithCommas(m_mesh.PointCount()) + " has a coordinate that is no number");
        if (Has(m_normals))
            AddNormal({row.numbers[m_normals[0]], row.numbers[m_normals[1]], row.numbers[m_normals[2]]});
        if (Has(m_texture))
            AddTexture(row.numbers[m_texture[0]], row.numbers[m_texture[1]]);
        if (auto const color = ColorOf(row))
            m_mesh.pointColors.push_back(*color);
    }

    void AddNormal(std::array<double, 3> const& normal)
    {
        double const length = std::hypot(normal[0], normal[1], normal[2]);
        bool const isGood = length > 0.0 && std::isfinite(length);
        m_hasNormal.push_back(isGood);
        for (double const x : normal)
            m_mesh.normals.push_back(isGood ? x / length : 0.0);
    }
    void AddTexture(double u, double v)
    {
        // Here the second one counts from the bottom.
        m_mesh.texture.insert(m_mesh.texture.end(), {std::isfinite(u) ? u : 0.0, std::isfinite(v) ? 1.0 - v : 0.0});
    }

    void AddFace(Row const& row, bool isStrip)
    {
        ++m_faces;
        std::vector<double> const& list = row.lists[m_indices];
        std::vector<std::uint32_t> indices;
        for (double const index : list)
        {
            bool const isEnd = isStrip && index == -1.0;
            if (!isEnd && (!(index >= 0.0) || index >= static_cast<double>(m_mesh.PointCount()) ||
                           !m_isGood[static_cast<std::size_t>(index)]))
            {
                m_reading.Damage("face " + WithCommas(m_faces) + " names a vertex that is not among the " +
                                 WithCommas(m_mesh.PointCount()));
                m_reading.model.losses.AddItem("faces of vertices that are not there", "face " + WithCommas(m_faces));
                return;
            }
            indices.push_back(isEnd ? MeshModel::kNone : static_cast<std::uint32_t>(index));
        }
        std::vector<double> const* const texture = m_faceTexture == kNowhere ? nullptr : &row.lists[m_faceTexture];
        bool const hasTexture =
            texture && texture->size() == 2 * indices.size() && m_mesh.texture.size() / 2 < MeshModel::kNone;
        auto const firstTexture = static_cast<std::uint32_t>(m_mesh.texture.size() / 2);
        for (std::size_t i = 0; hasTexture && i < texture->size(); i += 2)
            AddTexture((*texture)[i], (*texture)[i + 1]);
        auto const add = [&](std::uint32_t corner)
        {
            std::uint32_t const index = indices[corner];
            m_mesh.corners.push_back(index);
            if (!m_hasNormal.empty())
                m_mesh.cornerNormals.push_back(m_hasNormal[index] ? index : MeshModel::kNone);
            m_mesh.cornerTexture.push_back(hasTexture           ? firstTexture + corner
                                           : m_hasVertexTexture ? index
                                                                : MeshModel::kNone);
        };
        if (isStrip)
            AddStrip(indices, add);
        else
        {
            m_polygon.clear();
            for (std::uint32_t const index : indices)
                m_polygon.push_back(
                    {m_mesh.points[3 * index], m_mesh.points[3 * index + 1], m_mesh.points[3 * index + 2]});
            for (auto const& triangle : TrianglesOfPolygon(m_polygon))
                std::for_each(triangle.begin(), triangle.end(), add);
            if (indices.size() < 3)
                m_reading.model.losses.AddItem("faces of fewer than three vertices", "face " + WithCommas(m_faces));
        }
        if (auto const color = ColorOf(row))
            m_mesh.triangleColors.resize(m_mesh.TriangleCount(), *color);
    }

    template <class Add>
    static void AddStrip(std::vector<std::uint32_t> const& indices, Add const& add)
    {
        std::uint32_t first = 0;
        for (std::uint32_t i = 0; i < indices.size(); ++i)
        {
            if (indices[i] == MeshModel::kNone)
                first = i + 1;
            else if (i >= first + 2)
            {
                bool const turns = (i - first) % 2 == 1;
                add(turns ? i - 1 : i - 2);
                add(turns ? i - 2 : i - 1);
                add(i);
            }
        }
    }

    MeshReading& m_reading;
    std::string_view m_bytes;
    PlyHeader m_header;
    PlyNumbers m_numbers;
    MeshModel::Mesh m_mesh;
    std::vector<bool> m_isGood;
    std::vector<bool> m_hasNormal;
    bool m_hasVertexTexture = false;
    unsigned long long m_faces = 0;
    std::vector<std::array<double, 3>> m_polygon;
    // Where the properties of the element stand.
    Element const* m_element = nullptr;
    std::array<std::size_t, 3> m_points{};
    std::array<std::size_t, 3> m_normals{};
    std::array<std::size_t, 4> m_colors{};
    std::array<std::size_t, 2> m_texture{};
    std::size_t m_indices = kNowhere;
    std::size_t m_faceTexture = kNowhere;
};

}  // namespace

void ReadPlyMeshes(MeshReading& reading, std::string_view bytes)
{
    PlyFile file(reading, bytes);
    MeshModel::Mesh mesh = file.Read();
    if (std::string const& name = file.Header().texture; !name.empty())
    {
        std::string const path = FileBeside(reading.options.folder, name);
        if (path.empty())
            reading.model.losses.AddItem("images of textures", TextOfBytes(name));
        else
        {
            reading.model.images.push_back({TextOfBytes(name), {}, path});
            reading.model.textures.emplace_back();
            MeshModel::Material& material = reading.model.materials.emplace_back();
            material.colorTexture = 0;
            mesh.materials.assign(mesh.TriangleCount(), 0);
        }
    }
    reading.model.meshes.push_back(std::move(mesh));
}

}  // namespace KVR
