#include "framework/kernel/store/StoreShapes.h"

#include <BRepTools_ShapeSet.hxx>
#include <BRep_Builder.hxx>
#include <BinTools_ShapeSet.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <istream>
#include <ostream>

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

    bool IsSafe()
    {
        std::vector<int> depths(static_cast<std::size_t>(m_set.NbShapes()) + 1, 1);
        for (int i = 1; i <= m_set.NbShapes(); ++i)
        {
            if (!AreChildrenSafe(m_set.Shape(i), i, depths))
                return false;
        }
        return true;
    }

private:
    static bool IsBelow(TopoDS_Shape const& child, TopoDS_Shape const& parent)
    {
        if (child.IsNull() || child.Orientation() < TopAbs_FORWARD || child.Orientation() > TopAbs_EXTERNAL)
            return false;
        // Kinds count up from the compound; only compounds stand within their own kind.
        return child.ShapeType() > parent.ShapeType() || parent.ShapeType() == TopAbs_COMPOUND;
    }

    bool AreChildrenSafe(TopoDS_Shape const& shape, int index, std::vector<int>& depths)
    {
        if (shape.IsNull())
            return false;
        for (TopoDS_Iterator child(shape, Standard_False, Standard_False); child.More(); child.Next())
        {
            if (!IsBelow(child.Value(), shape))
                return false;
            if (child.Value().ShapeType() != TopAbs_COMPOUND)
                continue;
            int const at = m_set.Index(child.Value());
            if (at < 1 || at >= index)
                return false;
            int& depth = depths[static_cast<std::size_t>(index)];
            depth = std::max(depth, depths[static_cast<std::size_t>(at)] + 1);
            if (depth > kDeepestShape)
                return false;
        }
        return true;
    }

    Set& m_set;
};

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
    SetReading reading(set);
    set.Read(in);
    if (!reading.IsSafe())
        return false;
    TopoDS_Shape root;
    set.ReadSubs(root, in, set.NbShapes());
    return ChildrenOf(root, shapes);
}

bool ReadText(std::istream& in, std::vector<TopoDS_Shape>& shapes)
{
    BRep_Builder const builder;
    BRepTools_ShapeSet set(builder);
    SetReading reading(set);
    set.Read(in);
    if (!reading.IsSafe())
        return false;
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
        BRepTools_ShapeSet set;
        set.Add(compound);
        set.Write(out);
        static_cast<TopTools_ShapeSet&>(set).Write(compound, out);
        out << '\n';
        return;
    }
    BinTools_ShapeSet set;
    set.SetWithTriangles(Standard_True);
    set.Add(compound);
    set.Write(out);
    set.Write(compound, out);
}

bool ReadShapes(std::istream& in, bool textMode, std::vector<TopoDS_Shape>& shapes)
{
    return textMode ? ReadText(in, shapes) : ReadBinary(in, shapes);
}

}  // namespace KVR
