#pragma once

#include <atomic>
#include <cstddef>
#include <span>
#include <string_view>
#include <utility>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

class IObject;
class Matrix3d;

/// As what a text was read.
enum class TextForm
{
    kInteger,
    kNumber,
    kBoolean,
    kEnumeration,
    kUnit,
    kTime,
    /// Three numbers with commas between them.
    kVector,
    /// Sixteen numbers.
    kTransform,
    /// Any count of numbers.
    kNumberList,
};

/// A text of the document, or of a property file, that was turned into a value.
struct TextReading
{
    /// The text itself, by whose address the attribute or element is found that it belongs to. Null, and a text of no
    /// document, for what is absent.
    XMLCh const* text = nullptr;
    TextForm form = TextForm::kInteger;
    /// Whether it converted. A boolean always does.
    bool isUnderstood = true;
    /// Of a boolean: what it was read as, and the test that said so.
    bool value = false;
    bool (*test)(XMLCh const* text) = nullptr;  ///< Null for other forms.
    /// Of an enumeration: the texts that it has.
    std::span<std::string_view const> texts{};
    /// Of a transform that converted.
    Matrix3d const* transform = nullptr;
};

/// Why an element left no object.
enum class DropReason
{
    /// A child failed, and the rest of its set, or of the whole element, was left unread.
    kChildFailed,
    /// What an instance places is missing.
    kNoTarget,
    /// What an instance places is neither component nor file.
    kTargetKind,
    /// No store held anything for it.
    kNoRecord,
    /// Its reader refused it: a required attribute or child is missing or of no known text.
    kRefused,
    /// Bundles of geometry are nested too deeply.
    kTooDeep,
};

/// What became of a reference to an element that has to be read first.
enum class ReferenceEnd
{
    /// The element was read when it was met.
    kRead,
    /// No element under the root has the id.
    kUnknown,
    /// The element was read before and left no object under the id, or it is being read: the reference leads back.
    kTaken,
    /// References are nested too deeply.
    kTooDeep,
};

/// What became of the file that an info section names.
enum class SectionState
{
    /// The section's switch is not "True".
    kOff,
    /// It names no file.
    kNoPath,
    /// It was handed to its reader; whether the file is there is for whoever looks.
    kRead,
};

/// Why a side file gave nothing.
enum class StoreFailure
{
    kNotOpened,
    /// It is no file of its kind, cut short or damaged.
    kUnreadable,
    /// Its content is not what was written; where that is allowed, it gave what it holds.
    kInsecure,
};

/// A record of a store, from its first byte to the one behind its last.
struct StoreRecord
{
    /// "mesh", "curve", "segments", "asset", "ids", "body" or "edge"; "unknown" for a record of another type.
    std::string_view kind;
    UTF8String id;
    /// Both 0 where the store is not read by position.
    unsigned long long begin = 0;
    unsigned long long end = 0;
    /// Whether it was kept for an element to take: not so for a second one of an id, and for one without an id.
    bool isKept = false;
    /// Of what a kernel store holds: its row in the table, while its shape is one of those behind the table, which
    /// share what they are made of.
    unsigned long long rowBegin = 0;
    unsigned long long rowEnd = 0;
};

/// What stands between the doors of the document and of the stores and somebody who wants to know what was read, where,
/// and what was made of it. All operations do nothing here. Nodes belong to the document, which lives as long as its
/// producer; texts and spans are valid during the call. What an operation throws goes through the readers to the host.
class KVR_XML_UTIL_API ReadObserver
{
public:
    virtual ~ReadObserver();
    ReadObserver(ReadObserver const&) = delete;
    ReadObserver& operator=(ReadObserver const&) = delete;

    /// An attribute was asked for. `index` is its place among those of the element; -1, with a null text, when it has
    /// none of that name.
    virtual void AttributeAsked(xercesc::DOMNode const* element, XMLCh const* name, long index, XMLCh const* text);
    /// All attributes of the element were taken, whatever their names.
    virtual void AllAttributesTaken(xercesc::DOMNode const* element);
    /// The child elements are about to be walked; null for no node.
    virtual void ChildrenWalked(xercesc::DOMNode const* parent);
    /// An element's name was compared with these. `matched` is the place of the one that it bears, or the count.
    virtual void NamesTried(xercesc::DOMNode const* element, std::span<std::u16string_view const> names,
                            std::size_t matched);
    /// The same of an element in a set of children, compared with the kinds of children that its owner takes. Unless it
    /// is overridden, it is told as above.
    virtual void RowsTried(xercesc::DOMNode const* child, std::span<std::u16string_view const> names,
                           std::size_t matched);
    /// The text in an element was taken. The document keeps it, though not always in the tree.
    virtual void TextTaken(xercesc::DOMNode const* element, XMLCh const* text);
    /// A text was turned into a value.
    virtual void TextRead(TextReading const& reading);

    /// An element's object was registered under its id. `isSecond`: another one was before, and is what the id leads
    /// to.
    virtual void ObjectRegistered(xercesc::DOMNode const* element, IObject const& object, bool isSecond);
    /// An element's object was not registered, or not made: its id is taken.
    virtual void IdTaken(xercesc::DOMNode const* element, UTF8String const& id);
    /// An element was read of which, under one parent, the last of its name counts.
    virtual void LastCounts(xercesc::DOMNode const* element);
    /// An element left no object.
    virtual void ElementDropped(xercesc::DOMNode const* element, DropReason reason);
    /// A child of a set failed. `leaveSet`: those behind it in the set are left unread; `leaveOwner`: and those behind
    /// the set in its owner's element, too.
    virtual void ChildFailed(xercesc::DOMNode const* set, xercesc::DOMNode const* child, bool leaveSet,
                             bool leaveOwner);

