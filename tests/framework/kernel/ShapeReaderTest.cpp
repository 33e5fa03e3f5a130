// Shapes are what Open CASCADE itself makes of the same bytes.

#include <gtest/gtest.h>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BinTools.hxx>
#include <Standard_Failure.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_Shape.hxx>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "framework/kernel/entity.h"
#include "framework/kernel/entity_list.h"
#include "framework/kernel/store/StoreShapes.h"
#include "tests/support/FullScene.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/RareShapes.h"
#include "tests/support/Shapes.h"
#include "tests/support/StoreText.h"

namespace KVR::Test
{

namespace
{

// All that a shape has, flags and the ends of curves on surfaces included.
std::string AllOf(TopoDS_Shape const& shape)
{
    std::ostringstream out;
    BinTools::Write(shape, out, Standard_True, Standard_True, BinTools_FormatVersion_VERSION_4);
    BinTools::Write(shape, out, Standard_True, Standard_False, BinTools_FormatVersion_VERSION_3);
    return out.str();
}

void ExpectAsOpenCascadeReads(std::string const& bytes, bool isText, std::string const& name)
{
    std::istringstream in(bytes);
    TopoDS_Shape expected;
    if (isText)
        BRepTools::Read(expected, in, BRep_Builder());
    else
        BinTools::Read(expected, in);
    StoreFileOfBytes const file(bytes);
    TopoDS_Shape shape;
    ASSERT_TRUE(ReadShapeFile(file.File(), shape)) << name;
    ASSERT_FALSE(expected.IsNull()) << name;
    EXPECT_EQ(AllOf(shape), AllOf(expected)) << name;
}

std::string TextOf(TopoDS_Shape const& shape, TopTools_FormatVersion version)
{
    std::ostringstream out;
    BRepTools::Write(shape, out, Standard_True, Standard_True, version);
    return out.str();
}

std::string BytesOf(TopoDS_Shape const& shape, BinTools_FormatVersion version)
{
    std::ostringstream out;
    BinTools::Write(shape, out, Standard_True, Standard_True, version);
    return out.str();
}

TEST(ShapeReader, MakesOfEveryVersionWhatOpenCascadeMakes)
{
    std::vector<NamedShape> shapes = RareShapes();
    for (NamedShape const& named : AllShapes())
        shapes.push_back(named);
    for (NamedShape const& named : shapes)
    {
        for (TopTools_FormatVersion const version :
             {TopTools_FormatVersion_VERSION_1, TopTools_FormatVersion_VERSION_2, TopTools_FormatVersion_VERSION_3})
            ExpectAsOpenCascadeReads(TextOf(*named.shape, version), true, named.name);
        for (BinTools_FormatVersion const version :
             {BinTools_FormatVersion_VERSION_3, BinTools_FormatVersion_VERSION_4})
            ExpectAsOpenCascadeReads(BytesOf(*named.shape, version), false, named.name);
    }
}

TEST(ShapeReader, KeepsEveryFlag)
{
    for (int flag = 0; flag < 7; ++flag)
    {
        for (bool const isSet : {false, true})
        {
            TopoDS_Shape const box = BoxShape(1, 2, 3);
            void (TopoDS_TShape::*const setters[])(Standard_Boolean) = {
                &TopoDS_TShape::Free,   &TopoDS_TShape::Modified, &TopoDS_TShape::Checked, &TopoDS_TShape::Orientable,
                &TopoDS_TShape::Closed, &TopoDS_TShape::Infinite, &TopoDS_TShape::Convex};
            for (TopoDS_Shape const& shape : {box, TopoDS_Iterator(box).Value()})
                ((*shape.TShape()).*setters[flag])(isSet);
            std::string const name = std::to_string(flag);
            ExpectAsOpenCascadeReads(TextOf(box, TopTools_FormatVersion_VERSION_2), true, name);
            ExpectAsOpenCascadeReads(TextOf(box, TopTools_FormatVersion_VERSION_3), true, name);
            ExpectAsOpenCascadeReads(BytesOf(box, BinTools_FormatVersion_VERSION_3), false, name);
            ExpectAsOpenCascadeReads(BytesOf(box, BinTools_FormatVersion_VERSION_4), false, name);
        }
    }
}

// Open CASCADE's builder lets one representation take the place of another, or something of it.
TEST(ShapeReader, RepresentationsOfAnEdgeThatMeetBecomeWhatTheyBecomeInOpenCascade)
{
    TextContent content;
    content.locations = "Locations 1\n" + std::string(kMove);
    content.surfaces = "Surfaces 2\n1 0 0 0 0 0 1 1 0 0 0 1 0\n2 0 0 0 0 0 1 1 0 0 0 1 0 2\n";
    content.curves2d = "Curve2ds 5\n1 0 0 1 0\n1 0 1 1 0\n8 0 1\n1 2 2 0 1\n9 0.5\n2 0 0 1 0 0 1 3\n6 0 1 1 2 3 4\n";
    content.curves = "Curves 2\n1 0 0 0 1 0 0\n2 0 0 0 0 0 1 1 0 0 0 1 0 2\n";
    content.nodes = "PolygonOnTriangulations 2\n2 1 3 \np 0.1 0 \n2 2 3 \np 0.2 1 0 1 \n";
    content.triangulations = "Triangulations 1\n3 1 0 0 0.1\n0 0 0 1 0 0 0 1 0 1 2 3 \n";
    std::string const parts[] = {"1  1 0 0 1\n",       "1  2 1 0.5 1\n",       "1  0 0 0 1\n",    "2  1 1 0 0 1\n",
                                 "2  2 1 0 0.25 1\n",  "2  1 1 1 0 1\n",       "2  3 2 0 0 1\n",  "2  4 2 0 0 1\n",
                                 "3  1 2C1 2 0 0 1\n", "3  2 1C2 2 0 0.5 1\n", "4  C1 1 0 2 0\n", "4  C2 2 0 1 0\n",
                                 "4  CN 2 0 2 0\n",    "6  1 1 0\n",           "6  2 1 0\n",      "7  1 2 1 0\n"};
    std::string const endless[] = {"2  5 2 0 -2e+100 1\n", "2  5 2 0 0 2e+100\n", "3  1 5C1 2 0 -2e+100 2e+100\n"};
    auto const expect = [&](std::string const& representations)
    {
        for (char const* const flags : {"-07 1 1 0\n", "-07 0 1 1\n"})
        {
            content.shapes = Replaced(EdgeWith(representations), "-07 1 1 0\n", flags);
            ExpectAsOpenCascadeReads(content.Shapes(), true, content.shapes);
        }
    };
    for (std::string const& first : parts)
    {
        for (std::string const& second : parts)
        {
            for (std::string const& third : {std::string(), parts[0], parts[8]})
                expect(first + second + third);
        }
    }
    for (std::string const& first : endless)
    {
        expect(first);
        for (std::string const& second : endless)
            expect(first + parts[3] + second);
    }
    expect(Repeated(parts[3] + parts[4] + parts[10], 10));
}

// Though it has a point at either end of the edge.
TEST(ShapeReader, ACurveThatEndsNowhereIsRefusedAsOpenCascadeRefusesIt)
{
    TextContent content;
    content.surfaces = kPlane;
    content.curves2d =
        "Curve2ds 1\n8 0.5 1.5\n9 7\n7 1 1  2 4 5  1 1  1.5 2 0  1 3 1  1.5 4 0  1\n "
        "0 1 1 1 2 1 3 1 1e308 1\n";
    content.shapes = EdgeWith("2  1 1 0 0.5 1.5\n");
    std::string const bytes = content.Shapes();
    std::istringstream in(bytes);
    TopoDS_Shape shape;
    EXPECT_THROW(BRepTools::Read(shape, in, BRep_Builder()), Standard_Failure);
    EXPECT_FALSE(content.IsRestored());
}

TEST(ShapeReader, AFaceWithoutASurfaceKeepsWhatOpenCascadeKeeps)
{
    TopoDS_Face face;
    BRep_Builder const builder;
    builder.MakeFace(face);
    builder.UpdateFace(face, 0.5);
    builder.NaturalRestriction(face, Standard_True);
    ExpectAsOpenCascadeReads(TextOf(face, TopTools_FormatVersion_VERSION_3), true, "text");
    ExpectAsOpenCascadeReads(BytesOf(face, BinTools_FormatVersion_VERSION_4), false, "binary");
}

TEST(ShapeReader, WhatStandsInFrontOfTheVersionIsLinesOfBlanks)
{
    std::string const text = TextContent().Bytes();
    std::size_t const version = text.find("CASCADE");
    for (auto const& [front, isRestored] :
         {std::pair("", true), {"\n", true}, {" \n\t\r\n", true}, {" ", false}, {"\v", false}})
        EXPECT_EQ(RestoredStore(WithHead(std::string(text).insert(version, front), true), true, false).result.ok(),
                  isRestored)
            << front;
}

// Reads what Open CASCADE itself writes in the version.
template <class Write>
bool IsVersionRestored(TopoDS_Shape const& shape, bool isText, Write const& write)
{
    std::string const table = isText ? "1\n0\n0\n0\n0\n" : WordBytes(1) + Repeated(WordBytes(0), 4);
    TopoDS_Compound all;
    BRep_Builder builder;
    builder.MakeCompound(all);
    builder.Add(all, shape);
    std::ostringstream out;
    out << table;
    write(all, out);
    return RestoredStore(WithHead(out.str(), isText), isText, false).result.ok();
}

TEST(ShapeReader, OlderVersionsAreReadWhereThatIsSafe)
{
    for (NamedShape const& shape : RareShapes())
    {
        for (int version = 1; version <= 4; ++version)
        {
            auto const write = [&](TopoDS_Shape const& all, std::ostream& out)
            { BinTools::Write(all, out, Standard_True, Standard_False, static_cast<BinTools_FormatVersion>(version)); };
            EXPECT_EQ(IsVersionRestored(*shape.shape, false, write), version >= 3) << shape.name << " " << version;
        }
        for (int version = 1; version <= 3; ++version)
        {
            auto const write = [&](TopoDS_Shape const& all, std::ostream& out) {
                BRepTools::Write(all, out, Standard_True, Standard_False, static_cast<TopTools_FormatVersion>(version));
            };
            EXPECT_EQ(IsVersionRestored(*shape.shape, true, write), version >= 2) << shape.name << " " << version;
        }
    }
}

std::string StoreTextOf(TopoDS_Shape const& shape)
{
    std::vector<std::unique_ptr<ENTITY>> entities;
    entities.push_back(std::make_unique<BODY>(shape));
    std::string text = StoreBytes(entities, true);
    // The head with its digest, and zeros that have lost their sign.
    text.erase(0, text.find('\n'));
    for (std::size_t at = 0; (at = text.find(" -0 ", at)) != std::string::npos;)
        text.erase(at + 1, 1);
    return text;
}

TEST(ShapeReader, RareShapesComeBackAsTheyWere)
{
    for (NamedShape const& shape : RareShapes())
    {
        std::vector<std::unique_ptr<ENTITY>> entities;
        entities.push_back(std::make_unique<BODY>(*shape.shape));
        for (bool const isText : {false, true})
        {
            RestoredStore const store(StoreBytes(entities, isText), isText, false);
            ASSERT_EQ(store.entities->count(), 1) << shape.name;
            EXPECT_EQ(StoreTextOf((*store.entities)[0]->Shape()), StoreTextOf(*shape.shape)) << shape.name;
        }
    }
}

}  // namespace

}  // namespace KVR::Test
