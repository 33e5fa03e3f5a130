#include "exchange/model/StepTolerances.h"

#include <fmt/format.h>
#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "exchange/model/Part21Values.h"

namespace KVR
{

namespace
{

using Number = Part21File::Number;
using Values = Part21File::Values;

constexpr std::string_view kTolerance = "GEOMETRIC_TOLERANCE";

// The types of tolerances, by their entities.
constexpr std::pair<std::string_view, std::string_view> kToleranceTypes[] = {
    {"ANGULARITY_TOLERANCE", "angularity"},
    {"CIRCULAR_RUNOUT_TOLERANCE", "circular run-out"},
    {"ROUNDNESS_TOLERANCE", "circularity"},
    {"COAXIALITY_TOLERANCE", "coaxiality"},
    {"CONCENTRICITY_TOLERANCE", "concentricity"},
    {"CYLINDRICITY_TOLERANCE", "cylindricity"},
    {"FLATNESS_TOLERANCE", "flatness"},
    {"PARALLELISM_TOLERANCE", "parallelism"},
    {"PERPENDICULARITY_TOLERANCE", "perpendicularity"},
    {"POSITION_TOLERANCE", "position"},
    {"LINE_PROFILE_TOLERANCE", "profile of line"},
    {"SURFACE_PROFILE_TOLERANCE", "profile of surface"},
    {"STRAIGHTNESS_TOLERANCE", "straightness"},
    {"SYMMETRY_TOLERANCE", "symmetry"},
    {"TOTAL_RUNOUT_TOLERANCE", "total run-out"},
};

constexpr std::string_view kDimensions[] = {"DIMENSIONAL_SIZE",
                                            "DIMENSIONAL_LOCATION",
                                            "ANGULAR_SIZE",
                                            "ANGULAR_LOCATION",
                                            "DIMENSIONAL_SIZE_WITH_PATH",
                                            "DIMENSIONAL_LOCATION_WITH_PATH",
                                            "DIRECTED_DIMENSIONAL_LOCATION",
                                            "DIMENSIONAL_SIZE_WITH_DATUM_FEATURE"};

// MAXIMUM_MATERIAL_REQUIREMENT as "maximum material requirement".
std::string Words(std::string word)
{
    for (char& c : word)
        c = c == '_' ? ' ' : c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return word;
}

constexpr std::string_view kItem = "REPRESENTATION_ITEM";

class ToleranceReader
{
public:
    ToleranceReader(Part21File const& file, double metresPerUnit, StepTolerances& result)
        : m_file(file), m_metresPerUnit(metresPerUnit), m_result(result)
    {
    }

    void Read()
    {
        for (Part21File::Entity const& entity : m_file.Entities())
            Relate(entity);
        for (Part21File::Entity const& entity : m_file.Entities())
        {
            std::string const& type = m_file.TypeOf(entity);
            if (type.find("TOLERANCE") != std::string::npos && type.find("ZONE") == std::string::npos)
                ReadTolerance(entity);
            else if (std::any_of(std::begin(kDimensions), std::end(kDimensions),
                                 [&](std::string_view dimension) { return m_file.Is(entity, dimension); }))
                ReadDimension(entity);
            else if (m_file.Is(entity, "DATUM_TARGET") || m_file.Is(entity, "PLACED_DATUM_TARGET_FEATURE"))
                ReadTarget(entity);
        }
    }

private:
    Values ParametersOf(Number number) const
    {
        Part21File::Entity const* const entity = m_file.Find(number);
        return entity ? m_file.ParametersOf(*entity, m_file.TypeOf(*entity)) : Values();
    }

