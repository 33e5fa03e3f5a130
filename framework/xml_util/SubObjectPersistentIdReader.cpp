#include "framework/xml_util/SubObjectPersistentIdReader.h"

#include <memory>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>

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

class Handler final : public xercesc::DefaultHandler
{
public:
    explicit Handler(Maps& maps) : m_maps(maps) {}

    void startElement(XMLCh const*, XMLCh const*, XMLCh const* name, xercesc::Attributes const& attributes) override
    {
        if (m_depth == 1)
        {
            XMLCh const* const id = attributes.getValue(Names::ID.Document());
            m_current = Equals(name, Names::SubObjectPersistentIds) ? MapOf(id) : nullptr;
            if (!m_current)
                TellPassedOver(id);
        }
        else if (m_depth == 2 && m_current && Equals(name, Names::SubObject))
            Add(attributes.getValue(Names::DataId.Document()), attributes.getValue(Names::PersistentId.Document()));
        ++m_depth;
    }

    void endElement(XMLCh const*, XMLCh const*, XMLCh const*) override { --m_depth; }

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
