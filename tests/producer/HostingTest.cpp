// What a host must know that reads scenes it does not trust: what reading one does besides reading it.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "tests/support/FullScene.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace KVR::Test
{

namespace
{

using List = std::vector<std::string>;
using Documents = LoopbackServer::Documents;

constexpr char const* kDisableDtd = "XERCES_DISABLE_DTD";

// No test of this file runs under a setting of the one who runs it.
class Hosting : public testing::Test
{
protected:
    Hosting() { ::unsetenv(kDisableDtd); }
    ~Hosting() override { ::unsetenv(kDisableDtd); }
};

// The packaged Xerces-C never frees its record of an external document type: one of its security repairs. Where a scene
// with one is read, what is not freed is not ours.
struct RecordOfTheParser
{
#if defined(__SANITIZE_ADDRESS__)
    __lsan::ScopedDisabler isNotReported;
#else
    RecordOfTheParser() {}
#endif
};

std::string LabelOf(TestScene& scene)
{
    scene.Begin();
    return Text(scene.Get<IPart>("p").Label());
}

std::string ChangeKeyOf(TestScene& scene)
{
    scene.Begin();
    UTF8String key;
    EXPECT_EQ(scene.Get<IPart>("p").ChangeKey(kSnapshotVersion_Current, key), kIsValueSpecified_Yes);
    return Text(key);
}

// A part whose change key is the entity "e", declared in the given way.
std::string WithEntity(std::string const& declaration)
{
    return "<!DOCTYPE S [<!ENTITY e " + declaration + ">]><S><IPart ID='p'><ChangeKey>&e;</ChangeKey></IPart></S>";
}

}  // namespace

TEST_F(Hosting, AnExternalEntityIsFetchedFromDisk)
{
    TestScene relative(WithEntity("SYSTEM 'secret.txt'"));
    relative.WithFile("secret.txt", "from the disk");
    EXPECT_EQ(ChangeKeyOf(relative), "from the disk");
    TempFolder const elsewhere;
    elsewhere.Write("secret.txt", "from elsewhere");
    TestScene absolute(WithEntity("SYSTEM 'file://" + elsewhere.NarrowPathOf("secret.txt") + "'"));
    EXPECT_EQ(ChangeKeyOf(absolute), "from elsewhere");
    TestScene up(WithEntity("SYSTEM '../secret.txt'"));
    EXPECT_FALSE(Opens(up)) << "an entity that cannot be fetched is a parse failure";
}

TEST_F(Hosting, AnExternalEntityIsFetchedFromTheNetwork)
{
    LoopbackServer const server(Documents{{"/secret.txt", "from the network"}});
    TestScene scene(WithEntity("SYSTEM '" + server.AddressOf("/secret.txt") + "'"));
    EXPECT_EQ(ChangeKeyOf(scene), "from the network");
    EXPECT_EQ(server.Requests(), List{"/secret.txt"});
}

TEST_F(Hosting, AnEntityThatNobodyRefersToIsNotFetched)
{
    LoopbackServer const server(Documents{{"/secret.txt", "from the network"}});
    TestScene scene("<!DOCTYPE S [<!ENTITY e SYSTEM '" + server.AddressOf("/secret.txt") +
                    "'>]><S><IPart ID='p' Label='label'/></S>");
    EXPECT_EQ(LabelOf(scene), "label");
    EXPECT_EQ(server.Requests(), List{});
}

TEST_F(Hosting, AQueryFetchesAsMuch)
{
    LoopbackServer const server(Documents{{"/secret.txt", "from the network"}});
    TestScene scene(WithEntity("SYSTEM '" + server.AddressOf("/secret.txt") + "'"));
    scene.Producer().QueryFile();
    EXPECT_EQ(server.Requests(), List{"/secret.txt"});
}

TEST_F(Hosting, AnExternalDocumentTypeIsFetchedFromDiskAndNetwork)
{
    RecordOfTheParser const record;
    char const* const declarations = "<!ATTLIST IPart Label CDATA 'from the document type'>";
    LoopbackServer const server(Documents{{"/scene.dtd", declarations}});
    TestScene remote("<!DOCTYPE S SYSTEM '" + server.AddressOf("/scene.dtd") + "'><S><IPart ID='p'/></S>");
    EXPECT_EQ(LabelOf(remote), "from the document type");
    EXPECT_EQ(server.Requests(), List{"/scene.dtd"});
    TestScene local("<!DOCTYPE S SYSTEM 'scene.dtd'><S><IPart ID='p'/></S>");
    local.WithFile("scene.dtd", declarations);
    EXPECT_EQ(LabelOf(local), "from the document type");
}

TEST_F(Hosting, AParameterEntityIsFetchedFromTheNetwork)
{
    LoopbackServer const server(Documents{{"/more.ent", "<!ENTITY e 'declared elsewhere'>"}});
    TestScene scene("<!DOCTYPE S [<!ENTITY % more SYSTEM '" + server.AddressOf("/more.ent") +
                    "'> %more;]><S><IPart ID='p'><ChangeKey>&e;</ChangeKey></IPart></S>");
    EXPECT_EQ(ChangeKeyOf(scene), "declared elsewhere");
    EXPECT_EQ(server.Requests(), List{"/more.ent"});
}

TEST_F(Hosting, ASchemaIsFetchedFromTheNetwork)
{
    std::string const schema = "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'/>";
    LoopbackServer const server(Documents{{"/scene.xsd", schema}, {"/other.xsd", schema}});
    TestScene scene("<S xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:noNamespaceSchemaLocation='" +
                    server.AddressOf("/scene.xsd") + "' xsi:schemaLocation='urn:other " +
                    server.AddressOf("/other.xsd") + "'><IPart ID='p' Label='label'/></S>");
    EXPECT_EQ(LabelOf(scene), "label");
    EXPECT_EQ(server.Requests(), (List{"/scene.xsd", "/other.xsd"}));
}

TEST_F(Hosting, WhatCannotBeFetchedMakesADocumentUnreadable)
{
    // Nobody listens there any more.
    std::string const address = LoopbackServer(Documents{}).AddressOf("/none");
    TestScene subset("<!DOCTYPE S SYSTEM '" + address + "'><S><IPart ID='p'/></S>");
    EXPECT_FALSE(Opens(subset));
    TestScene entity(WithEntity("SYSTEM '" + address + "'"));
    EXPECT_FALSE(Opens(entity));
    TestScene schema("<S xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:noNamespaceSchemaLocation='" +
                     address + "'><IPart ID='p'/></S>");
    EXPECT_FALSE(Opens(schema));
}

TEST_F(Hosting, WhatAServerDoesNotHaveCountsAsEmpty)
{
    // The parser does not ask whether a server had the document, and an empty one is a good entity and no schema.
    LoopbackServer const server(Documents{});
    {
        RecordOfTheParser const record;
        TestScene subset("<!DOCTYPE S SYSTEM '" + server.AddressOf("/none.dtd") + "'><S><IPart ID='p'/></S>");
        EXPECT_TRUE(Opens(subset));
    }
    TestScene entity(WithEntity("SYSTEM '" + server.AddressOf("/none.txt") + "'"));
    EXPECT_EQ(ChangeKeyOf(entity), "");
    TestScene schema("<S xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:noNamespaceSchemaLocation='" +
                     server.AddressOf("/none.xsd") + "'><IPart ID='p'/></S>");
    EXPECT_FALSE(Opens(schema));
    EXPECT_EQ(server.Requests(), (List{"/none.dtd", "/none.txt", "/none.xsd"}));
}

// A text of a thousand characters, four times in four times in it, five levels up. Thirty levels would be all the
// memory there is.
TEST_F(Hosting, NothingLimitsTheExpansionOfEntities)
{
    std::string declarations = "<!ENTITY e0 '" + std::string(1024, 'x') + "'>";
    for (int level = 1; level <= 5; ++level)
    {
        std::string const below = "&e" + std::to_string(level - 1) + ";";
        declarations += "<!ENTITY e" + std::to_string(level) + " '" + below + below + below + below + "'>";
    }
    ASSERT_LT(declarations.size(), 1300U);
    TestScene inAttribute("<!DOCTYPE S [" + declarations + "]><S><IPart ID='p' Label='&e5;'/></S>");
    EXPECT_EQ(LabelOf(inAttribute).size(), 1048576U) << "a million characters";
    TestScene inText("<!DOCTYPE S [" + declarations + "]><S><IPart ID='p'><ChangeKey>&e5;</ChangeKey></IPart></S>");
    EXPECT_EQ(ChangeKeyOf(inText).size(), 1048576U);
}

TEST_F(Hosting, ThePackagedParserRefusesDocumentTypesWhenTheEnvironmentSaysSo)
{
    LoopbackServer const server(Documents{{"/secret.txt", "secret"}, {"/scene.dtd", ""}});
    std::string const inside = WithEntity("'inside'");
    std::string const remote = WithEntity("SYSTEM '" + server.AddressOf("/secret.txt") + "'");
    std::string const external = "<!DOCTYPE S SYSTEM '" + server.AddressOf("/scene.dtd") + "'><S><IPart ID='p'/></S>";
    std::string const bare = "<!DOCTYPE S><S><IPart ID='p'/></S>";
    ASSERT_EQ(::setenv(kDisableDtd, "1", 1), 0);
    for (std::string const& text : {inside, remote, external, bare})
    {
        TestScene scene(text);
        EXPECT_FALSE(Opens(scene)) << text;
        EXPECT_FALSE(scene.Has("p"));
    }
    EXPECT_EQ(server.Requests(), List{}) << "nothing was fetched";
    TestScene plain(FullScene());
    WriteSideFiles(plain);
    EXPECT_TRUE(Opens(plain)) << "a scene without a document type is read as ever";
    for (char const* const other : {"0", "true", "", "11"})
    {
        ASSERT_EQ(::setenv(kDisableDtd, other, 1), 0);
        TestScene scene(inside);
        EXPECT_TRUE(Opens(scene)) << "only the value 1 counts: " << other;
    }
    ASSERT_EQ(::unsetenv(kDisableDtd), 0);
    TestScene again(inside);
    EXPECT_EQ(ChangeKeyOf(again), "inside");
}

TEST_F(Hosting, ThePackagedParserStillFetchesSchemasThen)
{
    LoopbackServer const server(Documents{{"/scene.xsd", "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'/>"}});
    ASSERT_EQ(::setenv(kDisableDtd, "1", 1), 0);
    TestScene scene("<S xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:noNamespaceSchemaLocation='" +
                    server.AddressOf("/scene.xsd") + "'><IPart ID='p' Label='label'/></S>");
    EXPECT_EQ(LabelOf(scene), "label");
    EXPECT_EQ(server.Requests(), List{"/scene.xsd"});
}

TEST_F(Hosting, SideFilesInXmlAreReadWithoutDocumentTypesAnyway)
{
    LoopbackServer const server(Documents{{"/secret.txt", "secret"}, {"/ids.dtd", ""}});
    TestScene scene(R"(<S><SubObjectPersistentIdInfo GenerateSubObjectPersistentId="True" Path="ids.xml"/>
                       <IPart ID="p"/></S>)");
    scene.WithFile("ids.xml", "<!DOCTYPE I SYSTEM '" + server.AddressOf("/ids.dtd") + "' [<!ENTITY e SYSTEM '" +
                                  server.AddressOf("/secret.txt") + "'>]><I>&e;</I>");
    EXPECT_TRUE(Opens(scene));
    EXPECT_TRUE(scene.Has("p"));
    EXPECT_EQ(server.Requests(), List{});
}

}  // namespace KVR::Test
