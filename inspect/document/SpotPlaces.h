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

    /// Takes long in lines that are long, unless the places are asked for as they come in the file.
    DocumentPlace PlaceOf(Spot const& spot);
    /// Where the element's start tag ends in the file; 0 where that is not known.
    std::uint64_t EndOf(xercesc::DOMNode const* element) const;

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

    DocumentPlace Locate(Stop const& stop, Spot const& spot);
    std::uint64_t ColumnAt(std::uint64_t offset);
    std::string BytesBefore(std::uint64_t end, std::uint64_t count) const;
    ByteRange EndTagName(std::uint64_t end, std::string const& name) const;
    ByteRange TextRange(std::uint64_t tagEnd, xercesc::DOMNode const* element) const;

    std::string m_path;
    std::unordered_map<xercesc::DOMNode const*, Stop> m_stops;
    /// The place whose column was counted last, from which the next one is counted.
    std::uint64_t m_reached = 0;
    std::uint64_t m_reachedColumn = 1;
};

}  // namespace KVR
