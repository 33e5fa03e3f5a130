#include "exchange/certify/step/StepNotes.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <optional>
#include <set>

#include "exchange/certify/FactTexts.h"

namespace KVR::Certification
{

namespace
{

using Id = Part21Model::Id;

constexpr char const* kDimensions[] = {"DIMENSIONAL_SIZE",
                                       "DIMENSIONAL_SIZE_WITH_PATH",
                                       "DIMENSIONAL_SIZE_WITH_DATUM_FEATURE",
                                       "ANGULAR_SIZE",
                                       "DIMENSIONAL_LOCATION",
                                       "DIMENSIONAL_LOCATION_WITH_PATH",
                                       "DIRECTED_DIMENSIONAL_LOCATION",
                                       "ANGULAR_LOCATION"};
constexpr char const* kTolerances[] = {"angularity",       "circular runout", "coaxiality",   "concentricity",
                                       "cylindricity",     "flatness",        "line profile", "parallelism",
                                       "perpendicularity", "position",        "roundness",    "straightness",
                                       "surface profile",  "symmetry",        "total runout"};

class NoteReader
{
public:
    NoteReader(Part21Model const& model, FactProducts const& products, ModelFacts& facts)
        : m_model(model), m_products(products), m_facts(facts)
    {
    }

    void Read()
    {
        for (char const* const table :
             {kTable_Units, kTable_Views, kTable_ViewMembers, kTable_Notes, kTable_NoteValues, kTable_Properties})
            m_facts.tables[table];
        ReadUnits();
        ReadViews();
        ReadViewMembers();
        ReadDimensions();
        ReadTolerances();
        for (Id const id : m_model.Of("DATUM"))
            m_facts.tables[kTable_Notes]["datum " + m_model.Parameter(id, 4, "DATUM").text].count = 1.0;
        ReadProperties();
    }

private:
    void ReadUnits()
    {
        for (auto const& [id, product] : m_products.All())
            for (Id const representation : product.representations)
                if (double const length = m_products.MillimetresOf(representation); length > 0.0)
                    m_facts.tables[kTable_Units][UnitName(length)].count = 1.0;
    }

    void ReadViews()
    {
        Bulk all;
        for (ModelFacts::Occurrence const& occurrence : m_facts.occurrences)
            all.Add(occurrence.bodies);
        double millimetres = 1.0;
        for (Id const id : m_products.Order())
            for (Id const representation : m_products.All().at(id).representations)
                if (double const length = m_products.MillimetresOf(representation); length > 0.0)
                    millimetres = length;
        for (char const* const type : {"CAMERA_MODEL_D3", "CAMERA_MODEL_D3_MULTI_CLIPPING"})
            for (Id const id : m_model.Of(type))
            {
                auto const parameters = m_model.Parameters(id);
                if (parameters.size() < 3)
                    continue;
                FactPlace const place = m_products.PlacementOf(parameters[1].reference, millimetres);
                Id const point = m_model.Parameter(parameters[2].reference, 1).reference;
                FactPoint const eye = place.Of(m_products.PointOf(point, millimetres));
                FactPoint direction = place.OfDirection({0, 0, -1});
                double toPart = 0.0;
                for (std::size_t i = 0; i < 3 && all.HasBox(); ++i)
                    toPart += direction[i] * ((all.low[i] + all.high[i]) / 2.0 - eye[i]);
                if (toPart < 0.0)
                    direction = place.OfDirection({0, 0, 1});
                AddView(m_facts, parameters[0].text, eye, direction);
            }
    }

