#include "exchange/export/BrepFile.h"

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopTools_FormatVersion.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <ostream>
#include <stdexcept>

#include "exchange/export/OutputBuffer.h"
#include "exchange/export/ShapeDocument.h"
#include "output/Output.h"

namespace KVR
{

void WriteBrepFile(ShapeDocument const& document, Output& out)
{
    TDF_LabelSequence roots;
    XCAFDoc_DocumentTool::ShapeTool(document.document->Main())->GetFreeShapes(roots);
    TopoDS_Compound whole;
    BRep_Builder builder;
    builder.MakeCompound(whole);
    for (TDF_Label const& root : roots)
        builder.Add(whole, XCAFDoc_ShapeTool::GetShape(root));
    if (whole.NbChildren() == 0)
        throw std::runtime_error("the scene has no shape to write");
    OutputBuffer buffer(out);
    std::ostream stream(&buffer);
    stream.exceptions(std::ios::badbit);
    BRepTools::Write(whole, stream, Standard_False, Standard_False, TopTools_FormatVersion_CURRENT);
    out.Flush();
}

}  // namespace KVR
