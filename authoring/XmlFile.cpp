#include "authoring/XmlFile.h"

#include "authoring/XmlText.h"
#include "framework/api/Exception.h"

namespace KVR::Authoring
{

namespace
{

constexpr std::size_t kBufferSize = std::size_t{64} * 1024;

void Check(bool holds, char const* message)
{
    if (!holds)
        throw GeneralException(message);
}

}  // namespace

XmlFile::XmlFile(UTF16String const& path, std::string_view root) : m_file(path)
{
    m_buffer = kXmlDeclaration;
    Begin(root);
}

XmlFile::~XmlFile() = default;

void XmlFile::Begin(std::string_view name)
{
    CloseStartTag();
    Check(!m_hasText, "an element holds text or elements, not both");
    NewLine();
    AppendTagStart(m_buffer, name);
    m_open.push_back(name);
    m_isInStartTag = true;
}

void XmlFile::Attribute(std::string_view name, std::string_view value)
{
    Check(m_isInStartTag, "an attribute stands in front of what is in its element");
    m_isWhole = false;
    AppendAttribute(m_buffer, name, value);
    m_isWhole = true;
}

void XmlFile::Attribute(std::string_view name, double value)
{
    Attribute(name, std::string_view(NumberText(value)));
}

void XmlFile::Attribute(std::string_view name, long long value)
{
    Attribute(name, std::string_view(std::to_string(value)));
}

void XmlFile::Text(std::string_view text)
{
    CloseStartTag();
    m_isWhole = false;
    AppendText(m_buffer, text);
    m_isWhole = true;
    m_hasText = true;
}

void XmlFile::End()
{
    Check(m_open.size() > 1 && m_isWhole, "an element that is closed was opened");
    std::string_view const name = m_open.back();
    m_open.pop_back();
    if (m_isInStartTag)
    {
        m_buffer += "/>";
        m_isInStartTag = false;
        return;
    }
    if (!m_hasText)
        NewLine();
    m_hasText = false;
    AppendEndTag(m_buffer, name);
}

void XmlFile::Finish(std::string_view behind)
{
    Check(m_open.size() == 1 && m_isWhole, "a document is finished when its elements are");
    if (m_isInStartTag)
        m_buffer += "/>\n";
    else
    {
        m_buffer += '\n';
        AppendEndTag(m_buffer, m_open.front());
        m_buffer += '\n';
    }
    m_buffer += behind;
    m_file.Bytes(m_buffer.data(), m_buffer.size());
    m_buffer.clear();
    m_file.Commit();
}

void XmlFile::CloseStartTag()
{
    if (m_isInStartTag)
        m_buffer += '>';
    m_isInStartTag = false;
    if (m_buffer.size() < kBufferSize)
        return;
    m_file.Bytes(m_buffer.data(), m_buffer.size());
    m_buffer.clear();
}

void XmlFile::NewLine()
{
    m_buffer += '\n';
    m_buffer.append(2 * m_open.size(), ' ');
}

}  // namespace KVR::Authoring
