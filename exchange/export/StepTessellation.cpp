#include "exchange/export/StepTessellation.h"

#include <fmt/compile.h>
#include <fmt/format.h>

#include <StepData_StepModel.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepShape_ShapeRepresentation.hxx>
#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_map>
#include <vector>

#include "exchange/export/FlatMesh.h"
#include "exchange/export/StepText.h"
#include "output/Output.h"
#include "scene/SceneMesh.h"

namespace KVR
{

namespace
{

// Of one face: readers take long lists badly.
constexpr std::size_t kMostTriangles = 2000;
constexpr std::size_t kLine = 72;
constexpr std::size_t kBlock = std::size_t{64} * 1024;

// Puts what stands between brackets with commas between.
class StepList
{
public:
    explicit StepList(std::string& text) : m_text(text) { m_text += '('; }
    std::string& Next()
    {
        if (!m_isFirst)
            m_text += ',';
        m_isFirst = false;
        return m_text;
    }
    void End() { m_text += ')'; }

private:
    std::string& m_text;
    bool m_isFirst = true;
};

// A number of STEP has a point, also in front of its exponent.
template <class Number>
void AddNumber(std::string& text, Number number)
{
    std::size_t const start = text.size();
    fmt::format_to(std::back_inserter(text), FMT_COMPILE("{}"), number);
    std::size_t const exponent = text.find('e', start);
    if (text.find('.', start) == std::string::npos)
        text.insert(exponent == std::string::npos ? text.size() : exponent, ".");
    if (std::size_t const place = text.find('e', start); place != std::string::npos)
        text[place] = 'E';
}

template <class Number>
void AddTriple(std::string& text, Number x, Number y, Number z)
{
    StepList list(text);
    for (Number const number : {x, y, z})
        AddNumber(list.Next(), number);
    list.End();
}

class TessellationWriter
{
public:
    TessellationWriter(StepTransfer& step, std::size_t last, Output& out) : m_step(step), m_last(last), m_stream(out) {}

    void Write(ShapeDocument::Tessellation const& source)
    {
        auto const definition = m_step.DefinitionOf(source.part);
        SceneMesh const mesh = SceneMesh::Of(*source.mesh);
        m_step.document.notCarried.Add("polygons whose indices make no sense", mesh.brokenPolygons);
        if (definition.IsNull() || mesh.runs.empty())
            return m_step.document.notCarried.Add("meshes without a body");
        int const representation = m_step.model->Number(definition->UsedRepresentation());
        int const context = m_step.model->Number(definition->UsedRepresentation()->ContextOfItems());
        std::vector<std::size_t> styled;
        std::string faces;
        StepList list(faces);
        for (SceneMesh::Run const& run : mesh.runs)
        {
            SceneStyle const* const own = run.style.empty() ? nullptr : source.scene->StyleOf(run.style);
            SceneStyle const* const style = own && own->diffuse ? own : source.style;
            for (std::size_t first = 0; first < run.triangleCount; first += kMostTriangles)
            {
                std::size_t const face = Face(source.place, mesh, run, PieceOf(mesh, run, first));
                fmt::format_to(std::back_inserter(list.Next()), "#{}", face);
                if (style && style->diffuse)
                    styled.push_back(StyledItem(*style, face));
            }
        }
        list.End();
        std::size_t const shell = Begin("TESSELLATED_SHELL");
        AddText(source.name);
        m_text += "," + faces + ",$";
        End();
        std::size_t const tessellated = Begin("TESSELLATED_SHAPE_REPRESENTATION");
        m_text += fmt::format("'',(#{}),#{}", shell, context);
        End();
        Begin("SHAPE_REPRESENTATION_RELATIONSHIP");
        m_text += fmt::format("'','',#{},#{}", representation, tessellated);
        End();
        if (source.isHidden)
        {
            std::size_t const nothing = Begin("STYLED_ITEM");
            m_text += fmt::format("'',(),#{}", shell);
            End();
            styled.push_back(nothing);
            Begin("INVISIBILITY");
            m_text += fmt::format("(#{})", nothing);
            End();
        }
        Present(styled, context);
    }

    void Finish()
    {
        Flush();
        m_stream.Finish();
    }

private:
    std::size_t Begin(char const* entity)
    {
        m_text += fmt::format("#{}={}(", ++m_last, entity);
        return m_last;
    }

    void End()
    {
        m_text += ");\n";
        Flush();
    }

    void Flush()
    {
        m_stream.sputn(m_text.data(), static_cast<std::streamsize>(m_text.size()));
        m_text.clear();
        m_lineStart = 0;
    }

    // A quotation mark and a backslash within it are two.
    void AddText(std::string const& text)
    {
        m_text += '\'';
        for (char const c : text)
        {
            if (c == '\'' || c == '\\')
                m_text += c;
            m_text += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
        }
        m_text += '\'';
    }

    // A part of the triangles of a run, with the vertices that they use.
    struct Piece
    {
        std::vector<std::uint32_t> vertices;
        std::vector<std::uint32_t> corners;
    };

    static Piece PieceOf(SceneMesh const& mesh, SceneMesh::Run const& run, std::size_t first)
    {
        Piece piece;
        std::unordered_map<std::uint32_t, std::uint32_t> places;
        std::size_t const end = std::min(first + kMostTriangles, run.triangleCount);
        for (std::size_t i = 3 * (run.firstTriangle + first); i < 3 * (run.firstTriangle + end); ++i)
        {
            auto const vertex = static_cast<std::uint32_t>(mesh.indices[i] - run.firstVertex);
            auto const [place, isNew] =
                places.try_emplace(vertex, static_cast<std::uint32_t>(piece.vertices.size() + 1));
            if (isNew)
                piece.vertices.push_back(vertex);
            piece.corners.push_back(place->second);
        }
        return piece;
    }

