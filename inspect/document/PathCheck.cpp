#include "inspect/document/PathCheck.h"

#include <algorithm>
#include <unordered_set>

#include "describe/ReferenceWalk.h"
#include "framework/api/Exception.h"
#include "framework/api/IAssembly.h"
#include "framework/api/IFile.h"
#include "framework/api/IInstance.h"
#include "framework/api/IPart.h"
#include "framework/api/IProducer.h"
#include "framework/api/TypesafeId.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/EnumTexts.h"
#include "inspect/document/DocumentRules.h"
#include "inspect/document/TreeWalk.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

bool IsComponent(DOMNode const* element)
{
    XMLCh const* const name = element->getNodeName();
    return Equals(name, Names::IAssembly) || Equals(name, Names::IPart) || Equals(name, Names::IFile);
}

// The file, the assembly or the part in which it stands; null for none.
DOMNode const* ComponentAround(DOMNode const* element)
{
    while (element && !IsComponent(element))
        element = element->getParentNode();
    return element;
}

// Whether the path is the speaking assembly's own, rather than anyone's in whose attributes it stands.
bool IsOfItsAssembly(DOMNode const* element)
{
    XMLCh const* const name = element->getNodeName();
    if (Equals(name, Names::BaseOccPath) || Equals(name, Names::EntityStyles) ||
        Equals(name, Names::EntityTransformation))
        return true;
    return Equals(name, Names::EntityVisibility);
}

// Data of other kinds have paths through what is no product tree.
bool IsThroughTheTree(DOMNode const* element)
{
    return !Equals(element->getNodeName(), Names::ExtensionData) ||
           AttributeOf(element, Names::Type) == kObjectPathTypeTexts[0].text;
}

template <class Owner>
void AppendChildren(IProducer& producer, Owner const& owner, std::vector<IObject*>& objects)
{
    for (unsigned long long i = 0, count = owner.ChildCount(); i < count; ++i)
    {
        auto const child = owner.ChildAt(i);
        if (IObject* const object = child.Id().IsEmpty() ? nullptr : producer.Load(child.Id()))
            objects.push_back(object);
    }
}

// Whether it is a component, whose children are appended then.
bool AppendContents(IProducer& producer, IObject& object, std::vector<IObject*>& objects)
{
    if (auto const* const assembly = dynamic_cast<IAssembly const*>(&object))
        AppendChildren(producer, *assembly, objects);
    else if (auto const* const part = dynamic_cast<IPart const*>(&object))
        AppendChildren(producer, *part, objects);
    else if (auto const* const file = dynamic_cast<IFile const*>(&object))
        AppendChildren(producer, *file, objects);
    else
        return false;
    return true;
}

}  // namespace

bool PathCheck::IsPath(DOMNode const* element, XMLCh const* attribute)
{
    XMLCh const* const name = element->getNodeName();
    if (Equals(name, Names::BaseOccPath))
        return true;
    if (Equals(attribute, Names::OccurrencePath))
        return Equals(name, Names::ExtensionData);
    if (!Equals(attribute, Names::Path))
        return false;
    return Equals(name, Names::EntityVisibility) || Equals(name, Names::EntityStyles) ||
           Equals(name, Names::EntityTransformation) || Equals(name, Names::OccurrencePath);
}

void PathCheck::Follow(Spot const& spot, std::string_view path)
{
    std::vector<std::string> const ids = IdsOf(spot, path);
    if (ids.empty() || !m_check.IsWanted(DocumentRule::kPathAstray) || !IsThroughTheTree(spot.element))
        return;
    Way furthest;
    bool hasStart = false;
    for (IObject* const start : StartsOf(spot.element))
    {
        Way const way = WayFrom(start, ids);
        if (!way.at || way.steps == ids.size())
            return;
        if (!hasStart || way.steps > furthest.steps)
            furthest = way;
        hasStart = true;
    }
    if (hasStart)
        AddAstray(spot, ids[furthest.steps], furthest);
}

// Those of a path, each once; empty when one of them is nothing's, of which it tells.
std::vector<std::string> PathCheck::IdsOf(Spot const& spot, std::string_view path)
{
    std::vector<std::string> ids;
    std::unordered_set<std::string> met;
    bool isWhole = true;
    if (!path.empty() && path.find(']') == std::string_view::npos)
        m_check.Add(DocumentRule::kReferenceMissing, spot, std::string(path),
                    "read as the empty path, since no id in it has brackets");
    for (std::size_t end = path.find(']'); end != std::string_view::npos; end = path.find(']'))
    {
        // The character in front of an id is passed over.
        std::string const id(path.substr(std::min<std::size_t>(1, end), end - std::min<std::size_t>(1, end)));
        path.remove_prefix(end + 1);
        if (!met.insert(id).second)
            continue;
        isWhole = isWhole && !id.empty();
        if (!id.empty() && !m_check.Producer().Load(UTF8String(id)) && !IsAnywhere(id))
        {
            m_check.Add(DocumentRule::kReferenceMissing, spot, id, "a path by an object that there is not",
                        m_check.NearestId(id));
            isWhole = false;
        }
        ids.push_back(id);
    }
    if (!isWhole)
        ids.clear();
    return ids;
}