    // The notes of the drawing that a camera belongs to.
    void ReadViewMembers()
    {
        for (Id const id : m_model.Of("DRAUGHTING_MODEL"))
        {
            bool const isPart = m_model.Is(id, "REPRESENTATION");
            std::string camera;
            bool hasCamera = false;
            double notes = 0.0;
            for (Id const item : m_model.Parameter(id, 1, isPart ? "REPRESENTATION" : "").References())
            {
                Id const map = m_model.Is(item, "MAPPED_ITEM") ? m_model.Parameter(item, 1).reference : 0;
                Id const origin = map == 0 ? item : m_model.Parameter(map, 0).reference;
                if (m_model.Is(origin, "CAMERA_MODEL_D3") || m_model.Is(origin, "CAMERA_MODEL_D3_MULTI_CLIPPING"))
                {
                    camera = m_model.Parameter(origin, 0).text;
                    hasCamera = true;
                }
                for (std::string_view const type : m_model.TypesOf(item))
                    notes += type == "DRAUGHTING_CALLOUT" || type == "ANNOTATION_CURVE_OCCURRENCE" ||
                                     type == "TESSELLATED_ANNOTATION_OCCURRENCE"
                                 ? 1.0
                                 : 0.0;
            }
            if (hasCamera && notes > 0.0)
                m_facts.tables[kTable_ViewMembers][camera].count = 1.0;
        }
    }

    // A length in millimetres, an angle in degrees, all else as it is; nothing for an entity without a measure.
    std::optional<double> ValueOf(Id measure) const
    {
        bool const isPart = m_model.Is(measure, "MEASURE_WITH_UNIT");
        auto const parameters = m_model.Parameters(measure, isPart ? "MEASURE_WITH_UNIT" : "");
        for (std::size_t i = 0; i + 1 < parameters.size(); ++i)
            if (parameters[i].kind == Part21Parameter::Kind::kTyped ||
                parameters[i].kind == Part21Parameter::Kind::kNumber)
            {
                Id const unit = parameters[i + 1].reference;
                double const length = StepMillimetresOfUnit(m_model, unit);
                double factor = length > 0.0 ? length : 1.0;
                if (m_model.Is(unit, "PLANE_ANGLE_UNIT") && m_model.Is(unit, "SI_UNIT"))
                    factor = 180.0 / std::numbers::pi;
                return parameters[i].Number() * factor;
            }
        return {};
    }

    std::string NameOf(Id item) const
    {
        return m_model.Parameter(item, 0, m_model.Is(item, "REPRESENTATION_ITEM") ? "REPRESENTATION_ITEM" : "").text;
    }

