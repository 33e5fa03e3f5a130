#include "inspect/document/ReadRecord.h"

#include <algorithm>
#include <cmath>

#include "framework/api/Matrix3d.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "inspect/document/ValueMeaning.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

std::string Narrow(XMLCh const* text)
{
    return std::string(XMLStrUtil::XMLStrToAStr(text).View());
}

std::size_t HashOf(DOMNode const* element)
{
    auto const address = reinterpret_cast<std::uintptr_t>(element);
    return static_cast<std::size_t>((address >> 4U) * 0x9E3779B97F4A7C15ULL >> 20U);
}

}  // namespace

ReadRecord::ReadRecord() : m_slots(1024) {}
ReadRecord::~ReadRecord() = default;

std::size_t ReadRecord::PlaceOf(DOMNode const* element) const
{
    std::size_t const mask = m_slots.size() - 1;
    std::size_t place = HashOf(element) & mask;
    while (m_slots[place].element && m_slots[place].element != element)
        place = (place + 1) & mask;
    return place;
}

void ReadRecord::Grow()
{
    std::vector<Slot> former(m_slots.size() * 2);
    former.swap(m_slots);
    for (Slot const& slot : former)
    {
        if (slot.element)
            m_slots[PlaceOf(slot.element)] = slot;
    }
    m_latest = nullptr;
}

ElementState& ReadRecord::At(DOMNode const* element)
{
    if (element == m_latest)
        return m_slots[m_latestPlace].state;
    if (m_count * 3 >= m_slots.size() * 2)
        Grow();
    m_latestPlace = PlaceOf(element);
    m_latest = element;
    Slot& slot = m_slots[m_latestPlace];
    if (!slot.element)
    {
        slot.element = element;
        ++m_count;
    }
    return slot.state;
}

ElementState ReadRecord::StateOf(DOMNode const* element) const
{
    return m_slots[PlaceOf(element)].state;
}

ReadRecord::Kind ReadRecord::KindOf(DOMNode const* element)
{
    DOMNode const* const parent = element->getParentNode();
    return {element->getNodeName(), parent ? parent->getNodeName() : nullptr};
}

std::vector<std::u16string_view> ReadRecord::NamesFor(DOMNode const* element) const
{
    auto const found = m_triedNames.find(KindOf(element));
    return found == m_triedNames.end() ? std::vector<std::u16string_view>() : found->second;
}

std::vector<XMLCh const*> ReadRecord::AttributesFor(DOMNode const* element) const
{
    auto const found = m_askedAttributes.find(KindOf(element));
    return found == m_askedAttributes.end() ? std::vector<XMLCh const*>() : found->second;
}

XMLCh const* ReadRecord::JoinedTextOf(DOMNode const* element) const
{
    auto const found = m_joinedTexts.find(element);
    return found == m_joinedTexts.end() ? nullptr : found->second;
}

void ReadRecord::AttributeAsked(DOMNode const* element, XMLCh const* name, long index, XMLCh const* text)
{
    ElementState& state = At(element);
    state.Set(ElementState::kRead);
    if (index >= 0)
    {
        state.SetAttribute(static_cast<std::uint64_t>(index));
        m_latestText = text;
    }
    if (element != m_askedElement)
    {
        m_askedElement = element;
        m_asked = &m_askedAttributes[KindOf(element)];
    }
    if (std::find(m_asked->begin(), m_asked->end(), name) == m_asked->end())
        m_asked->push_back(name);
}

void ReadRecord::AllAttributesTaken(DOMNode const* element)
{
    ElementState& state = At(element);
    state.Set(ElementState::kRead);
    state.Set(ElementState::kAllAttributes);
}

void ReadRecord::ChildrenWalked(DOMNode const* parent)
{
    if (!IsElement(parent))
        return;
    At(parent).Set(ElementState::kRead);
    if (!m_anyElement)
        m_anyElement = parent;
}

