#include "inspect/document/DropChain.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>
#include <utility>

#include "framework/api/IComponent.h"
#include "framework/api/IFile.h"
#include "framework/api/IProducer.h"
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

// An instance of what cannot be placed. Of several targets the last one counts.
void AddNotPlaced(SceneCheck& check, DOMNode const* instance)
{
    Spot spot{instance};
    std::string found = Named(instance);
    for (DOMNode const* child = instance->getFirstChild(); child; child = child->getNextSibling())
    {
        if (!IsElement(child) || !Equals(child->getNodeName(), Names::Child))
            continue;
        spot = {child, SpotPart::kAttributeValue, Names::ID.Document()};
        found = AttributeOf(child, Names::ID);
    }
    check.Add(kReferenceKind, spot, std::move(found),
              "the instance is dropped, since what it places is neither a component nor a file");
}

bool IsOneOf(DOMNode const* element, std::vector<std::u16string_view> const& kinds)
{
    return std::any_of(kinds.begin(), kinds.end(),
                       [&](std::u16string_view kind) { return Equals(element->getNodeName(), kind); });
}

void AddChildOfOtherKind(SceneCheck& check, DOMNode const* child, std::string const& id, DOMNode const* target)
{
    check.Add(kReferenceKind, {child, SpotPart::kAttributeValue, Names::ID.Document()}, id,
              "taken for a child, although no " + NameOf(target) + " can be one there");
}

// Whether what comes too late could not stand there either, which is what is told then.
bool AddLaterOfOtherKind(SceneCheck& check, DOMNode const* element, MissedReference const& missed)
{
    DOMNode const* const target = check.ElementOf(missed.id);
    if (missed.kinds && !IsOneOf(target, check.Record().KindsOf(*missed.kinds)))
    {
        AddChildOfOtherKind(check, element, missed.id, target);
        return true;
    }
    IObject* const object = check.Producer().Load(UTF8String(missed.id));
    bool const isPlaced = Equals(element->getParentNode()->getNodeName(), Names::IInstance);
    if (!isPlaced || dynamic_cast<IComponent*>(object) || dynamic_cast<IFile*>(object))
        return false;
    AddNotPlaced(check, element->getParentNode());
    return true;
}

void AddMissed(SceneCheck& check, DOMNode const* element, MissedReference const& missed)
{
    Rule const& rule = missed.isCycle ? kCycle : missed.end == ReferenceEnd::kTooDeep ? kTooDeep : kReferenceMissing;
    bool const isLater = !missed.isCycle && check.ElementOf(missed.id) != nullptr;
    if (isLater && AddLaterOfOtherKind(check, element, missed))
        return;
    std::string readAs = isLater          ? "cut, since the object is read only later"
                         : missed.isCycle ? "cut, since it leads back to what is being read"
                                          : TextOf(missed);
    bool const isNowhere = !isLater && missed.end == ReferenceEnd::kUnknown;
    Finding* const finding = check.Add(rule, {element, SpotPart::kAttributeValue, Names::ID.Document()}, missed.id,
                                       std::move(readAs), isNowhere ? check.NearestId(missed.id) : std::string());
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
    for (DOMNode const* const element : record.Overwritten())
        check.Add(kElementOverwritten, {element}, Named(element), "written over by a later one of its name");
    for (auto const& [element, missed] : record.MissedReferences())
        AddMissed(check, element, missed);
    for (auto const& [element, failure] : record.Failures())
    {
        if (record.StateOf(element).Is(ElementState::kRegistered))
            continue;
        if (failure.reason == DropReason::kTooDeep)
            check.Add(kTooDeep, {element}, Named(element), "cut, since it is nested too deeply");
        else if (failure.reason == DropReason::kTargetKind)
            AddNotPlaced(check, element);
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
        if (target && !IsOneOf(target, record.KindsOf(reference.kinds)))
            AddChildOfOtherKind(check, reference.element, reference.id, target);
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
