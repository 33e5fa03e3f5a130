#include "exchange/export/DocumentParts.h"

#include <BRep_Builder.hxx>
#include <NCollection_DataMap.hxx>
#include <Quantity_ColorRGBA.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_TagSource.hxx>
#include <TDataStd_Name.hxx>
#include <TNaming_Builder.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_ShapeMapHasher.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_Area.hxx>
#include <XCAFDoc_Centroid.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_LayerTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XCAFDoc_Volume.hxx>
#include <limits>
#include <sstream>

#include "exchange/export/DocumentProducts.h"
#include "exchange/export/DocumentText.h"
#include "exchange/export/ShapePlacement.h"
#include "framework/api/IAnnotationCallout.h"
#include "scene/SceneNote.h"

namespace KVR
{

namespace
{

using opencascade::handle;

constexpr double kMillimetre = 1e-3;

// What the annotations of a scene speak of.
std::vector<std::string> ReferencesOf(ExportTask const& task)
{
    std::vector<std::string> all;
    for (SceneComponent const& component : task.scene.Components())
        for (SceneGeometry const& geometry : component.geometry)
            if (auto const* const callout = dynamic_cast<IAnnotationCallout const*>(geometry.object))
                for (std::string& id : SceneNote::ReferencesOf(*callout))
                    all.push_back(std::move(id));
    return all;
}

PartShapes::Options OptionsOf(ExportTask& task, ShapeDocument const& document, bool hasTriangles)
{
    PartShapes::Options options;
    options.watch = &task.watch;
    options.metresPerUnit = document.metresPerUnit;
    using Meshes = PartShapes::Options::Meshes;
    options.meshes = !task.options.meshFaces ? Meshes::kCount : hasTriangles ? Meshes::kLeave : Meshes::kFaces;
    for (SceneLayer const& layer : task.scene.Layers())
        for (std::string_view const item : layer.items)
            options.wantedSubShapes.emplace(item);
    for (std::string const& id : ReferencesOf(task))
        options.wantedSubShapes.insert(id);
    return options;
}

}  // namespace

// The labels of bodies, faces and edges of a part, each made once.
class DocumentParts::SubShapes
{
public:
    explicit SubShapes(TDF_Label const& part) : m_part(part) {}

