#pragma once

#include <cstdint>
#include <xercesc/dom/DOMNode.hpp>

namespace KVR
{

/// Every element of a document in the order of their start tags, those that an entity brought among them, as a reader
/// that streams the document meets them. Of no depth that would matter.
class TreeWalk
{
public:
    explicit TreeWalk(xercesc::DOMNode const* root) : m_root(root), m_at(root) {}

    /// Null behind the last.
    xercesc::DOMNode const* Element() const noexcept { return m_at; }
    /// Counts from 0.
    std::uint64_t Number() const noexcept { return m_number; }
    void Next() { Go(true); }
    /// Goes past the element and all in it, which are counted all the same.
    void SkipBelow();

private:
    void Go(bool below);

    xercesc::DOMNode const* m_root;
    xercesc::DOMNode const* m_at;
    std::uint64_t m_number = 0;
};

}  // namespace KVR
