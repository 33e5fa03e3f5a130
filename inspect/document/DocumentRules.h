#pragma once

#include <span>

#include "inspect/Finding.h"

namespace KVR
{

struct DocumentTally;
class SceneCheck;

/// The rules K-01nn, on elements, attributes, ids and references, and K-02nn, on values.
namespace DocumentRule
{

inline constexpr Rule kUnreadable{"K-0101", "document-unreadable",
                                  "The document, or what it cannot be read without, cannot be read", Severity::kError};
inline constexpr Rule kElementUnread{"K-0102", "element-unread", "Nothing reads the element", Severity::kWarning};
inline constexpr Rule kElementMisspelt{"K-0103", "element-misspelt",
                                       "Nothing reads the element, but one of nearly its name would be read there",
                                       Severity::kError};
inline constexpr Rule kAttributeUnread{"K-0104", "attribute-unread", "Nothing reads the attribute", Severity::kWarning};
inline constexpr Rule kAttributeMisspelt{"K-0105", "attribute-misspelt",
                                         "Nothing reads the attribute, but one of nearly its name would be read there",
                                         Severity::kError};
inline constexpr Rule kElementPassedOver{
    "K-0106", "element-passed-over", "The element is known there, and another one or a missing record makes it void",
    Severity::kWarning};
inline constexpr Rule kElementDropped{"K-0107", "element-dropped", "The element left no object", Severity::kError};
inline constexpr Rule kSetEnded{"K-0108", "set-ended", "A child failed, and what stands behind it is left unread",
                                Severity::kError};
inline constexpr Rule kIdTwice{"K-0109", "id-twice", "Two elements have one id, and one of them wins",
                               Severity::kError};
inline constexpr Rule kReferenceMissing{"K-0110", "reference-missing", "A reference leads to no object",
                                        Severity::kError};
inline constexpr Rule kReferenceKind{
    "K-0111", "reference-kind", "A reference leads to an object of a kind that cannot stand there", Severity::kError};
inline constexpr Rule kCycle{"K-0112", "reference-cycle", "A reference leads back to what it stands in, and is cut",
                             Severity::kError};
inline constexpr Rule kTooDeep{"K-0113", "nested-too-deeply", "What is nested too deeply is cut", Severity::kError};
inline constexpr Rule kUnreached{"K-0114", "object-unreached", "No reference leads from the root to the object",
                                 Severity::kWarning};
inline constexpr Rule kNoRoot{"K-0115", "no-root", "The scene has no root file", Severity::kError};
inline constexpr Rule kFileProperty{
    "K-0116", "file-property-misspelt",
    "Nobody can ask for the entry of the file properties, but for one of nearly its name", Severity::kError};
inline constexpr Rule kPathAstray{"K-0117", "path-astray",
                                  "An occurrence path names something that does not stand where it has led to",
                                  Severity::kError};

inline constexpr Rule kBoolean{"K-0201", "boolean-misread", "A boolean is read otherwise than it looks",
                               Severity::kError};
inline constexpr Rule kUnit{"K-0202", "unit-unknown", "A text that should name a unit names none", Severity::kError};
inline constexpr Rule kEnumeration{"K-0203", "enumeration-unknown", "A text that should name a value names none",
                                   Severity::kError};
inline constexpr Rule kNumber{"K-0204", "number-unreadable", "A text that should be a number is none",
                              Severity::kError};
inline constexpr Rule kDecimalComma{"K-0205", "decimal-comma", "A number has a comma where a point belongs",
                                    Severity::kError};
inline constexpr Rule kTransform{"K-0206", "transform-unreadable", "A transform is not 16 numbers, and is left out",
                                 Severity::kError};
inline constexpr Rule kFlat{"K-0207", "transform-flat", "A transform flattens what it places", Severity::kError};
inline constexpr Rule kMirror{"K-0208", "transform-mirrors", "A transform mirrors what it places", Severity::kNote};
inline constexpr Rule kShear{"K-0209", "transform-shears", "A transform shears what it places", Severity::kWarning};
inline constexpr Rule kVector{"K-0210", "vector-unreadable", "A text that should be three numbers is not",
                              Severity::kError};
inline constexpr Rule kTime{"K-0211", "time-unreadable", "A text that should be a time is none", Severity::kError};

}  // namespace DocumentRule

/// All of them, by their ids.
std::span<Rule const> DocumentRules();

/// Looks for what they find, and counts the document.
DocumentTally CheckDocument(SceneCheck& check);

}  // namespace KVR
