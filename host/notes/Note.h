#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "framework/api/UTF8String.h"
#include "host/tree/ProductNode.h"

namespace KVR
{

class IAnnotationCallout;
class IProducer;

/// An annotation callout as a reader of the drawing sees it.
struct Note
{
    struct Fragment
    {
        /// UTF-8.
        std::string text;
        bool isBold = false;
        bool isItalic = false;
    };
    using Line = std::vector<Fragment>;
    using Triple = std::array<double, 3>;

    struct Plane
    {
        ProductNode object;
        /// Of a work plane; nothing for an object of another kind.
        std::optional<Triple> origin;
        std::optional<Triple> normal;
        std::optional<Triple> reference;
    };

    struct Target
    {
        ProductNode object;
        /// What an element of the callout is drawn with; empty for any other object.
        std::vector<ProductNode> parts;
    };

    /// Asks the callout and what it names. A getter that throws counts as one that has no answer.
    static Note Of(IProducer& producer, IAnnotationCallout const& callout);

    UTF8String id;
    UTF16String label;
    bool isVisible = true;
    /// Nothing when the callout has no text.
    std::optional<std::vector<Line>> text;
    std::optional<Plane> plane;
    std::vector<Target> targets;
};

/// The characters of a line, its fragments joined.
std::string Joined(Note::Line const& line);

}  // namespace KVR
