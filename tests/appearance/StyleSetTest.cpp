// The set that styles stand in: ids, labels, order, failure.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "producer/ElementReaders.h"
#include "producer/XMLProducerImpl.h"
#include "tests/appearance/AppearanceScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

TEST(StyleSet, IsListedByFileAssemblyAndPart)
{
    auto const set = [](char const* id)
    { return "<AttributeSet><StyleSet><IRenderStyle ID=\"" + std::string(id) + "\"/></StyleSet></AttributeSet>"; };
    TestScene scene(InScene("<IFile ID=\"f\" Label=\"\">" + set("s1") + "</IFile><IAssembly ID=\"a\" Label=\"\">" +
                            set("s2") + "</IAssembly><IPart ID=\"p\" Label=\"\">" + set("s3") + "</IPart>"));
    scene.Begin();
    EXPECT_THAT(Ids(scene.Get<IFile>("f").StyleSet()), ElementsAre("s1"));
    EXPECT_THAT(Ids(scene.Get<IAssembly>("a").StyleSet()), ElementsAre("s2"));
    EXPECT_THAT(Ids(scene.Get<IPart>("p").StyleSet()), ElementsAre("s3"));
    for (char const* id : {"s1", "s2", "s3"})
        EXPECT_TRUE(scene.Has(id)) << id;
}

