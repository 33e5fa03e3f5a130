#include <TopoDS_Shape.hxx>
#include <TopoDS_TShape.hxx>
#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>

#include "exchange/certify/FactReaders.h"
#include "exchange/certify/FactTexts.h"
#include "exchange/certify/scene/SceneLooks.h"
#include "exchange/certify/scene/SceneMeshFacts.h"
#include "exchange/certify/scene/SceneNotes.h"
#include "exchange/certify/step/AddShape.h"
#include "framework/api/kvr_api.h"
#include "framework/kernel/entity.h"
#include "scene/ExtensionTypes.h"

namespace KVR::Certification
{

namespace
{

constexpr std::size_t kDeepestInstance = 1000;
constexpr std::size_t kMostOccurrences = 1'000'000;

std::string TextOf(UTF8String const& text)
{
    return std::string(text.View());
}

std::string TextOf(UTF16String const& text)
{
    return TextOf(UTF8String(text));
}

// Millimetres of what states no unit are those of what is around it.
double UnitOf(IUnit const& object, double around)
{
    UnitTypeEnum unit = kUnitType_Unknown;
    double const metres = object.LengthUnit(unit) == kIsValueSpecified_Yes ? MetresOf(unit) : 0.0;
    return metres > 0.0 ? metres * 1e3 : around;
}

FactPlace PlaceOf(Matrix3d const& matrix, double millimetres)
{
    FactPlace place;
    std::copy(matrix.Elements().begin(), matrix.Elements().end(), place.rows.begin());
    for (std::size_t const i : {3U, 7U, 11U})
        place.rows[i] *= millimetres;
    return place;
}

// A body as a shape, with the data ids of its faces and edges by what its pieces call entities.
struct KnownBody
{
    StepShape shape;
    std::vector<std::string> dataIds;

    explicit KnownBody(BODY const& body)
    {
        ShapeEntities entities;
        auto const take = [&](auto const& list, std::vector<BODY::SubId> const& ids)
        {
            for (BODY::SubId const& id : ids)
                if (id.place < list.size())
                {
                    dataIds.push_back(id.dataId);
                    entities[list[id.place]->Shape().TShape().get()] = dataIds.size();
                }
        };
        take(body.FaceList(), body.FaceDataIds());
        take(body.EdgeList(), body.EdgeDataIds());
        shape = MeasuredShape(body.Shape(), entities);
    }
};

class SceneReader
{
public:
    explicit SceneReader(IProducer& producer) : m_producer(producer), m_looks(producer) {}

    ModelFacts Read(UTF8String const& rootId)
    {
        m_facts.hasBodies = m_facts.hasMesh = true;
        for (char const* const table :
             {kTable_Colors, kTable_LineColors, kTable_DrawnColors, kTable_Layers, kTable_Hidden, kTable_Views,
              kTable_Cuts, kTable_ViewMembers, kTable_Notes, kTable_NoteValues, kTable_NoteTexts, kTable_Properties,
              kTable_Units, kTable_FaceIds, kTable_Normals})
            m_facts.tables[table];
        ReadUpVector();
        IObject* const root = m_producer.Load(rootId);
        if (auto const* const file = dynamic_cast<IFile const*>(root))
        {
            for (unsigned long long i = 0; i < file->ChildCount(); ++i)
                m_roots.insert(TextOf(file->ChildAt(i).Id()));
            ReadSets(*file);
            for (unsigned long long i = 0; i < file->ChildCount(); ++i)
                if (auto const* const component =
                        dynamic_cast<IComponent const*>(m_producer.Load(file->ChildAt(i).Id())))
                    WalkRoot(*component);
        }
        else if (auto const* const component = dynamic_cast<IComponent const*>(root))
        {
            m_roots.insert(TextOf(component->Id()));
            WalkRoot(*component);
        }
        return std::move(m_facts);
    }

private:
    using State = SceneLooks::State;

    // Facts have z up.
    void ReadUpVector()
    {
        IUniverse const* const universe = m_producer.LoadUniverse();
        ViewingData data;
        if (universe && universe->ViewingDataOf(data) == kIsValueSpecified_Yes && data.UpVector()[1] > 0.5)
            m_upright.rows = {1, 0, 0, 0, 0, 0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1};
    }

    void WalkRoot(IComponent const& component)
    {
        std::string const name = TextOf(component.Label());
        Walk(component, name, name, m_upright, State(), UnitOf(component, 1.0));
    }

    IObject* ChildOf(IComponent const& component, unsigned long long i) const
    {
        if (auto const* const assembly = dynamic_cast<IAssembly const*>(&component))
            return m_producer.Load(assembly->ChildAt(i).Id());
        auto const* const part = dynamic_cast<IPart const*>(&component);
        return part ? m_producer.Load(part->ChildAt(i).Id()) : nullptr;
    }

