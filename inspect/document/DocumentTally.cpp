#include "inspect/document/DocumentTally.h"

#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "inspect/SceneCheck.h"
#include "inspect/document/DocumentRules.h"
#include "inspect/document/ReadRecord.h"
#include "inspect/document/TreeWalk.h"
#include "inspect/document/ValueMeaning.h"

namespace KVR
{

namespace
{

using namespace DocumentRule;
using xercesc::DOMNode;

// The element and all in it, with their attributes.
std::uint64_t CountAll(DOMNode const* element)
{
    std::uint64_t count = 0;
    for (TreeWalk walk(element); walk.Element(); walk.Next())
        count += 1 + walk.Element()->getAttributes()->getLength();
    return count;
}

bool IsAround(DOMNode const* outer, DOMNode const* inner)
{
    while (inner && inner != outer)
        inner = inner->getParentNode();
    return inner != nullptr;
}

Rule const& RuleOf(DropReason reason)
{
    switch (reason)
    {
        case DropReason::kNoTarget:
            return kReferenceMissing;
        case DropReason::kTargetKind:
            return kReferenceKind;
        case DropReason::kTooDeep:
            return kTooDeep;
        case DropReason::kChildFailed:
        case DropReason::kNoRecord:
        case DropReason::kRefused:
            break;
    }
    return kElementDropped;
}

}  // namespace

void DocumentCount::Put(Rule const* drop, std::uint64_t count)
{
    if (drop)
        m_tally.dropped[drop->id] += count;
    else
        m_tally.served += count;
}

void DocumentCount::Add(DOMNode const* element, Fate fate)
{
    switch (fate)
    {
        case Fate::kRead:
            AddRead(element);
            break;
        case Fate::kUnread:
            m_tally.unread += CountAll(element);
            break;
        case Fate::kLeftBehind:
            Put(&kSetEnded, CountAll(element));
            break;
        case Fate::kBeaten:
            Put(&kIdTwice, CountAll(element));
            break;
        case Fate::kNoRecord:
            Put(&kElementDropped, CountAll(element));
            break;
        case Fate::kTooDeep:
            Put(&kTooDeep, CountAll(element));
            break;
    }
}

// By which rule the nearest element around that makes an object left none; null when it made one.
Rule const* DocumentCount::DropOf(DOMNode const* element)
{
    while (!m_around.empty() && !IsAround(m_around.back().first, element))
        m_around.pop_back();
    ElementState const state = m_check.Record().StateOf(element);
    if (state.Is(ElementState::kRegistered))
        m_around.emplace_back(element, nullptr);
    else if (state.Is(ElementState::kDropped))
    {
        auto const failure = m_check.Record().Failures().find(element);
        bool const hasFailure = failure != m_check.Record().Failures().end();
        m_around.emplace_back(element, &RuleOf(hasFailure ? failure->second.reason : DropReason::kRefused));
    }
    return m_around.empty() ? nullptr : m_around.back().second;
}

void DocumentCount::AddRead(DOMNode const* element)
{
    ReadRecord const& record = m_check.Record();
    Rule const* const drop = DropOf(element);
    ElementState const state = record.StateOf(element);
    auto const isMisread = [&](XMLCh const* text)
    {
        auto const found = text ? record.Misreadings().find(text) : record.Misreadings().end();
        return found != record.Misreadings().end() && !found->second.isUnderstood;
    };
    xercesc::DOMNamedNodeMap const* const attributes = element->getAttributes();
    for (XMLSize_t i = 0, count = attributes->getLength(); i < count; ++i)
    {
        if (!state.IsAttributeRead(i) && !IsOfXml(attributes->item(i)->getNodeName()))
            ++m_tally.unread;
        else if (isMisread(attributes->item(i)->getNodeValue()))
            ++m_tally.defaulted;
        else
            Put(drop, 1);
    }
    DOMNode const* const first = element->getFirstChild();
    XMLCh const* text = first ? first->getNodeValue() : nullptr;
    if (first && first->getNextSibling())
        text = record.JoinedTextOf(element);
    if (isMisread(text))
        ++m_tally.defaulted;
    else
        Put(drop, 1);
}

}  // namespace KVR
