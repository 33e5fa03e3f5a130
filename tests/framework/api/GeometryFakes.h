#pragma once

#include "tests/framework/api/Fakes.h"

namespace KVR
{

class FakeBrep : public FakeGeometry<IBrep>
{
public:
    using FakeGeometry::FakeGeometry;

    IBodyData* BodyDI() const override { return nullptr; }
    ProducerGeometryTypeEnum SrcGeomType() const override { return kProducerGeometryType_Unknown; }
    BrepTypeEnum BrepType_ex() const override { return kBrepType_Unknown; }
    BODY* Body() const override { return nullptr; }
};

class FakeCurve : public FakeGeometry<ICurve>
{
public:
    using FakeGeometry::FakeGeometry;

    unsigned long long CurveDataCount() const override { return 0; }
    ICurveData* CurveDataAt(unsigned long long) const override { return nullptr; }
    GMK::gmk_array<curve*> KernelCurves() const override { return {}; }
};

class FakePoint : public FakeGeometry<IPoint>
{
public:
    using FakeGeometry::FakeGeometry;

    double X() const override { return 0.0; }
    double Y() const override { return 0.0; }
    double Z() const override { return 0.0; }
    IsValueSpecifiedEnum PointColor(Color&) const override { return kIsValueSpecified_No; }
    UTF8String MarkerStyleId() const override { return {}; }
    IsValueSpecifiedEnum PointSize(double&) const override { return kIsValueSpecified_No; }
    void SetTransform(Matrix3d const&) override {}
};

class FakePointCloud : public FakeGeometry<IPointCloud>
{
public:
    using FakeGeometry::FakeGeometry;

    std::size_t PointCount() const override { return 0; }
    void Point(std::size_t, double*, double*, double*) const override {}
    void SetTransform(Matrix3d const&) override {}
};

class FakeSketch : public FakeGeometry<ISketch>
{
public:
    using FakeGeometry::FakeGeometry;

    SketchTypeEnum SketchType() const override { return kSketchType_2D; }
    IdSet CurveIds() const override { return {}; }
    IdSet PointIds() const override { return {}; }
    unsigned long long ChildCount() const override { return 0; }
    UTF8String ChildIdAt(unsigned long long) const override { return {}; }
};

class FakeWorkAxis : public FakeGeometry<IWorkAxis>
{
public:
    using FakeGeometry::FakeGeometry;

    void StartPoint(double&, double&, double&) const override {}
    void Axis(double&, double&, double&) const override {}
    void EndPoint(double&, double&, double&) const override {}
};

class FakeWorkPlane : public FakeGeometry<IWorkPlane>
{
public:
    using FakeGeometry::FakeGeometry;

    void Origin(double&, double&, double&) const override {}
    void Normal(double&, double&, double&) const override {}
    IsValueSpecifiedEnum Reference(double&, double&, double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum DisplayRange(double&, double&, double&, double&, double&, double&) const override
    {
        return kIsValueSpecified_No;
    }
};

class FakeWorkPoint : public FakeGeometry<IWorkPoint>
{
public:
    using FakeGeometry::FakeGeometry;

    void Position(double&, double&, double&) const override {}
};

// A mesh of nothing but the segments that it is given.
class FakePolygonMesh : public FakeGeometry<IPolygonMesh>
{
public:
    using FakeGeometry::FakeGeometry;

    std::vector<FaceSegmentInfo> faces;
    std::vector<EdgeSegmentInfo> edges;

    unsigned long FaceSegmentCount() const override { return faces.size(); }
    IsValueSpecifiedEnum FaceSegmentAt(unsigned long index, FaceSegmentInfo& segment) const override
    {
        return Get(faces, index, segment);
    }
    unsigned long EdgeSegmentCount() const override { return edges.size(); }
    IsValueSpecifiedEnum EdgeSegmentInfoAt(unsigned long index, EdgeSegmentInfo& segment) const override
    {
        return Get(edges, index, segment);
    }

    unsigned long VertexCount() const override { return 0; }
    PolygonVertex VertexAt(unsigned long) const override { ThrowInvalidSubscript(); }
    unsigned long NormalCount() const override { return 0; }
    Normal NormalAt(unsigned long) const override { ThrowInvalidSubscript(); }
    unsigned long TextureVertexSetCount() const override { return 0; }
    ITextureVertexSet* TextureVertexSetAt(unsigned long) const override { ThrowInvalidSubscript(); }
    unsigned long PolygonCount() const override { return 0; }
    IsValueSpecifiedEnum PolygonAt(unsigned long, EditablePolygon const*&) const override { ThrowInvalidSubscript(); }
    PolygonMeshTypeEnum MeshType() const override { return kPolygonMeshType_Regular; }
    PolygonMeshOrientationEnum MeshOrientation() const override { return kPolygonMeshOrientation_CounterClockWise; }
    IsValueSpecifiedEnum LODId(UTF8String&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum PolygonSetGroups(IdSetSet&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum PolygonMaterialIndexAt(unsigned long, unsigned int&) const override
    {
        ThrowInvalidSubscript();
    }
    IsValueSpecifiedEnum PolygonMaterials(IdSetSet&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum IsSingleSided(bool&) const override { return kIsValueSpecified_No; }
    void SetMeshTransform(Matrix3d const&) override {}
    unsigned long PolygonSetGroupCount() const override { return 0; }

private:
    template <class Segment>
    static IsValueSpecifiedEnum Get(std::vector<Segment> const& segments, unsigned long index, Segment& segment)
    {
        if (index >= segments.size())
            return kIsValueSpecified_No;
        segment = segments[index];
        return kIsValueSpecified_Yes;
    }
};

}  // namespace KVR