    // Keeps who refers to whom, for the relations that are asked backwards.
    void Relate(Part21File::Entity const& entity)
    {
        std::string const& type = m_file.TypeOf(entity);
        if (type.find("ITEM_IDENTIFIED_REPRESENTATION_USAGE") != std::string::npos ||
            type.find("GEOMETRIC_ITEM_SPECIFIC_USAGE") != std::string::npos)
        {
            Values const values = m_file.ParametersOf(entity, type);
            for (Number const item : Part21ReferencesAt(values, 4))
                m_items[Part21ReferenceAt(values, 2)].push_back(item);
        }
        else if (m_file.Is(entity, "SHAPE_ASPECT_RELATIONSHIP"))
        {
            Values const values = m_file.ParametersOf(entity, "SHAPE_ASPECT_RELATIONSHIP");
            m_members[Part21ReferenceAt(values, 2)].push_back(Part21ReferenceAt(values, 3));
        }
        else if (type == "TOLERANCE_ZONE")
            RelateZone(entity);
        else if (type == "PROJECTED_ZONE_DEFINITION")
        {
            Values const values = m_file.ParametersOf(entity, type);
            m_projections[Part21ReferenceAt(values, 0)] = Part21ReferenceAt(values, 3);
        }
        else if (type == "PLUS_MINUS_TOLERANCE")
        {
            Values const values = m_file.ParametersOf(entity, type);
            m_ranges[Part21ReferenceAt(values, 1)] = Part21ReferenceAt(values, 0);
        }
        else if (type == "DIMENSIONAL_CHARACTERISTIC_REPRESENTATION")
        {
            Values const values = m_file.ParametersOf(entity, type);
            m_dimensions[Part21ReferenceAt(values, 0)] = Part21ReferenceAt(values, 1);
        }
        else if (type == "PROPERTY_DEFINITION")
            m_properties[Part21ReferenceAt(m_file.ParametersOf(entity, type), 2)].push_back(entity.number);
        else if (type == "SHAPE_DEFINITION_REPRESENTATION" || type == "PROPERTY_DEFINITION_REPRESENTATION")
        {
            Values const values = m_file.ParametersOf(entity, type);
            m_representations[Part21ReferenceAt(values, 0)] = Part21ReferenceAt(values, 1);
        }
    }

    void RelateZone(Part21File::Entity const& entity)
    {
        Values const values = m_file.ParametersOf(entity, "TOLERANCE_ZONE");
        for (Number const tolerance : Part21ReferencesAt(values, 4))
            m_zones[tolerance].push_back(entity.number);
    }

    std::optional<double> LengthOf(Number measure) const
    {
        std::optional<Part21Measure> const found = Part21MeasureOf(m_file, measure);
        double const metres = found ? Part21UnitFactor(m_file, found->unit) : 0.0;
        if (!(metres > 0.0))
            return std::nullopt;
        return found->value * (metres / m_metresPerUnit);
    }

    // The geometry of an aspect and of all that it is made of.
    std::vector<Number> ItemsOf(Number aspect) const
    {
        std::vector<Number> items;
        std::vector<Number> work{aspect};
        std::unordered_set<Number> seen{aspect};
        while (!work.empty())
        {
            Number const current = work.back();
            work.pop_back();
            if (auto const own = m_items.find(current); own != m_items.end())
                items.insert(items.end(), own->second.begin(), own->second.end());
            if (auto const members = m_members.find(current); members != m_members.end())
                for (Number const member : members->second)
                    if (seen.insert(member).second)
                        work.push_back(member);
        }
        return items;
    }

    void ReadTolerance(Part21File::Entity const& entity)
    {
        bool const isPart = m_file.Is(entity, kTolerance);
        std::string const type(isPart ? kTolerance : std::string_view(m_file.TypeOf(entity)));
        StepTolerance tolerance;
        for (auto const& [name, word] : kToleranceTypes)
            if (m_file.Is(entity, name))
                tolerance.type = word;
        if (!isPart && tolerance.type.empty() && !type.starts_with(kTolerance))
            return;
        Values const values = m_file.ParametersOf(entity, type);
        if (values.size() < 4)
            return;
        tolerance.number = entity.number;
        tolerance.name = Part21TextAt(values, 0);
        tolerance.magnitude = LengthOf(Part21ReferenceAt(values, 2));
        tolerance.items = ItemsOf(Part21ReferenceAt(values, 3));
        ReadModifiers(entity, tolerance);
        for (Number const zone : ZonesOf(entity.number))
            ReadZone(zone, tolerance);
        // Those of a simple entity stand behind its own parameters.
        Values const systems = m_file.ParametersOf(entity, "GEOMETRIC_TOLERANCE_WITH_DATUM_REFERENCE");
        ReadFrame(systems.empty() ? Part21ReferencesAt(values, 4) : Part21ReferencesAt(systems, systems.size() - 1),
                  tolerance);
        m_result.tolerances.push_back(std::move(tolerance));
    }

    std::vector<Number> ZonesOf(Number tolerance) const
    {
        auto const found = m_zones.find(tolerance);
        return found == m_zones.end() ? std::vector<Number>() : found->second;
    }

