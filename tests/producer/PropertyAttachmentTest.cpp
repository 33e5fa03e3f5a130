// The properties of the file beside a scene: who gets them, and who owns them.

#include "producer/PropertyAttachment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "framework/xml_util/XMLBrep.h"
#include "geometry/XMLGeometricSet.h"
#include "mesh/XMLPolygonMesh.h"
#include "producer/XMLProducerImpl.h"
#include "readers/HeldProperties.h"
#include "structure/XMLInstance.h"
#include "tests/framework/xml_util/Damage.h"
#include "tests/support/MeshBytes.h"
#include "tests/support/TestScene.h"

namespace KVR::Test
{

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

std::string Property(std::string const& id, std::string const& objectId, std::string const& value = "v")
{
    return "<Property ID=\"" + id + "\" ObjectID=\"" + objectId + "\" Name=\"n\" Value=\"" + value + "\"/>";
}

std::string Properties(std::string const& elements)
{
    return "<Properties>" + elements + "</Properties>";
}

// A file "f" with an assembly "a" that places a part "p" by an instance "i"; in the part a mesh "m", a set "g" and a
// body "b".
class PropertyScene : public TestScene
{
public:
    explicit PropertyScene(std::string const& elements, std::string_view universe = "<IUniverse/>")
        : TestScene("<Scene>" + std::string(universe) + R"(<MeshInfo GenerateMesh="True" Path="m.mesh"/>
            <IFile ID="f" Label=""><AttributeSet><StyleSet><IRenderStyle ID="s"/></StyleSet><TextureSet>
              <IMaterialTexture ID="t"/></TextureSet></AttributeSet></IFile>
            <IAssembly ID="a" Label=""><ChildSet><IInstance ID="i"><Child ID="p"/></IInstance></ChildSet></IAssembly>
            <IPart ID="p" Label=""><ChildSet><IPolygonMesh ID="m"/><IGeometricSet ID="g"/><IBrep ID="b"/>
            </ChildSet></IPart></Scene>)")
    {
        WithFile("m.mesh", MeshInfoHeader(1).Bytes() + TriangleRecord("m"));
        WithFile("scene.kvrproperty", Properties(elements));
    }

    std::vector<std::string> PropertyIdsOf(char const* id) { return Ids(Get<IObject>(id).PropertyIds()); }

