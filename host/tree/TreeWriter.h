#pragma once

#include <vector>

namespace KVR
{

class ProductNode;
struct GeometryFacts;
struct ProductTotals;
struct StyleColor;

/// Receives the nodes of a product tree as they are walked.
class TreeWriter
{
public:
    virtual ~TreeWriter() = default;
    TreeWriter(TreeWriter const&) = delete;
    TreeWriter& operator=(TreeWriter const&) = delete;

    /// What a node is shown with.
    struct Place
    {
        bool isLast = false;
        /// It stands within itself and is not entered.
        bool isCycle = false;
        /// The styles that it names; null when they are not to be shown.
        std::vector<StyleColor> const* styles = nullptr;
        /// What is to be said of its geometry; null for an object of another kind.
        GeometryFacts const* geometry = nullptr;
    };

    virtual void Begin(ProductNode const& node, Place const& place) = 0;
    /// The end of the node begun last that has not ended.
    virtual void End() = 0;
    /// The end of the tree; the totals are those of the whole, whatever was shown.
    virtual void Finish(ProductTotals const& totals) = 0;

protected:
    TreeWriter() = default;
};

}  // namespace KVR
