#pragma once

namespace KVR
{

struct SceneTotals;
struct TreeNode;

/// Receives the nodes of a product tree as they are walked.
class TreeWriter
{
public:
    virtual ~TreeWriter() = default;
    TreeWriter(TreeWriter const&) = delete;
    TreeWriter& operator=(TreeWriter const&) = delete;

    virtual void Begin(TreeNode const& node) = 0;
    /// The end of the node begun last that has not ended.
    virtual void End() = 0;
    /// The end of the tree; the totals are those of the whole, whatever was shown.
    virtual void Finish(SceneTotals const& totals) = 0;

protected:
    TreeWriter() = default;

    /// Places of assemblies and parts in the tree; the largest number when no number holds them.
    static unsigned long long ProductOccurrences(SceneTotals const& totals) noexcept;
};

}  // namespace KVR
