#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "exchange/certify/ModelFacts.h"
#include "exchange/certify/step/FactProducts.h"
#include "exchange/certify/step/StepLooks.h"
#include "exchange/certify/step/StepShapes.h"

namespace KVR::Certification
{

/// The occurrences of a STEP file with what they hold, and how that looks.
class StepStructure
{
public:
    StepStructure(Part21Model const& model, FactProducts const& products, StepLooks const& looks, StepShapes& shapes,
                  ModelFacts& facts);

    void Read();

private:
    using Id = Part21Model::Id;

    void Walk(Id product, std::string const& path, std::string const& name, FactPlace const& place, bool isHidden);
    void AddItem(ModelFacts::Occurrence& occurrence, Id item, FactPlace const& place, StepLooks::Look const& outer);
    void AddPieces(std::string const& path, Id item, StepShape const& shape, double scale,
                   StepLooks::Look const& outer);
    void AddHiddenPoints(std::string const& path, Id item, bool isAllHidden);
    /// What holds for the occurrence that the usages lead to.
    StepLooks::Look OverrideOf() const;
    void ReadLayers();
    bool IsOfProduct(Id member) const;

    Part21Model const& m_model;
    FactProducts const& m_products;
    StepLooks const& m_looks;
    StepShapes& m_shapes;
    ModelFacts& m_facts;
    std::vector<Id> m_usages;
    std::unordered_set<Id> m_representations;
    /// Products that occurred before.
    std::unordered_set<Id> m_met;
};

}  // namespace KVR::Certification