    void ReadModifiers(Part21File::Entity const& entity, StepTolerance& tolerance) const
    {
        // In a simple entity what a type adds comes last.
        auto const last = [&](std::string_view type)
        {
            Values own = m_file.ParametersOf(entity, type);
            return own.empty() ? Part21Parameter() : own.back();
        };
        for (Part21Parameter const& word : last("GEOMETRIC_TOLERANCE_WITH_MODIFIERS").items)
            tolerance.modifiers.push_back(Words(word.text));
        if (Part21Parameter const word = last("MODIFIED_GEOMETRIC_TOLERANCE"); !word.text.empty())
            tolerance.modifiers.push_back(Words(word.text));
        tolerance.most = LengthOf(last("GEOMETRIC_TOLERANCE_WITH_MAXIMUM_TOLERANCE").reference);
        tolerance.displacement = LengthOf(last("UNEQUALLY_DISPOSED_GEOMETRIC_TOLERANCE").reference);
        tolerance.unitSize = LengthOf(last("GEOMETRIC_TOLERANCE_WITH_DEFINED_UNIT").reference);
    }

    void ReadZone(Number zone, StepTolerance& tolerance) const
    {
        tolerance.zone = Part21TextAt(ParametersOf(Part21ReferenceAt(ParametersOf(zone), 5)), 0);
        if (auto const projected = m_projections.find(zone); projected != m_projections.end())
            tolerance.projection = LengthOf(projected->second);
    }

    void ReadFrame(std::vector<Number> const& systems, StepTolerance& tolerance) const
    {
        int position = 0;
        for (Number const number : systems)
        {
            Part21File::Entity const* const system = m_file.Find(number);
            if (!system)
                continue;
            if (m_file.Is(*system, "DATUM_REFERENCE"))
            {
                Values const values = m_file.ParametersOf(*system, "DATUM_REFERENCE");
                int const place = static_cast<int>(Part21NumberAt(values, 0).value_or(position + 1));
                position = std::clamp(place, 1, 1000);
                tolerance.frame.push_back({position, LetterOf(Part21ReferenceAt(values, 1)), {}});
            }
            else if (m_file.Is(*system, "DATUM_SYSTEM"))
                for (Number const compartment : Part21ReferencesAt(ParametersOf(number), 4))
                    ReadCompartment(compartment, ++position, tolerance);
        }
    }

    void ReadCompartment(Number compartment, int position, StepTolerance& tolerance) const
    {
        Values const values = ParametersOf(compartment);
        std::vector<std::string> const modifiers = DatumModifiers(values);
        for (Number const base : Part21ReferencesAt(values, 4))
        {
            StepDatumReference reference{position, LetterOf(base), modifiers};
            // A datum that is common with others stands in an element of its own.
            if (Part21File::Entity const* const element = m_file.Find(base);
                element && m_file.Is(*element, "DATUM_REFERENCE_ELEMENT"))
            {
                Values const inner = ParametersOf(base);
                reference.letter = LetterOf(Part21ReferenceAt(inner, 4));
                for (std::string& modifier : DatumModifiers(inner))
                    reference.modifiers.push_back(std::move(modifier));
            }
            tolerance.frame.push_back(std::move(reference));
        }
    }

    std::vector<std::string> DatumModifiers(Values const& values) const
    {
        std::vector<std::string> modifiers;
        if (values.size() < 6)
            return modifiers;
        for (Part21Parameter const& modifier : values[5].items)
            if (modifier.kind == Part21Parameter::Kind::kReference)
            {
                Values const with = ParametersOf(modifier.reference);
                std::string text = with.empty() ? std::string() : Words(with[0].text);
                if (std::optional<double> const length = LengthOf(Part21ReferenceAt(with, 1)))
                    text += fmt::format(" {:.10g}", *length);
                modifiers.push_back(text);
            }
            else if (modifier.kind == Part21Parameter::Kind::kWord)
                modifiers.push_back(Words(modifier.text));
            else if (!modifier.items.empty())
                modifiers.push_back(Words(modifier.items[0].text));
        return modifiers;
    }

    std::string LetterOf(Number datum) const
    {
        Part21File::Entity const* const entity = m_file.Find(datum);
        return entity && m_file.Is(*entity, "DATUM") ? Part21TextAt(m_file.ParametersOf(*entity, "DATUM"), 4)
                                                     : std::string();
    }

