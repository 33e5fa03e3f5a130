#include "host/export/PartShapes.h"

#include <BRepBuilderAPI_MakeVertex.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_TShape.hxx>
#include <cmath>
#include <memory>
#include <optional>
#include <tuple>

#include "framework/api/kvr_api.h"
#include "framework/kernel/entity.h"
#include "host/export/CurveShape.h"
#include "host/export/MeshShell.h"
#include "host/export/SceneAnswers.h"
#include "host/export/ShapePlacement.h"

namespace KVR
{

namespace
{

// Sets are read to 1,000 levels; whoever serves deeper ones must not end the export either.
constexpr unsigned kDeepestNesting = 1001;

gp_Mat Unit()
{
    gp_Mat unit;
    unit.SetIdentity();
    return unit;
}

// The change of a component after the place of what stands in it.
Matrix3d Changed(gp_Mat const& change, Matrix3d const& transform, double scale)
{
    Matrix3d linear;
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 3; ++column)
            linear.SetElement(row, column, change(row + 1, column + 1));
    }
    Matrix3d place = transform;
    for (int row = 0; row < 3; ++row)
        place.SetElement(row, 3, scale * transform.Element(row, 3));
    return Product(linear, place);
}

}  // namespace

// Makes the items of the objects that it visits.
class PartVisitor final : public ObjectVisitor
{
public:
    PartVisitor(PartShapes& shapes, double metres, gp_Mat const& change)
        : m_shapes(shapes), m_metres(metres), m_change(change)
    {
    }

    void Load(UTF8String const& id)
    {
        if (IObject* const object = id.IsEmpty() ? nullptr : m_shapes.m_producer.Load(id))
            object->AcceptVisitor(this);
    }

    using ObjectVisitor::Visit;

    void Visit(IBrep* brep) override
    {
        BODY const* const body = brep->Body();
        if (!body)
            return Miss("bodies without a shape");
        Add(*brep, body->Shape(), body, brep->StylesMap());
    }

    void Visit(ICurve* curve) override
    {
        CurveShape const made = CurveShape::Of(*curve);
        Miss("curves", made.missing);
        if (made.shape.IsNull())
            return made.missing == 0 ? Miss("curves without a shape") : void();
        Add(*curve, made.shape, nullptr, nullptr);
    }

    void Visit(IPoint* point) override
    {
        gp_Pnt const place(point->X(), point->Y(), point->Z());
        if (!std::isfinite(place.X()) || !std::isfinite(place.Y()) || !std::isfinite(place.Z()))
            return Miss("points");
        Add(*point, BRepBuilderAPI_MakeVertex(place).Shape(), nullptr, nullptr);
    }

    void Visit(IPolygonMesh* mesh) override
    {
        ExtensionDataContent twin;
        if (mesh->ExtensionDataByTypeId("kvr.body", twin) == kIsValueSpecified_Yes &&
            dynamic_cast<IBrep const*>(m_shapes.m_producer.Load(twin.Data())))
            return;
        TopoDS_Shape const shell = m_shapes.m_options.meshFaces ? MeshShell(*mesh) : TopoDS_Shape();
        if (shell.IsNull())
            return Miss("meshes without a body");
        Add(*mesh, shell, nullptr, nullptr);
    }

    void Visit(ISketch* sketch) override
    {
        Enter(*sketch,
              [&]
              {
                  IdSet const points = sketch->PointIds();
                  for (unsigned long long i = 0; i < points.Size(); ++i)
                      Load(points.At(i));
                  IdSet const curves = sketch->CurveIds();
                  for (unsigned long long i = 0; i < curves.Size(); ++i)
                      Load(curves.At(i));
              });
    }

    void Visit(IGeometricSet* set) override { VisitChildren(*set); }
    void Visit(IExtensionGeometry* geometry) override { VisitChildren(*geometry); }
    void Visit(IAnnotationCallout* callout) override { m_content.callouts.push_back(callout); }
    void Visit(IAssemblyFeatureOverride*) override { Miss("feature overrides"); }
    void Visit(IPointCloud*) override { Miss("point clouds"); }
    void Visit(IWorkAxis*) override { Miss("work features"); }
    void Visit(IWorkPlane*) override { Miss("work features"); }
    void Visit(IWorkPoint*) override { Miss("work features"); }

    PartContent Take() { return std::move(m_content); }

private:
    void Miss(char const* kind, unsigned long long count = 1) { m_shapes.m_notCarried.Add(kind, count); }

    template <class Owner>
    void VisitChildren(Owner const& owner)
    {
        Enter(owner,
              [&]
              {
                  for (unsigned long long i = 0; i < owner.ChildCount(); ++i)
                      Load(owner.ChildAt(i).Id());
              });
    }

