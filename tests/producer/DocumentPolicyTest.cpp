// What a document may make the parser do, when the host has a policy.

#include "framework/xml_util/DocumentPolicy.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "tests/support/FullScene.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using List = std::vector<std::string>;
using Documents = LoopbackServer::Documents;
using OtherDocuments = DocumentPolicy::OtherDocuments;

// No policy outlives its test.
class Policy : public testing::Test
{
protected:
    ~Policy() override { SetDocumentPolicy(DocumentPolicy()); }
};

std::string const kEmptySchema = "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'/>";

std::string WithSchema(std::string const& address)
{
    return "<S xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:noNamespaceSchemaLocation='" + address +
           "' xsi:schemaLocation='urn:other " + address + "'><IPart ID='p' Label='label'/></S>";
}

std::string WithEntity(std::string const& declaration)
{
    return "<!DOCTYPE S [<!ENTITY e " + declaration + ">]><S><IPart ID='p'><ChangeKey>&e;</ChangeKey></IPart></S>";
}

std::string ChangeKeyOf(TestScene& scene)
{
    scene.Begin();
    UTF8String key;
    EXPECT_EQ(scene.Get<IPart>("p").ChangeKey(kSnapshotVersion_Current, key), kIsValueSpecified_Yes);
    return Text(key);
}

// Nothing when it can be read.
std::optional<DocumentRefusal> RefusalOf(std::string const& xml)
{
    TestScene scene(xml);
    bool const isRead = Opens(scene);
    EXPECT_EQ(isRead, !LastDocumentRefusal()) << xml.substr(0, 200);
    return LastDocumentRefusal();
}

// Elements with attributes of so many names in all, none of which has many.
std::string WithAttributeNames(std::size_t count)
{
    std::string xml = "<S>";
    for (std::size_t i = 0; i < count; ++i)
        xml += "<a b" + std::to_string(i) + "='' b0=''/>";
    return xml.replace(xml.find(" b0=''"), 6, "") + "</S>";
}

}  // namespace

TEST_F(Policy, IsWhatTheParserCanDoUnlessOneIsSet)
{
    EXPECT_EQ(CurrentDocumentPolicy(), DocumentPolicy());
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    EXPECT_EQ(CurrentDocumentPolicy(), DocumentPolicy::Untrusted());
}

TEST_F(Policy, ASceneIsServedAsWithoutOne)
{
    auto const answers = []
    {
        TestScene scene(FullScene());
        WriteSideFiles(scene);
        scene.Begin();
        return WalkScene(scene.Producer()).text;
    };
    std::string const without = answers();
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    EXPECT_EQ(answers(), without);
}

TEST_F(Policy, ASchemaIsPassedOver)
{
    LoopbackServer const server(Documents{{"/scene.xsd", kEmptySchema}});
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    TestScene remote(WithSchema(server.AddressOf("/scene.xsd")));
    EXPECT_EQ(Text(remote.Begin().Get<IPart>("p").Label()), "label");
    // Without a policy this one could not be read.
    TestScene local(WithSchema("none.xsd"));
    EXPECT_EQ(Text(local.Begin().Get<IPart>("p").Label()), "label");
    EXPECT_EQ(server.Requests(), List{});
}

TEST_F(Policy, ADocumentTypeIsRefused)
{
    LoopbackServer const server(Documents{{"/secret.txt", "secret"}, {"/scene.dtd", ""}});
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    for (std::string const& xml :
         {WithEntity("'inside'"), WithEntity("SYSTEM '" + server.AddressOf("/secret.txt") + "'"),
          "<!DOCTYPE S SYSTEM '" + server.AddressOf("/scene.dtd") + "'><S><IPart ID='p'/></S>",
          std::string("<!DOCTYPE S><S><IPart ID='p'/></S>")})
        EXPECT_EQ(RefusalOf(xml), DocumentRefusal::kDocumentType) << xml;
    EXPECT_EQ(server.Requests(), List{});
}

