#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "authoring/SceneRecords.h"
#include "exchange/import/ProductPlan.h"
#include "exchange/model/Losses.h"

namespace KVR
{

/// The occurrence paths, from what stands under the root, of what a model names without saying which occurrence of it
/// is meant: all of them.
class OccurrenceWays
{
public:
    /// So many of one object are told.
    static constexpr std::size_t kMost = 100;

    explicit OccurrenceWays(ProductPlan const& plan);

    /// Says in which component something stands. Instances are known.
    void Put(UTF8String const& id, std::size_t component);
    /// Puts the members of a view, which are single ids, where they occur.
    void Lead(Authoring::ViewRecord& view, Losses& losses) const;

private:
    using Paths = std::vector<Authoring::OccurrencePath>;

    Paths To(std::size_t component) const;

    std::unordered_map<std::string, std::size_t> m_holders;
    /// By component: what places it.
    struct Use
    {
        std::size_t assembly = 0;
        UTF8String instance;
    };
    std::vector<std::vector<Use>> m_uses;
    std::vector<bool> m_isRoot;
};

}  // namespace KVR
