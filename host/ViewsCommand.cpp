#include "host/ViewsCommand.h"

#include "exchange/source/SceneReading.h"
#include "host/CommonOptions.h"
#include "host/views/SceneViews.h"
#include "host/views/Views.h"

namespace KVR
{

ViewsCommand::ViewsCommand(CLI::App& program)
    : SceneCommand(program, "views", "Show a table of the views and cameras that a scene serves")
{
    AddJsonOption(Arguments(), m_asJson);
}

std::string ViewsCommand::Show(IProducer& producer, SceneReading const& reading, Output& out)
{
    if (!reading.rootId)
        return OfScene("the scene has no root file, so there are no views to show");
    SceneViews const views = SceneViews::Of(producer, *reading.rootId);
    if (m_asJson)
        WriteViewsAsJson(views, out);
    else
        WriteViewsAsTable(views, out);
    return {};
}

}  // namespace KVR
