#include "host/tree/TextTreeWriter.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

#include "host/TextValues.h"
#include "host/tree/GeometryFacts.h"
#include "host/tree/StyleColors.h"
#include "host/tree/TreeNode.h"
#include "host/tree/TreeOptions.h"
#include "output/Output.h"
#include "scene/SceneComponent.h"
#include "scene/SceneTotals.h"

namespace KVR
{

namespace
{

// Deeper nodes say how much deeper they are, so that a deep tree's text grows with its nodes alone.
constexpr std::size_t kDeepestIndent = 40;

// A line shows so many styles and counts the others.
constexpr std::size_t kMostStyles = 8;

// Without the remainders that computed zeros have.
double Rounded(double coordinate)
{
    constexpr double kStep = 1e-9;
    return std::abs(coordinate) < kStep ? 0.0 : coordinate;
}

}  // namespace

TextTreeWriter::TextTreeWriter(Output& out, TreeOptions const& options)
    : m_out(out), m_text(out, options.color), m_colorBlocks(options.colorBlocks)
{
}

void TextTreeWriter::Indent(bool isLast)
{
    if (m_isLast.empty())
        return;
    m_text.Paint(PaintedText::kId);
    // The root joins to nothing.
    for (std::size_t level = 1; level < m_isLast.size() && level < kDeepestIndent; ++level)
        m_out.Put(m_isLast[level] ? std::string_view("   ") : std::string_view("│  "));
    if (m_isLast.size() > kDeepestIndent)
        m_out.Put(fmt::format("[+{}] ", m_isLast.size() - kDeepestIndent));
    m_out.Put(isLast ? std::string_view("└─ ") : std::string_view("├─ "));
    m_text.Paint(PaintedText::kPlain);
}

void TextTreeWriter::Styles(std::vector<StyleColor> const& styles)
{
    m_out.Put(", styles");
    std::size_t const shown = std::min(styles.size(), kMostStyles);
    for (std::size_t i = 0; i < shown; ++i)
    {
        StyleColor const& style = styles[i];
        m_out.Put(' ');
        if (!style.diffuse)
        {
            m_out.Put(style.isThere ? "colourless" : "missing");
        }
        else if (m_colorBlocks)
        {
            Rgb const rgb = RgbOf(*style.diffuse);
            m_out.Put(fmt::format("\x1b[48;2;{};{};{}m  \x1b[0m", rgb.red, rgb.green, rgb.blue));
        }
        else
        {
            m_out.Put(HexText(*style.diffuse));
        }
    }
    if (shown < styles.size())
        m_out.Put(fmt::format(" [+{}]", styles.size() - shown));
}

void TextTreeWriter::Geometry(GeometryFacts const& facts)
{
    for (GeometryFacts::Count const& count : facts.counts)
        m_out.Put(", " + Counted(count.value, count.one, count.many));
    if (!facts.remark.empty())
        m_out.Put(fmt::format(", {}", facts.remark));
    if (!facts.box)
        return;
    // Six digits tell where something is.
    auto const corner = [](std::array<double, 3> const& at)
    { return fmt::format("({:.6g}, {:.6g}, {:.6g})", Rounded(at[0]), Rounded(at[1]), Rounded(at[2])); };
    m_out.Put(fmt::format(", from {} to {}", corner(facts.box->low), corner(facts.box->high)));
}

void TextTreeWriter::Begin(TreeNode const& node)
{
    Indent(node.isLast);
    m_text.PutObject(node.kind, node.label, node.id);
    if (node.isInstance && node.owner)
    {
        m_out.Put(" -> ");
        m_text.PutObject(KindOf(*node.owner), node.owner->label, node.owner->id);
    }
    if (node.isVisible)
        m_text.PutVisibility(*node.isVisible, "");
    if (node.owner)
    {
        std::size_t const count = node.owner->children.size();
        m_out.Put(", ");
        fmt::format_int const digits(count);
        m_out.Put(std::string_view(digits.data(), digits.size()));
        m_out.Put(count == 1 ? std::string_view(" child") : std::string_view(" children"));
    }
    if (node.isCycle)
        m_out.Put(", cycle");
    if (node.isRepeated)
        m_out.Put(", repeated");
    if (node.geometry)
        Geometry(*node.geometry);
    if (node.styles && !node.styles->empty())
        Styles(*node.styles);
    m_out.Put('\n');
    m_isLast.push_back(node.isLast);
}

void TextTreeWriter::End()
{
    m_isLast.pop_back();
}

void TextTreeWriter::Finish(SceneTotals const& totals)
{
    m_out.Put(fmt::format("{}, {}, {}, {}, {} ({}), deepest level {}\n", Counted(totals.files, "file", "files"),
                          Counted(totals.assemblies, "assembly", "assemblies"), Counted(totals.parts, "part", "parts"),
                          Counted(totals.instances, "instance", "instances"),
                          Counted(ProductOccurrences(totals), "occurrence", "occurrences"),
                          Counted(totals.partOccurrences, "of a part", "of parts"), totals.deepestLevel));
}

}  // namespace KVR
