#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "exchange/certify/FactPlace.h"
#include "exchange/certify/part21/Part21Model.h"

namespace KVR::Certification
{

/// The products of a STEP file, what each is made of, and where they use each other: from its entities alone.
class FactProducts
{
public:
    using Id = Part21Model::Id;

    /// A representation item with its place in the product, from millimetres of its representation's to those of the
    /// product's.
    struct Item
    {
        Id id;
        FactPlace place;
    };
    struct Usage
    {
        /// The usage's entity, and what is used.
        Id id;
        Id product;
        std::string name;
        FactPlace place;
    };
    /// A product definition.
    struct Product
    {
        std::string name;
        std::string number;
        std::vector<Id> representations;
        std::vector<Item> items;
        std::vector<Usage> usages;
        bool isUsed = false;
    };

    explicit FactProducts(Part21Model const& model);

    /// Those that have a shape, use others or are used, by their entities; Order has them in the order of the file.
    std::unordered_map<Id, Product> const& All() const { return m_products; }
    std::vector<Id> const& Order() const { return m_order; }
    /// The product that a product definition shape, or a usage's, belongs to; 0 for none.
    Id ProductOfShape(Id shape) const;
    /// The usage that a context dependent shape representation places; 0 for none.
    Id UsageOf(Id contextDependent) const;
    /// How long the unit of a representation's lengths is in millimetres; 0 where it states none.
    double MillimetresOf(Id representation) const;
    /// An axis placement, or a transformation operator, in millimetres.
    FactPlace PlacementOf(Id placement, double millimetres) const;
    FactPoint PointOf(Id point, double factor = 1.0) const;

private:
    void ReadProducts();
    void ReadRepresentations();
    void ReadUsages();
    void ReadItems();
    void AddItems(Product& product, Id representation, FactPlace const& place, int level);
    std::unordered_map<Id, FactPlace> PlacesOfUsages() const;

    Part21Model const& m_model;
    std::unordered_map<Id, Product> m_products;
    std::vector<Id> m_order;
    /// Representations that belong to a product.
    std::unordered_map<Id, Id> m_productOfRepresentation;
};

/// The length of a unit in millimetres; 0 for one that is no unit of length.
double StepMillimetresOfUnit(Part21Model const& model, Part21Model::Id unit);

}  // namespace KVR::Certification
