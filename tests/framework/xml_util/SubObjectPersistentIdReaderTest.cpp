#include "framework/xml_util/SubObjectPersistentIdReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/xml_util/XMLPlatform.h"
#include "tests/framework/xml_util/AllocationMeter.h"
#include "tests/framework/xml_util/Damage.h"
#include "tests/support/ParsedDocument.h"
#include "tests/support/TempFolder.h"

namespace
{

using namespace KVR;
using Test::ParsedDocument;
using Test::TempFolder;

using Entries = std::vector<std::pair<std::string, std::string>>;
using Objects = std::map<std::string, Entries>;

Entries EntriesOf(DataIdToPersistentIdMap const& map)
{
    Entries entries;
    for (unsigned long long i = 0; i < map.Size(); ++i)
        entries.emplace_back(map.DataIdAt(i).View(), map.PersistentIdAt(i).View());
    return entries;
}

class PersistentIdFile : public testing::Test
{
protected:
    ~PersistentIdFile() override { Forget(); }

    // What the reader adds to `m_maps` from a file of these bytes, and whether it answers that all is well.
    bool Load(std::string_view bytes)
    {
        m_folder.Write("ids.xml", bytes);
        return LoadFile("ids.xml");
    }
    bool LoadFile(std::string_view name)
    {
        return SubObjectPersistentIdReader().LoadSubObjectPersistentIds(m_folder.PathOf(name), m_maps);
    }
    Objects Loaded() const
    {
        Objects objects;
        for (auto const& [id, map] : m_maps)
            objects[std::string(id.View())] = EntriesOf(*map);
        return objects;
    }
    // What a file of these bytes gives, whatever the reader answers.
    Objects LoadAfresh(std::string_view bytes)
    {
        Forget();
        static_cast<void>(Load(bytes));
        return Loaded();
    }
    void Forget()
    {
        for (auto const& entry : m_maps)
            delete entry.second;
        m_maps.clear();
    }

    TempFolder m_folder;
    std::map<UTF8String, EditableDataIdToPersistentIdMap*> m_maps;

private:
    XMLPlatformScope m_platform;
};

constexpr std::string_view kFile = R"(<?xml version="1.0"?>
<Ids>
  <SubObjectPersistentIds ID="brep1">
    <SubObject DataId="face7" PersistentId="a1b2c3"/>
    <SubObject DataId="edge2" PersistentId="Räder"/>
  </SubObjectPersistentIds>
  <SubObjectPersistentIds ID="brep2">
    <SubObject DataId="face7" PersistentId="other"/>
  </SubObjectPersistentIds>
</Ids>
)";

Objects const kWhole = {{"brep1", {{"face7", "a1b2c3"}, {"edge2", "Räder"}}}, {"brep2", {{"face7", "other"}}}};

TEST_F(PersistentIdFile, GivesAMapForEachObject)
{
    EXPECT_TRUE(Load(kFile));
    EXPECT_EQ(Loaded(), kWhole);
    UTF8String persistentId;
    EXPECT_EQ(m_maps.at("brep1")->PersistentId("edge2", persistentId), kIsValueSpecified_Yes);
    EXPECT_EQ(persistentId, UTF8String("Räder"));
}

