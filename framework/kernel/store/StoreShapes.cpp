#include "framework/kernel/store/StoreShapes.h"

#include <BRepTools_ShapeSet.hxx>
#include <BRep_Builder.hxx>
#include <BinTools_ShapeSet.hxx>
#include <Standard_Failure.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <exception>
#include <istream>
#include <locale>
#include <ostream>
#include <string>

#include "framework/kernel/MemoryWatch.h"
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
            // The entry that a failure broke off has a number, and nothing else.
            int const whole = m_set.NbShapes() - (std::uncaught_exceptions() > m_exceptions ? 1 : 0);
            shapes.reserve(static_cast<std::size_t>(std::max(whole, 0)));
            for (int i = 1; i <= whole; ++i)
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
    int m_exceptions = std::uncaught_exceptions();
};

// Open CASCADE's readers believe what they read: they make room for as many poles as a number says, follow indices out
// of their tables, and go down chains on the stack. They are let at shapes of which all that was looked at before.
template <class Source>
bool AreSafe(StoreReadBuffer& content, ShapeHome home)
{
    auto const start = content.pubseekoff(0, std::ios_base::cur, std::ios_base::in);
    Source source(content);
    ShapeWalk<Source>(source, content.Remaining(), home).Read();
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

void ReadBinary(std::istream& in, TopoDS_Shape& root)
{
    BinTools_ShapeSet set;
    set.SetWithTriangles(Standard_True);
    SetReading const reading(set);
    set.Read(in);
    set.ReadSubs(root, in, set.NbShapes());
}

void ReadText(std::istream& in, TopoDS_Shape& root)
{
    BRep_Builder const builder;
    BRepTools_ShapeSet set(builder);
    SetReading const reading(set);
    set.Read(in);
    static_cast<TopTools_ShapeSet&>(set).Read(root, in);
}

// Reads what was found safe.
TopoDS_Shape ReadRoot(StoreReadBuffer& content, bool textMode)
{
    std::istream in(&content);
    in.imbue(std::locale::classic());
    // The text form's reader would not end at the end of a stream.
    in.exceptions(std::ios_base::failbit | std::ios_base::badbit);
    TopoDS_Shape root;
    if (textMode)
        ReadText(in, root);
    else
        ReadBinary(in, root);
    return root;
}

// What stands at the beginning of a file of shapes.
enum class Form
{
    kText,
    kBinary,
    /// Versions of the binary form that faces are measured in while they are read, or that can be read in two ways.
    kOldBinary,
    kNone
};

// Leaves the content at the line that tells the version, which others may stand before.
Form FindForm(StoreReadBuffer& content)
{
    constexpr int kMostLines = 20;
    constexpr std::size_t kLongestLine = 200;
    for (int i = 0; i < kMostLines; ++i)
    {
        auto const start = content.pubseekoff(0, std::ios_base::cur, std::ios_base::in);
        std::string line;
        int character = content.sbumpc();
        for (; character != std::char_traits<char>::eof() && character != '\n' && line.size() < kLongestLine;
             character = content.sbumpc())
            line.push_back(static_cast<char>(character));
        bool const isText = line.starts_with("CASCADE Topology V");
        if (isText || line.starts_with("Open CASCADE Topology V"))
        {
            content.pubseekpos(start, std::ios_base::in);
            bool const isOld =
                line.starts_with("Open CASCADE Topology V1") || line.starts_with("Open CASCADE Topology V2");
            return isText ? Form::kText : isOld ? Form::kOldBinary : Form::kBinary;
        }
    }
    return Form::kNone;
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
    constexpr ShapeHome kHome = ShapeHome::kStore;
    if (textMode ? !AreSafe<TextShapes>(content, kHome) : !AreSafe<BinaryShapes>(content, kHome))
        return false;
    return ChildrenOf(ReadRoot(content, textMode), shapes);
}

bool ReadShapeFile(std::FILE* file, TopoDS_Shape& shape)
{
    std::uint64_t size = 0;
    if (!file || !MeasureRest(file, size))
        return false;
    MemoryWatch const watch;
    try
    {
        StoreReadBuffer content(file, size);
        constexpr ShapeHome kHome = ShapeHome::kFile;
        Form const form = FindForm(content);
        bool const isSafe = form == Form::kText     ? AreSafe<TextShapes>(content, kHome)
                            : form == Form::kBinary ? AreSafe<BinaryShapes>(content, kHome)
                                                    : form == Form::kOldBinary;
        if (isSafe)
        {
            shape = ReadRoot(content, form == Form::kText);
            return true;
        }
    }
    catch (Standard_Failure const& failure)
    {
        watch.Check(failure);
    }
    catch (std::ios_base::failure const&)
    {
        // Its end.
    }
    watch.Check();
    return false;
}

}  // namespace KVR
