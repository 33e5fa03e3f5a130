#include "exchange/certify/step/FactProducts.h"

#include <algorithm>
#include <map>

namespace KVR::Certification
{

namespace
{

using Id = Part21Model::Id;

// Representations in representations that are deeper are a damaged file's.
constexpr int kDeepestItem = 20;

FactPoint Unit(FactPoint const& p, FactPoint const& otherwise)
{
    double const length = std::hypot(p[0], p[1], p[2]);
    return length > 0.0 ? FactPoint{p[0] / length, p[1] / length, p[2] / length} : otherwise;
}

FactPlace Framed(FactPoint const& x, FactPoint const& y, FactPoint const& z, FactPoint const& origin)
{
    FactPlace place;
    for (std::size_t row = 0; row < 3; ++row)
    {
        place.rows[4 * row] = x[row];
        place.rows[4 * row + 1] = y[row];
        place.rows[4 * row + 2] = z[row];
        place.rows[4 * row + 3] = origin[row];
    }
    return place;
}

// The part of a direction that stands square to z.
FactPoint Square(FactPoint const& direction, FactPoint const& z)
{
    double const along = Dot(direction, z);
    FactPoint const rest{direction[0] - along * z[0], direction[1] - along * z[1], direction[2] - along * z[2]};
    FactPoint const other = std::abs(z[0]) < 0.9 ? FactPoint{1, 0, 0} : FactPoint{0, 1, 0};
    double const part = Dot(other, z);
    return Unit(rest, Unit({other[0] - part * z[0], other[1] - part * z[1], other[2] - part * z[2]}, {1, 0, 0}));
}

double FactorOfPrefix(std::string const& prefix)
{
    static std::map<std::string, double> const factors{
        {"", 1.0},       {"EXA", 1e18},   {"PETA", 1e15},  {"TERA", 1e12}, {"GIGA", 1e9},
        {"MEGA", 1e6},   {"KILO", 1e3},   {"HECTO", 1e2},  {"DECA", 1e1},  {"DECI", 1e-1},
        {"CENTI", 1e-2}, {"MILLI", 1e-3}, {"MICRO", 1e-6}, {"NANO", 1e-9}, {"PICO", 1e-12}};
    auto const found = factors.find(prefix);
    return found == factors.end() ? 0.0 : found->second;
}

double MillimetresOfUnit(Part21Model const& model, Id unit, int level)
{
    if (level > kDeepestItem)
        return 0.0;
    if (model.Is(unit, "CONVERSION_BASED_UNIT"))
    {
        Id const measure = model.Parameter(unit, 1, "CONVERSION_BASED_UNIT").reference;
        return model.Parameter(measure, 0).Number() *
               MillimetresOfUnit(model, model.Parameter(measure, 1).reference, level + 1);
    }
    if (!model.Is(unit, "SI_UNIT") || model.Parameter(unit, 1, "SI_UNIT").text != "METRE")
        return 0.0;
    return 1e3 * FactorOfPrefix(model.Parameter(unit, 0, "SI_UNIT").text);
}

}  // namespace

double StepMillimetresOfUnit(Part21Model const& model, Id unit)
{
    return MillimetresOfUnit(model, unit, 0);
}

FactProducts::FactProducts(Part21Model const& model) : m_model(model)
{
    ReadProducts();
    ReadRepresentations();
    ReadUsages();
    ReadItems();
    std::erase_if(m_order,
                  [this](Id id)
                  {
                      Product const& product = m_products.at(id);
                      bool const isOut = product.representations.empty() && product.usages.empty() && !product.isUsed;
                      if (isOut)
                          m_products.erase(id);
                      return isOut;
                  });
}

void FactProducts::ReadProducts()
{
    for (char const* const type : {"PRODUCT_DEFINITION", "PRODUCT_DEFINITION_WITH_ASSOCIATED_DOCUMENTS"})
        for (Id const id : m_model.Of(type))
        {
            Id const formation = m_model.Parameter(id, 2, type).reference;
            Id const product = m_model.Parameter(formation, 2).reference;
            m_order.push_back(id);
            Product& entry = m_products[id];
            entry.number = m_model.Parameter(product, 0).text;
            entry.name = m_model.Parameter(product, 1).text;
            if (entry.name.empty())
                entry.name = entry.number;
        }
    std::sort(m_order.begin(), m_order.end());
}

FactProducts::Id FactProducts::ProductOfShape(Id shape) const
{
    Id const definition = m_model.Is(shape, "PRODUCT_DEFINITION_SHAPE")
                              ? m_model.Parameter(shape, 2, "PRODUCT_DEFINITION_SHAPE").reference
                              : 0;
    return m_products.count(definition) != 0 ? definition : 0;
}

FactProducts::Id FactProducts::UsageOf(Id contextDependent) const
{
    Id const shape = m_model.Parameter(contextDependent, 1).reference;
    return m_model.Parameter(shape, 2).reference;
}

void FactProducts::ReadRepresentations()
{
    for (Id const id : m_model.Of("SHAPE_DEFINITION_REPRESENTATION"))
        if (Id const product = ProductOfShape(m_model.Parameter(id, 0).reference))
        {
            Id const representation = m_model.Parameter(id, 1).reference;
            m_products[product].representations.push_back(representation);
            m_productOfRepresentation[representation] = product;
        }
    // What is said to be the same shape belongs to the same product, however long the chain.
    std::vector<std::pair<Id, Id>> related;
    for (Id const id : m_model.Of("SHAPE_REPRESENTATION_RELATIONSHIP"))
        if (!m_model.Is(id, "REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION"))
            related.emplace_back(m_model.Parameter(id, 2).reference, m_model.Parameter(id, 3).reference);
    for (bool isNew = true; isNew;)
    {
        isNew = false;
        for (auto const& [one, other] : related)
            for (auto const& [from, to] : {std::pair(one, other), std::pair(other, one)})
                if (auto const known = m_productOfRepresentation.find(from);
                    known != m_productOfRepresentation.end() && m_productOfRepresentation.count(to) == 0)
                {
                    Id const product = known->second;
                    m_products[product].representations.push_back(to);
                    m_productOfRepresentation[to] = product;
                    isNew = true;
                }
    }
}

std::unordered_map<FactProducts::Id, FactPlace> FactProducts::PlacesOfUsages() const
{
    std::unordered_map<Id, FactPlace> places;
    for (Id const id : m_model.Of("CONTEXT_DEPENDENT_SHAPE_REPRESENTATION"))
    {
        Id const usage = UsageOf(id);
        Id const relation = m_model.Parameter(id, 0).reference;
        Id const transformation =
            m_model.Parameter(relation, 0, "REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION").reference;
        auto const ends = m_model.Parameters(
            relation, m_model.Is(relation, "REPRESENTATION_RELATIONSHIP") ? "REPRESENTATION_RELATIONSHIP" : "");
        if (ends.size() < 4 || !m_model.Is(transformation, "ITEM_DEFINED_TRANSFORMATION"))
            continue;
        Id first = ends[2].reference;
        Id second = ends[3].reference;
        Id firstItem = m_model.Parameter(transformation, 2).reference;
        Id secondItem = m_model.Parameter(transformation, 3).reference;
        // Some writers name the assembly first.
        auto const owner = m_productOfRepresentation.find(first);
        if (owner != m_productOfRepresentation.end() && owner->second == m_model.Parameter(usage, 3).reference)
        {
            std::swap(first, second);
            std::swap(firstItem, secondItem);
        }
        places[usage] =
            PlacementOf(secondItem, MillimetresOf(second)) * PlacementOf(firstItem, MillimetresOf(first)).Inverse();
    }
    return places;
}

void FactProducts::ReadUsages()
{
    std::unordered_map<Id, FactPlace> const places = PlacesOfUsages();
    for (Id const id : m_model.Of("NEXT_ASSEMBLY_USAGE_OCCURRENCE"))
    {
        auto const parameters = m_model.Parameters(id, "NEXT_ASSEMBLY_USAGE_OCCURRENCE");
        if (parameters.size() < 5)
            continue;
        auto const whole = m_products.find(parameters[3].reference);
        auto const part = m_products.find(parameters[4].reference);
        if (whole == m_products.end() || part == m_products.end())
            continue;
        auto const place = places.find(id);
        std::string const& name = parameters[1].text.empty() ? parameters[0].text : parameters[1].text;
        whole->second.usages.push_back({id, part->first, name, place == places.end() ? FactPlace() : place->second});
        part->second.isUsed = true;
    }
}

void FactProducts::ReadItems()
{
    for (auto& [id, product] : m_products)
        for (Id const representation : product.representations)
            AddItems(product, representation, FactPlace(), 0);
}

void FactProducts::AddItems(Product& product, Id representation, FactPlace const& place, int level)
{
    auto const parameters =
        m_model.Parameters(representation, m_model.Is(representation, "REPRESENTATION") ? "REPRESENTATION" : "");
    if (parameters.size() < 2 || level > kDeepestItem)
        return;
    for (Id const item : parameters[1].References())
    {
        if (!m_model.Is(item, "MAPPED_ITEM"))
        {
            product.items.push_back({item, place});
            continue;
        }
        Id const map = m_model.Parameter(item, 1, "MAPPED_ITEM").reference;
        Id const mapped = m_model.Parameter(map, 1).reference;
        // What belongs to another product is placed by a usage.
        if (m_productOfRepresentation.count(mapped) != 0)
            continue;
        AddItems(product, mapped,
                 place *
                     PlacementOf(m_model.Parameter(item, 2, "MAPPED_ITEM").reference, MillimetresOf(representation)) *
                     PlacementOf(m_model.Parameter(map, 0).reference, MillimetresOf(mapped)).Inverse(),
                 level + 1);
    }
}

double FactProducts::MillimetresOf(Id representation) const
{
    Id const context =
        m_model.Parameter(representation, 2, m_model.Is(representation, "REPRESENTATION") ? "REPRESENTATION" : "")
            .reference;
    for (Id const unit : m_model.Parameter(context, 0, "GLOBAL_UNIT_ASSIGNED_CONTEXT").References())
        if (double const length = StepMillimetresOfUnit(m_model, unit); length > 0.0)
            return length;
    return 0.0;
}

FactPoint FactProducts::PointOf(Id point, double factor) const
{
    FactPoint coordinates{};
    Part21Parameter const list = m_model.Parameter(point, 1);
    for (std::size_t i = 0; i < 3 && i < list.list.size(); ++i)
        coordinates[i] = list.list[i].Number() * factor;
    return coordinates;
}

FactPlace FactProducts::PlacementOf(Id placement, double millimetres) const
{
    double const factor = millimetres > 0.0 ? millimetres : 1.0;
    auto const parameters = m_model.Parameters(placement);
    if (m_model.Is(placement, "AXIS2_PLACEMENT_3D") && parameters.size() >= 4)
    {
        FactPoint const z = Unit(PointOf(parameters[2].reference), {0, 0, 1});
        FactPoint const x =
            Square(parameters[3].reference != 0 ? PointOf(parameters[3].reference) : FactPoint{1, 0, 0}, z);
        return Framed(x, Cross(z, x), z, PointOf(parameters[1].reference, factor));
    }
    auto const operation = m_model.Parameters(placement, m_model.Is(placement, "CARTESIAN_TRANSFORMATION_OPERATOR")
                                                             ? "CARTESIAN_TRANSFORMATION_OPERATOR"
                                                             : "CARTESIAN_TRANSFORMATION_OPERATOR_3D");
    // Name and description stand before the axes where the entity is one of a single type.
    if (operation.size() < 4)
        return {};
    std::size_t const first = operation.size() >= 7 ? 2 : 0;
    FactPoint const third = operation.size() > first + 4 && operation[first + 4].reference != 0
                                ? Unit(PointOf(operation[first + 4].reference), {0, 0, 1})
                                : FactPoint{0, 0, 1};
    FactPoint const x =
        Square(operation[first].reference != 0 ? PointOf(operation[first].reference) : FactPoint{1, 0, 0}, third);
    FactPoint y = Cross(third, x);
    if (operation[first + 1].reference != 0 && Dot(y, PointOf(operation[first + 1].reference)) < 0.0)
        y = {-y[0], -y[1], -y[2]};
    double const scale = operation[first + 3].Number() > 0.0 ? operation[first + 3].Number() : 1.0;
    return Framed(x, y, third, PointOf(operation[first + 2].reference, factor)) * FactPlace::Scaling(scale);
}

}  // namespace KVR::Certification
