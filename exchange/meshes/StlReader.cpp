#include <algorithm>

#include "exchange/meshes/FileBytes.h"
#include "exchange/meshes/MeshReading.h"
#include "exchange/meshes/PointWeld.h"
#include "exchange/meshes/TextWords.h"

// STL: triangles as bytes, with a head of 84 and 50 for each, or as text.
namespace KVR
{

namespace
{

constexpr std::size_t kHeadSize = 84;
constexpr std::size_t kTriangleSize = 50;

using Point = PointWeld::Point;

bool IsFinite(Point const& point)
{
    return std::all_of(point.begin(), point.end(), [](double x) { return std::isfinite(x); });
}

// A mesh whose triangles bring their points along.
class Soup
{
public:
    void AddTriangle(std::array<Point, 3> const& points)
    {
        for (Point const& point : points)
            mesh.corners.push_back(m_weld.Add(point));
    }
    MeshModel::Mesh Finished()
    {
        for (Point const& point : m_weld.Points())
            mesh.points.insert(mesh.points.end(), point.begin(), point.end());
        return std::move(mesh);
    }

    MeshModel::Mesh mesh;

private:
    PointWeld m_weld;
};

// Two programs write colours into the last two bytes of a triangle, in opposite ways.
class TriangleColors
{
public:
    explicit TriangleColors(std::string_view head)
    {
        std::size_t const place = head.find("COLOR=");
        m_isFirstForm = place != std::string_view::npos && place + 10 <= head.size();
        for (std::size_t i = 0; m_isFirstForm && i < 4; ++i)
            m_default[i] = static_cast<std::uint8_t>(head[place + 6 + i]);
    }
    // Nothing for a triangle without one.
    std::optional<MeshModel::ByteColor> Of(std::uint16_t bits) const
    {
        bool const hasColor = (bits & 0x8000) != 0;
        if (m_isFirstForm && hasColor)
            return m_default;
        if (!m_isFirstForm && !hasColor)
            return {};
        std::array<std::uint8_t, 3> parts{};
        for (std::size_t i = 0; i < 3; ++i)
            parts[i] = static_cast<std::uint8_t>(((bits >> (5 * i)) & 31) * 255 / 31);
        return m_isFirstForm ? MeshModel::ByteColor{parts[0], parts[1], parts[2], m_default[3]}
                             : MeshModel::ByteColor{parts[2], parts[1], parts[0], 255};
    }

private:
    bool m_isFirstForm = false;
    MeshModel::ByteColor m_default{255, 255, 255, 255};
};

void ReadBinary(MeshReading& reading, std::string_view bytes)
{
    if (bytes.size() < kHeadSize)
        throw ModelError("it ends within its head of 84 bytes");
    std::size_t const announced = NumberAt<std::uint32_t>(bytes, 80);
    std::size_t const there = (bytes.size() - kHeadSize) / kTriangleSize;
    std::size_t const count = announced > 0 ? std::min(announced, there) : there;
    if (bytes.size() != kHeadSize + announced * kTriangleSize && there >= announced)
        reading.Damage("its head counts " + WithCommas(announced) + " triangles, and " +
                       WithCommas(bytes.size() - kHeadSize - announced * kTriangleSize) + " bytes follow them");
    TriangleColors const colors(bytes.substr(0, 80));
    MeshModel::ByteColor const kWhite{255, 255, 255, 255};
    Soup soup;
    std::size_t taken = 0;
    for (std::size_t i = 0; i < count; ++i)
    {
        std::size_t const place = kHeadSize + i * kTriangleSize;
        std::array<Point, 3> points;
        for (std::size_t number = 0; number < 9; ++number)
            points[number / 3][number % 3] =
                static_cast<double>(NumberAt<float>(bytes, place + 12 + number * sizeof(float)));
        if (!std::all_of(points.begin(), points.end(), IsFinite))
        {
            reading.Damage("triangle " + WithCommas(i + 1) + " has a coordinate that is no number");
            continue;
        }
        soup.AddTriangle(points);
        if (auto const color = colors.Of(NumberAt<std::uint16_t>(bytes, place + 48)))
        {
            soup.mesh.triangleColors.resize(taken, kWhite);
            soup.mesh.triangleColors.push_back(*color);
        }
        ++taken;
        reading.Tell(place, bytes.size());
    }
    if (!soup.mesh.triangleColors.empty())
        soup.mesh.triangleColors.resize(taken, kWhite);
    reading.Short(taken, announced, "triangles");
    reading.model.meshes.push_back(soup.Finished());
}

std::string Lower(std::string_view word)
{
    std::string text(word);
    for (char& c : text)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return text;
}

class StlText
{
public:
    StlText(MeshReading& reading, std::string_view text) : m_reading(reading), m_text(text), m_lines(text) {}

