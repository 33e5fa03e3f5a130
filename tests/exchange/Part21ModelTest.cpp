#include "exchange/certify/part21/Part21Model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "exchange/certify/part21/DecodedPart21.h"

namespace KVR::Test
{

namespace
{

using namespace Certification;

using testing::ElementsAre;

std::string File(std::string const& data)
{
    return "ISO-10303-21;\nHEADER;\nFILE_NAME('a;b''c');\nENDSEC;\nDATA;\n" + data + "ENDSEC;\nEND-ISO-10303-21;\n";
}

}  // namespace

TEST(Part21Model, ReadsEntitiesWithTheirParameters)
{
    Part21Model const model(
        File("#1=A('it''s; /* no comment */',$,(#2,#30),.T.,LENGTH_MEASURE(2.5E1));\n"
             "/* #5=A(); */ #2 = (B(1)\n C(-.5,*) );\n"));
    EXPECT_THAT(model.Of("A"), ElementsAre(1));
    EXPECT_THAT(model.TypesOf(2), ElementsAre("B", "C"));
    EXPECT_FALSE(model.Has(5));
    EXPECT_EQ(model.Parameter(1, 0).text, "it's; /* no comment */");
    EXPECT_EQ(model.Parameter(1, 1).kind, Part21Parameter::Kind::kNothing);
    EXPECT_THAT(model.Parameter(1, 2).References(), ElementsAre(2, 30));
    EXPECT_EQ(model.Parameter(1, 3).text, "T");
    EXPECT_EQ(model.Parameter(1, 4).Number(), 25.0);
    EXPECT_EQ(model.Parameter(2, 0, "C").Number(), -0.5);
    EXPECT_TRUE(model.Is(2, "C"));
    EXPECT_TRUE(model.Parameters(7).empty());
    EXPECT_EQ(model.Parameter(1, 9).kind, Part21Parameter::Kind::kNothing);
}

TEST(Part21Model, AFileThatEndsEarlyIsRefusedAtEveryLength)
{
    std::string const whole = File("#1=A('x',(#2));\n#2=(B(1)C(2));\n");
    // The line end behind it is not missed.
    for (std::size_t length = 0; length + 1 < whole.size(); ++length)
        EXPECT_THROW(Part21Model(whole.substr(0, length)), std::runtime_error) << length;
    EXPECT_NO_THROW(Part21Model{whole});
    EXPECT_THROW(Part21Model(File("#1=A();#1=B();")), std::runtime_error);
    EXPECT_THROW(Part21Model("solid"), std::runtime_error);
}

TEST(Part21Model, ListsThatAreDeepDoNoHarm)
{
    Part21Model const model(File("#1=A(" + std::string(100'000, '(') + std::string(100'000, ')') + ");"));
    EXPECT_TRUE(model.Parameter(1, 0).References().empty());
}

TEST(DecodedPart21, ResolvesDirectives)
{
    EXPECT_EQ(DecodedPart21("a''b\\\\c"), "a'b\\c");
    EXPECT_EQ(DecodedPart21("\\X2\\00E40030\\X0\\!"), "ä0!");
    EXPECT_EQ(DecodedPart21("\\X2\\D83DDE00\\X0\\"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(DecodedPart21("\\X4\\0001F600\\X0\\"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(DecodedPart21("\\X\\E4\\S\\d"), "ää");
    EXPECT_EQ(DecodedPart21("ä"), "ä");
    EXPECT_EQ(DecodedPart21("\xE4"), "ä");
    EXPECT_EQ(DecodedPart21("\\X2\\00"), "00");
    EXPECT_EQ(DecodedPart21("\\PA\\a"), "a");
    EXPECT_EQ(DecodedPart21("a\\PA"), "a\\PA");
    EXPECT_EQ(DecodedPart21("a\\P"), "a\\P");
}

}  // namespace KVR::Test
