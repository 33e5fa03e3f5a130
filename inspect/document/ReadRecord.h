#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/xml_util/ReadObserver.h"

namespace KVR
{

/// What was done with an element, in the bits of a word; above them, a bit for each of its first attributes that was
/// asked for.
class ElementState
{
public:
    enum Flag : std::uint64_t
    {
        /// Its name was one that its owner's reader knows.
        kMatched = 1,
        /// An attribute was asked for, its children were walked, or its text was taken.
        kRead = 2,
        /// All attributes were taken by whatever name.
        kAllAttributes = 4,
        /// An object of it was registered.
        kRegistered = 8,
        /// It left no object.
        kDropped = 16,
        /// A child of it failed, and the rest was left unread.
        kEndedEarly = 32,
    };
    static constexpr unsigned kFlags = 8;
    static constexpr unsigned kTracked = 64 - kFlags;

    bool Is(Flag flag) const noexcept { return (m_bits & flag) != 0; }
    void Set(Flag flag) noexcept { m_bits |= flag; }
    /// Attributes past those that are tracked count as read once one of them was.
    void SetAttribute(std::uint64_t index) noexcept { m_bits |= BitOf(index); }
    bool IsAttributeRead(std::uint64_t index) const noexcept
    {
        return Is(kAllAttributes) || (m_bits & BitOf(index)) != 0;
    }

private:
    static std::uint64_t BitOf(std::uint64_t index) noexcept
    {
        return std::uint64_t{1} << (kFlags + (index < kTracked ? index : kTracked - 1));
    }

    std::uint64_t m_bits = 0;
};

/// A text that was not understood, or probably not as it was meant.
struct Misreading
{
    TextForm form = TextForm::kInteger;
    bool isUnderstood = false;
    bool value = false;
    bool (*test)(XMLCh const* text) = nullptr;
    std::vector<std::string_view> texts;
    /// Of a transform that converted: what is odd about it.
    bool isFlat = false;
    bool isMirror = false;
    bool isSheared = false;
};

/// Why an element left no object, or its reading ended early.
struct ElementFailure
{
    DropReason reason = DropReason::kRefused;
    /// Of kChildFailed: the child, and how much was left unread because of it.
    xercesc::DOMNode const* child = nullptr;
    bool leavesSet = false;
    bool leavesOwner = false;
};

/// A reference that is looked up while the scene is read, and found nothing.
struct MissedReference
{
    std::string id;
    ReferenceEnd end = ReferenceEnd::kUnknown;
    /// Of kTaken: the element is being read, and the reference leads back to it.
    bool isCycle = false;
    /// In a set of children: the kinds that it takes, a list of KindsOf; else nothing.
    std::optional<std::size_t> kinds;
};

/// A reference in a set of children to an object that was read before.
struct ChildReference
{
    xercesc::DOMNode const* element = nullptr;
    std::string id;
    /// The kinds of children that the set takes: a list of KindsOf.
    std::size_t kinds = 0;
};

/// An info section, and what its file held.
struct SectionRecord
{
    xercesc::DOMNode const* element = nullptr;
    std::string path;
    SectionState state = SectionState::kOff;
    /// 0 when the file does not say.
    unsigned long long claimed = 0;
    /// Where its reader stood at last, and the bytes of the file; both 0 for files without a cursor.
    unsigned long long position = 0;
    unsigned long long size = 0;
    unsigned long long shortReads = 0;
    /// In the order of the file.
    std::vector<StoreRecord> records;
    /// What was read of it and belongs to no record, from the first byte to the one behind the last.
    std::vector<std::pair<unsigned long long, unsigned long long>> tables;
    /// Why it gave nothing, with sentences.
    std::vector<std::pair<StoreFailure, std::string>> failures;
};

/// An element of the property file.
struct PropertyRecord
{
    unsigned long long line = 0;
    unsigned long long column = 0;
    std::string id;
    std::string objectId;
    std::string name;
    /// Whether it made a property, whether there is an object of its id, and whether that one holds properties.
    bool isMade = false;
    bool isFound = false;
    bool isHeld = false;
    /// Its value, and how that was misread; nothing when it was not.
    std::string value;
    std::optional<Misreading> misread;
};

/// Takes down what the readers ask for and make of it, while a scene is read. Nodes and objects belong to the producer.
class ReadRecord : public ReadObserver
{
public:
    ReadRecord();
    ~ReadRecord() override;

    // What is on record.

    /// Empty for an element that nobody looked at.
    ElementState StateOf(xercesc::DOMNode const* element) const;
    /// The texts that were misread, by their addresses.
    std::unordered_map<XMLCh const*, Misreading> const& Misreadings() const { return m_misreadings; }
    /// The names that the element's was compared with in vain, or elements of its name under one of its parent's.
    std::vector<std::u16string_view> NamesFor(xercesc::DOMNode const* element) const;
    /// The attributes that were asked for at elements of its name under one of its parent's.
    std::vector<XMLCh const*> AttributesFor(xercesc::DOMNode const* element) const;
    std::multimap<xercesc::DOMNode const*, ElementFailure> const& Failures() const { return m_failures; }
    std::unordered_map<xercesc::DOMNode const*, MissedReference> const& MissedReferences() const { return m_missed; }
    std::vector<ChildReference> const& ChildReferences() const { return m_childReferences; }
    /// The names of elements that a set of children takes.
    std::vector<std::u16string_view> const& KindsOf(std::size_t kinds) const { return m_kinds[kinds]; }
    /// Elements whose ids were taken when they came, and whether an object was registered all the same.
    std::vector<std::pair<xercesc::DOMNode const*, bool>> const& Seconds() const { return m_seconds; }
    /// Elements under the root that another one of their id replaced before they were read, with it.
    std::vector<std::pair<xercesc::DOMNode const*, xercesc::DOMNode const*>> const& Replaced() const
    {
        return m_replaced;
    }
    /// Elements that a later one of their name under the same parent wrote over.
    std::vector<xercesc::DOMNode const*> const& Overwritten() const { return m_overwritten; }
    /// The objects in the order in which they were registered, with their elements.
    std::vector<std::pair<xercesc::DOMNode const*, IObject const*>> const& Objects() const { return m_objects; }
    std::vector<SectionRecord> const& Sections() const { return m_sections; }
    std::vector<PropertyRecord> const& Properties() const { return m_properties; }
    /// The element that was looked at last; null when none was.
    xercesc::DOMNode const* LatestElement() const { return m_latest; }
    /// Any element of the document; null when none was walked.
    xercesc::DOMNode const* AnyElement() const { return m_anyElement; }
    /// The text that was taken of an element in which it stands in several runs, and is therefore not in the tree; null
    /// when none was.
    XMLCh const* JoinedTextOf(xercesc::DOMNode const* element) const;

