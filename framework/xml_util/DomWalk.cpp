#include "framework/xml_util/DomWalk.h"

#include <string>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
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

bool Equal(XMLCh const* a, XMLCh const* b)
{
    for (; *a == *b; ++a, ++b)
    {
        if (*a == 0)
            return true;
    }
    return false;
}

// What getNodeValue answers, without the cast between distant classes by which it finds out that there is one run of
// text.
XMLCh const* AttributeValue(DOMNode const* attribute)
{
    DOMNode const* const text = attribute->getFirstChild();
    return text && !text->getNextSibling() && IsText(text) ? text->getNodeValue() : attribute->getNodeValue();
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

// An element has few attributes: to walk them costs less than the search that the map offers.
XMLCh const* FindAttribute(DOMNode const* node, XMLCh const* name)
{
    if (!IsElement(node))
        return nullptr;
    xercesc::DOMNamedNodeMap const* const attributes = node->getAttributes();
    for (XMLSize_t i = 0, count = attributes->getLength(); i < count; ++i)
    {
        DOMNode const* const attribute = attributes->item(i);
        if (!Equal(attribute->getNodeName(), name))
            continue;
        XMLCh const* const text = AttributeValue(attribute);
        TellObserver(&ReadObserver::AttributeAsked, node, name, static_cast<long>(i), text);
        return text;
    }
    TellObserver(&ReadObserver::AttributeAsked, node, name, -1L, nullptr);
    return nullptr;
}

namespace
{

XMLCh const* TextOf(DOMNode* node)
{
    // Nearly always there is one run of text, which the document holds already.
    DOMNode const* const first = node->getFirstChild();
    if (!first)
        return IsText(node) ? node->getNodeValue() : u"";
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

}  // namespace

XMLCh const* TextContent(DOMNode* node)
{
    if (!node)
        return nullptr;
    XMLCh const* const text = TextOf(node);
    TellObserver(&ReadObserver::TextTaken, node, text);
    return text;
}

}  // namespace KVR