    // The text of the property that the universe's database has under the id; nothing when it has none.
    std::optional<std::string> InDatabase(char const* id)
    {
        IUniverse const* const universe = Producer().LoadUniverse();
        IProperty const* property = nullptr;
        if (!universe || universe->PropertyDatabaseOf()->PropertyAt(id, property) != kIsValueSpecified_Yes)
            return {};
        UTF16String value;
        property->Value(value);
        return Text(value);
    }
};

TEST(Properties, ReachMeshesInstancesSetsAndBodiesAndTheDatabase)
{
    for (char const* const id : {"m", "i", "g", "b"})
    {
        PropertyScene scene(Property("p1", id, "ACME"));
        scene.Begin();
        EXPECT_THAT(scene.PropertyIdsOf(id), ElementsAre("p1")) << id;
        EXPECT_EQ(scene.InDatabase("p1"), "ACME") << id;
    }
}

TEST(Properties, OfAnyOtherObjectAreDropped)
{
    for (char const* id : {"f", "a", "p", "s", "t"})
    {
        PropertyScene scene(Property("p1", id));
        scene.Begin();
        EXPECT_THAT(scene.PropertyIdsOf(id), IsEmpty()) << id;
        EXPECT_FALSE(scene.InDatabase("p1")) << id;
    }
}

TEST(Properties, OfACurveAreDropped)
{
    TestScene scene(R"(<Scene><IUniverse/><MeshInfo GenerateMesh="True" Path="c.mesh"/><ICurve ID="c"/></Scene>)");
    std::string const ray = ByteBuilder().F64(0).F64(0).F64(0).F64(1).F64(0).F64(0).Bytes();
    scene.WithFile("c.mesh", MeshInfoHeader(1).Bytes() + RecordFront(2, "c") + ray)
        .WithFile("scene.kvrproperty", Properties(Property("p1", "c")))
        .Begin();
    EXPECT_TRUE(scene.Get<ICurve>("c").PropertyIds().IsEmpty());
    IProperty const* property = nullptr;
    EXPECT_EQ(scene.Producer().LoadUniverse()->PropertyDatabaseOf()->PropertyAt("p1", property), kIsValueSpecified_No);
}

TEST(Properties, OfAnUnknownObjectAreDropped)
{
    PropertyScene scene(Property("p1", "nobody") + Property("p2", "") + Property("p3", "m"));
    scene.Begin();
    EXPECT_FALSE(scene.InDatabase("p1"));
    EXPECT_FALSE(scene.InDatabase("p2"));
    EXPECT_TRUE(scene.InDatabase("p3"));
}

TEST(Properties, OfOneObjectStandInTheOrderOfTheFileWithRepeats)
{
    PropertyScene scene(Property("b", "m", "1") + Property("x", "i") + Property("a", "m", "2") +
                        Property("b", "m", "3"));
    scene.Begin();
    EXPECT_THAT(scene.PropertyIdsOf("m"), ElementsAre("b", "a", "b"));
    EXPECT_THAT(scene.PropertyIdsOf("i"), ElementsAre("x"));
    EXPECT_EQ(scene.InDatabase("b"), "1") << "of several with one id the first is answered";
}

TEST(Properties, OfOneIdMayBelongToTwoObjects)
{
    PropertyScene scene(Property("b", "m", "1") + Property("b", "i", "2"));
    scene.Begin();
    EXPECT_THAT(scene.PropertyIdsOf("m"), ElementsAre("b"));
    EXPECT_THAT(scene.PropertyIdsOf("i"), ElementsAre("b"));
    EXPECT_EQ(scene.InDatabase("b"), "1");
}

TEST(Properties, OfIdsThatDifferInCaseAloneAreThoseOfTwoObjects)
{
    TestScene scene("<Scene><IGeometricSet ID='g'/><IGeometricSet ID='G'/></Scene>");
    scene.WithFile("scene.kvrproperty", Properties(Property("p0", "g", "1") + Property("p1", "G", "2"))).Begin();
    EXPECT_THAT(Ids(scene.Get<IGeometricSet>("g").PropertyIds()), ElementsAre("p0"));
    EXPECT_THAT(Ids(scene.Get<IGeometricSet>("G").PropertyIds()), ElementsAre("p1"));
}

TEST(Properties, OfTheEmptyIdReachTheObjectWithoutAnId)
{
    TestScene scene("<Scene><IPart ID='p'/><IInstance Label='nameless'><Child ID='p'/></IInstance></Scene>");
    scene.WithFile("scene.kvrproperty", Properties(Property("p0", "", "1") + Property("p1", "", "2"))).Begin();
    EXPECT_THAT(Ids(scene.Get<IInstance>("").PropertyIds()), ElementsAre("p0", "p1"));
}

TEST(Properties, ThatMakeNoneArePassedOver)
{
    PropertyScene scene("<Property ObjectID=\"m\"/><Property ID=\"p0\"/>" +
                        std::string(R"(<Property ID="p1" ObjectID="m" Type="kInt" Value="many"/>)") +
                        Property("p2", "m"));
    scene.Begin();
    EXPECT_THAT(scene.PropertyIdsOf("m"), ElementsAre("p2"));
}

TEST(Properties, AreListedWithoutAUniverseAndNoDatabaseAnswers)
{
    PropertyScene scene(Property("p1", "m"), "");
    scene.Begin();
    EXPECT_EQ(scene.Producer().LoadUniverse(), nullptr);
    EXPECT_THAT(scene.PropertyIdsOf("m"), ElementsAre("p1"));
}

TEST(Properties, GoToTheLastUniverse)
{
    PropertyScene scene(Property("p1", "m", "x"), "<IUniverse/><IUniverse/>");
    scene.Begin();
    EXPECT_EQ(scene.InDatabase("p1"), "x");
}

TEST(Properties, AreFoundByTheIdThatTheObjectReports)
{
    // Under new ids the instance is no longer "i".
    PropertyScene byOldId(Property("p1", "i"));
    byOldId.WithPrefix("P").Begin();
    EXPECT_FALSE(byOldId.InDatabase("p1"));
    std::string all;
    for (int i = 1; i < 12; ++i)
        all += Property("of" + std::to_string(i), "P" + std::to_string(i));
    PropertyScene byNewId(all);
    byNewId.WithPrefix("P").Begin();
    int found = 0;
    for (int i = 1; i < 12; ++i)
    {
        std::string const id = "P" + std::to_string(i);
        if (auto* const instance = dynamic_cast<IInstance*>(byNewId.Producer().Load(id.c_str())))
        {
            ++found;
            EXPECT_THAT(Ids(instance->PropertyIds()), ElementsAre("of" + std::to_string(i)));
        }
    }
    EXPECT_EQ(found, 1);
}

TEST(Properties, AMissingFileIsAnEmptyOne)
{
    TestScene scene(R"(<Scene><IUniverse/><IPart ID="p" Label=""/></Scene>)");
    scene.Begin();
    IProperty const* property = nullptr;
    EXPECT_EQ(scene.Producer().LoadUniverse()->PropertyDatabaseOf()->PropertyAt("p1", property), kIsValueSpecified_No);
}

TEST(Properties, WhatStoodBeforeAnErrorCounts)
{
    PropertyScene scene("");
    scene.WithFile("scene.kvrproperty", "<Properties>" + Property("p1", "m") + Property("p2", "i") + "<Property")
        .Begin();
    EXPECT_THAT(scene.PropertyIdsOf("m"), ElementsAre("p1"));
    EXPECT_THAT(scene.PropertyIdsOf("i"), ElementsAre("p2"));
}

TEST(Properties, DoNotOutliveTheirProducer)
{
    PropertyScene scene(Property("taken", "m") + Property("dropped", "f") + Property("unknown", "nobody"));
    scene.Begin();
    EXPECT_TRUE(scene.InDatabase("taken"));
    scene.Producer().EndProcess();
    EXPECT_EQ(scene.Producer().LoadUniverse(), nullptr);
}

TEST(Properties, StayInTheDatabaseWhenTheirObjectIsDisposedOf)
{
    PropertyScene scene(Property("p1", "m", "x"));
    scene.Begin();
    scene.Producer().Dispose("m");
    EXPECT_EQ(scene.InDatabase("p1"), "x");
}

TEST(Properties, AFileOfAnyLengthDoesNoHarm)
{
    std::string const whole = Properties(Property("p1", "m") + Property("p2", "i"));
    std::size_t const firstEnd = std::string("<Properties>" + Property("p1", "m")).size();
    ForEachPrefix(whole,
                  [&](std::string_view prefix)
                  {
                      PropertyScene scene("");
                      scene.WithFile("scene.kvrproperty", prefix).Begin();
                      EXPECT_EQ(scene.PropertyIdsOf("m").size(), prefix.size() >= firstEnd ? 1U : 0U)
                          << prefix.size() << " bytes";
                  });
}

TEST(Properties, AFileWithAnyByteChangedDoesNoHarm)
{
    ForEachFlip(Properties(Property("p1", "m") + Property("p2", "i")),
                [](std::string_view damaged, std::size_t place)
                {
                    PropertyScene scene("");
                    scene.WithFile("scene.kvrproperty", damaged).Begin();
                    EXPECT_LE(scene.PropertyIdsOf("m").size() + scene.PropertyIdsOf("i").size(), 2U) << place;
                });
}

TEST(Properties, AHundredThousandOfOneObjectAreRead)
{
    constexpr int kMany = 100'000;
    std::string all;
    for (int i = 0; i < kMany; ++i)
        all += Property("p" + std::to_string(i), "m", std::to_string(i));
    PropertyScene scene(all);
    scene.Begin();
    EXPECT_EQ(scene.Get<IPolygonMesh>("m").PropertyIds().Size(), static_cast<unsigned long long>(kMany));
    EXPECT_EQ(scene.InDatabase("p0"), "0");
    EXPECT_EQ(scene.InDatabase("p99999"), "99999");
}

// A property that says when it ends.
class Watched final : public IProperty
{
public:
    explicit Watched(bool& isGone) : m_isGone(isGone) {}
    UTF8String Id() const override { return "watched"; }
    UTF16String Name() const override { return {}; }
    PropertyTypeEnum Type() const override { return kPropertyType_String; }
    IsValueSpecifiedEnum Value(UTF16String&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum Value(int&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum Value(double&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum Value(bool&) const override { return kIsValueSpecified_No; }
    IsValueSpecifiedEnum Value(struct tm&) const override { return kIsValueSpecified_No; }

private:
    ~Watched() override { m_isGone = true; }
    bool& m_isGone;
};

template <class Class>
void ExpectAppendedToObjectAndDatabase(char const* id)
{
    bool isGone = false;
    auto const* const property = new Watched(isGone);
    PropertyScene scene("");
    scene.Begin();
    auto& object = dynamic_cast<Class&>(scene.Get<IObject>(id));
    object.AppendProperty(property);
    property->Release();
    EXPECT_THAT(scene.PropertyIdsOf(id), ElementsAre("watched"));
    EXPECT_EQ(scene.InDatabase("watched"), "") << "the database has it";
    object.AppendProperty(nullptr);
    EXPECT_THAT(scene.PropertyIdsOf(id), ElementsAre("watched"));
    EXPECT_FALSE(isGone);
    scene.Producer().EndProcess();
    EXPECT_TRUE(isGone) << "the database alone held it";
}

TEST(AppendProperty, OfAMeshInstanceOrSetListsTheIdAndReachesTheDatabase)
{
    ExpectAppendedToObjectAndDatabase<XMLPolygonMesh>("m");
    ExpectAppendedToObjectAndDatabase<XMLInstance>("i");
    ExpectAppendedToObjectAndDatabase<XMLGeometricSet>("g");
}

TEST(AppendProperty, OfABodyListsTheIdAlone)
{
    bool isGone = false;
    auto const* const property = new Watched(isGone);
    PropertyScene scene("");
    scene.Begin();
    auto& body = dynamic_cast<XMLBrep&>(scene.Get<IBrep>("b"));
    body.AppendProperty(nullptr);
    EXPECT_THAT(scene.PropertyIdsOf("b"), IsEmpty());
    body.AppendProperty(property);
    body.AppendProperty(property);
    EXPECT_THAT(scene.PropertyIdsOf("b"), ElementsAre("watched", "watched"));
    EXPECT_FALSE(scene.InDatabase("watched"));
    property->Release();
    EXPECT_TRUE(isGone);
}

TEST(AddPropertyId, AppendsTheIdWithRepeatsAndNothingForNull)
{
    bool isGone = false;
    auto const* const property = new Watched(isGone);
    IdSet ids;
    ids.AddWithoutUniquenessCheck("first");
    AddPropertyId(nullptr, ids);
    EXPECT_THAT(Ids(ids), ElementsAre("first"));
    AddPropertyId(property, ids);
    AddPropertyId(property, ids);
    EXPECT_THAT(Ids(ids), ElementsAre("first", "watched", "watched"));
    property->Release();
    EXPECT_TRUE(isGone);
}

TEST(AddPropertyToDatabase, DoesNothingWithoutPropertyProducerOrUniverse)
{
    bool isGone = false;
    auto const* const property = new Watched(isGone);
    XMLProducerImpl producer(UTF16String(), nullptr);
    AddPropertyToDatabase(nullptr, &producer);
    AddPropertyToDatabase(property, nullptr);
    AddPropertyToDatabase(property, &producer);
    EXPECT_FALSE(isGone);
    property->Release();
    EXPECT_TRUE(isGone) << "nobody else held it";
}

TEST(AddPropertyToDatabase, TheDatabaseSharesThePropertyUntilTheEnd)
{
    bool isGone = false;
    auto const* const property = new Watched(isGone);
    PropertyScene scene("");
    XMLProducerImpl producer(Wide(scene.Path().c_str()), nullptr);
    producer.BeginProcess(nullptr);
    AddPropertyToDatabase(property, &producer);
    property->Release();
    EXPECT_FALSE(isGone);
    producer.EndProcess();
    EXPECT_TRUE(isGone);
}

}  // namespace

}  // namespace KVR::Test