    /// An element under the root was noted under its id, in the place of a former one, or of none.
    virtual void NodeNoted(xercesc::DOMNode const* element, xercesc::DOMNode const* former);
    /// The reading of a noted element begins, and has ended.
    virtual void NodeBegun(xercesc::DOMNode const* element);
    virtual void NodeEnded(xercesc::DOMNode const* element);  ///< Tells of the end.
    /// An element under the root was asked for by its id, as written.
    virtual void NodeAsked(UTF8String const& id, ReferenceEnd end);
    /// An element refers to an object by this id; whether one of it was registered then. Only those that are looked up
    /// while the scene is read.
    virtual void ReferenceMet(xercesc::DOMNode const* element, UTF8String const& id, bool isFound);

    /// An info section. The path is the one that is opened, empty without one.
    virtual void SectionMet(xercesc::DOMNode const* element, UTF16String const& path, SectionState state);
    /// A record of the side file whose section was met last.
    virtual void RecordRead(StoreRecord const& record);
    /// A cursor over a whole store was given up: where it stood, the bytes of the file, the records that the file
    /// claims (0 where none are counted), and how often a field was not there.
    virtual void StoreLeft(unsigned long long position, unsigned long long size, unsigned long long shortReads);
    /// A store said how many records it has.
    virtual void RecordsClaimed(unsigned long long count);
    /// What belongs to no record was read, from its first byte to the one behind its last.
    virtual void TableRead(unsigned long long begin, unsigned long long end);
    /// The file of the section met last failed. The reason is a sentence without its full stop.
    virtual void StoreFailed(StoreFailure failure, std::string_view reason);

    /// An element of the property file: where its start tag ends, its texts, null for those that are absent, and
    /// whether it made a property.
    struct PropertyTexts
    {
        unsigned long long line = 0;
        unsigned long long column = 0;
        XMLCh const* id = nullptr;
        XMLCh const* objectId = nullptr;
        XMLCh const* name = nullptr;
        XMLCh const* type = nullptr;
        XMLCh const* value = nullptr;
    };
    virtual void PropertyMet(PropertyTexts const& texts, bool isMade);  ///< Tells of it.
    /// The property met last was made, and goes to an object: whether there is one of its id, and whether that one
    /// holds properties.
    virtual void PropertyHanded(bool isFound, bool isHeld);

    /// The observer of this thread; null when there is none.
    static ReadObserver* OfThread() noexcept;

    /// Notes a name that the element's was compared with; one that it bears ends the comparison.
    void TryName(xercesc::DOMNode const* element, XMLCh const* name, bool isMatch);
    /// Ends a comparison: tells NamesTried of the names that were noted.
    void TellTried(xercesc::DOMNode const* element, std::size_t matched);

protected:
    ReadObserver();

private:
    std::vector<std::u16string_view> m_tried;
};

/// Makes an observer that of this thread for the length of a scope, and the former one again at its end. It must
/// outlive the scope.
class KVR_XML_UTIL_API ReadObserverScope
{
public:
    explicit ReadObserverScope(ReadObserver& observer) noexcept;
    ~ReadObserverScope();
    ReadObserverScope(ReadObserverScope const&) = delete;
    ReadObserverScope& operator=(ReadObserverScope const&) = delete;

    /// How many scopes there are, over all threads.
    static std::atomic<int> count;

private:
    ReadObserver* m_former;
};

/// The observer of this thread. While no thread has one, this costs a look at a number that does not change.
inline ReadObserver* Observer() noexcept
{
    if (ReadObserverScope::count.load(std::memory_order_relaxed) == 0) [[likely]]
        return nullptr;
    return ReadObserver::OfThread();
}

/// Tells the observer, if there is one.
template <class... Arguments, class... Values>
void TellObserver(void (ReadObserver::*what)(Arguments...), Values&&... values)
{
    if (ReadObserver* const observer = Observer()) [[unlikely]]
        (observer->*what)(std::forward<Values>(values)...);
}

/// What tells an observer stands in functions of its own, since readers call themselves for each level of a document:
/// what it needs on the stack is not theirs.
#define KVR_ASIDE [[gnu::noinline, gnu::cold]]

/// Tells of a text that did convert or did not.
KVR_ASIDE inline void TellText(ReadObserver& observer, XMLCh const* text, TextForm form, bool isUnderstood)
{
    TextReading reading;
    reading.text = text;
    reading.form = form;
    reading.isUnderstood = isUnderstood;
    observer.TextRead(reading);
}

/// Tells the observer, if there is one, of a text that did convert or did not, and answers which.
inline bool ToldText(XMLCh const* text, TextForm form, bool isUnderstood)
{
    if (ReadObserver* const observer = Observer()) [[unlikely]]
        TellText(*observer, text, form, isUnderstood);
    return isUnderstood;
}

/// Tells of a text that a test turned into a value.
KVR_ASIDE inline void TellBoolean(ReadObserver& observer, XMLCh const* text, bool (*test)(XMLCh const* text),
                                  bool value)
{
    TextReading reading;
    reading.text = text;
    reading.form = TextForm::kBoolean;
    reading.value = value;
    reading.test = test;
    observer.TextRead(reading);
}

/// The same of a boolean, which a test turns into its value.
inline bool ToldBoolean(XMLCh const* text, bool (*test)(XMLCh const* text))
{
    bool const value = test(text);
    if (ReadObserver* const observer = Observer()) [[unlikely]]
        TellBoolean(*observer, text, test, value);
    return value;
}

}  // namespace KVR
