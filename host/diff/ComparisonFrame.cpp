#include "host/diff/ComparisonFrame.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "framework/api/UnitText.h"
#include "host/diff/ComparisonOutput.h"
#include "host/diff/PairedProducer.h"

namespace KVR
{

namespace
{

constexpr char kAdded[] = "kvr-diff:added";
constexpr char kRemoved[] = "kvr-diff:removed";
constexpr char kChanged[] = "kvr-diff:changed";
// Of a name or a property: no reason to colour all that an assembly has.
constexpr char kTouched[] = "kvr-diff:touched";
constexpr char kFormer[] = "kvr-diff:former";
constexpr char kSame[] = "kvr-diff:same";

constexpr char kStyles[] =
    R"(<IRenderStyle ID="kvr-diff:added" Label="added"><DiffuseColor FractionRed="0.15" FractionGreen="0.65"
FractionBlue="0.25"/></IRenderStyle><IRenderStyle ID="kvr-diff:removed" Label="removed"><DiffuseColor FractionRed="0.85"
FractionGreen="0.15" FractionBlue="0.15"/></IRenderStyle><IRenderStyle ID="kvr-diff:changed" Label="changed">
<DiffuseColor FractionRed="1" FractionGreen="0.65" FractionBlue="0"/></IRenderStyle><IRenderStyle ID="kvr-diff:touched"
Label="changed in name or properties"><DiffuseColor FractionRed="1" FractionGreen="0.85" FractionBlue="0.4"/>
</IRenderStyle><IRenderStyle ID="kvr-diff:former"
Label="where it was"><DiffuseColor FractionRed="1" FractionGreen="0.65" FractionBlue="0" Transparency="0.7"/>
</IRenderStyle><IRenderStyle ID="kvr-diff:same" Label="unchanged"><DiffuseColor FractionRed="0.7" FractionGreen="0.7"
FractionBlue="0.7" Transparency="0.6"/></IRenderStyle>)";

// What XML does not know becomes a question mark.
std::string XmlText(std::string_view text)
{
    std::string escaped;
    for (char const letter : text)
    {
        auto const byte = static_cast<unsigned char>(letter);
        if (byte < ' ' || letter == '<' || letter == '&' || letter == '"' || letter == '>')
            escaped += byte < ' ' ? "?" : fmt::format("&#{};", byte);
        else
            escaped += letter;
    }
    return escaped;
}

// Colours what is marked, and all else as it stands below something that is.
class Painter
{
public:
    using Marks = std::unordered_map<std::string, std::string>;

    Painter(Scene const& scene, Marks const& marks, std::string const& unmarked, std::string& styles)
        : m_scene(scene), m_marks(marks), m_unmarked(unmarked), m_styles(styles), m_isMarked(Depend())
    {
    }

    // What an instance of the frame places.
    void Paint(std::string const& path, std::size_t component)
    {
        m_work.emplace_back(path, component);
        while (!m_work.empty())
        {
            auto const [at, index] = std::move(m_work.back());
            m_work.pop_back();
            PaintOne(at, index);
        }
    }

private:
    std::string const* MarkOf(std::string_view id) const
    {
        auto const found = m_marks.find(std::string(id));
        return found == m_marks.end() ? nullptr : &found->second;
    }

    std::string const* MarkOf(SceneStyle const* style) const { return style ? MarkOf(style->id) : nullptr; }

    std::string const* MarkOf(ScenePlacement const& placement, SceneComponent const& target) const
    {
        for (std::string const* const mark :
             {MarkOf(placement.id), MarkOf(target.id), MarkOf(placement.style), MarkOf(target.style)})
            if (mark && (*mark != kTouched || target.placements.empty()))
                return mark;
        return nullptr;
    }

    // For each component whether anything in it or below it is marked: from those marked to all that place them.
    std::vector<bool> Depend() const
    {
        std::vector<SceneComponent> const& components = m_scene.Components();
        std::vector<std::vector<std::size_t>> above(components.size());
        std::vector<bool> isMarked(components.size());
        std::vector<std::size_t> work;
        auto const mark = [&](std::size_t component)
        {
            if (!isMarked[component])
                work.push_back(component);
            isMarked[component] = true;
        };
        for (std::size_t c = 0; c < components.size(); ++c)
        {
            for (ScenePlacement const& placement : components[c].placements)
                if (placement.IsEntered())
                {
                    above[placement.target].push_back(c);
                    if (MarkOf(placement, components[placement.target]))
                        mark(c);
                }
            for (SceneGeometry const& geometry : components[c].geometry)
                if (MarkOf(geometry.id) || MarkOf(geometry.style))
                    mark(c);
        }
        while (!work.empty())
        {
            std::size_t const component = work.back();
            work.pop_back();
            for (std::size_t const owner : above[component])
                mark(owner);
        }
        return isMarked;
    }

