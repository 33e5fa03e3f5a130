#include "readers/ReferenceReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/api/IGenericObject.h"
#include "framework/xml_util/ObjectState.h"
#include "producer/XMLProducerImpl.h"
#include "tests/support/ParsedDocument.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using List = std::vector<std::string>;

class SomeObject final : public ObjectState<IGenericObject>
{
public:
    explicit SomeObject(char const* id) : ObjectState(id, UTF16String()) {}
};

class References : public testing::Test
{
protected:
    bool Styles(std::string const& element, IdSet& styles)
    {
        ParsedDocument const document(element);
        return ReadStyleRefs(&m_producer, document.Root(), styles);
    }
    bool Cameras(std::string const& element, IdSet& cameras)
    {
        ParsedDocument const document(element);
        return ReadCameraRefs(&m_producer, document.Root(), cameras);
    }
    bool Child(std::string const& element, UTF8String& id)
    {
        ParsedDocument const document(element);
        return ReadChildRef(&m_producer, document.Root(), id);
    }

    XMLProducerImpl m_producer{UTF16String(), nullptr};
};

using ReadStyleRefsOf = References;
using ReadCameraRefsOf = References;
using ReadChildRefOf = References;

}  // namespace

TEST_F(ReadStyleRefsOf, StylesAndNetStylesTakesTheIdsInOrderWithoutRepeats)
{
    for (char const* const name : {"Styles", "NetStyles"})
    {
        IdSet styles;
        EXPECT_TRUE(Styles(
            std::string("<") + name + R"(><StyleRef ID="b"/><StyleRef ID="a"/><StyleRef ID="b"/></)" + name + ">",
            styles));
        EXPECT_EQ(Ids(styles), (List{"b", "a"})) << name;
    }
}

TEST_F(ReadStyleRefsOf, AnElementWithoutRefsAnswersByWhatTheSetHeld)
{
    IdSet styles;
    EXPECT_FALSE(Styles("<Styles/>", styles));
    EXPECT_TRUE(styles.IsEmpty());
    styles.AddWithUniquenessCheck("before");
    EXPECT_TRUE(Styles("<Styles/>", styles));
    EXPECT_EQ(Ids(styles), (List{"before"}));
}

TEST_F(ReadStyleRefsOf, AStyleRefWithoutIdAddsNothing)
{
    IdSet styles;
    EXPECT_FALSE(Styles(R"(<Styles><StyleRef/><StyleRef ID=""/><StyleRef Id="a"/></Styles>)", styles));
    EXPECT_TRUE(styles.IsEmpty());
}

TEST_F(ReadStyleRefsOf, OtherChildrenArePassedOver)
{
    IdSet styles;
    EXPECT_TRUE(Styles(R"(<Styles>StyleRef<styleref ID="a"/><CameraRef ID="b"/><?StyleRef ID="c"?><!--StyleRef-->
        <Group><StyleRef ID="d"/></Group><StyleRef ID="e"/></Styles>)",
                       styles));
    EXPECT_EQ(Ids(styles), (List{"e"}));
}

TEST_F(ReadStyleRefsOf, ANullNodeOrAnotherNameAnswersFalseAlsoForAFilledSet)
{
    IdSet styles;
    styles.AddWithUniquenessCheck("before");
    EXPECT_FALSE(ReadStyleRefs(&m_producer, nullptr, styles));
    for (char const* const name : {"styles", "StyleSet", "CameraSet", "netStyles"})
        EXPECT_FALSE(Styles(std::string("<") + name + R"(><StyleRef ID="a"/></)" + name + ">", styles)) << name;
    EXPECT_EQ(Ids(styles), (List{"before"}));
}

