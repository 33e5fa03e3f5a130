#include "inspect/document/KindCheck.h"

#include <string>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "framework/api/ICamera.h"
#include "framework/api/IComponent.h"
#include "framework/api/IFile.h"
#include "framework/api/ILod.h"
#include "framework/api/IMaterialTexture.h"
#include "framework/api/IProducer.h"
#include "framework/api/IRenderStyle.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "inspect/document/DocumentRules.h"
#include "inspect/document/ReadRecord.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

template <class... Kinds>
bool IsOneOf(IObject& object)
{
    return (dynamic_cast<Kinds*>(&object) || ...);
}

}  // namespace

// An attribute that names an object, in elements of a name, or of any under those of two names.
struct KindCheck::Row
{
    std::u16string_view attribute;
    std::u16string_view element;
    std::u16string_view parent;
    std::u16string_view grandparent;
    char const* kind;
    bool (*fits)(IObject& object);
    /// Whether one that leads nowhere is told by what looks at the objects.
    bool isMissedElsewhere;

    bool Is(DOMNode const* node, XMLCh const* name) const
    {
        if (!Equals(name, attribute) || (!element.empty() && !Equals(node->getNodeName(), element)))
            return false;
        if (parent.empty())
            return true;
        DOMNode const* const around = node->getParentNode();
        return Equals(around->getNodeName(), parent) && Equals(around->getParentNode()->getNodeName(), grandparent);
    }
};

void KindCheck::LookAt(DOMNode const* element)
{
    static Row const kRows[] = {
        {Names::ID, Names::StyleRef, {}, {}, "a style", &IsOneOf<IRenderStyle>, true},
        {Names::ID, Names::CameraRef, {}, {}, "a camera", &IsOneOf<ICamera>, true},
        {Names::ID, {}, Names::ChildSet, Names::IFile, "a component", &IsOneOf<IComponent, IFile>, true},
        {Names::TextureId, {}, {}, {}, "a texture", &IsOneOf<IMaterialTexture>, false},
        {Names::BumpMapId, {}, {}, {}, "a texture", &IsOneOf<IMaterialTexture>, false},
        {Names::LODID, {}, {}, {}, "a level of detail", &IsOneOf<ILod>, false},
    };
    xercesc::DOMNamedNodeMap const* const attributes = element->getAttributes();
    for (XMLSize_t i = 0, count = attributes->getLength(); i < count; ++i)
    {
        DOMNode const* const attribute = attributes->item(i);
        Spot const spot{element, SpotPart::kAttributeValue, attribute->getNodeName()};
        auto const text = [&] { return XMLStrUtil::XMLStrToAStr(attribute->getNodeValue()); };
        for (Row const& row : kRows)
        {
            if (row.Is(element, spot.attribute))
                Follow(spot, std::string(text().View()), row);
        }
        if (PathCheck::IsPath(element, spot.attribute))
            m_paths.Follow(spot, text().View());
    }
}

void KindCheck::Follow(Spot const& spot, std::string const& id, Row const& row)
{
    if (id.empty() || (id == m_latest && &row == m_latestRow))
        return;
    IObject* const object = m_check.Producer().Load(UTF8String(id));
    if (object && !row.fits(*object))
        m_check.Add(DocumentRule::kReferenceKind, spot, id, std::string("taken for ") + row.kind + ", which it is not");
    else if (!object && !row.isMissedElsewhere)
        m_check.Add(DocumentRule::kReferenceMissing, spot, id, "a reference to an object that there is not",
                    m_check.NearestId(id));
    else if (object)
    {
        m_latest = id;
        m_latestRow = &row;
    }
}

}  // namespace KVR
