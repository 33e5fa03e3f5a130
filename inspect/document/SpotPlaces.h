#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "inspect/SceneCheck.h"
#include "inspect/document/TagText.h"

namespace KVR
{

/// Where something stands in the document. Line and column count from 1; 0 where they are not known.
struct DocumentPlace
{
    std::uint64_t line = 0;
    std::uint64_t column = 0;
    ByteRange bytes;
    /// Of a name: that in the end tag, which bears it as well; empty for an element without one.
    ByteRange endTagName;
};

/// Finds elements of a parsed document in its file: numbers them in the tree, and reads the file once more to where
/// each of them stands.
class SpotPlaces
{
public:
    /// Reads the document again. Places are known of these elements alone.
    SpotPlaces(std::string const& path, xercesc::DOMNode const* root, std::vector<xercesc::DOMNode const*> elements);
    ~SpotPlaces();
    SpotPlaces(SpotPlaces const&) = delete;
    SpotPlaces& operator=(SpotPlaces const&) = delete;

    DocumentPlace PlaceOf(Spot const& spot) const;

private:
    class Places;
    struct Stop
    {
        std::uint64_t line = 0;
        std::uint64_t column = 0;
        std::uint64_t end = 0;
        /// Behind the end tag.
        std::uint64_t elementEnd = 0;
    };

    DocumentPlace Locate(Stop const& stop, Spot const& spot) const;
    std::string BytesBefore(std::uint64_t end, std::uint64_t count) const;
    ByteRange EndTagName(std::uint64_t end, std::string const& name) const;
    ByteRange TextRange(std::uint64_t tagEnd, xercesc::DOMNode const* element) const;

    std::string m_path;
    std::unordered_map<xercesc::DOMNode const*, Stop> m_stops;
};

}  // namespace KVR