    void PaintOne(std::string const& path, std::size_t index)
    {
        SceneComponent const& component = m_scene.Components()[index];
        if (!m_isMarked[index])
            return Add(path, m_unmarked);
        for (SceneGeometry const& geometry : component.geometry)
        {
            std::string const* mark = MarkOf(geometry.id);
            mark = mark ? mark : MarkOf(geometry.style);
            Add(path + '[' + std::string(geometry.id) + ']', mark ? *mark : m_unmarked);
        }
        for (ScenePlacement const& placement : component.placements)
        {
            if (!placement.IsEntered())
                continue;
            std::string const below = path + '[' + std::string(placement.id) + ']';
            if (std::string const* const mark = MarkOf(placement, m_scene.Components()[placement.target]))
                Add(below, *mark);
            else
                m_work.emplace_back(below, placement.target);
        }
    }

    void Add(std::string const& path, std::string const& style)
    {
        if (!style.empty())
            m_styles += R"(<EntityStyles Path=")" + XmlText(path) + R"("><Styles><StyleRef ID=")" + style +
                        R"("/></Styles></EntityStyles>)";
    }

    Scene const& m_scene;
    Marks const& m_marks;
    std::string const& m_unmarked;
    std::string& m_styles;
    std::vector<bool> m_isMarked;
    std::vector<std::pair<std::string, std::size_t>> m_work;
};

char const* StyleOf(SceneChange const& change)
{
    switch (change.kind)
    {
        case ChangeKind::kAdded:
            return kAdded;
        case ChangeKind::kRenamed:
        case ChangeKind::kProperty:
        case ChangeKind::kUnit:
        case ChangeKind::kOther:
            return kTouched;
        default:
            return kChanged;
    }
}

// Assemblies and parts that stand at the top: in the root file, or in a file in it.
std::vector<std::size_t> TopOf(Scene const& scene)
{
    std::vector<std::size_t> top;
    std::vector<bool> isSeen(scene.Components().size());
    std::vector<std::size_t> work;
    if (scene.Root() != kNoIndex)
        work.push_back(scene.Root());
    while (!work.empty())
    {
        std::size_t const index = work.back();
        work.pop_back();
        if (isSeen[index])
            continue;
        isSeen[index] = true;
        SceneComponent const& component = scene.Components()[index];
        if (component.kind != SceneComponent::Kind::kFile)
        {
            top.push_back(index);
            continue;
        }
        for (auto placement = component.placements.rbegin(); placement != component.placements.rend(); ++placement)
            if (placement->IsEntered())
                work.push_back(placement->target);
    }
    return top;
}

}  // namespace

ComparisonFrame::ComparisonFrame(SceneComparison const& comparison, Scene const& was, NewIds const& newIds,
                                 Scene const& is, std::string const& title)
{
    Mark(comparison, newIds);
    Place(is, "kvr-diff:now", "as it is", m_is, kSame);
    if (!m_was.empty())
        Place(was, "kvr-diff:old", "as it was", m_was, {});
    char const* const unit = TextOfUnit(is.Unit());
    std::string const unitElement = fmt::format(R"(<Unit LengthUnit="{}"/>)", unit ? unit : "kUnitType_Millimeter");
    m_document = R"(<?xml version="1.0" encoding="UTF-8"?><Scene><IFile ID="kvr-diff:file" IsRoot="1" Label=")" +
                 XmlText(title) + R"(">)" + unitElement + Properties(comparison) + "<AttributeSet><StyleSet>" +
                 kStyles + "</StyleSet>" + Layers(comparison, newIds) +
                 R"(</AttributeSet><ChildSet><Child ID="kvr-diff:top" Type="IAssembly"/></ChildSet></IFile>)"
                 R"(<IAssembly ID="kvr-diff:top" Label=")" +
                 XmlText(title) + R"(">)" + unitElement + "<CrossLevelAttributes><Styles>" + m_styles +
                 "</Styles></CrossLevelAttributes><ChildSet>" + m_instances + "</ChildSet></IAssembly>" + m_parts +
                 "</Scene>";
}

