#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "inspect/Export.h"
#include "inspect/Finding.h"

namespace KVR
{

/// What became of what one file holds: of the elements and attributes of a document, of the elements of a property
/// file, of the records of a store.
struct Account
{
    std::string file;
    /// What is counted: "elements and attributes", "properties" or "records".
    std::string what;
    /// All that the file holds, counted without what reads it: a document, a property file and a file of persistent ids
    /// by a parse of their own, the records of a store in its head.
    std::uint64_t seen = 0;
    /// What objects, or the scene as a whole, were made of.
    std::uint64_t served = 0;
    /// Read and not understood: a default stands in its place.
    std::uint64_t defaulted = 0;
    /// Read, and its object dropped; or kept for an element that never came. By rule, in the order of the rules.
    std::vector<std::pair<Rule const*, std::uint64_t>> dropped;
    /// Never asked for.
    std::uint64_t unread = 0;

    /// The sum of what was dropped.
    KVR_INSPECT_API std::uint64_t Dropped() const;
    /// Whether all that was seen is in one of the others.
    KVR_INSPECT_API bool Agrees() const;
};

/// How a check goes about it.
struct CheckOptions
{
    /// Whether the scene may have a document type declaration, and with it entities and references to other documents.
    bool allowDtd = false;
    /// Whether kernel stores that the kernel judges insecure are restored all the same.
    bool insecure = false;
    /// Whether accounts are made, which costs a further reading of the document.
    bool account = false;
    /// Ids or names of rules: those that are looked for, all when there are none, without those of the second list.
    /// Names of no rule have no effect.
    std::vector<std::string> rules;
    std::vector<std::string> noRules;
};

/// What a check found.
struct CheckResult
{
    /// By file and place; those of the document first.
    std::vector<Finding> findings;
    /// Empty unless asked for; the document first, then the side files in the order in which they were read.
    std::vector<Account> accounts;
};

/// Reads a scene as a host would, and tells what is lost, odd or probably not meant. A scene that cannot be read is a
/// finding like others. Sets the policy of documents for the process (SetDocumentPolicy) and the calling thread's
/// observer for the length of the call. Needs about half as much memory again as the scene takes. Throws
/// std::bad_alloc, and nothing else.
KVR_INSPECT_API CheckResult CheckScene(std::string const& path, CheckOptions const& options = {});

}  // namespace KVR
