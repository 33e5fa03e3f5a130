#include <BRepGProp.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Tool.hxx>
#include <GProp_GProps.hxx>
#include <Poly_Triangulation.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <XCAFDimTolObjects_DatumObject.hxx>
#include <XCAFDimTolObjects_DimensionObject.hxx>
#include <XCAFDimTolObjects_GeomToleranceObject.hxx>
#include <XCAFDoc_Datum.hxx>
#include <XCAFDoc_DimTolTool.hxx>
#include <XCAFDoc_Dimension.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_GeomTolerance.hxx>
#include <XCAFDoc_LayerTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XCAFDoc_ViewTool.hxx>
#include <gp_Trsf.hxx>

#include "exchange/certify/FactReaders.h"
#include "exchange/certify/OccurrenceCounts.h"
#include "exchange/import/InstanceStyles.h"
#include "exchange/import/ProductPlan.h"
#include "exchange/import/StyleTable.h"
#include "exchange/model/CleanText.h"
#include "exchange/model/ModelDocument.h"
#include "framework/api/LengthUnits.h"

namespace KVR
{

namespace
{

class DocumentReader
{
public:
    DocumentReader(ModelDocument const& model, double deflection, std::string const& stem)
        : m_model(model),
          m_plan(model.document),
          m_styles(model.document, stem, m_losses),
          m_deflection(deflection),
          m_millimetres(MetresOf(model.unit) * 1e3)
    {
    }

    ModelFacts Read()
    {
        m_facts.assemblies = m_facts.parts = m_facts.instances = m_facts.occurrences = m_facts.solids = m_facts.faces =
            m_facts.edges = m_facts.triangles = 0;
        m_facts.names.emplace();
        m_facts.colors.emplace();
        for (ComponentPlan const& component : m_plan.components)
            ReadComponent(component);
        for (std::size_t const root : m_plan.roots)
            ReadOccurrences(XCAFDoc_ShapeTool::GetShape(m_plan.components[root].label));
        std::vector<double> const counts = OccurrencesOf();
        double occurrences = 0.0;
        for (std::size_t i = 0; i < counts.size(); ++i)
            if (!m_plan.components[i].isAssembly)
                occurrences += counts[i];
        m_facts.occurrences = static_cast<unsigned long long>(occurrences);
        ReadTables();
        return std::move(m_facts);
    }

private:
    std::vector<double> OccurrencesOf() const;

    void ReadComponent(ComponentPlan const& component)
    {
        ++*(component.isAssembly ? m_facts.assemblies : m_facts.parts);
        AddName(component.name);
        AddStyle(component.label, false);
        for (Authoring::InstanceRecord const& instance : component.instances)
        {
            ++*m_facts.instances;
            AddName(instance.label);
        }
        for (auto const& [path, styles] : InstanceStyles(m_plan, component, m_styles, m_losses))
            for (UTF8String const& style : styles)
                AddStyle(style);
        if (component.isAssembly)
            return;
        TDF_LabelSequence labels;
        XCAFDoc_ShapeTool::GetSubShapes(component.label, labels);
        for (TDF_Label const& label : labels)
        {
            TopoDS_Shape const shape = XCAFDoc_ShapeTool::GetShape(label);
            if (!shape.IsNull())
                AddStyle(label, shape.ShapeType() == TopAbs_EDGE || shape.ShapeType() == TopAbs_WIRE);
        }
        if (!component.shape.IsNull() && m_deflection > 0.0)
        {
            IMeshTools_Parameters parameters;
            parameters.Deflection = m_deflection;
            parameters.Angle = 0.5;
            parameters.InParallel = true;
            BRepMesh_IncrementalMesh(component.shape, parameters);
        }
    }

    void AddName(UTF8String const& name)
    {
        if (!name.IsEmpty())
            m_facts.names->insert(std::string(name.View()));
    }

    void AddStyle(TDF_Label const& label, bool isCurve) { AddStyle(m_styles.StyleOf(label, isCurve)); }
    void AddStyle(UTF8String const& id)
    {
        for (Authoring::StyleRecord const& style : m_styles.Styles())
            if (style.id == id && style.diffuse)
                m_facts.colors->insert(
                    ColorText(style.diffuse->red, style.diffuse->green, style.diffuse->blue, style.diffuse->alpha));
    }

    // A document's shape has all of its occurrences in their places.
    void ReadOccurrences(TopoDS_Shape const& shape)
    {
        if (shape.IsNull())
            return;
        TopTools_IndexedMapOfShape solids;
        TopExp::MapShapes(shape, TopAbs_SOLID, solids);
        TopTools_IndexedMapOfShape edges;
        TopExp::MapShapes(shape, TopAbs_EDGE, edges);
        TopTools_IndexedMapOfShape faces;
        TopExp::MapShapes(shape, TopAbs_FACE, faces);
        *m_facts.solids += static_cast<unsigned long long>(solids.Extent());
        *m_facts.edges += static_cast<unsigned long long>(edges.Extent());
        for (int i = 1; i <= faces.Extent(); ++i)
            ReadFace(TopoDS::Face(faces(i)));
        for (int i = 1; i <= solids.Extent(); ++i)
        {
            GProp_GProps properties;
            BRepGProp::VolumeProperties(solids(i), properties);
            double const volume = properties.Mass() * m_millimetres * m_millimetres * m_millimetres;
            Measures& bodies = Bodies();
            bodies.volume += volume;
            for (int axis = 0; axis < 3; ++axis)
                bodies.volumeMoment[static_cast<std::size_t>(axis)] +=
                    volume * properties.CentreOfMass().Coord(axis + 1) * m_millimetres;
        }
    }

