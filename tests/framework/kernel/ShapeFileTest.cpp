#include <gtest/gtest.h>

#include <unistd.h>
#include <BRepTools.hxx>
#include <BinTools.hxx>
#include <TopoDS_Shape.hxx>
#include <sstream>

#include "framework/kernel/store/StoreShapes.h"
#include "tests/support/FullScene.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

std::string TextOf(TopoDS_Shape const& shape, TopTools_FormatVersion version)
{
    std::ostringstream out;
    BRepTools::Write(shape, out, true, false, version);
    return out.str();
}

std::string BytesOf(TopoDS_Shape const& shape, BinTools_FormatVersion version)
{
    std::ostringstream out;
    BinTools::Write(shape, out, true, false, version);
    return out.str();
}

bool Reads(std::string const& bytes, TopoDS_Shape& shape)
{
    StoreFileOfBytes const file(bytes);
    return ReadShapeFile(file.File(), shape);
}

bool Reads(std::string const& bytes)
{
    TopoDS_Shape shape;
    return Reads(bytes, shape);
}

}  // namespace

TEST(ReadShapeFile, TakesEveryShapeInEveryVersionOfBothForms)
{
    for (NamedShape const& named : AllShapes())
    {
        std::string const files[] = {TextOf(*named.shape, TopTools_FormatVersion_VERSION_1),
                                     TextOf(*named.shape, TopTools_FormatVersion_VERSION_2),
                                     TextOf(*named.shape, TopTools_FormatVersion_VERSION_3),
                                     BytesOf(*named.shape, BinTools_FormatVersion_VERSION_1),
                                     BytesOf(*named.shape, BinTools_FormatVersion_VERSION_3),
                                     BytesOf(*named.shape, BinTools_FormatVersion_VERSION_4)};
        ShapeFacts const expected = FactsOf(*named.shape);
        for (std::string const& bytes : files)
        {
            TopoDS_Shape read;
            ASSERT_TRUE(Reads(bytes, read)) << named.name << ' ' << bytes.substr(0, 60);
            ExpectEqualFacts(FactsOf(read), expected, named.name);
        }
    }
}

TEST(ReadShapeFile, TakesLinesInEitherForm)
{
    std::string const text = TextOf(BoxShape(1, 2, 3), TopTools_FormatVersion_VERSION_1);
    TopoDS_Shape read;
    ASSERT_TRUE(Reads(Replaced(text, "\n", "\r\n"), read));
    EXPECT_EQ(FactsOf(read).faces, 6);
}

TEST(ReadShapeFile, RefusesWhatWouldNotBeSafeAndWhatHoldsNoShape)
{
    std::string const text = TextOf(BoxShape(1, 2, 3), TopTools_FormatVersion_VERSION_3);
    std::string const bytes = BytesOf(BoxShape(1, 2, 3), BinTools_FormatVersion_VERSION_4);
    EXPECT_FALSE(Reads(""));
    EXPECT_FALSE(Reads("DBRep_DrawableShape\n\nno version\n"));
    for (char const* const title : {"Curve2ds ", "Surfaces ", "TShapes "})
        EXPECT_FALSE(Reads(Replaced(text, title, std::string(title) + "99"))) << title;
    for (std::size_t const size : {std::size_t{80}, text.size() / 2, text.size() - 20})
        EXPECT_FALSE(Reads(text.substr(0, size))) << size;
    for (std::size_t const size : {std::size_t{50}, bytes.size() / 2, bytes.size() - 1})
        EXPECT_FALSE(Reads(bytes.substr(0, size))) << size;
}

TEST(ReadShapeFile, WhatIsNoRegularFileIsRefused)
{
    TopoDS_Shape shape;
    EXPECT_FALSE(ReadShapeFile(nullptr, shape));
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    std::FILE* const pipe = ::fdopen(ends[0], "rb");
    ASSERT_TRUE(pipe);
    EXPECT_FALSE(ReadShapeFile(pipe, shape)) << "a pipe has no size";
    std::fclose(pipe);
    ::close(ends[1]);
    std::string const bytes = TextOf(BoxShape(1, 2, 3), TopTools_FormatVersion_VERSION_3);
    StoreFileOfBytes const file(bytes);
    std::fseek(file.File(), static_cast<long>(bytes.size()), SEEK_SET);
    EXPECT_FALSE(ReadShapeFile(file.File(), shape)) << "nothing is left";
    std::FILE* const shorter = std::tmpfile();
    ASSERT_TRUE(shorter);
    std::fseek(shorter, 100, SEEK_SET);
    EXPECT_FALSE(ReadShapeFile(shorter, shape)) << "its end lies before";
    std::fclose(shorter);
    EXPECT_TRUE(shape.IsNull());
}

}  // namespace KVR::Test