TEST(StyleSet, KeepsDocumentOrderAndPassesOverOtherNames)
{
    TestScene scene(InStyleSet(R"(<IRenderStyle ID="z"/><irenderstyle ID="no"/><Style ID="no"/><!-- c -->
                                  <IMaterialTexture ID="no"/><IRenderStyle ID="a"/>)"));
    scene.Begin();
    EXPECT_THAT(Ids(scene.Get<IFile>("f").StyleSet()), ElementsAre("z", "a"));
    EXPECT_FALSE(scene.Has("no"));
}

TEST(StyleSet, AStyleOutsideASetIsNotRead)
{
    TestScene scene(InScene(R"(<IRenderStyle ID="root"/><IFile ID="f" Label=""><IRenderStyle ID="bare"/>
                               <StyleSet><IRenderStyle ID="loose"/></StyleSet></IFile>)"));
    scene.Begin();
    for (char const* id : {"root", "bare", "loose"})
        EXPECT_FALSE(scene.Has(id)) << id;
}

TEST(StyleSet, SeveralSetsAddUp)
{
    TestScene scene(InFile(R"(<StyleSet><IRenderStyle ID="a"/></StyleSet><StyleSet/>
                              <StyleSet><IRenderStyle ID="b"/></StyleSet>)"));
    scene.Begin();
    EXPECT_THAT(Ids(scene.Get<IFile>("f").StyleSet()), ElementsAre("a", "b"));
}

TEST(StyleSet, AStyleWithoutLabelTakesTheOneBeforeIt)
{
    TestScene scene(InFile(R"(<StyleSet><IRenderStyle ID="a"/><IRenderStyle ID="b" Label="steel"/><IRenderStyle ID="c"/>
                                <IRenderStyle ID="d"><VitreolStyleInfo/></IRenderStyle><IRenderStyle ID="e" Label=""/>
                                <IRenderStyle ID="g"/></StyleSet>
                              <StyleSet><IRenderStyle ID="h"/></StyleSet>)"));
    scene.Begin();
    auto const label = [&](char const* id) { return Text(scene.Get<IRenderStyle>(id).Label()); };
    EXPECT_EQ(label("a"), "");
    EXPECT_EQ(label("b"), "steel");
    EXPECT_EQ(label("c"), "steel");
    EXPECT_EQ(label("d"), "steel") << "through both kinds of style";
    EXPECT_EQ(label("e"), "") << "an empty label is a label";
    EXPECT_EQ(label("g"), "");
    EXPECT_EQ(label("h"), "") << "each set begins anew";
}

TEST(StyleSet, TheLabelDoesNotCarryOverFromSetToSet)
{
    TestScene scene(InFile(R"(<StyleSet><IRenderStyle ID="a" Label="steel"/></StyleSet>
                              <StyleSet><IRenderStyle ID="b"/></StyleSet>)"));
    scene.Begin();
    EXPECT_EQ(Text(scene.Get<IRenderStyle>("b").Label()), "");
}

TEST(StyleSet, AStyleWithoutIdHasTheEmptyIdAndIsListed)
{
    TestScene scene(InStyleSet(R"(<IRenderStyle Label="x"/>)"));
    scene.Begin();
    EXPECT_THAT(Ids(scene.Get<IFile>("f").StyleSet()), ElementsAre(""));
    EXPECT_EQ(Text(scene.Get<IRenderStyle>("").Label()), "x");
}

TEST(StyleSet, AnIdDoesNotCarryOver)
{
    TestScene scene(InStyleSet(R"(<IRenderStyle ID="a"/><IRenderStyle/>)"));
    scene.Begin();
    EXPECT_THAT(Ids(scene.Get<IFile>("f").StyleSet()), ElementsAre("a", ""));
}

TEST(StyleSet, OfTwoStylesWithOneIdTheFirstIsAnsweredAndTheIdListedOnce)
{
    TestScene scene(InStyleSet(R"(<IRenderStyle ID="s" Label="first"/><IRenderStyle ID="s" Label="second"/>)"));
    scene.Begin();
    EXPECT_THAT(Ids(scene.Get<IFile>("f").StyleSet()), ElementsAre("s"));
    EXPECT_EQ(Text(scene.Get<IRenderStyle>("s").Label()), "first");
    scene.Producer().Dispose("s");
    EXPECT_FALSE(scene.Has("s")) << "both end with the id";
}

TEST(StyleSet, IdsAreMappedAndTextureIdsAreNot)
{
    TestScene scene(InFile(R"(<TextureSet><IMaterialTexture ID="wood"/></TextureSet>
        <StyleSet><IRenderStyle ID="s" Label="s"><DiffuseTexture TextureId="wood"/><BumpMap TextureId="wood"/>
          </IRenderStyle><IRenderStyle ID="t" Label="t"><DiffuseColor TextureId="wood" BumpMapId="wood"/></IRenderStyle>
        </StyleSet>)"));
    scene.WithPrefix("P").Begin();
    IFile& file = scene.Get<IFile>("P1");
    EXPECT_THAT(Ids(file.TextureSet()), ElementsAre("P2"));
    EXPECT_THAT(Ids(file.StyleSet()), ElementsAre("P3", "P4"));
    for (char const* id : {"P3", "P4"})
    {
        IRenderStyle& style = scene.Get<IRenderStyle>(id);
        EXPECT_EQ(TextOf(style, &IRenderStyle::DiffuseTexture), "wood");
        EXPECT_EQ(TextOf(style, &IRenderStyle::BumpMap), "wood");
    }
    EXPECT_FALSE(scene.Has("s"));
    EXPECT_FALSE(scene.Has("wood"));
}

TEST(StyleSet, AMappedStyleIsTheOneThatGeometryNames)
{
    TestScene scene(InScene(R"(<IFile ID="f" Label=""><AttributeSet><StyleSet><IRenderStyle ID="red" Label="red"/>
        </StyleSet></AttributeSet></IFile><IPart ID="p" Label=""><Styles><StyleRef ID="red"/></Styles></IPart>)"));
    scene.WithPrefix("n").Begin();
    std::vector<std::string> const ids = Ids(scene.Get<IPart>("n3").Styles());
    ASSERT_EQ(ids.size(), 1U);
    EXPECT_EQ(Text(scene.Get<IRenderStyle>(ids[0].c_str()).Label()), "red");
}

TEST(StyleSet, AReaderRefusesANullNodeAlone)
{
    XMLProducerImpl producer(UTF16String(), nullptr);
    VitreolAssets assets;
    std::vector<UTF8String> ids;
    EXPECT_FALSE(ReadStyleSet(&producer, nullptr, ids, assets));
    EXPECT_FALSE(ReadTextureSet(&producer, nullptr, ids));
    EXPECT_THAT(ids, IsEmpty());
}

TEST(StyleSet, AnEmptySetIsNoFailure)
{
    TestScene scene(InFile("<StyleSet/><TextureSet/>"));
    scene.Begin();
    EXPECT_TRUE(scene.Get<IFile>("f").StyleSet().IsEmpty());
    EXPECT_TRUE(scene.Get<IFile>("f").TextureSet().IsEmpty());
}

constexpr int kMany = 100'000;

// A search of the set, or of its ids, for each style would take hours.
TEST(StyleSet, AHundredThousandStylesOfOneSetAreRead)
{
    std::string body;
    for (int i = 0; i < kMany; ++i)
        body += "<IRenderStyle ID=\"style" + std::to_string(i) + "\"><DiffuseColor Shininess=\"" + std::to_string(i) +
                "\"/></IRenderStyle>";
    TestScene scene(InStyleSet(body));
    scene.Begin();
    IdSet const ids = scene.Get<IFile>("f").StyleSet();
    ASSERT_EQ(ids.Size(), static_cast<unsigned long long>(kMany));
    for (int const i : {0, 1, kMany / 2, kMany - 1})
    {
        UTF8String const id = ids.At(static_cast<unsigned long long>(i));
        EXPECT_EQ(Text(id), "style" + std::to_string(i));
        EXPECT_EQ(AnswerOf(scene.Get<IRenderStyle>(id.Value()), &IRenderStyle::Shininess), i);
    }
}

TEST(StyleSet, AHundredThousandStylesOfOneIdAreRead)
{
    std::string body;
    for (int i = 0; i < kMany; ++i)
        body += "<IRenderStyle ID=\"s\" Label=\"" + std::to_string(i) + "\"/>";
    TestScene scene(InStyleSet(body));
    scene.Begin();
    EXPECT_THAT(Ids(scene.Get<IFile>("f").StyleSet()), ElementsAre("s"));
    EXPECT_EQ(Text(scene.Get<IRenderStyle>("s").Label()), "0");
}

}  // namespace

}  // namespace KVR::Test
