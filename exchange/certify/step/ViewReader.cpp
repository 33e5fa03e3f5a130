#include "exchange/certify/step/ViewReader.h"

#include <algorithm>
#include <set>

#include "exchange/certify/FactTexts.h"

namespace KVR::Certification
{

namespace
{

using Id = Part21Model::Id;

constexpr char const* kCameras[] = {"CAMERA_MODEL_D3", "CAMERA_MODEL_D3_MULTI_CLIPPING"};
constexpr char const* kDrawings[] = {"DRAUGHTING_CALLOUT", "ANNOTATION_CURVE_OCCURRENCE",
                                     "TESSELLATED_ANNOTATION_OCCURRENCE"};
constexpr char const* kDatumFeatures[] = {"DATUM_FEATURE", "DATUM_TARGET", "PLACED_DATUM_TARGET_FEATURE"};

class ViewReader
{
public:
    ViewReader(Part21Model const& model, FactProducts const& products, StepNoteNames const& notes,
               StepDatums const& datums, ModelFacts& facts)
        : m_model(model), m_products(products), m_notes(notes), m_datumsOf(datums), m_facts(facts)
    {
        for (Id const id : products.Order())
            for (Id const representation : products.All().at(id).representations)
            {
                // A view that shows all is one that names nothing.
                if (products.All().at(id).isUsed)
                    m_nameOf[representation] = products.All().at(id).name;
                if (double const length = products.MillimetresOf(representation); length > 0.0)
                    m_millimetres = length;
            }
        for (ModelFacts::Occurrence const& occurrence : facts.occurrences)
            m_all.Add(occurrence.bodies);
    }

    void Read()
    {
        for (char const* const table : {kTable_Views, kTable_Cuts, kTable_ViewMembers})
            m_facts.tables[table];
        for (char const* const type : kCameras)
            for (Id const id : m_model.Of(type))
                ReadCamera(id);
        FindDrawn();
        for (Id const id : m_model.Of("DRAUGHTING_MODEL"))
            ReadMembers(id);
    }

private:
    bool IsOneOf(Id id, auto const& types) const
    {
        for (char const* const type : types)
            if (m_model.Is(id, type))
                return true;
        return false;
    }

    void ReadCamera(Id id)
    {
        auto const parameters = m_model.Parameters(id);
        if (parameters.size() < 3)
            return;
        FactPlace const place = m_products.PlacementOf(parameters[1].reference, m_millimetres);
        Id const point = m_model.Parameter(parameters[2].reference, 1).reference;
        FactPoint const eye = place.Of(m_products.PointOf(point, m_millimetres));
        FactPoint direction = place.OfDirection({0, 0, -1});
        double toPart = 0.0;
        for (std::size_t i = 0; i < 3 && m_all.HasBox(); ++i)
            toPart += direction[i] * ((m_all.low[i] + m_all.high[i]) / 2.0 - eye[i]);
        if (toPart < 0.0)
            direction = place.OfDirection({0, 0, 1});
        AddView(m_facts, parameters[0].text, eye, direction, place.OfDirection({0, 1, 0}));
        if (parameters.size() > 3)
            for (Id const plane : parameters[3].References())
                if (m_model.Is(plane, "PLANE"))
                {
                    FactPlace const there =
                        m_products.PlacementOf(m_model.Parameter(plane, 1).reference, m_millimetres);
                    AddCut(m_facts, parameters[0].text, there.Of({}), there.OfDirection({0, 0, 1}));
                }
    }