void ComparisonFrame::Mark(SceneComparison const& comparison, NewIds const& newIds)
{
    auto const markFirst = [&](SceneChange const& change, char const* style)
    {
        auto const found = newIds.find(change.firstId);
        if (change.occurrences > 0 && found != newIds.end() && m_was.emplace(found->second, style).second)
            m_shown.push_back(found->second);
    };
    for (SceneChange const& change : comparison.changes)
    {
        if (change.kind == ChangeKind::kRemoved)
            markFirst(change, kRemoved);
        else if (!change.secondId.empty() && change.className != "IFile")
        {
            auto const [mark, isNew] = m_is.emplace(change.secondId, StyleOf(change));
            if (!isNew && mark->second == kTouched)
                mark->second = StyleOf(change);
        }
        if (change.kind == ChangeKind::kMoved && change.what == "Transform")
            markFirst(change, kFormer);
    }
}

void ComparisonFrame::Place(Scene const& scene, std::string const& prefix, std::string const& label, Marks const& marks,
                            std::string const& unmarked)
{
    Painter painter(scene, marks, unmarked, m_styles);
    std::size_t number = 0;
    for (std::size_t const index : TopOf(scene))
    {
        SceneComponent const& component = scene.Components()[index];
        std::string const id = prefix + std::to_string(++number);
        std::string const target = XmlText(component.id);
        m_instances += fmt::format(R"(<IInstance ID="{}" Label="{}" Visibility="1"><Child ID="{}"/></IInstance>)", id,
                                   label, target);
        // The reader wants a target; whoever serves the frame serves the component itself.
        m_parts += fmt::format(R"(<IPart ID="{}" Label=""/>)", target);
        if (!unmarked.empty())
            m_shown.push_back(id);
        auto const mark = marks.find(std::string(component.id));
        if (mark == marks.end() || (mark->second == kTouched && !component.placements.empty()))
            painter.Paint('[' + id + ']', index);
        else
            m_styles += fmt::format(R"(<EntityStyles Path="[{}]"><Styles><StyleRef ID="{}"/></Styles></EntityStyles>)",
                                    id, mark->second);
    }
}

// The list of changes.
std::string ComparisonFrame::Properties(SceneComparison const& comparison) const
{
    constexpr std::size_t kMost = 1000;
    std::string text = "<FileProperties><CustomProperties>";
    std::size_t number = 0;
    for (SceneChange const& change : comparison.changes)
    {
        if (++number > kMost)
            break;
        text += fmt::format(R"(<CustomProperty Key="{} {}" Type="kString" Value="{}"/>)", number, TextOf(change.kind),
                            XmlText(LineOf(change)));
    }
    if (number > kMost)
        text += fmt::format(R"(<CustomProperty Key="and" Type="kString" Value="{} more"/>)",
                            comparison.changes.size() - kMost);
    return text + "</CustomProperties></FileProperties>";
}

// What changed in each way, to be found and hidden together.
std::string ComparisonFrame::Layers(SceneComparison const& comparison, NewIds const& newIds) const
{
    std::string layers = "<LayerSet>";
    for (std::size_t begin = 0, end = 0; begin < comparison.changes.size(); begin = end)
    {
        ChangeKind const kind = comparison.changes[begin].kind;
        std::string items;
        for (end = begin; end < comparison.changes.size() && comparison.changes[end].kind == kind; ++end)
        {
            SceneChange const& change = comparison.changes[end];
            auto const found = newIds.find(change.firstId);
            std::string const id = !change.secondId.empty() ? change.secondId
                                   : found != newIds.end()  ? found->second
                                                            : std::string();
            if (change.occurrences > 0 && !id.empty() && id.find(',') == std::string::npos)
                items += (items.empty() ? "" : ",") + id;
        }
        if (!items.empty())
            layers +=
                fmt::format(R"(<ILayer ID="kvr-diff:layer{0}" Label="{1}"><LayerInfo ID="{0}" Visibility="True"/>)"
                            R"(<GeometryItems Items="{2}"/></ILayer>)",
                            static_cast<int>(kind), TextOf(kind), XmlText(items));
    }
    return layers + "</LayerSet>";
}

}  // namespace KVR
