#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <xercesc/dom/DOMNode.hpp>

#include "inspect/SceneCheck.h"
#include "inspect/document/DocumentTally.h"
#include "inspect/document/KindCheck.h"
#include "inspect/document/ReadRecord.h"

namespace KVR
{

/// Goes over the tree of a document that was read and finds what nobody asked for, and texts that were misread.
class DocumentWalk
{
public:
    /// The tally is filled when accounts are wanted.
    DocumentWalk(SceneCheck& check, DocumentTally& tally);
    ~DocumentWalk();
    DocumentWalk(DocumentWalk const&) = delete;
    DocumentWalk& operator=(DocumentWalk const&) = delete;

    void Run();

private:
    Fate Look(xercesc::DOMNode const* element);
    void NoteEnd(xercesc::DOMNode const* child);
    bool IsLeftBehind(xercesc::DOMNode const* element);
    void AddUnread(xercesc::DOMNode const* element, ElementState state);
    void LookAtAttributes(xercesc::DOMNode const* element, ElementState state);
    void LookForOtherCase(xercesc::DOMNode const* element, ElementState state);
    void AddUnreadAttribute(xercesc::DOMNode const* element, XMLCh const* name, XMLCh const* text);
    void LookAtText(xercesc::DOMNode const* element);
    void AddEnds();

    /// A set that a failed child ended, and the elements behind the child that were left unread.
    struct End
    {
        xercesc::DOMNode const* child = nullptr;
        std::uint64_t left = 0;
    };

    SceneCheck& m_check;
    DocumentCount m_count;
    KindCheck m_kinds;
    ReadRecord const& m_record;
    /// Failed children, with the sets that they ended and perhaps the owners of these.
    std::unordered_map<xercesc::DOMNode const*, ElementFailure const*> m_failedChildren;
    /// Elements whose further children are left behind, by the ends that say so.
    std::unordered_map<xercesc::DOMNode const*, std::size_t> m_ended;
    std::vector<End> m_ends;
    /// Elements whose ids belong to others: nothing in them is looked at.
    std::unordered_set<xercesc::DOMNode const*> m_beaten;
};

}  // namespace KVR
