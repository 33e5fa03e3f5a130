#include "host/views/SceneViews.h"

#include "describe/ReferenceWalk.h"
#include "framework/api/IProducer.h"
#include "framework/api/IView.h"
#include "framework/api/ObjectVisitor.h"

namespace KVR
{

namespace
{

template <class Object>
std::optional<UnitTypeEnum> LengthUnitOf(Object const& object)
{
    UnitTypeEnum unit = kUnitType_Unknown;
    return object.LengthUnit(unit) == kIsValueSpecified_Yes ? std::optional(unit) : std::nullopt;
}

class Collector final : public ObjectVisitor
{
public:
    explicit Collector(SceneViews& found) : m_found(found) {}

    using ObjectVisitor::Visit;

    void Visit(IView* view) override
    {
        ViewFacts facts;
        facts.id = view->Id();
        facts.label = view->Label();
        facts.isVisible = view->IsVisible();
        facts.isActive = view->IsActive();
        facts.lengthUnit = LengthUnitOf(*view);
        facts.members = view->ViewMemberCount();
        for (unsigned long long i = 0; i < facts.members; ++i)
            facts.hiddenMembers += view->EntityVisibilityAt(i) ? 0 : 1;
        facts.cameras = view->CameraSet();
        m_found.views.push_back(std::move(facts));
    }

    void Visit(ICamera* camera) override
    {
        CameraFacts facts;
        facts.id = camera->Id();
        facts.label = camera->Label();
        facts.type = camera->CameraType();
        facts.lengthUnit = LengthUnitOf(*camera);
        facts.position = camera->CameraPosition();
        facts.direction = camera->CameraDirection();
        facts.upDirection = camera->CameraUpDirection();
        if (auto const* const sectionCamera = dynamic_cast<ISectionCamera const*>(camera))
        {
            facts.isSectionCamera = true;
            for (unsigned long long i = 0; i < sectionCamera->SectionPlaneCount(); ++i)
                facts.sectionPlanes.push_back(sectionCamera->SectionPlaneAt(i));
            facts.sectioningOperations = sectionCamera->SectioningOperations();
        }
        m_found.cameras.push_back(std::move(facts));
    }

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
