// Bodies of imported models with one face turned over, each face of each body in turn: each is found at its body, and
// nothing else changes.

#include <gtest/gtest.h>

#include <BRep_Builder.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_Shape.hxx>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "tests/inspect/rules/SeededScene.h"
#include "tests/support/KernelBytes.h"
#include "tests/support/SanitizedBuild.h"

namespace KVR::Test
{

namespace
{

std::string KernelStoreOf(SeededScene const& scene)
{
    std::smatch found;
    EXPECT_TRUE(std::regex_search(scene.Document(), found, std::regex("<SatInfo [^>]*Path=\"([^\"]*)\"")));
    return found[1];
}

TopTools_IndexedMapOfShape FacesOf(TopoDS_Shape const& shape)
{
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    return faces;
}

// The shape with a face of it turned over.
TopoDS_Shape WithTurned(TopoDS_Shape const& shape, TopoDS_Shape const& face)
{
    if (shape.ShapeType() >= TopAbs_FACE)
        return shape.IsSame(face) ? shape.Reversed() : shape;
    TopoDS_Shape turned = shape.EmptyCopied();
    BRep_Builder const builder;
    for (TopoDS_Iterator at(shape, false, false); at.More(); at.Next())
        builder.Add(turned, WithTurned(at.Value(), face));
    return turned;
}

// The entities once more, of which one body has a face turned over.
std::vector<std::unique_ptr<ENTITY>> WithTurnedFace(RestoredStore const& store, int body, int face)
{
    std::vector<std::unique_ptr<ENTITY>> entities;
    for (int i = 0; i < store.entities->count(); ++i)
    {
        ENTITY const& entity = *(*store.entities)[i];
        TopoDS_Shape shape = entity.Shape();
        if (i == body)
            shape = WithTurned(shape, FacesOf(shape)(face));
        auto copy = std::make_unique<BODY>(shape);
        for (std::string const& id : entity.DataIds())
            copy->AddDataId(id);
        if (auto const* const original = dynamic_cast<BODY const*>(&entity))
        {
            for (BODY::SubId const& id : original->FaceDataIds())
                copy->AddFaceDataId(id.place, id.dataId);
            for (BODY::SubId const& id : original->EdgeDataIds())
                copy->AddEdgeDataId(id.place, id.dataId);
        }
        entities.push_back(std::move(copy));
    }
    return entities;
}

}  // namespace

TEST(SeededBody, AFaceThatIsTurnedOver)
{
    SeededScene const scene("as1-oc-214.stp");
    std::string const file = KernelStoreOf(scene);
    RestoredStore const store(scene.Content(file), false, false);
    ASSERT_GT(store.entities->count(), 1);
    // All of them on demand.
    int const step = std::getenv("KVR_SEED_ALL") ? 1 : kIsSanitized ? 40 : 10;
    int planted = 0;
    for (int body = 0, place = 0; body < store.entities->count(); ++body)
        for (int face = 1; face <= FacesOf((*store.entities)[body]->Shape()).Extent(); ++face)
        {
            if (place++ % step != 0)
                continue;
            std::string const bytes = StoreBytes(WithTurnedFace(store, body, face), false);
            std::string const& id = (*store.entities)[body]->DataIds().back();
            std::size_t const element = scene.Document().find("<IBrep ID=\"" + id + "\"");
            ASSERT_NE(element, std::string::npos) << id;
            // A file beside the scene is another one than was noted.
            ExpectFound(scene.FindingsWith(file, bytes), "K-0407", scene.PathOf(scene.Name()),
                        LineOf(scene.Document(), element), {"K-0319"}, id + ", face " + std::to_string(face));
            ++planted;
        }
    std::cout << planted << " faces turned over, each found at its body and nothing else\n";
    EXPECT_GT(planted, 1);
}

}  // namespace KVR::Test
