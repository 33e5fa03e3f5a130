#pragma once

#include <NCollection_DataMap.hxx>
#include <TDF_Label.hxx>
#include <TDF_LabelMapHasher.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_Shape.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <string>
#include <vector>

#include "authoring/SceneRecords.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

/// An assembly or part of the scene to be.
struct ComponentPlan
{
    TDF_Label label;
    UTF8String id;
    UTF8String name;
    bool isAssembly = false;
    bool isVisible = true;
    /// What an assembly places, as the scene gets it.
    std::vector<Authoring::InstanceRecord> instances;
    /// Where each of them comes from: its label in the document, and the component that it places.
    struct Origin
    {
        TDF_Label label;
        std::size_t target = 0;
    };
    std::vector<Origin> origins;
    /// Of a part.
    TopoDS_Shape shape;
};

/// The product structure of a document, with the ids that its objects get. Components come in the order in which a walk
/// in levels meets them.
class ProductPlan
{
public:
    explicit ProductPlan(Handle(TDocStd_Document) const& document);

    std::vector<ComponentPlan> components;
    /// Which of them stand under the root.
    std::vector<std::size_t> roots;

    /// The id of the object that a label of a component or instance became; empty for another label.
    UTF8String IdOf(TDF_Label const& label) const;
    /// The component of a label; nothing (the number of components) for another label.
    std::size_t ComponentOf(TDF_Label const& label) const;

private:
    std::size_t Add(TDF_Label const& label);

    Handle(XCAFDoc_ColorTool) m_colorTool;
    NCollection_DataMap<TDF_Label, std::size_t, TDF_LabelMapHasher> m_components;
    NCollection_DataMap<TDF_Label, UTF8String, TDF_LabelMapHasher> m_instances;
    std::size_t m_assemblyCount = 0;
};

}  // namespace KVR
