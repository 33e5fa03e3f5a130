#include <algorithm>
#include <map>

#include "exchange/meshes/FileBytes.h"
#include "exchange/meshes/LocalPlaces.h"
#include "exchange/meshes/MeshReading.h"
#include "exchange/meshes/ObjLines.h"
#include "exchange/meshes/ObjMaterials.h"
#include "exchange/meshes/PolygonCorners.h"
#include "exchange/meshes/TextWords.h"

// OBJ: lists of points, normals and places in textures for the whole file, and faces that name them.
namespace KVR
{

namespace
{

constexpr std::string_view kFreeForm[] = {"vp",   "cstype", "deg",  "bmat", "step",  "curv", "curv2", "surf",
                                          "parm", "trim",   "hole", "scrv", "sp",    "end",  "con",   "bzp",
                                          "bsp",  "cdc",    "cdp",  "res",  "ctech", "stech"};
constexpr std::string_view kIgnored[] = {"s",          "mg",        "bevel",  "c_interp", "d_interp", "lod",
                                         "shadow_obj", "trace_obj", "maplib", "usemap",   "call",     "csh"};

template <std::size_t N>
bool Has(std::string_view const (&list)[N], std::string_view word)
{
    return std::find(std::begin(list), std::end(list), word) != std::end(list);
}

struct Corner
{
    std::size_t point = 0;
    std::optional<std::size_t> texture;
    std::optional<std::size_t> normal;
};

class ObjFile
{
public:
    ObjFile(MeshReading& reading, std::string_view text)
        : m_reading(reading), m_text(text), m_materials(reading.model, reading.options.folder)
    {
    }

    void Read()
    {
        ReadLists();
        ObjLines lines(m_text);
        m_lines = &lines;
        std::string_view line;
        while (lines.Next(line))
        {
            m_reading.Tell(lines.Place(), m_text.size());
            TextWords words(line);
            std::string_view const word = words.Next();
            if (!word.empty() && !word.starts_with('#'))
                ReadLine(word, words);
        }
        Finish();
    }

private:
    struct Group
    {
        std::string object;
        std::string name;
        bool operator<(Group const& other) const { return std::tie(object, name) < std::tie(other.object, other.name); }
    };

    // The lists, before the faces that name their entries.
    void ReadLists()
    {
        ObjLines lines(m_text);
        std::string_view line;
        while (lines.Next(line))
        {
            TextWords words(line);
            std::string_view const word = words.Next();
            if (word == "v" || word == "vn" || word == "vt")
                ReadEntry(word, words, lines);
            m_hasObjects = m_hasObjects || word == "o";
        }
        if (!m_colors.empty())
            m_colors.resize(m_points.size() / 3, {255, 255, 255, 255});
    }

    void ReadEntry(std::string_view word, TextWords& words, ObjLines const& lines)
    {
        std::vector<double> numbers;
        bool isGood = true;
        for (std::string_view text = words.Next(); !text.empty() && numbers.size() < 8; text = words.Next())
        {
            std::optional<double> const number = NumberOf<double>(text);
            isGood = isGood && number;
            numbers.push_back(number.value_or(0.0));
        }
        std::size_t const least = word == "vt" ? 1 : 3;
        if (!isGood || numbers.size() < least)
            m_reading.Damage(lines.Where() + ": \"" + std::string(word) + "\" is followed by too few numbers");
        numbers.resize(std::max<std::size_t>(numbers.size(), 3), 0.0);
        if (word == "vt")
            // Here the second one counts from the bottom.
            m_texture.insert(m_texture.end(), {numbers[0], 1.0 - numbers[1]});
        else if (word == "vn")
        {
            double const length = std::hypot(numbers[0], numbers[1], numbers[2]);
            for (std::size_t i = 0; i < 3; ++i)
                m_normals.push_back(length > 0.0 && std::isfinite(length) ? numbers[i] / length : 0.0);
        }
        else
        {
            m_points.insert(m_points.end(), numbers.begin(), numbers.begin() + 3);
            m_isGood.push_back(isGood);
            if (numbers.size() >= 6)
                AddColor(numbers);
        }
    }

    // Behind the point, and behind its weight if it has one.
    void AddColor(std::vector<double> const& numbers)
    {
        m_colors.resize(m_points.size() / 3 - 1, {255, 255, 255, 255});
        MeshModel::ByteColor color{0, 0, 0, 255};
        for (std::size_t i = 0; i < 3; ++i)
            color[i] =
                static_cast<std::uint8_t>(std::lround(std::clamp(numbers[numbers.size() - 3 + i], 0.0, 1.0) * 255.0));
        m_colors.push_back(color);
    }

