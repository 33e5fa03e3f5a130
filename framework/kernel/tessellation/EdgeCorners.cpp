#include "framework/kernel/tessellation/EdgeCorners.h"

#include <BRepAdaptor_Curve.hxx>
#include <GeomAbs_CurveType.hxx>
#include <Geom_BSplineCurve.hxx>
#include <TopoDS_Edge.hxx>

namespace KVR
{

std::vector<gp_Pnt> CornersOf(TopoDS_Edge const& edge)
{
    BRepAdaptor_Curve const curve(edge);
    if (curve.GetType() == GeomAbs_Line)
        return {curve.Value(curve.FirstParameter()), curve.Value(curve.LastParameter())};
    if (curve.GetType() != GeomAbs_BSplineCurve || curve.Degree() != 1)
        return {};
    opencascade::handle<Geom_BSplineCurve> const spline = curve.BSpline();
    std::vector<gp_Pnt> corners{curve.Value(curve.FirstParameter())};
    for (int i = 1; i <= spline->NbKnots(); ++i)
    {
        if (spline->Knot(i) > curve.FirstParameter() && spline->Knot(i) < curve.LastParameter())
            corners.push_back(curve.Value(spline->Knot(i)));
    }
    corners.push_back(curve.Value(curve.LastParameter()));
    return corners;
}

}  // namespace KVR
