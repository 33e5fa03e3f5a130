#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <xercesc/dom/DOMNode.hpp>

#include "inspect/SceneCheck.h"

namespace KVR
{

class IObject;

/// Looks at references by which nothing is looked up while a scene is read: to styles, cameras, textures and levels of
/// detail, of a file to its children, and in occurrence paths. What they lead to must be there, and of a kind that can
/// stand there.
class KindCheck
{
public:
    explicit KindCheck(SceneCheck& check) : m_check(check) {}

    void LookAt(xercesc::DOMNode const* element);

private:
    struct Row;
    void Follow(Spot const& spot, std::string const& id, Row const& row);
    void FollowPath(Spot const& spot, std::string_view path);
    bool IsAnywhere(std::string const& id);

    SceneCheck& m_check;
    /// The reference that was good last, which mostly is the next one, too.
    std::string m_latest;
    Row const* m_latestRow = nullptr;
    /// The ids of all elements, once one was looked for that is no object's.
    std::unordered_set<std::string> m_ids;
};

}  // namespace KVR
