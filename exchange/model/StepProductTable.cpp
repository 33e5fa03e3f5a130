#include "exchange/model/StepProductTable.h"

#include <cmath>
#include <optional>

#include "exchange/model/Part21Values.h"

namespace KVR
{

namespace
{

using Number = Part21File::Number;
using Values = Part21File::Values;

constexpr char kValidation[] = "geometric validation property";

bool IsAspect(std::string_view type)
{
    return type.ends_with("SHAPE_ASPECT") || type == "DATUM_FEATURE" || type == "CENTRE_OF_SYMMETRY" ||
           type == "DATUM_TARGET" || type == "PLACED_DATUM_TARGET_FEATURE";
}
// Texts of notes, that stand with no drawing.
constexpr char kProperty_Text[] = "semantic text";

// Open CASCADE reads these, and import takes them from it.
bool IsReadElsewhere(std::string const& property, std::string const& item)
{
    return property == kValidation &&
           (item == "volume measure" || item == "surface area measure" || item == "centre point");
}

std::string Joined(std::string const& property, std::string const& item)
{
    if (item.empty() || item == property)
        return property;
    return property.empty() ? item : property + ": " + item;
}

class ProductReader
{
public:
    ProductReader(Part21File const& file, StepProductTable& result) : m_file(file), m_result(result) {}

    void Read()
    {
        for (Part21File::Entity const& entity : m_file.Entities())
            Sort(entity);
        for (Part21File::Entity const* const definition : m_definitions)
            ReadProduct(*definition);
        for (Part21File::Entity const* const usage : m_usages)
            ReadUsage(*usage);
        for (Part21File::Entity const* const category : m_categories)
            ReadCategory(*category);
        for (Part21File::Entity const* const shape : m_shapes)
            ReadShape(*shape);
        for (Part21File::Entity const* const link : m_links)
            ReadProperty(*link);
    }

private:
    using List = std::vector<Part21File::Entity const*>;

    void Sort(Part21File::Entity const& entity)
    {
        std::string const& type = m_file.TypeOf(entity);
        if (type == "PRODUCT_DEFINITION" || type == "PRODUCT_DEFINITION_WITH_ASSOCIATED_DOCUMENTS")
            m_definitions.push_back(&entity);
        else if (type == "NEXT_ASSEMBLY_USAGE_OCCURRENCE")
            m_usages.push_back(&entity);
        else if (type == "PRODUCT_RELATED_PRODUCT_CATEGORY" || type == "PRODUCT_TYPE")
            m_categories.push_back(&entity);
        else if (type == "PROPERTY_DEFINITION_REPRESENTATION")
            m_links.push_back(&entity);
        else if (type == "GENERAL_PROPERTY_ASSOCIATION")
        {
            Values const values = m_file.ParametersOf(entity, type);
            m_generals.emplace(Part21ReferenceAt(values, 3), Part21ReferenceAt(values, 2));
        }
        else if (type == "SHAPE_DEFINITION_REPRESENTATION")
            m_shapes.push_back(&entity);
        else if (type == "GEOMETRIC_ITEM_SPECIFIC_USAGE" || type == "ITEM_IDENTIFIED_REPRESENTATION_USAGE")
        {
            Values const values = m_file.ParametersOf(entity, type);
            std::vector<Number> const items = Part21ReferencesAt(values, 4);
            if (items.size() == 1)
                m_items.emplace(Part21ReferenceAt(values, 2), items.front());
        }
    }

    Values ParametersOf(Number number) const
    {
        Part21File::Entity const* const entity = m_file.Find(number);
        return entity ? m_file.ParametersOf(*entity, m_file.TypeOf(*entity)) : Values();
    }

    void ReadProduct(Part21File::Entity const& definition)
    {
        Values const formation =
            ParametersOf(Part21ReferenceAt(m_file.ParametersOf(definition, m_file.TypeOf(definition)), 2));
        Number const number = Part21ReferenceAt(formation, 2);
        Values const values = ParametersOf(number);
        StepProduct product;
        product.number = Part21TextAt(values, 0);
        product.name = Part21TextAt(values, 1);
        product.description = Part21TextAt(values, 2);
        product.revision = Part21TextAt(formation, 0);
        product.revisionDescription = Part21TextAt(formation, 1);
        m_definitionsOf[number].push_back(definition.number);
        m_result.products.emplace(definition.number, std::move(product));
    }

