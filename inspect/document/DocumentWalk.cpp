#include "inspect/document/DocumentWalk.h"

#include <algorithm>
#include <string_view>
#include <vector>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "inspect/document/DocumentRules.h"
#include "inspect/document/DropChain.h"
#include "inspect/document/TreeWalk.h"
#include "inspect/document/ValueCheck.h"
#include "inspect/document/ValueMeaning.h"
#include "scene/NearestNames.h"

namespace KVR
{

namespace
{

using namespace DocumentRule;
using xercesc::DOMNode;

std::string Narrow(XMLCh const* text)
{
    return std::string(XMLStrUtil::XMLStrToAStr(text).View());
}

std::string Narrow(std::u16string_view text)
{
    return Narrow(std::u16string(text).c_str());
}

bool IsSameAnyCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y)
                      {
                          auto const lower = [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : int(c); };
                          return lower(x) == lower(y);
                      });
}

// The name that is meant by one that is not known there; empty when none is near.
std::string Nearest(std::string const& name, std::vector<std::string> const& known)
{
    NearestNames nearest(name, 1, std::max<std::size_t>(1, name.size() * 2 / 5));
    for (std::string const& candidate : known)
        nearest.Add(candidate);
    std::vector<std::string> const names = nearest.Names();
    return names.empty() ? std::string() : names.front();
}

}  // namespace

DocumentWalk::DocumentWalk(SceneCheck& check, DocumentTally& tally)
    : m_check(check), m_count(check, tally), m_kinds(check), m_record(check.Record())
{
    for (auto const& [set, failure] : m_record.Failures())
    {
        if (failure.reason == DropReason::kChildFailed)
            m_failedChildren.emplace(failure.child, &failure);
    }
    for (auto const& [former, element] : m_record.Replaced())
        m_beaten.insert(former);
    for (auto const& [element, isRegistered] : m_record.Seconds())
    {
        if (!isRegistered)
            m_beaten.insert(element);
    }
}

DocumentWalk::~DocumentWalk() = default;

void DocumentWalk::Run()
{
    for (TreeWalk walk(m_check.Root()); walk.Element();)
    {
        Fate const fate = Look(walk.Element());
        if (m_check.Options().account)
            m_count.Add(walk.Element(), fate);
        if (fate == Fate::kRead)
            walk.Next();
        else
            walk.SkipBelow();
    }
    AddEnds();
}

Fate DocumentWalk::Look(DOMNode const* element)
{
    ElementState const state = m_record.StateOf(element);
    if (IsLeftBehind(element))
        return Fate::kLeftBehind;
    NoteEnd(element);
    // These two were looked at for their ids alone, which may be what is misspelt.
    bool const isBeaten = m_beaten.contains(element);
    if (isBeaten || LacksRecord(m_record, element))
    {
        LookForOtherCase(element, state);
        return isBeaten ? Fate::kBeaten : Fate::kNoRecord;
    }
    if (!state.Is(ElementState::kRead))
    {
        AddUnread(element, state);
        return state.Is(ElementState::kDropped) ? Fate::kTooDeep : Fate::kUnread;
    }
    LookAtAttributes(element, state);
    LookAtText(element);
    m_kinds.LookAt(element);
    return Fate::kRead;
}

void DocumentWalk::NoteEnd(DOMNode const* child)
{
    auto const found = m_failedChildren.find(child);
    if (found == m_failedChildren.end())
        return;
    m_ends.push_back({child, 0});
    DOMNode const* const set = child->getParentNode();
    m_ended.emplace(set, m_ends.size() - 1);
    if (found->second->leavesOwner && set->getParentNode())
        m_ended.emplace(set->getParentNode(), m_ends.size() - 1);
}

bool DocumentWalk::IsLeftBehind(DOMNode const* element)
{
    auto const found = m_ended.find(element->getParentNode());
    if (found == m_ended.end() || m_record.StateOf(element).Is(ElementState::kRead))
        return false;
    ++m_ends[found->second].left;
    return true;
}

void DocumentWalk::AddEnds()
{
    for (End const& end : m_ends)
    {
        if (end.left == 0)
            continue;
        Finding* const finding =
            m_check.Add(kSetEnded, {end.child}, NameOf(end.child) + " " + AttributeOf(end.child, Names::ID),
                        std::to_string(end.left) +
                            (end.left == 1 ? " element behind it is" : " elements behind it are") + " left unread");
        if (finding)
            finding->reasons = DropReasons(m_check, end.child);
    }
}

