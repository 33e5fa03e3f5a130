#pragma once

#include <GProp_GProps.hxx>
#include <TDF_Label.hxx>
#include <TopoDS_Shape.hxx>
#include <cstddef>
#include <gp_Pnt.hxx>
#include <vector>

#include "exchange/export/ShapeDocument.h"

namespace KVR
{

/// To twelve digits, which come back as they are through any change of unit.
double RoundedMeasure(double number);
gp_Pnt RoundedPlace(gp_XYZ const& point);

/// The measures of the solids of a document's parts: of all together, where the scene says nothing of them, and of each
/// of several; so that a receiver can check them.
class DocumentMeasures
{
public:
    /// Notes the solids of a part, of which something is still to be said.
    void Add(TDF_Label const& part, TopoDS_Shape const& shape);
    /// Measures what was noted, on all processors, and puts it into the document.
    void Finish(ShapeDocument& document);

private:
    struct Measured
    {
        ShapeDocument::Solid solid;
        GProp_GProps volume;
        GProp_GProps area;
    };
    struct Part
    {
        TDF_Label label;
        std::size_t firstSolid = 0;
    };

    void Put(Part const& part, std::size_t endSolid, ShapeDocument& document);

    std::vector<Part> m_parts;
    std::vector<Measured> m_solids;
};

}  // namespace KVR