    std::size_t Face(Matrix const& m, SceneMesh const& mesh, SceneMesh::Run const& run, Piece const& piece)
    {
        std::size_t const points = Begin("COORDINATES_LIST");
        m_text += fmt::format("'',{},", piece.vertices.size());
        StepList coordinates(m_text);
        for (std::uint32_t const vertex : piece.vertices)
        {
            double const* const p = mesh.positions.data() + 3 * (run.firstVertex + vertex);
            auto const row = [&](std::size_t r) { return m[r] * p[0] + m[r + 1] * p[1] + m[r + 2] * p[2] + m[r + 3]; };
            AddTriple(coordinates.Next(), row(0), row(4), row(8));
            Limit();
        }
        coordinates.End();
        End();
        std::size_t const face = Begin("TRIANGULATED_FACE");
        m_text += fmt::format("'',#{},{},", points, piece.vertices.size());
        FlatOccurrence const nothing;
        FlatGroup const group{mesh, run, m, Mirrors(m), nullptr, nothing};
        StepList normals(m_text);
        for (std::uint32_t const vertex : piece.vertices)
        {
            if (!run.hasNormals)
                break;
            std::array<float, 3> const normal = NormalOf(group, vertex);
            AddTriple(normals.Next(), normal[0], normal[1], normal[2]);
            Limit();
        }
        normals.End();
        m_text += ",$,(),";
        StepList triangles(m_text);
        for (std::size_t i = 0; i < piece.corners.size(); i += 3)
        {
            // A mirror turns them over.
            fmt::format_to(std::back_inserter(triangles.Next()), FMT_COMPILE("({},{},{})"), piece.corners[i],
                           piece.corners[i + (group.isMirrored ? 2 : 1)],
                           piece.corners[i + (group.isMirrored ? 1 : 2)]);
            Limit();
        }
        triangles.End();
        End();
        return face;
    }

    // Lines are not to be long, and a text not large.
    void Limit()
    {
        if (m_text.size() > m_lineStart + kLine)
        {
            m_text += '\n';
            m_lineStart = m_text.size();
        }
        if (m_text.size() > kBlock)
            Flush();
    }

    std::size_t StyledItem(SceneStyle const& style, std::size_t item)
    {
        std::size_t& assignment = m_assignments[&style];
        if (assignment == 0)
            assignment = Assignment(style);
        std::size_t const styled = Begin("STYLED_ITEM");
        m_text += fmt::format("'',(#{}),#{}", assignment, item);
        End();
        return styled;
    }

    std::size_t Assignment(SceneStyle const& style)
    {
        std::size_t const colour = Begin("COLOUR_RGB");
        m_text += "''";
        for (double const fraction : *style.diffuse)
        {
            m_text += ',';
            AddNumber(m_text, fraction);
        }
        End();
        std::size_t last = colour;
        auto const wrap = [&](char const* entity, char const* before, char const* behind)
        {
            std::size_t const made = Begin(entity);
            m_text += fmt::format("{}#{}{}", before, last, behind);
            End();
            last = made;
        };
        wrap("FILL_AREA_STYLE_COLOUR", "'',", "");
        wrap("FILL_AREA_STYLE", "'',(", ")");
        wrap("SURFACE_STYLE_FILL_AREA", "", "");
        if (style.opacity < 1.0)
        {
            std::size_t const fill = last;
            std::size_t const transparent = Begin("SURFACE_STYLE_TRANSPARENT");
            AddNumber(m_text, 1.0 - style.opacity);
            End();
            std::size_t const rendering = Begin("SURFACE_STYLE_RENDERING_WITH_PROPERTIES");
            m_text += fmt::format(".NORMAL_SHADING.,#{},(#{})", colour, transparent);
            End();
            last = Begin("SURFACE_SIDE_STYLE");
            m_text += fmt::format("'',(#{},#{})", fill, rendering);
            End();
        }
        else
            wrap("SURFACE_SIDE_STYLE", "'',(", ")");
        wrap("SURFACE_STYLE_USAGE", ".BOTH.,", "");
        wrap("PRESENTATION_STYLE_ASSIGNMENT", "(", ")");
        return last;
    }

    void Present(std::vector<std::size_t> const& styled, int context)
    {
        if (styled.empty())
            return;
        Begin("MECHANICAL_DESIGN_GEOMETRIC_PRESENTATION_REPRESENTATION");
        m_text += "'',";
        StepList list(m_text);
        for (std::size_t const item : styled)
            fmt::format_to(std::back_inserter(list.Next()), "#{}", item);
        list.End();
        m_text += fmt::format(",#{}", context);
        End();
    }

    StepTransfer& m_step;
    std::size_t m_last;
    StepText m_stream;
    std::string m_text;
    std::size_t m_lineStart = 0;
    std::unordered_map<SceneStyle const*, std::size_t> m_assignments;
};

}  // namespace

void WriteTessellations(StepTransfer& step, std::size_t last, Output& out)
{
    TessellationWriter writer(step, last, out);
    for (ShapeDocument::Tessellation const& source : step.document.tessellations)
        writer.Write(source);
    writer.Finish();
}

}  // namespace KVR
