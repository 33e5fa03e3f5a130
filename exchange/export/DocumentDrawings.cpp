#include "exchange/export/DocumentDrawings.h"

#include <BRepBuilderAPI_Transform.hxx>
#include <Standard_Failure.hxx>
#include <cmath>
#include <gp_Trsf.hxx>

#include "exchange/export/NoteDrawing.h"
#include "exchange/export/ShapePlacement.h"
#include "framework/api/LengthUnits.h"
#include "framework/api/kvr_api.h"
#include "framework/kernel/MemoryWatch.h"
#include "scene/CurveShape.h"
#include "scene/SceneNote.h"

namespace KVR
{

namespace
{

// The picture of a camera that does not say how large it is.
constexpr double kWindow = 1.0;

std::string Text(UTF16String const& text)
{
    return UTF8String(text).Value();
}

gp_XYZ Triple(Vector const& vector)
{
    return {vector[0], vector[1], vector[2]};
}

gp_XYZ Triple(Position const& point)
{
    return {point.X(), point.Y(), point.Z()};
}

gp_XYZ Triple(std::array<double, 3> const& triple)
{
    return {triple[0], triple[1], triple[2]};
}

bool IsFinite(gp_XYZ const& triple)
{
    return std::isfinite(triple.X()) && std::isfinite(triple.Y()) && std::isfinite(triple.Z());
}

// Axes with a main direction and, when it is not along that one, the x direction; nothing for bad numbers.
std::optional<gp_Ax2> AxesOf(gp_XYZ const& origin, gp_XYZ const& direction, gp_XYZ const& along)
{
    if (!IsFinite(origin) || !IsFinite(direction) || !IsFinite(along) || direction.Modulus() < gp::Resolution())
        return std::nullopt;
    if (direction.Crossed(along).Modulus() <= 1e-9 * direction.Modulus() * along.Modulus())
        return gp_Ax2(gp_Pnt(origin), gp_Dir(direction));
    return gp_Ax2(gp_Pnt(origin), gp_Dir(direction), gp_Dir(along));
}

std::optional<gp_Ax2> AxesOf(Plane const& plane, double scale)
{
    UnitVector reference;
    plane.ReferenceDirection(reference);
    return AxesOf(scale * Triple(plane.Origin()), Triple(plane.Normal()), Triple(reference));
}

}  // namespace

DocumentDrawings::DocumentDrawings(ExportTask& task, ShapeDocument& document, DocumentParts const& parts)
    : m_task(task), m_document(document), m_parts(parts)
{
}

void DocumentDrawings::FindProducts(std::vector<DocumentVariant const*> const& variants)
{
    for (DocumentVariant const* const variant : variants)
    {
        m_products.emplace(std::string(variant->component->id), variant->label);
        for (SceneGeometry const& geometry : variant->component->geometry)
            if (dynamic_cast<IAnnotationCallout const*>(geometry.object))
                m_callouts.insert(std::string(geometry.id));
    }
}

void DocumentDrawings::AddMembers(ShapeDocument::View& view, IView const& source)
{
    view.showsAll = false;
    // A view of a document names what it shows, whichever of its occurrences the members are.
    std::unordered_set<std::string> named;
    for (unsigned long long i = 0; i < source.ViewMemberCount(); ++i)
    {
        IdSet const path = source.OccurrencePathAt(i);
        std::string const id = path.IsEmpty() ? std::string() : path.At(path.Size() - 1).Value();
        auto const product = m_products.find(id);
        bool const isCallout = m_callouts.count(id) > 0;
        if (!source.EntityVisibilityAt(i) || (!isCallout && product == m_products.end()))
            m_document.notCarried.Add("members of views");
        else if (named.insert(id).second)
            view.members.push_back({isCallout ? TDF_Label() : product->second, isCallout ? id : std::string()});
    }
}

void DocumentDrawings::AddViews(std::vector<DocumentVariant const*> const& variants)
{
    FindProducts(variants);
    std::unordered_set<std::string> used;
    for (SceneReference const& listed : m_task.scene.Views())
    {
        auto const* const view = dynamic_cast<IView const*>(listed.object);
        if (!view)
            continue;
        IdSet const cameras = view->CameraSet();
        bool hasCamera = false;
        for (unsigned long long i = 0; i < cameras.Size(); ++i)
        {
            if (auto const* const camera = dynamic_cast<ICamera const*>(m_task.producer.Load(cameras.At(i))))
            {
                AddCamera(*camera, view->Label().IsEmpty() ? std::string(listed.id) : Text(view->Label()), view);
                used.insert(cameras.At(i).Value());
                hasCamera = true;
            }
        }
        if (!hasCamera)
            m_document.notCarried.Add("views without a camera");
    }
    for (SceneReference const& listed : m_task.scene.Cameras())
    {
        std::string const id(listed.id);
        auto const* const camera = dynamic_cast<ICamera const*>(listed.object);
        if (camera && used.count(id) == 0)
            AddCamera(*camera, camera->Label().IsEmpty() ? id : Text(camera->Label()), nullptr);
    }
}

void DocumentDrawings::AddCamera(ICamera const& camera, std::string const& name, IView const* source)
{
    UnitTypeEnum unit = kUnitType_Unknown;
    double const own = camera.LengthUnit(unit) == kIsValueSpecified_Yes ? MetresOf(unit) : 0.0;
    double const scale = (own > 0.0 ? own : m_task.scene.MetresPerUnit()) / m_document.metresPerUnit;
    gp_XYZ const eye = scale * Triple(camera.CameraPosition());
    gp_XYZ const direction = Triple(camera.CameraDirection());
    std::optional<gp_Ax2> const axes =
        AxesOf(eye, direction.Reversed(), direction.Crossed(Triple(camera.CameraUpDirection())));
    if (!axes)
        return m_document.notCarried.Add("cameras that look nowhere");
    ShapeDocument::View view;
    view.name = name;
    view.isPerspective = camera.CameraType() == ICamera::kCameraType_Perspective;
    view.eye = *axes;
    double distance = 0.0;
    if (camera.DistanceToViewPlane(distance) == kIsValueSpecified_Yes && std::isfinite(distance))
        view.distance = scale * distance;
    double angle = 0.0;
    double height = 0.0;
    double ratio = 1.0;
    view.height = kWindow;
    if (camera.ViewWindowHeightForParallelCamera(height) == kIsValueSpecified_Yes && std::isfinite(height) &&
        height > 0.0)
        view.height = scale * height;
    else if (camera.ViewAngle(angle) == kIsValueSpecified_Yes && angle > 0.0 && angle < 3.0 && view.distance > 0.0)
        view.height = 2.0 * view.distance * std::tan(0.5 * angle);
    if (camera.AspectRatio(ratio) != kIsValueSpecified_Yes || !std::isfinite(ratio) || ratio <= 0.0)
        ratio = 1.0;
    view.width = ratio * view.height;
    // Along the direction to the eye, from the eye.
    auto const distanceOf = [&](Plane const& plane)
    { return (scale * Triple(plane.Origin()) - eye).Dot(view.eye.Direction().XYZ()); };
    Plane plane;
    if (camera.NearPlane(plane) == kIsValueSpecified_Yes && std::isfinite(distanceOf(plane)))
        view.nearDistance = distanceOf(plane);
    if (camera.FarPlane(plane) == kIsValueSpecified_Yes && std::isfinite(distanceOf(plane)))
        view.farDistance = distanceOf(plane);
    if (auto const* const section = dynamic_cast<ISectionCamera const*>(&camera))
    {
        for (unsigned long long i = 0; i < section->SectionPlaneCount(); ++i)
        {
            if (std::optional<gp_Ax2> const cut = AxesOf(section->SectionPlaneAt(i), scale))
                view.cuts.push_back(*cut);
        }
    }
    if (source)
        AddMembers(view, *source);
    m_document.views.push_back(std::move(view));
}

void DocumentDrawings::AddFacts(ShapeDocument::Callout& drawn, IAnnotationCallout const& callout, double metresPerUnit)
{
    drawn.kind = SceneNote::KindOf(callout);
    drawn.details = AnnotationDetails::Of(SceneNote::DetailsOf(callout)).value_or(AnnotationDetails());
    UnitTypeEnum unit = kUnitType_Unknown;
    IText const* const text = callout.Text();
    double const own = text && text->LengthUnit(unit) == kIsValueSpecified_Yes ? MetresOf(unit) : 0.0;
    if (!IsAngle(DimensionTypeOf(drawn.details.type)))
        drawn.details.Scale((own > 0.0 ? own : metresPerUnit) / m_document.metresPerUnit);
    drawn.references = SceneNote::ReferencesOf(callout);
    // Those that the annotation goes to are the last ones.
    std::size_t const seconds = drawn.details.second ? drawn.details.second->size() : 0;
    for (std::size_t i = 0; i < drawn.references.size(); ++i)
    {
        std::optional<ShapeDocument::Target> const target = m_parts.TargetOf(drawn.references[i], drawn.part);
        if (!target)
        {
            m_document.notCarried.Add("references of annotation callouts");
            continue;
        }
        (i + seconds < drawn.references.size() ? drawn.first : drawn.second).push_back(*target);
    }
}

void DocumentDrawings::AddCurves(ShapeDocument::Callout& drawn, NoteDrawing const& drawing,
                                 DocumentVariant const& variant, double scale)
{
    for (NoteDrawing::Curve const& curve : drawing.curves)
    {
        TopoDS_Shape made;
        m_document.notCarried.Add("pieces of curves", MakeCurveShape(*curve.curve, made));
        if (made.IsNull())
            continue;
        auto const place = ShapePlacement::Of(curve.transform, scale * curve.scale, variant.change);
        if (!place)
            continue;
        TopoDS_Shape const shape = place->IsRigid() ? made : ChangedShape(made, place->change).Shape();
        drawn.curves.push_back(shape.Moved(place->motion));
    }
}

void DocumentDrawings::AddCallouts(DocumentVariant const& variant)
{
    SceneComponent const& component = *variant.component;
    for (SceneGeometry const& geometry : component.geometry)
    {
        auto const* const callout = dynamic_cast<IAnnotationCallout const*>(geometry.object);
        if (!callout)
            continue;
        if (!geometry.isVisible)
            m_document.notCarried.Add("visibilities of annotation callouts");
        ShapeDocument::Callout drawn;
        drawn.part = variant.label;
        drawn.id = std::string(geometry.id);
        drawn.variant = variant.key;
        drawn.label = std::string(geometry.label);
        AddFacts(drawn, *callout, component.metresPerUnit);
        NoteDrawing const drawing = NoteDrawing::Of(m_task.producer, *callout, component.metresPerUnit);
        drawn.text = drawing.text;
        drawn.drawingLabel = drawing.label;
        double const scale = component.metresPerUnit / m_document.metresPerUnit;
        MemoryWatch const watch;
        try
        {
            AddCurves(drawn, drawing, variant, scale);
        }
        catch (Standard_Failure const& failure)
        {
            watch.Check(failure);
            m_document.notCarried.Add("annotation callouts that Open CASCADE cannot draw");
            continue;
        }
        if (drawing.plane)
            // A mirror turns the plane's normal with the plane.
            drawn.plane = AxesOf(scale * Triple(drawing.plane->origin).Multiplied(variant.change),
                                 Triple(drawing.plane->normal).Multiplied(variant.change),
                                 Triple(drawing.plane->reference).Multiplied(variant.change));
        m_document.callouts.push_back(std::move(drawn));
    }
}

}  // namespace KVR
