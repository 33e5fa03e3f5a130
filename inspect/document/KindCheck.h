#pragma once

#include <string>
#include <xercesc/dom/DOMNode.hpp>

#include "inspect/SceneCheck.h"

namespace KVR
{

class IObject;

/// Looks at references by which nothing is looked up while a scene is read: of styles, cameras, textures, levels of
/// detail, and of a file to its children. What they lead to must be there, and of a kind that can stand there.
class KindCheck
{
public:
    explicit KindCheck(SceneCheck& check) : m_check(check) {}

    void LookAt(xercesc::DOMNode const* element);

private:
    struct Row;
    void Follow(xercesc::DOMNode const* element, XMLCh const* attribute, XMLCh const* text, Row const& row);

    SceneCheck& m_check;
    /// The reference that was good last, which mostly is the next one, too.
    std::string m_latest;
    Row const* m_latestRow = nullptr;
};

}  // namespace KVR
