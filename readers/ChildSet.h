#pragma once

#include <algorithm>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "producer/SideFileIndex.h"

namespace KVR
{

class XMLProducerImpl;

/// What the readers of children get, besides their element.
struct ChildContext
{
    XMLProducerImpl* producer;
    BodyEntities& bodyEntities;
    CurveEntities& curveEntities;
    MeshStore& meshStore;
    CurveStore& curveStore;
    /// How many bundles of geometry stand around the child.
    unsigned depth = 0;
};

/// What a failed child means to the owner.
enum OnFailureEnum
{
    /// Go on with the next child.
    kOnFailure_Next,
    /// Leave the rest of this set unread.
    kOnFailure_Stop,
    /// Leave the rest of the owner's element unread, too.
    kOnFailure_Abort
};

/// How the walk over a set ended.
enum class ChildSetEnd
{
    kDone,
    kStopped,
    kAborted
};

/// A kind of child that an owner accepts. `build` reads and registers the child and appends its id; false when it
/// failed, in which case nothing was appended.
template <class ChildIdT>
struct ChildRow
{
    ElementName name;
    bool (*build)(ChildContext const& context, xercesc::DOMNode* node, std::vector<ChildIdT>& children);
    OnFailureEnum onFailure;
};

/// Tells an observer which rows the child is compared with.
template <class ChildIdT>
KVR_ASIDE void TellRows(ReadObserver& observer, xercesc::DOMNode const* child, std::span<ChildRow<ChildIdT> const> rows)
{
    std::vector<std::u16string_view> names(rows.size());
    std::transform(rows.begin(), rows.end(), names.begin(), [](auto const& row) { return row.name; });
    XMLCh const* const name = child->getNodeName();
    auto const matched = std::find_if(names.begin(), names.end(), [&](auto const& held) { return Equals(name, held); });
    auto const place = static_cast<std::size_t>(matched - names.begin());
    // A set of mere ids takes references to objects of any kind.
    if constexpr (std::is_same_v<ChildIdT, UTF8String>)
        observer.NamesTried(child, names, place);
    else
        observer.RowsTried(child, names, place);
}

/// Reads the children of a "ChildSet" by the owner's rows, in document order; a child of any other name is skipped.
template <class ChildIdT>
[[nodiscard]] ChildSetEnd ReadChildSet(std::span<ChildRow<ChildIdT> const> rows, ChildContext const& context,
                                       xercesc::DOMNode const* node, std::vector<ChildIdT>& children)
{
    for (xercesc::DOMNode* const child : Children(node))
    {
        if (ReadObserver* const observer = Observer()) [[unlikely]]
            TellRows(*observer, child, rows);
        XMLCh const* const name = child->getNodeName();
        for (ChildRow<ChildIdT> const& row : rows)
        {
            if (!Equals(name, row.name))
                continue;
            if (!row.build(context, child, children))
            {
                TellObserver(&ReadObserver::ChildFailed, node, child, row.onFailure != kOnFailure_Next,
                             row.onFailure == kOnFailure_Abort);
                if (row.onFailure == kOnFailure_Stop)
                    return ChildSetEnd::kStopped;
                if (row.onFailure == kOnFailure_Abort)
                    return ChildSetEnd::kAborted;
            }
            break;
        }
    }
    return ChildSetEnd::kDone;
}

}  // namespace KVR
