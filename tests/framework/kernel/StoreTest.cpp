// Saving and restoring of entities, in both forms of a store.

#include <gtest/gtest.h>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRep_Builder.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Shape.hxx>
#include <cstdio>
#include <gp_Ax1.hxx>
#include <gp_Trsf.hxx>
#include <memory>
#include <string>

#include "framework/kernel/data_ids.h"
#include "framework/kernel/entity.h"
#include "framework/kernel/entity_list.h"
#include "framework/kernel/global_data.h"
#include "framework/kernel/history_stream.h"
#include "framework/kernel/restore.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/RareShapes.h"
#include "tests/support/Shapes.h"

namespace KVR::Test
{

namespace
{

class KernelStore : public testing::TestWithParam<bool>
{
protected:
    bool IsText() const { return GetParam(); }
    std::string Saved(std::vector<std::unique_ptr<ENTITY>> const& entities) const
    {
        return StoreBytes(entities, IsText());
    }
    RestoredStore Restored(std::string const& bytes, bool allowsInsecure = false) const
    {
        return RestoredStore(bytes, IsText(), allowsInsecure);
    }
};

std::unique_ptr<BODY> BoxBody(char const* dataId)
{
    auto body = std::make_unique<BODY>(BoxShape(1, 2, 3));
    body->AddDataId(dataId);
    return body;
}

std::vector<std::unique_ptr<ENTITY>> OneBox()
{
    std::vector<std::unique_ptr<ENTITY>> entities;
    entities.push_back(BoxBody("box"));
    return entities;
}

TEST_P(KernelStore, EveryKindOfShapeComesBackEqual)
{
    std::vector<NamedShape> const shapes = AllShapes();
    std::vector<std::unique_ptr<ENTITY>> entities;
    for (NamedShape const& shape : shapes)
    {
        entities.push_back(std::make_unique<BODY>(*shape.shape));
        entities.back()->AddDataId(shape.name);
    }
    RestoredStore const store = Restored(Saved(entities));
    ASSERT_TRUE(store.result.ok()) << store.result.message();
    EXPECT_FALSE(store.isInsecure);
    ASSERT_EQ(store.entities->count(), static_cast<int>(shapes.size()));
    for (int i = 0; i < store.entities->count(); ++i)
    {
        NamedShape const& expected = shapes[static_cast<std::size_t>(i)];
        ENTITY const& entity = *(*store.entities)[i];
        EXPECT_EQ(entity.DataIds(), std::vector<std::string>{expected.name});
        EXPECT_EQ(entity.Shape().ShapeType(), expected.shape->ShapeType()) << expected.name;
        ExpectEqualFacts(FactsOf(entity.Shape()), FactsOf(*expected.shape), expected.name);
    }
}

TEST_P(KernelStore, FacesAndEdgesKeepTheirDataIds)
{
    auto body = BoxBody("box");
    body->AddFaceDataId(0, "bottom");
    body->AddFaceDataId(5, "top");
    body->AddFaceDataId(5, "top again");
    body->AddEdgeDataId(11, "last edge");
    body->AddFaceDataId(99, "no such face");
    std::vector<std::unique_ptr<ENTITY>> entities;
    entities.push_back(std::move(body));
    RestoredStore const store = Restored(Saved(entities));
    auto const* const restored = GMK::BODY_xs((*store.entities)[0]).body;
    ASSERT_TRUE(restored);
    BODY::Faces const& faces = restored->FaceList();
    BODY::Edges const& edges = restored->EdgeList();
    ASSERT_EQ(faces.size(), 6U);
    ASSERT_EQ(edges.size(), 12U);
    EXPECT_EQ(faces[0]->DataIds(), std::vector<std::string>{"bottom"});
    EXPECT_EQ(faces[5]->DataIds(), (std::vector<std::string>{"top", "top again"}));
    EXPECT_EQ(edges[11]->DataIds(), std::vector<std::string>{"last edge"});
    EXPECT_TRUE(faces[1]->DataIds().empty());
    // The same faces as those that the ids were given to.
    for (std::size_t i = 0; i < faces.size(); ++i)
        ExpectEqualFacts(FactsOf(faces[i]->Shape()),
                         FactsOf(static_cast<BODY const&>(*entities[0]).FaceList()[i]->Shape()), std::to_string(i));
}

TEST_P(KernelStore, AllKindsOfEntitiesComeBackInTheirOrder)
{
    BODY const box(BoxShape(1, 1, 1));
    std::vector<std::unique_ptr<ENTITY>> entities;
    entities.push_back(std::make_unique<EDGE>(ArcEdge()));
    entities.push_back(std::make_unique<FACE>(box.FaceList()[2]->Shape()));
    entities.push_back(BoxBody("a"));
    entities.push_back(BoxBody("a"));
    RestoredStore const store = Restored(Saved(entities));
    ASSERT_EQ(store.entities->count(), 4);
    EXPECT_EQ((*store.entities)[0]->Kind(), kEntity_Edge);
    EXPECT_EQ((*store.entities)[1]->Kind(), kEntity_Face);
    EXPECT_EQ((*store.entities)[2]->Kind(), kEntity_Body);
    EXPECT_TRUE((*store.entities)[0]->DataIds().empty());
}

TEST_P(KernelStore, DataIdsAreAnyBytes)
{
    std::vector<std::unique_ptr<ENTITY>> entities;
    std::string const strange("line\nend, \0 and é 漢", 22);
    entities.push_back(std::make_unique<BODY>(BoxShape(1, 1, 1)));
    entities.back()->AddDataId(strange);
    entities.back()->AddDataId("");
    RestoredStore const store = Restored(Saved(entities));
    ASSERT_EQ(store.entities->count(), 1);
    EXPECT_EQ((*store.entities)[0]->DataIds(), (std::vector<std::string>{strange, ""}));
}

TEST_P(KernelStore, WithoutEntitiesItIsEmptyAndGood)
{
    RestoredStore const store = Restored(Saved({}));
    EXPECT_TRUE(store.result.ok()) << store.result.message();
    EXPECT_EQ(store.entities->count(), 0);
}

TEST_P(KernelStore, RestoredEntitiesBelongToTheActiveStream)
{
    RestoredStore store = Restored(Saved(OneBox()));
    EXPECT_EQ(store.stream->EntityCount(), 1U);
    EXPECT_EQ((*store.entities)[0]->Stream(), store.stream.get());
    store.stream->Clear();
    EXPECT_EQ(store.stream->EntityCount(), 0U);
}

TEST_P(KernelStore, WithoutAnActiveStreamNothingIsRestored)
{
    std::string const bytes = Saved(OneBox());
    StoreFileOfBytes const file(bytes);
    ENTITY_LIST entities(false);
    EXPECT_FALSE(GKI_RESTORE(file.File(), IsText(), -1).execute_restore(entities).ok());
    EXPECT_EQ(entities.count(), 0);
}

TEST_P(KernelStore, TheOtherFormIsNoStore)
{
    std::string const bytes = Saved(OneBox());
    RestoredStore const store(bytes, !IsText(), true);
    EXPECT_EQ(store.result.error_number(), outcome::kBadStore);
    EXPECT_EQ(store.entities->count(), 0);
    EXPECT_FALSE(store.isInsecure);
}

TEST_P(KernelStore, EveryPrefixIsEmptyAndHarmless)
{
    std::string const bytes = Saved(OneBox());
    for (std::size_t length = 0; length < bytes.size(); length += length < 200 ? 1 : 37)
    {
        RestoredStore const store = Restored(bytes.substr(0, length), true);
        ASSERT_EQ(store.entities->count(), 0) << length;
        ASSERT_FALSE(store.isInsecure) << length;
    }
}

TEST_P(KernelStore, BytesBehindTheContentMakeItNoStore)
{
    EXPECT_EQ(Restored(Saved(OneBox()) + "x").result.error_number(), outcome::kBadStore);
}

TEST_P(KernelStore, EveryFlippedByteOfTheContentIsInsecureAndNotDecoded)
{
    std::string const bytes = Saved(OneBox());
    std::size_t const head = IsText() ? 60 : 32;
    for (std::size_t at = head; at < bytes.size(); at += 11)
    {
        std::string damaged = bytes;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x15);
        RestoredStore const store = Restored(damaged);
        ASSERT_TRUE(store.isInsecure) << at;
        ASSERT_EQ(store.result.error_number(), outcome::kInsecureStore) << at;
        ASSERT_EQ(store.entities->count(), 0) << at;
    }
}

TEST_P(KernelStore, EveryFlippedByteOfTheHeadMakesItNoStoreOrInsecure)
{
    std::string const bytes = Saved(OneBox());
    std::size_t const head = IsText() ? 60 : 32;
    for (std::size_t at = 0; at < head; ++at)
    {
        for (int const flip : {0x01, 0x80, 0xFF})
        {
            std::string damaged = bytes;
            damaged[at] = static_cast<char>(damaged[at] ^ flip);
            RestoredStore const store = Restored(damaged);
            ASSERT_FALSE(store.result.ok()) << at;
            ASSERT_EQ(store.entities->count(), 0) << at;
        }
    }
}

// The digest is wrong and the content whole, as when another program wrote the store without one.
TEST_P(KernelStore, AWrongDigestIsLetThroughWhenThatIsAllowed)
{
    std::string bytes = Saved(OneBox());
    std::size_t const digest = IsText() ? 9 + 17 : 16;
    bytes[digest] = bytes[digest] == '1' ? '2' : '1';
    RestoredStore const refused = Restored(bytes);
    EXPECT_TRUE(refused.isInsecure);
    EXPECT_FALSE(refused.isInsecureRestored);
    EXPECT_EQ(refused.entities->count(), 0);
    RestoredStore const allowed = Restored(bytes, true);
    EXPECT_TRUE(allowed.isInsecure);
    EXPECT_TRUE(allowed.isInsecureRestored);
    EXPECT_EQ(allowed.entities->count(), 1);
}

// With a digest that fits, so that the table itself is what has to hold.
TEST_P(KernelStore, HostileCountsInTheTableMakeAnEmptyList)
{
    for (char const* const count : {"2147483648", "4294967296", "1099511627776", "9223372036854775808",
                                    "18446744073709551615", "99999999999999999999"})
    {
        std::string content;
        if (IsText())
            content = std::string(count) + "\n";
        else
            content = WordBytes(std::strtoull(count, nullptr, 10));
        EXPECT_EQ(Restored(WithHead(content, IsText())).result.error_number(), outcome::kBadStore) << count;
        std::string const zero = IsText() ? "0\n" : WordBytes(0);
        std::string const one = IsText() ? "1\n" : WordBytes(1);
        // One entity, a body, with so many data ids.
        EXPECT_EQ(Restored(WithHead(one + zero + content, IsText())).entities->count(), 0) << count;
        // One data id of so many bytes.
        EXPECT_EQ(Restored(WithHead(one + zero + one + content, IsText())).entities->count(), 0) << count;
    }
}

// The store of a body whose first face has a data id, with one piece of its content replaced.
TEST_P(KernelStore, WhatATableSaysOfFacesAndKindsHasToBeSo)
{
    std::vector<std::unique_ptr<ENTITY>> entities;
    auto body = std::make_unique<BODY>(BoxShape(1, 2, 3));
    body->AddFaceDataId(4000000000, "x");
    entities.push_back(std::move(body));
    std::string const bytes = StoreBytes(entities, IsText());
    std::string const content = bytes.substr(IsText() ? bytes.find('\n') + 1 : 4 * 8);
    auto const word = [&](std::uint64_t value, char behind)
    { return IsText() ? std::to_string(value) + behind : WordBytes(value); };
    auto const resultWith = [&](std::string const& former, std::string const& other)
    {
        std::string changed = content;
        std::size_t const at = changed.find(former);
        EXPECT_NE(at, std::string::npos);
        changed.replace(at, former.size(), other);
        return Restored(WithHead(changed, IsText())).result.error_number();
    };
    std::string const place = word(4000000000, ' ');
    std::string const id = word(1, ' ') + "x";
    EXPECT_EQ(resultWith(place, place), outcome::kGood);
    EXPECT_EQ(resultWith(place, word(4000000001, ' ')), outcome::kGood);
    EXPECT_EQ(resultWith(place, word(5000000000, ' ')), outcome::kBadStore) << "no face has that number";
    EXPECT_EQ(resultWith(place + id, word(4000000000, ' ') + word(1 << 30, ' ') + "x"), outcome::kBadStore);
    std::string const count = word(1, '\n');
    EXPECT_EQ(resultWith(count + place, word(1 << 30, '\n') + place), outcome::kBadStore);
    // The content begins with the number of entities, the kind, and the number of data ids.
    std::string const front = word(1, '\n');
    EXPECT_EQ(resultWith(front + word(kEntity_Body, '\n'), front + word(kEntity_Body, '\n')), outcome::kGood);
    for (ENTITY_KIND const kind : {kEntity_Face, kEntity_Edge, kEntity_Vertex})
        EXPECT_EQ(resultWith(front + word(kEntity_Body, '\n'), front + word(kind, '\n')), outcome::kBadStore) << kind;
    if (IsText())
    {
        EXPECT_EQ(resultWith(id + "\n", id + " "), outcome::kBadStore) << "a text ends with its line";
    }
}

TEST_P(KernelStore, ShapesNestedDeeperThanAThousandAreRefusedHoweverDeep)
{
    EXPECT_EQ(Restored(NestedStoreBytes(900, IsText())).entities->count(), 1);
    for (int const depth : {1100, 20'000})
    {
        RestoredStore const store = Restored(NestedStoreBytes(depth, IsText()));
        EXPECT_EQ(store.entities->count(), 0) << depth;
        EXPECT_EQ(store.result.error_number(), outcome::kBadStore) << depth;
    }
}

TEST_P(KernelStore, AFileThatCannotBeWrittenIsABadOutcome)
{
    ENTITY_LIST entities(false);
    BODY body(BoxShape(1, 1, 1));
    entities.add(&body);
    std::FILE* const full = std::fopen("/dev/full", "wb");
    ASSERT_TRUE(full);
    EXPECT_FALSE(GKI_SAVE(full, IsText()).execute_save(entities).ok());
    std::fclose(full);
    EXPECT_FALSE(GKI_SAVE(nullptr, IsText()).execute_save(entities).ok());
    EXPECT_FALSE(GKI_RESTORE(nullptr, IsText(), -1).execute_restore(entities).ok());
}

INSTANTIATE_TEST_SUITE_P(Form, KernelStore, testing::Bool(),
                         [](testing::TestParamInfo<bool> const& form)
                         { return form.param ? std::string("Text") : std::string("Binary"); });

// Every shape as it is, turned by an angle without an end in its own numbers, and in its place alone: points, ranges,
// tolerances and locations of seventeen digits.
std::vector<std::unique_ptr<ENTITY>> ShapesOfManyDigits()
{
    std::vector<std::unique_ptr<ENTITY>> entities;
    gp_Trsf turn;
    turn.SetRotation(gp_Ax1(gp_Pnt(1.0 / 3.0, -2.0 / 7.0, 0.1), gp_Dir(1, 2, 3)), 0.7);
    for (NamedShape const& shape : RareShapes())
        entities.push_back(std::make_unique<BODY>(*shape.shape));
    for (NamedShape const& shape : AllShapes())
    {
        entities.push_back(std::make_unique<BODY>(*shape.shape));
        entities.push_back(std::make_unique<BODY>(BRepBuilderAPI_Transform(*shape.shape, turn, Standard_True).Shape()));
        entities.push_back(std::make_unique<BODY>(shape.shape->Moved(TopLoc_Location(turn))));
    }
    TopoDS_Edge const edge = TopoDS::Edge(ArcEdge());
    BRep_Builder().UpdateEdge(edge, 1.0 / 3000.0);
    BRep_Builder().Range(edge, 0.1, 1.4 / 3.0);
    entities.push_back(std::make_unique<BODY>(edge));
    return entities;
}

// Of restored entities, as the binary form has it.
std::string Content(ENTITY_LIST const& entities)
{
    std::vector<std::unique_ptr<ENTITY>> bodies;
    for (int i = 0; i < entities.count(); ++i)
        bodies.push_back(std::make_unique<BODY>(entities[i]->Shape()));
    return StoreBytes(bodies, false);
}

TEST(KernelStoreForms, TextAndBinaryRestoreToTheSameNumbersBitByBit)
{
    std::vector<std::unique_ptr<ENTITY>> const entities = ShapesOfManyDigits();
    RestoredStore const text(StoreBytes(entities, true), true, false);
    RestoredStore const binary(StoreBytes(entities, false), false, false);
    ASSERT_TRUE(text.result.ok()) << text.result.message();
    ASSERT_EQ(text.entities->count(), static_cast<int>(entities.size()));
    ASSERT_EQ(binary.entities->count(), text.entities->count());
    // Of rare shapes not all can be measured.
    for (int i = static_cast<int>(RareShapes().size()); i < text.entities->count(); ++i)
    {
        ShapeFacts const ofText = FactsOf((*text.entities)[i]->Shape());
        ShapeFacts const ofBinary = FactsOf((*binary.entities)[i]->Shape());
        EXPECT_EQ(ofText.volume, ofBinary.volume) << i;
        EXPECT_EQ(ofText.area, ofBinary.area) << i;
        EXPECT_EQ(ofText.length, ofBinary.length) << i;
    }
    EXPECT_EQ(Content(*text.entities) == Content(*binary.entities), true) << "in any number";
}

TEST(KernelStoreForms, TextAndBinaryRestoreToEqualEntities)
{
    std::vector<std::unique_ptr<ENTITY>> entities;
    for (NamedShape const& shape : AllShapes())
        entities.push_back(std::make_unique<BODY>(*shape.shape));
    RestoredStore const text(StoreBytes(entities, true), true, false);
    RestoredStore const binary(StoreBytes(entities, false), false, false);
    ASSERT_EQ(text.entities->count(), binary.entities->count());
    for (int i = 0; i < text.entities->count(); ++i)
        ExpectEqualFacts(FactsOf((*text.entities)[i]->Shape()), FactsOf((*binary.entities)[i]->Shape()),
                         std::to_string(i));
}

}  // namespace

}  // namespace KVR::Test
