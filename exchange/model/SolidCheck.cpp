#include "exchange/model/SolidCheck.h"

#include <fmt/format.h>

#include <BRepGProp.hxx>
#include <GProp_GProps.hxx>
#include <TopoDS_Shape.hxx>
#include <cmath>
#include <gp_Pnt.hxx>

namespace KVR
{

namespace
{

constexpr double kTolerance = 1e-3;
constexpr std::size_t kMostNamed = 10;

bool Differs(double is, double said)
{
    return !(std::abs(is - said) <= kTolerance * std::max(std::abs(is), std::abs(said)));
}

}  // namespace

void SolidCheck::Check(std::string const& name, StepSolid const& said, TopoDS_Shape const& solid)
{
    std::string difference;
    auto const add = [&](char const* what, double is, double should)
    {
        if (Differs(is, should))
            difference +=
                fmt::format("{}{} {:.6g} instead of {:.6g}", difference.empty() ? "" : ", ", what, is, should);
    };
    GProp_GProps volume;
    if (said.volume || said.centroid)
        BRepGProp::VolumeProperties(solid, volume);
    if (said.volume)
        add("volume", volume.Mass(), *said.volume / std::pow(m_metresPerUnit, 3));
    if (said.area)
    {
        GProp_GProps area;
        BRepGProp::SurfaceProperties(solid, area);
        add("area", area.Mass(), *said.area / std::pow(m_metresPerUnit, 2));
    }
    if (said.centroid)
    {
        gp_Pnt const centre((*said.centroid)[0], (*said.centroid)[1], (*said.centroid)[2]);
        double const distance = volume.CentreOfMass().Distance(centre);
        if (!(distance <= kTolerance * std::cbrt(std::abs(volume.Mass()))))
            difference += fmt::format("{}centre beside it by {:.6g}", difference.empty() ? "" : ", ", distance);
    }
    if (difference.empty() || ++m_count > kMostNamed)
        return;
    m_differences += fmt::format("{}\"{}\": {}", m_differences.empty() ? "" : "; ", name, difference);
}

std::string SolidCheck::Remark() const
{
    if (m_count == 0)
        return {};
    return fmt::format("{} solids differ from what the file says that they measure: {}{}", m_count, m_differences,
                       m_count > kMostNamed ? "; ..." : "");
}

}  // namespace KVR
