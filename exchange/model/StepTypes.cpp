#include "exchange/model/StepTypes.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace KVR
{

namespace
{

using Kind = StepRole::Kind;

constexpr std::string_view kRoots[] = {
    "PRODUCT_DEFINITION",
    "PRODUCT_DEFINITION_WITH_ASSOCIATED_DOCUMENTS",
    "NEXT_ASSEMBLY_USAGE_OCCURRENCE",
    "SPECIFIED_HIGHER_USAGE_OCCURRENCE",
    "APPLICATION_PROTOCOL_DEFINITION",
    "MECHANICAL_DESIGN_GEOMETRIC_PRESENTATION_REPRESENTATION",
};

constexpr std::string_view kDrawings[] = {
    "DRAUGHTING_MODEL",
    "CAMERA_MODEL_D3",
    "CAMERA_MODEL_D3_MULTI_CLIPPING",
};

constexpr std::string_view kAnnotations[] = {
    "ANGULARITY_TOLERANCE",
    "CIRCULAR_RUNOUT_TOLERANCE",
    "ROUNDNESS_TOLERANCE",
    "COAXIALITY_TOLERANCE",
    "CONCENTRICITY_TOLERANCE",
    "CYLINDRICITY_TOLERANCE",
    "FLATNESS_TOLERANCE",
    "PARALLELISM_TOLERANCE",
    "PERPENDICULARITY_TOLERANCE",
    "POSITION_TOLERANCE",
    "LINE_PROFILE_TOLERANCE",
    "SURFACE_PROFILE_TOLERANCE",
    "STRAIGHTNESS_TOLERANCE",
    "SYMMETRY_TOLERANCE",
    "TOTAL_RUNOUT_TOLERANCE",
    "GEOMETRIC_TOLERANCE",
    "GEOMETRIC_TOLERANCE_WITH_DATUM_REFERENCE",
    "GEOMETRIC_TOLERANCE_WITH_MODIFIERS",
    "MODIFIED_GEOMETRIC_TOLERANCE",
    "GEOMETRIC_TOLERANCE_WITH_MAXIMUM_TOLERANCE",
    "UNEQUALLY_DISPOSED_GEOMETRIC_TOLERANCE",
    "GEOMETRIC_TOLERANCE_WITH_DEFINED_UNIT",
    "DIMENSIONAL_SIZE",
    "DIMENSIONAL_LOCATION",
    "ANGULAR_SIZE",
    "ANGULAR_LOCATION",
    "DIMENSIONAL_SIZE_WITH_PATH",
    "DIMENSIONAL_LOCATION_WITH_PATH",
    "DIRECTED_DIMENSIONAL_LOCATION",
    "DIMENSIONAL_SIZE_WITH_DATUM_FEATURE",
    "DATUM_TARGET",
    "PLACED_DATUM_TARGET_FEATURE",
};

constexpr std::pair<std::string_view, std::array<int, 2>> kLinks[] = {
    {"PRODUCT_DEFINITION_SHAPE", {2, -1}},
    {"SHAPE_DEFINITION_REPRESENTATION", {0, -1}},
    {"CONTEXT_DEPENDENT_SHAPE_REPRESENTATION", {1, -1}},
    {"SHAPE_REPRESENTATION_RELATIONSHIP", {2, 3}},
    {"PRODUCT_RELATED_PRODUCT_CATEGORY", {2, -1}},
    {"PRODUCT_TYPE", {2, -1}},
    {"PRODUCT_CATEGORY_RELATIONSHIP", {3, -1}},
    {"STYLED_ITEM", {2, -1}},
    {"OVER_RIDING_STYLED_ITEM", {2, -1}},
    {"CONTEXT_DEPENDENT_OVER_RIDING_STYLED_ITEM", {2, -1}},
    {"PRESENTATION_LAYER_ASSIGNMENT", {2, -1}},
    {"INVISIBILITY", {0, -1}},
    {"PROPERTY_DEFINITION_REPRESENTATION", {0, -1}},
    {"GENERAL_PROPERTY_ASSOCIATION", {3, -1}},
    {"SHAPE_ASPECT_RELATIONSHIP", {2, 3}},
    {"GEOMETRIC_ITEM_SPECIFIC_USAGE", {2, -1}},
    {"ITEM_IDENTIFIED_REPRESENTATION_USAGE", {2, -1}},
    {"DRAUGHTING_MODEL_ITEM_ASSOCIATION", {2, -1}},
    {"MECHANICAL_DESIGN_AND_DRAUGHTING_RELATIONSHIP", {2, 3}},
    {"PLUS_MINUS_TOLERANCE", {1, -1}},
    {"DIMENSIONAL_CHARACTERISTIC_REPRESENTATION", {0, -1}},
    {"TOLERANCE_ZONE", {4, -1}},
    {"PROJECTED_ZONE_DEFINITION", {0, -1}},
};

constexpr std::string_view kDetails[] = {
    // Products.
    "PRODUCT",
    "PRODUCT_DEFINITION_FORMATION",
    "PRODUCT_DEFINITION_FORMATION_WITH_SPECIFIED_SOURCE",
    "PRODUCT_CONTEXT",
    "MECHANICAL_CONTEXT",
    "PRODUCT_DEFINITION_CONTEXT",
    "DESIGN_CONTEXT",
    "APPLICATION_CONTEXT",
    "PRODUCT_CATEGORY",
    "GENERAL_PROPERTY",
    "ITEM_DEFINED_TRANSFORMATION",
    "REPRESENTATION_RELATIONSHIP",
    "REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION",
    // Representations, contexts and units.
    "REPRESENTATION",
    "SHAPE_REPRESENTATION",
    "ADVANCED_BREP_SHAPE_REPRESENTATION",
    "FACETED_BREP_SHAPE_REPRESENTATION",
    "MANIFOLD_SURFACE_SHAPE_REPRESENTATION",
    "GEOMETRICALLY_BOUNDED_SURFACE_SHAPE_REPRESENTATION",
    "GEOMETRICALLY_BOUNDED_WIREFRAME_SHAPE_REPRESENTATION",
    "EDGE_BASED_WIREFRAME_SHAPE_REPRESENTATION",
    "SHAPE_REPRESENTATION_WITH_PARAMETERS",
    "REPRESENTATION_MAP",
    "MAPPED_ITEM",
    "REPRESENTATION_CONTEXT",
    "GEOMETRIC_REPRESENTATION_CONTEXT",
    "PARAMETRIC_REPRESENTATION_CONTEXT",
    "GLOBAL_UNIT_ASSIGNED_CONTEXT",
    "GLOBAL_UNCERTAINTY_ASSIGNED_CONTEXT",
    "DEFINITIONAL_REPRESENTATION",
    "UNCERTAINTY_MEASURE_WITH_UNIT",
    "NAMED_UNIT",
    "SI_UNIT",
    "LENGTH_UNIT",
    "PLANE_ANGLE_UNIT",
    "SOLID_ANGLE_UNIT",
    "MASS_UNIT",
    "AREA_UNIT",
    "VOLUME_UNIT",
    "RATIO_UNIT",
    "CONVERSION_BASED_UNIT",
    "DERIVED_UNIT",
    "DERIVED_UNIT_ELEMENT",
    "DIMENSIONAL_EXPONENTS",
    "MEASURE_WITH_UNIT",
    "LENGTH_MEASURE_WITH_UNIT",
    "PLANE_ANGLE_MEASURE_WITH_UNIT",
    "SOLID_ANGLE_MEASURE_WITH_UNIT",
    "AREA_MEASURE_WITH_UNIT",
    "VOLUME_MEASURE_WITH_UNIT",
    "MASS_MEASURE_WITH_UNIT",
    "RATIO_MEASURE_WITH_UNIT",
    // Items of representations.
    "REPRESENTATION_ITEM",
    "GEOMETRIC_REPRESENTATION_ITEM",
    "TOPOLOGICAL_REPRESENTATION_ITEM",
    "MEASURE_REPRESENTATION_ITEM",
    "DESCRIPTIVE_REPRESENTATION_ITEM",
    "VALUE_REPRESENTATION_ITEM",
    "INTEGER_REPRESENTATION_ITEM",
    "REAL_REPRESENTATION_ITEM",
    "BOOLEAN_REPRESENTATION_ITEM",
    "COMPOUND_REPRESENTATION_ITEM",
    "QUALIFIED_REPRESENTATION_ITEM",
    // Topology.
    "MANIFOLD_SOLID_BREP",
    "BREP_WITH_VOIDS",
    "FACETED_BREP",
    "SHELL_BASED_SURFACE_MODEL",
    "FACE_BASED_SURFACE_MODEL",
    "CLOSED_SHELL",
    "OPEN_SHELL",
    "ORIENTED_CLOSED_SHELL",
    "ORIENTED_OPEN_SHELL",
    "CONNECTED_FACE_SET",
    "CONNECTED_EDGE_SET",
    "EDGE_BASED_WIREFRAME_MODEL",
    "ADVANCED_FACE",
    "FACE_SURFACE",
    "FACE",
    "FACE_BOUND",
    "FACE_OUTER_BOUND",
    "EDGE_LOOP",
    "VERTEX_LOOP",
    "POLY_LOOP",
    "ORIENTED_EDGE",
    "EDGE_CURVE",
    "EDGE",
    "VERTEX_POINT",
    "VERTEX",
    "GEOMETRIC_SET",
    "GEOMETRIC_CURVE_SET",
    "LOOP",
    // Geometry.
    "POINT",
    "CARTESIAN_POINT",
    "DIRECTION",
    "VECTOR",
    "PLACEMENT",
    "AXIS1_PLACEMENT",
    "AXIS2_PLACEMENT_2D",
    "AXIS2_PLACEMENT_3D",
    "CARTESIAN_TRANSFORMATION_OPERATOR",
    "CARTESIAN_TRANSFORMATION_OPERATOR_3D",
    "CURVE",
    "LINE",
    "CONIC",
    "CIRCLE",
    "ELLIPSE",
    "HYPERBOLA",
    "PARABOLA",
    "BOUNDED_CURVE",
    "POLYLINE",
    "TRIMMED_CURVE",
    "COMPOSITE_CURVE",
    "COMPOSITE_CURVE_SEGMENT",
    "OFFSET_CURVE_3D",
    "B_SPLINE_CURVE",
    "B_SPLINE_CURVE_WITH_KNOTS",
    "BEZIER_CURVE",
    "QUASI_UNIFORM_CURVE",
    "UNIFORM_CURVE",
    "RATIONAL_B_SPLINE_CURVE",
    "PCURVE",
    "SURFACE_CURVE",
    "SEAM_CURVE",
    "BOUNDED_PCURVE",
    "BOUNDED_SURFACE_CURVE",
    "SURFACE",
    "ELEMENTARY_SURFACE",
    "PLANE",
    "CYLINDRICAL_SURFACE",
    "CONICAL_SURFACE",
    "SPHERICAL_SURFACE",
    "TOROIDAL_SURFACE",
    "DEGENERATE_TOROIDAL_SURFACE",
    "SWEPT_SURFACE",
    "SURFACE_OF_LINEAR_EXTRUSION",
    "SURFACE_OF_REVOLUTION",
    "BOUNDED_SURFACE",
    "RECTANGULAR_TRIMMED_SURFACE",
    "CURVE_BOUNDED_SURFACE",
    "OFFSET_SURFACE",
    "B_SPLINE_SURFACE",
    "B_SPLINE_SURFACE_WITH_KNOTS",
    "BEZIER_SURFACE",
    "QUASI_UNIFORM_SURFACE",
    "UNIFORM_SURFACE",
    "RATIONAL_B_SPLINE_SURFACE",
    // Styles.
    "PRESENTATION_STYLE_ASSIGNMENT",
    "PRESENTATION_STYLE_BY_CONTEXT",
    "SURFACE_STYLE_USAGE",
    "SURFACE_SIDE_STYLE",
    "SURFACE_STYLE_FILL_AREA",
    "SURFACE_STYLE_RENDERING",
    "SURFACE_STYLE_RENDERING_WITH_PROPERTIES",
    "SURFACE_STYLE_TRANSPARENT",
    "FILL_AREA_STYLE",
    "FILL_AREA_STYLE_COLOUR",
    "COLOUR",
    "COLOUR_RGB",
    "DRAUGHTING_PRE_DEFINED_COLOUR",
    "PRE_DEFINED_COLOUR",
    "CURVE_STYLE",
    "POINT_STYLE",
    // Annotations and views.
    "DRAUGHTING_CALLOUT",
    "CHARACTERIZED_OBJECT",
    "CHARACTERIZED_REPRESENTATION",
    "TESSELLATED_SHAPE_REPRESENTATION",
    "ANNOTATION_CURVE_OCCURRENCE",
    "ANNOTATION_OCCURRENCE",
    "ANNOTATION_PLANE",
    "VIEW_VOLUME",
    "PLANAR_BOX",
    "PLANAR_EXTENT",
    "SHAPE_ASPECT",
    "COMPOSITE_SHAPE_ASPECT",
    "COMPOSITE_GROUP_SHAPE_ASPECT",
    "ALL_AROUND_SHAPE_ASPECT",
    "CENTRE_OF_SYMMETRY",
    "DERIVED_SHAPE_ASPECT",
    "DATUM",
    "DATUM_FEATURE",
    "DATUM_SYSTEM",
    "COMMON_DATUM",
    "DATUM_REFERENCE",
    "DATUM_REFERENCE_COMPARTMENT",
    "DATUM_REFERENCE_ELEMENT",
    "DATUM_REFERENCE_MODIFIER_WITH_VALUE",
    "TOLERANCE_VALUE",
    "LIMITS_AND_FITS",
    "TOLERANCE_ZONE_FORM",
    "SHAPE_DIMENSION_REPRESENTATION",
};

// What entities without a role have in their types, with what they are called; the first that fits counts.
constexpr std::pair<std::string_view, std::string_view> kLosses[] = {
    {"TESSELLATED", "tessellated shapes and drawings, which arrive without geometry"},
    {"TRIANGULATED", "tessellated shapes and drawings, which arrive without geometry"},
    {"COORDINATES_LIST", "tessellated shapes and drawings, which arrive without geometry"},
    {"DOCUMENT", "documents"},
    {"EXTERNAL", "external references"},
    {"APPROVAL", "approvals, dates and persons"},
    {"PERSON", "approvals, dates and persons"},
    {"ORGANIZATION", "approvals, dates and persons"},
    {"CALENDAR", "approvals, dates and persons"},
    {"DATE", "approvals, dates and persons"},
    {"LOCAL_TIME", "approvals, dates and persons"},
    {"COORDINATED_UNIVERSAL", "approvals, dates and persons"},
    {"SECURITY", "approvals, dates and persons"},
    {"TOLERANCE", "details of dimensions and tolerances"},
    {"DATUM", "details of dimensions and tolerances"},
    {"QUALIFI", "details of dimensions and tolerances"},
    {"DIMENSION", "details of dimensions and tolerances"},
    {"CONSTRUCTIVE_GEOMETRY", "construction geometry"},
    {"ANNOTATION", "details of annotations"},
    {"DRAUGHTING_CALLOUT", "details of annotations"},
    {"CHARACTERIZED_ITEM", "details of annotations"},
    {"STYLE", "details of styles"},
    {"FONT", "details of styles"},
    {"MARKER", "details of styles"},
};

std::unordered_map<std::string_view, StepRole> MakeRoles()
{
    std::unordered_map<std::string_view, StepRole> roles;
    auto const add = [&](auto const& types, Kind kind)
    {
        for (std::string_view const type : types)
            roles.emplace(type, StepRole{kind, {-1, -1}});
    };
    add(kRoots, Kind::kRoot);
    add(kDrawings, Kind::kDrawing);
    add(kAnnotations, Kind::kAnnotation);
    add(kDetails, Kind::kDetail);
    roles.emplace("PROPERTY_DEFINITION", StepRole{Kind::kProperty, {-1, -1}});
    for (auto const& [type, links] : kLinks)
        roles.emplace(type, StepRole{Kind::kLink, links});
    return roles;
}

}  // namespace

StepRole StepRoleOf(std::string_view types)
{
    static std::unordered_map<std::string_view, StepRole> const roles = MakeRoles();
    bool const isSingle = types.find(' ') == std::string_view::npos;
    StepRole role{Kind::kDetail, {-1, -1}};
    while (!types.empty())
    {
        std::size_t const end = std::min(types.size(), types.find(' '));
        auto const found = roles.find(types.substr(0, end));
        if (found == roles.end())
            return {};
        // The parameters of a link are those of the type by itself.
        if (role.kind == Kind::kDetail && (isSingle || found->second.kind != Kind::kLink))
            role = found->second;
        types.remove_prefix(std::min(types.size(), end + 1));
    }
    return role;
}

std::string StepLossOf(std::string_view type)
{
    for (auto const& [part, loss] : kLosses)
        if (type.find(part) != std::string_view::npos)
            return std::string(loss);
    return "entities of the type " + std::string(type);
}

}  // namespace KVR
