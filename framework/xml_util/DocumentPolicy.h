#pragma once

#include <cstddef>
#include <limits>
#include <optional>

#include "framework/xml_util/Export.h"

namespace KVR
{

/// What the document of a scene may make the parser do. By default all that the parser can; a host that reads scenes of
/// strangers takes Untrusted(). XML side files are read without document types, schemas and other documents in any
/// case.
struct DocumentPolicy
{
    /// Which other documents may be opened: external entities, the external part of a document type, schemas.
    enum class OtherDocuments
    {
        kAll,
        /// Those of the file system, wherever they are.
        kFiles,
        kNone
    };

    static constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

    /// Whether a document type declaration is read; else it is a refusal.
    bool documentTypes = true;
    /// Whether schemas that the document names are opened; else they are passed over.
    bool schemas = true;
    /// Another document than that is a refusal.
    OtherDocuments otherDocuments = OtherDocuments::kAll;
    /// More of one of these is a refusal: elements in one another; attributes of one element; different names of
    /// elements, or of attributes; references to entities that are expanded.
    std::size_t maxDepth = kNoLimit;
    std::size_t maxAttributes = kNoLimit;
    std::size_t maxNames = kNoLimit;
    std::size_t maxEntities = kNoLimit;

    /// Neither document types, nor schemas, nor other documents; 10,000 levels, 1,000 attributes, 10,000 names and
    /// 10,000 entities, within which the time of parsing is in proportion to the document.
    static constexpr DocumentPolicy Untrusted() noexcept
    {
        return {.documentTypes = false,
                .schemas = false,
                .otherDocuments = OtherDocuments::kNone,
                .maxDepth = 10'000,
                .maxAttributes = 1'000,
                .maxNames = 10'000,
                .maxEntities = 10'000};
    }

    friend bool operator==(DocumentPolicy const&, DocumentPolicy const&) = default;
};

/// Why a document was not read.
enum class DocumentRefusal
{
    kDocumentType,
    kOtherDocument,
    kDepth,
    kAttributes,
    kNames,
    kEntities
};

/// From now on holds for each document that is opened (QueryFile or BeginProcess of a producer, whichever comes first),
/// in the whole process. May be called from any thread, at any time. Throws nothing.
KVR_XML_UTIL_API void SetDocumentPolicy(DocumentPolicy const& policy) noexcept;
/// The policy that holds now.
KVR_XML_UTIL_API DocumentPolicy CurrentDocumentPolicy() noexcept;

/// Why the latest document that this thread opened was refused; nothing when the policy did not stand in its way. To a
/// producer a refused document is one that cannot be parsed.
KVR_XML_UTIL_API std::optional<DocumentRefusal> LastDocumentRefusal() noexcept;

}  // namespace KVR
