#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "authoring/Export.h"
#include "authoring/StoreFile.h"

namespace KVR::Authoring
{

/// Writes an XML document in UTF-8, streaming: what is closed is never held. The file appears whole at Finish, or not
/// at all.
///
/// Operations throw FileException when the file system refuses, and GeneralException for a text that is not UTF-8 or
/// has a character that XML does not know, for a number that is infinite or none, and for calls that do not fit
/// together. After an exception the document cannot be finished.
class KVR_AUTHORING_API XmlFile
{
public:
    XmlFile(UTF16String const& path, std::string_view root);
    /// Without a Finish nothing stays behind.
    ~XmlFile();

    /// Opens an element in the innermost open one. The name is the format's, not a user's text.
    void Begin(std::string_view name);
    /// Adds to the element just opened, before anything is put into it.
    void Attribute(std::string_view name, std::string_view value);
    void Attribute(std::string_view name, double value);
    void Attribute(std::string_view name, long long value);
    /// Puts text into the innermost element.
    void Text(std::string_view text);
    /// Closes the innermost element.
    void End();

    /// How many elements are open, without the root.
    std::size_t Depth() const noexcept { return m_open.size() - 1; }

    /// Closes the root, puts text behind it as it stands, such as a processing instruction, and the file appears. All
    /// other elements are closed by then.
    void Finish(std::string_view behind = {});

private:
    void CloseStartTag();
    void NewLine();

    StoreFile m_file;
    /// What has not gone to the file yet.
    std::string m_buffer;
    std::vector<std::string_view> m_open;
    bool m_isInStartTag = false;
    bool m_hasText = false;
    bool m_isWhole = true;
};

}  // namespace KVR::Authoring