    void ReadLine(std::string_view word, TextWords& words)
    {
        if (word == "v" || word == "vt" || word == "vn")
            ++(word == "v" ? m_pointCount : word == "vt" ? m_textureCount : m_normalCount);
        else if (word == "f" || word == "fo")
            ReadFace(words);
        else if (word == "l" || word == "p")
            ReadLineOrDots(word == "l", words);
        else if (word == "o" || word == "g")
        {
            std::string const name = TextOfBytes(words.Rest());
            if (word == "o")
                m_group = {name, {}};
            else
                m_group.name = name;
            m_mesh = nullptr;
        }
        else if (word == "usemtl")
            m_material = m_materials.MaterialOf(std::string(words.Rest()));
        else if (word == "mtllib")
            m_materials.ReadLibrary(std::string(words.Rest()));
        else if (Has(kFreeForm, word))
            m_reading.model.losses.AddItem("statements of free-form curves and surfaces", Statement(word));
        else if (!Has(kIgnored, word))
            m_reading.Damage(m_lines->Where() + ": \"" + TextOfBytes(word.substr(0, 40)) + "\" is no statement of OBJ");
    }

    std::string Statement(std::string_view word) const
    {
        return m_lines->Where() + ": " + TextOfBytes(word.substr(0, 40));
    }

    // An index counts from 1, or from the last entry so far down from -1.
    std::optional<std::size_t> PlaceOf(std::string_view text, std::size_t soFar, std::size_t count) const
    {
        std::optional<long long> const index = NumberOf<long long>(text);
        if (!index || *index == 0)
            return {};
        long long const place = *index > 0 ? *index - 1 : static_cast<long long>(soFar) + *index;
        if (place < 0 || place >= static_cast<long long>(count))
            return {};
        return static_cast<std::size_t>(place);
    }

    // Nothing for one that is damaged, which is noted.
    std::optional<Corner> CornerOf(std::string_view word)
    {
        std::string_view parts[3];
        std::string_view rest = word;
        for (std::string_view& part : parts)
        {
            part = rest.substr(0, rest.find('/'));
            rest.remove_prefix(std::min(rest.size(), part.size() + 1));
        }
        Corner corner;
        std::optional<std::size_t> const point = PlaceOf(parts[0], m_pointCount, m_points.size() / 3);
        bool isGood = point && m_isGood[*point] && rest.empty();
        corner.point = point.value_or(0);
        if (!parts[1].empty())
            isGood = (corner.texture = PlaceOf(parts[1], m_textureCount, m_texture.size() / 2)) && isGood;
        if (!parts[2].empty())
            isGood = (corner.normal = PlaceOf(parts[2], m_normalCount, m_normals.size() / 3)) && isGood;
        if (isGood)
            return corner;
        m_reading.Damage(m_lines->Where() + ": \"" + TextOfBytes(word.substr(0, 40)) +
                         "\" names what is not among the " + WithCommas(m_points.size() / 3) + " points, " +
                         WithCommas(m_texture.size() / 2) + " places in textures and " +
                         WithCommas(m_normals.size() / 3) + " normals");
        return {};
    }

    // The corners of a statement; empty for a damaged one.
    std::vector<Corner> CornersOf(TextWords& words, std::size_t least)
    {
        std::vector<Corner> corners;
        for (std::string_view word = words.Next(); !word.empty(); word = words.Next())
        {
            std::optional<Corner> const corner = CornerOf(word);
            if (!corner)
            {
                m_reading.model.losses.AddItem("faces and lines of points that are not there", Statement(word));
                return {};
            }
            corners.push_back(*corner);
        }
        if (corners.size() < least)
        {
            m_reading.Damage(m_lines->Where() + ": there are too few points for a face or line");
            m_reading.model.losses.AddItem("faces and lines of too few points", m_lines->Where());
            return {};
        }
        return corners;
    }

    void ReadFace(TextWords& words)
    {
        std::vector<Corner> const corners = CornersOf(words, 3);
        std::vector<std::array<double, 3>> points;
        for (Corner const& corner : corners)
            points.push_back(
                {m_points[3 * corner.point], m_points[3 * corner.point + 1], m_points[3 * corner.point + 2]});
        MeshModel::Mesh& mesh = Current();
        for (auto const& triangle : TrianglesOfPolygon(points))
        {
            if (mesh.materials.empty() || mesh.materials.back() != m_material)
                mesh.pieces.push_back(mesh.TriangleCount());
            mesh.materials.push_back(m_material);
            for (std::uint32_t const place : triangle)
                AddCorner(mesh, corners[place]);
        }
    }

