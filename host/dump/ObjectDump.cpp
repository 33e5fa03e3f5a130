#include "host/dump/ObjectDump.h"

#include "framework/api/IGenericObject.h"
#include "framework/api/ObjectVisitor.h"
#include "host/dump/AnnotationDump.h"
#include "host/dump/AppearanceDump.h"
#include "host/dump/DumpContext.h"
#include "host/dump/GeometryDump.h"
#include "host/dump/MeshDump.h"
#include "host/dump/OrganisationDump.h"
#include "host/dump/SharedDump.h"
#include "host/dump/StructureDump.h"
#include "output/JsonWriter.h"

namespace KVR
{

namespace
{

// A row per interface: who writes its members.
class Dumper final : public ObjectVisitor
{
public:
    explicit Dumper(DumpContext const& context) : m_context(context) {}

    void Visit(IGenericObject* object) override { DumpObject(m_context, "IGenericObject", *object); }
    void Visit(IView* object) override { DumpView(m_context, *object); }
    void Visit(ICamera* object) override { DumpCamera(m_context, *object); }
    void Visit(IAssemblyFeatureOverride* object) override { DumpAssemblyFeatureOverride(m_context, *object); }
    void Visit(IAnnotationCalloutElement* object) override { DumpAnnotationCalloutElement(m_context, *object); }
    void Visit(IAnnotationCallout* object) override { DumpAnnotationCallout(m_context, *object); }
    void Visit(IMaterialTexture* object) override { DumpMaterialTexture(m_context, *object); }
    void Visit(IExtensionGeometry* object) override { DumpExtensionGeometry(m_context, *object); }
    void Visit(IPointCloud* object) override { DumpPointCloud(m_context, *object); }
    void Visit(ILod* object) override { DumpLod(m_context, *object); }
    void Visit(IPolygonMesh* object) override { DumpPolygonMesh(m_context, *object); }
    void Visit(ICoordSys* object) override { DumpObject(m_context, "ICoordSys", *object); }
    void Visit(IWorkPlane* object) override { DumpWorkPlane(m_context, *object); }
    void Visit(IWorkAxis* object) override { DumpWorkAxis(m_context, *object); }
    void Visit(IWorkPoint* object) override { DumpWorkPoint(m_context, *object); }
    void Visit(ISketch* object) override { DumpSketch(m_context, *object); }
    void Visit(ICurve* object) override { DumpCurve(m_context, *object); }
    void Visit(IPoint* object) override { DumpPoint(m_context, *object); }
    void Visit(IRenderStyle* object) override { DumpRenderStyle(m_context, *object); }
    void Visit(IGroup* object) override { DumpGroup(m_context, *object); }
    void Visit(IInstance* object) override { DumpInstance(m_context, *object); }
    void Visit(IAssembly* object) override { DumpAssembly(m_context, *object); }
    void Visit(IFile* object) override { DumpFile(m_context, *object); }
    void Visit(IPart* object) override { DumpPart(m_context, *object); }
    void Visit(IGeometricSet* object) override { DumpGeometricSet(m_context, *object); }
    void Visit(ILayer* object) override { DumpLayer(m_context, *object); }
    void Visit(IBrep* object) override { DumpBrep(m_context, *object); }

private:
    DumpContext const& m_context;
};

}  // namespace

void DumpAnyObject(DumpContext const& context, IObject& object)
{
    Dumper dumper(context);
    context.json.BeginObject();
    object.AcceptVisitor(&dumper);
    context.json.EndObject();
}

}  // namespace KVR
