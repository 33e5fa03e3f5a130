// Stores whose author means harm: every digest fits, or the host allowed that it does not, and what the shapes say of
// themselves is not true.

#include <gtest/gtest.h>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BinTools.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Shape.hxx>
#include <ctime>
#include <sstream>
#include <string>
#include <string_view>

#include "framework/kernel/curve.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/entity_list.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/history_stream.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/RareShapes.h"
#include "tests/support/ResidentMemory.h"
#include "tests/support/SanitizedBuild.h"

namespace KVR::Test
{

namespace
{

constexpr int kNumbers[] = {INT32_MAX, INT32_MIN, -1, 0, 1, 1 << 30, 65536, 1000};
constexpr char const* kWords[] = {"2147483647", "-2147483648", "-1",  "0", "1073741824", "65536",     "99999999999",
                                  "7",          "1e308",       "nan", "-", "x",          "0x7fffffff"};

struct Form
{
    bool isText;
    bool isInsecure;
};

// Restores stores that are wrong in one place each, and watches what that costs.
class HostileStore : public testing::TestWithParam<Form>
{
protected:
    bool IsText() const { return GetParam().isText; }

    // The content of a store of the one shape, and where in it the shapes begin.
    std::string ContentOf(NamedShape const& shape)
    {
        std::vector<std::unique_ptr<ENTITY>> entities;
        entities.push_back(std::make_unique<BODY>(*shape.shape));
        std::string const bytes = StoreBytes(entities, IsText());
        std::string content = bytes.substr(bytes.find(IsText() ? "\n" : "", 32) + (IsText() ? 1 : 0));
        m_shapes = content.find(IsText() ? "\nCASCADE" : "\nOpen CASCADE");
        EXPECT_NE(m_shapes, std::string::npos);
        return content;
    }
    std::size_t Shapes() const { return m_shapes; }

    // Whether something came of it; the whole of that is asked.
    bool IsRestored(std::string const& content)
    {
        std::string bytes = WithHead(content, IsText());
        if (GetParam().isInsecure)
            SpoilDigest(bytes);
        std::clock_t const start = std::clock();
        RestoredStore const store(bytes, IsText(), GetParam().isInsecure);
        for (int i = 0; i < store.entities->count(); ++i)
            Ask(static_cast<BODY&>(*(*store.entities)[i]), *store.stream);
        m_longest = std::max(m_longest, std::clock() - start);
        ++m_count;
        EXPECT_EQ(store.result.ok(), store.entities->count() > 0);
        return store.result.ok();
    }

    // The memory of all stores together is that of the largest; the time is that of the processor.
    void ExpectLittleCost(long memoryBefore)
    {
        EXPECT_GT(m_count, 0);
        EXPECT_LT(m_longest, (kIsSanitized ? 20 : 2) * CLOCKS_PER_SEC);
        if (!kIsSanitized)
        {
            EXPECT_LT(PeakMemoryKB(), memoryBefore + 64 * 1024);
        }
    }

private:
    void SpoilDigest(std::string& bytes) const
    {
        char& last = bytes[IsText() ? 41 : 16];
        last = IsText() ? (last == '0' ? '1' : '0') : static_cast<char>(last ^ 1);
    }

    static void Ask(BODY const& body, HISTORY_STREAM& stream)
    {
        ActiveStreamScope const active(&stream);
        body.FaceList();
        for (std::unique_ptr<EDGE> const& edge : body.EdgeList())
        {
            curve* made = nullptr;
            static_cast<void>(GKI_MAKE_CURVE::from_edge(edge.get(), false, made));
        }
    }

