#include "exchange/import/SavedViews.h"

#include <TCollection_ExtendedString.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_LabelSequence.hxx>
#include <XCAFDoc_ClippingPlaneTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_View.hxx>
#include <XCAFDoc_ViewTool.hxx>
#include <XCAFView_Object.hxx>
#include <gp_Pln.hxx>
#include <unordered_set>

#include "exchange/model/CleanText.h"

namespace KVR
{

namespace
{

Authoring::XYZ Triple(gp_XYZ const& value)
{
    return {value.X() + 0.0, value.Y() + 0.0, value.Z() + 0.0};
}

// Whether an eye outside a box has the box behind it.
bool LooksAway(gp_XYZ const& eye, gp_XYZ const& direction, Bnd_Box const& box)
{
    if (box.IsVoid() || !box.IsOut(gp_Pnt(eye)))
        return false;
    gp_XYZ const centre = 0.5 * (box.CornerMin().XYZ() + box.CornerMax().XYZ());
    return direction.Dot(centre - eye) < 0.0;
}

// The direction of the file is that to the eye, as is usual, and distances are taken along it.
Authoring::CameraRecord CameraOf(Handle(XCAFView_Object) const& view, gp_XYZ const& eye, Bnd_Box const& box)
{
    Authoring::CameraRecord camera;
    camera.isPerspective = view->Type() == XCAFView_ProjectionType_Central;
    camera.position = Triple(eye);
    gp_XYZ const toEye = view->ViewDirection().XYZ();
    gp_XYZ const seen = LooksAway(eye, toEye.Reversed(), box) ? toEye : toEye.Reversed();
    camera.direction = Triple(seen);
    camera.up = Triple(view->UpDirection().XYZ());
    if (view->WindowVerticalSize() > 0.0)
    {
        camera.windowHeight = view->WindowVerticalSize();
        if (view->WindowHorizontalSize() > 0.0)
            camera.aspectRatio = view->WindowHorizontalSize() / view->WindowVerticalSize();
    }
    auto const planeAt = [&](double distance)
    {
        Authoring::PlaneRecord plane;
        plane.origin = Triple(eye + toEye * distance);
        plane.normal = Triple(seen);
        return plane;
    };
    if (view->HasFrontPlaneClipping())
        camera.nearPlane = planeAt(view->FrontPlaneDistance());
    if (view->HasBackPlaneClipping())
        camera.farPlane = planeAt(view->BackPlaneDistance());
    return camera;
}

void ReadSectionPlanes(Authoring::CameraRecord& camera, TDF_LabelSequence const& labels,
                       Handle(XCAFDoc_ClippingPlaneTool) const& tool)
{
    for (TDF_Label const& label : labels)
    {
        gp_Pln plane;
        TCollection_ExtendedString name;
        Standard_Boolean isCapped = false;
        if (!tool->GetClippingPlane(label, plane, name, isCapped))
            continue;
        Authoring::PlaneRecord record;
        record.origin = Triple(plane.Location().XYZ());
        record.normal = Triple(plane.Axis().Direction().XYZ());
        record.reference = Triple(plane.XAxis().Direction().XYZ());
        camera.sectionPlanes.push_back(record);
    }
}

}  // namespace

SavedViews SavedViews::Of(ModelDocument const& model, std::function<Bnd_Box()> const& boxOf,
                          std::function<std::vector<UTF8String>(TDF_Label const&)> const& idsOf,
                          std::function<UTF8String(std::string const&)> const& noteNamed, Losses& losses)
{
    SavedViews result;
    auto const tool = XCAFDoc_DocumentTool::ViewTool(model.document->Main());
    auto const planes = XCAFDoc_DocumentTool::ClippingPlaneTool(model.document->Main());
    TDF_LabelSequence labels;
    tool->GetViewLabels(labels);
    if (labels.IsEmpty())
        return result;
    Bnd_Box const box = boxOf();
    for (TDF_Label const& label : labels)
    {
        Handle(XCAFDoc_View) attribute;
        if (!label.FindAttribute(XCAFDoc_View::GetID(), attribute) || attribute->GetObject().IsNull())
            continue;
        Handle(XCAFView_Object) const object = attribute->GetObject();
        std::string const number = std::to_string(result.views.size() + 1);
        Authoring::ViewRecord view;
        view.id = UTF8String("view" + number);
        if (!object->Name().IsNull())
            view.label = CleanText(object->Name()->ToCString());
        view.lengthUnit = model.unit;
        view.cameraIds.push_back(UTF8String("camera" + number));
        auto const known = object->Name().IsNull() ? model.eyes.end() : model.eyes.find(object->Name()->ToCString());
        gp_XYZ const eye = known == model.eyes.end() ? object->ProjectionPoint().XYZ()
                                                     : gp_XYZ(known->second[0], known->second[1], known->second[2]);
        Authoring::CameraRecord camera = CameraOf(object, eye, box);
        camera.id = view.cameraIds.front();
        camera.label = view.label;
        camera.lengthUnit = model.unit;
        TDF_LabelSequence clipping;
        tool->GetRefClippingPlaneLabel(label, clipping);
        ReadSectionPlanes(camera, clipping, planes);
        if (!object->ClippingExpression().IsNull())
            camera.sectioningOperations = CleanText(object->ClippingExpression()->ToCString());
        TDF_LabelSequence named;
        TDF_LabelSequence annotations;
        tool->GetRefShapeLabel(label, named);
        tool->GetRefGDTLabel(label, annotations);
        named.Append(annotations);
        // A file may name one twice.
        std::unordered_set<std::string> taken;
        for (TDF_Label const& member : named)
        {
            std::vector<UTF8String> const ids = idsOf(member);
            if (ids.empty())
                losses.AddItem("members of views that are no objects", std::string(view.label.View()));
            for (UTF8String const& id : ids)
                if (taken.insert(std::string(id.View())).second)
                    view.members.push_back({{id}, true, {}, {}});
        }
        auto const drawings =
            object->Name().IsNull() ? model.drawings.end() : model.drawings.find(object->Name()->ToCString());
        if (drawings != model.drawings.end())
            for (std::string const& name : drawings->second)
                if (UTF8String const id = name.empty() ? UTF8String() : noteNamed(name);
                    !id.IsEmpty() && taken.insert(std::string(id.View())).second)
                    view.members.push_back({{id}, true, {}, {}});
        result.views.push_back(std::move(view));
        result.cameras.push_back(std::move(camera));
    }
    return result;
}

}  // namespace KVR
