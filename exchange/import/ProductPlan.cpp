#include "exchange/import/ProductPlan.h"

#include <TDF_LabelSequence.hxx>
#include <TopLoc_Location.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <gp_Trsf.hxx>

#include "exchange/model/CleanText.h"

namespace KVR
{

namespace
{

UTF8String Numbered(char const* kind, std::size_t number)
{
    return UTF8String(kind + std::to_string(number));
}

Matrix3d MatrixOf(TopLoc_Location const& location)
{
    Matrix3d matrix;
    if (location.IsIdentity())
        return matrix;
    gp_Trsf const transform = location.Transformation();
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            // Adding 0 turns -0 into 0.
            matrix.SetElement(row, column, transform.Value(row + 1, column + 1) + 0.0);
    return matrix;
}

}  // namespace

ProductPlan::ProductPlan(Handle(TDocStd_Document) const& document)
    : m_colorTool(XCAFDoc_DocumentTool::ColorTool(document->Main()))
{
    auto const shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    TDF_LabelSequence free;
    shapes->GetFreeShapes(free);
    for (TDF_Label const& label : free)
        roots.push_back(Add(label));
    std::size_t instanceCount = 0;
    for (std::size_t i = 0; i < components.size(); ++i)
    {
        if (!components[i].isAssembly)
        {
            components[i].shape = XCAFDoc_ShapeTool::GetShape(components[i].label);
            continue;
        }
        TDF_LabelSequence labels;
        XCAFDoc_ShapeTool::GetComponents(components[i].label, labels, false);
        for (TDF_Label const& label : labels)
        {
            TDF_Label target;
            if (!XCAFDoc_ShapeTool::GetReferredShape(label, target))
                continue;
            std::size_t const placed = Add(target);
            Authoring::InstanceRecord instance;
            instance.id = Numbered("inst", ++instanceCount);
            instance.label = NameOfLabel(label);
            if (instance.label.IsEmpty())
                instance.label = components[placed].name;
            instance.targetId = components[placed].id;
            instance.transform = MatrixOf(XCAFDoc_ShapeTool::GetLocation(label));
            instance.isVisible = m_colorTool->IsVisible(label) && components[placed].isVisible;
            m_instances.Bind(label, instance.id);
            components[i].instances.push_back(std::move(instance));
            components[i].origins.push_back({label, placed});
        }
    }
}

std::size_t ProductPlan::Add(TDF_Label const& label)
{
    if (std::size_t const* const known = m_components.Seek(label))
        return *known;
    std::size_t const index = components.size();
    ComponentPlan component;
    component.label = label;
    component.isAssembly = XCAFDoc_ShapeTool::IsAssembly(label);
    m_assemblyCount += component.isAssembly ? 1 : 0;
    component.id =
        component.isAssembly ? Numbered("asm", m_assemblyCount) : Numbered("part", index + 1 - m_assemblyCount);
    component.name = NameOfLabel(label);
    component.isVisible = m_colorTool->IsVisible(label);
    m_components.Bind(label, index);
    components.push_back(std::move(component));
    return index;
}

UTF8String ProductPlan::IdOf(TDF_Label const& label) const
{
    if (std::size_t const* const component = m_components.Seek(label))
        return components[*component].id;
    UTF8String const* const instance = m_instances.Seek(label);
    return instance ? *instance : UTF8String();
}

std::size_t ProductPlan::ComponentOf(TDF_Label const& label) const
{
    std::size_t const* const component = m_components.Seek(label);
    return component ? *component : components.size();
}

}  // namespace KVR
