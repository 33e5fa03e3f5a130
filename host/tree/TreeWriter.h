#pragma once

#include <string_view>

namespace KVR
{

class ProductNode;
struct ProductTotals;

/// Receives the nodes of a product tree as they are walked.
class TreeWriter
{
public:
    virtual ~TreeWriter() = default;
    TreeWriter(TreeWriter const&) = delete;
    TreeWriter& operator=(TreeWriter const&) = delete;

    /// A node; `isLast` among its siblings, and `isCycle` when it stands within itself and is not entered.
    virtual void Begin(ProductNode const& node, bool isLast, bool isCycle) = 0;
    /// The end of the node begun last that has not ended.
    virtual void End() = 0;
    /// The end of the tree; the totals are those of the whole, whatever was shown.
    virtual void Finish(ProductTotals const& totals) = 0;

protected:
    TreeWriter() = default;
};

}  // namespace KVR
