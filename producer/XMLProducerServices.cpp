// What the producer offers to its readers: id mapping and the history stream.

#include "framework/api/StringUtil.h"
#include "framework/gmk_interface/GMKHistoryUtil.h"
#include "producer/XMLProducerImpl.h"

namespace KVR
{

bool XMLProducerImpl::MapObjectId(UTF8String const& id, UTF8String& mapped)
{
    if (!HasNewObjectIdPrefix())
        return false;
    auto const [place, isNew] = m_objectIdMap->try_emplace(id);
    if (isNew)
    {
        ++m_newObjectIdCounter;
        place->second = StringUtil::FromUnsignedlong(m_newObjectIdCounter, "%lu");
        place->second.Insert(0, m_newObjectIdPrefix);
    }
    mapped = place->second;
    return true;
}

void XMLProducerImpl::ApplyIdMapping(UTF8String& id)
{
    UTF8String mapped;
    if (MapObjectId(id, mapped))
        id = mapped;
}

bool XMLProducerImpl::QueryMappedObject(UTF8String const& id, UTF8String& mapped) const
{
    if (!objectCollector)
        return false;
    mapped = id;
    if (HasNewObjectIdPrefix())
    {
        auto const found = m_objectIdMap->find(id);
        if (found == m_objectIdMap->end())
            return false;
        mapped = found->second;
    }
    return objectCollector->HasObject(mapped);
}

HISTORY_STREAM* XMLProducerImpl::GetHistoryStream()
{
    if (!m_historyStream)
    {
        HISTORY_STREAM* stream = nullptr;
        GMKHistoryUtil::CreateHistoryStream(stream);
        m_historyStream.reset(stream);
    }
    return m_historyStream.get();
}

void XMLProducerImpl::EndHistoryStream::operator()(HISTORY_STREAM* stream) const noexcept
{
    GMKHistoryUtil::DeleteHistoryStream(stream);
}

}  // namespace KVR