    void ReadUsage(Part21File::Entity const& entity)
    {
        Values const values = m_file.ParametersOf(entity, "NEXT_ASSEMBLY_USAGE_OCCURRENCE");
        StepUsage usage;
        usage.id = Part21TextAt(values, 0);
        usage.name = Part21TextAt(values, 1);
        usage.description = Part21TextAt(values, 2);
        usage.designator = Part21TextAt(values, 5);
        m_result.usages.emplace(entity.number, std::move(usage));
    }

    void ReadCategory(Part21File::Entity const& entity)
    {
        Values const values = m_file.ParametersOf(entity, m_file.TypeOf(entity));
        for (Number const product : Part21ReferencesAt(values, 2))
            if (auto const found = m_definitionsOf.find(product); found != m_definitionsOf.end())
                for (Number const definition : found->second)
                    m_result.products[definition].categories.push_back(Part21TextAt(values, 0));
    }

    // A shape aspect whose shape is one item, as older files name a solid.
    void ReadShape(Part21File::Entity const& shape)
    {
        Values const values = m_file.ParametersOf(shape, "SHAPE_DEFINITION_REPRESENTATION");
        Part21File::Entity const* const definition = m_file.Find(Part21ReferenceAt(values, 0));
        if (!definition || m_file.TypeOf(*definition) != "PROPERTY_DEFINITION")
            return;
        Number const aspect = Part21ReferenceAt(ParametersOf(definition->number), 2);
        std::vector<Number> const items = Part21ReferencesAt(ParametersOf(Part21ReferenceAt(values, 1)), 1);
        if (items.size() == 1)
            m_items.emplace(aspect, items.front());
    }

    // What is called so in the file, of a shape aspect or an item; else by its number.
    std::string NameOf(Number number) const
    {
        std::string name = Part21TextAt(ParametersOf(number), 0);
        return name.empty() ? '#' + std::to_string(number) : name;
    }

    // The piece of a shape that a property definition is of: a shape aspect, or else an item; 0 for none.
    Number PieceOf(Number definition, Number owner) const
    {
        Part21File::Entity const* const entity = m_file.Find(owner);
        if (entity && IsAspect(m_file.TypeOf(*entity)))
            return owner;
        auto const item = m_items.find(definition);
        return item == m_items.end() ? 0 : item->second;
    }

    // What a validation property says of a solid. False for one of something else.
    bool ReadSolid(Number piece, Number representation)
    {
        auto const named = m_items.find(piece);
        Number const item = named == m_items.end() ? piece : named->second;
        Part21File::Entity const* const entity = m_file.Find(item);
        if (!entity || !(m_file.Is(*entity, "MANIFOLD_SOLID_BREP") || m_file.Is(*entity, "BREP_WITH_VOIDS")))
            return false;
        StepSolid& solid = m_result.solids[item];
        for (Number const number : Part21ReferencesAt(ParametersOf(representation), 1))
        {
            Values const values = ParametersOf(number);
            std::string const name = Part21TextAt(values, 0);
            if (name == "volume measure")
                solid.volume = Part21PowerOf(m_file, number, 3);
            else if (name == "surface area measure")
                solid.area = Part21PowerOf(m_file, number, 2);
            else if (name == "centre point" && values.size() > 1 && values[1].items.size() == 3)
                solid.centroid = {values[1].items[0].number, values[1].items[1].number, values[1].items[2].number};
        }
        return true;
    }

    // The properties of the product or usage that a property definition is of; null for another owner.
    std::vector<StepProperty>* PropertiesOf(Number owner)
    {
        if (Part21File::Entity const* const aspect = m_file.Find(owner); aspect && IsAspect(m_file.TypeOf(*aspect)))
            owner = Part21ReferenceAt(ParametersOf(owner), 2);
        // The shape of a product, or of a usage.
        if (Part21File::Entity const* const shape = m_file.Find(owner);
            shape && m_file.Is(*shape, "PRODUCT_DEFINITION_SHAPE"))
            owner = Part21ReferenceAt(m_file.ParametersOf(*shape, "PRODUCT_DEFINITION_SHAPE"), 2);
        if (auto const product = m_result.products.find(owner); product != m_result.products.end())
            return &product->second.properties;
        auto const usage = m_result.usages.find(owner);
        return usage == m_result.usages.end() ? nullptr : &usage->second.properties;
    }

