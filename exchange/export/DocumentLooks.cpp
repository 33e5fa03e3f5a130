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

}  // namespace

DocumentLooks::DocumentLooks(ExportTask& task, ShapeDocument& document, DocumentParts const& parts)
    : m_task(task), m_document(document), m_parts(parts)
{
}

void DocumentLooks::Carry(DocumentVariant const& assembly)
{
    if (!assembly.isAssembly)
        return;
    SceneComponent const& component = *assembly.component;
    for (OccurrenceWalk walk(m_task.scene, assembly.index); walk.Next();)
    {
        if (walk.Depth() == 0)
            continue;
        ScenePlacement const& placement = *walk.Placement();
        DocumentVariant::Place const& place = assembly.places[walk.PlacementIndex()];
        bool const saysSomething = component.overrides || component.style || placement.style || !placement.isVisible;
        if (place.target)
            m_path.Append(place.label);
        if (place.target && place.target->isAssembly && saysSomething)
        {
            CarryBelow(*place.target, walk);
        }
        else
        {
            if (place.target && !place.target->isAssembly)
                CarryTo(walk.Component(), walk.State(), nullptr);
            walk.SkipBelow();
        }
        m_path.Clear();
    }
}

void DocumentLooks::CarryBelow(DocumentVariant const& placed, OccurrenceWalk& walk)
{
    // Goes in step with the walk: what is said below the assembly alone, beside what holds from above.
    OccurrenceWalk known(m_task.scene, placed.index);
    // Of each level down to the current one.
    std::vector<DocumentVariant const*> assemblies;
    while (known.Next())
    {
        DocumentVariant const* assembly = &placed;
        if (known.Depth() > 0)
        {
            walk.Next();
            assemblies.resize(known.Depth());
            while (static_cast<std::size_t>(m_path.Length()) > known.Depth())
                m_path.Remove(m_path.Length());
            DocumentVariant::Place const& place = assemblies.back()->places[known.PlacementIndex()];
            if (place.target)
                m_path.Append(place.label);
            if (place.target && !place.target->isAssembly)
                CarryTo(known.Component(), walk.State(), &known.State());
            if (!place.target || !place.target->isAssembly)
            {
                walk.SkipBelow();
                known.SkipBelow();
                continue;
            }
            assembly = place.target;
        }
        if (!assembly->ownGeometry.IsNull())
        {
            m_path.Append(assembly->ownGeometry);
            CarryTo(known.Component(), walk.State(), &known.State());
            m_path.Remove(m_path.Length());
        }
        assemblies.push_back(assembly);
    }
}

void DocumentLooks::CarryTo(SceneComponent const& part, OccurrenceState const& state, OccurrenceState const* known)
{
    Look const look = LookOf(state, part);
    Look const knownLook = known ? LookOf(*known, part) : Look();
    if (look == knownLook)
        return;
    if (look.isVisible && !knownLook.isVisible)
        m_document.notCarried.Add("hidden occurrences that an override shows");
    auto const shapes = XCAFDoc_DocumentTool::ShapeTool(m_document.document->Main());
    auto const colors = XCAFDoc_DocumentTool::ColorTool(m_document.document->Main());
    TDF_Label label = m_path.Last();
    if (known)
    {
        opencascade::handle<XCAFDoc_GraphNode> usage;
        TDF_Label target;
        XCAFDoc_ShapeTool::GetReferredShape(label, target);
        if (m_paths == kMostPaths || !Prepare(target) || !shapes->SetSHUO(m_path, usage) || usage.IsNull())
            return m_document.notCarried.Add("looks of occurrences");
        ++m_paths;
        label = usage->Label();
    }
    SceneStyle const* const style = look.style == knownLook.style ? nullptr : look.style;
    m_parts.SetColor(label, style, XCAFDoc_ShapeTool::GetShape(m_path.Last()));
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
