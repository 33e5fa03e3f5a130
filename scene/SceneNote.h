#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"
#include "scene/Export.h"
#include "scene/SceneObjectRef.h"

namespace KVR
{

class IAnnotationCallout;
class IProducer;

/// An annotation callout as a reader of the drawing sees it. Nothing of it belongs to the producer.
struct KVR_SCENE_API SceneNote
{
    /// A piece of a line, all of it in one face. What the callout does not mark is neither bold nor italic.
    struct Fragment
    {
        /// UTF-8.
        std::string text;
        bool isBold = false;
        bool isItalic = false;
    };
    using Line = std::vector<Fragment>;
    using Triple = std::array<double, 3>;

    /// What the callout names as its annotation plane.
    struct Plane
    {
        SceneObjectRef object;
        /// Of a work plane, in the plane's own unit of length; nothing for an object of another kind.
        std::optional<Triple> origin;
        std::optional<Triple> normal;
        std::optional<Triple> reference;
    };

    /// A child of the callout, of whatever kind.
    struct Target
    {
        SceneObjectRef object;
        /// What an element of the callout is drawn with; empty for any other object.
        std::vector<SceneObjectRef> parts;
    };

    /// Asks the callout and what it names. A getter that throws counts as one that has no answer.
    static SceneNote Of(IProducer& producer, IAnnotationCallout const& callout);

    /// What extension data of a callout tells of the annotation that it is: "dimension", "tolerance" or "datum"; empty
    /// for a callout that is none.
    static std::string KindOf(IAnnotationCallout const& callout);
    /// The ids of what it speaks of, in their order; empty ones count for nothing.
    static std::vector<std::string> ReferencesOf(IAnnotationCallout const& callout);
    /// What else it tells, a JSON object as a rule; empty when there is none.
    static std::string DetailsOf(IAnnotationCallout const& callout);

    /// The characters of a line, its fragments joined.
    static std::string Joined(Line const& line);

    UTF8String id;
    UTF16String label;
    bool isVisible = true;
    /// Nothing when the callout has no text.
    std::optional<std::vector<Line>> text;
    std::optional<Plane> plane;
    std::vector<Target> targets;
    /// What the functions of these names answer.
    std::string kind;
    std::vector<std::string> references;
    std::string details;
};

}  // namespace KVR