    void ReadProperty(Part21File::Entity const& link)
    {
        Values const linked = m_file.ParametersOf(link, "PROPERTY_DEFINITION_REPRESENTATION");
        Number const number = Part21ReferenceAt(linked, 0);
        Part21File::Entity const* const definition = m_file.Find(number);
        if (!definition || !m_file.Is(*definition, "PROPERTY_DEFINITION"))
            return;
        Values const values = m_file.ParametersOf(*definition, "PROPERTY_DEFINITION");
        std::vector<StepProperty>* const properties = PropertiesOf(Part21ReferenceAt(values, 2));
        if (!properties)
            return;
        std::string name = Part21TextAt(values, 0);
        if (auto const general = m_generals.find(number); general != m_generals.end() && name.empty())
            name = Part21TextAt(ParametersOf(general->second), 1);
        bool isCarried = true;
        Number const representation = Part21ReferenceAt(linked, 1);
        Number const piece = PieceOf(number, Part21ReferenceAt(values, 2));
        if (piece > 0 && name == kValidation && ReadSolid(piece, representation))
        {
            m_result.carried.insert(number);
            return;
        }
        // What Open CASCADE reads is of whole products, and so are texts.
        if (piece > 0 && name != kProperty_Text)
            name = Joined(NameOf(piece), name);
        if (auto const product = m_result.products.find(Part21ReferenceAt(values, 2));
            product != m_result.products.end() && name == "material property")
        {
            ReadMaterial(representation, product->second.material);
            m_result.carried.insert(number);
            return;
        }
        for (Number const item : Part21ReferencesAt(ParametersOf(representation), 1))
            isCarried = ReadItem(name, item, *properties) && isCarried;
        if (isCarried)
            m_result.carried.insert(number);
    }

    // Open CASCADE gives it to the shape of the product, which not every product has.
    void ReadMaterial(Number representation, StepMaterial& material) const
    {
        for (Number const number : Part21ReferencesAt(ParametersOf(representation), 1))
        {
            Part21File::Entity const* const item = m_file.Find(number);
            if (item && m_file.Is(*item, "DESCRIPTIVE_REPRESENTATION_ITEM"))
            {
                material.name = Part21TextAt(ParametersOf(number), 0);
                material.description = Part21TextAt(ParametersOf(number), 1);
            }
            else if (std::optional<double> const density = Part21DensityOf(m_file, number))
            {
                material.density = density;
                material.densityType = Part21MeasureOf(m_file, number)->type;
            }
        }
    }

    bool ReadItem(std::string const& property, Number number, std::vector<StepProperty>& properties)
    {
        Part21File::Entity const* const item = m_file.Find(number);
        if (!item)
            return false;
        std::string const& type = m_file.TypeOf(*item);
        Values const values = ParametersOf(number);
        std::string const name = Part21TextAt(
            m_file.Is(*item, "REPRESENTATION_ITEM") ? m_file.ParametersOf(*item, "REPRESENTATION_ITEM") : values, 0);
        if (IsReadElsewhere(property, name))
            return true;
        std::string const full = Joined(property, name);
        if (type == "DESCRIPTIVE_REPRESENTATION_ITEM")
            properties.push_back({full, Part21TextAt(values, 1), {}});
        else if (type == "BOOLEAN_REPRESENTATION_ITEM")
            properties.push_back({full, values.size() > 1 && values[1].text == "T", {}});
        else if (std::optional<double> const value = NumberOf(type, number, values))
            properties.push_back({full, *value, {}});
        else
            return false;
        if (type == "INTEGER_REPRESENTATION_ITEM")
            MakeInteger(properties.back());
        else if (std::optional<Part21Measure> const measure = Part21MeasureOf(m_file, number))
            properties.back().unit = Part21UnitName(m_file, measure->unit);
        return true;
    }

    std::optional<double> NumberOf(std::string const& type, Number number, Values const& values) const
    {
        if (type == "INTEGER_REPRESENTATION_ITEM" || type == "REAL_REPRESENTATION_ITEM" ||
            type == "VALUE_REPRESENTATION_ITEM")
            return Part21NumberAt(values, 1);
        std::optional<Part21Measure> const measure = Part21MeasureOf(m_file, number);
        return measure ? std::optional(measure->value) : std::nullopt;
    }

    static void MakeInteger(StepProperty& property)
    {
        double const value = std::get<double>(property.value);
        if (std::abs(value) < 2147483647.0 && value == std::floor(value))
            property.value = static_cast<int>(value);
    }

    Part21File const& m_file;
    StepProductTable& m_result;
    List m_definitions;
    List m_usages;
    List m_categories;
    List m_links;
    List m_shapes;
    /// What shape aspects and property definitions are of.
    std::unordered_map<Number, Number> m_items;
    std::unordered_map<Number, std::vector<Number>> m_definitionsOf;
    /// General properties by the property definitions that they are of.
    std::unordered_map<Number, Number> m_generals;
};

}  // namespace

StepProductTable StepProductTable::Of(Part21File const& file)
{
    StepProductTable result;
    ProductReader(file, result).Read();
    return result;
}

}  // namespace KVR