void ReadRecord::NamesTried(DOMNode const* element, std::span<std::u16string_view const> names, std::size_t matched)
{
    if (matched < names.size())
    {
        At(element).Set(ElementState::kMatched);
        return;
    }
    std::vector<std::u16string_view>& tried = m_triedNames[KindOf(element)];
    for (std::u16string_view const name : names)
    {
        if (std::find(tried.begin(), tried.end(), name) == tried.end())
            tried.push_back(name);
    }
}

void ReadRecord::RowsTried(DOMNode const* child, std::span<std::u16string_view const> names, std::size_t matched)
{
    m_child = child;
    auto const found = std::find_if(m_kinds.begin(), m_kinds.end(),
                                    [&](auto const& kinds)
                                    { return std::equal(kinds.begin(), kinds.end(), names.begin(), names.end()); });
    m_kindsOfChild = static_cast<std::size_t>(found - m_kinds.begin());
    if (found == m_kinds.end())
        m_kinds.emplace_back(names.begin(), names.end());
    NamesTried(child, names, matched);
}

void ReadRecord::TextTaken(DOMNode const* element, XMLCh const* text)
{
    At(element).Set(ElementState::kRead);
    m_latestText = text;
    DOMNode const* const first = element->getFirstChild();
    if (first && first->getNextSibling())
        m_joinedTexts.insert_or_assign(element, text);
}

void ReadRecord::TextRead(TextReading const& reading)
{
    // What is absent may come as an empty text of no document.
    if (!reading.text || (*reading.text == 0 && reading.text != m_latestText))
        return;
    Misreading misread;
    misread.form = reading.form;
    misread.isUnderstood = reading.isUnderstood;
    misread.value = reading.value;
    misread.test = reading.test;
    bool isOdd = !reading.isUnderstood;
    if (reading.form == TextForm::kBoolean)
    {
        // What a test converted on its way is a boolean all the same.
        m_misreadings.erase(reading.text);
        isOdd = IsOddBoolean(reading.text, reading.value);
    }
    else if (reading.form == TextForm::kTransform && reading.isUnderstood)
    {
        TransformOddities const odd = OdditiesOf(*reading.transform);
        misread.isFlat = odd.isFlat;
        misread.isMirror = odd.isMirror;
        misread.isSheared = odd.isSheared;
        isOdd = odd.isFlat || odd.isMirror || odd.isSheared;
    }
    else if (reading.form == TextForm::kVector && reading.isUnderstood)
    {
        // A piece that is no number is taken for 0.
        isOdd = !HasNumbersAlone(reading.text);
        misread.isUnderstood = !isOdd;
    }
    if (!isOdd)
        return;
    misread.texts.assign(reading.texts.begin(), reading.texts.end());
    m_misreadings.insert_or_assign(reading.text, std::move(misread));
}

void ReadRecord::ObjectRegistered(DOMNode const* element, IObject const& object, bool isSecond)
{
    At(element).Set(ElementState::kRegistered);
    m_objects.emplace_back(element, &object);
    if (isSecond)
        m_seconds.emplace_back(element, true);
}

void ReadRecord::IdTaken(DOMNode const* element, UTF8String const&)
{
    if (At(element).Is(ElementState::kRegistered))
        return;
    At(element).Set(ElementState::kDropped);
    m_seconds.emplace_back(element, false);
}

// Of one name there are either none in front, which is looked for once, or one that is near.
void ReadRecord::LastCounts(DOMNode const* element)
{
    XMLCh const* const name = element->getNodeName();
    for (DOMNode const* former = element->getPreviousSibling(); former; former = former->getPreviousSibling())
    {
        if (!IsElement(former) || !Equals(former->getNodeName(), name))
            continue;
        m_overwritten.push_back(former);
        return;
    }
}

void ReadRecord::ElementDropped(DOMNode const* element, DropReason reason)
{
    At(element).Set(ElementState::kDropped);
    m_failures.emplace(element, ElementFailure{reason, nullptr, false, false});
}

