#include "exchange/certify/step/StepNotes.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <optional>
#include <set>

#include "exchange/certify/FactTexts.h"
#include "exchange/certify/step/ViewReader.h"

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
        for (char const* const table : {kTable_Notes, kTable_NoteValues, kTable_NoteTexts, kTable_Properties})
            m_facts.tables[table];
        ReadDimensions();
        ReadTolerances();
        for (Id const id : m_model.Of("DATUM"))
        {
            m_names[id] = "datum " + m_model.Parameter(id, 4, "DATUM").text;
            m_facts.tables[kTable_Notes][m_names[id]].count = 1.0;
        }
        ReadProperties();
        AddStepViews(m_model, m_products, m_names, m_datumsOf, m_facts);
    }

private:
    // The datums that a tolerance refers to, through its frame.
    std::set<std::string> DatumsBelow(Id id, int level) const
    {
        std::set<std::string> letters;
        constexpr int kDeepestFrame = 4;
        for (std::string_view const type : m_model.TypesOf(id))
            for (Part21Parameter const& value : m_model.Parameters(id, type))
                for (Id const below : value.References())
                    if (m_model.Is(below, "DATUM"))
                        letters.insert("datum " + m_model.Parameter(below, 4, "DATUM").text);
                    else if (level < kDeepestFrame &&
                             (m_model.Is(below, "DATUM_SYSTEM") || m_model.Is(below, "DATUM_REFERENCE") ||
                              m_model.Is(below, "DATUM_REFERENCE_COMPARTMENT") ||
                              m_model.Is(below, "DATUM_REFERENCE_ELEMENT")))
                        letters.merge(DatumsBelow(below, level + 1));
        return letters;
    }

    void AddNote(Id id, std::string const& note)
    {
        m_names[id] = note;
        m_facts.Add(kTable_Notes, note);
    }

    void AddValue(Id id, double value)
    {
        m_names[id] += ' ' + NumberText(value);
        m_facts.Add(kTable_NoteValues, m_names[id]);
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
                AddNote(id, note);
                for (Id const item : items[id])
                    if (std::string const role = NameOf(item);
                        role.find("limit") == std::string::npos && role.find("range") == std::string::npos)
                        if (auto const value = ValueOf(item))
                        {
                            AddValue(id, *value);
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
                AddNote(id, note);
                bool const isPart = m_model.Is(id, "GEOMETRIC_TOLERANCE");
                if (auto const value = ValueOf(m_model.Parameter(id, 2, isPart ? "GEOMETRIC_TOLERANCE" : "").reference))
                    AddValue(id, *value);
                m_datumsOf[id] = DatumsBelow(id, 0);
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
        std::unordered_map<Id, std::string> generals;
        for (Id const id : m_model.Of("GENERAL_PROPERTY_ASSOCIATION"))
            generals[m_model.Parameter(id, 3).reference] =
                m_model.Parameter(m_model.Parameter(id, 2).reference, 1).text;
        std::map<std::string, std::set<std::string>> values;
        for (Id const id : m_model.Of("PROPERTY_DEFINITION_REPRESENTATION"))
        {
            Id const property = m_model.Parameter(id, 0).reference;
            std::string name = m_model.Parameter(property, 0).text;
            if (name.empty())
                name = generals[property];
            Id const component = ComponentOf(m_model.Parameter(property, 2).reference, name);
            Id const representation = m_model.Parameter(id, 1).reference;
            bool const isPart = m_model.Is(representation, "REPRESENTATION");
            for (Id const item : m_model.Parameter(representation, 1, isPart ? "REPRESENTATION" : "").References())
            {
                std::string const value = PropertyText(item);
                if (name == kProperty_Text && !value.empty())
                    m_facts.tables[kTable_NoteTexts][value].count = 1.0;
                else if (component != 0)
                    AddProperty(values[std::to_string(component)], name, item, value);
            }
        }
        for (ModelFacts::Occurrence& occurrence : m_facts.occurrences)
            occurrence.properties = values[occurrence.component];
    }

    void AddProperty(std::set<std::string>& values, std::string const& property, Id item, std::string const& value)
    {
        std::string name = NameOf(item);
        auto const add = [&](std::string const& full, std::string const& text)
        {
            if (!text.empty())
                values.insert(StatedText(full, text));
        };
        // A material is the name of its item.
        if (property == "material property" && m_model.Is(item, "DESCRIPTIVE_REPRESENTATION_ITEM"))
        {
            add("material", PropertyValueText(name));
            add("material description", value);
        }
        else if (property == "material property")
            add("material density", value);
        else
        {
            if (property == "geometric validation property")
                name = name == "volume measure"         ? "volume"
                       : name == "surface area measure" ? "area"
                       : name == "centre point"         ? "centroid"
                                                        : name;
            bool const isOne = name.empty() || property.empty() || name == property;
            add(isOne ? (property.empty() ? name : property) : property + ": " + name, value);
        }
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
    StepNoteNames m_names;
    StepDatums m_datumsOf;
};

}  // namespace

void AddStepNotes(Part21Model const& model, FactProducts const& products, ModelFacts& facts)
{
    NoteReader(model, products, facts).Read();
}

}  // namespace KVR::Certification
