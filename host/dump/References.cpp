#include "host/dump/References.h"

#include "framework/api/kvr_api.h"
#include "host/dump/Ask.h"

namespace KVR
{

namespace
{

class Collector final : public ObjectVisitor
{
public:
    explicit Collector(std::vector<UTF8String>& ids) : m_ids(ids) {}

    using ObjectVisitor::Visit;

    void Visit(IFile* file) override
    {
        Children(*file);
        AttributeSets(*file);
    }

    void Visit(IAssembly* assembly) override
    {
        Children(*assembly);
        AttributeSets(*assembly);
        Set([&] { return assembly->Styles(); });
        auto const count = Ask([&] { return assembly->CrossLevelStyleCount(); }).value_or(0);
        for (unsigned long long i = 0; i < count; ++i)
        {
            Set(
                [&]
                {
                    IdSet path;
                    IdSet styles;
                    assembly->CrossLevelStyleAt(i, path, styles);
                    return styles;
                });
        }
    }

    void Visit(IPart* part) override
    {
        Children(*part);
        AttributeSets(*part);
        Set([&] { return part->Styles(); });
    }

    void Visit(IInstance* instance) override
    {
        if (auto const target = Ask([&] { return instance->TargetId(); }))
            Add(target->Id());
        Set([&] { return instance->Styles(); });
        Set([&] { return instance->NetStyles(); });
    }

    void Visit(IAssemblyFeatureOverride* featureOverride) override { Children(*featureOverride); }

    void Visit(IBrep* brep) override
    {
        Geometry(*brep);
        SubEntityToStylesMap const* const map = Ask([&] { return brep->StylesMap(); }).value_or(nullptr);
        for (unsigned long long i = 0; map && i < map->Size(); ++i)
            Set([&] { return map->StylesAt(i); });
    }

    void Visit(IPolygonMesh* mesh) override
    {
        Geometry(*mesh);
        IdSetSet materials;
        if (Ask([&] { return mesh->PolygonMaterials(materials); }).value_or(kIsValueSpecified_No) !=
            kIsValueSpecified_Yes)
            return;
        for (unsigned long long i = 0; i < materials.Size(); ++i)
            Set([&] { return materials.At(i); });
    }

    void Visit(ICurve* curve) override { Geometry(*curve); }
    void Visit(IPoint* point) override { Geometry(*point); }
    void Visit(IPointCloud* cloud) override { Geometry(*cloud); }
    void Visit(IWorkAxis* axis) override { Geometry(*axis); }
    void Visit(IWorkPlane* plane) override { Geometry(*plane); }
    void Visit(IWorkPoint* point) override { Geometry(*point); }

    void Visit(ISketch* sketch) override
    {
        Set([&] { return sketch->CurveIds(); });
        Set([&] { return sketch->PointIds(); });
        Geometry(*sketch);
    }

    void Visit(IGeometricSet* set) override
    {
        Children(*set);
        Geometry(*set);
    }

    void Visit(IExtensionGeometry* geometry) override
    {
        Children(*geometry);
        Geometry(*geometry);
    }

    void Visit(ILayer* layer) override
    {
        Set([&] { return layer->GeometryItems(); });
        Set([&] { return layer->Styles(); });
    }

    void Visit(IGroup* group) override
    {
        Set([&] { return group->GeometryItems(); });
    }

    void Visit(IView* view) override
    {
        Set([&] { return view->CameraSet(); });
        auto const count = Ask([&] { return view->ViewMemberCount(); }).value_or(0);
        for (unsigned long long i = 0; i < count; ++i)
            Set([&] { return view->EntityStylesAt(i); });
    }

    void Visit(IAnnotationCallout* callout) override
    {
        Children(*callout);
        UTF8String plane;
        if (Ask([&] { return callout->AnnotationPlaneId(plane); }).value_or(kIsValueSpecified_No) ==
            kIsValueSpecified_Yes)
            Add(plane);
    }

    void Visit(IAnnotationCalloutElement* element) override
    {
        Children(*element);
        Set([&] { return element->Styles(); });
    }

private:
    // An empty id is what stands where there is no object.
    void Add(UTF8String const& id)
    {
        if (!id.IsEmpty())
            m_ids.push_back(id);
    }

    template <class Getter>
    void Set(Getter getter)
    {
        auto const ids = Ask([&]() -> IdSet { return getter(); });
        for (unsigned long long i = 0; ids && i < ids->Size(); ++i)
            Add(ids->At(i));
    }

    template <class Owner>
    void Children(Owner const& owner)
    {
        auto const count = Ask([&] { return owner.ChildCount(); }).value_or(0);
        for (unsigned long long i = 0; i < count; ++i)
        {
            if (auto const child = Ask([&] { return owner.ChildAt(i); }))
                Add(child->Id());
        }
    }

    void Geometry(IGeometry const& geometry)
    {
        Set([&] { return geometry.Styles(); });
        Set([&] { return geometry.NetStyles(); });
    }

    void AttributeSets(IAttributeSets const& sets)
    {
        Set([&] { return sets.StyleSet(); });
        Set([&] { return sets.TextureSet(); });
        Set([&] { return sets.LayerSet(); });
        Set([&] { return sets.GroupSet(); });
        Set([&] { return sets.LodSet(); });
        Set([&] { return sets.CameraSet(); });
        Set([&] { return sets.ViewSet(); });
    }

    std::vector<UTF8String>& m_ids;
};

}  // namespace

void CollectReferences(IObject& object, std::vector<UTF8String>& ids)
{
    Collector collector(ids);
    object.AcceptVisitor(&collector);
}

}  // namespace KVR