    // What each drawing stands for.
    void FindDrawn()
    {
        StepNoteNames names = m_notes;
        std::vector<Id> relations = m_model.Of("SHAPE_ASPECT_RELATIONSHIP");
        auto const& targets = m_model.Of("FEATURE_FOR_DATUM_TARGET_RELATIONSHIP");
        relations.insert(relations.end(), targets.begin(), targets.end());
        for (Id const id : relations)
        {
            Id const feature = m_model.Parameter(id, 2).reference;
            if (auto const datum = m_notes.find(m_model.Parameter(id, 3).reference);
                datum != m_notes.end() && IsOneOf(feature, kDatumFeatures))
                names[feature] = datum->second;
        }
        for (Id const id : m_model.Of("DRAUGHTING_MODEL_ITEM_ASSOCIATION"))
        {
            auto const parameters = m_model.Parameters(id);
            if (parameters.size() < 5)
                continue;
            if (std::string const text = PropertyValueText(parameters[1].text); !text.empty())
                m_facts.tables[kTable_NoteTexts][text].count = 1.0;
            auto const meant = names.find(parameters[2].reference);
            auto const datums = m_datumsOf.find(parameters[2].reference);
            for (Id const drawing : parameters[4].References())
            {
                if (meant != names.end())
                    m_drawn[drawing].insert(meant->second);
                if (datums != m_datumsOf.end())
                    m_datumsDrawn[drawing].insert(datums->second.begin(), datums->second.end());
            }
        }
    }

    void ReadMembers(Id model)
    {
        bool const isPart = m_model.Is(model, "REPRESENTATION");
        std::string camera;
        bool hasCamera = false;
        ModelFacts::Table members;
        double tessellated = 0.0;
        for (Id const item : m_model.Parameter(model, 1, isPart ? "REPRESENTATION" : "").References())
        {
            Id const map = m_model.Is(item, "MAPPED_ITEM") ? m_model.Parameter(item, 1, "MAPPED_ITEM").reference : 0;
            Id const origin = map == 0 ? item : m_model.Parameter(map, 0).reference;
            if (IsOneOf(origin, kCameras))
            {
                camera = m_model.Parameter(origin, 0).text;
                hasCamera = true;
            }
            if (auto const product = m_nameOf.find(map == 0 ? item : m_model.Parameter(map, 1).reference);
                product != m_nameOf.end())
                members["component " + product->second].count = 1.0;
            if (IsOneOf(item, kDrawings))
                AddDrawing(item, members, tessellated);
        }
        if (!hasCamera)
            return;
        for (auto const& [member, entry] : members)
            m_facts.tables[kTable_ViewMembers][ModelFacts::Joined(camera, member)].Add(entry);
        if (tessellated > 0.0)
            m_facts.Add(kTable_Drawings, camera, {}, tessellated);
    }

    void AddDrawing(Id item, ModelFacts::Table& members, double& tessellated) const
    {
        auto const drawn = m_drawn.find(item);
        bool const isMeant = drawn != m_drawn.end();
        if (isMeant)
            for (std::string const& note : drawn->second)
                members[note].count = 1.0;
        // Those that it refers to may be there.
        if (auto const datums = m_datumsDrawn.find(item); datums != m_datumsDrawn.end())
            for (std::string const& datum : datums->second)
                members[datum];
        bool const isCallout = m_model.Is(item, "DRAUGHTING_CALLOUT");
        auto const parts = isCallout ? m_model.Parameter(item, 1).References() : std::vector<Id>{item};
        bool const isTessellated =
            std::all_of(parts.begin(), parts.end(),
                        [this](Id part) { return m_model.Is(part, "TESSELLATED_ANNOTATION_OCCURRENCE"); });
        bool const isPart = m_model.Is(item, "REPRESENTATION_ITEM");
        std::string const name = m_model.Parameter(item, 0, isPart ? "REPRESENTATION_ITEM" : "").text;
        if (isTessellated)
            tessellated += isMeant || !isCallout ? 0.0 : 1.0;
        else if (!name.empty())
            // That of a note may stand by itself, or not.
            members["drawing " + name].count = isMeant || !isCallout ? 0.0 : 1.0;
    }

    Part21Model const& m_model;
    FactProducts const& m_products;
    StepNoteNames const& m_notes;
    StepDatums const& m_datumsOf;
    ModelFacts& m_facts;
    double m_millimetres = 1.0;
    Bulk m_all;
    /// Products by their representations.
    std::unordered_map<Id, std::string> m_nameOf;
    std::unordered_map<Id, std::set<std::string>> m_drawn;
    StepDatums m_datumsDrawn;
};

}  // namespace

void AddStepViews(Part21Model const& model, FactProducts const& products, StepNoteNames const& notes,
                  StepDatums const& datums, ModelFacts& facts)
{
    ViewReader(model, products, notes, datums, facts).Read();
}

}  // namespace KVR::Certification
