#include "authoring/PropertyWriter.h"

#include "authoring/XmlText.h"
#include "authoring/elements/PropertyText.h"

namespace KVR::Authoring
{

PropertyWriter::PropertyWriter(UTF16String const& path) : m_file(path)
{
    constexpr std::string_view kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Properties>\n";
    m_file.Bytes(kHead.data(), kHead.size());
}

PropertyWriter::~PropertyWriter() = default;

void PropertyWriter::Property(UTF8String const& id, UTF8String const& objectId, CustomProperty const& content)
{
    ValueText const value = ValueText::Of(content);
    m_element = "  <Property";
    AppendAttribute(m_element, "ID", id.View());
    AppendAttribute(m_element, "ObjectID", objectId.View());
    AppendAttribute(m_element, "Name", UTF8String(content.Name()).View());
    AppendAttribute(m_element, "Type", value.type);
    AppendAttribute(m_element, "Value", value.value);
    m_element += "/>\n";
    m_file.Bytes(m_element.data(), m_element.size());
}

void PropertyWriter::Finish()
{
    constexpr std::string_view kTail = "</Properties>\n";
    m_file.Bytes(kTail.data(), kTail.size());
    m_file.Commit();
}

}  // namespace KVR::Authoring