    Measures& Bodies() { return m_facts.bodies ? *m_facts.bodies : m_facts.bodies.emplace(); }

    void ReadFace(TopoDS_Face const& face)
    {
        TopLoc_Location location;
        if (!BRep_Tool::Surface(face, location).IsNull())
        {
            ++*m_facts.faces;
            GProp_GProps properties;
            BRepGProp::SurfaceProperties(face, properties);
            double const area = properties.Mass() * m_millimetres * m_millimetres;
            Measures& bodies = Bodies();
            bodies.area += area;
            for (int axis = 0; axis < 3; ++axis)
                bodies.areaMoment[static_cast<std::size_t>(axis)] +=
                    area * properties.CentreOfMass().Coord(axis + 1) * m_millimetres;
        }
        Handle(Poly_Triangulation) const triangles = BRep_Tool::Triangulation(face, location);
        if (triangles.IsNull() || triangles->NbTriangles() == 0)
            return;
        gp_Trsf const place = location.Transformation();
        std::vector<std::array<double, 3>> nodes;
        for (int i = 1; i <= triangles->NbNodes(); ++i)
        {
            gp_Pnt const node = triangles->Node(i).Transformed(place);
            nodes.push_back({node.X() * m_millimetres, node.Y() * m_millimetres, node.Z() * m_millimetres});
            m_facts.AddPoint(nodes.back()[0], nodes.back()[1], nodes.back()[2]);
        }
        Measures& mesh = m_facts.mesh ? *m_facts.mesh : m_facts.mesh.emplace();
        bool const turns = (face.Orientation() == TopAbs_REVERSED) != place.IsNegative();
        for (int i = 1; i <= triangles->NbTriangles(); ++i)
        {
            int a = 0;
            int b = 0;
            int c = 0;
            triangles->Triangle(i).Get(a, b, c);
            if (turns)
                std::swap(b, c);
            AddTriangle(mesh, nodes[static_cast<std::size_t>(a) - 1], nodes[static_cast<std::size_t>(b) - 1],
                        nodes[static_cast<std::size_t>(c) - 1]);
        }
        *m_facts.triangles += static_cast<unsigned long long>(triangles->NbTriangles());
    }

    template <class Attribute>
    void CountAnnotations(Handle(XCAFDoc_DimTolTool) const& tool,
                          void (XCAFDoc_DimTolTool::*get)(TDF_LabelSequence&) const)
    {
        TDF_LabelSequence labels;
        (tool.get()->*get)(labels);
        *m_facts.annotations += static_cast<unsigned long long>(labels.Length());
        for (TDF_Label const& label : labels)
        {
            Handle(Attribute) attribute;
            if (label.FindAttribute(Attribute::GetID(), attribute) && !attribute->GetObject().IsNull() &&
                !attribute->GetObject()->GetPresentation().IsNull())
                ++*m_facts.drawings;
        }
    }

    void ReadTables()
    {
        TDF_Label const main = m_model.document->Main();
        auto const layers = XCAFDoc_DocumentTool::LayerTool(main);
        TDF_LabelSequence labels;
        layers->GetLayerLabels(labels);
        m_facts.layers.emplace();
        m_facts.layerMembers = 0;
        for (TDF_Label const& label : labels)
        {
            TCollection_ExtendedString name;
            if (!layers->GetLayer(label, name))
                continue;
            m_facts.layers->insert(std::string(CleanExtendedText(name).View()));
            TDF_LabelSequence members;
            layers->GetShapesOfLayer(label, members);
            *m_facts.layerMembers += static_cast<unsigned long long>(members.Length());
        }
        auto const annotations = XCAFDoc_DocumentTool::DimTolTool(main);
        m_facts.annotations = 0;
        m_facts.drawings = 0;
        CountAnnotations<XCAFDoc_Dimension>(annotations, &XCAFDoc_DimTolTool::GetDimensionLabels);
        CountAnnotations<XCAFDoc_GeomTolerance>(annotations, &XCAFDoc_DimTolTool::GetGeomToleranceLabels);
        CountAnnotations<XCAFDoc_Datum>(annotations, &XCAFDoc_DimTolTool::GetDatumLabels);
        TDF_LabelSequence views;
        XCAFDoc_DocumentTool::ViewTool(main)->GetViewLabels(views);
        m_facts.views = static_cast<unsigned long long>(views.Length());
    }

    ModelDocument const& m_model;
    Losses m_losses;
    ProductPlan m_plan;
    StyleTable m_styles;
    double m_deflection;
    double m_millimetres;
    ModelFacts m_facts;
};

std::vector<double> DocumentReader::OccurrencesOf() const
{
    return OccurrenceCounts(m_plan.components.size(), m_plan.roots,
                            [this](std::size_t component)
                            {
                                std::vector<std::size_t> targets;
                                for (ComponentPlan::Origin const& origin : m_plan.components[component].origins)
                                    targets.push_back(origin.target);
                                return targets;
                            });
}

}  // namespace

ModelFacts FactsOfDocument(ModelDocument const& model, double deflection, std::string const& stem)
{
    return DocumentReader(model, deflection, stem).Read();
}

}  // namespace KVR