TEST_F(Policy, OtherDocumentsMayBeThoseOfTheFileSystem)
{
    LoopbackServer const server(Documents{{"/secret.txt", "from the network"}});
    DocumentPolicy policy = DocumentPolicy::Untrusted();
    policy.documentTypes = true;
    policy.otherDocuments = OtherDocuments::kFiles;
    SetDocumentPolicy(policy);
    EXPECT_EQ(RefusalOf(WithEntity("SYSTEM '" + server.AddressOf("/secret.txt") + "'")),
              DocumentRefusal::kOtherDocument);
    EXPECT_EQ(server.Requests(), List{});
    TestScene relative(WithEntity("SYSTEM 'text.txt'"));
    relative.WithFile("text.txt", "from the disk");
    EXPECT_EQ(ChangeKeyOf(relative), "from the disk");
    TempFolder const elsewhere;
    elsewhere.Write("text.txt", "from elsewhere");
    TestScene absolute(WithEntity("SYSTEM 'file://" + elsewhere.NarrowPathOf("text.txt") + "'"));
    EXPECT_EQ(ChangeKeyOf(absolute), "from elsewhere");

    policy.otherDocuments = OtherDocuments::kNone;
    SetDocumentPolicy(policy);
    EXPECT_EQ(RefusalOf(WithEntity("SYSTEM 'text.txt'")), DocumentRefusal::kOtherDocument);
    TestScene inside(WithEntity("'inside'"));
    EXPECT_EQ(ChangeKeyOf(inside), "inside");
}

TEST_F(Policy, EachLimitHoldsWhatItSaysAndNoMore)
{
    SetDocumentPolicy({.maxDepth = 5, .maxAttributes = 4, .maxNames = 3, .maxEntities = 2});
    EXPECT_EQ(RefusalOf("<S>" + Repeated("<a>", 4) + "<b/>" + Repeated("</a>", 4) + "</S>"), DocumentRefusal::kDepth);
    EXPECT_EQ(RefusalOf("<S>" + Repeated("<a>", 3) + "<b/><b/>" + Repeated("</a>", 3) + "</S>"), std::nullopt);
    EXPECT_EQ(RefusalOf("<S>" + Repeated("<a><a/></a>", 20) + "</S>"), std::nullopt);
    EXPECT_EQ(RefusalOf("<S><a/><b/></S>"), std::nullopt);
    EXPECT_EQ(RefusalOf("<S><a/><b/><c/></S>"), DocumentRefusal::kNames);
    EXPECT_EQ(RefusalOf(WithAttributeNames(3)), std::nullopt);
    EXPECT_EQ(RefusalOf(WithAttributeNames(4)), DocumentRefusal::kNames);
    EXPECT_EQ(RefusalOf("<S><a p='' q=''/><b q='' p=''/><a q=''/><b r='' p='' q=''/></S>"), std::nullopt);
    EXPECT_EQ(RefusalOf("<S><a p='' q=''/><a p='' qr=''/><a p='' qrs=''/></S>"), DocumentRefusal::kNames);
    EXPECT_EQ(RefusalOf("<S a='' b='' c='' d='' e=''/>"), DocumentRefusal::kAttributes);
    std::string const entities = "<!DOCTYPE S [<!ENTITY e 'x'>]>";
    EXPECT_EQ(RefusalOf(entities + "<S>&e;&e;</S>"), std::nullopt);
    EXPECT_EQ(RefusalOf(entities + "<S>&e;&e;&e;</S>"), DocumentRefusal::kEntities);
}

TEST_F(Policy, NestingAtTheLimitIsReadInTimeAndStack)
{
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    for (std::string const name : {"Styles", "IGeometricSet", "IExtensionGeometry"})
    {
        std::size_t const count = DocumentPolicy::Untrusted().maxDepth - 3;
        EXPECT_EQ(RefusalOf("<S><IPart ID='p'><ChildSet>" + Repeated("<" + name + " ID='g'>", count) +
                            Repeated("</" + name + ">", count) + "</ChildSet></IPart></S>"),
                  std::nullopt);
    }
}

TEST_F(Policy, ARefusalIsOfTheLatestDocumentOfAThread)
{
    SetDocumentPolicy(DocumentPolicy::Untrusted());
    EXPECT_EQ(RefusalOf("<!DOCTYPE S><S/>"), DocumentRefusal::kDocumentType);
    std::thread([] { EXPECT_EQ(LastDocumentRefusal(), std::nullopt); }).join();
    TestScene damaged("<S>");
    EXPECT_FALSE(Opens(damaged));
    EXPECT_EQ(LastDocumentRefusal(), std::nullopt) << "not well-formed is no refusal";
}

}  // namespace KVR::Test