    void Read()
    {
        std::string_view line;
        while (m_lines.Next(line))
        {
            m_reading.Tell(m_lines.Place(), m_text.size());
            TextWords words(line);
            std::string_view const word = words.Next();
            // That the last line is not whole is said behind it.
            bool const isCut = m_isOpen && m_lines.Place() > m_text.size();
            if (!word.empty() && !ReadLine(Lower(word), words) && !isCut)
                m_reading.Damage(m_lines.Where() + ": \"" + TextOfBytes(word.substr(0, 40)) +
                                 "\" has no place there in an STL file");
        }
        if (m_isOpen)
            m_reading.Damage("it ends in " + m_lines.Where() + ", before the end of its solid, with " +
                             WithCommas(m_taken) + " triangles");
        Close();
    }

private:
    // Whether the line is one that may stand there.
    bool ReadLine(std::string const& word, TextWords& words)
    {
        if (word == "vertex")
            return m_isInLoop && ReadVertex(words);
        if (word == "facet" || word == "outer" || word == "endfacet")
        {
            m_isInLoop = word == "outer";
            m_points.clear();
            return m_isOpen;
        }
        if (word == "endloop")
        {
            bool const isGood = m_isInLoop && m_points.size() >= 3;
            for (std::size_t i = 2; i < m_points.size() && isGood; ++i, ++m_taken)
                m_soup.AddTriangle({m_points[0], m_points[i - 1], m_points[i]});
            m_isInLoop = false;
            return isGood;
        }
        if (word == "solid")
        {
            Close();
            m_isOpen = true;
            m_soup.mesh.name = TextOfBytes(words.Rest());
            return true;
        }
        bool const isGood = word == "endsolid" && m_isOpen;
        if (isGood)
            Close();
        return isGood;
    }

    bool ReadVertex(TextWords& words)
    {
        Point point;
        for (double& x : point)
        {
            std::optional<double> const number = NumberOf<double>(words.Next());
            if (!number)
                return false;
            x = *number;
        }
        m_points.push_back(point);
        return true;
    }

    void Close()
    {
        if (!m_soup.mesh.corners.empty())
            m_reading.model.meshes.push_back(m_soup.Finished());
        m_soup = Soup();
        m_isOpen = m_isInLoop = false;
    }

    MeshReading& m_reading;
    std::string_view m_text;
    TextLines m_lines;
    Soup m_soup;
    std::vector<Point> m_points;
    bool m_isOpen = false;
    bool m_isInLoop = false;
    unsigned long long m_taken = 0;
};

// A head of bytes may begin as a text does.
bool IsText(std::string_view bytes)
{
    if (bytes.size() >= kHeadSize &&
        bytes.size() == kHeadSize + std::size_t{NumberAt<std::uint32_t>(bytes, 80)} * kTriangleSize)
        return false;
    std::string_view const head = bytes.substr(0, 512);
    return head.find('\0') == std::string_view::npos && Lower(TextWords(head).Next()) == "solid";
}

}  // namespace

void ReadStlMeshes(MeshReading& reading, std::string_view bytes)
{
    if (IsText(bytes))
        StlText(reading, bytes).Read();
    else
        ReadBinary(reading, bytes);
}

}  // namespace KVR
