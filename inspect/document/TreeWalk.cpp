#include "inspect/document/TreeWalk.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

// The next node in document order, whatever it is; null behind the last.
DOMNode const* NodeBehind(DOMNode const* node, DOMNode const* root, bool below)
{
    if (DOMNode const* const child = below ? node->getFirstChild() : nullptr)
        return child;
    while (node != root && !node->getNextSibling())
        node = node->getParentNode();
    return node == root ? nullptr : node->getNextSibling();
}

}  // namespace

void TreeWalk::Go(bool below)
{
    do
    {
        m_at = NodeBehind(m_at, m_root, below);
        below = true;
    } while (m_at && m_at->getNodeType() != DOMNode::ELEMENT_NODE);
    ++m_number;
}

void TreeWalk::SkipBelow()
{
    DOMNode const* end = m_at;
    do
    {
        end = NodeBehind(end, m_root, end != m_at);
    } while (end && end->getNodeType() != DOMNode::ELEMENT_NODE);
    while (m_at != end)
        Go(true);
}

}  // namespace KVR
