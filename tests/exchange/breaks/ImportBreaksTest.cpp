#include <gtest/gtest.h>

#include <BRepTools_ReShape.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <algorithm>
#include <memory>

#include "exchange/CertifyModel.h"
#include "scene/ExtensionTypes.h"
#include "tests/exchange/breaks/BreakBench.h"

namespace KVR::Test
{

namespace
{

using namespace Authoring;

// The first record of that label alone.
template <class Record>
auto OfLabel(std::string const& label, std::function<bool(Record&)> const& change)
{
    auto const isDone = std::make_shared<bool>(false);
    return [=](Record& record)
    {
        if (*isDone || record.label != UTF8String(label))
            return true;
        *isDone = true;
        return change(record);
    };
}

auto OfInstance(std::string const& label, std::function<void(InstanceRecord&)> const& change)
{
    return [=](Breaks& breaks)
    {
        breaks.instance = OfLabel<InstanceRecord>(label,
                                                  [=](InstanceRecord& record)
                                                  {
                                                      change(record);
                                                      return true;
                                                  });
    };
}

// The records one after another, from 0.
template <class Record, class Change>
auto Counted(Change const& change)
{
    auto const count = std::make_shared<int>(0);
    return [=](Record& record) { return change(record, (*count)++); };
}

auto OfBodies(std::function<void(BodyRecord& body, int number)> const& change)
{
    return [=](Breaks& breaks)
    {
        breaks.body = Counted<BodyRecord>(
            [=](BodyRecord& body, int number)
            {
                change(body, number);
                return true;
            });
    };
}

auto OfAttributes(std::function<void(AttributeSetRecord&)> const& change)
{
    return [=](Breaks& breaks) { breaks.attributes = change; };
}

// Of the camera of the view of that name.
auto OfCamera(std::string const& label, std::function<void(CameraRecord&)> const& change)
{
    return OfAttributes(
        [=](AttributeSetRecord& set)
        {
            for (CameraRecord& camera : set.cameras)
                if (camera.label == UTF8String(label))
                    change(camera);
        });
}

auto OfComponent(std::string const& label, std::function<void(ComponentRecord&)> const& change)
{
    return [=](Breaks& breaks)
    {
        breaks.component = [=](ComponentRecord& component)
        {
            if (component.label == UTF8String(label))
                change(component);
        };
    };
}

// In the details of the first note that has the text.
auto InDetails(std::string const& text, std::string const& other)
{
    return [=](Breaks& breaks)
    {
        breaks.callout = [=, isDone = std::make_shared<bool>(false)](CalloutRecord& callout)
        {
            for (ExtensionDataRecord& data : callout.extensionData)
            {
                std::string content(data.content.View());
                std::size_t const place = content.find(text);
                if (*isDone || place == std::string::npos)
                    continue;
                *isDone = true;
                data.content = UTF8String(content.replace(place, text.size(), other));
            }
            return true;
        };
    };
}

TopoDS_Shape WithoutLastFace(TopoDS_Shape const& shape)
{
    TopTools_IndexedMapOfShape faces;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    if (faces.Extent() < 2)
        return shape;
    BRepTools_ReShape without;
    without.Remove(faces(faces.Extent()));
    return without.Apply(shape);
}

ImportOptions WithoutMeshes()
{
    ImportOptions options;
    options.withMeshes = false;
    return options;
}

}  // namespace

TEST(ImportBreaks, WhatComponentsAreIsCaught)
{
    BreakBench const bench("as1-oc-214.stp", WithoutMeshes());
    bench.ExpectCaughtInImport({
        {"moves an instance", OfInstance("nut_1", [](InstanceRecord& i) { i.transform.SetElement(0, 3, 7.0); }),
         "by path"},
        {"mirrors an instance",
         OfInstance("nut_1",
                    [](InstanceRecord& i)
                    {
                        for (int row = 0; row < 3; ++row)
                            i.transform.SetElement(row, 0, -i.transform.Element(row, 0));
                    }),
         "by path"},
        {"hides an instance", OfInstance("nut_1", [](InstanceRecord& i) { i.isVisible = false; }), "hidden"},
        {"renames an instance", OfInstance("nut_1", [](InstanceRecord& i) { i.label = "net_1"; }), "names"},
        {"swaps two names",
         [](Breaks& breaks)
         {
             breaks.instance = [](InstanceRecord& i)
             {
                 if (i.label == UTF8String("nut_1") || i.label == UTF8String("rod_1"))
                     i.label = i.label == UTF8String("nut_1") ? "rod_1" : "nut_1";
                 return true;
             };
         },
         "by path"},
        {"places another part", OfInstance("nut_1", [](InstanceRecord& i) { i.targetId = "part3"; }), "by path"},
        {"drops a colour",
         [](Breaks& breaks)
         {
             breaks.component = [](ComponentRecord& component) { component.styles.clear(); };
             breaks.body = [](BodyRecord& body)
             {
                 body.styles.clear();
                 return true;
             };
         },
         "colours"},
        {"gives two parts each other's colour",
         OfBodies(
             [](BodyRecord& body, int number)
             {
                 if (number < 2)
                     body.styles = {UTF8String(number == 0 ? "style2" : "style1")};
             }),
         "colours"},
        {"hides a body", OfBodies([](BodyRecord& body, int number) { body.isVisible = number > 0; }), "hidden"},
        {"changes a colour",
         OfAttributes(
             [](AttributeSetRecord& set)
             {
                 if (!set.styles.empty())
                     set.styles.front().diffuse->red = 0.3;
             }),
         "colours"},
        {"makes a colour transparent",
         OfAttributes(
             [](AttributeSetRecord& set)
             {
                 if (!set.styles.empty())
                     set.styles.front().transparency = 0.5;
             }),
         "colours"},
        {"forgets a member of a layer",
         OfAttributes(
             [](AttributeSetRecord& set)
             {
                 if (!set.layers.empty())
                     set.layers.front().itemIds.pop_back();
             }),
         "layers"},
        {"loses a face", [](Breaks& breaks) { breaks.shape = &WithoutLastFace; }, "faces"},
        {"loses a shape",
         [](Breaks& breaks) { breaks.body = Counted<BodyRecord>([](BodyRecord&, int number) { return number > 0; }); },
         "solids"},
        {"mistakes faces for one another",
         [](Breaks& breaks)
         {
             breaks.persistentIds = [](std::map<std::string, std::string>& ids)
             {
                 // Those of edges come first.
                 auto const first = ids.lower_bound(ids.begin()->first.substr(0, 6) + "f");
                 if (ids.size() > 1)
                     std::swap(first->second, std::prev(ids.end())->second);
             };
         },
         "faces by id"},
        {"mistakes a unit",
         OfComponent("nut", [](ComponentRecord& component) { component.unit.length = kUnitType_Centimeter; }), "units"},
        {"mistakes a part number",
         OfComponent("nut", [](ComponentRecord& c) { c.properties->texts.front().second = "nutty"; }), "part numbers"},
        {"renames a property",
         OfComponent("nut",
                     [](ComponentRecord& c)
                     {
                         PropertyValue& property = c.properties->custom.front();
                         double value = 0.0;
                         property.Value(value);
                         property.SetProperty(UTF16String(UTF8String("other")), value);
                     }),
         "properties"},
    });
}

TEST(ImportBreaks, WhatMeshesAreIsCaught)
{
    BreakBench const bench("as1-oc-214.stp");
    bench.ExpectCaughtInImport({
        {"makes a mesh too large",
         [](Breaks& breaks)
         {
             breaks.vertices = [](std::vector<double>& numbers)
             { std::transform(numbers.begin(), numbers.end(), numbers.begin(), [](double x) { return 1.1 * x; }); };
         },
         "area of bodies in meshes"},
    });
    // A model that has normals.
    BreakBench const meshes(bench.Exported(".glb"));
    meshes.ExpectCaughtInImport({
        {"smooths normals",
         [](Breaks& breaks)
         { breaks.normals = [](std::vector<double>& numbers) { std::fill(numbers.begin(), numbers.end(), 0.57735); }; },
         "normals"},
        {"moves a vertex",
         [](Breaks& breaks) { breaks.vertices = [](std::vector<double>& numbers) { numbers.front() += 1.0; }; },
         "mesh by path"},
    });
}

TEST(ImportBreaks, WhatViewsAndNotesSayIsCaught)
{
    BreakBench const bench("iso14405_fig17a.stp", WithoutMeshes());
    bench.ExpectCaughtInImport({
        {"shifts a view", OfCamera("Top", [](CameraRecord& camera) { camera.position[0] += 1.0; }), "views"},
        {"turns a view round", OfCamera("Top", [](CameraRecord& camera) { camera.direction[2] *= -1.0; }), "views"},
        {"tilts a view",
         OfCamera("Top",
                  [](CameraRecord& camera) {
                      camera.up = {camera.up[1], -camera.up[0], camera.up[2]};
                  }),
         "views"},
        {"forgets a section plane", OfCamera("Section #1", [](CameraRecord& camera) { camera.sectionPlanes.clear(); }),
         "section planes"},
        {"shifts a section plane",
         OfCamera("Section #1",
                  [](CameraRecord& camera)
                  {
                      camera.sectionPlanes.front().origin[0] += 1.0;
                      camera.sectionPlanes.front().origin[1] += 1.0;
                      camera.sectionPlanes.front().origin[2] += 1.0;
                  }),
         "section planes"},
        {"loses what a view shows",
         OfAttributes(
             [](AttributeSetRecord& set)
             {
                 for (ViewRecord& view : set.views)
                     view.members.clear();
             }),
         "view members"},
        {"swaps the names of two views",
         OfAttributes(
             [](AttributeSetRecord& set)
             {
                 if (set.views.size() > 1)
                     std::swap(set.views[0].label, set.views[1].label);
             }),
         "views"},
        {"loses a note",
         [](Breaks& breaks)
         { breaks.callout = Counted<CalloutRecord>([](CalloutRecord&, int number) { return number > 0; }); },
         "notes"},
        {"mistakes a value", InDetails("\"value\":50", "\"value\":51"), "note values"},
        {"mistakes a kind", InDetails("\"diameter\"", "\"radius\""), "notes"},
    });
}

TEST(ImportBreaks, WhatIsHiddenIsCaught)
{
    BreakBench const bench("nist_ctc_03_ap203.stp", WithoutMeshes());
    bench.ExpectCaughtInImport(
        {{"shows a point", [](Breaks& breaks) { breaks.point = [](PointRecord& point) { point.isVisible = true; }; },
          "hidden"}});
}

TEST(ImportBreaks, TheCertificateAsAWholeTellsOfThem)
{
    TheBreaks().instance = [](InstanceRecord& instance)
    {
        instance.isVisible = instance.label != UTF8String("nut_1");
        return true;
    };
    CertifyResult const result = CertifyModel(std::string(KVR_EXAMPLES_DIR) + "/models/as1-oc-214.stp");
    TheBreaks() = {};
    EXPECT_EQ(result.outcome, Outcome::kDone) << result.failure;
    EXPECT_FALSE(result.isEqual);
    for (CertificateRow const& row : result.rows)
        if (row.name == "hidden")
        {
            ASSERT_FALSE(row.differences.empty());
            EXPECT_EQ(row.differences.front(), "scene: 'as1/rod-assembly_1/nut_1' is new");
        }
}

}  // namespace KVR::Test
