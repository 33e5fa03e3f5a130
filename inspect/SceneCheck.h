#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/UTF8String.h"
#include "framework/xml_util/FormatNames.h"
#include "inspect/Check.h"
#include "inspect/rules/Guesses.h"

namespace KVR
{

class IObject;
class IProducer;
class ReadRecord;

/// What of an element a finding is about.
enum class SpotPart
{
    kStartTag,
    kName,
    kAttributeName,
    kAttributeValue,
    /// The text in it; of one with other things in it, its start tag.
    kText
};

/// A place in the document.
struct Spot
{
    xercesc::DOMNode const* element = nullptr;
    SpotPart part = SpotPart::kStartTag;
    /// Of an attribute: its name. Document text that lives as long as the document, or the program.
    XMLCh const* attribute = nullptr;
};

/// A scene that was read under an observer, and the findings about it. Rules look at the record, the document and the
/// objects, and add findings; where they stand in the document is found out at the end, for all of them at once.
class SceneCheck
{
public:
    SceneCheck(std::string path, CheckOptions const& options, IProducer& producer, ReadRecord const& record);
    ~SceneCheck();
    SceneCheck(SceneCheck const&) = delete;
    SceneCheck& operator=(SceneCheck const&) = delete;

    /// The scene's, as it was given.
    std::string const& Path() const noexcept { return m_path; }
    /// The path of its property file, whether or not there is one.
    std::string PropertyFile() const;
    CheckOptions const& Options() const noexcept { return m_options; }
    /// The objects are there until the check has ended.
    IProducer& Producer() const noexcept { return m_producer; }
    ReadRecord const& Record() const noexcept { return m_record; }
    /// The document's; null when it could not be parsed.
    xercesc::DOMNode const* Root() const;

    /// Whether findings of the rule are wanted: to be asked before what is costly.
    bool IsWanted(Rule const& rule) const;

    /// Adds a finding about a place in the document; null, with nothing added, when the rule is not wanted. File, line,
    /// column, bytes, object and path are filled in at the end. The finding stays where it is.
    Finding* Add(Rule const& rule, Spot const& spot, std::string found, std::string readAs, std::string meant = {});
    /// Adds one about any file, whose place the caller fills in.
    Finding* AddIn(Rule const& rule, std::string file, std::string found, std::string readAs, std::string meant = {});
    /// Puts a text in the place of what a finding of Add is about; nothing for null. The text is escaped as its place
    /// in the document wants it.
    void Repair(Finding* finding, std::string text);

    /// The element of which the object of this id was made; null when there is none. The first call makes a table of
    /// all objects.
    xercesc::DOMNode const* ElementOf(std::string_view id) const;

    /// The id of an object that was probably meant by one that none has; empty when none is near. Takes long: where
    /// there are very many objects or findings there is no answer.
    std::string NearestId(std::string const& id) const;

    /// Findings in the order of files and places; to be called once, at the end.
    std::vector<Finding> TakeFindings();

private:
    struct Entry
    {
        Finding finding;
        Spot spot;
        std::string repair;
        bool hasRepair = false;
        /// In the order in which findings were added.
        std::size_t order = 0;
    };

    void FindPlaces();

    std::string m_path;
    CheckOptions const& m_options;
    IProducer& m_producer;
    ReadRecord const& m_record;
    std::deque<Entry> m_entries;
    std::unordered_map<Finding const*, Entry*> m_entryOf;
    mutable std::unordered_map<std::string, xercesc::DOMNode const*> m_elements;
    mutable bool m_hasElements = false;
    mutable std::vector<std::string> m_ids;
    mutable Guesses m_guesses;
};

/// The text of an element's attribute, which no observer is told of; empty when it is absent.
std::string AttributeOf(xercesc::DOMNode const* element, AttributeName name);
/// An element's name.
std::string NameOf(xercesc::DOMNode const* element);
/// The id of the element, or else of the nearest around it that has one; empty when none has.
std::string ObjectIdOf(xercesc::DOMNode const* element);
/// The elements from the root to it, with their ids.
std::string PathOf(xercesc::DOMNode const* element);

}  // namespace KVR