TEST_F(ReadStyleRefsOf, MappedIdsAreNumberedAsTheyAreMet)
{
    m_producer.SetNewObjectIdPrefix("P");
    IdSet styles;
    EXPECT_TRUE(
        Styles(R"(<Styles><StyleRef ID="b"/><StyleRef/><StyleRef ID="a"/><StyleRef ID="b"/></Styles>)", styles));
    EXPECT_EQ(Ids(styles), (List{"P1", "P2"}));
    IdSet more;
    EXPECT_TRUE(Styles(R"(<NetStyles><StyleRef ID="a"/><StyleRef ID="c"/></NetStyles>)", more));
    EXPECT_EQ(Ids(more), (List{"P2", "P3"}));
}

TEST_F(ReadCameraRefsOf, ACameraSetTakesTheIdsOfCameraRefs)
{
    IdSet cameras;
    EXPECT_TRUE(Cameras(R"(<CameraSet><CameraRef ID="b"/><StyleRef ID="x"/><CameraRef/><CameraRef ID="a"/>
        <CameraRef ID="b"/></CameraSet>)",
                        cameras));
    EXPECT_EQ(Ids(cameras), (List{"b", "a"}));
}

TEST_F(ReadCameraRefsOf, AnElementWithoutRefsAnswersByWhatTheSetHeld)
{
    IdSet cameras;
    EXPECT_FALSE(Cameras("<CameraSet/>", cameras));
    cameras.AddWithUniquenessCheck("before");
    EXPECT_TRUE(Cameras("<CameraSet/>", cameras));
    EXPECT_EQ(Ids(cameras), (List{"before"}));
}

TEST_F(ReadCameraRefsOf, ANullNodeOrAnotherNameAnswersFalse)
{
    IdSet cameras;
    EXPECT_FALSE(ReadCameraRefs(&m_producer, nullptr, cameras));
    EXPECT_FALSE(Cameras(R"(<Styles><CameraRef ID="a"/></Styles>)", cameras));
    EXPECT_FALSE(Cameras(R"(<cameraset><CameraRef ID="a"/></cameraset>)", cameras));
    EXPECT_TRUE(cameras.IsEmpty());
}

TEST_F(ReadCameraRefsOf, MappedIdsAreNumberedAsTheyAreMet)
{
    m_producer.SetNewObjectIdPrefix("P");
    IdSet cameras;
    EXPECT_TRUE(Cameras(R"(<CameraSet><CameraRef ID="b"/><CameraRef ID="a"/></CameraSet>)", cameras));
    EXPECT_EQ(Ids(cameras), (List{"P1", "P2"}));
}

TEST_F(ReadChildRefOf, AnIdAnswersWhetherAnObjectOfItIsRegistered)
{
    m_producer.objectCollector->AddObject(new SomeObject("there"));
    UTF8String id;
    EXPECT_TRUE(Child(R"(<Child ID="there"/>)", id));
    EXPECT_EQ(Text(id), "there");
    EXPECT_FALSE(Child(R"(<Child ID="elsewhere"/>)", id));
    EXPECT_FALSE(Child("<Child/>", id));
    EXPECT_TRUE(id.IsEmpty()) << "an absent id is the empty one";
    m_producer.objectCollector->AddObject(new SomeObject(""));
    EXPECT_TRUE(Child("<Child/>", id));
}

TEST_F(ReadChildRefOf, AMappedIdIsFoundUnderItsNewOneAndAnUnmetOneIsNotMapped)
{
    m_producer.SetNewObjectIdPrefix("P");
    UTF8String mapped;
    ASSERT_TRUE(m_producer.MapObjectId("old", mapped));
    m_producer.objectCollector->AddObject(new SomeObject("P1"));
    UTF8String id;
    EXPECT_TRUE(Child(R"(<Child ID="old"/>)", id));
    EXPECT_EQ(Text(id), "P1");
    EXPECT_FALSE(Child(R"(<Child ID="P1"/>)", id)) << "not an id of the document";
    ASSERT_TRUE(m_producer.MapObjectId("next", mapped));
    EXPECT_EQ(Text(mapped), "P2") << "the reference itself took no number";
}

}  // namespace KVR::Test
