#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "inspect/Export.h"

namespace KVR
{

/// How bad it is.
enum class Severity
{
    /// Worth knowing; what is there may well be meant.
    kNote,
    /// Something is lost or odd, and the scene is served without it.
    kWarning,
    /// What the scene serves is not what was written.
    kError
};

/// What a check looks for. Texts live as long as the program.
struct Rule
{
    /// Stays the rule's for good: "K-" and four digits.
    std::string_view id;
    /// A few words with hyphens between them, which stay as well.
    std::string_view name;
    /// One sentence, without its full stop.
    std::string_view sentence;
    Severity severity = Severity::kWarning;
};

/// All rules, by their ids. Throws std::bad_alloc at the first call alone.
KVR_INSPECT_API std::span<Rule const> AllRules();

/// The rule of that id or name, exactly; null when there is none. Throws as AllRules does.
KVR_INSPECT_API Rule const* FindRule(std::string_view idOrName);

/// "note", "warning" or "error".
KVR_INSPECT_API std::string_view TextOf(Severity severity);

/// A change of a file.
struct Edit
{
    /// The bytes that go, from the first to the one behind the last, counted from the file's beginning; both the same
    /// where nothing goes.
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    /// What comes in their place: UTF-8, as it stands in the file.
    std::string text;
};

/// Something that a check found. All texts are UTF-8 of any characters, as the scene has them; empty where there is
/// nothing to say.
struct Finding
{
    /// Never null.
    Rule const* rule = nullptr;
    /// The document or the side file, as a path that opens from where the check was run.
    std::string file;
    /// Both count from 1, the column in characters; 0 where there is none, as in binary files.
    std::uint64_t line = 0;
    std::uint64_t column = 0;
    /// The bytes of the file that it is about, from the first to the one behind the last; both 0 where they are not
    /// known.
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    /// The object that it belongs to: the nearest element with an id, from the inside out.
    std::string objectId;
    /// The elements from the root to it, with their ids: "Scene/IAssembly[gate]/ChildSet/IInstance[door1]".
    std::string path;
    /// What was found: a name, a value, an id.
    std::string found;
    /// What the reader made of it: a sentence without its full stop.
    std::string readAs;
    /// What was probably meant: the name, value or id alone.
    std::string meant;
    /// What led to it, the nearest reason first; sentences without their full stops.
    std::vector<std::string> reasons;
    /// Only where one safe meaning exists: changes of `file` that belong together, by their places. Else empty.
    std::vector<Edit> fix;
};

}  // namespace KVR
