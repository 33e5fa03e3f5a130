#include "framework/xml_util/DomWalk.h"

#include <string>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMText.hpp>

namespace KVR
{

namespace
{

using xercesc::DOMNode;

bool IsText(DOMNode const* node)
{
    return node->getNodeType() == DOMNode::TEXT_NODE || node->getNodeType() == DOMNode::CDATA_SECTION_NODE;
}

bool IsLeftOut(DOMNode const* node)
{
    return node->getNodeType() == DOMNode::COMMENT_NODE || node->getNodeType() == DOMNode::PROCESSING_INSTRUCTION_NODE;
}

// The next node of a walk over everything below `top`, in document order; null behind the last.
DOMNode* Next(DOMNode* node, DOMNode const* top)
{
    if (DOMNode* const child = node->getFirstChild())
        return child;
    while (node != top && !node->getNextSibling())
        node = node->getParentNode();
    return node == top ? nullptr : node->getNextSibling();
}

}  // namespace

XMLCh const* AttributeText(DOMNode const* node, XMLCh const* name)
{
    if (!IsElement(node))
        return nullptr;
    xercesc::DOMAttr const* const attribute = static_cast<xercesc::DOMElement const*>(node)->getAttributeNode(name);
    return attribute ? attribute->getValue() : nullptr;
}

XMLCh const* TextContent(DOMNode* node)
{
    if (!node)
        return nullptr;
    // Nearly always there is one run of text, which the document holds already.
    DOMNode const* const first = node->getFirstChild();
    if (!first)
        return u"";
    if (!first->getNextSibling() && IsText(first))
        return first->getNodeValue();
    std::u16string text;
    for (DOMNode* at = Next(node, node); at; at = Next(at, node))
    {
        if (IsText(at) && !IsLeftOut(at->getParentNode()))
            text += at->getNodeValue();
    }
    return node->getOwnerDocument()->createTextNode(text.c_str())->getData();
}

}  // namespace KVR
