#include "authoring/SubObjectPersistentIdWriter.h"

#include "authoring/XmlText.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR::Authoring
{

SubObjectPersistentIdWriter::SubObjectPersistentIdWriter(UTF16String const& path) : m_file(path)
{
    m_element = kXmlDeclaration;
    m_element += '\n';
    AppendTagStart(m_element, Names::Ids);
    m_element += ">\n";
    m_file.Bytes(m_element.data(), m_element.size());
}

SubObjectPersistentIdWriter::~SubObjectPersistentIdWriter() = default;

void SubObjectPersistentIdWriter::Object(UTF8String const& objectId, DataIdToPersistentIdMap const& ids)
{
    m_element = "  ";
    AppendTagStart(m_element, Names::SubObjectPersistentIds);
    AppendAttribute(m_element, Names::ID, objectId.View());
    m_element += ">\n";
    for (unsigned long long i = 0; i < ids.Size(); ++i)
    {
        m_element += "    ";
        AppendTagStart(m_element, Names::SubObject);
        AppendAttribute(m_element, Names::DataId, ids.DataIdAt(i).View());
        AppendAttribute(m_element, Names::PersistentId, ids.PersistentIdAt(i).View());
        m_element += "/>\n";
    }
    m_element += "  ";
    AppendEndTag(m_element, Names::SubObjectPersistentIds);
    m_element += '\n';
    m_file.Bytes(m_element.data(), m_element.size());
}

void SubObjectPersistentIdWriter::Finish()
{
    m_element.clear();
    AppendEndTag(m_element, Names::Ids);
    m_element += '\n';
    m_file.Bytes(m_element.data(), m_element.size());
    m_file.Commit();
}

}  // namespace KVR::Authoring
