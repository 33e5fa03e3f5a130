#pragma once

#include <memory>

#include "framework/api/Export.h"
#include "framework/api/ObjectVisitor.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

class IObject;

/// The registry that owns every object of a scene that can be found by id. Looking up takes constant time. As a visitor
/// it registers what it visits.
class KVR_API ObjectCollector : public ObjectVisitor
{
public:
    ObjectCollector();
    /// Destroys what is still registered.
    ~ObjectCollector() override;
    ObjectCollector(ObjectCollector const&) = delete;
    ObjectCollector& operator=(ObjectCollector const&) = delete;

    void Visit(IGenericObject* object) override;
    void Visit(IView* object) override;
    void Visit(ICamera* object) override;
    void Visit(IAssemblyFeatureOverride* object) override;
    void Visit(IAnnotationCalloutElement* object) override;
    void Visit(IAnnotationCallout* object) override;
    void Visit(IMaterialTexture* object) override;
    void Visit(IExtensionGeometry* object) override;
    void Visit(IPointCloud* object) override;
    void Visit(ILod* object) override;
    void Visit(IPolygonMesh* object) override;
    void Visit(ICoordSys* object) override;
    void Visit(IWorkPlane* object) override;
    void Visit(IWorkAxis* object) override;
    void Visit(IWorkPoint* object) override;
    void Visit(ISketch* object) override;
    void Visit(ICurve* object) override;
    void Visit(IPoint* object) override;
    void Visit(IRenderStyle* object) override;
    void Visit(IGroup* object) override;
    void Visit(IInstance* object) override;
    void Visit(IAssembly* object) override;
    void Visit(IFile* object) override;
    void Visit(IPart* object) override;
    void Visit(IGeometricSet* object) override;
    void Visit(ILayer* object) override;
    void Visit(IBrep* object) override;

    /// Destroys all objects of the id; whether there was one. Pointers to them are void afterwards.
    virtual bool Dispose(UTF8String const& id);

    /// Takes the object over and registers it under its Id(). Of several objects with one id the first is answered, and
    /// all are kept. When memory runs out the object is destroyed and std::bad_alloc goes on. Null has no effect.
    void AddObject(IObject* object);
    /// The object, owned by the collector; null when there is none.
    IObject* QueryObject(UTF8String const& id) const;
    /// Whether there is an object of that id.
    bool HasObject(UTF8String const& id) const;
    /// Destroys all objects, in the order in which they came.
    void Destroy() noexcept;

private:
    struct Registry;

    std::unique_ptr<Registry> m_registry;
};

}  // namespace KVR
