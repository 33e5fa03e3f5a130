#pragma once

#include <string>
#include <string_view>

namespace KVR::Authoring
{

/// Begins a document: what stands in front of its root.
inline constexpr std::string_view kXmlDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

/// Appends a tag as far as its name, which is not checked.
void AppendTagStart(std::string& element, std::string_view name);
/// Appends a whole closing tag. The name is not checked.
void AppendEndTag(std::string& element, std::string_view name);

/// Appends a blank and an attribute with that value. Throws GeneralException for a value that is not UTF-8 or has a
/// character that XML does not know, with some of the attribute appended.
void AppendAttribute(std::string& element, std::string_view name, std::string_view value);

/// Appends text between tags. Throws as AppendAttribute does.
void AppendText(std::string& element, std::string_view text);

/// The shortest text that reads back as the number. Throws GeneralException for one that is infinite or none.
std::string NumberText(double value);

}  // namespace KVR::Authoring