    void AddCorner(MeshModel::Mesh& mesh, Corner const& corner)
    {
        mesh.corners.push_back(PointOf(mesh, corner.point));
        std::uint32_t normal = MeshModel::kNone;
        double const* const n = corner.normal ? m_normals.data() + 3 * *corner.normal : nullptr;
        if (n && (n[0] != 0.0 || n[1] != 0.0 || n[2] != 0.0))
            normal = m_localNormals.Of(*corner.normal, mesh.normals.size() / 3,
                                       [&] { mesh.normals.insert(mesh.normals.end(), n, n + 3); });
        mesh.cornerNormals.push_back(normal);
        std::uint32_t texture = MeshModel::kNone;
        double const* const t = corner.texture ? m_texture.data() + 2 * *corner.texture : nullptr;
        if (t)
            texture = m_localTexture.Of(*corner.texture, mesh.texture.size() / 2,
                                        [&] { mesh.texture.insert(mesh.texture.end(), t, t + 2); });
        mesh.cornerTexture.push_back(texture);
    }

    std::uint32_t PointOf(MeshModel::Mesh& mesh, std::size_t point)
    {
        return m_localPoints.Of(point, mesh.PointCount(),
                                [&]
                                {
                                    double const* const place = m_points.data() + 3 * point;
                                    mesh.points.insert(mesh.points.end(), place, place + 3);
                                    if (!m_colors.empty())
                                        mesh.pointColors.push_back(m_colors[point]);
                                });
    }

    void ReadLineOrDots(bool isLine, TextWords& words)
    {
        std::vector<Corner> const corners = CornersOf(words, isLine ? 2 : 1);
        if (corners.empty())
            return;
        MeshModel::Mesh& mesh = Current();
        std::vector<std::uint32_t> points;
        for (Corner const& corner : corners)
            points.push_back(PointOf(mesh, corner.point));
        (isLine ? mesh.lineMaterial : mesh.dotMaterial) = m_material;
        if (isLine)
            mesh.lines.push_back(std::move(points));
        else
            mesh.dots.insert(mesh.dots.end(), points.begin(), points.end());
    }

    // The mesh of the group that is open; one that is opened again goes on.
    MeshModel::Mesh& Current()
    {
        if (!m_mesh)
        {
            m_mesh = &m_groups.try_emplace(m_group, Entry{m_groups.size(), {}}).first->second;
            m_localPoints.Begin();
            m_localNormals.Begin();
            m_localTexture.Begin();
        }
        return m_mesh->mesh;
    }

    void Finish();

    struct Entry
    {
        std::size_t order = 0;
        MeshModel::Mesh mesh;
    };

    MeshReading& m_reading;
    std::string_view m_text;
    ObjMaterials m_materials;
    ObjLines const* m_lines = nullptr;
    std::vector<double> m_points;
    std::vector<double> m_normals;
    std::vector<double> m_texture;
    std::vector<MeshModel::ByteColor> m_colors;
    std::vector<bool> m_isGood;
    std::size_t m_pointCount = 0;
    std::size_t m_normalCount = 0;
    std::size_t m_textureCount = 0;
    bool m_hasObjects = false;
    Group m_group;
    std::uint32_t m_material = MeshModel::kNone;
    std::map<Group, Entry> m_groups;
    Entry* m_mesh = nullptr;
    LocalPlaces m_localPoints;
    LocalPlaces m_localNormals;
    LocalPlaces m_localTexture;
};

// An object is a part, and its groups are meshes in it; without objects groups are parts.
void ObjFile::Finish()
{
    MeshModel& model = m_reading.model;
    std::vector<std::pair<Group, Entry*>> entries;
    for (auto& [group, entry] : m_groups)
        if (!entry.mesh.IsEmpty())
            entries.emplace_back(group, &entry);
    std::sort(entries.begin(), entries.end(),
              [](auto const& a, auto const& b) { return a.second->order < b.second->order; });
    bool const hasSeveral =
        std::any_of(entries.begin(), entries.end(),
                    [&](auto const& entry) { return entry.first.object != entries.front().first.object; }) ||
        (!m_hasObjects && entries.size() > 1);
    if (!hasSeveral)
        model.components.emplace_back();
    else
        model.components.emplace_back().isAssembly = true;
    std::map<std::string, std::size_t> parts;
    for (auto const& [group, entry] : entries)
    {
        bool const isObject = m_hasObjects;
        std::string const& name = isObject ? group.object : group.name;
        auto const [part, isNew] = parts.try_emplace(name, hasSeveral ? model.components.size() : 0);
        if (isNew && hasSeveral)
        {
            model.components.emplace_back().name = name;
            MeshModel::Placement& placement = model.components.front().placements.emplace_back();
            placement.name = name;
            placement.component = part->second;
        }
        entry->mesh.name = group.name.empty() ? group.object : group.name;
        model.components[part->second].meshes.push_back(model.meshes.size());
        model.meshes.push_back(std::move(entry->mesh));
    }
}

}  // namespace

void ReadObjMeshes(MeshReading& reading, std::string_view bytes)
{
    ObjFile(reading, bytes).Read();
}

}  // namespace KVR
