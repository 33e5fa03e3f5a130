#include "inspect/explain/AnswerSources.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "framework/api/IObject.h"
#include "framework/api/IProducer.h"
#include "framework/api/Unicode.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "inspect/SceneCheck.h"
#include "inspect/explain/ObjectAnswers.h"
#include "inspect/explain/SkeletonScene.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;
using Answers = std::vector<ObjectAnswer>;

// An element with more attributes or children than that is not tried further.
constexpr std::size_t kMostTries = 64;
constexpr std::size_t kLongestText = 80;

std::string Narrow(XMLCh const* text)
{
    return std::string(XMLStrUtil::XMLStrToAStr(text).View());
}

std::u16string UTF16Text(std::string const& text)
{
    return Unicode::Utf16FromUtf8(text);
}

std::string Cut(std::string text)
{
    if (text.size() > kLongestText)
    {
        std::size_t size = kLongestText;
        while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80)
            --size;
        text = text.substr(0, size) + "...";
    }
    return text;
}

// Something in the element that answers may follow.
struct Cause
{
    AnswerSource source = AnswerSource::kAttribute;
    std::string name;
    std::string text;
    std::string understood;
    std::vector<SkeletonScene::Change> changes;
    /// The child that it is, or is an attribute of; null for what the element has itself.
    DOMNode const* child = nullptr;
};

struct Texts
{
    std::string text;
    std::string understood;
};

void Append(std::string& text, std::string const& more, char const* gap)
{
    if (!more.empty())
        text += (text.empty() ? "" : gap) + more;
}

// The attributes of an element and of those in it, as they were written and understood; of objects the ids alone.
void AppendTexts(Texts& texts, DOMNode const* element, ReadingTrace const& trace, unsigned depth)
{
    xercesc::DOMNamedNodeMap const* const attributes = element->getAttributes();
    bool const isObject = depth > 0 && attributes->getNamedItem(Names::ID.Document()) != nullptr;
    for (XMLSize_t i = 0; i < attributes->getLength() && texts.text.size() <= kLongestText; ++i)
    {
        DOMNode const* const attribute = attributes->item(i);
        std::string const name = Narrow(attribute->getNodeName());
        if (isObject && name != std::string_view(Names::ID))
            continue;
        Append(texts.text, name + "='" + Narrow(attribute->getNodeValue()) + "'", " ");
        if (auto const* const reading = trace.ReadingOf(attribute->getNodeValue()))
            Append(texts.understood, name + " " + UnderstandingOf(*reading), ", ");
    }
    if (isObject)
        return;
    DOMNode const* const text = element->getFirstChild();
    if (text && !text->getNextSibling() && text->getNodeType() == DOMNode::TEXT_NODE)
    {
        Append(texts.text, Narrow(text->getNodeValue()), " ");
        if (auto const* const reading = trace.ReadingOf(text->getNodeValue()))
            Append(texts.understood, UnderstandingOf(*reading), ", ");
    }
    for (DOMNode const* const child : Children(element))
        if (depth < 3 && texts.text.size() <= kLongestText)
        {
            Append(texts.text, NameOf(child), " ");
            AppendTexts(texts, child, trace, depth + 1);
        }
}

// Each attribute of an element left out, and with other texts. `read` is what was read of it.
void AppendChanges(std::vector<SkeletonScene::Change>& changes, DOMNode const* original, DOMNode const* read,
                   std::string const& name, ReadingTrace const& trace)
{
    DOMNode const* const attribute = read->getAttributes()->getNamedItem(UTF16Text(name).c_str());
    if (!attribute)
        return;
    SkeletonScene::Change change;
    change.changed = original;
    change.attribute = name;
    changes.push_back(change);
    for (std::string const& other :
         OtherTexts(trace.ReadingOf(attribute->getNodeValue()), Narrow(attribute->getNodeValue())))
    {
        change.text = other;
        changes.push_back(change);
    }
}

std::vector<std::string> AttributeNames(DOMNode const* element)
{
    std::vector<std::string> names;
    xercesc::DOMNamedNodeMap const* const attributes = element->getAttributes();
    for (XMLSize_t i = 0; i < attributes->getLength() && names.size() < kMostTries; ++i)
        names.push_back(Narrow(attributes->item(i)->getNodeName()));
    return names;
}

// What answers may follow in an element that was read: each of its attributes, of a child with the child's name.
void AppendAttributeCauses(std::vector<Cause>& causes, DOMNode const* original, DOMNode const* read, bool isChild,
                           ReadingTrace const& trace)
{
    for (std::string const& name : AttributeNames(original))
    {
        DOMNode const* const attribute = read->getAttributes()->getNamedItem(UTF16Text(name).c_str());
        if (!attribute || (!isChild && name == std::string_view(Names::ID)))
            continue;
        Cause& cause = causes.emplace_back();
        cause.name = isChild ? NameOf(original) + "/" + name : name;
        cause.text = Narrow(attribute->getNodeValue());
        cause.child = isChild ? original : nullptr;
        if (ReadingTrace::Reading const* const reading = trace.ReadingOf(attribute->getNodeValue()))
            cause.understood = UnderstandingOf(*reading);
        AppendChanges(cause.changes, original, read, name, trace);
    }
}

Cause ChildCause(DOMNode const* original, DOMNode const* read, ReadingTrace const& trace)
{
    Texts texts;
    AppendTexts(texts, read, trace, 0);
    SkeletonScene::Change change;
    change.child = original;
    return {AnswerSource::kElement, NameOf(original), texts.text, texts.understood, {change}, original};
}

