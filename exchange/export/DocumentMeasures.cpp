#include "exchange/export/DocumentMeasures.h"

#include <fmt/format.h>

#include <BRepGProp.hxx>
#include <TopExp_Explorer.hxx>
#include <XCAFDoc_Area.hxx>
#include <XCAFDoc_Centroid.hxx>
#include <XCAFDoc_Volume.hxx>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "exchange/run/Beside.h"

namespace KVR
{

namespace
{

// The writer calls volumes and areas millimetres, whatever the unit of lengths is.
constexpr double kMillimetre = 1e-3;

bool IsGood(double measure)
{
    return std::isfinite(measure) && measure > 0.0;
}

}  // namespace

double RoundedMeasure(double number)
{
    return std::strtod(fmt::format("{:.12g}", number).c_str(), nullptr);
}

gp_Pnt RoundedPlace(gp_XYZ const& point)
{
    return {RoundedMeasure(point.X()), RoundedMeasure(point.Y()), RoundedMeasure(point.Z())};
}

void DocumentMeasures::Add(TDF_Label const& part, TopoDS_Shape const& shape)
{
    std::size_t const first = m_solids.size();
    for (TopExp_Explorer solid(shape, TopAbs_SOLID); solid.More(); solid.Next())
        m_solids.push_back({{part, solid.Current(), {}, 0.0, 0.0, {}}, {}, {}});
    std::size_t const count = m_solids.size() - first;
    bool const hasAll = part.IsAttribute(XCAFDoc_Volume::GetID()) && part.IsAttribute(XCAFDoc_Area::GetID()) &&
                        part.IsAttribute(XCAFDoc_Centroid::GetID());
    if (count == 0)
        return;
    if (count == 1 && hasAll)
        m_solids.pop_back();
    else
        m_parts.push_back({part, first});
}

void DocumentMeasures::Finish(ShapeDocument& document)
{
    DoBeside(m_solids.size(),
             [&](std::size_t place)
             {
                 Measured& measured = m_solids[place];
                 measured.volume = measured.area = GProp_GProps();
                 BRepGProp::VolumeProperties(measured.solid.shape, measured.volume);
                 BRepGProp::SurfaceProperties(measured.solid.shape, measured.area);
             });
    for (std::size_t i = 0; i < m_parts.size(); ++i)
        Put(m_parts[i], i + 1 < m_parts.size() ? m_parts[i + 1].firstSolid : m_solids.size(), document);
    m_parts.clear();
    m_solids.clear();
}

void DocumentMeasures::Put(Part const& part, std::size_t endSolid, ShapeDocument& document)
{
    bool const isOneOfSeveral = endSolid - part.firstSolid > 1;
    GProp_GProps volume;
    GProp_GProps area;
    for (std::size_t i = part.firstSolid; i < endSolid; ++i)
    {
        Measured& measured = m_solids[i];
        volume.Add(measured.volume);
        area.Add(measured.area);
        ShapeDocument::Solid& solid = measured.solid;
        solid.volume = RoundedMeasure(measured.volume.Mass());
        solid.area = RoundedMeasure(measured.area.Mass());
        if (!isOneOfSeveral || !IsGood(solid.volume) || !IsGood(solid.area))
            continue;
        solid.centroid = RoundedPlace(measured.volume.CentreOfMass().XYZ()).XYZ();
        document.solids.push_back(std::move(solid));
    }
    if (!IsGood(volume.Mass()) || !IsGood(area.Mass()))
        return;
    double const millimetres = document.metresPerUnit / kMillimetre;
    if (!part.label.IsAttribute(XCAFDoc_Volume::GetID()))
        XCAFDoc_Volume::Set(part.label, RoundedMeasure(volume.Mass() * millimetres * millimetres * millimetres));
    if (!part.label.IsAttribute(XCAFDoc_Area::GetID()))
        XCAFDoc_Area::Set(part.label, RoundedMeasure(area.Mass() * millimetres * millimetres));
    if (!part.label.IsAttribute(XCAFDoc_Centroid::GetID()))
        XCAFDoc_Centroid::Set(part.label, RoundedPlace(volume.CentreOfMass().XYZ()));
}

}  // namespace KVR