    void ReadDimensions()
    {
        std::unordered_map<Id, std::vector<Id>> items;
        for (Id const id : m_model.Of("DIMENSIONAL_CHARACTERISTIC_REPRESENTATION"))
            for (Id const item : m_model.Parameter(m_model.Parameter(id, 1).reference, 1).References())
                items[m_model.Parameter(id, 0).reference].push_back(item);
        for (char const* const kind : kDimensions)
            for (Id const id : m_model.Of(kind))
            {
                std::string_view const name(kind);
                bool const isAngle = name.substr(0, 7) == "ANGULAR";
                bool const isSize = name.find("SIZE") != std::string_view::npos;
                std::string type = isAngle ? "angle" : m_model.Parameter(id, isSize ? 1 : 0, kind).text;
                std::transform(type.begin(), type.end(), type.begin(),
                               [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
                std::string const note = type.empty() ? "dimension" : "dimension " + type;
                m_facts.Add(kTable_Notes, note);
                for (Id const item : items[id])
                    if (std::string const role = NameOf(item);
                        role.find("limit") == std::string::npos && role.find("range") == std::string::npos)
                        if (auto const value = ValueOf(item))
                        {
                            m_facts.Add(kTable_NoteValues, note + ' ' + NumberText(*value));
                            break;
                        }
            }
    }

    void ReadTolerances()
    {
        for (char const* const name : kTolerances)
        {
            std::string type = std::string(name) + "_TOLERANCE";
            std::transform(type.begin(), type.end(), type.begin(),
                           [](char c) {
                               return c == ' ' ? '_' : c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
                           });
            for (Id const id : m_model.Of(type))
            {
                std::string const note = std::string("tolerance ") + name;
                m_facts.Add(kTable_Notes, note);
                bool const isPart = m_model.Is(id, "GEOMETRIC_TOLERANCE");
                if (auto const value = ValueOf(m_model.Parameter(id, 2, isPart ? "GEOMETRIC_TOLERANCE" : "").reference))
                    m_facts.Add(kTable_NoteValues, note + ' ' + NumberText(*value));
            }
        }
    }

    // The component that a property definition speaks of; 0 for another thing.
    Id ComponentOf(Id definition, std::string const& property) const
    {
        // What is measured of a part of a shape is measured of its component where that is all of it.
        if (property == "geometric validation property" && m_model.Is(definition, "SHAPE_ASPECT"))
            definition = m_model.Parameter(definition, 2, "SHAPE_ASPECT").reference;
        return m_products.All().count(definition) != 0 ? definition : m_products.ProductOfShape(definition);
    }

    void ReadProperties()
    {
        std::map<std::string, std::set<std::string>> values;
        for (Id const id : m_model.Of("PROPERTY_DEFINITION_REPRESENTATION"))
        {
            Id const property = m_model.Parameter(id, 0).reference;
            Id const component =
                ComponentOf(m_model.Parameter(property, 2).reference, m_model.Parameter(property, 0).text);
            Id const representation = m_model.Parameter(id, 1).reference;
            bool const isPart = m_model.Is(representation, "REPRESENTATION");
            if (component == 0)
                continue;
            for (Id const item : m_model.Parameter(representation, 1, isPart ? "REPRESENTATION" : "").References())
                if (std::string const value = PropertyText(item); !value.empty())
                    values[std::to_string(component)].insert(value);
        }
        for (ModelFacts::Occurrence& occurrence : m_facts.occurrences)
            occurrence.properties = values[occurrence.component];
    }

    // A density in grams for each cubic millimetre, all else as it is.
    double InUnit(double value, Id unit) const
    {
        bool isMass = false;
        double factor = 1.0;
        for (Id const element : m_model.Parameter(unit, 0, "DERIVED_UNIT").References())
        {
            Id const base = m_model.Parameter(element, 0).reference;
            double const power = m_model.Parameter(element, 1).Number();
            if (double const length = StepMillimetresOfUnit(m_model, base); length > 0.0)
                factor *= std::pow(length, power);
            else if (m_model.Is(base, "MASS_UNIT") && m_model.Is(base, "SI_UNIT"))
            {
                isMass = true;
                factor *= std::pow(m_model.Parameter(base, 0, "SI_UNIT").text == "KILO" ? 1e3 : 1.0, power);
            }
        }
        return isMass ? value * factor : value;
    }

    std::string PropertyText(Id item) const
    {
        if (m_model.Is(item, "DESCRIPTIVE_REPRESENTATION_ITEM"))
            return PropertyValueText(m_model.Parameter(item, 1, "DESCRIPTIVE_REPRESENTATION_ITEM").text);
        if (m_model.Is(item, "CARTESIAN_POINT"))
        {
            FactPoint const point = m_products.PointOf(item);
            return NumberText(point[0]) + ' ' + NumberText(point[1]) + ' ' + NumberText(point[2]);
        }
        bool const isPart = m_model.Is(item, "MEASURE_WITH_UNIT");
        auto const parameters = m_model.Parameters(item, isPart ? "MEASURE_WITH_UNIT" : "");
        for (std::size_t i = 0; i < parameters.size(); ++i)
            if (parameters[i].kind == Part21Parameter::Kind::kTyped ||
                parameters[i].kind == Part21Parameter::Kind::kNumber)
                return NumberText(
                    InUnit(parameters[i].Number(), i + 1 < parameters.size() ? parameters[i + 1].reference : 0));
        return {};
    }

    Part21Model const& m_model;
    FactProducts const& m_products;
    ModelFacts& m_facts;
};

}  // namespace

void AddStepNotes(Part21Model const& model, FactProducts const& products, ModelFacts& facts)
{
    NoteReader(model, products, facts).Read();
}

}  // namespace KVR::Certification
