#pragma once

#include <TDF_Label.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_Shape.hxx>
#include <gp_Ax2.hxx>
#include <optional>
#include <string>
#include <vector>

#include "exchange/conventions/AnnotationDetails.h"
#include "exchange/export/ExportTask.h"
#include "framework/api/Enums.h"
#include "scene/SceneComponent.h"

namespace KVR
{

/// A document of Open CASCADE (XCAF) with what a scene serves, and beside it what such a document has no place for. All
/// texts are UTF-8, all lengths in the document's unit.
struct ShapeDocument
{
    explicit ShapeDocument(NotCarriedCounts& counts) : notCarried(counts) {}
    ShapeDocument(ShapeDocument&&) noexcept = default;
    /// Layers and views hold one another by their links, which a document ends only when it is told to.
    ~ShapeDocument()
    {
        if (!document.IsNull())
            document->Main().Root().ForgetAllAttributes(true);
    }

    /// A body, as the shape that stands in the document.
    struct Body
    {
        TDF_Label part;
        TopoDS_Shape shape;
        std::string name;
        bool isHidden = false;
    };

    /// A layer that a point is in, which no document can say.
    struct LayerOfPoint
    {
        std::string layer;
        bool isVisible = true;
        /// The place of the point in the list of bodies.
        std::size_t body = 0;
    };

    /// What a document cannot say of the look of an occurrence.
    struct Look
    {
        /// Components from the top to the part.
        TDF_LabelSequence path;
        double opacity = 1.0;
        /// Whether the colour in the document is no more than a place for the visibility.
        bool isColorless = false;
    };

    struct View
    {
        std::string name;
        bool isPerspective = false;
        /// The eye, with the direction to the eye as its main direction, and upwards as its y direction.
        gp_Ax2 eye;
        double distance = 0.0;
        double width = 0.0;
        double height = 0.0;
        std::optional<double> nearDistance;
        std::optional<double> farDistance;
        /// Planes that cut away what their main directions point at.
        std::vector<gp_Ax2> cuts;
        /// A camera by itself looks at everything.
        bool showsAll = true;
        /// What the view names: products by their labels, or callouts by their ids.
        struct Member
        {
            TDF_Label product;
            std::string callout;
        };
        std::vector<Member> members;
    };

    /// A shape that an annotation speaks of.
    struct Target
    {
        TDF_Label part;
        /// Null for all of a part of several bodies.
        TopoDS_Shape shape;
    };

    struct Callout
    {
        TDF_Label part;
        std::string id;
        /// Which copy of its component it belongs to; its own is the empty one.
        std::string variant;
        std::string label;
        std::string text;
        std::optional<gp_Ax2> plane;
        /// Curves in the coordinates of the part, and what their element is called.
        std::vector<TopoDS_Shape> curves;
        std::string drawingLabel;
        /// "dimension", "tolerance" or "datum"; empty for what is only drawn.
        std::string kind;
        AnnotationDetails details;
        /// What it speaks of, by ids and by shapes; of a distance, what it goes to apart from the rest.
        std::vector<std::string> references;
        std::vector<Target> first;
        std::vector<Target> second;
    };

    /// A mesh without a body, for formats that have triangles beside shapes.
    struct Tessellation
    {
        TDF_Label part;
        std::string name;
        IPolygonMesh* mesh = nullptr;
        /// To the part, in the document's unit.
        Matrix place = kIdentity;
        /// Null for none.
        SceneStyle const* style = nullptr;
        bool isHidden = false;
        Scene const* scene = nullptr;
    };

    /// What is said of a part or assembly, its name with the blanks that the writer takes off.
    struct Product
    {
        struct Material
        {
            /// Empty for none.
            std::string name;
            std::string description;
            /// In grams for each cubic millimetre; 0 for none.
            double density = 0.0;
            std::string densityType = "POSITIVE_RATIO_MEASURE";
        };

        TDF_Label label;
        std::string name;
        std::string number;
        std::string revision;
        std::string revisionDescription;
        std::string description;
        std::vector<std::string> categories;
        Material material;
        std::vector<SceneProperty> properties;
    };

    /// What is said of a component in its place.
    struct Usage
    {
        TDF_Label label;
        std::string name;
        std::string id;
        std::string description;
        std::string designator;
        std::vector<SceneProperty> properties;
    };

    /// What a solid of a part of several measures.
    struct Solid
    {
        TDF_Label part;
        TopoDS_Shape shape;
        std::string name;
        double volume = 0.0;
        double area = 0.0;
        gp_XYZ centroid;
    };

    opencascade::handle<TDocStd_Document> document;
    UnitTypeEnum unit = kUnitType_Millimeter;
    double metresPerUnit = 1e-3;
    std::string title;
    std::string author;
    std::string organization;
    std::string authorisation;
    std::vector<Product> products;
    std::vector<Usage> usages;
    std::vector<Body> bodies;
    std::vector<Solid> solids;
    std::vector<LayerOfPoint> layersOfPoints;
    /// The names of all layers, in the scene's order.
    std::vector<std::string> layers;
    std::vector<Look> looks;
    /// Parts whose colour in the document is no more than a base for those of their occurrences.
    std::vector<TDF_Label> colorlessParts;
    std::vector<View> views;
    std::vector<Callout> callouts;
    std::vector<Tessellation> tessellations;
    /// When the scene was made, as ISO 8601; empty when it does not say.
    std::string creationTime;
    /// Whether a STEP file has the curves of edges in the parameters of all surfaces (see SimplifyParameterCurves).
    bool parameterCurves = false;
    NotCarriedCounts& notCarried;
};

}  // namespace KVR
