#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "framework/xml_util/InfoSections.h"

namespace KVR
{

/// What a document of a scene holds, counted in one pass over its bytes without building anything of it. The pass knows
/// elements, attributes, text, comments and the like; it does not ask whether names of tags match, and does not expand
/// entities. A document type declaration is passed over.
struct DocumentCensus
{
    enum class Problem
    {
        kNone,
        kUnreadable,
        /// An encoding in which ASCII does not stand as itself, other than UTF-16.
        kEncoding,
        kMalformed
    };

    /// An info section that is switched on, or a blob of the universe.
    struct Mention
    {
        /// Null for a blob.
        InfoSection const* section = nullptr;
        /// As the document has it.
        std::string path;
        /// Of a blob: the bytes that are to be read.
        std::uint64_t claimed = 0;
    };

    struct TextHash : std::hash<std::string_view>
    {
        using is_transparent = void;
    };
    using Counts = std::unordered_map<std::string, std::uint64_t, TextHash, std::equal_to<>>;
    using Texts = std::unordered_set<std::string, TextHash, std::equal_to<>>;

    std::uint64_t elements = 0;
    std::uint64_t attributes = 0;
    /// Bytes of the texts of attributes in the document.
    std::uint64_t attributeBytes = 0;
    /// Bytes of the texts of attributes that list ids or paths, items by items, which a reader makes objects of.
    std::uint64_t listBytes = 0;
    /// Runs of text between tags, white space alone included, and their bytes.
    std::uint64_t texts = 0;
    std::uint64_t textBytes = 0;
    std::uint64_t depth = 0;
    /// Bytes of the longest text of an attribute.
    std::uint64_t longestAttribute = 0;
    /// How many elements have each name.
    Counts names;
    std::vector<Mention> mentions;
    /// How many of the wanted ids elements have.
    std::uint64_t wantedIds = 0;

    /// Counts a document from the file's beginning; of `wanted` it finds out which are ids of elements. What was
    /// counted until a problem stays.
    Problem Count(std::FILE* file, Texts const& wanted = {});

    /// How many elements have a name.
    std::uint64_t Named(std::string_view name) const;
    /// Elements that make objects: their names begin with "I" and a capital.
    std::uint64_t Objects() const;
    /// Whether elements of the name make objects.
    static bool IsObjectName(std::string_view name) noexcept;
};

}  // namespace KVR