TEST_F(PersistentIdFile, KeepsTheOrderOfItsEntries)
{
    EXPECT_TRUE(Load(R"(<r><SubObjectPersistentIds ID="o"><SubObject DataId="z" PersistentId="1"/>
        <SubObject DataId="a" PersistentId="2"/><SubObject DataId="m" PersistentId="1"/></SubObjectPersistentIds></r>)"));
    EXPECT_EQ(Loaded(), (Objects{{"o", {{"z", "1"}, {"a", "2"}, {"m", "1"}}}}));
}

TEST_F(PersistentIdFile, KeepsTheFirstValueOfARepeatedDataId)
{
    EXPECT_TRUE(Load(R"(<r><SubObjectPersistentIds ID="o"><SubObject DataId="a" PersistentId="first"/>
        <SubObject DataId="b" PersistentId="2"/><SubObject DataId="a" PersistentId="second"/>
        </SubObjectPersistentIds></r>)"));
    EXPECT_EQ(Loaded(), (Objects{{"o", {{"a", "first"}, {"b", "2"}}}}));
}

TEST_F(PersistentIdFile, JoinsTheElementsOfOneObject)
{
    EXPECT_TRUE(Load(R"(<r><SubObjectPersistentIds ID="o"><SubObject DataId="a" PersistentId="1"/>
        </SubObjectPersistentIds><SubObjectPersistentIds ID="p"/><SubObjectPersistentIds ID="o">
        <SubObject DataId="a" PersistentId="2"/><SubObject DataId="b" PersistentId="3"/></SubObjectPersistentIds></r>)"));
    EXPECT_EQ(Loaded(), (Objects{{"o", {{"a", "1"}, {"b", "3"}}}, {"p", {}}}));
}

TEST_F(PersistentIdFile, AddsToTheMapsThatAreThere)
{
    EXPECT_TRUE(Load(R"(<r><SubObjectPersistentIds ID="o"><SubObject DataId="a" PersistentId="1"/>
        </SubObjectPersistentIds></r>)"));
    EditableDataIdToPersistentIdMap const* const former = m_maps.at("o");
    EXPECT_TRUE(Load(R"(<r><SubObjectPersistentIds ID="o"><SubObject DataId="a" PersistentId="2"/>
        <SubObject DataId="b" PersistentId="3"/></SubObjectPersistentIds></r>)"));
    EXPECT_EQ(m_maps.at("o"), former);
    EXPECT_EQ(Loaded(), (Objects{{"o", {{"a", "1"}, {"b", "3"}}}}));
}

TEST_F(PersistentIdFile, GivesAnEmptyMapForAnObjectWithoutEntries)
{
    EXPECT_TRUE(Load("<r><SubObjectPersistentIds ID='o'/></r>"));
    EXPECT_EQ(Loaded(), (Objects{{"o", {}}}));
}

TEST_F(PersistentIdFile, LeavesOutAnElementWithoutAnId)
{
    EXPECT_TRUE(Load(R"(<r><SubObjectPersistentIds><SubObject DataId="a" PersistentId="1"/></SubObjectPersistentIds>
        <SubObjectPersistentIds ID=""><SubObject DataId="b" PersistentId="2"/></SubObjectPersistentIds></r>)"));
    EXPECT_EQ(Loaded(), (Objects{{"", {{"b", "2"}}}}));
}

TEST_F(PersistentIdFile, LeavesOutAnEntryThatLacksAnAttribute)
{
    EXPECT_TRUE(Load(R"(<r><SubObjectPersistentIds ID="o"><SubObject DataId="a"/><SubObject PersistentId="1"/>
        <SubObject/><SubObject dataid="a" persistentid="1"/><SubObject DataId="" PersistentId=""/>
        <SubObject DataId="b" PersistentId="2"/></SubObjectPersistentIds></r>)"));
    EXPECT_EQ(Loaded(), (Objects{{"o", {{"", ""}, {"b", "2"}}}}));
}

TEST_F(PersistentIdFile, IsReadAtItsOwnLevelsAlone)
{
    EXPECT_TRUE(Load(R"(<SubObjectPersistentIds ID="root"><SubObject DataId="r" PersistentId="1"/>
        <Group><SubObjectPersistentIds ID="deep"><SubObject DataId="d" PersistentId="1"/></SubObjectPersistentIds></Group>
        <subobjectpersistentids ID="case"/><?SubObjectPersistentIds ID="p"?><!--<SubObjectPersistentIds ID="c"/>-->
        <SubObjectPersistentIds ID="o"><Group><SubObject DataId="g" PersistentId="1"/></Group>
        <?SubObject DataId="p" PersistentId="1"?><subobject DataId="c" PersistentId="1"/>
        <SubObject DataId="a" PersistentId="1"><SubObject DataId="i" PersistentId="1"/></SubObject>
        </SubObjectPersistentIds><SubObject DataId="s" PersistentId="1"/></SubObjectPersistentIds>)"));
    EXPECT_EQ(Loaded(), (Objects{{"o", {{"a", "1"}}}}));
}

TEST_F(PersistentIdFile, ThatCannotBeOpenedFails)
{
    m_folder.MakeFolder("folder.xml");
    m_folder.MakeFifo("fifo.xml");
    for (char const* const name : {"missing.xml", "folder.xml", "fifo.xml", "", "no/such/folder.xml"})
        EXPECT_FALSE(LoadFile(name)) << name;
    EXPECT_EQ(Loaded(), Objects());
}

TEST_F(PersistentIdFile, IsFoundByANameInAnyScript)
{
    m_folder.Write("meine Räder/日本 😀.xml", kFile);
    EXPECT_TRUE(LoadFile("meine Räder/日本 😀.xml"));
    EXPECT_EQ(Loaded(), kWhole);
}

TEST_F(PersistentIdFile, IsEmptyOrDamagedWithoutHarm)
{
    for (char const* const bytes : {"", " ", "text", "<", "<r>", "<r></s>", "\xFF\xFE", "KVRASSET"})
        EXPECT_FALSE(Load(bytes)) << bytes;
    EXPECT_TRUE(Load("<r/>"));
    EXPECT_EQ(Loaded(), Objects());
}

TEST_F(PersistentIdFile, EndsAtADocumentType)
{
    EXPECT_FALSE(Load("<!DOCTYPE r [<!ENTITY e 'E'>]><r><SubObjectPersistentIds ID='o'/></r>"));
    EXPECT_EQ(Loaded(), Objects());
}

// The entries that stand whole within so many first bytes of the file.
Objects WholeWithin(std::size_t length)
{
    auto const isIn = [length](std::string_view text) { return kFile.find(text) + text.size() <= length; };
    Objects objects;
    if (isIn("ID=\"brep1\">"))
        objects["brep1"];
    if (isIn("PersistentId=\"a1b2c3\"/>"))
        objects["brep1"].emplace_back("face7", "a1b2c3");
    if (isIn("PersistentId=\"Räder\"/>"))
        objects["brep1"].emplace_back("edge2", "Räder");
    if (isIn("ID=\"brep2\">"))
        objects["brep2"];
    if (isIn("PersistentId=\"other\"/>"))
        objects["brep2"].emplace_back("face7", "other");
    return objects;
}

TEST_F(PersistentIdFile, GivesWhatStandsWholeInFrontOfItsEnd)
{
    std::size_t const endOfRoot = kFile.find("</Ids>") + 6;
    ForEachPrefix(kFile,
                  [&](std::string_view prefix)
                  {
                      Forget();
                      EXPECT_EQ(Load(prefix), prefix.size() >= endOfRoot) << prefix.size();
                      EXPECT_EQ(Loaded(), WholeWithin(prefix.size())) << prefix.size();
                  });
}

TEST_F(PersistentIdFile, GivesWhatStandsInFrontOfAByteThatChanged)
{
    ForEachFlip(kFile,
                [this](std::string_view damaged, std::size_t place)
                {
                    Objects const objects = LoadAfresh(damaged);
                    for (auto const& [id, front] : WholeWithin(place))
                    {
                        ASSERT_EQ(objects.count(id), 1U) << place;
                        Entries const& entries = objects.at(id);
                        ASSERT_GE(entries.size(), front.size()) << place;
                        EXPECT_TRUE(std::equal(front.begin(), front.end(), entries.begin())) << place;
                    }
                    EXPECT_LE(objects.size(), 2U) << place;
                });
}

TEST_F(PersistentIdFile, IsStreamedAndNotHeld)
{
    std::string xml = "<Ids>";
    for (int i = 0; i < 100000; ++i)
        xml += "<SubObjectPersistentIds><SubObject DataId=\"face" + std::to_string(i) +
               "\" PersistentId=\"p\"/></SubObjectPersistentIds>\n";
    xml += "</Ids>";
    m_folder.Write("ids.xml", xml);
    AllocationMeter const meter;
    bool const isLoaded = LoadFile("ids.xml");
    std::ptrdiff_t const peak = meter.Peak();
    EXPECT_TRUE(isLoaded);
    EXPECT_LT(static_cast<std::size_t>(peak), xml.size() / 4);
}

TEST_F(PersistentIdFile, OfManyEntriesIsReadInLinearTime)
{
    // A search of all former entries for each of them would not end within the time that a test is given.
    constexpr unsigned kCount = 200000;
    std::string xml = "<Ids><SubObjectPersistentIds ID='o'>";
    for (unsigned i = 0; i < kCount; ++i)
        xml += "<SubObject DataId='face" + std::to_string(i) + "' PersistentId='p" + std::to_string(i) + "'/>";
    EXPECT_TRUE(Load(xml + "</SubObjectPersistentIds></Ids>"));
    ASSERT_EQ(m_maps.at("o")->Size(), kCount);
    UTF8String persistentId;
    EXPECT_EQ(m_maps.at("o")->PersistentId("face199999", persistentId), kIsValueSpecified_Yes);
    EXPECT_EQ(persistentId, UTF8String("p199999"));
}

// What one element of a scene adds to a map that holds an entry already.
Entries EntriesFrom(char const* xml)
{
    ParsedDocument const document(xml);
    EditableDataIdToPersistentIdMap map;
    map.Add("former", "0");
    SubObjectPersistentIdReader().ReadSubObjectPersistentIdsFromXML(document.Root(), map);
    Entries entries = EntriesOf(map);
    EXPECT_FALSE(entries.empty());
    entries.erase(entries.begin());
    return entries;
}

TEST(PersistentIdElement, IsReadFromTheObjectThatHoldsIt)
{
    EXPECT_EQ(EntriesFrom(R"(<IBrep ID="b">text<Other/><SubObjectPersistentIds ID="any"><SubObject DataId="f"
        PersistentId="1"/><SubObject DataId="e" PersistentId="2"/></SubObjectPersistentIds></IBrep>)"),
              (Entries{{"f", "1"}, {"e", "2"}}));
}

TEST(PersistentIdElement, NeedsNoId)
{
    EXPECT_EQ(EntriesFrom(R"(<IBrep><SubObjectPersistentIds><SubObject DataId="f" PersistentId="1"/>
        </SubObjectPersistentIds></IBrep>)"),
              (Entries{{"f", "1"}}));
}

TEST(PersistentIdElement, MayBeTheNodeItself)
{
    EXPECT_EQ(EntriesFrom(R"(<SubObjectPersistentIds><SubObject DataId="f" PersistentId="1"/>
        <SubObjectPersistentIds><SubObject DataId="inner" PersistentId="1"/></SubObjectPersistentIds>
        </SubObjectPersistentIds>)"),
              (Entries{{"f", "1"}}));
}

TEST(PersistentIdElement, MayStandSeveralTimesWithTheFirstValuesKept)
{
    EXPECT_EQ(EntriesFrom(R"(<IBrep><SubObjectPersistentIds><SubObject DataId="f" PersistentId="1"/>
        </SubObjectPersistentIds><SubObjectPersistentIds><SubObject DataId="former" PersistentId="new"/>
        <SubObject DataId="f" PersistentId="2"/><SubObject DataId="g" PersistentId="3"/></SubObjectPersistentIds></IBrep>)"),
              (Entries{{"f", "1"}, {"g", "3"}}));
}

TEST(PersistentIdElement, LeavesOutAnEntryThatLacksAnAttribute)
{
    EXPECT_EQ(EntriesFrom(R"(<IBrep><SubObjectPersistentIds><SubObject DataId="a"/><SubObject PersistentId="1"/>
        <SubObject/><SubObject DataId="b" PersistentId=""/></SubObjectPersistentIds></IBrep>)"),
              (Entries{{"b", ""}}));
}

TEST(PersistentIdElement, IsNothingElseThatBearsItsName)
{
    EXPECT_EQ(EntriesFrom(R"(<!DOCTYPE IBrep [
          <!ENTITY SubObjectPersistentIds "<SubObjectPersistentIds><SubObject DataId='e' PersistentId='1'/></SubObjectPersistentIds>">
          <!ENTITY SubObject "<SubObject DataId='s' PersistentId='1'/>"> ]>
        <IBrep><?SubObjectPersistentIds ID="p"?>&SubObjectPersistentIds;<!--SubObjectPersistentIds-->
        <subobjectpersistentids><SubObject DataId="c" PersistentId="1"/></subobjectpersistentids>
        <Group><SubObjectPersistentIds><SubObject DataId="d" PersistentId="1"/></SubObjectPersistentIds></Group>
        <SubObjectPersistentIds><?SubObject DataId="p" PersistentId="1"?>&SubObject;<SubObject DataId="own" PersistentId="1"/>
        </SubObjectPersistentIds></IBrep>)"),
              (Entries{{"own", "1"}}));
}

TEST(PersistentIdElement, OfANullNodeAddsNothing)
{
    EditableDataIdToPersistentIdMap map;
    SubObjectPersistentIdReader().ReadSubObjectPersistentIdsFromXML(nullptr, map);
    EXPECT_EQ(map.Size(), 0U);
}

}  // namespace
