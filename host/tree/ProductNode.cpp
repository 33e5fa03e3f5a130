#include "host/tree/ProductNode.h"

#include "framework/api/kvr_api.h"

namespace KVR
{

// Finds out what an object is, by visiting it.
class NodeMaker final : public ObjectVisitor
{
public:
    NodeMaker(IProducer& producer, ProductNode& node) : m_producer(producer), m_node(node) {}

    void Visit(IFile* file) override
    {
        Owner(*file, "IFile");
        m_node.m_file = file;
    }
    void Visit(IAssembly* assembly) override
    {
        Owner(*assembly, "IAssembly");
        m_node.m_assembly = assembly;
    }
    void Visit(IPart* part) override
    {
        Owner(*part, "IPart");
        m_node.m_part = part;
    }
    void Visit(IInstance* instance) override
    {
        Take("IInstance", instance->IsVisible());
        m_node.isInstance = true;
        UTF8String const targetId = instance->TargetId().Id();
        if (IObject* const target = m_producer.Load(targetId))
        {
            m_isTarget = true;
            target->AcceptVisitor(this);
        }
    }
    void Visit(IAnnotationCallout* object) override { Take("IAnnotationCallout", object->IsVisible()); }
    void Visit(IAssemblyFeatureOverride* object) override { Take("IAssemblyFeatureOverride", object->IsVisible()); }
    void Visit(ILayer* object) override { Take("ILayer", object->IsVisible()); }
    void Visit(IView* object) override { Take("IView", object->IsVisible()); }
    void Visit(IBrep* object) override { Geometry("IBrep", object->IsVisible()); }
    void Visit(ICurve* object) override { Geometry("ICurve", object->IsVisible()); }
    void Visit(IExtensionGeometry* object) override { Take("IExtensionGeometry", object->IsVisible()); }
    void Visit(IGeometricSet* object) override { Take("IGeometricSet", object->IsVisible()); }
    void Visit(IPoint* object) override { Take("IPoint", object->IsVisible()); }
    void Visit(IPointCloud* object) override { Take("IPointCloud", object->IsVisible()); }
    void Visit(IPolygonMesh* object) override { Geometry("IPolygonMesh", object->IsVisible()); }
    void Visit(ISketch* object) override { Take("ISketch", object->IsVisible()); }
    void Visit(IWorkAxis* object) override { Take("IWorkAxis", object->IsVisible()); }
    void Visit(IWorkPlane* object) override { Take("IWorkPlane", object->IsVisible()); }
    void Visit(IWorkPoint* object) override { Take("IWorkPoint", object->IsVisible()); }
    void Visit(IAnnotationCalloutElement*) override { Take("IAnnotationCalloutElement", std::nullopt); }
    void Visit(ICamera*) override { Take("ICamera", std::nullopt); }
    void Visit(IGroup*) override { Take("IGroup", std::nullopt); }
    void Visit(ILod*) override { Take("ILod", std::nullopt); }
    void Visit(IMaterialTexture*) override { Take("IMaterialTexture", std::nullopt); }
    void Visit(IRenderStyle*) override { Take("IRenderStyle", std::nullopt); }
    void Visit(IGenericObject*) override { Take("IGenericObject", std::nullopt); }
    void Visit(ICoordSys*) override { Take("ICoordSys", std::nullopt); }

private:
    void Take(std::string_view kind, std::optional<bool> visible)
    {
        // An instance places files and components alone; another target is none.
        if (m_isTarget)
            return;
        m_node.kind = kind;
        m_node.visible = visible;
    }

    void Geometry(std::string_view kind, bool visible)
    {
        Take(kind, visible);
        m_node.m_hasGeometry = !m_isTarget;
    }

    void Owner(IObject const& object, std::string_view kind)
    {
        Take(kind, std::nullopt);
        m_node.ownerKind = kind;
        m_node.ownerId = object.Id();
        m_node.ownerLabel = object.Label();
    }

    IProducer& m_producer;
    ProductNode& m_node;
    bool m_isTarget = false;
};

ProductNode ProductNode::Of(IProducer& producer, UTF8String const& id)
{
    ProductNode node;
    node.id = id;
    node.kind = "missing";
    if (IObject* const object = id.IsEmpty() ? nullptr : producer.Load(id))
    {
        node.label = object->Label();
        NodeMaker maker(producer, node);
        object->AcceptVisitor(&maker);
    }
    return node;
}

unsigned long long ProductNode::ChildCount() const
{
    if (m_file)
        return m_file->ChildCount();
    if (m_assembly)
        return m_assembly->ChildCount();
    return m_part ? m_part->ChildCount() : 0;
}

UTF8String ProductNode::ChildIdAt(unsigned long long index) const
{
    if (m_file)
        return m_file->ChildAt(index).Id();
    if (m_assembly)
        return m_assembly->ChildAt(index).Id();
    return m_part ? m_part->ChildAt(index).Id() : UTF8String();
}

}  // namespace KVR