    // What the observer does.

    void AttributeAsked(xercesc::DOMNode const* element, XMLCh const* name, long index, XMLCh const* text) override;
    void AllAttributesTaken(xercesc::DOMNode const* element) override;
    void ChildrenWalked(xercesc::DOMNode const* parent) override;
    void NamesTried(xercesc::DOMNode const* element, std::span<std::u16string_view const> names,
                    std::size_t matched) override;
    void RowsTried(xercesc::DOMNode const* child, std::span<std::u16string_view const> names,
                   std::size_t matched) override;
    void TextTaken(xercesc::DOMNode const* element, XMLCh const* text) override;
    void TextRead(TextReading const& reading) override;
    void ObjectRegistered(xercesc::DOMNode const* element, IObject const& object, bool isSecond) override;
    void IdTaken(xercesc::DOMNode const* element, UTF8String const& id) override;
    void LastCounts(xercesc::DOMNode const* element) override;
    void ElementDropped(xercesc::DOMNode const* element, DropReason reason) override;
    void ChildFailed(xercesc::DOMNode const* set, xercesc::DOMNode const* child, bool leaveSet,
                     bool leaveOwner) override;
    void NodeNoted(xercesc::DOMNode const* element, xercesc::DOMNode const* former) override;
    void NodeBegun(xercesc::DOMNode const* element) override;
    void NodeEnded(xercesc::DOMNode const* element) override;
    void NodeAsked(UTF8String const& id, ReferenceEnd end) override;
    void ReferenceMet(xercesc::DOMNode const* element, UTF8String const& id, bool isFound) override;
    void SectionMet(xercesc::DOMNode const* element, UTF16String const& path, SectionState state) override;
    void RecordRead(StoreRecord const& record) override;
    void StoreLeft(unsigned long long position, unsigned long long size, unsigned long long shortReads) override;
    void RecordsClaimed(unsigned long long count) override;
    void TableRead(unsigned long long begin, unsigned long long end) override;
    void StoreFailed(StoreFailure failure, std::string_view reason) override;
    void PropertyMet(PropertyTexts const& texts, bool isMade) override;
    void PropertyHanded(bool isFound, bool isHeld) override;

private:
    struct Slot
    {
        xercesc::DOMNode const* element = nullptr;
        ElementState state;
    };
    /// An element's name and its parent's: the document holds each name once, so that addresses tell them apart.
    using Kind = std::pair<XMLCh const*, XMLCh const*>;

    static Kind KindOf(xercesc::DOMNode const* element);
    ElementState& At(xercesc::DOMNode const* element);
    std::size_t PlaceOf(xercesc::DOMNode const* element) const;
    void Grow();
    bool IsBeingRead(UTF8String const& id) const;

    /// A table with a power of two of places, at most two thirds of which are taken.
    std::vector<Slot> m_slots;
    std::size_t m_count = 0;
    /// That of the element asked for last, which mostly is the next one, too.
    xercesc::DOMNode const* m_latest = nullptr;
    std::size_t m_latestPlace = 0;

    std::map<Kind, std::vector<std::u16string_view>> m_triedNames;
    std::map<Kind, std::vector<XMLCh const*>> m_askedAttributes;
    xercesc::DOMNode const* m_askedElement = nullptr;
    std::vector<XMLCh const*>* m_asked = nullptr;

    XMLCh const* m_latestText = nullptr;
    std::unordered_map<XMLCh const*, Misreading> m_misreadings;
    std::unordered_map<xercesc::DOMNode const*, XMLCh const*> m_joinedTexts;
    std::multimap<xercesc::DOMNode const*, ElementFailure> m_failures;
    std::unordered_map<xercesc::DOMNode const*, MissedReference> m_missed;
    std::vector<std::pair<xercesc::DOMNode const*, bool>> m_seconds;
    std::vector<std::pair<xercesc::DOMNode const*, xercesc::DOMNode const*>> m_replaced;
    std::vector<xercesc::DOMNode const*> m_overwritten;
    std::vector<std::pair<xercesc::DOMNode const*, IObject const*>> m_objects;
    std::vector<xercesc::DOMNode const*> m_open;
    std::vector<ChildReference> m_childReferences;
    /// The lists of kinds that sets take, of which there are few, and that of the child under way.
    std::vector<std::vector<std::u16string_view>> m_kinds;
    xercesc::DOMNode const* m_child = nullptr;
    std::size_t m_kindsOfChild = 0;
    ReferenceEnd m_end = ReferenceEnd::kUnknown;
    bool m_isCycle = false;
    std::vector<SectionRecord> m_sections;
    std::vector<PropertyRecord> m_properties;
    xercesc::DOMNode const* m_anyElement = nullptr;
};

}  // namespace KVR
