#include "exchange/model/StepHealing.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

#include <BRepBuilderAPI_Transform.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRep_Builder.hxx>
#include <BinTools.hxx>
#include <Interface_Static.hxx>
#include <STEPControl_Reader.hxx>
#include <STEPControl_Writer.hxx>
#include <StepData_StepModel.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Compound.hxx>
#include <TransferBRep.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>

#include "framework/kernel/KernelMessages.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

void ReadFile(STEPControl_Reader& reader, std::string const& path)
{
    SilenceKernel();
    if (reader.ReadFile(path.c_str()) != IFSelect_RetDone)
        throw std::runtime_error("Open CASCADE did not read " + path);
}

// The shapes of all roots, as Open CASCADE stores them.
std::string ShapesOf(STEPControl_Reader& reader)
{
    reader.TransferRoots();
    std::ostringstream bytes;
    for (int i = 1; i <= reader.NbShapes(); ++i)
        BinTools::Write(reader.Shape(i), bytes);
    return bytes.str();
}

// By entity, the place of its shape among those of the roots, 0 for one that does not stand there.
std::map<int, int> PlacesOfEntities(STEPControl_Reader& reader)
{
    TopTools_IndexedMapOfShape shapes;
    for (int i = 1; i <= reader.NbShapes(); ++i)
        TopExp::MapShapes(reader.Shape(i), shapes);
    std::map<int, int> places;
    Handle(Transfer_TransientProcess) const process = reader.WS()->TransferReader()->TransientProcess();
    Handle(StepData_StepModel) const model = Handle(StepData_StepModel)::DownCast(reader.WS()->Model());
    for (int i = 1; i <= model->NbEntities(); ++i)
        if (TopoDS_Shape const shape = TransferBRep::ShapeResult(process, model->Value(i)); !shape.IsNull())
            places.emplace(i, shapes.FindIndex(shape));
    return places;
}

void ExpectAsTheReaderAlone(std::string const& path)
{
    STEPControl_Reader alone;
    ReadFile(alone, path);
    std::string const expected = ShapesOf(alone);
    STEPControl_Reader reader;
    ReadFile(reader, path);
    ASSERT_TRUE(TransferInParallel(reader, Message_ProgressRange())) << path;
    EXPECT_TRUE(ShapesOf(reader) == expected) << path;
    EXPECT_EQ(PlacesOfEntities(reader), PlacesOfEntities(alone)) << path;
    EXPECT_GT(expected.size(), 1000u);
}

std::string Model(std::string const& name)
{
    return std::string(KVR_EXAMPLES_DIR) + "/models/" + name;
}

void WriteStep(TopoDS_Shape const& shape, std::string const& path)
{
    STEPControl_Writer writer;
    writer.Transfer(shape, STEPControl_AsIs);
    ASSERT_EQ(writer.Write(path.c_str()), IFSelect_RetDone);
}

TopoDS_Shape Moved(TopoDS_Shape const& shape, double x)
{
    gp_Trsf move;
    move.SetTranslation({x, 0.0, 0.0});
    return shape.Moved(move);
}

}  // namespace

TEST(StepHealing, MakesTheShapesThatTheReaderMakesAlone)
{
    for (char const* const name :
         {"as1-oc-214.stp", "iso14405_fig17a.stp", "nist_plate_creo_lbls.stp", "nist_ctc_03_ap203.stp"})
        ExpectAsTheReaderAlone(Model(name));
}

TEST(StepHealing, TakesBodiesThatStandInCompoundsOfCompounds)
{
    TempFolder const folder;
    BRep_Builder const builder;
    TopoDS_Compound inner;
    builder.MakeCompound(inner);
    builder.Add(inner, BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Solid());
    builder.Add(inner, Moved(BRepPrimAPI_MakeCylinder(1.0, 4.0).Solid(), 10.0));
    TopoDS_Compound outer;
    builder.MakeCompound(outer);
    builder.Add(outer, inner);
    builder.Add(outer, Moved(inner, 20.0));
    WriteStep(outer, folder.NarrowPathOf("a.stp"));
    ExpectAsTheReaderAlone(folder.NarrowPathOf("a.stp"));
}

// Tolerances of such a sequence are told to all bodies at once.
TEST(StepHealing, LeavesASequenceOfTheUsersOwnToTheReader)
{
    TempFolder const folder;
    folder.Write("STEP", "FromSTEP.exec.op: FixShape\nFromSTEP.FixShape.Tolerance3d: 1e-4\n");
    setenv("CSF_STEPUserDefaults", folder.Path().c_str(), 1);
    STEPControl_Reader reader;
    ReadFile(reader, Model("as1-oc-214.stp"));
    EXPECT_FALSE(TransferInParallel(reader, Message_ProgressRange()));
    unsetenv("CSF_STEPUserDefaults");
    ExpectAsTheReaderAlone(Model("as1-oc-214.stp"));
}

}  // namespace KVR::Test
