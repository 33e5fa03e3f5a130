#pragma once

#include <vector>

#include "host/tree/TreeWriter.h"

namespace KVR
{

class Output;

/// A line per node, indented by lines that join it to its owner, and a closing line of totals.
class TextTreeWriter final : public TreeWriter
{
public:
    TextTreeWriter(Output& out, bool color);

    void Begin(ProductNode const& node, bool isLast, bool isCycle) override;
    void End() override;
    void Finish(ProductTotals const& totals) override;

private:
    void Indent(bool isLast);
    void Paint(std::string_view code);

    Output& m_out;
    bool m_color;
    /// For each node that has not ended, whether it is the last of its siblings.
    std::vector<bool> m_isLast;
};

}  // namespace KVR
