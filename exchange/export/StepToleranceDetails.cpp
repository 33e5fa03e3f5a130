#include "exchange/export/StepToleranceDetails.h"

#include <StepDimTol_DatumReferenceModifier.hxx>
#include <StepDimTol_GeometricTolerance.hxx>
#include <StepDimTol_HArray1OfToleranceZoneTarget.hxx>
#include <StepDimTol_SimpleDatumReferenceModifierMember.hxx>
#include <StepDimTol_ToleranceZone.hxx>
#include <StepDimTol_ToleranceZoneForm.hxx>
#include <StepDimTol_ToleranceZoneTarget.hxx>
#include <StepRepr_ProductDefinitionShape.hxx>
#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

#include "exchange/export/StepEntities.h"

namespace KVR
{

namespace
{

using opencascade::handle;

// In the order of Open CASCADE's enumerations.
constexpr std::string_view kToleranceModifiers[] = {"any cross section",
                                                    "common zone",
                                                    "each radial element",
                                                    "free state",
                                                    "least material requirement",
                                                    "line element",
                                                    "major diameter",
                                                    "maximum material requirement",
                                                    "minor diameter",
                                                    "not convex",
                                                    "pitch diameter",
                                                    "reciprocity requirement",
                                                    "separate requirement",
                                                    "statistical tolerance",
                                                    "tangent plane"};
constexpr std::string_view kDatumModifiers[] = {"any cross section",
                                                "any longitudinal section",
                                                "basic",
                                                "contacting feature",
                                                "degree of freedom constraint u",
                                                "degree of freedom constraint v",
                                                "degree of freedom constraint w",
                                                "degree of freedom constraint x",
                                                "degree of freedom constraint y",
                                                "degree of freedom constraint z",
                                                "distance variable",
                                                "free state",
                                                "least material requirement",
                                                "line",
                                                "major diameter",
                                                "maximum material requirement",
                                                "minor diameter",
                                                "orientation",
                                                "pitch diameter",
                                                "plane",
                                                "point",
                                                "translation"};

// The places in a list of those that are in it.
template <std::size_t kSize>
std::vector<int> PlacesOf(std::vector<std::string> const& modifiers, std::string_view const (&known)[kSize])
{
    std::vector<int> places;
    for (std::string const& modifier : modifiers)
        if (auto const* const found = std::find(std::begin(known), std::end(known), modifier); found != std::end(known))
            places.push_back(static_cast<int>(found - std::begin(known)));
    return places;
}

}  // namespace

handle<StepDimTol_HArray1OfGeometricToleranceModifier> StepToleranceModifiers(std::vector<std::string> const& modifiers)
{
    std::vector<int> const places = PlacesOf(modifiers, kToleranceModifiers);
    if (places.empty())
        return {};
    handle<StepDimTol_HArray1OfGeometricToleranceModifier> made =
        new StepDimTol_HArray1OfGeometricToleranceModifier(1, static_cast<int>(places.size()));
    for (std::size_t i = 0; i < places.size(); ++i)
        made->SetValue(static_cast<int>(i) + 1, static_cast<StepDimTol_GeometricToleranceModifier>(places[i]));
    return made;
}

handle<StepDimTol_HArray1OfDatumReferenceModifier> StepDatumModifiers(std::vector<std::string> const& modifiers)
{
    std::vector<int> const places = PlacesOf(modifiers, kDatumModifiers);
    if (places.empty())
        return {};
    handle<StepDimTol_HArray1OfDatumReferenceModifier> made =
        new StepDimTol_HArray1OfDatumReferenceModifier(1, static_cast<int>(places.size()));
    for (std::size_t i = 0; i < places.size(); ++i)
    {
        handle<StepDimTol_SimpleDatumReferenceModifierMember> const member =
            new StepDimTol_SimpleDatumReferenceModifierMember;
        member->SetValue(static_cast<StepDimTol_SimpleDatumReferenceModifier>(places[i]));
        StepDimTol_DatumReferenceModifier modifier;
        modifier.SetValue(member);
        made->SetValue(static_cast<int>(i) + 1, modifier);
    }
    return made;
}

handle<StepDimTol_ToleranceZone> StepZoneOf(handle<StepDimTol_GeometricTolerance> const& tolerance,
                                            std::string const& form,
                                            handle<StepRepr_ProductDefinitionShape> const& shape)
{
    StepDimTol_ToleranceZoneTarget target;
    target.SetValue(tolerance);
    handle<StepDimTol_HArray1OfToleranceZoneTarget> const targets = new StepDimTol_HArray1OfToleranceZoneTarget(1, 1);
    targets->SetValue(1, target);
    handle<StepDimTol_ToleranceZoneForm> const named = new StepDimTol_ToleranceZoneForm;
    named->Init(StepString(form));
    handle<StepDimTol_ToleranceZone> zone = new StepDimTol_ToleranceZone;
    zone->Init(StepString(""), StepString(""), shape, StepData_LFalse, targets, named);
    return zone;
}

unsigned long long PlacelessToleranceDetails(AnnotationDetails const& details, bool isDatum)
{
    std::size_t const known = isDatum ? PlacesOf(details.modifiers, kDatumModifiers).size()
                                      : PlacesOf(details.modifiers, kToleranceModifiers).size();
    unsigned long long count = details.modifiers.size() - known;
    for (bool const has : {!details.target.empty(), details.maximum.has_value(), details.displacement.has_value(),
                           details.unitSize.has_value(), details.projection.has_value()})
        count += has ? 1 : 0;
    return count;
}

}  // namespace KVR