// What may speak the path: the component in which it stands, or the root, where that is told by nothing.
PathCheck::Objects PathCheck::StartsOf(DOMNode const* element)
{
    Objects starts;
    if (DOMNode const* const owner = ComponentAround(element))
    {
        IObject* const object = m_check.Producer().Load(UTF8String(AttributeOf(owner, Names::ID)));
        if (object && (dynamic_cast<IComponent*>(object) || dynamic_cast<IFile*>(object)))
            starts.push_back(object);
    }
    if (!m_hasRoot)
        FindRoot();
    if (m_root && !IsOfItsAssembly(element))
        starts.push_back(m_root);
    return starts;
}

void PathCheck::FindRoot()
{
    m_hasRoot = true;
    try
    {
        m_root = m_check.Producer().Load(m_check.Producer().RootObjectId().Id());
    }
    catch (GeneralException const&)
    {
        // Without a root, of which another rule tells.
    }
}

PathCheck::Way PathCheck::WayFrom(IObject* start, std::vector<std::string> const& ids)
{
    Way way;
    way.at = start;
    while (way.at && way.steps < ids.size() && Step(way, ids[way.steps]))
        ++way.steps;
    return way;
}

bool PathCheck::Step(Way& way, std::string const& id)
{
    IObject* const object = m_check.Producer().Load(UTF8String(id));
    if (!object)
        return StepWithin(way, id);
    Objects const& contents = ContentsOf(*way.at);
    if (std::binary_search(contents.begin(), contents.end(), object))
    {
        auto const* const instance = dynamic_cast<IInstance const*>(object);
        // Where the target is missing, another rule tells.
        way.at = instance ? m_check.Producer().Load(instance->TargetId().Id()) : object;
        way.isPlaced = instance != nullptr;
        return true;
    }
    // What an instance places may be named as well.
    bool const isItself = way.isPlaced && object == way.at;
    way.isPlaced = false;
    return isItself;
}

// By address: the children of a component; of the root also those of all that stands below it without an instance; what
// any other object names.
PathCheck::Objects const& PathCheck::ContentsOf(IObject& object)
{
    auto const [entry, isNew] = m_contents.try_emplace(&object);
    Objects& contents = entry->second;
    if (!isNew)
        return contents;
    IProducer& producer = m_check.Producer();
    if (AppendContents(producer, object, contents))
    {
        std::unordered_set<IObject const*> entered{&object};
        for (std::size_t i = 0; &object == m_root && i < contents.size(); ++i)
            if (entered.insert(contents[i]).second)
                AppendContents(producer, *contents[i], contents);
    }
    else
    {
        std::vector<UTF8String> references;
        CollectReferences(object, references);
        for (UTF8String const& id : references)
            if (IObject* const named = producer.Load(id))
                contents.push_back(named);
    }
    std::sort(contents.begin(), contents.end());
    contents.erase(std::unique(contents.begin(), contents.end()), contents.end());
    return contents;
}

std::string PathCheck::NearestIn(IObject& object, std::string const& id)
{
    Objects const& contents = ContentsOf(object);
    if (contents.size() > Guesses::kMostNames || m_guessed++ >= Guesses::kMostGuesses)
        return {};
    std::vector<std::string> ids;
    for (IObject const* const content : contents)
        ids.emplace_back(content->Id().View());
    return m_guesses.Of(id, ids);
}

void PathCheck::AddAstray(Spot const& spot, std::string const& id, Way const& way)
{
    Finding* const finding = m_check.Add(DocumentRule::kPathAstray, spot, id,
                                         (way.steps == 0 ? "a path from " : "a path that has led to ") +
                                             std::string(way.at->Id().View()) + ", in which it does not stand",
                                         NearestIn(*way.at, id));
    DOMNode const* const element = finding ? m_check.ElementOf(id) : nullptr;
    if (element)
        finding->reasons.push_back("it is " + PathOf(element));
}

bool PathCheck::IsAnywhere(std::string const& id)
{
    if (m_elements.empty())
    {
        for (TreeWalk walk(m_check.Root()); walk.Element(); walk.Next())
        {
            auto const [entry, isNew] = m_elements.try_emplace(AttributeOf(walk.Element(), Names::ID), walk.Element());
            if (!isNew)
                entry->second = nullptr;
        }
    }
    return m_elements.contains(id);
}

// To what is no object: a face or an edge, or what left none, of which other rules tell.
bool PathCheck::StepWithin(Way& way, std::string const& id)
{
    DOMNode const* element = IsAnywhere(id) ? m_elements.at(id) : nullptr;
    bool const isPartOfBody =
        element && (Equals(element->getNodeName(), Names::Face) || Equals(element->getNodeName(), Names::Edge));
    std::string const around(way.at->Id().View());
    while (isPartOfBody && (element = element->getParentNode()))
        if (IsElement(element) && AttributeOf(element, Names::ID) == around)
            return true;
    if (!isPartOfBody)
        way.at = nullptr;
    return !isPartOfBody;
}

}  // namespace KVR
