#include "exchange/export/DocumentLooks.h"

#include <Quantity_Color.hxx>
#include <TDF_ChildIterator.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Shape.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_GraphNode.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <algorithm>
#include <unordered_set>

#include "framework/api/IBrep.h"
#include "framework/api/SubEntityToStylesMap.h"

namespace KVR
{

namespace
{

// Paths with a look of their own in one file; more are counted.
constexpr std::size_t kMostPaths = 100'000;

bool HasFaceStyles(SceneGeometry const& geometry)
{
    SubEntityToStylesMap const* const map = geometry.body ? geometry.body->StylesMap() : nullptr;
    return map && map->Size() > 0;
}

bool HasSurfaces(SceneComponent const& component)
{
    return std::any_of(component.geometry.begin(), component.geometry.end(),
                       [](SceneGeometry const& geometry)
                       { return geometry.kind == GeometryKind::kBody || geometry.kind == GeometryKind::kMesh; });
}

}  // namespace

DocumentLooks::DocumentLooks(ExportTask& task, ShapeDocument& document, DocumentParts const& parts)
    : m_task(task), m_document(document), m_parts(parts)
{
}

void DocumentLooks::Carry(DocumentVariant const& assembly)
{
    SceneComponent const& component = *assembly.component;
    OccurrenceState const here(component);
    for (DocumentVariant::Child const& child : assembly.children)
    {
        if (!child.placement)
            continue;
        SceneComponent const& target = *child.target->component;
        OccurrenceState const state = here.Below(*child.placement, target);
        m_path.Append(child.label);
        bool const saysSomething =
            component.overrides || component.style || child.placement->style || !child.placement->isVisible;
        if (!child.target->isAssembly)
            CarryTo(child, target, state, nullptr);
        else if (saysSomething)
            CarryBelow(*child.target, state, OccurrenceState(target));
        m_path.Clear();
    }
}

void DocumentLooks::CarryBelow(DocumentVariant const& assembly, OccurrenceState const& state,
                               OccurrenceState const& known)
{
    for (DocumentVariant::Child const& child : assembly.children)
    {
        m_path.Append(child.label);
        if (!child.placement)
        {
            CarryTo(child, *assembly.component, state, &known);
        }
        else
        {
            SceneComponent const& target = *child.target->component;
            OccurrenceState const below = state.Below(*child.placement, target);
            OccurrenceState const knownBelow = known.Below(*child.placement, target);
            if (child.target->isAssembly)
                CarryBelow(*child.target, below, knownBelow);
            else
                CarryTo(child, target, below, &knownBelow);
        }
        m_path.Remove(m_path.Length());
    }
}

// `known` is what the assemblies further down say by themselves; null when there is none between.
void DocumentLooks::CarryTo(DocumentVariant::Child const& child, SceneComponent const& part,
                            OccurrenceState const& state, OccurrenceState const* known)
{
    Look const look = LookOf(state, part);
    Look const knownLook = known ? LookOf(*known, part) : Look();
    if (look == knownLook)
        return;
    if (look.isVisible && !knownLook.isVisible)
        m_document.notCarried.Add("hidden occurrences that an override shows");
    auto const shapes = XCAFDoc_DocumentTool::ShapeTool(m_document.document->Main());
    auto const colors = XCAFDoc_DocumentTool::ColorTool(m_document.document->Main());
    TDF_Label label = child.label;
    if (known)
    {
        opencascade::handle<XCAFDoc_GraphNode> usage;
        TDF_Label target;
        XCAFDoc_ShapeTool::GetReferredShape(child.label, target);
        if (m_paths == kMostPaths || !Prepare(target) || !shapes->SetSHUO(m_path, usage) || usage.IsNull())
            return m_document.notCarried.Add("looks of occurrences");
        ++m_paths;
        label = usage->Label();
    }
    SceneStyle const* const style = look.style == knownLook.style ? nullptr : look.style;
    m_parts.SetColor(label, style, HasSurfaces(part));
    bool const hasColor = style && style->diffuse;
    if (!look.isVisible)
    {
        colors->SetVisibility(label, Standard_False);
        // A writer finds the visibility by the colour, and would lend the part's.
        if (!hasColor)
            colors->SetColor(label, Quantity_Color(Quantity_NOC_BLACK), XCAFDoc_ColorGen);
    }
    double const opacity = known && hasColor ? style->opacity : 1.0;
    if (opacity < 1.0 || (!look.isVisible && !hasColor))
        m_document.looks.push_back({m_path, opacity, !hasColor});
}

bool DocumentLooks::Prepare(TDF_Label const& part)
{
    // Points have no look in a file.
    TopoDS_Shape const shape = XCAFDoc_ShapeTool::GetShape(part);
    if (!TopExp_Explorer(shape, TopAbs_EDGE).More())
        return false;
    if (!m_prepared.Add(part))
        return true;
    // Open CASCADE's writer crashes on such a look when nothing of the part itself has a colour.
    auto const colors = XCAFDoc_DocumentTool::ColorTool(m_document.document->Main());
    auto const isColored = [&](TDF_Label const& label)
    {
        return colors->IsSet(label, XCAFDoc_ColorGen) || colors->IsSet(label, XCAFDoc_ColorSurf) ||
               colors->IsSet(label, XCAFDoc_ColorCurv);
    };
    bool hasColor = isColored(part);
    for (TDF_ChildIterator child(part); child.More() && !hasColor; child.Next())
        hasColor = isColored(child.Value());
    if (!hasColor)
    {
        colors->SetColor(part, Quantity_Color(Quantity_NOC_BLACK), XCAFDoc_ColorGen);
        m_document.colorlessParts.push_back(part);
    }
    return true;
}

DocumentLooks::Look DocumentLooks::LookOf(OccurrenceState const& state, SceneComponent const& part)
{
    Look look;
    look.isVisible = state.isVisible;
    look.style = state.imposedStyle;
    // What has no style at all takes that of an assembly above; where some of a part has, the rest goes without.
    if (!look.style && IsUnstyled(part))
        look.style = state.inheritedStyle;
    return look;
}

bool DocumentLooks::IsUnstyled(SceneComponent const& component)
{
    auto const [known, isNew] = m_unstyled.try_emplace(&component, false);
    if (isNew)
        known->second = !component.style && std::all_of(component.geometry.begin(), component.geometry.end(),
                                                        [](SceneGeometry const& geometry)
                                                        { return !geometry.style && !HasFaceStyles(geometry); });
    return known->second;
}

void DocumentLooks::CountOverridesOfGeometry()
{
    std::unordered_set<std::string_view> geometry;
    for (SceneComponent const& component : m_task.scene.Components())
    {
        for (SceneGeometry const& piece : component.geometry)
            geometry.insert(piece.id);
    }
    for (SceneComponent const& component : m_task.scene.Components())
    {
        std::vector<SceneOverride const*> waiting;
        if (component.overrides)
            waiting.push_back(component.overrides);
        while (!waiting.empty())
        {
            SceneOverride const* const entry = waiting.back();
            waiting.pop_back();
            for (auto const& [id, below] : entry->below)
            {
                waiting.push_back(below);
                if (geometry.count(id) > 0 && (below->isVisible || below->style || below->transform))
                    m_document.notCarried.Add("overrides of single bodies");
            }
        }
    }
}

}  // namespace KVR
