#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace KVR::Test
{

/// An attribute in a text: its name and its value, from the first character to behind the last.
struct TagAttribute
{
    std::string name;
    std::string value;
    std::size_t nameBegin = 0;
    std::size_t valueBegin = 0;
};

/// A start tag in a text, and the end tag that belongs to it.
struct SceneTag
{
    std::string name;
    /// That of the element around it; empty for the root.
    std::string parent;
    std::string grandparent;
    /// From the "<" to behind the ">".
    std::size_t begin = 0;
    std::size_t end = 0;
    bool isEmpty = false;
    /// The "</" of the end tag and behind its ">"; of an empty element the tag's own end.
    std::size_t endTag = 0;
    std::size_t elementEnd = 0;
    std::vector<TagAttribute> attributes;
    /// Whether there is text in it beside elements.
    bool hasText = false;
};

/// The elements of a document without CDATA and document type, in the order of their start tags. A small scanner of its
/// own: what it finds is planted in, not read.
std::vector<SceneTag> TagsOf(std::string const& text);

/// The line of a place in the text, from 1.
std::size_t LineOf(std::string const& text, std::size_t at);

/// The text with other characters in the place of some.
std::string Replaced(std::string text, std::size_t at, std::size_t length, std::string const& by);

/// The name with its first letter in the other case.
std::string OtherCase(std::string name);

/// Whether the pattern, a regular expression, is of the whole text.
bool Matches(std::string const& text, char const* pattern);

}  // namespace KVR::Test
