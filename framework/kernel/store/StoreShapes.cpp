#include "framework/kernel/store/StoreShapes.h"

#include <BRepTools_ShapeSet.hxx>
#include <BRep_Builder.hxx>
#include <BinTools_ShapeSet.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_Shape.hxx>
#include <istream>
#include <locale>
#include <ostream>

#include "framework/kernel/store/BinaryShapes.h"
#include "framework/kernel/store/ShapeWalk.h"
#include "framework/kernel/store/StoreStream.h"
#include "framework/kernel/store/TextShapeSet.h"
#include "framework/kernel/store/TextShapes.h"

namespace KVR
{

namespace
{

// A set of Open CASCADE's that is being read. In it children stand before their parents. However the reading ends, the
// shapes are let go of from the last to the first: each while its children are still held, so that the end of a deep
// nesting does not run down it on the stack.
template <class Set>
class SetReading
{
public:
    explicit SetReading(Set& set) : m_set(set) {}
    ~SetReading()
    {
        std::vector<TopoDS_Shape> shapes;
        try
        {
            shapes.reserve(static_cast<std::size_t>(m_set.NbShapes()));
            for (int i = 1; i <= m_set.NbShapes(); ++i)
                shapes.push_back(m_set.Shape(i));
            m_set.Clear();
        }
        catch (...)
        {
            // Without memory for the list the set ends as it would have.
        }
        while (!shapes.empty())
            shapes.pop_back();
    }
    SetReading(SetReading const&) = delete;
    SetReading& operator=(SetReading const&) = delete;

private:
    Set& m_set;
};

// Open CASCADE's readers believe what they read: they make room for as many poles as a number says, follow indices out
// of their tables, and go down chains on the stack. They are let at shapes of which all that was looked at before.
template <class Source>
bool AreSafe(StoreReadBuffer& content)
{
    auto const start = content.pubseekoff(0, std::ios_base::cur, std::ios_base::in);
    Source source(content);
    ShapeWalk<Source>(source, content.Remaining()).Read();
    return source.IsGood() && content.pubseekpos(start, std::ios_base::in) == start;
}

bool ChildrenOf(TopoDS_Shape const& root, std::vector<TopoDS_Shape>& shapes)
{
    if (root.IsNull() || root.ShapeType() != TopAbs_COMPOUND)
        return false;
    for (TopoDS_Iterator child(root); child.More(); child.Next())
        shapes.push_back(child.Value());
    return true;
}

TopoDS_Compound CompoundOf(std::vector<TopoDS_Shape const*> const& shapes)
{
    TopoDS_Compound compound;
    BRep_Builder builder;
    builder.MakeCompound(compound);
    for (TopoDS_Shape const* const shape : shapes)
        builder.Add(compound, *shape);
    return compound;
}

bool ReadBinary(std::istream& in, std::vector<TopoDS_Shape>& shapes)
{
    BinTools_ShapeSet set;
    set.SetWithTriangles(Standard_True);
    SetReading const reading(set);
    set.Read(in);
    TopoDS_Shape root;
    set.ReadSubs(root, in, set.NbShapes());
    return ChildrenOf(root, shapes);
}

bool ReadText(std::istream& in, std::vector<TopoDS_Shape>& shapes)
{
    BRep_Builder const builder;
    BRepTools_ShapeSet set(builder);
    SetReading const reading(set);
    set.Read(in);
    TopoDS_Shape root;
    static_cast<TopTools_ShapeSet&>(set).Read(root, in);
    return ChildrenOf(root, shapes);
}

}  // namespace

void WriteShapes(std::vector<TopoDS_Shape const*> const& shapes, std::ostream& out, bool textMode)
{
    TopoDS_Compound const compound = CompoundOf(shapes);
    if (textMode)
    {
        TextShapeSet set;
        set.Add(compound);
        set.Write(out);
        set.Write(compound, out);
        out << '\n';
        return;
    }
    BinTools_ShapeSet set;
    set.SetWithTriangles(Standard_True);
    set.Add(compound);
    set.Write(out);
    set.Write(compound, out);
}

bool ReadShapes(StoreReadBuffer& content, bool textMode, std::vector<TopoDS_Shape>& shapes)
{
    if (textMode ? !AreSafe<TextShapes>(content) : !AreSafe<BinaryShapes>(content))
        return false;
    std::istream in(&content);
    in.imbue(std::locale::classic());
    // The text form's reader would not end at the end of a stream.
    in.exceptions(std::ios_base::failbit | std::ios_base::badbit);
    return textMode ? ReadText(in, shapes) : ReadBinary(in, shapes);
}

}  // namespace KVR
