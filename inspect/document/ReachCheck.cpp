#include "inspect/document/ReachCheck.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>
#include <xercesc/dom/DOMNamedNodeMap.hpp>

#include "describe/ReferenceWalk.h"
#include "framework/api/Exception.h"
#include "framework/api/IObject.h"
#include "framework/api/IProducer.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "inspect/SceneCheck.h"
#include "inspect/document/DocumentRules.h"
#include "inspect/document/ReadRecord.h"
#include "inspect/document/TreeWalk.h"

namespace KVR
{

namespace
{

using namespace DocumentRule;
using xercesc::DOMNode;

constexpr char kNoObject[] = "a reference to an object that there is not";

using Ids = std::unordered_set<std::string>;

std::optional<UTF8String> RootOf(IProducer& producer)
{
    try
    {
        return producer.RootObjectId().Id();
    }
    catch (GeneralException const&)
    {
        return std::nullopt;
    }
}

std::string Trimmed(std::string const& text)
{
    constexpr char kWhiteSpace[] = " \t\r\n";
    std::size_t const first = text.find_first_not_of(kWhiteSpace);
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

// The places of ids in what an object's element says: attributes that are such an id, or a list of some.
class IdPlaces
{
public:
    IdPlaces(SceneCheck& check, Ids missing) : m_check(check), m_missing(std::move(missing)) {}

    void Add(DOMNode const* element)
    {
        for (TreeWalk walk(element); walk.Element();)
        {
            // What is an object of its own says so itself.
            if (walk.Element() != element && m_check.Record().StateOf(walk.Element()).Is(ElementState::kRegistered))
            {
                walk.SkipBelow();
                continue;
            }
            LookAt(walk.Element());
            walk.Next();
        }
        for (std::string const& id : m_missing)
            m_check.Add(kReferenceMissing, {element}, id, kNoObject, m_check.NearestId(id));
    }

private:
    void LookAt(DOMNode const* element)
    {
        // Told as what it is already.
        bool const isTold = m_check.Record().MissedReferences().contains(element);
        xercesc::DOMNamedNodeMap const* const attributes = element->getAttributes();
        for (XMLSize_t i = 0; i < attributes->getLength(); ++i)
        {
            DOMNode const* const attribute = attributes->item(i);
            std::string const text(XMLStrUtil::XMLStrToAStr(attribute->getNodeValue()).View());
            for (std::size_t at = 0; at <= text.size();)
            {
                std::size_t const end = std::min(text.find(',', at), text.size());
                std::string const piece =
                    text.find(',') == std::string::npos ? text : Trimmed(text.substr(at, end - at));
                at = end + 1;
                if (m_missing.erase(piece) != 0 && !isTold)
                    m_check.Add(kReferenceMissing, {element, SpotPart::kAttributeValue, attribute->getNodeName()},
                                piece, kNoObject, m_check.NearestId(piece));
            }
        }
    }

    SceneCheck& m_check;
    Ids m_missing;
};

// The ids that the object names and nothing has.
Ids MissingOf(IProducer& producer, IObject& object, std::vector<UTF8String>& references)
{
    Ids missing;
    references.clear();
    CollectReferences(object, references);
    for (UTF8String const& id : references)
    {
        if (!id.IsEmpty() && !producer.Load(id))
            missing.emplace(id.View());
    }
    return missing;
}

// Those that no other of them names; the first of those that name each other in a circle.
std::vector<std::size_t> TopsOf(SceneCheck& check, std::vector<std::size_t> const& unreached)
{
    auto const& objects = check.Record().Objects();
    std::unordered_set<IObject const*> named;
    std::vector<UTF8String> references;
    for (std::size_t const at : unreached)
    {
        IObject const* const object = objects[at].second;
        references.clear();
        CollectReferences(*const_cast<IObject*>(object), references);
        for (UTF8String const& id : references)
        {
            IObject const* const target = check.Producer().Load(id);
            if (target != object)
                named.insert(target);
        }
    }
    std::vector<std::size_t> tops;
    std::copy_if(unreached.begin(), unreached.end(), std::back_inserter(tops),
                 [&](std::size_t at) { return !named.contains(objects[at].second); });
    if (tops.empty() && !unreached.empty())
        tops.push_back(unreached.front());
    return tops;
}

void CheckUnreached(SceneCheck& check, UTF8String const& rootId, std::vector<IObject const*> const& reached)
{
    static_cast<void>(rootId);
    auto const& objects = check.Record().Objects();
    std::vector<std::size_t> unreached;
    for (std::size_t i = 0; i < objects.size(); ++i)
    {
        IObject const* const object = objects[i].second;
        // Of two objects of one id the second is told by that.
        if (!std::binary_search(reached.begin(), reached.end(), object) &&
            check.Producer().Load(object->Id()) == object)
            unreached.push_back(i);
    }
    for (std::size_t const at : TopsOf(check, unreached))
        check.Add(kUnreached, {objects[at].first}, std::string(objects[at].second->Id().View()),
                  "an object that nothing leads to from the root");
}

}  // namespace

void CheckReach(SceneCheck& check)
{
    IProducer& producer = check.Producer();
    std::optional<UTF8String> const root = RootOf(producer);
    if (!root)
        check.Add(kNoRoot, {check.Root()}, NameOf(check.Root()),
                  "a scene without a root file, of which hosts show nothing");
    bool isAnyMissing = !root;
    if (root)
    {
        std::vector<IObject const*> reached;
        ReferenceWalk walk(producer);
        walk.Reach(*root);
        while (walk.Next())
        {
            isAnyMissing = isAnyMissing || !walk.Object();
            reached.push_back(walk.Object());
        }
        std::sort(reached.begin(), reached.end());
        isAnyMissing = isAnyMissing || reached.size() < check.Record().Objects().size();
        if (check.IsWanted(kUnreached) && reached.size() < check.Record().Objects().size())
            CheckUnreached(check, *root, reached);
    }
    if (!isAnyMissing || !check.IsWanted(kReferenceMissing))
        return;
    std::vector<UTF8String> references;
    for (auto const& [element, object] : check.Record().Objects())
    {
        Ids missing = MissingOf(producer, *const_cast<IObject*>(object), references);
        if (!missing.empty())
            IdPlaces(check, std::move(missing)).Add(element);
    }
}

}  // namespace KVR
