#include "host/views/SceneViews.h"

#include "describe/ReferenceWalk.h"
#include "framework/api/IProducer.h"
#include "framework/api/IView.h"
#include "framework/api/ObjectVisitor.h"

namespace KVR
{

namespace
{

class Collector final : public ObjectVisitor
{
public:
    explicit Collector(SceneViews& found) : m_found(found) {}

    using ObjectVisitor::Visit;

    void Visit(IView* view) override { m_found.views.push_back(SceneView::Of(*view)); }
    void Visit(ICamera* camera) override { m_found.cameras.push_back(SceneCamera::Of(*camera)); }

private:
    SceneViews& m_found;
};

}  // namespace

SceneViews SceneViews::Of(IProducer& producer, UTF8String const& rootId)
{
    SceneViews found;
    Collector collector(found);
    ReferenceWalk walk(producer);
    walk.Reach(rootId);
    while (walk.Next())
    {
        if (walk.Object())
            walk.Object()->AcceptVisitor(&collector);
    }
    return found;
}

}  // namespace KVR
