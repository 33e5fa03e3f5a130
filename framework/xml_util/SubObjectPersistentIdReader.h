#pragma once

#include <map>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/api/DataIdToPersistentIdMap.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "framework/xml_util/Export.h"

namespace KVR
{

/// Reads the persistent ids of objects' faces and edges: "SubObjectPersistentIds" elements with "SubObject" children
/// that have "DataId" and "PersistentId". A child without one of the two counts for nothing; of a repeated data id the
/// first one stays.
class KVR_XML_UTIL_API SubObjectPersistentIdReader
{
public:
    SubObjectPersistentIdReader();
    ~SubObjectPersistentIdReader();

    /// Streams a file whose root holds such elements, one per object by its "ID", and adds a map per object, which the
    /// caller owns; an id that is there already takes further entries. False for a file that cannot be opened or is not
    /// well-formed; what stood before the error is added all the same.
    bool LoadSubObjectPersistentIds(UTF16String const& path,
                                    std::map<UTF8String, EditableDataIdToPersistentIdMap*>& maps);

    /// Adds the entries of the node's own "SubObjectPersistentIds" children, or of the node when it is such an element
    /// itself. Null has no effect.
    void ReadSubObjectPersistentIdsFromXML(xercesc::DOMNode const* node, EditableDataIdToPersistentIdMap& map);
};

}  // namespace KVR
