#include "inspect/SceneCheck.h"

#include <algorithm>
#include <tuple>
#include <utility>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "framework/api/IObject.h"
#include "framework/xml_util/SideFilePath.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "inspect/document/ReadRecord.h"
#include "inspect/document/SpotPlaces.h"
#include "inspect/document/ValueMeaning.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

bool IsNamedIn(std::vector<std::string> const& list, Rule const& rule)
{
    return std::any_of(list.begin(), list.end(),
                       [&](std::string const& name) { return name == rule.id || name == rule.name; });
}

DOMNode const* ElementAround(DOMNode const* node)
{
    do
    {
        node = node->getParentNode();
    } while (node && node->getNodeType() != DOMNode::ELEMENT_NODE);
    return node;
}

std::string Escaped(std::string const& text)
{
    std::string escaped;
    for (char const c : text)
    {
        if (c == '&')
            escaped += "&amp;";
        else if (c == '<')
            escaped += "&lt;";
        else if (c == '"')
            escaped += "&quot;";
        else if (c == '\'')
            escaped += "&apos;";
        else
            escaped += c;
    }
    return escaped;
}

}  // namespace

SceneCheck::SceneCheck(std::string path, CheckOptions const& options, IProducer& producer, ReadRecord const& record)
    : m_path(std::move(path)), m_options(options), m_producer(producer), m_record(record)
{
}

SceneCheck::~SceneCheck() = default;

DOMNode const* SceneCheck::Root() const
{
    DOMNode const* const any = m_record.AnyElement();
    return any ? any->getOwnerDocument()->getDocumentElement() : nullptr;
}

std::string SceneCheck::PropertyFile() const
{
    UTF16String const extension(kPropertyFileExtension.Document());
    return std::string(UTF8String(ReplaceExtension(UTF16String(UTF8String(m_path)), extension)).View());
}

bool SceneCheck::IsWanted(Rule const& rule) const
{
    return (m_options.rules.empty() || IsNamedIn(m_options.rules, rule)) && !IsNamedIn(m_options.noRules, rule);
}

Finding* SceneCheck::Add(Rule const& rule, Spot const& spot, std::string found, std::string readAs, std::string meant)
{
    Finding* const finding = AddIn(rule, m_path, std::move(found), std::move(readAs), std::move(meant));
    if (!finding)
        return nullptr;
    m_entries.back().spot = spot;
    if (!spot.element)
        return finding;
    finding->objectId = ObjectIdOf(spot.element);
    finding->path = PathOf(spot.element);
    return finding;
}

Finding* SceneCheck::AddIn(Rule const& rule, std::string file, std::string found, std::string readAs, std::string meant)
{
    if (!IsWanted(rule))
        return nullptr;
    Entry& entry = m_entries.emplace_back();
    entry.order = m_entries.size();
    Finding& finding = entry.finding;
    finding.rule = FindRule(rule.id);
    finding.file = std::move(file);
    finding.found = std::move(found);
    finding.readAs = std::move(readAs);
    finding.meant = std::move(meant);
    m_entryOf.emplace(&finding, &entry);
    return &finding;
}

void SceneCheck::Repair(Finding* finding, std::string text)
{
    if (!finding)
        return;
    Entry& entry = *m_entryOf.at(finding);
    entry.repair = std::move(text);
    entry.hasRepair = true;
}

DOMNode const* SceneCheck::ElementOf(std::string_view id) const
{
    if (!m_hasElements)
    {
        for (auto const& [element, object] : m_record.Objects())
            m_elements.try_emplace(std::string(object->Id().View()), element);
        m_hasElements = true;
    }
    auto const found = m_elements.find(std::string(id));
    return found == m_elements.end() ? nullptr : found->second;
}

std::string SceneCheck::NearestId(std::string const& id) const
{
    auto const& objects = m_record.Objects();
    for (std::size_t i = m_ids.size(); i < std::min(objects.size(), Guesses::kMostNames + 1); ++i)
        m_ids.emplace_back(objects[i].second->Id().View());
    return m_guesses.Of(id, m_ids);
}

void SceneCheck::FindPlaces()
{
    std::vector<DOMNode const*> elements;
    for (Entry const& entry : m_entries)
    {
        if (entry.spot.element)
            elements.push_back(entry.spot.element);
    }
    if (elements.empty())
        return;
    SpotPlaces places(m_path, Root(), std::move(elements));
    std::vector<std::pair<std::uint64_t, Entry*>> inFile;
    for (Entry& entry : m_entries)
        if (entry.spot.element)
            inFile.emplace_back(places.EndOf(entry.spot.element), &entry);
    std::stable_sort(inFile.begin(), inFile.end(), [](auto const& a, auto const& b) { return a.first < b.first; });
    for (auto const& [end, located] : inFile)
    {
        Entry& entry = *located;
        DocumentPlace const place = places.PlaceOf(entry.spot);
        entry.finding.line = place.line;
        entry.finding.column = place.column;
        entry.finding.begin = place.bytes.begin;
        entry.finding.end = place.bytes.end;
        if (!entry.hasRepair || place.bytes.end == 0)
            continue;
        std::string const text = Escaped(entry.repair);
        entry.finding.fix.push_back({place.bytes.begin, place.bytes.end, text});
        if (place.endTagName.end != 0)
            entry.finding.fix.push_back({place.endTagName.begin, place.endTagName.end, text});
    }
}

std::vector<Finding> SceneCheck::TakeFindings()
{
    FindPlaces();
    std::vector<Finding> findings;
    findings.reserve(m_entries.size());
    for (Entry& entry : m_entries)
        findings.push_back(std::move(entry.finding));
    m_entries.clear();
    m_entryOf.clear();
    // The document first, then the files in the order of their names.
    std::stable_sort(findings.begin(), findings.end(),
                     [this](Finding const& a, Finding const& b)
                     {
                         auto const key = [this](Finding const& finding)
                         {
                             return std::make_tuple(finding.file != m_path, std::string_view(finding.file),
                                                    finding.line, finding.column, finding.begin, finding.rule->id);
                         };
                         return key(a) < key(b);
                     });
    return findings;
}

std::string AttributeOf(DOMNode const* element, AttributeName name)
{
    XMLCh const* const text = UnobservedAttribute(element, name.Document());
    return text ? std::string(XMLStrUtil::XMLStrToAStr(text).View()) : std::string();
}

std::string NameOf(DOMNode const* element)
{
    return std::string(XMLStrUtil::XMLStrToAStr(element->getNodeName()).View());
}

std::string ObjectIdOf(DOMNode const* element)
{
    for (; element; element = ElementAround(element))
    {
        std::string id = AttributeOf(element, Names::ID);
        if (!id.empty())
            return id;
    }
    return {};
}

std::string PathOf(DOMNode const* element)
{
    constexpr std::size_t kMostElements = 24;
    std::vector<std::string> steps;
    for (; element; element = ElementAround(element))
    {
        if (steps.size() == kMostElements)
        {
            steps.emplace_back("...");
            break;
        }
        std::string const id = AttributeOf(element, Names::ID);
        steps.push_back(id.empty() ? NameOf(element) : NameOf(element) + "[" + id + "]");
    }
    std::string path;
    for (auto step = steps.rbegin(); step != steps.rend(); ++step)
        path += (path.empty() ? "" : "/") + *step;
    return path;
}

}  // namespace KVR
