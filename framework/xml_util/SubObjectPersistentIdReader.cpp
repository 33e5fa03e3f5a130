#include "framework/xml_util/SubObjectPersistentIdReader.h"

#include <memory>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/ReadObserver.h"
#include "framework/xml_util/SideFileParser.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "framework/xml_util/XMLUtils.h"

namespace KVR
{

namespace
{

using Maps = std::map<UTF8String, EditableDataIdToPersistentIdMap*>;

// The text of the attribute; null for one that is absent.
XMLCh const* TextOf(SideFileElement const& element, AttributeName name)
{
    for (SideFileAttribute const& attribute : element.attributes)
    {
        if (Equals(attribute.name, name))
            return attribute.value;
    }
    return nullptr;
}

class Handler final : public SideFileReceiver
{
public:
    explicit Handler(Maps& maps) : m_maps(maps) {}

    void Begin(SideFileElement const& element) override
    {
        if (m_depth == 1)
        {
            XMLCh const* const id = TextOf(element, Names::ID);
            m_current = Equals(element.name, Names::SubObjectPersistentIds) ? MapOf(id) : nullptr;
            if (!m_current)
                TellPassedOver(id);
        }
        else if (m_depth == 2 && m_current && Equals(element.name, Names::SubObject))
            Add(TextOf(element, Names::DataId), TextOf(element, Names::PersistentId));
        ++m_depth;
    }

    void End() override { --m_depth; }

private:
    // An element without an id belongs to no object.
    EditableDataIdToPersistentIdMap* MapOf(XMLCh const* id)
    {
        if (!id)
            return nullptr;
        auto const [place, isNew] = m_maps.try_emplace(XMLStrUtil::XMLStrToAStr(id), nullptr);
        if (!place->second)
            place->second = std::make_unique<EditableDataIdToPersistentIdMap>().release();
        if (ReadObserver* const observer = Observer()) [[unlikely]]
            observer->RecordRead({"ids", place->first, 0, 0, isNew});
        return place->second;
    }

    static void TellPassedOver(XMLCh const* id)
    {
        if (ReadObserver* const observer = Observer()) [[unlikely]]
            observer->RecordRead({"unknown", XMLStrUtil::XMLStrToAStr(id), 0, 0, false});
    }

    void Add(XMLCh const* dataId, XMLCh const* persistentId)
    {
        if (dataId && persistentId)
            m_current->Add(XMLStrUtil::XMLStrToAStr(dataId), XMLStrUtil::XMLStrToAStr(persistentId));
    }

    Maps& m_maps;
    EditableDataIdToPersistentIdMap* m_current = nullptr;
    unsigned long long m_depth = 0;
};

void ReadObject(xercesc::DOMNode const* object, EditableDataIdToPersistentIdMap& map)
{
    for (xercesc::DOMNode* const child : Children(object))
    {
        UTF8String dataId;
        UTF8String persistentId;
        if (IsNamed(child, Names::SubObject) && XMLUtils::GetNodeAttribute(child, Names::DataId, dataId) &&
            XMLUtils::GetNodeAttribute(child, Names::PersistentId, persistentId))
            map.Add(dataId, persistentId);
    }
}

}  // namespace

SubObjectPersistentIdReader::SubObjectPersistentIdReader() = default;
SubObjectPersistentIdReader::~SubObjectPersistentIdReader() = default;

bool SubObjectPersistentIdReader::LoadSubObjectPersistentIds(UTF16String const& path, Maps& maps)
{
    Handler handler(maps);
    if (ParseSideFile(path, handler))
        return true;
    TellObserver(&ReadObserver::StoreFailed, StoreFailure::kUnreadable,
                 "the file is no XML, or ends early; what stands before the damage counts");
    return false;
}

void SubObjectPersistentIdReader::ReadSubObjectPersistentIdsFromXML(xercesc::DOMNode const* node,
                                                                    EditableDataIdToPersistentIdMap& map)
{
    if (IsNamed(node, Names::SubObjectPersistentIds))
    {
        ReadObject(node, map);
        return;
    }
    for (xercesc::DOMNode* const child : Children(node))
    {
        if (IsNamed(child, Names::SubObjectPersistentIds))
            ReadObject(child, map);
    }
}

}  // namespace KVR
