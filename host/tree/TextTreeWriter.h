#pragma once

#include <vector>

#include "host/PaintedText.h"
#include "host/tree/TreeWriter.h"

namespace KVR
{

struct GeometryFacts;
class Output;
struct StyleColor;
struct TreeOptions;

/// A line per node, indented by lines that join it to its owner, and a closing line of totals.
class TextTreeWriter final : public TreeWriter
{
public:
    TextTreeWriter(Output& out, TreeOptions const& options);

    void Begin(TreeNode const& node) override;
    void End() override;
    void Finish(SceneTotals const& totals) override;

private:
    void Indent(bool isLast);
    void Geometry(GeometryFacts const& facts);
    void Styles(std::vector<StyleColor> const& styles);

    Output& m_out;
    PaintedText m_text;
    bool m_colorBlocks;
    /// For each node that has not ended, whether it is the last of its siblings.
    std::vector<bool> m_isLast;
};

}  // namespace KVR
