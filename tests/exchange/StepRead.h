#pragma once

#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_Shape.hxx>
#include <array>
#include <optional>
#include <string>
#include <vector>

namespace KVR::Test
{

/// A STEP file as Open CASCADE reads it, with lengths in millimetres. Operations throw std::runtime_error for what is
/// not there.
class StepRead
{
public:
    explicit StepRead(std::string const& path);
    ~StepRead();
    StepRead(StepRead const&) = delete;
    StepRead& operator=(StepRead const&) = delete;

    /// The names of the products that stand in no other.
    std::vector<std::string> Roots() const;
    /// A part or an assembly.
    TDF_Label Product(std::string const& name) const;
    /// The names of what an assembly places.
    std::vector<std::string> ComponentsOf(std::string const& assembly) const;
    TDF_Label Component(std::string const& assembly, std::string const& name) const;
    /// The name of the product that a component places.
    std::string TargetOf(TDF_Label const& component) const;
    /// The item of a part's representation with that name.
    bool HasItem(std::string const& name) const;

    TopoDS_Shape ShapeOf(TDF_Label const& label) const;
    /// Of all products that stand in no other, in their places.
    TopoDS_Shape Whole() const;

    /// The colour of faces, or of edges, as fractions of sRGB with the opacity.
    using Rgba = std::array<double, 4>;
    std::optional<Rgba> SurfaceColor(TDF_Label const& label) const;
    std::optional<Rgba> CurveColor(TDF_Label const& label) const;
    bool IsVisible(TDF_Label const& label) const;
    /// The names of its layers, in order.
    std::vector<std::string> LayersOf(TDF_Label const& label) const;
    bool IsLayerVisible(std::string const& layer) const;
    /// The labels of bodies, faces and edges of a part that have something of their own.
    std::vector<TDF_Label> SubShapesOf(TDF_Label const& part) const;
    /// What is said of an occurrence by its path, given by its components from the top; null when nothing is.
    TDF_Label Usage(std::vector<TDF_Label> const& path) const;

    opencascade::handle<TDocStd_Document> const& Document() const { return m_document; }

private:
    std::vector<TDF_Label> Products() const;

    opencascade::handle<TDocStd_Document> m_document;
    std::vector<std::string> m_items;
};

double VolumeOf(TopoDS_Shape const& shape);
/// The lowest and highest corner of a box around a shape.
std::array<double, 6> BoxOf(TopoDS_Shape const& shape);

}  // namespace KVR::Test
