#include "host/views/SceneViews.h"

#include <deque>
#include <unordered_set>

#include "framework/api/IProducer.h"
#include "framework/api/IView.h"
#include "framework/api/ObjectVisitor.h"
#include "host/dump/References.h"

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
    std::unordered_set<UTF8String> reached{rootId};
    std::deque<UTF8String> queue{rootId};
    std::vector<UTF8String> references;
    for (; !queue.empty(); queue.pop_front())
    {
        IObject* const object = producer.Load(queue.front());
        if (!object)
            continue;
        object->AcceptVisitor(&collector);
        references.clear();
        CollectReferences(*object, references);
        for (UTF8String& reference : references)
        {
            if (reached.insert(reference).second)
                queue.push_back(std::move(reference));
        }
    }
    return found;
}

}  // namespace KVR