void DocumentWalk::AddUnread(DOMNode const* element, ElementState state)
{
    std::string const name = NameOf(element);
    Spot const spot{element, SpotPart::kName};
    if (state.Is(ElementState::kDropped))
    {
        // One that is nested too deeply is told by its own rule, one without a record by those of side files.
        return;
    }
    std::vector<std::string> known;
    for (std::u16string_view const candidate : m_record.NamesFor(element))
        known.push_back(Narrow(candidate));
    if (state.Is(ElementState::kMatched) || std::find(known.begin(), known.end(), name) != known.end())
    {
        m_check.Add(kElementPassedOver, spot, name, "known there, but not read");
        return;
    }
    std::string const meant = Nearest(name, known);
    if (meant.empty())
    {
        m_check.Add(kElementUnread, spot, name, "not read");
        return;
    }
    DOMNode const* const around = element->getParentNode();
    bool const isEntry = Equals(around->getNodeName(), Names::FileProperties);
    Finding* const finding = m_check.Add(isEntry ? kFileProperty : kElementMisspelt, spot, name, "not read", meant);
    if (IsSameAnyCase(name, meant))
        m_check.Repair(finding, meant);
}

void DocumentWalk::LookAtAttributes(DOMNode const* element, ElementState state)
{
    xercesc::DOMNamedNodeMap const* const attributes = element->getAttributes();
    bool const hasMisreadings = !m_record.Misreadings().empty();
    for (XMLSize_t i = 0, count = attributes->getLength(); i < count; ++i)
    {
        DOMNode const* const attribute = attributes->item(i);
        if (!state.IsAttributeRead(i))
        {
            if (!IsOfXml(attribute->getNodeName()))
                AddUnreadAttribute(element, attribute->getNodeName(), attribute->getNodeValue());
            continue;
        }
        if (!hasMisreadings)
            continue;
        XMLCh const* const text = attribute->getNodeValue();
        auto const found = m_record.Misreadings().find(text);
        if (found != m_record.Misreadings().end())
            ValueCheck(m_check).Add({element, SpotPart::kAttributeValue, attribute->getNodeName()},
                                    Narrow(attribute->getNodeName()), Narrow(text), found->second);
    }
}

void DocumentWalk::LookForOtherCase(DOMNode const* element, ElementState state)
{
    xercesc::DOMNamedNodeMap const* const attributes = element->getAttributes();
    for (XMLSize_t i = 0, count = attributes->getLength(); i < count; ++i)
    {
        XMLCh const* const name = attributes->item(i)->getNodeName();
        std::vector<XMLCh const*> const asked = m_record.AttributesFor(element);
        bool const isMisspelt =
            !state.IsAttributeRead(i) &&
            std::any_of(asked.begin(), asked.end(),
                        [&](XMLCh const* known)
                        { return !UnobservedAttribute(element, known) && EqualsAnyCase(name, known); });
        if (isMisspelt)
            AddUnreadAttribute(element, name, attributes->item(i)->getNodeValue());
    }
}

void DocumentWalk::AddUnreadAttribute(DOMNode const* element, XMLCh const* attribute, XMLCh const* text)
{
    std::string const name = Narrow(attribute);
    Spot const spot{element, SpotPart::kAttributeName, attribute};
    std::string const found = name + "=\"" + Narrow(text) + "\"";
    // One that is there was not misspelt.
    std::vector<std::string> known;
    bool isKnown = false;
    for (XMLCh const* const asked : m_record.AttributesFor(element))
    {
        isKnown = isKnown || Equals(asked, attribute);
        if (!UnobservedAttribute(element, asked))
            known.push_back(Narrow(asked));
    }
    if (isKnown)
    {
        m_check.Add(kAttributeUnread, spot, found, "known there, but not read: another one was read in its place");
        return;
    }
    std::string const meant = Nearest(name, known);
    if (meant.empty())
    {
        m_check.Add(kAttributeUnread, spot, found, "not read");
        return;
    }
    Finding* const finding = m_check.Add(kAttributeMisspelt, spot, found, "not read", meant);
    if (IsSameAnyCase(name, meant))
        m_check.Repair(finding, meant);
}

void DocumentWalk::LookAtText(DOMNode const* element)
{
    if (m_record.Misreadings().empty())
        return;
    DOMNode const* const first = element->getFirstChild();
    if (!first)
        return;
    XMLCh const* text = first->getNodeValue();
    if (first->getNextSibling() != nullptr)
        text = m_record.JoinedTextOf(element);
    auto const found = text ? m_record.Misreadings().find(text) : m_record.Misreadings().end();
    if (found != m_record.Misreadings().end())
        ValueCheck(m_check).Add({element, SpotPart::kText}, {}, Narrow(text), found->second);
}

}  // namespace KVR
