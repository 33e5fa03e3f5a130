#include <gtest/gtest.h>

#include <string>

#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

std::string RootOf(TestScene& scene)
{
    try
    {
        return Text(scene.Begin().Producer().RootObjectId().Id());
    }
    catch (GeneralException const&)
    {
        return "none";
    }
}

std::string RootOf(std::string const& elements)
{
    TestScene scene("<Scene>" + elements + "</Scene>");
    return RootOf(scene);
}

std::string File(std::string const& id, std::string const& child, std::string const& attributes = "")
{
    return "<IFile ID='" + id + "' " + attributes + "><ChildSet><C ID='" + child + "'/></ChildSet></IFile>";
}

constexpr char const* kSinglePart = "<IPart ID='single' IsSingleUnderRoot='1'/>";

}  // namespace

TEST(RootFile, OfADocumentWithOneFileIsThatFileAlsoWithoutIsRoot)
{
    TestScene scene("<Scene><IFile ID='f'/><IPart ID='p'/></Scene>");
    EXPECT_EQ(RootOf(scene), "f");
    EXPECT_TRUE(scene.Get<IFile>("f").IsRoot()) << "the file says so itself, then";
}

TEST(RootFile, OfADocumentWithOneFileIsThatFileAlsoWithIsRootOff)
{
    TestScene scene("<Scene><IFile ID='f' IsRoot='0'/></Scene>");
    EXPECT_EQ(RootOf(scene), "f");
    EXPECT_TRUE(scene.Get<IFile>("f").IsRoot());
}

TEST(RootFile, IsMissingWithoutAnyFile)
{
    EXPECT_EQ(RootOf(std::string(kSinglePart)), "none");
}

TEST(RootFile, IsTheOneThatDeclaresItself)
{
    TestScene scene("<Scene>" + File("a", "single") + "<IFile ID='b' IsRoot='1'/>" + kSinglePart + "</Scene>");
    EXPECT_EQ(RootOf(scene), "b") << "the component that stands alone does not count then";
    EXPECT_FALSE(scene.Get<IFile>("a").IsRoot());
    EXPECT_TRUE(scene.Get<IFile>("b").IsRoot());
}

TEST(RootFile, OfSeveralThatDeclareThemselvesIsTheOneReadLast)
{
    TestScene scene("<Scene><IFile ID='b' IsRoot='1'/><IFile ID='a' IsRoot='true'/></Scene>");
    EXPECT_EQ(RootOf(scene), "b") << "ids are read in the order of their texts";
    EXPECT_TRUE(scene.Get<IFile>("a").IsRoot());
    EXPECT_TRUE(scene.Get<IFile>("b").IsRoot());
}

TEST(RootFile, OfTwoWithoutFlagAndWithoutAComponentThatStandsAloneIsMissing)
{
    TestScene scene("<Scene>" + File("a", "p") + File("b", "p") + "<IPart ID='p' IsSingleUnderRoot='0'/></Scene>");
    EXPECT_EQ(RootOf(scene), "none");
    EXPECT_FALSE(scene.Get<IFile>("a").IsRoot());
    EXPECT_FALSE(scene.Get<IFile>("b").IsRoot());
    EXPECT_EQ(RootOf("<IFile ID='a'/><IFile ID='b'/>"), "none");
}

TEST(RootFile, OfSeveralIsTheOneWithAComponentThatStandsAlone)
{
    TestScene scene("<Scene>" + File("a", "p") + File("b", "single") + File("c", "p") + "<IPart ID='p'/>" +
                    kSinglePart + "</Scene>");
    EXPECT_EQ(RootOf(scene), "b");
    EXPECT_FALSE(scene.Get<IFile>("a").IsRoot());
    EXPECT_TRUE(scene.Get<IFile>("b").IsRoot());
    EXPECT_FALSE(scene.Get<IFile>("c").IsRoot());
    EXPECT_EQ(RootOf(File("a", "p") + File("b", "x") + "<IPart ID='p'/><IAssembly ID='x' IsSingleUnderRoot='1'/>"), "b")
        << "an assembly is a component, too";
}

TEST(RootFile, OfSeveralWithSuchAComponentIsTheFirstInReadingOrder)
{
    EXPECT_EQ(RootOf(File("b", "single") + File("a", "single") + kSinglePart), "a");
    // The assembly "0" comes first of all and has file "b" read for its instance.
    EXPECT_EQ(
        RootOf(File("a", "single") + File("b", "single") + kSinglePart +
               "<IAssembly ID='0'><ChildSet><IInstance ID='i'><Child ID='b'/></IInstance></ChildSet></IAssembly>"),
        "b");
}

TEST(RootFile, LooksAtEveryChildOfAFile)
{
    EXPECT_EQ(RootOf("<IFile ID='a'><ChildSet><C ID='p'/></ChildSet></IFile><IFile ID='b'><ChildSet><C ID='ghost'/>"
                     "<C ID='p'/></ChildSet><ChildSet><C ID='single'/></ChildSet></IFile><IPart ID='p'/>" +
                     std::string(kSinglePart)),
              "b");
}

TEST(RootFile, PassesOverChildrenThatAreNoComponents)
{
    // An instance and a file are none, whatever attributes they have.
    EXPECT_EQ(RootOf(File("a", "i") + File("b", "a") +
                     "<IInstance ID='i' IsSingleUnderRoot='1'><Child ID='p'/></IInstance><IPart ID='p'/>"),
              "none");
}

TEST(RootFile, IsGivenUnderItsNewIdWhenIdsAreMapped)
{
    TestScene scene("<Scene>" + File("a", "p") + File("b", "single") + "<IPart ID='p'/>" + kSinglePart + "</Scene>");
    scene.WithPrefix("P");
    EXPECT_EQ(RootOf(scene), "P3") << "after a and p";
    EXPECT_TRUE(scene.Get<IFile>("P3").IsRoot());
}

TEST(RootFile, IsKeptWhenASecondPassFindsNoMore)
{
    TestScene scene("<Scene><IFile ID='f'/></Scene>");
    EXPECT_EQ(RootOf(scene), "f");
    EXPECT_EQ(RootOf(scene), "f");
}

}  // namespace KVR::Test
