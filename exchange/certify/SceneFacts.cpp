#include <BRepGProp.hxx>
#include <BRepTools.hxx>
#include <GProp_GProps.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Shape.hxx>
#include <cmath>
#include <map>

#include "exchange/certify/FactReaders.h"
#include "framework/api/kvr_api.h"
#include "framework/kernel/entity.h"
#include "scene/OccurrenceWalk.h"
#include "scene/Scene.h"
#include "scene/SceneMesh.h"

namespace KVR
{

namespace
{

using Point = std::array<double, 3>;

Point Moved(Matrix const& matrix, Point const& p)
{
    Point moved{};
    for (std::size_t row = 0; row < 3; ++row)
        moved[row] =
            matrix[4 * row] * p[0] + matrix[4 * row + 1] * p[1] + matrix[4 * row + 2] * p[2] + matrix[4 * row + 3];
    return moved;
}

// What is known of a body in its own coordinates.
struct BodyFacts
{
    unsigned long long solids = 0;
    unsigned long long faces = 0;
    unsigned long long edges = 0;
    double volume = 0.0;
    double area = 0.0;
    Point volumeCentre{};
    Point areaCentre{};

    explicit BodyFacts(TopoDS_Shape const& shape)
    {
        TopTools_IndexedMapOfShape parts;
        TopExp::MapShapes(shape, TopAbs_EDGE, parts);
        edges = static_cast<unsigned long long>(parts.Extent());
        parts.Clear();
        TopExp::MapShapes(shape, TopAbs_FACE, parts);
        faces = static_cast<unsigned long long>(parts.Extent());
        for (int i = 1; i <= parts.Extent(); ++i)
        {
            GProp_GProps properties;
            BRepGProp::SurfaceProperties(parts(i), properties);
            Add(properties, area, areaCentre);
        }
        parts.Clear();
        TopExp::MapShapes(shape, TopAbs_SOLID, parts);
        solids = static_cast<unsigned long long>(parts.Extent());
        for (int i = 1; i <= parts.Extent(); ++i)
        {
            GProp_GProps properties;
            BRepGProp::VolumeProperties(parts(i), properties);
            Add(properties, volume, volumeCentre);
        }
        Divide(area, areaCentre);
        Divide(volume, volumeCentre);
    }

private:
    static void Add(GProp_GProps const& properties, double& sum, Point& moment)
    {
        sum += properties.Mass();
        for (int axis = 0; axis < 3; ++axis)
            moment[static_cast<std::size_t>(axis)] += properties.Mass() * properties.CentreOfMass().Coord(axis + 1);
    }
    static void Divide(double sum, Point& moment)
    {
        for (double& x : moment)
            x = sum != 0.0 ? x / sum : 0.0;
    }
};

class SceneReader
{
public:
    SceneReader(IProducer& producer, Scene const& scene) : m_producer(producer), m_scene(scene) {}

    ModelFacts Read()
    {
        m_facts.assemblies = m_facts.parts = m_facts.instances = m_facts.occurrences = m_facts.solids = m_facts.faces =
            m_facts.edges = m_facts.triangles = m_facts.annotations = m_facts.drawings = 0;
        m_facts.names.emplace();
        m_facts.colors.emplace();
        m_facts.drawnColors.emplace();
        m_facts.layers.emplace();
        m_facts.layerMembers = 0;
        for (SceneComponent const& component : m_scene.Components())
            ReadComponent(component);
        for (SceneLayer const& layer : m_scene.Layers())
        {
            m_facts.layers->insert(std::string(layer.label));
            *m_facts.layerMembers += layer.items.size();
        }
        m_facts.views = m_scene.Views().size();
        Walk();
        return std::move(m_facts);
    }

private:
    // Whether a callout has an element of its own.
    bool IsDrawn(IObject const& object)
    {
        auto const& callout = dynamic_cast<IAnnotationCallout const&>(object);
        for (unsigned long long i = 0; i < callout.ChildCount(); ++i)
            if (dynamic_cast<IAnnotationCalloutElement const*>(m_producer.Load(callout.ChildAt(i).Id())))
                return true;
        return false;
    }

    void AddName(std::string_view name)
    {
        if (!name.empty())
            m_facts.names->insert(std::string(name));
    }
    void AddStyle(SceneStyle const* style)
    {
        if (style && style->diffuse)
            m_facts.colors->insert(
                ColorText((*style->diffuse)[0], (*style->diffuse)[1], (*style->diffuse)[2], style->opacity));
    }
    void AddStyles(SceneOverride const& top)
    {
        std::vector<SceneOverride const*> waiting{&top};
        while (!waiting.empty())
        {
            SceneOverride const& entry = *waiting.back();
            waiting.pop_back();
            if (entry.style)
                AddStyle(*entry.style);
            for (auto const& below : entry.below)
                waiting.push_back(below.second);
        }
    }

    void ReadComponent(SceneComponent const& component)
    {
        if (component.kind == SceneComponent::Kind::kAssembly)
            ++*m_facts.assemblies;
        if (component.kind == SceneComponent::Kind::kPart)
            ++*m_facts.parts;
        if (component.kind != SceneComponent::Kind::kFile)
            AddName(component.label);
        AddStyle(component.style);
        if (component.overrides)
            AddStyles(*component.overrides);
        for (ScenePlacement const& placement : component.placements)
        {
            if (!placement.IsEntered())
                continue;
            AddStyle(placement.style);
            if (placement.id.empty())
                continue;
            ++*m_facts.instances;
            AddName(placement.label);
        }
        for (SceneGeometry const& geometry : component.geometry)
        {
            AddStyle(geometry.style);
            if (geometry.className == "IAnnotationCallout")
            {
                ++*m_facts.annotations;
                *m_facts.drawings += IsDrawn(*geometry.object) ? 1 : 0;
            }
            if (geometry.body)
                if (SubEntityToStylesMap const* const map = geometry.body->StylesMap())
                    for (unsigned long long i = 0; i < map->Size(); ++i)
                        if (!map->StylesAt(i).IsEmpty())
                            AddStyle(m_scene.StyleOf(map->StylesAt(i).At(0).View()));
            IdSetSet materials;
            if (geometry.mesh && geometry.mesh->PolygonMaterials(materials) == kIsValueSpecified_Yes)
                for (unsigned long long i = 0; i < materials.Size(); ++i)
                    if (!materials.At(i).IsEmpty())
                        AddStyle(m_scene.StyleOf(materials.At(i).At(0).View()));
        }
    }

