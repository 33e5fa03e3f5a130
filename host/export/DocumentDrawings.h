#pragma once

#include <unordered_set>

#include "host/export/DocumentVariant.h"
#include "host/export/ShapeDocument.h"

namespace KVR
{

class ICamera;

/// Adds views, cameras and annotation callouts of a scene to a document.
class DocumentDrawings
{
public:
    DocumentDrawings(ExportTask& task, ShapeDocument& document);

    /// A view for each camera of each view, and one for each camera that no view names.
    void AddViews();
    /// The callouts of a component, with their curves and planes.
    void AddCallouts(DocumentVariant const& variant);

private:
    void AddCamera(ICamera const& camera, std::string const& name);

    ExportTask& m_task;
    ShapeDocument& m_document;
};

}  // namespace KVR
