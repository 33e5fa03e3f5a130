#pragma once

#include "host/tree/TreeWriter.h"
#include "output/JsonWriter.h"

namespace KVR
{

class Output;

/// One JSON object: "Tree", in which every node holds its "Children", and "Totals".
class JsonTreeWriter final : public TreeWriter
{
public:
    explicit JsonTreeWriter(Output& out);

    void Begin(ProductNode const& node, Place const& place) override;
    void End() override;
    void Finish(ProductTotals const& totals) override;

private:
    void Geometry(GeometryFacts const& facts);
    void Styles(std::vector<StyleColor> const& styles);

    JsonWriter m_json;
};

}  // namespace KVR
