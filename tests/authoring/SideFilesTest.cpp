#include <gtest/gtest.h>

#include <TopoDS_Shape.hxx>
#include <algorithm>
#include <fstream>
#include <iterator>

#include "framework/api/DataIdToPersistentIdMap.h"
#include "framework/api/Exception.h"
#include "framework/xml_util/SideFileNotes.h"
#include "tests/authoring/WrittenScene.h"
#include "tests/support/SceneWalk.h"
#include "tests/support/Shapes.h"
#include "tests/support/TestScene.h"

// What a scene says of the files beside it and of the children of its file.
namespace KVR::Test
{

namespace
{

using namespace Authoring;

// A body, a mesh with segments and a curve, assets, persistent ids, properties, a blob, and a file of the caller's own.
void WriteWithEverySideFile(WrittenScene const& written)
{
    SceneWriter scene(written.Path());
    unsigned char const bytes[] = {1, 2, 3};
    UniverseRecord universe;
    universe.customData = {{"Thumbnail", {}, {}, std::pair(scene.Blob(bytes, sizeof bytes), sizeof bytes)}};
    scene.Universe(universe);
    BeginPart(scene);
    scene.Kernel().Body("body", BoxShape(1.0, 2.0, 3.0));
    scene.Body(Named<BodyRecord>("body"));
    scene.Meshes().BeginMesh("mesh", {});
    scene.Meshes().EndMesh();
    scene.Mesh(Named<MeshRecord>("mesh"));
    scene.Segments().Mesh("mesh", {}, {}, {});
    scene.Meshes().Curve("curve", {LineRecord{{}, {1.0, 0.0, 0.0}, 0.0, 2.0}});
    scene.Curve(Named<CurveElementRecord>("curve"));
    scene.EndPart();
    EditableDataIdToPersistentIdMap ids;
    ids.Add("face", "1");
    scene.PersistentIds().Object("body", ids);
    scene.Assets().Asset("style", "kind", bytes);
    PropertyValue supplier;
    supplier.SetProperty(Wide("Supplier"), Wide("ACME"));
    scene.Property("mesh", supplier);
    std::ofstream(written.File("scene.xml.image")) << "image";
    scene.AddSideFile("scene.xml.image");
    scene.Finish();
}

}  // namespace

TEST(SideFilesOfAScene, SideFilesBearTheWholeNameAndAreNoted)
{
    WrittenScene written;
    WriteWithEverySideFile(written);
    std::vector<std::string> const names = {"scene.kvrproperty", "scene.xml.assets", "scene.xml.blob1",
                                            "scene.xml.ids",     "scene.xml.image",  "scene.xml.mesh",
                                            "scene.xml.sab",     "scene.xml.seg"};
    std::vector<std::string> files = written.Files();
    std::erase(files, "scene.xml");
    EXPECT_EQ(files, names);
    auto const notes = SideFileNotes::Of(UTF8String(written.NarrowPath()));
    ASSERT_TRUE(notes);
    std::vector<std::string> noted;
    for (SideFileNote const& note : *notes)
    {
        noted.push_back(note.name);
        EXPECT_EQ(FileDigest::Of(UTF8String(written.File(note.name.c_str()))), note.digest) << note.name;
    }
    std::sort(noted.begin(), noted.end());
    EXPECT_EQ(noted, names);
    // All but blobs and what is added are known beforehand.
    std::vector<std::string> const known = SceneWriter::SideFileNames("scene.xml");
    for (std::string const& name : names)
        EXPECT_EQ(std::count(known.begin(), known.end(), name), name.ends_with("1") || name.ends_with("e") ? 0 : 1);
}

TEST(SideFilesOfAScene, TheNotesAreNothingToAReader)
{
    WrittenScene written;
    WriteWithEverySideFile(written);
    std::string const with = WalkScene(written.Begin(), {"body", "mesh", "curve"}).text;
    std::ifstream file(written.NarrowPath(), std::ios::binary);
    std::string document((std::istreambuf_iterator<char>(file)), {});
    document.resize(document.rfind("<?kvr-side-files"));
    std::ofstream(written.NarrowPath(), std::ios::binary) << document;
    EXPECT_FALSE(SideFileNotes::Of(UTF8String(written.NarrowPath())));
    EXPECT_EQ(WalkScene(written.Begin(), {"body", "mesh", "curve"}).text, with);
}

TEST(SideFilesOfAScene, TwoScenesOfAFolderShareNoSideFile)
{
    std::vector<std::string> const scenes = {"a.xml", "a.b.xml", "A.xml", "a.ids.xml", "a.xml.xml", "a.xml.ids.xml"};
    std::vector<std::string> names = scenes;
    for (std::string const& scene : scenes)
        for (std::string const& name : SceneWriter::SideFileNames(scene))
            names.push_back(name);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
}

TEST(SideFilesOfAScene, ASideFileThatIsAddedHasToBeThere)
{
    WrittenScene written;
    {
        SceneWriter scene(written.Path());
        BeginPart(scene);
        scene.Meshes();
        scene.EndPart();
        scene.AddSideFile("none.png");
        EXPECT_THROW(scene.Finish(), FileException);
    }
    EXPECT_TRUE(written.Files().empty());
}

TEST(FileChildren, TypesOfChildrenTellWhetherAFileHasAssemblyStructure)
{
    auto const isAssembly = [](std::vector<FileChild> const& children)
    {
        WrittenScene written;
        SceneWriter scene(written.Path());
        scene.BeginFile(RootFile(children));
        scene.EndFile();
        for (FileChild const& child : children)
        {
            ComponentRecord const component = Named<ComponentRecord>(child.id.Value());
            if (child.type == FileChildType::kAssembly)
            {
                scene.BeginAssembly(component);
                scene.EndAssembly();
            }
            else if (child.type == FileChildType::kPart)
            {
                scene.BeginPart(component);
                scene.EndPart();
            }
            else
                scene.Point(Named<PointRecord>(child.id.Value()));
        }
        scene.Finish();
        XMLProducerOptions options;
        XMLProducer producer(written.Path(), &options);
        bool answer = false;
        EXPECT_EQ(producer.QueryFile()->HasAssemblyStructure(answer), kIsValueSpecified_Yes);
        return answer;
    };
    FileChild const assembly("a", FileChildType::kAssembly);
    FileChild const part("p", FileChildType::kPart);
    FileChild const point("x", FileChildType::kPoint);
    EXPECT_TRUE(isAssembly({assembly}));
    EXPECT_TRUE(isAssembly({point, assembly}));
    EXPECT_TRUE(isAssembly({part, point}));
    EXPECT_TRUE(isAssembly({part, {"q", FileChildType::kPart}}));
    EXPECT_FALSE(isAssembly({part}));
    EXPECT_FALSE(isAssembly({point}));
    EXPECT_FALSE(isAssembly({point, {"y", FileChildType::kPoint}}));
    EXPECT_FALSE(isAssembly({}));
}

TEST(FileChildren, EveryTypeOfAChildIsTheNameOfItsElement)
{
    std::pair<FileChildType, char const*> const types[] = {{FileChildType::kAssembly, "IAssembly"},
                                                           {FileChildType::kPart, "IPart"},
                                                           {FileChildType::kCallout, "IAnnotationCallout"},
                                                           {FileChildType::kBody, "IBrep"},
                                                           {FileChildType::kMesh, "IPolygonMesh"},
                                                           {FileChildType::kCurve, "ICurve"},
                                                           {FileChildType::kPoint, "IPoint"},
                                                           {FileChildType::kPointCloud, "IPointCloud"},
                                                           {FileChildType::kSketch, "ISketch"},
                                                           {FileChildType::kGeometricSet, "IGeometricSet"},
                                                           {FileChildType::kExtensionGeometry, "IExtensionGeometry"},
                                                           {FileChildType::kWorkAxis, "IWorkAxis"},
                                                           {FileChildType::kWorkPlane, "IWorkPlane"},
                                                           {FileChildType::kWorkPoint, "IWorkPoint"}};
    for (auto const& [type, name] : types)
    {
        WrittenScene written;
        SceneWriter scene(written.Path());
        scene.BeginFile(RootFile({{"x", type}}));
        scene.EndFile();
        scene.Point(Named<PointRecord>("x"));
        scene.Finish();
        std::ifstream file(written.NarrowPath());
        std::string const document((std::istreambuf_iterator<char>(file)), {});
        EXPECT_NE(document.find("<Child ID=\"x\" Type=\"" + std::string(name) + "\"/>"), std::string::npos) << name;
    }
}

}  // namespace KVR::Test
