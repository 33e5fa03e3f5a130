#include "authoring/SubObjectPersistentIdWriter.h"

#include "authoring/XmlText.h"

namespace KVR::Authoring
{

SubObjectPersistentIdWriter::SubObjectPersistentIdWriter(UTF16String const& path) : m_file(path)
{
    constexpr std::string_view kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Ids>\n";
    m_file.Bytes(kHead.data(), kHead.size());
}

SubObjectPersistentIdWriter::~SubObjectPersistentIdWriter() = default;

void SubObjectPersistentIdWriter::Object(UTF8String const& objectId, DataIdToPersistentIdMap const& ids)
{
    m_element = "  <SubObjectPersistentIds";
    AppendAttribute(m_element, "ID", objectId.View());
    m_element += ">\n";
    for (unsigned long long i = 0; i < ids.Size(); ++i)
    {
        m_element += "    <SubObject";
        AppendAttribute(m_element, "DataId", ids.DataIdAt(i).View());
        AppendAttribute(m_element, "PersistentId", ids.PersistentIdAt(i).View());
        m_element += "/>\n";
    }
    m_element += "  </SubObjectPersistentIds>\n";
    m_file.Bytes(m_element.data(), m_element.size());
}

void SubObjectPersistentIdWriter::Finish()
{
    constexpr std::string_view kTail = "</Ids>\n";
    m_file.Bytes(kTail.data(), kTail.size());
    m_file.Commit();
}

}  // namespace KVR::Authoring
