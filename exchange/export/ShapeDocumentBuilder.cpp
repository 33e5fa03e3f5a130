#include "exchange/export/ShapeDocumentBuilder.h"

#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <UnitsMethods_LengthUnit.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <stdexcept>

#include "exchange/export/DocumentDrawings.h"
#include "exchange/export/DocumentLooks.h"
#include "exchange/export/DocumentProducts.h"
#include "exchange/export/DocumentText.h"
#include "exchange/export/ShapePlacement.h"
#include "exchange/export/StepUnit.h"
#include "framework/api/FileProperties.h"
#include "framework/api/IComponent.h"
#include "framework/api/IFile.h"
#include "framework/api/Time.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

namespace
{

// Open CASCADE's writer goes through every occurrence.
constexpr unsigned long long kMostOccurrences = 1'000'000;

gp_Mat Unit()
{
    gp_Mat unit;
    unit.SetIdentity();
    return unit;
}

std::string NameOf(std::string_view label, std::string_view id)
{
    return std::string(label.empty() ? id : label);
}

std::string KeyOf(std::size_t component, gp_Mat const& change, std::vector<SceneOverride const*> const& moving)
{
    std::string key;
    auto const append = [&](void const* bytes, std::size_t size) { key.append(static_cast<char const*>(bytes), size); };
    auto const elements = ElementsOf(change);
    append(&component, sizeof component);
    append(elements.data(), sizeof elements);
    append(moving.data(), moving.size() * sizeof(void*));
    return key;
}

bool IsFreeFile(SceneComponent const& component)
{
    return component.kind == SceneComponent::Kind::kFile && component.geometry.empty() &&
           std::all_of(component.placements.begin(), component.placements.end(),
                       [](ScenePlacement const& placement)
                       { return !placement.IsEntered() || placement.object == nullptr; });
}

// Whether there is geometry that may become a shape.
bool HasOwnGeometry(SceneComponent const& component)
{
    return std::any_of(component.geometry.begin(), component.geometry.end(),
                       [](SceneGeometry const& geometry) {
                           return geometry.kind != GeometryKind::kOther && geometry.kind != GeometryKind::kCloud &&
                                  geometry.bodyId.empty();
                       });
}

}  // namespace

ShapeDocumentBuilder::ShapeDocumentBuilder(ExportTask& task, bool hasTriangles)
    : m_task(task), m_hasTriangles(hasTriangles), m_scene(task.scene), m_document(task.notCarried)
{
}

ShapeDocument ShapeDocumentBuilder::Build()
{
    CheckSize();
    if (StepUnitOf(m_scene.Unit()))
    {
        m_document.unit = m_scene.Unit();
        m_document.metresPerUnit = m_scene.MetresPerUnit();
    }
    m_document.parameterCurves = m_task.options.parameterCurves;
    // Without Open CASCADE's application, which would stay to the end of the process.
    m_document.document = new TDocStd_Document("BinXCAF");
    XCAFDoc_DocumentTool::Set(m_document.document->Main());
    XCAFDoc_DocumentTool::SetLengthUnit(m_document.document, m_document.metresPerUnit, UnitsMethods_LengthUnit_Meter);
    XCAFDoc_ShapeTool::SetAutoNaming(Standard_False);
    m_shapes = XCAFDoc_DocumentTool::ShapeTool(m_document.document->Main());
    m_parts = std::make_unique<DocumentParts>(m_task, m_document, m_hasTriangles);
    AddRoots();
    m_parts->AddMeasures();
    m_shapes->UpdateAssemblies();
    DocumentLooks looks(m_task, m_document, *m_parts);
    for (DocumentVariant const* const variant : m_inOrder)
        looks.Carry(*variant);
    looks.CountOverridesOfGeometry();
    m_parts->AddLayers();
    DocumentDrawings drawings(m_task, m_document, *m_parts);
    drawings.AddViews(m_inOrder);
    for (DocumentVariant const* const variant : m_inOrder)
        drawings.AddCallouts(*variant);
    return std::move(m_document);
}

void ShapeDocumentBuilder::CheckSize() const
{
    if (m_scene.Root() == kNoIndex)
        throw std::runtime_error("the scene has no component to write");
    RefuseMoreOccurrences(m_scene, kMostOccurrences);
}

void ShapeDocumentBuilder::AddRoots()
{
    SceneComponent const& root = m_scene.Components()[m_scene.Root()];
    m_document.title = NameOf(root.label, root.id);
    std::vector<std::size_t> tops{m_scene.Root()};
    if (IsFreeFile(root))
    {
        tops.clear();
        for (ScenePlacement const& placement : root.placements)
            if (placement.IsEntered())
                tops.push_back(placement.target);
    }
    if (auto const* const file = dynamic_cast<IFile const*>(root.object))
        AddFileProperties(file->FileProperties());
    for (std::size_t const top : tops)
    {
        if (auto const* const owner = dynamic_cast<IComponent const*>(m_scene.Components()[top].object))
            AddFileProperties(owner->FileProperties());
        VariantOf(top, Unit(), OccurrenceState(m_scene.Components()[top]));
    }
}

