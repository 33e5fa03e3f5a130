#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "inspect/Export.h"

namespace KVR
{

/// A place in a file. Bytes are from the first to the one behind the last; lines count from 1, and are 0 in binary
/// files.
struct FileRange
{
    /// As a path that opens from where the explanation was asked for.
    std::string file;
    std::uint64_t firstLine = 0;
    std::uint64_t lastLine = 0;
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

/// Where an answer of an object comes from.
enum class AnswerSource
{
    /// An attribute of its element, or a child element: what the answer is follows it.
    kAttribute,
    kElement,
    /// A record of a store.
    kStore,
    kPropertyFile,
    /// Nothing states it.
    kDefault,
    /// Other elements, or what is computed of several.
    kOther,
    /// The element could not be read apart from its scene, so that sources are not known.
    kUnknown
};

/// What an operation of an object answers, and where that comes from.
struct ExplainedAnswer
{
    std::string operation;
    /// In the notation of JSON, cut at a few dozen characters.
    std::string value;
    AnswerSource source = AnswerSource::kUnknown;
    /// Of an attribute or element: its name, of an attribute of a child "Unit/LengthUnit", its text as the document has
    /// it, and as what readers took that; the latter empty for texts that stay as they are. Several with blanks between
    /// them where an answer follows several.
    std::string from;
    std::string text;
    std::string understood;
};

/// A record of a store that an object was made of.
struct ExplainedRecord
{
    /// As stores have them: "mesh", "segments", "body".
    std::string kind;
    /// Without bytes where the store is not read by position.
    FileRange place;
};

/// Another object that names this one.
struct ExplainedReference
{
    std::string id;
    std::string className;
    /// The operations that answer the id.
    std::vector<std::string> operations;
};

/// An occurrence of an object, and what holds for it there.
struct ExplainedOccurrence
{
    /// Ids of instances from the root to it with "/" between them, that of geometry last; empty for the root.
    std::string path;
    bool isVisible = true;
    /// Empty for none.
    std::string style;
    std::string styleLabel;
    /// One sentence each, without its full stop: what decides the style, the visibility and the place.
    std::string styleReason;
    std::string visibilityReason;
    std::string placeReason;
};

/// What a scene makes of one object.
struct Explanation
{
    /// Why there is none: a sentence without its full stop, empty when there is one. `nearest` has ids that may have
    /// been meant.
    std::string problem;
    std::vector<std::string> nearest;
    /// Whether the document could be parsed.
    bool isParsed = true;

    std::string id;
    /// The interface's name: "IPart".
    std::string className;
    std::string label;
    FileRange element;
    /// The elements from the root to it, with their ids.
    std::string elementPath;
    std::vector<ExplainedRecord> records;
    /// In the order of the interface.
    std::vector<ExplainedAnswer> answers;
    /// In the order in which objects were registered, and how many there are in all.
    std::vector<ExplainedReference> references;
    std::uint64_t referenceCount = 0;
    /// In the scene's order; with a path that was asked for, those alone whose own ends so.
    std::vector<ExplainedOccurrence> occurrences;
    std::uint64_t occurrenceCount = 0;
};

/// How much of an explanation is wanted.
struct ExplainOptions
{
    /// As of a check.
    bool allowDtd = false;
    bool insecure = false;
    /// So many occurrences and references are listed; all are counted.
    std::size_t most = 10;
};

/// Reads a scene as a host would, and tells of one object where it comes from, what each of its answers follows, who
/// refers to it, where it occurs and why it looks as it does there. `name` is an id, or an occurrence as ids with "/"
/// between them; one that is both is the id. Which attribute an answer follows is found by reading the element again
/// and again, with what stands near it, each time with one attribute or child changed: what the readers do is the one
/// description of the format. Sets the policy of documents and the calling thread's observer as CheckScene does. Writes
/// into the folder for temporary files, and clears it up. Throws std::bad_alloc, and nothing else.
KVR_INSPECT_API Explanation ExplainObject(std::string const& path, std::string const& name,
                                          ExplainOptions const& options = {});

/// "attribute", "element", "store", "property file", "default", "other" or "unknown".
KVR_INSPECT_API char const* TextOf(AnswerSource source) noexcept;

}  // namespace KVR
