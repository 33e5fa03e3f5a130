#include "inspect/document/DropChain.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>
#include <utility>

#include "framework/xml_util/DomWalk.h"
#include "inspect/SceneCheck.h"
#include "inspect/document/DocumentRules.h"
#include "inspect/document/ReadRecord.h"

namespace KVR
{

namespace
{

using namespace DocumentRule;
using xercesc::DOMNode;

constexpr std::size_t kMostReasons = 12;

// "IPart p".
std::string Named(DOMNode const* element)
{
    std::string const id = AttributeOf(element, Names::ID);
    return id.empty() ? NameOf(element) : NameOf(element) + " " + id;
}

ElementFailure const* FailureOf(ReadRecord const& record, DOMNode const* element)
{
    auto const found = record.Failures().find(element);
    return found == record.Failures().end() ? nullptr : &found->second;
}

// The first element in it, itself excluded, that refers to what is missing.
std::pair<DOMNode const*, MissedReference const*> MissedIn(ReadRecord const& record, DOMNode const* element)
{
    for (DOMNode const* child = element->getFirstChild(); child; child = child->getNextSibling())
    {
        auto const found = record.MissedReferences().find(child);
        if (found != record.MissedReferences().end())
            return {child, &found->second};
    }
    return {nullptr, nullptr};
}

// The element under the root of that id.
DOMNode const* UnderRoot(SceneCheck const& check, std::string const& id)
{
    DOMNode const* last = nullptr;
    for (DOMNode const* child = check.Root()->getFirstChild(); child; child = child->getNextSibling())
    {
        if (IsElement(child) && AttributeOf(child, Names::ID) == id)
            last = child;
    }
    return last;
}

std::string TextOf(MissedReference const& missed)
{
    if (missed.isCycle)
        return "the reference to " + missed.id + " leads back to what is being read";
    if (missed.end == ReferenceEnd::kTooDeep)
        return "references are followed only so deep, and " + missed.id + " is deeper";
    return "there is no object " + missed.id;
}

// The reason of the element, and the element whose own reason comes next, or null.
std::string ReasonOf(SceneCheck const& check, DOMNode const* element, ElementFailure const& failure,
                     DOMNode const*& next)
{
    next = nullptr;
    switch (failure.reason)
    {
        case DropReason::kChildFailed:
            next = failure.child;
            return Named(failure.child) + " in it failed";
        case DropReason::kNoTarget:
        {
            auto const [child, missed] = MissedIn(check.Record(), element);
            if (!missed)
                return Named(element) + " names nothing that it places";
            if (!missed->isCycle)
                next = UnderRoot(check, missed->id);
            return TextOf(*missed);
        }
        case DropReason::kTargetKind:
            return "what " + Named(element) + " places is neither a component nor a file";
        case DropReason::kNoRecord:
            return "no store holds anything for " + Named(element);
        case DropReason::kRefused:
            return Named(element) + " lacks what it needs, or has a text for it that is not known";
        case DropReason::kTooDeep:
            return Named(element) + " is nested too deeply";
    }
    return {};
}

void AddMissed(SceneCheck& check, DOMNode const* element, MissedReference const& missed)
{
    Rule const& rule = missed.isCycle ? kCycle : missed.end == ReferenceEnd::kTooDeep ? kTooDeep : kReferenceMissing;
    bool const isLater = !missed.isCycle && check.ElementOf(missed.id) != nullptr;
    std::string readAs = isLater          ? "cut, since the object is read only later"
                         : missed.isCycle ? "cut, since it leads back to what is being read"
                                          : TextOf(missed);
    Finding* const finding =
        check.Add(rule, {element, SpotPart::kAttributeValue, Names::ID.Document()}, missed.id, std::move(readAs));
    if (!finding || isLater || missed.isCycle)
        return;
    if (DOMNode const* const target = UnderRoot(check, missed.id))
        finding->reasons = DropReasons(check, target);
}

}  // namespace

bool LacksRecord(ReadRecord const& record, DOMNode const* element)
{
    ElementFailure const* const failure = FailureOf(record, element);
    return failure && failure->reason == DropReason::kNoRecord &&
           !record.StateOf(element).Is(ElementState::kRegistered);
}

std::vector<std::string> DropReasons(SceneCheck const& check, DOMNode const* element)
{
    std::vector<std::string> reasons;
    std::unordered_set<DOMNode const*> told;
    while (element && reasons.size() < kMostReasons && told.insert(element).second)
    {
        ElementFailure const* const failure = FailureOf(check.Record(), element);
        if (!failure)
            break;
        reasons.push_back(ReasonOf(check, element, *failure, element));
    }
    return reasons;
}

void CheckDropped(SceneCheck& check)
{
    ReadRecord const& record = check.Record();
    for (auto const& [element, missed] : record.MissedReferences())
        AddMissed(check, element, missed);
    for (auto const& [element, failure] : record.Failures())
    {
        if (record.StateOf(element).Is(ElementState::kRegistered))
            continue;
        if (failure.reason == DropReason::kTooDeep)
            check.Add(kTooDeep, {element}, Named(element), "cut, since it is nested too deeply");
        else if (failure.reason == DropReason::kTargetKind)
            check.Add(kReferenceKind, {element}, Named(element),
                      "dropped, since what it places is neither a component nor a file");
        else if (failure.reason == DropReason::kRefused ||
                 (failure.reason == DropReason::kNoTarget && !MissedIn(record, element).first))
        {
            Finding* const finding = check.Add(kElementDropped, {element}, Named(element), "dropped");
            if (finding)
                finding->reasons = DropReasons(check, element);
        }
    }
}

void CheckKinds(SceneCheck& check)
{
    ReadRecord const& record = check.Record();
    for (ChildReference const& reference : record.ChildReferences())
    {
        DOMNode const* const target = check.ElementOf(reference.id);
        std::vector<std::u16string_view> const& kinds = record.KindsOf(reference);
        bool const fits =
            !target || std::any_of(kinds.begin(), kinds.end(),
                                   [&](std::u16string_view kind) { return Equals(target->getNodeName(), kind); });
        if (!fits)
            check.Add(kReferenceKind, {reference.element, SpotPart::kAttributeValue, Names::ID.Document()},
                      reference.id, "taken for a child, although no " + NameOf(target) + " can be one there");
    }
}

void CheckIds(SceneCheck& check)
{
    ReadRecord const& record = check.Record();
    for (auto const& [former, element] : record.Replaced())
        check.Add(kIdTwice, {former, SpotPart::kAttributeValue, Names::ID.Document()}, AttributeOf(former, Names::ID),
                  "not read, since " + PathOf(element) + " behind it has the same id and wins");
    for (auto const& [element, isRegistered] : record.Seconds())
    {
        std::string const id = AttributeOf(element, Names::ID);
        DOMNode const* const first = check.ElementOf(id);
        std::string const winner = first ? PathOf(first) : std::string("another element");
        check.Add(kIdTwice, {element, SpotPart::kAttributeValue, Names::ID.Document()}, id,
                  isRegistered ? "an object that no reference leads to, since " + winner + " has the same id and wins"
                               : "not read, since " + winner + " has the same id and wins");
    }
}

}  // namespace KVR
