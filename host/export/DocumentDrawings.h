#pragma once

#include <unordered_set>

#include "host/export/DocumentParts.h"
#include "host/export/DocumentVariant.h"
#include "host/export/ShapeDocument.h"

namespace KVR
{

class IAnnotationCallout;
class ICamera;

/// Adds views, cameras and annotation callouts of a scene to a document.
class DocumentDrawings
{
public:
    DocumentDrawings(ExportTask& task, ShapeDocument& document, DocumentParts const& parts);

    /// A view for each camera of each view, and one for each camera that no view names.
    void AddViews();
    /// The callouts of a component, with their curves and planes.
    void AddCallouts(DocumentVariant const& variant);

private:
    void AddCamera(ICamera const& camera, std::string const& name);
    void AddFacts(ShapeDocument::Callout& drawn, IAnnotationCallout const& callout);

    ExportTask& m_task;
    ShapeDocument& m_document;
    DocumentParts const& m_parts;
};

}  // namespace KVR