void ReadRecord::ChildFailed(DOMNode const* set, DOMNode const* child, bool leaveSet, bool leaveOwner)
{
    At(child).Set(ElementState::kDropped);
    if (!leaveSet)
        return;
    At(set).Set(ElementState::kEndedEarly);
    m_failures.emplace(set, ElementFailure{DropReason::kChildFailed, child, leaveSet, leaveOwner});
}

void ReadRecord::NodeNoted(DOMNode const* element, DOMNode const* former)
{
    if (former)
        m_replaced.emplace_back(former, element);
}

void ReadRecord::NodeBegun(DOMNode const* element)
{
    m_open.push_back(element);
}

void ReadRecord::NodeEnded(DOMNode const*)
{
    m_open.pop_back();
}

bool ReadRecord::IsBeingRead(UTF8String const& id) const
{
    return std::any_of(m_open.begin(), m_open.end(),
                       [&](DOMNode const* element)
                       {
                           XMLCh const* const text = UnobservedAttribute(element, Names::ID.Document());
                           return text && XMLStrUtil::XMLStrToAStr(text) == id;
                       });
}

void ReadRecord::NodeAsked(UTF8String const& id, ReferenceEnd end)
{
    m_end = end;
    m_isCycle = end == ReferenceEnd::kTaken && IsBeingRead(id);
}

void ReadRecord::ReferenceMet(DOMNode const* element, UTF8String const& id, bool isFound)
{
    if (isFound && element == m_child)
        m_childReferences.push_back({element, std::string(id.View()), m_kindsOfChild});
    if (!isFound)
    {
        MissedReference missed{std::string(id.View()), m_end, m_isCycle, {}};
        if (element == m_child)
            missed.kinds = m_kindsOfChild;
        m_missed.insert_or_assign(element, std::move(missed));
    }
    m_end = ReferenceEnd::kUnknown;
    m_isCycle = false;
}

void ReadRecord::SectionMet(DOMNode const* element, UTF16String const& path, SectionState state)
{
    SectionRecord& section = m_sections.emplace_back();
    section.element = element;
    section.path = std::string(UTF8String(path).View());
    section.state = state;
}

void ReadRecord::RecordRead(StoreRecord const& record)
{
    if (!m_sections.empty())
        m_sections.back().records.push_back(record);
}

void ReadRecord::StoreLeft(unsigned long long position, unsigned long long size, unsigned long long shortReads)
{
    if (m_sections.empty())
        return;
    m_sections.back().position = position;
    m_sections.back().size = size;
    m_sections.back().shortReads = shortReads;
}

void ReadRecord::TableRead(unsigned long long begin, unsigned long long end)
{
    if (!m_sections.empty())
        m_sections.back().tables.emplace_back(begin, end);
}

void ReadRecord::StoreFailed(StoreFailure failure, std::string_view reason)
{
    if (!m_sections.empty())
        m_sections.back().failures.emplace_back(failure, reason);
}

void ReadRecord::RecordsClaimed(unsigned long long count)
{
    if (!m_sections.empty())
        m_sections.back().claimed = count;
}

void ReadRecord::PropertyMet(PropertyTexts const& texts, bool isMade)
{
    PropertyRecord& property = m_properties.emplace_back();
    property.line = texts.line;
    property.column = texts.column;
    property.id = Narrow(texts.id);
    property.objectId = Narrow(texts.objectId);
    property.name = Narrow(texts.name);
    property.value = Narrow(texts.value);
    property.isMade = isMade;
    // The texts do not outlive the call.
    for (XMLCh const* const text : {texts.value, texts.type})
    {
        auto const found = text ? m_misreadings.find(text) : m_misreadings.end();
        if (found == m_misreadings.end())
            continue;
        property.misread = std::move(found->second);
        m_misreadings.erase(found);
    }
}

void ReadRecord::PropertyHanded(bool isFound, bool isHeld)
{
    m_properties.back().isFound = isFound;
    m_properties.back().isHeld = isHeld;
}

}  // namespace KVR
