#include <BRepGProp.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Tool.hxx>
#include <GProp_GProps.hxx>
#include <NCollection_DataMap.hxx>
#include <Poly_Triangulation.hxx>
#include <TDF_AttributeSequence.hxx>
#include <TDF_LabelMapHasher.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <XCAFDimTolObjects_DatumObject.hxx>
#include <XCAFDimTolObjects_DimensionObject.hxx>
#include <XCAFDimTolObjects_GeomToleranceObject.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_Datum.hxx>
#include <XCAFDoc_DimTolTool.hxx>
#include <XCAFDoc_Dimension.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_GeomTolerance.hxx>
#include <XCAFDoc_GraphNode.hxx>
#include <XCAFDoc_LayerTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XCAFDoc_ViewTool.hxx>
#include <XCAFDoc_VisMaterial.hxx>
#include <XCAFDoc_VisMaterialTool.hxx>
#include <gp_Trsf.hxx>
#include <optional>
#include <vector>

#include "exchange/certify/FactReaders.h"
#include "exchange/model/CleanText.h"
#include "exchange/model/ModelDocument.h"
#include "framework/api/LengthUnits.h"

namespace KVR
{

namespace
{

// As the import has it: the angle between the normals of neighbouring triangles, in radians.
constexpr double kAngularDeflection = 0.5;
// A chain of usages that is longer is a damaged document's.
constexpr std::size_t kMostLevels = 1000;

class DocumentReader
{
public:
    DocumentReader(ModelDocument const& model, double deflection)
        : m_model(model),
          m_colorTool(XCAFDoc_DocumentTool::ColorTool(model.document->Main())),
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
        TDF_LabelSequence roots;
        XCAFDoc_DocumentTool::ShapeTool(m_model.document->Main())->GetFreeShapes(roots);
        for (TDF_Label const& root : roots)
            Meet(root);
        std::vector<double> counts(m_components.size(), 1.0);
        for (std::size_t i = 0; i < m_components.size(); ++i)
            ReadComponent(i);
        for (TDF_Label const& root : roots)
            ReadOccurrences(XCAFDoc_ShapeTool::GetShape(root));
        CountOccurrences(std::move(counts));
        ReadTables();
        return std::move(m_facts);
    }

private:
    struct Component
    {
        TDF_Label label;
        bool isAssembly = false;
        UTF8String name;
        /// The components that it places, with repeats.
        std::vector<std::size_t> targets;
    };

    // The place of a component in the list, at the end of which a new one is put.
    std::size_t Meet(TDF_Label const& label)
    {
        if (std::size_t const* const known = m_places.Seek(label))
            return *known;
        std::size_t const place = m_components.size();
        m_places.Bind(label, place);
        m_components.push_back({label, XCAFDoc_ShapeTool::IsAssembly(label), NameOfLabel(label), {}});
        return place;
    }

    // Components that it places are met, and read in their turn.
    void ReadComponent(std::size_t place)
    {
        TDF_Label const label = m_components[place].label;
        AddName(m_components[place].name);
        AddColor(label, false);
        if (!m_components[place].isAssembly)
        {
            ReadPart(label);
            return;
        }
        ++*m_facts.assemblies;
        TDF_LabelSequence placements;
        XCAFDoc_ShapeTool::GetComponents(label, placements, false);
        for (TDF_Label const& placement : placements)
        {
            TDF_Label target;
            if (!XCAFDoc_ShapeTool::GetReferredShape(placement, target))
                continue;
            ++*m_facts.instances;
            std::size_t const met = Meet(target);
            m_components[place].targets.push_back(met);
            UTF8String const name = NameOfLabel(placement);
            AddName(name.IsEmpty() ? NameOfLabel(target) : name);
            AddColor(placement, false);
            AddColorsOfUsages(placement);
        }
    }

    void ReadPart(TDF_Label const& label)
    {
        ++*m_facts.parts;
        TDF_LabelSequence labels;
        XCAFDoc_ShapeTool::GetSubShapes(label, labels);
        for (TDF_Label const& sub : labels)
        {
            TopoDS_Shape const shape = XCAFDoc_ShapeTool::GetShape(sub);
            if (!shape.IsNull())
                AddColor(sub, shape.ShapeType() == TopAbs_EDGE || shape.ShapeType() == TopAbs_WIRE);
        }
        TopoDS_Shape const shape = XCAFDoc_ShapeTool::GetShape(label);
        if (shape.IsNull() || !(m_deflection > 0.0))
            return;
        IMeshTools_Parameters parameters;
        parameters.Deflection = m_deflection;
        parameters.Angle = kAngularDeflection;
        parameters.InParallel = true;
        BRepMesh_IncrementalMesh(shape, parameters);
    }

