#pragma once

#include <string>
#include <xercesc/dom/DOMNode.hpp>

#include "inspect/SceneCheck.h"
#include "inspect/document/PathCheck.h"

namespace KVR
{

class IObject;

/// Looks at references by which nothing is looked up while a scene is read: to styles, cameras, textures and levels of
/// detail, of a file to its children, and occurrence paths. What they lead to must be there, and of a kind that can
/// stand there.
class KindCheck
{
public:
    explicit KindCheck(SceneCheck& check) : m_check(check), m_paths(check) {}

    void LookAt(xercesc::DOMNode const* element);

private:
    struct Row;
    void Follow(Spot const& spot, std::string const& id, Row const& row);

    SceneCheck& m_check;
    PathCheck m_paths;
    /// The reference that was good last, which mostly is the next one, too.
    std::string m_latest;
    Row const* m_latestRow = nullptr;
};

}  // namespace KVR
