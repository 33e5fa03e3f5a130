#pragma once

#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "exchange/certify/part21/Part21Model.h"
#include "exchange/certify/step/FactProducts.h"

namespace KVR::Certification
{

/// What a STEP file says of the looks of its items: colours and what is hidden, from its entities alone.
class StepLooks
{
public:
    using Id = Part21Model::Id;

    struct Look
    {
        /// "#rrggbbaa".
        std::optional<std::string> surface;
        std::optional<std::string> line;
        bool isHidden = false;
    };
    /// For one occurrence, told by usages of its path.
    struct Override
    {
        std::vector<Id> usages;
        Look look;
    };

    StepLooks(Part21Model const& model, FactProducts const& products);

    /// Null for an item of which nothing is said.
    Look const* Of(Id item) const;
    /// What is said of the item, or product definition shape and such, for single occurrences.
    std::vector<Override> const& Overrides() const { return m_overrides; }

private:
    void ReadStyledItems();
    void ReadHidden();
    void ReadStyle(Id style, Look& look, int level) const;
    std::optional<std::string> ColorOf(Id id, double alpha, int level) const;

    Part21Model const& m_model;
    FactProducts const& m_products;
    std::unordered_map<Id, Look> m_looks;
    std::unordered_map<Id, std::size_t> m_overrideOf;
    std::vector<Override> m_overrides;
};

}  // namespace KVR::Certification