    // Of occurrences further down: chains of usages from a placement, of which the last that has a colour counts.
    void AddColorsOfUsages(TDF_Label const& placement)
    {
        struct Usage
        {
            TDF_Label label;
            std::size_t level;
            std::optional<std::string> color;
        };
        TDF_AttributeSequence attributes;
        XCAFDoc_ShapeTool::GetAllComponentSHUO(placement, attributes);
        std::vector<Usage> work;
        for (Handle(TDF_Attribute) const& attribute : attributes)
        {
            TDF_LabelSequence upper;
            // A usage within a longer one is met on the way down from that.
            if (!XCAFDoc_ShapeTool::GetSHUOUpperUsage(attribute->Label(), upper) || upper.IsEmpty())
                work.push_back({attribute->Label(), 1, {}});
        }
        while (!work.empty())
        {
            Usage usage = std::move(work.back());
            work.pop_back();
            if (auto color = ColorOf(usage.label, false))
                usage.color = std::move(color);
            TDF_LabelSequence next;
            XCAFDoc_ShapeTool::GetSHUONextUsage(usage.label, next);
            if (next.IsEmpty() && usage.color)
                m_facts.colors->insert(*usage.color);
            for (TDF_Label const& label : next)
                if (usage.level < kMostLevels && XCAFDoc_ShapeTool::IsReference(label.Father()))
                    work.push_back({label, usage.level + 1, usage.color});
        }
    }

    // The colour that a label states itself: its material's or its own. For a curve the colour of curves comes first,
    // and for all else that of surfaces.
    std::optional<std::string> ColorOf(TDF_Label const& label, bool isCurve) const
    {
        Quantity_ColorRGBA color;
        TDF_Label material;
        if (XCAFDoc_VisMaterialTool::GetShapeMaterial(label, material))
        {
            Handle(XCAFDoc_VisMaterial) content;
            if (!material.FindAttribute(XCAFDoc_VisMaterial::GetID(), content))
                return {};
            color = content->BaseColor();
        }
        else if (!m_colorTool->GetColor(label, isCurve ? XCAFDoc_ColorCurv : XCAFDoc_ColorSurf, color) &&
                 !m_colorTool->GetColor(label, XCAFDoc_ColorGen, color) &&
                 !m_colorTool->GetColor(label, isCurve ? XCAFDoc_ColorSurf : XCAFDoc_ColorCurv, color))
            return {};
        // Open CASCADE keeps colours linear.
        double red = 0.0;
        double green = 0.0;
        double blue = 0.0;
        color.GetRGB().Values(red, green, blue, Quantity_TOC_sRGB);
        return ColorText(red, green, blue, static_cast<double>(color.Alpha()));
    }

    void AddColor(TDF_Label const& label, bool isCurve)
    {
        if (auto color = ColorOf(label, isCurve))
            m_facts.colors->insert(std::move(*color));
    }

    // Counts a component when all that place it have been counted.
    void CountOccurrences(std::vector<double> counts)
    {
        counts.resize(m_components.size(), 0.0);
        std::vector<std::size_t> users(m_components.size(), 0);
        for (Component const& component : m_components)
            for (std::size_t const target : component.targets)
                ++users[target];
        std::vector<std::size_t> ready;
        for (std::size_t i = 0; i < users.size(); ++i)
            if (users[i] == 0)
                ready.push_back(i);
        double occurrences = 0.0;
        while (!ready.empty())
        {
            std::size_t const place = ready.back();
            ready.pop_back();
            occurrences += m_components[place].isAssembly ? 0.0 : counts[place];
            for (std::size_t const target : m_components[place].targets)
            {
                counts[target] += counts[place];
                if (--users[target] == 0)
                    ready.push_back(target);
            }
        }
        m_facts.occurrences = static_cast<unsigned long long>(occurrences);
    }

    void AddName(UTF8String const& name)
    {
        if (!name.IsEmpty())
            m_facts.names->insert(std::string(name.View()));
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
    Handle(XCAFDoc_ColorTool) m_colorTool;
    std::vector<Component> m_components;
    NCollection_DataMap<TDF_Label, std::size_t, TDF_LabelMapHasher> m_places;
    double m_deflection;
    double m_millimetres;
    ModelFacts m_facts;
};

}  // namespace

ModelFacts FactsOfDocument(ModelDocument const& model, double deflection)
{
    return DocumentReader(model, deflection).Read();
}

}  // namespace KVR
