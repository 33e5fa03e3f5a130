#include <gtest/gtest.h>

#include <Quantity_Color.hxx>
#include <TDF_ChildIterator.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_LayerTool.hxx>
#include <XCAFDoc_Location.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <algorithm>
#include <gp_Trsf.hxx>
#include <stdexcept>

#include "tests/exchange/breaks/BreakBench.h"

namespace KVR::Test
{

namespace
{

// The first component or part of that name, with its label.
void ForLabel(ShapeDocument& document, std::string const& name, std::function<void(TDF_Label const&)> const& change)
{
    std::function<bool(TDF_Label const&)> const walk = [&](TDF_Label const& label)
    {
        Handle(TDataStd_Name) attribute;
        if (label.FindAttribute(TDataStd_Name::GetID(), attribute) &&
            attribute->Get() == TCollection_ExtendedString(name.c_str()))
        {
            change(label);
            return true;
        }
        for (TDF_ChildIterator child(label); child.More(); child.Next())
            if (walk(child.Value()))
                return true;
        return false;
    };
    if (!walk(document.document->Main()))
        throw std::runtime_error("there is no " + name);
}

auto InStep(std::function<void(ShapeDocument&)> const& change)
{
    return [=](Breaks& breaks) { breaks.step = change; };
}

auto OfLabel(std::string const& name, std::function<void(TDF_Label const&)> const& change)
{
    return InStep([=](ShapeDocument& document) { ForLabel(document, name, change); });
}

auto InGltf(std::function<void(tinygltf::Model&)> const& change)
{
    return [=](Breaks& breaks) { breaks.gltf = change; };
}

tinygltf::Node& NodeOf(tinygltf::Model& model, std::string const& name)
{
    for (tinygltf::Node& node : model.nodes)
        if (node.name == name)
            return node;
    throw std::runtime_error("there is no node " + name);
}

// The numbers of an attribute of the first primitive.
float* NumbersOf(tinygltf::Model& model, char const* attribute, std::size_t& count)
{
    auto const at = [](auto& list, int place) -> auto&
    {
        return list.at(static_cast<std::size_t>(place));
    };
    tinygltf::Accessor const& accessor =
        at(model.accessors, model.meshes.front().primitives.front().attributes.at(attribute));
    tinygltf::BufferView const& view = at(model.bufferViews, accessor.bufferView);
    count = accessor.count * 3;
    return reinterpret_cast<float*>(model.buffers.front().data.data() + view.byteOffset + accessor.byteOffset);
}

}  // namespace

TEST(ExportBreaks, WhatAStepFileHoldsIsCaught)
{
    BreakBench const bench("as1-oc-214.stp");
    auto const colors = [](TDF_Label const& label) { return XCAFDoc_DocumentTool::ColorTool(label); };
    bench.ExpectCaughtInExport(
        {{"renames a part", InStep([](ShapeDocument& document) { document.products.back().name = "net"; }), "names"},
         {"renames an instance", InStep([](ShapeDocument& document) { document.usages.back().name = "net_2"; }),
          "names"},
         {"moves an instance",
          OfLabel("nut_2",
                  [](TDF_Label const& label)
                  {
                      gp_Trsf moved;
                      moved.SetTranslation(gp_Vec(1.0, 2.0, 3.0));
                      XCAFDoc_Location::Set(label, TopLoc_Location(moved));
                  }),
          "by path"},
         {"changes a colour",
          OfLabel("nut", [=](TDF_Label const& label)
                  { colors(label)->SetColor(label, Quantity_Color(Quantity_NOC_PINK), XCAFDoc_ColorSurf); }),
          "colours"},
         {"loses a colour",
          OfLabel("nut",
                  [=](TDF_Label const& label)
                  {
                      for (XCAFDoc_ColorType const type : {XCAFDoc_ColorGen, XCAFDoc_ColorSurf, XCAFDoc_ColorCurv})
                          colors(label)->UnSetColor(label, type);
                  }),
          "colours"},
         {"loses a layer",
          InStep(
              [](ShapeDocument& document)
              {
                  auto const layers = XCAFDoc_DocumentTool::LayerTool(document.document->Main());
                  TDF_LabelSequence all;
                  layers->GetLayerLabels(all);
                  for (TDF_Label const& layer : all)
                      layers->RemoveLayer(layer);
                  document.layers.clear();
              }),
          "layers"},
         {"hides a body", InStep([](ShapeDocument& document) { document.bodies.front().isHidden = true; }), "hidden"},
         {"mistakes a part number",
          InStep([](ShapeDocument& document) { document.products.front().number = "another"; }), "part numbers"}},
        ".step");
}

TEST(ExportBreaks, ViewsAndNotesOfAStepFileAreCaught)
{
    BreakBench const bench("iso14405_fig17a.stp");
    bench.ExpectCaughtInExport(
        {{"shifts a view",
          InStep([](ShapeDocument& document) { document.views.front().eye.Translate(gp_Vec(1.0, 1.0, 1.0)); }),
          "views"},
         {"tilts a view",
          InStep([](ShapeDocument& document)
                 { document.views.front().eye.SetYDirection(document.views.front().eye.XDirection()); }),
          "views"},
         {"forgets a view", InStep([](ShapeDocument& document) { document.views.pop_back(); }), "views"},
         {"forgets a section plane",
          InStep(
              [](ShapeDocument& document)
              {
                  for (ShapeDocument::View& view : document.views)
                      view.cuts.clear();
              }),
          "section planes"},
         {"forgets what a view shows",
          InStep(
              [](ShapeDocument& document)
              {
                  for (ShapeDocument::View& view : document.views)
                      view.members.clear();
              }),
          "view members"},
         {"loses notes", InStep([](ShapeDocument& document) { document.callouts.clear(); }), "notes"},
         {"mistakes a value",
          InStep(
              [](ShapeDocument& document)
              {
                  for (ShapeDocument::Callout& callout : document.callouts)
                      if (callout.details.value)
                          *callout.details.value += 1.0;
              }),
          "note values"}},
        ".step");
}

TEST(ExportBreaks, WhatAGlbFileHoldsIsCaught)
{
    BreakBench const bench("as1-oc-214.stp");
    bench.ExpectCaughtInExport(
        {{"changes a colour",
          InGltf(
              [](tinygltf::Model& model) {
                  model.materials.front().pbrMetallicRoughness.baseColorFactor = {0.1, 0.2, 0.3, 1.0};
              }),
          "drawn colours"},
         {"gives two parts each other's colour",
          InGltf([](tinygltf::Model& model)
                 { std::swap(model.meshes[0].primitives[0].material, model.meshes[1].primitives[0].material); }),
          "drawn colours"},
         {"makes a colour transparent",
          InGltf(
              [](tinygltf::Model& model)
              {
                  model.materials.front().pbrMetallicRoughness.baseColorFactor[3] = 0.5;
                  model.materials.front().alphaMode = "BLEND";
              }),
          "drawn colours"},
         {"moves an instance",
          InGltf([](tinygltf::Model& model)
                 { NodeOf(model, "nut_1").matrix = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 1, 1}; }),
          "mesh by path"},
         {"swaps two names",
          InGltf([](tinygltf::Model& model) { std::swap(NodeOf(model, "nut_1").name, NodeOf(model, "rod_1").name); }),
          "mesh by path"},
         {"loses an instance", InGltf([](tinygltf::Model& model) { NodeOf(model, "as1").children.pop_back(); }),
          "occurrences"},
         {"smooths normals",
          InGltf(
              [](tinygltf::Model& model)
              {
                  std::size_t count = 0;
                  float* const normals = NumbersOf(model, "NORMAL", count);
                  std::fill_n(normals, count / 10, 0.57735F);
              }),
          "normals"},
         {"moves a corner",
          InGltf(
              [](tinygltf::Model& model)
              {
                  std::size_t count = 0;
                  NumbersOf(model, "POSITION", count)[0] += 1.0F;
              }),
          "mesh by path"},
         {"loses a triangle",
          InGltf(
              [](tinygltf::Model& model)
              {
                  auto const indices = static_cast<std::size_t>(model.meshes.front().primitives.front().indices);
                  model.accessors.at(indices).count -= 3;
              }),
          "triangles"}},
        ".glb");
}

TEST(ExportBreaks, WhatIsWrongWithAViewOfAGlbFileIsCaught)
{
    auto const view = [](tinygltf::Model& model) -> tinygltf::Node&
    {
        auto const camera =
            std::find_if(model.nodes.begin(), model.nodes.end(), [](auto const& node) { return node.camera >= 0; });
        if (camera == model.nodes.end())
            throw std::runtime_error("there is no camera");
        return *camera;
    };
    BreakBench const bench("iso14405_fig17a.stp");
    bench.ExpectCaughtInExport(
        {{"shifts a view", InGltf([=](tinygltf::Model& model) { view(model).matrix[12] += 0.01; }), "views"},
         {"turns a view round", InGltf([=](tinygltf::Model& model) { view(model).matrix = {}; }), "views"},
         {"forgets the views", InGltf([](tinygltf::Model& model) { model.scenes.front().extras = {}; }), "views"}},
        ".glb");
}

}  // namespace KVR::Test
