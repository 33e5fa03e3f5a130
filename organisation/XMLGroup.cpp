#include "organisation/XMLGroup.h"

#include <utility>

#include "framework/api/ObjectCollector.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "organisation/ItemsText.h"
#include "producer/ElementReaders.h"
#include "producer/XMLProducerImpl.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"
#include "readers/RegisterObject.h"

namespace KVR
{

XMLGroup::XMLGroup(UTF16String const& label, UTF8String id, UTF16String description)
    : ObjectState(std::move(id), label),
      m_description(std::move(description)),
      m_geometryItems(std::make_shared<IdSet>())
{
}

XMLGroup::~XMLGroup() = default;

void XMLGroup::AddItem(UTF8String const& id)
{
    if (m_geometryItems.use_count() > 1)
        m_geometryItems = std::make_shared<IdSet>(*m_geometryItems);
    m_geometryItems->AddWithUniquenessCheck(id);
}

void XMLGroup::SetItems(IdSet items)
{
    m_geometryItems = std::make_shared<IdSet>(std::move(items));
}

namespace
{

using xercesc::DOMNode;

// What lives across the groups of one set.
struct SetState
{
    // Kept: the node's value, which an element does not have, and not its text: so it is always empty.
    UTF16String description;
    XMLCh const* items = nullptr;
    /// The group that has the members of the text, once it was read.
    XMLGroup const* itemsHolder = nullptr;
};

std::unique_ptr<XMLGroup> ReadGroup(XMLProducerImpl* producer, DOMNode const* node, UTF8String const& id,
                                    SetState& state)
{
    ExtensionDataContent extensionData;
    for (DOMNode* const child : Children(node))
    {
        Match(child,  //
              On(Names::Description, [&] { state.description = XMLStrUtil::XMLStrToWStr(child->getNodeValue()); }),
              On(Names::GeometryItems,
                 [&]
                 {
                     state.items = AttributeText(child, Names::Items);
                     state.itemsHolder = nullptr;
                 }),
              // Kept: one content, written over by each element.
              On(Names::ExtensionData, [&] { Ignored(ReadExtensionData(child, extensionData)); }));
    }
    auto group =
        std::make_unique<XMLGroup>(XMLStrUtil::XMLStrToWStr(AttributeText(node, Names::Label)), id, state.description);
    if (!extensionData.TypeId().IsEmpty())
        group->AddExtensionDataContent(extensionData);
    group->SetVersionPersistentId(XMLStrUtil::XMLStrToAStr(AttributeText(node, Names::VersionPersistentId)));
    // Kept: a group that states no members has those of the group before it.
    if (state.itemsHolder)
    {
        group->ShareItems(*state.itemsHolder);
        return group;
    }
    IdSet items;
    AddItems(*producer, state.items, items);
    group->SetItems(std::move(items));
    state.itemsHolder = group.get();
    return group;
}

}  // namespace

bool ReadGroupSet(XMLProducerImpl* producer, DOMNode* node, std::vector<UTF8String>& ids)
{
    SetState state;
    // Kept: an element of any name is a group here, unlike in a set of layers.
    for (DOMNode const* const child : Children(node))
    {
        UTF8String id = XMLStrUtil::XMLStrToAStr(AttributeText(child, Names::ID));
        producer->ApplyIdMapping(id);
        // Kept: a group of an id that is taken is read and registered again.
        ids.push_back(id);
        Register(*producer, child, ReadGroup(producer, child, id, state));
    }
    return node != nullptr;
}

}  // namespace KVR
