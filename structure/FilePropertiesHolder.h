#pragma once

#include <memory>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "structure/XMLFileProperties.h"

namespace KVR
{

/// The file properties of an owner that a scene may state more than once. The last ones are answered; those before stay
/// alive with the owner, for a host that holds a pointer to them.
class FilePropertiesHolder
{
public:
    void Read(xercesc::DOMNode* node) { m_all.push_back(std::make_unique<XMLFileProperties>(node)); }
    /// Null when the scene stated none.
    XMLFileProperties* Get() const noexcept { return m_all.empty() ? nullptr : m_all.back().get(); }

private:
    std::vector<std::unique_ptr<XMLFileProperties>> m_all;
};

}  // namespace KVR