    TDF_Label LabelOf(TopoDS_Shape const& shape)
    {
        if (TDF_Label const* const known = m_labels.Seek(shape))
            return *known;
        TDF_Label const label = TDF_TagSource::NewChild(m_part);
        TNaming_Builder(label).Select(shape, shape);
        m_labels.Bind(shape, label);
        return label;
    }

private:
    TDF_Label m_part;
    NCollection_DataMap<TopoDS_Shape, TDF_Label, TopTools_ShapeMapHasher> m_labels;
};

DocumentParts::DocumentParts(ExportTask& task, ShapeDocument& document, bool hasTriangles)
    : m_task(task),
      m_tessellates(hasTriangles && task.options.meshFaces),
      m_document(document),
      m_shapes(XCAFDoc_DocumentTool::ShapeTool(document.document->Main())),
      m_colors(XCAFDoc_DocumentTool::ColorTool(document.document->Main())),
      m_partShapes(OptionsOf(task, document, hasTriangles), document.notCarried)
{
    for (SceneLayer const& layer : task.scene.Layers())
    {
        for (std::string_view const item : layer.items)
            m_layerItems.try_emplace(std::string(item));
    }
    for (std::string const& id : ReferencesOf(task))
        m_targets.try_emplace(id);
}

TDF_Label DocumentParts::Add(SceneComponent const& component, gp_Mat const& change)
{
    std::vector<PartItem> const items = m_partShapes.Of(component, change);
    // A part of one body is the body itself, unless that has a place, which a part has not.
    // A point is no part by itself either.
    bool const isWhole = items.size() == 1 && items.front().shape.Location().IsIdentity() &&
                         items.front().geometry->kind != GeometryKind::kPoint;
    TopoDS_Shape shape;
    if (isWhole)
    {
        shape = items.front().shape;
    }
    else
    {
        TopoDS_Compound compound;
        BRep_Builder builder;
        builder.MakeCompound(compound);
        for (PartItem const& item : items)
            builder.Add(compound, item.shape);
        shape = compound;
    }
    TDF_Label const part = m_shapes->AddShape(shape, Standard_False, Standard_False);
    TDataStd_Name::Set(part, DocumentText(std::string(component.label)));
    Style(component, part, items, isWhole);
    // Those of an assembly speak of all of it.
    gp_Mat unchanged;
    unchanged.SetIdentity();
    if (component.kind == SceneComponent::Kind::kPart)
        // What is said of the component holds for no copy that is scaled or mirrored.
        AddProperties(component, part, ElementsOf(change) == ElementsOf(unchanged));
    m_measures.Add(part, shape);
    AddTessellations(component, part, change);
    std::string const id(component.id);
    Note(id, {part});
    NoteTarget(id, part, items.size() == 1 ? items.front().shape : TopoDS_Shape());
    return part;
}

void DocumentParts::Style(SceneComponent const& component, TDF_Label const& part, std::vector<PartItem> const& items,
                          bool isWhole)
{
    SubShapes subShapes(part);
    if (!isWhole)
        SetColor(part, component.style, XCAFDoc_ShapeTool::GetShape(part));
    for (PartItem const& item : items)
    {
        SceneGeometry const& geometry = *item.geometry;
        bool const isPoint = geometry.kind == GeometryKind::kPoint;
        std::string const geometryId(geometry.id);
        SceneStyle const* const look = !geometry.style && isWhole ? component.style : geometry.style;
        TDF_Label label = part;
        if (!isWhole && !isPoint && (look || m_layerItems.count(geometryId) > 0))
            label = subShapes.LabelOf(item.shape);
        if (isPoint && look && look->diffuse)
            m_document.notCarried.Add("colours of points");
        else if (look)
            SetColor(label, look, item.shape);
        if (isWhole && !geometry.isVisible)
            m_colors->SetVisibility(part, Standard_False);
        m_document.bodies.push_back({part, item.shape, std::string(geometry.label), !isWhole && !geometry.isVisible});
        Note(geometryId, {isPoint ? TDF_Label() : label, m_document.bodies.size() - 1});
        NoteTarget(geometryId, part, item.shape);
        for (auto const& [shape, id] : item.subStyles)
        {
            if (SceneStyle const* const subLook = m_task.scene.StyleOf(id); subLook && subLook->diffuse)
                SetColor(subShapes.LabelOf(shape), subLook, shape);
        }
        for (auto const& [id, shape] : item.subShapes)
        {
            NoteTarget(id, part, shape);
            if (m_layerItems.count(id) > 0)
                Note(id, {subShapes.LabelOf(shape)});
        }
    }
}

void DocumentParts::SetColor(TDF_Label const& label, SceneStyle const* style, TopoDS_Shape const& shape) const
{
    if (!style || !style->diffuse)
        return;
    auto const& [red, green, blue] = *style->diffuse;
    Quantity_ColorRGBA const color(Quantity_Color(red, green, blue, Quantity_TOC_sRGB),
                                   static_cast<float>(style->opacity));
    bool const hasFreeEdges = TopExp_Explorer(shape, TopAbs_EDGE, TopAbs_FACE).More();
    if (!hasFreeEdges || TopExp_Explorer(shape, TopAbs_FACE).More())
        m_colors->SetColor(label, color, XCAFDoc_ColorSurf);
    if (hasFreeEdges)
        m_colors->SetColor(label, color, XCAFDoc_ColorCurv);
}

void DocumentParts::Note(std::string const& id, Member const& member)
{
    auto const found = m_layerItems.find(id);
    if (found != m_layerItems.end())
        found->second.push_back(member);
}

void DocumentParts::NoteTarget(std::string const& id, TDF_Label const& part, TopoDS_Shape const& shape)
{
    auto const found = m_targets.find(id);
    if (found != m_targets.end())
        found->second.push_back({part, shape});
}

std::optional<ShapeDocument::Target> DocumentParts::TargetOf(std::string const& id, TDF_Label const& part) const
{
    auto const found = m_targets.find(id);
    if (found == m_targets.end() || found->second.empty())
        return std::nullopt;
    for (ShapeDocument::Target const& target : found->second)
        if (target.part == part)
            return target;
    return found->second.front();
}

void DocumentParts::AddProperties(SceneComponent const& component, TDF_Label const& label, bool withMeasures)
{
    double const scale = component.metresPerUnit / m_document.metresPerUnit;
    // The writer calls volumes and areas millimetres, whatever the unit of lengths is.
    double const millimetres = component.metresPerUnit / kMillimetre;
    ShapeDocument::Product product = ProductOf(component);
    product.label = label;
    for (SceneProperty const& property : component.properties)
    {
        auto const* const text = std::get_if<std::string>(&property.value);
        std::optional<double> const number = NumberOf(property);
        gp_XYZ point;
        if (!withMeasures && property.name.starts_with("geometric validation property: "))
            continue;
        if (property.name == "geometric validation property: volume" && number)
            XCAFDoc_Volume::Set(label, RoundedMeasure(*number * millimetres * millimetres * millimetres));
        else if (property.name == "geometric validation property: area" && number)
            XCAFDoc_Area::Set(label, RoundedMeasure(*number * millimetres * millimetres));
        else if (property.name == "geometric validation property: centroid" && text &&
                 ReadTriple(*text, point.ChangeCoord(1), point.ChangeCoord(2), point.ChangeCoord(3)))
            XCAFDoc_Centroid::Set(label, RoundedPlace(scale * point));
        else if (property.name == "material" && text)
            product.material.name = *text;
        else if (property.name == "material description" && text)
            product.material.description = *text;
        else if (property.name == "material density type" && text)
            product.material.densityType = *text;
        else if (property.name == "material density" && number)
            product.material.density = *number;
        else
            AddToProduct(product, property);
    }
    m_document.products.push_back(std::move(product));
}

void DocumentParts::AddTessellations(SceneComponent const& component, TDF_Label const& part, gp_Mat const& change)
{
    if (!m_tessellates)
        return;
    auto const m = ElementsOf(change);
    Matrix const changed{m[0], m[1], m[2], 0, m[3], m[4], m[5], 0, m[6], m[7], m[8], 0, 0, 0, 0, 1};
    for (SceneGeometry const& geometry : component.geometry)
    {
        if (geometry.kind != GeometryKind::kMesh || !geometry.bodyId.empty())
            continue;
        Matrix const unit = Scaling(geometry.metresPerUnit / m_document.metresPerUnit);
        m_document.tessellations.push_back(
            {part, std::string(geometry.label), geometry.mesh, Product(changed, Product(unit, geometry.transform)),
             geometry.style ? geometry.style : component.style, !geometry.isVisible, &m_task.scene});
    }
}

void DocumentParts::AddLayers()
{
    handle<XCAFDoc_LayerTool> const layers = XCAFDoc_DocumentTool::LayerTool(m_document.document->Main());
    for (SceneLayer const& layer : m_task.scene.Layers())
    {
        std::string const name = layer.label.empty() ? std::to_string(layer.number) : std::string(layer.label);
        m_document.layers.push_back(name);
        TDF_Label label;
        bool hasMembers = false;
        for (std::string_view const item : layer.items)
        {
            std::vector<Member> const& members = m_layerItems[std::string(item)];
            if (members.empty())
                m_document.notCarried.Add("members of layers that are no parts, bodies or faces");
            for (Member const& member : members)
            {
                hasMembers = true;
                if (member.label.IsNull())
                {
                    m_document.layersOfPoints.push_back({name, layer.isVisible, member.point});
                    continue;
                }
                if (label.IsNull())
                    label = layers->AddLayer(DocumentText(name), layer.isVisible);
                layers->SetLayer(member.label, label);
            }
        }
        if (!hasMembers)
            m_document.notCarried.Add("layers without members");
        else if (!label.IsNull() && !layer.isVisible)
            layers->SetVisibility(label, Standard_False);
    }
}

}  // namespace KVR
