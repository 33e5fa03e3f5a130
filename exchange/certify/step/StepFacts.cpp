#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BinTools.hxx>
#include <IGESControl_Reader.hxx>
#include <Interface_Static.hxx>
#include <TopoDS_Shape.hxx>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include "exchange/certify/FactReaders.h"
#include "exchange/certify/part21/Part21Model.h"
#include "exchange/certify/step/AddShape.h"
#include "exchange/certify/step/FactProducts.h"
#include "exchange/certify/step/StepLooks.h"
#include "exchange/certify/step/StepNotes.h"
#include "exchange/certify/step/StepShapes.h"
#include "exchange/certify/step/StepStructure.h"

namespace KVR::Certification
{

namespace
{

// A file without a structure: one part with all of its shapes.
ModelFacts FactsOfShape(TopoDS_Shape const& shape, double millimetres)
{
    ModelFacts facts;
    facts.hasBodies = true;
    ModelFacts::Occurrence& part = facts.occurrences.emplace_back();
    part.isPart = true;
    if (!shape.IsNull())
        AddShape(part, MeasuredShape(shape), FactPlace::Scaling(millimetres));
    return facts;
}

}  // namespace

ModelFacts FactsOfStep(std::string const& path, TellFraction const& tell)
{
    Part21Model const model = Part21Model::Read(path);
    FactProducts const products(model);
    StepLooks const looks(model, products);
    std::size_t items = 0;
    for (auto const& [id, product] : products.All())
        items += product.items.size();
    StepShapes shapes(path, items, tell);
    ModelFacts facts;
    StepStructure(model, products, looks, shapes, facts).Read();
    AddStepNotes(model, products, facts);
    return facts;
}

ModelFacts FactsOfBrep(std::string const& path, double millimetres)
{
    TopoDS_Shape shape;
    char start[24] = {};
    std::ifstream(path, std::ios::binary).read(start, sizeof start - 1);
    if (std::strstr(start, "DBRep_DrawableShape") || std::strstr(start, "CASCADE"))
        BRepTools::Read(shape, path.c_str(), BRep_Builder());
    else
        BinTools::Read(shape, path.c_str());
    if (shape.IsNull())
        throw std::runtime_error("Open CASCADE cannot read it");
    return FactsOfShape(shape, millimetres);
}

ModelFacts FactsOfIges(std::string const& path)
{
    Interface_Static::SetCVal("xstep.cascade.unit", "MM");
    IGESControl_Reader reader;
    if (reader.ReadFile(path.c_str()) != IFSelect_RetDone)
        throw std::runtime_error("Open CASCADE cannot read it");
    reader.TransferRoots();
    return FactsOfShape(reader.OneShape(), 1.0);
}

}  // namespace KVR::Certification
