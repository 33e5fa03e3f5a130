#pragma once

#include "exchange/view/ViewOccurrences.h"

namespace KVR
{

/// The cameras and views of a viewer file, as members of one object. Counts cameras that stand nowhere.
ViewJson LooksJson(ExportTask& task, ViewIndex const& index, ViewStyles const& styles, ViewOccurrences& occurrences,
                   ViewTransforms& transforms);

/// The annotation callouts.
ViewJson NotesJson(ExportTask& task, ViewIndex const& index, ViewGeometry& geometry);

}  // namespace KVR
