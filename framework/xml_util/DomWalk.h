#pragma once

#include <span>
#include <string_view>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/xml_util/Export.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/ReadObserver.h"

namespace KVR
{

// How readers walk the document. Names, of the list in FormatNames.h, are compared with the node's own text: nothing is
// transcoded or allocated to find out what a node is. Only elements are ever walked or matched. A processing
// instruction or an entity reference can bear an element's name, but it has no attributes and makes no object.

/// Whether the zero-terminated text equals the name, exactly.
inline bool Equals(XMLCh const* text, std::u16string_view name)
{
    if (!text)
        return false;
    // A shorter text ends the loop at its terminating zero, which no name holds.
    for (char16_t const c : name)
    {
        if (*text++ != c)
            return false;
    }
    return *text == 0;
}

/// The same without regard to the case of the letters A to Z.
inline bool EqualsAnyCase(XMLCh const* text, std::u16string_view name)
{
    auto const lower = [](char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c; };
    if (!text)
        return false;
    for (char16_t const c : name)
    {
        if (lower(*text++) != lower(c))
            return false;
    }
    return *text == 0;
}

/// Whether the node is an element; false for null.
inline bool IsElement(xercesc::DOMNode const* node)
{
    return node && node->getNodeType() == xercesc::DOMNode::ELEMENT_NODE;
}

/// Tells an observer that the element's name was compared with one.
KVR_ASIDE inline void TellName(ReadObserver& observer, xercesc::DOMNode const* node, ElementName name, bool isNamed)
{
    std::u16string_view const tried = name;
    observer.NamesTried(node, {&tried, 1}, isNamed ? 0 : 1);
}

/// Whether the node is an element of that name, exactly.
inline bool IsNamed(xercesc::DOMNode const* node, ElementName name)
{
    if (!IsElement(node))
        return false;
    bool const isNamed = Equals(node->getNodeName(), name);
    if (ReadObserver* const observer = Observer()) [[unlikely]]
        TellName(*observer, node, name, isNamed);
    return isNamed;
}

/// The child elements of a node, in document order; none for a null node.
class ChildElements
{
public:
    /// Goes from element to element, past text, comments and the like.
    class Iterator
    {
    public:
        explicit Iterator(xercesc::DOMNode* node) : m_node(node) { SkipOthers(); }
        /// The element, owned by the document.
        xercesc::DOMNode* operator*() const { return m_node; }
        /// Goes to the next element, or to the end.
        Iterator& operator++()
        {
            m_node = m_node->getNextSibling();
            SkipOthers();
            return *this;
        }
        bool operator!=(Iterator const& other) const { return m_node != other.m_node; }

    private:
        void SkipOthers()
        {
            while (m_node && !IsElement(m_node))
                m_node = m_node->getNextSibling();
        }

        xercesc::DOMNode* m_node;
    };

    explicit ChildElements(xercesc::DOMNode const* node) : m_first(node ? node->getFirstChild() : nullptr)
    {
        TellObserver(&ReadObserver::ChildrenWalked, node);
    }
    /// An iterator at the first element, or at the end.
    Iterator begin() const { return Iterator(m_first); }
    /// An iterator behind the last element.
    Iterator end() const { return Iterator(nullptr); }

private:
    xercesc::DOMNode* m_first;
};

/// The child elements of a node, for range-based loops.
inline ChildElements Children(xercesc::DOMNode const* node)
{
    return ChildElements(node);
}

/// A row of an element reader's table: a name and what to do with a child of that name.
template <class Action>
struct MatchRow
{
    std::u16string_view name;
    bool anyCase;
    Action action;

    /// Runs the action when the name matches; whether it did. An observer may be null. It is told name by name, by
    /// pointers: rows that are not handed on take no room on the stack, which the readers of nested elements share.
    [[gnu::always_inline]] bool Try(xercesc::DOMNode const* element, XMLCh const* nodeName,
                                    ReadObserver* observer) const
    {
        bool const isMatch = anyCase ? EqualsAnyCase(nodeName, name) : Equals(nodeName, name);
        if (observer) [[unlikely]]
            observer->TryName(element, name.data(), isMatch);
        if (isMatch)
            action();
        return isMatch;
    }
};

/// A row for children of exactly that name.
template <class Action>
MatchRow<Action> On(ElementName name, Action action)
{
    return {name, false, action};
}

/// For the few names that match without regard to case.
template <class Action>
MatchRow<Action> OnAnyCase(ElementName name, Action action)
{
    return {name, true, action};
}

/// Runs the first row that matches the element; whether one did.
template <class... Actions>
[[gnu::always_inline]] inline bool Match(xercesc::DOMNode const* element, MatchRow<Actions> const&... rows)
{
    XMLCh const* const name = element->getNodeName();
    ReadObserver* const observer = Observer();
    bool const isMatched = (rows.Try(element, name, observer) || ...);
    if (observer && !isMatched) [[unlikely]]
        observer->TellTried(element, sizeof...(rows));
    return isMatched;
}

/// The text of an attribute, owned by the document; null when the node has none of that name or is no element.
KVR_XML_UTIL_API XMLCh const* FindAttribute(xercesc::DOMNode const* node, XMLCh const* name);
/// The same for a name of the format.
inline XMLCh const* AttributeText(xercesc::DOMNode const* node, AttributeName name)
{
    return FindAttribute(node, name.Document());
}

/// The text of a node and of all elements in it, comments and processing instructions left out, as DOM Level 3 has it.
/// Owned by the document; empty for a node without text, null for a null node. Depth of nesting does no harm.
KVR_XML_UTIL_API XMLCh const* TextContent(xercesc::DOMNode* node);

}  // namespace KVR
