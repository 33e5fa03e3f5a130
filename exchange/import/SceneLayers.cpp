#include "exchange/import/SceneLayers.h"

#include <TDF_LabelSequence.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_LayerTool.hxx>

#include "exchange/model/CleanText.h"

namespace KVR
{

std::vector<Authoring::LayerRecord> LayersOf(Handle(TDocStd_Document) const& document,
                                             std::function<std::vector<UTF8String>(TDF_Label const&)> const& idsOf,
                                             Losses& losses)
{
    std::vector<Authoring::LayerRecord> layers;
    auto const tool = XCAFDoc_DocumentTool::LayerTool(document->Main());
    TDF_LabelSequence labels;
    tool->GetLayerLabels(labels);
    for (TDF_Label const& label : labels)
    {
        TCollection_ExtendedString name;
        if (!tool->GetLayer(label, name))
            continue;
        Authoring::LayerRecord layer;
        layer.number = static_cast<long long>(layers.size()) + 1;
        layer.id = UTF8String("layer" + std::to_string(layer.number));
        layer.label = CleanExtendedText(name);
        layer.description = layer.label;
        layer.isVisible = tool->IsVisible(label);
        TDF_LabelSequence shapes;
        tool->GetShapesOfLayer(label, shapes);
        for (TDF_Label const& shape : shapes)
        {
            std::vector<UTF8String> const ids = idsOf(shape);
            if (ids.empty())
                losses.AddItem("members of layers that are no objects", std::string(layer.label.View()));
            layer.itemIds.insert(layer.itemIds.end(), ids.begin(), ids.end());
        }
        layers.push_back(std::move(layer));
    }
    return layers;
}

}  // namespace KVR
