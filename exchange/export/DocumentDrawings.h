#pragma once

#include <unordered_map>
#include <unordered_set>

#include "exchange/export/DocumentParts.h"
#include "exchange/export/DocumentVariant.h"
#include "exchange/export/ShapeDocument.h"

namespace KVR
{

class IAnnotationCallout;
class ICamera;
class IView;
struct NoteDrawing;

/// Adds views, cameras and annotation callouts of a scene to a document.
class DocumentDrawings
{
public:
    DocumentDrawings(ExportTask& task, ShapeDocument& document, DocumentParts const& parts);

    /// A view for each camera of each view, and one for each camera that no view names. Members are products or
    /// callouts: what names an occurrence, or hides it, is counted.
    void AddViews(std::vector<DocumentVariant const*> const& variants);
    /// The callouts of a component, with their curves and planes.
    void AddCallouts(DocumentVariant const& variant);

private:
    void AddCamera(ICamera const& camera, std::string const& name, IView const* view);
    void AddMembers(ShapeDocument::View& view, IView const& source);
    void FindProducts(std::vector<DocumentVariant const*> const& variants);
    void AddCurves(ShapeDocument::Callout& drawn, NoteDrawing const& drawing, DocumentVariant const& variant,
                   double scale);
    void AddFacts(ShapeDocument::Callout& drawn, IAnnotationCallout const& callout, double metresPerUnit);

    ExportTask& m_task;
    ShapeDocument& m_document;
    DocumentParts const& m_parts;
    /// The products of components by their ids, and the ids of callouts.
    std::unordered_map<std::string, TDF_Label> m_products;
    std::unordered_set<std::string> m_callouts;
};

}  // namespace KVR
