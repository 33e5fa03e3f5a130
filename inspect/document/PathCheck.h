#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "inspect/SceneCheck.h"
#include "inspect/rules/Guesses.h"

namespace KVR
{

class IObject;

/// Looks at occurrence paths, which readers hand on as they stand: each id must be that of something, and must stand in
/// what the ids before it have led to.
class PathCheck
{
public:
    explicit PathCheck(SceneCheck& check) : m_check(check) {}

    /// Whether the attribute is an occurrence path. Of some elements each is, whatever its name.
    static bool IsPath(xercesc::DOMNode const* element, XMLCh const* attribute);

    /// Follows one, whose place is given.
    void Follow(Spot const& spot, std::string_view path);

private:
    using Objects = std::vector<IObject*>;
    /// How far a path leads from one of the objects that may speak it.
    struct Way
    {
        std::size_t steps = 0;
        /// What it has led to; null once that cannot be told.
        IObject* at = nullptr;
        bool isPlaced = false;
    };

    std::vector<std::string> IdsOf(Spot const& spot, std::string_view path);
    Objects StartsOf(xercesc::DOMNode const* element);
    void FindRoot();
    Way WayFrom(IObject* start, std::vector<std::string> const& ids);
    bool Step(Way& way, std::string const& id);
    bool StepWithin(Way& way, std::string const& id);
    Objects const& ContentsOf(IObject& object);
    std::string NearestIn(IObject& object, std::string const& id);
    void AddAstray(Spot const& spot, std::string const& id, Way const& way);
    bool IsAnywhere(std::string const& id);

    SceneCheck& m_check;
    /// Null for a scene without one, and until the first path is followed.
    IObject* m_root = nullptr;
    bool m_hasRoot = false;
    /// The elements by their ids, once one was looked for that is no object's; null for an id that several have.
    std::unordered_map<std::string, xercesc::DOMNode const*> m_elements;
    /// What stands in an object that a path led to, by address.
    std::unordered_map<IObject const*, Objects> m_contents;
    Guesses m_guesses;
    std::size_t m_guessed = 0;
};

}  // namespace KVR
