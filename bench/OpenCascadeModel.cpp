#include "bench/OpenCascadeModel.h"

#include <BRepMesh_IncrementalMesh.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_Printer.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <stdexcept>

#include "exchange/import/ModelBox.h"
#include "exchange/import/ProductPlan.h"
#include "scene/MeshQuality.h"

namespace KVR::Bench
{

Handle(TDocStd_Document) ReadStep(std::string const& path)
{
    Message::DefaultMessenger()->ChangePrinters().Clear();
    Handle(TDocStd_Document) document = new TDocStd_Document("BinXCAF");
    STEPCAFControl_Reader reader;
    reader.SetColorMode(true);
    reader.SetNameMode(true);
    reader.SetLayerMode(true);
    reader.SetPropsMode(true);
    reader.SetMatMode(true);
    reader.SetSHUOMode(true);
    reader.SetGDTMode(true);
    reader.SetViewMode(true);
    Handle(TDocStd_Document) target = document;
    if (reader.ReadFile(path.c_str()) != IFSelect_RetDone || !reader.Transfer(target))
        throw std::runtime_error("Open CASCADE did not read " + path);
    return document;
}

void MeshBodies(Handle(TDocStd_Document) const& document)
{
    ProductPlan const plan(document);
    double const deflection = DiagonalOfModel(plan) * Deflection().value;
    for (ComponentPlan const& component : plan.components)
        if (!component.shape.IsNull())
            BRepMesh_IncrementalMesh(component.shape, deflection, false, 0.5, false);
}

}  // namespace KVR::Bench