    // `place` leads from millimetres to millimetres.
    void Walk(IComponent const& component, std::string const& path, std::string const& name, FactPlace const& place,
              State state, double around)
    {
        if (++m_depth > kDeepestInstance || m_facts.occurrences.size() >= kMostOccurrences)
            throw std::runtime_error("its assemblies are too deep or too many");
        double const unit = UnitOf(component, around);
        SceneLooks::Enter(state, component);
        std::size_t const index = m_facts.occurrences.size();
        ModelFacts::Occurrence& occurrence = m_facts.occurrences.emplace_back();
        occurrence.path = path;
        occurrence.name = name;
        occurrence.component = TextOf(component.Id());
        occurrence.componentName = TextOf(component.Label());
        occurrence.isPart = dynamic_cast<IPart const*>(&component) != nullptr;
        occurrence.isHidden = !state.isVisible;
        UTF16String number;
        if (FileProperties const* const properties = component.FileProperties())
            if (properties->PartNumber(number) == kIsValueSpecified_Yes)
                occurrence.number = TextOf(number);
        bool const isNew = m_met.insert(occurrence.component).second;
        if (isNew)
            ReadComponent(component, unit);
        occurrence.properties = m_properties[occurrence.component];
        occurrence.units.insert(UnitName(unit));
        for (unsigned long long i = 0; i < component.ChildCount(); ++i)
        {
            IObject* const child = ChildOf(component, i);
            if (auto const* const instance = dynamic_cast<IInstance const*>(child))
                WalkInstance(*instance, path, place, state, unit);
            else if (auto* const geometry = dynamic_cast<IGeometry*>(child))
            {
                AddGeometry(m_facts.occurrences[index], *geometry, place, state, unit);
                if (auto const* const body = dynamic_cast<IBrep const*>(geometry); body && isNew)
                    AddIds(*body, unit);
            }
        }
        --m_depth;
    }

    void WalkInstance(IInstance const& instance, std::string const& path, FactPlace const& place, State const& state,
                      double unit)
    {
        auto const* const target = dynamic_cast<IComponent const*>(m_producer.Load(instance.TargetId().Id()));
        if (!target)
            return;
        std::string const id = TextOf(instance.Id());
        Matrix3d const* const own = instance.Transform();
        Matrix3d const moved = state.Of(id, &State::Said::transform).value_or(own ? *own : Matrix3d());
        std::string const label = TextOf(instance.Label());
        std::string const name = label.empty() ? TextOf(target->Label()) : label;
        Walk(*target, path + '/' + name, name, place * PlaceOf(moved, unit),
             SceneLooks::Below(state, instance, TextOf(target->Id())), unit);
    }

    // What is there once for each component.
    void ReadComponent(IComponent const& component, double unit)
    {
        ReadSets(component);
        for (unsigned long long i = 0; i < component.ChildCount(); ++i)
            if (auto* const callout = dynamic_cast<IAnnotationCallout*>(ChildOf(component, i)))
                AddSceneNote(m_facts, *callout, unit);
        std::set<std::string> const properties = ScenePropertiesOf(m_producer, component);
        m_properties[TextOf(component.Id())] = properties;
        std::string const isText = StatedText(kProperty_Text, {});
        for (std::string const& property : properties)
            if (property.starts_with(isText))
                m_facts.tables[kTable_NoteTexts][property.substr(isText.size())].count = 1.0;
    }

    void ReadSets(IAttributeSets const& owner)
    {
        IdSet const layers = owner.LayerSet();
        for (unsigned long long i = 0; i < layers.Size(); ++i)
            if (auto const* const layer = dynamic_cast<ILayer const*>(m_producer.Load(layers.At(i))))
            {
                double members = 0.0;
                IdSet const& items = layer->GeometryItems();
                for (unsigned long long item = 0; item < items.Size(); ++item)
                {
                    IObject* const member = m_producer.Load(items.At(item));
                    members += dynamic_cast<IGeometry*>(member) || dynamic_cast<IComponent*>(member) ||
                                       dynamic_cast<IInstance*>(member) || !member
                                   ? 1.0
                                   : 0.0;
                }
                m_facts.Add(kTable_Layers, TextOf(layer->Label()), {}, members);
            }
        IdSet const views = owner.ViewSet();
        for (unsigned long long i = 0; i < views.Size(); ++i)
            if (auto const* const view = dynamic_cast<IView const*>(m_producer.Load(views.At(i))))
                AddSceneView(m_facts, m_producer, *view, m_roots, m_upright);
    }