    // The first of its measures that is no end of what it may be.
    std::optional<double> ValueOf(Number dimension) const
    {
        auto const representation = m_dimensions.find(dimension);
        if (representation == m_dimensions.end())
            return std::nullopt;
        for (Number const number : Part21ReferencesAt(ParametersOf(representation->second), 1))
        {
            Part21File::Entity const* const item = m_file.Find(number);
            if (!item)
                continue;
            std::string const& type = m_file.TypeOf(*item);
            std::string const role =
                Part21TextAt(m_file.ParametersOf(*item, m_file.Is(*item, kItem) ? kItem : std::string_view(type)), 0);
            if (role.find("limit") == std::string::npos && role.find("range") == std::string::npos)
                if (std::optional<double> const value = LengthOf(number))
                    return value;
        }
        return std::nullopt;
    }

    void ReadDimension(Part21File::Entity const& entity)
    {
        std::string const& type = m_file.TypeOf(entity);
        Values const values = m_file.ParametersOf(entity, type);
        // A size is (of, name); a distance is (name, description, from, to).
        bool const isSize = type.find("SIZE") != std::string::npos;
        StepTolerance dimension;
        dimension.number = entity.number;
        dimension.isDimension = true;
        dimension.name = Part21TextAt(values, isSize ? 1 : 0);
        dimension.items = ItemsOf(Part21ReferenceAt(values, isSize ? 0 : 2));
        dimension.type = type.starts_with("ANGULAR") ? "angle" : Words(dimension.name);
        dimension.value = ValueOf(entity.number);
        if (auto const range = m_ranges.find(entity.number); range != m_ranges.end())
            if (Part21File::Entity const* const fit = m_file.Find(range->second);
                fit && m_file.Is(*fit, "LIMITS_AND_FITS"))
            {
                Values const parts = m_file.ParametersOf(*fit, "LIMITS_AND_FITS");
                dimension.fit = Part21TextAt(parts, 0) + Part21TextAt(parts, 2);
                dimension.fitOf = Part21TextAt(parts, 1);
            }
        m_result.tolerances.push_back(std::move(dimension));
    }

    void ReadTarget(Part21File::Entity const& entity)
    {
        Values const values = m_file.ParametersOf(entity, m_file.TypeOf(entity));
        StepDatumTarget target;
        target.number = entity.number;
        target.type = Part21TextAt(values, 1);
        target.id = Part21TextAt(values, 4);
        if (auto const members = m_members.find(entity.number); members != m_members.end())
            for (Number const datum : members->second)
                if (std::string letter = LetterOf(datum); !letter.empty())
                    target.letter = std::move(letter);
        if (auto const properties = m_properties.find(entity.number); properties != m_properties.end())
            for (Number const property : properties->second)
                if (auto const shape = m_representations.find(property); shape != m_representations.end())
                    ReadTargetSize(shape->second, target);
        m_result.targets.push_back(std::move(target));
    }

    void ReadTargetSize(Number representation, StepDatumTarget& target) const
    {
        for (Number const number : Part21ReferencesAt(ParametersOf(representation), 1))
        {
            Part21File::Entity const* const item = m_file.Find(number);
            if (!item)
                continue;
            std::string const name = Part21TextAt(m_file.ParametersOf(*item, "REPRESENTATION_ITEM"), 0);
            if (name == "target length")
                target.length = LengthOf(number);
            else if (name == "target width")
                target.width = LengthOf(number);
            else if (name == "target diameter")
                target.diameter = LengthOf(number);
        }
    }

    Part21File const& m_file;
    double m_metresPerUnit;
    StepTolerances& m_result;
    /// By aspects: their geometry, and the aspects that they are made of or stand for.
    std::unordered_map<Number, std::vector<Number>> m_items;
    std::unordered_map<Number, std::vector<Number>> m_members;
    /// By tolerances: their zones; by zones: how far they are projected.
    std::unordered_map<Number, std::vector<Number>> m_zones;
    std::unordered_map<Number, Number> m_projections;
    /// By dimensions: what represents their values, and what they may be.
    std::unordered_map<Number, Number> m_dimensions;
    std::unordered_map<Number, Number> m_ranges;
    std::unordered_map<Number, std::vector<Number>> m_properties;
    std::unordered_map<Number, Number> m_representations;
};

}  // namespace

StepTolerances StepTolerances::Of(Part21File const& file, double metresPerUnit)
{
    StepTolerances result;
    ToleranceReader(file, metresPerUnit, result).Read();
    return result;
}

}  // namespace KVR
