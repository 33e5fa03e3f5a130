#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace KVR
{

/// Bytes of a file.
struct ByteRange
{
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

/// The start tag of an element as it stands in a document of UTF-8, or of any encoding of bytes in which ASCII is
/// itself. Without a tag all ranges are empty.
class TagText
{
public:
    /// `before` are the bytes of the document up to behind the tag, as far back as is known; `end` is where they end in
    /// the file.
    TagText(std::string_view before, std::uint64_t end);

    /// Whether a tag was found.
    bool IsFound() const noexcept { return !m_tag.empty(); }
    ByteRange Tag() const;
    /// The element's name.
    ByteRange Name() const;
    /// An attribute's name, and its value without the quotes; empty when there is none of that name.
    ByteRange AttributeName(std::string_view name) const;
    ByteRange AttributeValue(std::string_view name) const;

private:
    struct Attribute
    {
        std::size_t name = 0;
        std::size_t nameEnd = 0;
        std::size_t value = 0;
        std::size_t valueEnd = 0;
    };

    bool Find(std::string_view name, Attribute& attribute) const;
    ByteRange RangeOf(std::size_t begin, std::size_t end) const;

    std::string_view m_tag;
    std::uint64_t m_begin = 0;
};

}  // namespace KVR
