#pragma once

#include <vector>

#include "host/tree/TreeWriter.h"
#include "output/JsonWriter.h"

namespace KVR
{

struct GeometryFacts;
class Output;
struct StyleColor;

/// One JSON object: "Tree", in which every node holds its "Children", and "Totals".
class JsonTreeWriter final : public TreeWriter
{
public:
    explicit JsonTreeWriter(Output& out);

    void Begin(TreeNode const& node) override;
    void End() override;
    void Finish(SceneTotals const& totals) override;

private:
    void Geometry(GeometryFacts const& facts);
    void Styles(std::vector<StyleColor> const& styles);

    JsonWriter m_json;
};

}  // namespace KVR