    void AddGeometry(ModelFacts::Occurrence& occurrence, IGeometry& geometry, FactPlace const& place,
                     State const& state, double around)
    {
        double const unit = UnitOf(geometry, around);
        std::string const id = TextOf(geometry.Id());
        ExtensionDataContent link;
        std::string const bodyId = geometry.ExtensionDataByTypeId(kBodyTypeId, link) == kIsValueSpecified_Yes
                                       ? TextOf(link.Data())
                                       : std::string();
        auto const said = [&]<class Value>(std::optional<Value> State::Said::*member)
        {
            std::optional<Value> own = state.Of(id, member);
            return own || bodyId.empty() ? own : state.Of(bodyId, member);
        };
        bool const isShown = state.isVisible && said(&State::Said::isVisible).value_or(geometry.IsVisible());
        Matrix3d const* const own = geometry.Transform();
        FactPlace const all = place * PlaceOf(said(&State::Said::transform).value_or(own ? *own : Matrix3d()), unit) *
                              FactPlace::Scaling(unit);
        std::optional<IdSet> imposed = state.imposed ? state.imposed : said(&State::Said::styles);
        IdSet const styles = imposed ? *imposed : geometry.Styles().IsEmpty() ? state.inherited : geometry.Styles();
        std::optional<std::string> const color = m_looks.ColorOf(styles);
        if (auto* const mesh = dynamic_cast<IPolygonMesh*>(&geometry))
            AddMesh(occurrence, *mesh, all, isShown, color, !imposed, !bodyId.empty());
        else if (auto const* const body = dynamic_cast<IBrep const*>(&geometry))
            AddBody(occurrence, *body, all, isShown, color, !imposed);
        else if (!isShown && dynamic_cast<IPoint const*>(&geometry))
            m_facts.Add(kTable_Hidden, occurrence.path);
    }

    void AddMesh(ModelFacts::Occurrence& occurrence, IPolygonMesh& mesh, FactPlace const& place, bool isShown,
                 std::optional<std::string> const& color, bool keepsOwn, bool isOfBody)
    {
        SceneMeshFacts const facts(mesh, place);
        if (!isShown)
        {
            if (!isOfBody)
                m_facts.Add(kTable_Hidden, occurrence.path);
            return;
        }
        if (facts.hiddenFaces > 0)
            m_facts.Add(kTable_Hidden, occurrence.path, {}, static_cast<double>(facts.hiddenFaces));
        occurrence.triangles += facts.triangles;
        occurrence.mesh.Add(facts.bulk);
        if (facts.hasNormals)
            m_facts.Add(kTable_Normals, occurrence.path, {facts.normalAngles});
        for (auto const& [style, area] : facts.areaOfStyle)
        {
            auto const own = style.empty() || !keepsOwn ? std::nullopt : m_looks.ColorOf(UTF8String(style));
            if (own || color)
                m_facts.Add(kTable_DrawnColors, ModelFacts::Joined(occurrence.path, own ? *own : *color), {area});
        }
    }

    KnownBody const& Known(IBrep const& brep)
    {
        auto known = m_bodies.find(&brep);
        if (known == m_bodies.end())
            known = m_bodies.emplace(&brep, KnownBody(*brep.Body())).first;
        return known->second;
    }

    void AddIds(IBrep const& brep, double unit)
    {
        DataIdToPersistentIdMap const* const ids = brep.PersistentIDsMap();
        if (!ids || !brep.Body())
            return;
        KnownBody const& body = Known(brep);
        Matrix3d const* const own = brep.Transform();
        AddFaceIds(m_facts, body.shape, PlaceOf(own ? *own : Matrix3d(), unit) * FactPlace::Scaling(unit),
                   [&](std::size_t entity)
                   {
                       UTF8String id;
                       bool const isKnown = entity != 0 && ids->PersistentId(UTF8String(body.dataIds[entity - 1]),
                                                                             id) == kIsValueSpecified_Yes;
                       return isKnown ? TextOf(id) : std::string();
                   });
    }

    void AddBody(ModelFacts::Occurrence& occurrence, IBrep const& brep, FactPlace const& place, bool isShown,
                 std::optional<std::string> const& color, bool keepsOwn)
    {
        if (!brep.Body())
            return;
        KnownBody const& body = Known(brep);
        AddShape(occurrence, body.shape, place);
        if (!isShown)
        {
            bool const hasFaces = body.shape.faces > 0;
            std::size_t const pieces = hasFaces ? std::max(1ULL, body.shape.solids) : body.shape.pieces.size();
            m_facts.Add(kTable_Hidden, occurrence.path, {}, static_cast<double>(pieces));
        }
        SubEntityToStylesMap const* const map = brep.StylesMap();
        double const scale = std::cbrt(std::abs(place.Determinant()));
        for (StepPiece const& piece : body.shape.pieces)
        {
            std::optional<std::string> own;
            IdSet styles;
            if (keepsOwn && map && piece.entity != 0 &&
                map->Styles(UTF8String(body.dataIds[piece.entity - 1]), styles) == kIsValueSpecified_Yes)
                own = m_looks.ColorOf(styles);
            if (!own)
                own = color;
            if (own)
                m_facts.Add(piece.isFace ? kTable_Colors : kTable_LineColors, ModelFacts::Joined(occurrence.path, *own),
                            {piece.isFace ? piece.bulk.area * scale * scale : piece.bulk.length * scale});
        }
    }

    IProducer& m_producer;
    SceneLooks m_looks;
    ModelFacts m_facts;
    std::set<std::string> m_met;
    std::set<std::string> m_roots;
    std::map<std::string, std::set<std::string>> m_properties;
    std::map<IBrep const*, KnownBody> m_bodies;
    FactPlace m_upright;
    std::size_t m_depth = 0;
};

}  // namespace

ModelFacts FactsOfScene(IProducer& producer, UTF8String const& rootId)
{
    return SceneReader(producer).Read(rootId);
}

}  // namespace KVR::Certification
