#include "authoring/PropertyWriter.h"

#include "authoring/XmlText.h"
#include "authoring/elements/PropertyText.h"
#include "framework/xml_util/FormatNames.h"

namespace KVR::Authoring
{

PropertyWriter::PropertyWriter(UTF16String const& path) : m_file(path)
{
    m_element = kXmlDeclaration;
    m_element += '\n';
    AppendTagStart(m_element, Names::Properties);
    m_element += ">\n";
    m_file.Bytes(m_element.data(), m_element.size());
}

PropertyWriter::~PropertyWriter() = default;

void PropertyWriter::Property(UTF8String const& id, UTF8String const& objectId, CustomProperty const& content)
{
    ValueText const value = ValueText::Of(content);
    m_element = "  ";
    AppendTagStart(m_element, Names::Property);
    AppendAttribute(m_element, Names::ID, id.View());
    AppendAttribute(m_element, Names::ObjectID, objectId.View());
    AppendAttribute(m_element, Names::Name, UTF8String(content.Name()).View());
    AppendAttribute(m_element, Names::Type, value.type);
    AppendAttribute(m_element, Names::Value, value.value);
    m_element += "/>\n";
    m_file.Bytes(m_element.data(), m_element.size());
}

void PropertyWriter::Finish()
{
    m_element.clear();
    AppendEndTag(m_element, Names::Properties);
    m_element += '\n';
    m_file.Bytes(m_element.data(), m_element.size());
    m_file.Commit();
}

}  // namespace KVR::Authoring