// `read` is what was read of the element: its children are the same, in the same order.
std::vector<Cause> CausesOf(DOMNode const* element, DOMNode const* read, ReadingTrace const& trace)
{
    std::vector<Cause> causes;
    AppendAttributeCauses(causes, element, read, false, trace);
    auto const children = Children(read);
    auto at = children.begin();
    for (DOMNode const* const child : Children(element))
    {
        if (causes.size() >= kMostTries || !(at != children.end()))
            break;
        causes.push_back(ChildCause(child, *at, trace));
        AppendAttributeCauses(causes, child, *at, true, trace);
        ++at;
    }
    return causes;
}

// Leaving out a store shows what stands in it, unless there is no object without it.
void AppendStoreCauses(std::vector<Cause>& causes, SkeletonScene const& skeleton)
{
    for (DOMNode const* const section : skeleton.Sections())
    {
        SkeletonScene::Change change;
        change.child = section;
        causes.push_back({AnswerSource::kStore, {}, {}, {}, {change}, nullptr});
    }
}

// For each operation the causes that its answer follows.
using Followed = std::map<std::string_view, std::vector<Cause const*>>;

// False when no more readings are left.
bool Try(Cause const& cause, SkeletonScene const& skeleton, Answers const& base, std::size_t& reads, Followed& followed)
{
    for (SkeletonScene::Change const& change : cause.changes)
    {
        if (reads == 0)
            return false;
        --reads;
        std::optional<Answers> const changed = skeleton.Read(change);
        // Without it there is no object at all: what follows it shows when it is another.
        if (!changed || changed->size() != base.size())
            continue;
        for (std::size_t i = 0; i < base.size(); ++i)
        {
            std::vector<Cause const*>& causes = followed[base[i].operation];
            if (!(base[i].answer == (*changed)[i].answer) && (causes.empty() || causes.back() != &cause))
                causes.push_back(&cause);
        }
    }
    return true;
}

// A child whose attributes tell more is left out.
void Explain(ExplainedAnswer& answer, std::vector<Cause const*> const& causes)
{
    auto const isToldBetter = [&](Cause const& cause)
    {
        return cause.source == AnswerSource::kElement &&
               std::any_of(causes.begin(), causes.end(),
                           [&](Cause const* other)
                           { return other->source == AnswerSource::kAttribute && other->child == cause.child; });
    };
    bool isFirst = true;
    for (Cause const* const cause : causes)
    {
        if (isToldBetter(*cause))
            continue;
        if (std::exchange(isFirst, false))
            answer.source = cause->source;
        Append(answer.from, cause->name, " ");
        Append(answer.text, cause->text, " ");
        Append(answer.understood, cause->understood, ", ");
    }
    answer.text = Cut(answer.text);
}

// Null, and empty texts and lists: what a record does not state either.
bool IsNothing(Answer const& answer)
{
    if (auto const* const text = std::get_if<std::string>(&answer.value))
        return text->empty();
    if (auto const* const list = std::get_if<Answer::List>(&answer.value))
        return list->empty();
    return std::holds_alternative<std::monostate>(answer.value);
}

// Of an answer that follows nothing in the element: in the scene, as the element was read apart, and so with
// properties.
AnswerSource SourceWithoutCause(ObjectAnswer const& answer, ObjectAnswer const& apart, ObjectAnswer const& full,
                                bool hasRecord)
{
    if (!(apart.answer == full.answer))
        return AnswerSource::kPropertyFile;
    if (!(apart.answer == answer.answer))
        return AnswerSource::kOther;
    return hasRecord && answer.isOwn && !IsNothing(answer.answer) ? AnswerSource::kStore : AnswerSource::kDefault;
}

}  // namespace

std::vector<ExplainedAnswer> ExplainAnswers(IObject& object, IProducer& producer, DOMNode const* element,
                                            SkeletonScene const& skeleton, bool hasRecord)
{
    Answers const answers = AnswersOf(object, producer);
    ReadingTrace trace(object.Id());
    std::vector<Cause> causes;
    std::optional<Answers> const base = skeleton.Read(
        {}, &trace, [&] { causes = CausesOf(element, trace.Element() ? trace.Element() : element, trace); });
    SkeletonScene::Change withProperties;
    withProperties.hasProperties = true;
    std::optional<Answers> const full = base ? skeleton.Read(withProperties) : std::nullopt;
    bool const isKnown = base && full && base->size() == answers.size() && full->size() == answers.size();
    Followed followed;
    std::size_t reads = skeleton.MostReads();
    bool isComplete = true;
    AppendStoreCauses(causes, skeleton);
    if (isKnown)
        isComplete = std::all_of(causes.begin(), causes.end(),
                                 [&](Cause const& cause) { return Try(cause, skeleton, *base, reads, followed); });
    std::vector<ExplainedAnswer> explained;
    for (std::size_t i = 0; i < answers.size(); ++i)
    {
        ExplainedAnswer& answer = explained.emplace_back();
        answer.operation = answers[i].operation;
        answer.value = BriefText(answers[i].answer);
        std::vector<Cause const*> const& those = followed[answers[i].operation];
        if (answer.operation == "Id")
        {
            answer.source = AnswerSource::kAttribute;
            answer.from = Names::ID.Narrow();
            answer.text = AttributeOf(element, Names::ID);
        }
        else if (!those.empty())
            Explain(answer, those);
        else if (isKnown && isComplete)
            answer.source = SourceWithoutCause(answers[i], (*base)[i], (*full)[i], hasRecord);
    }
    return explained;
}

}  // namespace KVR
