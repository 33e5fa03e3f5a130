#pragma once

namespace KVR
{

class Output;
struct SceneViews;

/// A table of the views and then the cameras, a line each, and a closing line that counts them. Widths follow the
/// content; what has no answer is a dash.
void WriteViewsAsTable(SceneViews const& views, Output& out);

/// One JSON object: "Views", "Cameras" and "Totals".
void WriteViewsAsJson(SceneViews const& views, Output& out);

}  // namespace KVR
