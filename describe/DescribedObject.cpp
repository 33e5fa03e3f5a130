#include "describe/Tables.h"

#include "framework/api/kvr_api.h"

namespace KVR
{

namespace
{

template <class T>
DescribedObject As(T const& object)
{
    return {&TableOf<T>::kTable, &object};
}

class Finder final : public ObjectVisitor
{
public:
    void Visit(IGenericObject* object) override { m_found = As(*object); }
    void Visit(IView* object) override { m_found = As(*object); }
    void Visit(ICamera* object) override
    {
        auto const* const sectionCamera = dynamic_cast<ISectionCamera const*>(object);
        m_found = sectionCamera ? As(*sectionCamera) : As(*object);
    }
    void Visit(IAssemblyFeatureOverride* object) override { m_found = As(*object); }
    void Visit(IAnnotationCalloutElement* object) override { m_found = As(*object); }
    void Visit(IAnnotationCallout* object) override { m_found = As(*object); }
    void Visit(IMaterialTexture* object) override { m_found = As(*object); }
    void Visit(IExtensionGeometry* object) override { m_found = As(*object); }
    void Visit(IPointCloud* object) override { m_found = As(*object); }
    void Visit(ILod* object) override { m_found = As(*object); }
    void Visit(IPolygonMesh* object) override { m_found = As(*object); }
    void Visit(ICoordSys* object) override { m_found = As(*object); }
    void Visit(IWorkPlane* object) override { m_found = As(*object); }
    void Visit(IWorkAxis* object) override { m_found = As(*object); }
    void Visit(IWorkPoint* object) override { m_found = As(*object); }
    void Visit(ISketch* object) override { m_found = As(*object); }
    void Visit(ICurve* object) override { m_found = As(*object); }
    void Visit(IPoint* object) override { m_found = As(*object); }
    void Visit(IRenderStyle* object) override
    {
        auto const* const vitreolStyle = dynamic_cast<IVitreolRenderStyle const*>(object);
        m_found = vitreolStyle ? As(*vitreolStyle) : As(*object);
    }
    void Visit(IGroup* object) override { m_found = As(*object); }
    void Visit(IInstance* object) override { m_found = As(*object); }
    void Visit(IAssembly* object) override { m_found = As(*object); }
    void Visit(IFile* object) override { m_found = As(*object); }
    void Visit(IPart* object) override { m_found = As(*object); }
    void Visit(IGeometricSet* object) override { m_found = As(*object); }
    void Visit(ILayer* object) override { m_found = As(*object); }
    void Visit(IBrep* object) override { m_found = As(*object); }

    DescribedObject Found() const { return m_found; }

private:
    DescribedObject m_found;
};

class DataFinder final : public CurveDataVisitor
{
public:
    using CurveDataVisitor::Visit;

    void Visit(ICompositeCurveData* data) override { m_found = As(*data); }
    void Visit(INurbsCurveData* data) override { m_found = As(*data); }
    void Visit(IEllipseData* data) override { m_found = As(*data); }
    void Visit(IPolyLineData* data) override { m_found = As(*data); }
    void Visit(IRayData* data) override { m_found = As(*data); }
    void Visit(IStraightData* data) override { m_found = As(*data); }

    DescribedObject Found() const { return m_found; }

private:
    DescribedObject m_found;
};

}  // namespace

DescribedObject DescribedObject::Of(IObject& object)
{
    Finder finder;
    object.AcceptVisitor(&finder);
    return finder.Found();
}

DescribedObject DescribedObject::Of(ICurveData& data)
{
    DataFinder finder;
    data.AcceptVisitor(&finder);
    return finder.Found();
}

}  // namespace KVR