    std::size_t m_shapes = 0;
    std::clock_t m_longest = 0;
    int m_count = 0;
};

INSTANTIATE_TEST_SUITE_P(Each, HostileStore,
                         testing::Values(Form{false, false}, Form{false, true}, Form{true, false}, Form{true, true}),
                         [](auto const& test) {
                             return std::string(test.param.isText ? "Text" : "Binary") +
                                    (test.param.isInsecure ? "Insecure" : "");
                         });

std::string With(std::string content, std::size_t at, void const* bytes, std::size_t count)
{
    count = std::min(count, content.size() - at);
    content.replace(at, count, static_cast<char const*>(bytes), count);
    return content;
}

TEST_P(HostileStore, NumbersThatAreNotTrueAreFoundOut)
{
    long const before = PeakMemoryKB();
    for (NamedShape const& shape : RareShapes())
    {
        std::string const content = ContentOf(shape);
        ASSERT_TRUE(IsRestored(content)) << shape.name;
        if (IsText())
        {
            constexpr std::string_view kBlanks = " \n";
            for (std::size_t at = Shapes(); (at = content.find_first_not_of(kBlanks, at)) != std::string::npos;)
            {
                std::size_t const end = content.find_first_of(kBlanks, at);
                for (char const* const word : kWords)
                    IsRestored(std::string(content).replace(at, end - at, word));
                at = end;
            }
            continue;
        }
        for (std::size_t at = Shapes(); at < content.size(); ++at)
        {
            for (int const number : kNumbers)
                IsRestored(With(content, at, &number, sizeof number));
            for (std::uint16_t const number : {0xFFFF, 26, 0})
                IsRestored(With(content, at, &number, sizeof number));
        }
    }
    ExpectLittleCost(before);
}

TEST_P(HostileStore, OtherBytesDoNoHarm)
{
    long const before = PeakMemoryKB();
    for (NamedShape const& shape : RareShapes())
    {
        std::string const content = ContentOf(shape);
        for (std::size_t at = Shapes(); at < content.size(); ++at)
        {
            for (int const flip : {0x01, 0x02, 0x10, 0x80, 0xFF})
            {
                auto const byte = static_cast<char>(content[at] ^ flip);
                IsRestored(With(content, at, &byte, 1));
            }
        }
    }
    ExpectLittleCost(before);
}

TEST_P(HostileStore, ShapesCutShortAreNone)
{
    long const before = PeakMemoryKB();
    for (NamedShape const& shape : RareShapes())
    {
        std::string const content = ContentOf(shape);
        // Behind the last number of the text form stand blanks.
        std::size_t const end = IsText() ? content.find_last_not_of(" \n") + 1 : content.size();
        for (std::size_t at = 0; at < end; ++at)
            EXPECT_FALSE(IsRestored(content.substr(0, at))) << shape.name << " " << at;
    }
    ExpectLittleCost(before);
}

// Content of a text store with one body, with the sections given and whatever is empty elsewhere.
struct TextContent
{
    std::string locations = "Locations 0\n";
    std::string curves2d = "Curve2ds 0\n";
    std::string curves = "Curves 0\n";
    std::string nodes = "PolygonOnTriangulations 0\n";
    std::string surfaces = "Surfaces 0\n";
    std::string triangulations = "Triangulations 0\n";
    std::string shapes = "TShapes 2\nVe\n1e-07\n0 0 0\n0 0\n\n0101101\n*\nCo\n\n1100000\n+2 0 *\n";
    std::string root = "+1 0 ";

