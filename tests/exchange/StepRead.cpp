#include "tests/exchange/StepRead.h"

#include <BRepBndLib.hxx>
#include <BRepGProp.hxx>
#include <BRep_Builder.hxx>
#include <Bnd_Box.hxx>
#include <GProp_GProps.hxx>
#include <Interface_InterfaceModel.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Quantity_ColorRGBA.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_ChildIterator.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_GraphNode.hxx>
#include <XCAFDoc_LayerTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XSControl_WorkSession.hxx>
#include <algorithm>
#include <stdexcept>

namespace KVR::Test
{

namespace
{

std::string NameOf(TDF_Label const& label)
{
    opencascade::handle<TDataStd_Name> name;
    if (!label.FindAttribute(TDataStd_Name::GetID(), name))
        return {};
    return TCollection_AsciiString(name->Get()).ToCString();
}

std::optional<StepRead::Rgba> ColorOf(opencascade::handle<TDocStd_Document> const& document, TDF_Label const& label,
                                      XCAFDoc_ColorType type)
{
    Quantity_ColorRGBA color;
    if (!XCAFDoc_DocumentTool::ColorTool(document->Main())->GetColor(label, type, color))
        return std::nullopt;
    StepRead::Rgba rgba{};
    color.GetRGB().Values(rgba[0], rgba[1], rgba[2], Quantity_TOC_sRGB);
    rgba[3] = static_cast<double>(color.Alpha());
    return rgba;
}

}  // namespace

// Layers and views hold one another by their links, which a document ends only when it is told to.
StepRead::~StepRead()
{
    m_document->Main().Root().ForgetAllAttributes(true);
}

StepRead::StepRead(std::string const& path)
{
    Message::DefaultMessenger()->ChangePrinters().Clear();
    m_document = new TDocStd_Document("BinXCAF");
    STEPCAFControl_Reader reader;
    reader.SetSHUOMode(Standard_True);
    reader.SetGDTMode(Standard_True);
    reader.SetViewMode(Standard_True);
    reader.SetMatMode(Standard_True);
    if (reader.ReadFile(path.c_str()) != IFSelect_RetDone || !reader.Transfer(m_document))
        throw std::runtime_error("no STEP file: " + path);
    opencascade::handle<Interface_InterfaceModel> const model = reader.Reader().WS()->Model();
    for (int i = 1; i <= model->NbEntities(); ++i)
    {
        auto const item = opencascade::handle<StepRepr_RepresentationItem>::DownCast(model->Value(i));
        if (!item.IsNull() && !item->Name().IsNull())
            m_items.emplace_back(item->Name()->ToCString());
    }
}

std::vector<TDF_Label> StepRead::Products() const
{
    TDF_LabelSequence labels;
    XCAFDoc_DocumentTool::ShapeTool(m_document->Main())->GetShapes(labels);
    return {labels.begin(), labels.end()};
}

std::vector<std::string> StepRead::Roots() const
{
    TDF_LabelSequence labels;
    XCAFDoc_DocumentTool::ShapeTool(m_document->Main())->GetFreeShapes(labels);
    std::vector<std::string> names;
    for (TDF_Label const& label : labels)
        names.push_back(NameOf(label));
    return names;
}

TDF_Label StepRead::Product(std::string const& name) const
{
    for (TDF_Label const& label : Products())
    {
        if (NameOf(label) == name)
            return label;
    }
    throw std::runtime_error("no such product: " + name);
}

std::vector<std::string> StepRead::ComponentsOf(std::string const& assembly) const
{
    TDF_LabelSequence labels;
    XCAFDoc_ShapeTool::GetComponents(Product(assembly), labels);
    std::vector<std::string> names;
    for (TDF_Label const& label : labels)
        names.push_back(NameOf(label));
    return names;
}

TDF_Label StepRead::Component(std::string const& assembly, std::string const& name) const
{
    TDF_LabelSequence labels;
    XCAFDoc_ShapeTool::GetComponents(Product(assembly), labels);
    for (TDF_Label const& label : labels)
    {
        if (NameOf(label) == name)
            return label;
    }
    throw std::runtime_error("no such component: " + name);
}

std::string StepRead::TargetOf(TDF_Label const& component) const
{
    TDF_Label target;
    if (!XCAFDoc_ShapeTool::GetReferredShape(component, target))
        throw std::runtime_error("no component");
    return NameOf(target);
}

bool StepRead::HasItem(std::string const& name) const
{
    return std::find(m_items.begin(), m_items.end(), name) != m_items.end();
}

TopoDS_Shape StepRead::ShapeOf(TDF_Label const& label) const
{
    return XCAFDoc_ShapeTool::GetShape(label);
}

TopoDS_Shape StepRead::Whole() const
{
    TDF_LabelSequence labels;
    XCAFDoc_DocumentTool::ShapeTool(m_document->Main())->GetFreeShapes(labels);
    TopoDS_Compound whole;
    BRep_Builder builder;
    builder.MakeCompound(whole);
    for (TDF_Label const& label : labels)
        builder.Add(whole, ShapeOf(label));
    return whole;
}

std::optional<StepRead::Rgba> StepRead::SurfaceColor(TDF_Label const& label) const
{
    return ColorOf(m_document, label, XCAFDoc_ColorSurf);
}

std::optional<StepRead::Rgba> StepRead::CurveColor(TDF_Label const& label) const
{
    return ColorOf(m_document, label, XCAFDoc_ColorCurv);
}

bool StepRead::IsVisible(TDF_Label const& label) const
{
    return XCAFDoc_DocumentTool::ColorTool(m_document->Main())->IsVisible(label);
}

std::vector<std::string> StepRead::LayersOf(TDF_Label const& label) const
{
    TDF_LabelSequence labels;
    XCAFDoc_DocumentTool::LayerTool(m_document->Main())->GetLayers(label, labels);
    std::vector<std::string> names;
    for (TDF_Label const& layer : labels)
        names.push_back(NameOf(layer));
    std::sort(names.begin(), names.end());
    return names;
}

bool StepRead::IsLayerVisible(std::string const& layer) const
{
    auto const tool = XCAFDoc_DocumentTool::LayerTool(m_document->Main());
    TDF_LabelSequence labels;
    tool->GetLayerLabels(labels);
    for (TDF_Label const& label : labels)
    {
        if (NameOf(label) == layer)
            return tool->IsVisible(label);
    }
    throw std::runtime_error("no such layer: " + layer);
}

std::vector<TDF_Label> StepRead::SubShapesOf(TDF_Label const& part) const
{
    TDF_LabelSequence labels;
    XCAFDoc_ShapeTool::GetSubShapes(part, labels);
    return {labels.begin(), labels.end()};
}

TDF_Label StepRead::Usage(std::vector<TDF_Label> const& path) const
{
    // What is said of a path stands below its first component, and goes on below those that follow.
    auto const usageOf = [](TDF_Label const& label)
    {
        opencascade::handle<XCAFDoc_GraphNode> usage;
        XCAFDoc_ShapeTool::GetSHUO(label, usage);
        return usage;
    };
    for (TDF_ChildIterator child(path.front()); child.More(); child.Next())
    {
        opencascade::handle<XCAFDoc_GraphNode> usage = usageOf(child.Value());
        std::size_t length = usage.IsNull() ? 0 : 1;
        while (length > 0 && length < path.size() && usage->NbChildren() == 1 &&
               usage->GetChild(1)->Label().Father() == path[length])
        {
            usage = usage->GetChild(1);
            ++length;
        }
        if (length == path.size() && usage->NbChildren() == 0)
            return child.Value();
    }
    return {};
}

double VolumeOf(TopoDS_Shape const& shape)
{
    GProp_GProps properties;
    BRepGProp::VolumeProperties(shape, properties);
    return properties.Mass();
}

std::array<double, 6> BoxOf(TopoDS_Shape const& shape)
{
    Bnd_Box box;
    BRepBndLib::AddOptimal(shape, box, Standard_False, Standard_False);
    box.SetGap(0.0);
    std::array<double, 6> corners{};
    box.Get(corners[0], corners[1], corners[2], corners[3], corners[4], corners[5]);
    return corners;
}

}  // namespace KVR::Test