// The first one that states something is heard.
void ShapeDocumentBuilder::AddFileProperties(FileProperties const* properties)
{
    if (!properties)
        return;
    UTF16String text;
    if (m_document.author.empty() && properties->Author(text) == kIsValueSpecified_Yes)
        m_document.author = UTF8String(text).Value();
    if (m_document.organization.empty() && properties->Organization(text) == kIsValueSpecified_Yes)
        m_document.organization = UTF8String(text).Value();
    if (m_document.authorisation.empty() && properties->Authorisation(text) == kIsValueSpecified_Yes)
        m_document.authorisation = UTF8String(text).Value();
    Time time;
    if (m_document.creationTime.empty() && properties->CreationDate(time) == kIsValueSpecified_Yes)
    {
        std::array<char, 32> written{};
        std::size_t const size = std::strftime(written.data(), written.size(), "%Y-%m-%dT%H:%M:%S", &time.Value());
        m_document.creationTime.assign(written.data(), size);
    }
}

// Whether the entry, or one below it, gives something another place.
bool ShapeDocumentBuilder::Moves(SceneOverride const& entry)
{
    auto const [known, isNew] = m_moving.try_emplace(&entry, false);
    if (!isNew)
        return known->second;
    bool moves = entry.transform.has_value();
    for (auto const& [id, below] : entry.below)
        moves = Moves(*below) || moves;
    return m_moving[&entry] = moves;
}

DocumentVariant const* ShapeDocumentBuilder::VariantOf(std::size_t component, gp_Mat const& change,
                                                       OccurrenceState const& state)
{
    SceneComponent const& source = m_scene.Components()[component];
    std::vector<SceneOverride const*> moving;
    for (SceneOverride const* const entry : state.Overrides())
        if (Moves(*entry))
            moving.push_back(entry);
    std::unique_ptr<DocumentVariant>& variant = m_variants[KeyOf(component, change, moving)];
    if (variant)
        return variant.get();
    variant = std::make_unique<DocumentVariant>();
    if (std::size_t const copies = m_copies[component]++; copies > 0)
        variant->key = std::to_string(copies);
    variant->component = &source;
    variant->index = component;
    variant->change = change;
    m_inOrder.push_back(variant.get());
    variant->isAssembly = source.kind != SceneComponent::Kind::kPart;
    // The reference to the pointer is void once more variants are made.
    DocumentVariant* const made = variant.get();
    if (made->isAssembly)
        FillAssembly(*made, change, state);
    else
        made->label = m_parts->Add(source, change);
    return made;
}

void ShapeDocumentBuilder::FillAssembly(DocumentVariant& variant, gp_Mat const& change, OccurrenceState const& state)
{
    SceneComponent const& component = *variant.component;
    variant.label = m_shapes->NewShape();
    TDataStd_Name::Set(variant.label, DocumentText(std::string(component.label)));
    m_parts->AddProperties(component, variant.label);
    if (HasOwnGeometry(component))
    {
        TDF_Label const part = m_parts->Add(component, change);
        variant.ownGeometry = m_shapes->AddComponent(variant.label, part, TopLoc_Location(gp_Trsf()));
        TDataStd_Name::Set(variant.ownGeometry, DocumentText(std::string(component.label)));
    }
    variant.places.resize(component.placements.size());
    for (std::size_t i = 0; i < component.placements.size(); ++i)
        if (component.placements[i].IsEntered())
            variant.places[i] = Placed(variant, component.placements[i], change, state);
}

DocumentVariant::Place ShapeDocumentBuilder::Placed(DocumentVariant const& assembly, ScenePlacement const& placement,
                                                    gp_Mat const& change, OccurrenceState const& state)
{
    SceneComponent const& target = m_scene.Components()[placement.target];
    OccurrenceState const below = state.Below(placement, target);
    // Lengths of the place are in the unit of the assembly. They alone are scaled, since each part is in the document's
    // unit already.
    Matrix transform = below.Transform();
    double const scale = assembly.component->metresPerUnit / m_document.metresPerUnit;
    for (std::size_t row = 0; row < 3; ++row)
        transform[4 * row + 3] *= scale;
    auto const where = ShapePlacement::Of(transform, 1.0, change);
    if (!where)
    {
        m_document.notCarried.Add("instances whose transform leaves nothing of them");
        return {};
    }
    DocumentVariant const* const variant = VariantOf(placement.target, where->change, below);
    TDF_Label const label = m_shapes->AddComponent(assembly.label, variant->label, where->motion);
    TDataStd_Name::Set(label, DocumentText(std::string(placement.label.empty() ? target.label : placement.label)));
    if (placement.object)
    {
        m_document.usages.push_back(UsageOf(label, m_scene.PropertiesOf(*placement.object)));
        m_document.usages.back().name = placement.label;
    }
    return {label, variant};
}

}  // namespace KVR
