#include "inspect/rules/UsedIds.h"

#include <array>

#include "framework/api/IBrep.h"
#include "framework/api/ICurve.h"
#include "framework/api/IPolygonMesh.h"
#include "framework/api/IRenderStyle.h"
#include "framework/api/ObjectVisitor.h"
#include "framework/xml_util/DomWalk.h"
#include "inspect/SceneCheck.h"
#include "inspect/document/ReadRecord.h"

namespace KVR
{

namespace
{

class Finder final : public ObjectVisitor
{
public:
    explicit Finder(UsedIds& ids) : m_ids(ids) {}

    using ObjectVisitor::Visit;
    void Visit(IPolygonMesh* mesh) override { Take(m_ids.meshes, *mesh); }
    void Visit(IBrep* body) override
    {
        Take(m_ids.bodies, *body);
        if (!body->Body())
            m_ids.withoutRecord.emplace(body->Id().View());
    }
    void Visit(ICurve* curve) override
    {
        Take(m_ids.curves, *curve);
        for (xercesc::DOMNode* const child : Children(m_element))
            if (Equals(child->getNodeName(), Names::GMKEntity))
                m_ids.edges.insert(AttributeOf(child, Names::EntityId));
    }
    void Visit(IRenderStyle* style) override
    {
        Take(m_ids.styles, *style);
        using Getter = IsValueSpecifiedEnum (IRenderStyle::*)(UTF8String&) const;
        for (Getter const texture : std::to_array<Getter>(
                 {&IRenderStyle::DiffuseTexture, &IRenderStyle::AmbientTexture, &IRenderStyle::EmissionTexture,
                  &IRenderStyle::SpecularTexture, &IRenderStyle::BumpMap, &IRenderStyle::CutoutTexture}))
        {
            UTF8String id;
            if ((style->*texture)(id) == kIsValueSpecified_Yes)
                m_ids.textures.emplace(id.View());
        }
    }

    void LookAt(xercesc::DOMNode const* element, IObject const& object)
    {
        m_element = element;
        const_cast<IObject&>(object).AcceptVisitor(this);
    }

private:
    static void Take(UsedIds::Ids& ids, IObject const& object) { ids.emplace(object.Id().View()); }

    UsedIds& m_ids;
    xercesc::DOMNode const* m_element = nullptr;
};

}  // namespace

UsedIds UsedIds::Of(ReadRecord const& record)
{
    UsedIds ids;
    Finder finder(ids);
    for (auto const& [element, object] : record.Objects())
        if (object)
            finder.LookAt(element, *object);
    for (auto const& [element, failure] : record.Failures())
        if (failure.reason == DropReason::kNoRecord)
            ids.withoutRecord.insert(AttributeOf(element, Names::ID));
    return ids;
}

}  // namespace KVR
