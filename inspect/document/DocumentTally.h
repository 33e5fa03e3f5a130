#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <utility>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "inspect/Finding.h"

namespace KVR
{

class SceneCheck;

/// What became of the elements and attributes of a document.
struct DocumentTally
{
    std::uint64_t served = 0;
    std::uint64_t defaulted = 0;
    std::uint64_t unread = 0;
    /// By the ids of the rules.
    std::map<std::string_view, std::uint64_t> dropped;
};

/// What became of an element and all in it.
enum class Fate
{
    /// It was read; those in it have fates of their own.
    kRead,
    kUnread,
    /// It stands behind a child that failed.
    kLeftBehind,
    /// Its id belongs to another element.
    kBeaten,
    /// No store held anything for it.
    kNoRecord,
    kTooDeep
};

/// Counts the elements of a document as they are walked.
class DocumentCount
{
public:
    DocumentCount(SceneCheck const& check, DocumentTally& tally) : m_check(check), m_tally(tally) {}

    /// To be called in the order of the document, with an element whose fate is not to be read for all that is in it.
    void Add(xercesc::DOMNode const* element, Fate fate);

private:
    Rule const* DropOf(xercesc::DOMNode const* element);
    void AddRead(xercesc::DOMNode const* element);
    void Put(Rule const* drop, std::uint64_t count);

    SceneCheck const& m_check;
    DocumentTally& m_tally;
    /// The elements around that make or leave objects, each with the rule by which it left none, or null.
    std::vector<std::pair<xercesc::DOMNode const*, Rule const*>> m_around;
};

}  // namespace KVR