    std::string Bytes() const
    {
        return "1\n0\n0\n0\n0\n\nCASCADE Topology V3, (c) Open Cascade\n" + locations + curves2d + curves +
               "Polygon3D 0\n" + nodes + surfaces + triangulations + "\n" + shapes + "\n" + root + "\n";
    }
    bool IsRestored() const { return RestoredStore(WithHead(Bytes(), true), true, false).result.ok(); }
};

// A compound of one edge with the representations.
std::string EdgeWith(std::string const& representations)
{
    return "TShapes 2\nEd\n 1e-07 1 1 0\n" + representations + "0\n\n0101000\n*\nCo\n\n1100000\n+2 0 *\n";
}

std::string Repeated(std::string const& text, int times)
{
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

constexpr char kPlane[] = "Surfaces 1\n1 0 0 0 0 0 1 1 0 0 0 1 0\n";
constexpr char kCircle[] = "2 0 0 0 0 0 1 1 0 0 0 1 0 2\n";

TEST(HostileShapes, WhatIsGoodIsRestored)
{
    EXPECT_TRUE(TextContent().IsRestored());
}

TEST(HostileShapes, CurvesStandOnEachOtherTenDeep)
{
    TextContent content;
    content.curves = "Curves 1\n" + Repeated("9 1\n0 0 1\n", 9) + kCircle;
    EXPECT_TRUE(content.IsRestored());
    for (int const depth : {10, 100'000})
    {
        content.curves = "Curves 1\n" + Repeated("9 1\n0 0 1\n", depth) + kCircle;
        EXPECT_FALSE(content.IsRestored()) << depth;
    }
}

TEST(HostileShapes, ACurveThatCannotBeMadeIsNoBasisAndEndsTheReading)
{
    TextContent content;
    for (char const* const curve :
         {"2 0 0 0 0 0 1 1 0 0 0 1 0 -4\n", "1 0 0 0 0 0 0\n", "8 1 1\n1 0 0 0 0 0 1\n",
          "2 0 0 0 0 0 1 0 0 1 0 1 0 4\n", "6 1 1 0 0 0 -1 1 0 0 1\n", "7 0 0 1 2 2 0 0 0 1 0 0 0 2 1e-320 2\n"})
    {
        content.curves = "Curves 1\n" + std::string(curve);
        EXPECT_FALSE(content.IsRestored()) << curve;
        content.curves = "Curves 1\n8 0 1\n" + std::string(curve);
        EXPECT_FALSE(content.IsRestored()) << curve;
    }
}

TEST(HostileShapes, KnotsAndDegreesFitThePoles)
{
    TextContent content;
    auto const isCurve = [&](std::string const& curve)
    {
        content.curves = "Curves 1\n7 0 " + curve + "\n";
        return content.IsRestored();
    };
    EXPECT_TRUE(isCurve("0 1 2 2 0 0 0 1 0 0 0 2 1 2"));
    EXPECT_FALSE(isCurve("0 2 2 2 0 0 0 1 0 0 0 2 1 2"));
    EXPECT_FALSE(isCurve("0 1 2 2 0 0 0 1 0 0 0 2147483647 1 2147483647"));
    EXPECT_FALSE(isCurve("0 1 2 2 0 0 0 1 0 0 1 2 0 2"));
    EXPECT_FALSE(isCurve("0 1 2147483647 2 0 0 0 1 0 0 0 2 1 2"));
    EXPECT_FALSE(isCurve("0 26 27 2 " + Repeated("0 0 0 ", 27) + "0 27 1 27"));
}

constexpr char kMove[] = "1\n1 0 0 1 \n0 1 0 0 \n0 0 1 0 \n";

TEST(HostileShapes, ChainsNameElementaryLocationsInTheirShortForm)
{
    TextContent content;
    auto const areLocations = [&](std::string const& chains, int count)
    {
        content.locations = "Locations " + std::to_string(2 + count) + "\n" + kMove + kMove + chains;
        return content.IsRestored();
    };
    EXPECT_TRUE(areLocations("2  1 3 2 -1 0\n2  2 1 1 1 0\n", 2));
    EXPECT_FALSE(areLocations("2  1 2147483647 0\n", 1));
    EXPECT_FALSE(areLocations("2  1 1 0\n", 1)) << "the same as the first";
    EXPECT_FALSE(areLocations("2  1 2 0\n2  1 2 0\n", 2)) << "twice the same";
    EXPECT_FALSE(areLocations("2  1 1 1 -1 0\n", 1)) << "nothing";
    EXPECT_FALSE(areLocations("2  0\n", 1));
    EXPECT_FALSE(areLocations("2  3 1 0\n", 1)) << "itself";
    EXPECT_FALSE(areLocations("2  1 2 2 2 0\n2  3 2 0\n", 2)) << "a chain of chains";
    EXPECT_TRUE(areLocations("2  " + Repeated("1 1 2 1 ", 500) + "0\n", 1));
    EXPECT_FALSE(areLocations("2  " + Repeated("1 1 2 1 ", 100'000) + "0\n", 1));
    std::string many;
    for (int power = 2; power < 100; ++power)
        many += "2  " + Repeated("1 1 2 1 ", 2000) + "1 " + std::to_string(power) + " 0\n";
    EXPECT_FALSE(areLocations(many, 98));
}

TEST(HostileShapes, AnEdgeIsNotFarLongerOnASurfaceThanInSpace)
{
    TextContent content;
    content.surfaces = kPlane;
    content.curves2d = "Curve2ds 1\n1 0 0 1 0\n";
    content.curves = "Curves 1\n1 0 0 0 1 0 0\n";
    for (auto const& [representations, isRestored] : {std::pair("1  1 0 0 1\n2  1 1 0 0 1\n", true),
                                                      {"1  1 0 0 1\n2  1 1 0 -900000 0\n", true},
                                                      {"1  1 0 0 1e50\n2  1 1 0 0 1e50\n", true},
                                                      {"1  1 0 0 1\n2  1 1 0 -1100000 0\n", false},
                                                      {"1  1 0 0 1\n2  1 1 0 -5e303 2\n", false},
                                                      {"2  1 1 0 -1e308 1e308\n1  1 0 0 1\n", false}})
    {
        content.shapes = EdgeWith(representations);
        EXPECT_EQ(content.IsRestored(), isRestored) << representations;
    }
}

TEST(HostileShapes, ARangeIsNotFarFromThePeriodOfACurve)
{
    TextContent content;
    content.surfaces = kPlane;
    content.curves2d = "Curve2ds 1\n7 0 1 1 2 3 0 0 1 0 0 1 0.5 1 1 1\n";
    for (auto const& [range, isRestored] : {std::pair("0 0.5", true),
                                            {"-5 -3.5", true},
                                            {"6 8", true},
                                            {"0 2.1", false},
                                            {"-11 -10.5", false},
                                            {"0 1e300", false},
                                            {"-1e300 0", false},
                                            {"0 nan", false}})
    {
        content.shapes = EdgeWith("2  1 1 0 " + std::string(range) + "\n");
        EXPECT_EQ(content.IsRestored(), isRestored) << range;
    }
}

TEST(HostileShapes, AnEdgeHasNotEndlessRepresentations)
{
    TextContent content;
    content.curves = "Curves 1\n" + std::string(kCircle);
    content.shapes = EdgeWith(Repeated("1  1 0 0 1\n", 1000));
    EXPECT_TRUE(content.IsRestored());
    content.shapes = EdgeWith(Repeated("1  1 0 0 1\n", 200'000));
    EXPECT_FALSE(content.IsRestored());
}

TEST(HostileShapes, PolygonsAndTrianglesHaveTheNodesThatThereAre)
{
    TextContent content;
    auto const isRestored = [&](char const* polygon, char const* triangle)
    {
        content.nodes = "PolygonOnTriangulations 1\n2 " + std::string(polygon) + " \np 0.1 0 \n";
        content.triangulations = "Triangulations 1\n3 1 0 0 0.1\n0 0 0 1 0 0 0 1 0 " + std::string(triangle) + " \n";
        content.shapes = EdgeWith("6  1 1 0\n");
        return content.IsRestored();
    };
    EXPECT_TRUE(isRestored("1 3", "1 2 3"));
    EXPECT_FALSE(isRestored("1 4", "1 2 3"));
    EXPECT_FALSE(isRestored("0 1", "1 2 3"));
    EXPECT_FALSE(isRestored("1 3", "1 2 4"));
    EXPECT_FALSE(isRestored("1 3", "-1 2 3"));
}

// Compounds of two of the one before.
TEST(HostileShapes, ShapesDoNotUnfoldWithoutEnd)
{
    TextContent content;
    auto const doubled = [&](int times)
    {
        int const count = times + 3;
        int left = count;
        auto const compoundOf = [&](int copies)
        { return "Co\n\n1100000\n" + Repeated("+" + std::to_string(left--) + " 0 ", copies) + "*\n"; };
        content.shapes = "TShapes " + std::to_string(count) + "\nVe\n1e-07\n0 0 0\n0 0\n\n0101101\n*\n" + compoundOf(1);
        for (int i = 0; i < times; ++i)
            content.shapes += compoundOf(2);
        content.shapes += compoundOf(1);
        return content.IsRestored();
    };
    EXPECT_TRUE(doubled(10));
    EXPECT_FALSE(doubled(100));
}

TEST(HostileShapes, TheCompoundOfAllStandsWhereItWasMade)
{
    TextContent content;
    content.locations = "Locations 1\n" + std::string(kMove);
    EXPECT_TRUE(content.IsRestored());
    for (char const* const root : {"+1 1 ", "+2 0 ", "+3 0 ", "+0 0 ", "*"})
    {
        content.root = root;
        EXPECT_FALSE(content.IsRestored()) << root;
    }
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

TEST(HostileShapes, OlderVersionsAreReadWhereThatIsSafe)
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

std::string TextOf(TopoDS_Shape const& shape)
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

TEST_P(HostileStore, RareShapesComeBackAsTheyWere)
{
    for (NamedShape const& shape : RareShapes())
    {
        RestoredStore const store(WithHead(ContentOf(shape), IsText()), IsText(), false);
        ASSERT_EQ(store.entities->count(), 1) << shape.name;
        EXPECT_EQ(TextOf((*store.entities)[0]->Shape()), TextOf(*shape.shape)) << shape.name;
    }
}

}  // namespace

}  // namespace KVR::Test