    // Places are in millimetres.
    void Walk()
    {
        Matrix const toMillimetres = Scaling(m_scene.MetresPerUnit() * 1e3);
        for (OccurrenceWalk walk(m_scene); walk.Next();)
        {
            if (walk.Component().kind == SceneComponent::Kind::kPart)
                ++*m_facts.occurrences;
            Matrix const place = Product(toMillimetres, walk.Place());
            for (SceneGeometry const& geometry : walk.Component().geometry)
            {
                Matrix const all = Product(place, walk.State().PlaceOf(geometry, walk.Component()));
                if (geometry.mesh)
                {
                    AddMesh(geometry, all);
                    if (walk.State().IsVisible(geometry))
                        AddDrawnColors(geometry, walk.State());
                }
                else if (geometry.body && geometry.body->Body())
                    AddBody(geometry, all);
            }
        }
    }

    void AddDrawnColors(SceneGeometry const& geometry, OccurrenceState const& state)
    {
        auto known = m_faceStyles.find(geometry.object);
        if (known == m_faceStyles.end())
        {
            std::set<std::string> styles;
            for (SceneMesh::Run const& run : SceneMesh::Of(*geometry.mesh).runs)
                styles.insert(run.style);
            known = m_faceStyles.emplace(geometry.object, std::move(styles)).first;
        }
        for (std::string const& style : known->second)
        {
            bool const isOwn = !style.empty() && state.KeepsFaceStyles(geometry);
            SceneStyle const* const seen = isOwn ? m_scene.StyleOf(style) : state.StyleOf(geometry);
            if (seen && seen->diffuse)
                m_facts.drawnColors->insert(
                    ColorText((*seen->diffuse)[0], (*seen->diffuse)[1], (*seen->diffuse)[2], seen->opacity));
        }
    }

    void AddMesh(SceneGeometry const& geometry, Matrix const& place)
    {
        IPolygonMesh& mesh = *geometry.mesh;
        std::vector<Point> points;
        for (unsigned long i = 0; i < mesh.VertexCount(); ++i)
        {
            PolygonVertex const vertex = mesh.VertexAt(i);
            points.push_back(Moved(place, {vertex.x, vertex.y, vertex.z}));
            m_facts.AddPoint(points.back()[0], points.back()[1], points.back()[2]);
        }
        Measures& measures = m_facts.mesh ? *m_facts.mesh : m_facts.mesh.emplace();
        for (unsigned long i = 0; i < mesh.PolygonCount(); ++i)
        {
            EditablePolygon const* polygon = nullptr;
            if (mesh.PolygonAt(i, polygon) != kIsValueSpecified_Yes || !polygon)
                continue;
            auto const corners = polygon->VertexIndices();
            for (int corner = 2; corner < corners.count; ++corner)
            {
                AddTriangle(measures, points.at(static_cast<std::size_t>(corners.data[0])),
                            points.at(static_cast<std::size_t>(corners.data[corner - 1])),
                            points.at(static_cast<std::size_t>(corners.data[corner])));
                ++*m_facts.triangles;
            }
        }
    }

    void AddBody(SceneGeometry const& geometry, Matrix const& place)
    {
        auto known = m_bodies.find(geometry.object);
        if (known == m_bodies.end())
            known = m_bodies.emplace(geometry.object, BodyFacts(geometry.body->Body()->Shape())).first;
        BodyFacts const& body = known->second;
        *m_facts.solids += body.solids;
        *m_facts.faces += body.faces;
        *m_facts.edges += body.edges;
        // A scale along all axes alike.
        double const scale = std::cbrt(std::abs(place[0] * (place[5] * place[10] - place[6] * place[9]) -
                                                place[1] * (place[4] * place[10] - place[6] * place[8]) +
                                                place[2] * (place[4] * place[9] - place[5] * place[8])));
        double const volume = body.volume * scale * scale * scale;
        double const area = body.area * scale * scale;
        Point const volumeCentre = Moved(place, body.volumeCentre);
        Point const areaCentre = Moved(place, body.areaCentre);
        Measures& measures = m_facts.bodies ? *m_facts.bodies : m_facts.bodies.emplace();
        measures.volume += volume;
        measures.area += area;
        for (std::size_t axis = 0; axis < 3; ++axis)
        {
            measures.volumeMoment[axis] += volume * volumeCentre[axis];
            measures.areaMoment[axis] += area * areaCentre[axis];
        }
    }

    IProducer& m_producer;
    Scene const& m_scene;
    ModelFacts m_facts;
    std::map<IObject const*, BodyFacts> m_bodies;
    std::map<IObject const*, std::set<std::string>> m_faceStyles;
};

}  // namespace

ModelFacts FactsOfScene(IProducer& producer, UTF8String const& rootId)
{
    Scene const scene(producer, rootId, {});
    return SceneReader(producer, scene).Read();
}

}  // namespace KVR
