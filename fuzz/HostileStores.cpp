#include "fuzz/HostileStores.h"

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <Standard_Failure.hxx>
#include <filesystem>
#include <fstream>
#include <gp_Circ.hxx>
#include <gp_Pln.hxx>
#include <iterator>

#include "fuzz/KernelHead.h"

namespace KVR::Fuzz
{

namespace
{

void ChangeBytes(std::string& bytes, FuzzedDataProvider& input)
{
    while (!bytes.empty() && input.remaining_bytes() > 0 && input.ConsumeIntegralInRange<int>(0, 3) != 0)
        bytes[input.ConsumeIntegralInRange<std::size_t>(0, bytes.size() - 1)] = input.ConsumeIntegral<char>();
}

void ChangeStore(std::string const& path, std::size_t head, bool isText, FuzzedDataProvider& input)
{
    std::ifstream file(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (bytes.size() <= head)
        return;
    bytes.erase(0, head);
    ChangeBytes(bytes, input);
    std::ofstream(path, std::ios::binary) << (head > 0 ? WithHead(bytes, isText) : bytes);
}

}  // namespace

double HostileNumber(FuzzedDataProvider& input)
{
    return input.ConsumeIntegralInRange<int>(0, 15) == 0 ? input.ConsumeFloatingPoint<double>()
                                                         : input.ConsumeFloatingPointInRange(-100.0, 100.0);
}

TopoDS_Shape HostileShape(FuzzedDataProvider& input)
{
    gp_Ax2 axes;
    if (input.ConsumeBool())
        axes.SetLocation(gp_Pnt(HostileNumber(input), HostileNumber(input), HostileNumber(input)));
    double const a = HostileNumber(input);
    double const b = HostileNumber(input);
    double const c = HostileNumber(input);
    try
    {
        switch (input.ConsumeIntegralInRange<int>(0, 6))
        {
            case 0:
                return BRepPrimAPI_MakeCylinder(axes, a, b, c).Shape();
            case 1:
                return BRepPrimAPI_MakeCone(axes, a, b, c).Shape();
            case 2:
                return BRepPrimAPI_MakeSphere(axes, a, b, c).Shape();
            case 3:
                return BRepPrimAPI_MakeTorus(axes, a, b, c).Shape();
            case 4:
                return BRepBuilderAPI_MakeEdge(gp_Circ(axes, a), b, c).Shape();
            case 5:
                return BRepBuilderAPI_MakeFace(gp_Pln(axes.Location(), axes.Direction()), a, b, -c, c).Shape();
            default:
                return BRepPrimAPI_MakeBox(axes, a, b, c).Shape();
        }
    }
    catch (Standard_Failure const&)
    {
        return {};
    }
}

void ChangeStores(std::string const& path, bool isText, FuzzedDataProvider& input)
{
    for (std::filesystem::directory_entry const& entry :
         std::filesystem::directory_iterator(std::filesystem::path(path).parent_path()))
    {
        std::string const extension = entry.path().extension().string();
        bool const isKernel = extension == ".sab" || extension == ".sat";
        if (isKernel || extension == ".mesh" || extension == ".seg")
            ChangeStore(entry.path().string(), isKernel ? WithHead({}, isText).size() : 0, isText, input);
    }
}

}  // namespace KVR::Fuzz
