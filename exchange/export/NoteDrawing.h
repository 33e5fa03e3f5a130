#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "scene/Transform.h"

namespace KVR
{

class IAnnotationCallout;
class ICurve;
class IProducer;

/// How an annotation callout is drawn. Lengths are in the unit of the component that has it.
struct NoteDrawing
{
    struct Curve
    {
        /// It belongs to the producer.
        ICurve const* curve = nullptr;
        /// From the curve's own numbers to the component, in the curve's unit.
        Matrix transform = kIdentity;
        /// That unit by the one of the component.
        double scale = 1.0;
    };

    struct Plane
    {
        std::array<double, 3> origin;
        std::array<double, 3> normal;
        /// Along the lines of the text.
        std::array<double, 3> reference;
    };

    /// `metresPerUnit` is the unit of the component.
    static NoteDrawing Of(IProducer& producer, IAnnotationCallout const& callout, double metresPerUnit);

    /// Those of the callout and of its elements.
    std::vector<Curve> curves;
    /// Of the first element; empty for none.
    std::string label;
    /// With line ends between the lines.
    std::string text;
    /// The height of its characters; 0 when the scene does not say.
    double textHeight = 0.0;
    /// Nothing without a work plane.
    std::optional<Plane> plane;
};

}  // namespace KVR