    // What stands in the set is placed and hidden with it.
    template <class Children>
    void Enter(IGeometry const& set, Children visitChildren)
    {
        if (m_depth > kDeepestNesting)
            return;
        auto const before = std::make_tuple(m_place, m_isHidden, m_metres);
        double const scale = ScaleOf(set);
        if (Matrix3d const* const transform = set.Transform())
            m_place = Product(m_place, Changed(Unit(), *transform, scale));
        m_isHidden = m_isHidden || !set.IsVisible();
        m_metres = MetresOf(set).value_or(m_metres);
        ++m_depth;
        visitChildren();
        --m_depth;
        std::tie(m_place, m_isHidden, m_metres) = before;
    }

    double ScaleOf(IGeometry const& geometry) const
    {
        double const scale = MetresOf(geometry).value_or(m_metres) / m_shapes.m_options.metres;
        return std::abs(scale - 1.0) < 1e-12 ? 1.0 : scale;
    }

    void Add(IGeometry const& object, TopoDS_Shape const& shape, BODY const* body, SubEntityToStylesMap const* styles)
    {
        double const scale = ScaleOf(object);
        Matrix3d place = m_place;
        if (Matrix3d const* const transform = object.Transform())
            place = Product(place, Changed(Unit(), *transform, scale));
        std::unique_ptr<ShapePlacement> const placement =
            ShapePlacement::Of(Changed(m_change, place, 1.0), 1.0, Unit() * scale);
        if (!placement || shape.IsNull())
            return Miss("shapes whose place is none");
        try
        {
            Add(object, shape, *placement, place.IsIdentity(), body, styles);
        }
        catch (Standard_Failure const&)
        {
            Miss("shapes that Open CASCADE cannot place");
        }
    }

    void Add(IGeometry const& object, TopoDS_Shape const& shape, ShapePlacement const& placement, bool isInPlace,
             BODY const* body, SubEntityToStylesMap const* styles)
    {
        std::optional<ChangedShape> copy;
        if (!placement.IsRigid() || IsUsed(shape))
            copy.emplace(shape, placement.change);
        bool const stays = isInPlace && ElementsOf(m_change) == ElementsOf(Unit());
        auto const placed = [&](TopoDS_Shape const& part, TopoDS_Shape const& changed)
        {
            TopoDS_Shape const now = copy ? changed : part;
            return stays || now.IsNull() ? now : now.Moved(placement.motion);
        };
        PartItem item;
        item.id = object.Id();
        item.name = NameOf(object);
        item.shape = placed(shape, copy ? copy->Shape() : TopoDS_Shape());
        item.isHidden = m_isHidden || !object.IsVisible();
        item.styles = object.Styles();
        if (item.styles.IsEmpty())
            item.styles = object.NetStyles();
        auto const take = [&](auto const& parts, std::vector<BODY::SubId> const& ids)
        {
            for (BODY::SubId const& sub : ids)
            {
                IdSet subStyles;
                bool const isStyled =
                    styles && styles->Styles(UTF8String(sub.dataId), subStyles) == kIsValueSpecified_Yes;
                bool const isWanted = m_shapes.m_options.wantedSubShapes.count(sub.dataId) > 0;
                if ((!isStyled && !isWanted) || sub.place >= parts.size())
                    continue;
                TopoDS_Shape const& part = parts[sub.place]->Shape();
                TopoDS_Shape const found = placed(part, copy ? copy->PartOf(part) : TopoDS_Shape());
                if (found.IsNull())
                    continue;
                if (isStyled)
                    item.subStyles.emplace_back(found, subStyles);
                if (isWanted)
                    item.subShapes.emplace_back(sub.dataId, found);
            }
        };
        if (body && ((styles && styles->Size() > 0) || !m_shapes.m_options.wantedSubShapes.empty()))
        {
            take(body->FaceList(), body->FaceDataIds());
            take(body->EdgeList(), body->EdgeDataIds());
        }
        m_content.items.push_back(std::move(item));
    }

    // Whether the shape or a face of it is in use; from here on it is.
    bool IsUsed(TopoDS_Shape const& shape)
    {
        TopTools_IndexedMapOfShape faces;
        TopExp::MapShapes(shape, TopAbs_FACE, faces);
        bool isUsed = m_shapes.m_used.count(shape.TShape().get()) > 0;
        for (int i = 1; i <= faces.Extent() && !isUsed; ++i)
            isUsed = m_shapes.m_used.count(faces(i).TShape().get()) > 0;
        if (isUsed)
            return true;
        m_shapes.m_used.insert(shape.TShape().get());
        for (int i = 1; i <= faces.Extent(); ++i)
            m_shapes.m_used.insert(faces(i).TShape().get());
        return false;
    }

    PartShapes& m_shapes;
    double m_metres;
    gp_Mat m_change;
    Matrix3d m_place;
    bool m_isHidden = false;
    unsigned m_depth = 0;
    PartContent m_content;
};

PartShapes::PartShapes(IProducer& producer, Options options, NotCarried& notCarried)
    : m_producer(producer), m_options(std::move(options)), m_notCarried(notCarried)
{
}

PartContent PartShapes::Of(std::vector<UTF8String> const& ids, double metres, gp_Mat const& change)
{
    PartVisitor visitor(*this, metres, change);
    for (UTF8String const& id : ids)
        visitor.Load(id);
    return visitor.Take();
}

}  // namespace KVR
