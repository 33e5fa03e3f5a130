#include "framework/kernel/store/TextShapeSet.h"

#include <TopTools_LocationSet.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <array>
#include <charconv>
#include <locale>
#include <ostream>
#include <string_view>

namespace KVR
{

namespace
{

// Takes no notice of the precision and width that Open CASCADE sets as it goes.
class ExactNumbers final : public std::num_put<char>
{
protected:
    iter_type do_put(iter_type to, std::ios_base& stream, char, double value) const override
    {
        stream.width(0);
        std::array<char, 32> text;
        char const* const end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
        return std::copy(static_cast<char const*>(text.data()), end, to);
    }
};

// In the order of TopAbs_ShapeEnum.
constexpr std::array<std::string_view, 8> kShapeKinds = {"Co", "CS", "So", "Sh", "Fa", "Wi", "Ed", "Ve"};

}  // namespace

void TextShapeSet::Write(Standard_OStream& out, Message_ProgressRange const&)
{
    // The locale owns it.
    out.imbue(std::locale(std::locale::classic(), new ExactNumbers));
    out << "\nCASCADE Topology V3, (c) Open Cascade\n";
    Locations().Write(out);
    WriteGeometry(out);
    out << "\nTShapes " << NbShapes() << '\n';
    // Children before their parents.
    for (int i = 1; i <= NbShapes(); ++i)
        WriteShape(Shape(i), out);
    out << '\n';
}

void TextShapeSet::WriteShape(TopoDS_Shape const& shape, Standard_OStream& out) const
{
    out << kShapeKinds[static_cast<std::size_t>(shape.ShapeType())] << '\n';
    WriteGeometry(shape, out);
    out << '\n';
    for (bool const flag : {shape.Free(), shape.Modified(), shape.Checked(), shape.Orientable(), shape.Closed(),
                            shape.Infinite(), shape.Convex()})
        out << (flag ? '1' : '0');
    out << '\n';
    // As they stand in it, with neither its orientation nor its place.
    for (TopoDS_Iterator child(shape, Standard_False, Standard_False); child.More(); child.Next())
        Write(child.Value(), out);
    out << "*\n";
}

}  // namespace KVR
