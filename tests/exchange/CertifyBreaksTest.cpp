#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>

#include "exchange/ExportScene.h"
#include "exchange/ImportModel.h"
#include "exchange/certify/Certificate.h"
#include "exchange/certify/FactReaders.h"
#include "exchange/source/SceneFile.h"
#include "exchange/source/SceneReading.h"
#include "tests/support/TempFolder.h"

namespace KVR::Test
{

namespace
{

using namespace Certification;

using nlohmann::json;

enum Stage : std::size_t
{
    kSource,
    kScene,
    kStep,
    kGlb
};

// What a broken import or export would have written instead.
struct Break
{
    std::string name;
    Stage stage;
    std::function<void(std::string& bytes)> apply;
    /// The row that tells of it.
    std::string row;
};

std::string BytesOf(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::size_t Find(std::string const& bytes, std::string const& text, std::size_t from = 0)
{
    std::size_t const place = bytes.find(text, from);
    if (place == std::string::npos)
        throw std::runtime_error("there is no " + text);
    return place;
}

auto Replace(std::string const& text, std::string const& other)
{
    return [=](std::string& bytes) { bytes.replace(Find(bytes, text), text.size(), other); };
}

auto ReplaceAll(std::string const& text, std::string const& other)
{
    return [=](std::string& bytes)
    {
        for (std::size_t place = Find(bytes, text); place != std::string::npos;
             place = bytes.find(text, place + other.size()))
            bytes.replace(place, text.size(), other);
    };
}

// From one text up to the end of another.
auto Cut(std::string const& begin, std::string const& end)
{
    return [=](std::string& bytes)
    {
        std::size_t const place = Find(bytes, begin);
        bytes.erase(place, Find(bytes, end, place) + end.size() - place);
    };
}

auto Swap(std::string const& one, std::string const& other)
{
    return [=](std::string& bytes)
    {
        Replace(one, "@")(bytes);
        Replace(other, one)(bytes);
        Replace("@", other)(bytes);
    };
}

// Of a GLB file the JSON and the numbers behind it.
auto InGlb(std::function<void(json& document, std::string& numbers)> const& change)
{
    return [=](std::string& bytes)
    {
        auto const word = [&](std::size_t place)
        {
            std::uint32_t value = 0;
            std::memcpy(&value, bytes.data() + place, sizeof value);
            return value;
        };
        std::size_t const length = word(12);
        json document = json::parse(bytes.substr(20, length));
        std::string numbers = bytes.substr(28 + length);
        change(document, numbers);
        std::string text = document.dump();
        text.resize((text.size() + 3) / 4 * 4, ' ');
        auto const put = [](std::string& target, std::size_t value)
        {
            auto const short_ = static_cast<std::uint32_t>(value);
            target.append(reinterpret_cast<char const*>(&short_), sizeof short_);
        };
        std::string all = bytes.substr(0, 8);
        put(all, 28 + text.size() + numbers.size());
        put(all, text.size());
        all += "JSON" + text;
        put(all, numbers.size());
        bytes = all + std::string("BIN\0", 4) + numbers;
    };
}

json& NodeOf(json& document, std::string const& name)
{
    for (json& node : document["nodes"])
        if (node.value("name", "") == name)
            return node;
    throw std::runtime_error("there is no node " + name);
}

// The numbers of an attribute of the first primitive.
float* NumbersOf(json& document, std::string& numbers, char const* attribute, std::size_t& count)
{
    json const& accessor =
        document["accessors"][document["meshes"][0]["primitives"][0]["attributes"][attribute].get<std::size_t>()];
    json const& view = document["bufferViews"][accessor["bufferView"].get<std::size_t>()];
    count = accessor["count"].get<std::size_t>() * 3;
    return reinterpret_cast<float*>(numbers.data() + view.value("byteOffset", std::size_t{0}) +
                                    accessor.value("byteOffset", std::size_t{0}));
}

// A model with its scene and the files that are made of it, and what each of them holds.
class Bench
{
public:
    explicit Bench(std::string const& model)
    {
        m_files = {std::string(KVR_EXAMPLES_DIR) + "/models/" + model, m_folder.NarrowPathOf("a.xml"),
                   m_folder.NarrowPathOf("a.step"), m_folder.NarrowPathOf("a.glb")};
        ImportResult const imported = ImportModel(m_files[kSource], m_files[kScene]);
        if (imported.outcome != Outcome::kDone)
            throw std::runtime_error(imported.failure);
        SceneOptions scene;
        scene.path = m_files[kScene];
        for (Stage const stage : {kStep, kGlb})
            if (ExportResult const exported = ExportScene(scene, m_files[stage]); exported.outcome != Outcome::kDone)
                throw std::runtime_error(exported.failure);
        for (Stage const stage : {kSource, kScene, kStep, kGlb})
            m_facts.push_back(FactsOf(stage, m_files[stage]));
    }

    bool IsGood(std::string const& row) const { return IsGood(m_facts, row); }
    bool IsGood(Break const& broken) const
    {
        std::string bytes = BytesOf(m_files[broken.stage]);
        std::string const before = bytes;
        broken.apply(bytes);
        EXPECT_NE(bytes, before);
        // Beside the side files, which are the scene's under any name of its own.
        std::string const name = "broken" + std::filesystem::path(m_files[broken.stage]).extension().string();
        m_folder.Write(name, bytes);
        std::vector<ModelFacts> facts = m_facts;
        facts[broken.stage] = FactsOf(broken.stage, m_folder.NarrowPathOf(name));
        return IsGood(facts, broken.row);
    }

private:
    static ModelFacts FactsOf(Stage stage, std::string const& path)
    {
        if (stage == kGlb)
            return FactsOfGltf(path);
        if (stage != kScene)
            return FactsOfStep(path);
        SceneOptions options;
        options.path = path;
        SceneFile file(options);
        return FactsOfScene(file.Producer(), SceneReading::Of(file.Producer()).rootId.value());
    }

    static bool IsGood(std::vector<ModelFacts> const& facts, std::string const& name)
    {
        std::vector<Certificate::Stage> stages;
        for (char const* const stage : {"source", "scene", "STEP", "GLB"})
            stages.push_back({stage, facts[stages.size()]});
        Certificate const certificate(std::move(stages));
        for (Certificate::Row const& row : certificate.Rows())
            if (row.name == name)
                return row.isGood;
        // There is nothing of it anywhere.
        return true;
    }

    TempFolder m_folder;
    std::vector<std::string> m_files;
    std::vector<ModelFacts> m_facts;
};

void ExpectCaught(Bench const& bench, std::vector<Break> const& breaks)
{
    for (Break const& broken : breaks)
    {
        SCOPED_TRACE(broken.name);
        EXPECT_TRUE(bench.IsGood(broken.row)) << broken.row;
        EXPECT_FALSE(bench.IsGood(broken)) << broken.row;
    }
}

}  // namespace

TEST(CertifyBreaks, AnImportThatBreaksAnAssemblyIsCaught)
{
    Bench const bench("as1-oc-214.stp");
    ExpectCaught(bench,
                 {{"drops a colour", kScene, Replace("<StyleRef ID=\"style1\"/>", ""), "colours"},
                  {"changes a colour", kScene, Replace("FractionRed=\"0.8", "FractionRed=\"0.7"), "colours"},
                  {"moves an instance", kScene, Replace("-7.5 0 0 1 185", "-7.5 0 0 1 185.01"), "by path"},
                  {"turns an instance", kScene, Replace("\"-1 0 0 175 0 -1 0", "\"1 0 0 175 0 1 0"), "by path"},
                  {"mirrors an instance", kScene, Replace("\"1 0 0 5 0 1 0", "\"1 0 0 5 0 -1 0"), "by path"},
                  {"renames an instance", kScene, Replace("Label=\"bolt_1\"", "Label=\"bolz_1\""), "names"},
                  {"swaps two names", kScene, Swap("Label=\"nut_1\"", "Label=\"rod_1\""), "by path"},
                  {"loses an instance", kScene, Cut("<IInstance ID=\"inst6\"", "</IInstance>"), "occurrences"},
                  {"places another part", kScene, Replace("<Child ID=\"part3\"/>", "<Child ID=\"part2\"/>"), "by path"},
                  {"hides an instance", kScene,
                   Replace("Label=\"nut_1\" Visibility=\"1\"", "Label=\"nut_1\" Visibility=\"0\""), "hidden"},
                  {"loses a body", kScene, Cut("<IBrep ", "</IBrep>"), "solids"},
                  {"loses a mesh", kScene, Cut("<IPolygonMesh ", "</IPolygonMesh>"), "area of bodies in meshes"},
                  {"renames a layer", kScene, Replace("Label=\"256\"", "Label=\"257\""), "layers"},
                  {"forgets a member of a layer", kScene, Replace("Items=\"part2,", "Items=\""), "layers"},
                  {"renames a component", kScene,
                   Replace("IPart ID=\"part2\" Label=\"nut\"", "IPart ID=\"part2\" Label=\"net\""), "names"},
                  {"changes a property", kScene, Replace("Value=\"764519.8", "Value=\"764599.8"), "properties"}});
}

TEST(CertifyBreaks, AnExportThatBreaksAnAssemblyIsCaught)
{
    Bench const bench("as1-oc-214.stp");
    ExpectCaught(
        bench,
        {{"STEP: changes a colour", kStep, Replace("0.50000000342", "0.10000000342"), "colours"},
         {"STEP: loses a face", kStep,
          [](std::string& bytes)
          {
              std::size_t const list = Find(bytes, "CLOSED_SHELL('',(") + 17;
              bytes.erase(list, Find(bytes, ",", list) + 1 - list);
          },
          "faces"},
         {"STEP: moves an instance", kStep, Replace("-7.5,185.", "-7.5,186."), "by path"},
         {"STEP: renames an instance", kStep, Replace("'nut_2'", "'nut_9'"), "names"},
         {"STEP: renames a layer", kStep,
          Replace("PRESENTATION_LAYER_ASSIGNMENT('256'", "PRESENTATION_LAYER_ASSIGNMENT('257'"), "layers"},
         {"STEP: mistakes a unit", kStep, ReplaceAll("SI_UNIT(.MILLI.,.METRE.)", "SI_UNIT(.CENTI.,.METRE.)"), "units"},
         {"GLB: changes a colour", kGlb,
          InGlb(
              [](json& document, std::string&) {
                  document["materials"][0]["pbrMetallicRoughness"]["baseColorFactor"] = {0.1, 0.2, 0.3, 1.0};
              }),
          "drawn colours"},
         {"GLB: makes a colour transparent", kGlb,
          InGlb(
              [](json& document, std::string&)
              {
                  document["materials"][0]["pbrMetallicRoughness"]["baseColorFactor"][3] = 0.5;
                  document["materials"][0]["alphaMode"] = "BLEND";
              }),
          "drawn colours"},
         {"GLB: moves an instance", kGlb,
          InGlb([](json& document, std::string&)
                { NodeOf(document, "nut_1")["matrix"] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 1, 1}; }),
          "mesh by path"},
         {"GLB: swaps two names", kGlb,
          InGlb(
              [](json& document, std::string&)
              {
                  json& one = NodeOf(document, "nut_1");
                  json& other = NodeOf(document, "rod_1");
                  std::swap(one["name"], other["name"]);
              }),
          "mesh by path"},
         {"GLB: loses an instance", kGlb,
          InGlb([](json& document, std::string&) { NodeOf(document, "as1")["children"].erase(0); }), "occurrences"},
         {"GLB: smooths normals", kGlb,
          InGlb(
              [](json& document, std::string& numbers)
              {
                  std::size_t count = 0;
                  float* const normals = NumbersOf(document, numbers, "NORMAL", count);
                  for (std::size_t i = 0; i < count / 10; ++i)
                      normals[i] = 0.57735F;
              }),
          "normals"},
         {"GLB: loses a triangle", kGlb,
          InGlb(
              [](json& document, std::string&)
              {
                  json& accessor =
                      document["accessors"][document["meshes"][0]["primitives"][0]["indices"].get<std::size_t>()];
                  accessor["count"] = accessor["count"].get<std::size_t>() - 3;
              }),
          "triangles"},
         {"GLB: moves a corner", kGlb,
          InGlb(
              [](json& document, std::string& numbers)
              {
                  std::size_t count = 0;
                  NumbersOf(document, numbers, "POSITION", count)[0] += 1.0F;
              }),
          "mesh by path"}});
}

TEST(CertifyBreaks, ViewsAndNotesThatBreakAreCaught)
{
    Bench const bench("nist_plate_creo_lbls.stp");
    ExpectCaught(
        bench,
        {{"shifts a view", kScene, Replace("<CameraPosition X=\"30.", "<CameraPosition X=\"31."), "views"},
         {"turns a view round", kScene, Replace("<CameraDirection X=\"-0.38", "<CameraDirection X=\"0.38"), "views"},
         {"loses a view", kScene, Cut("<IView ", "</IView>"), "views"},
         {"loses a note", kScene, Cut("<IAnnotationCallout ", "</IAnnotationCallout>"), "notes"},
         {"mistakes a kind of note", kScene, Replace("&quot;diameter&quot;", "&quot;radius&quot;"), "notes"},
         {"mistakes a letter", kScene, Replace("&quot;letter&quot;:&quot;B&quot;", "&quot;letter&quot;:&quot;X&quot;"),
          "notes"},
         {"STEP: shifts a view", kStep, Replace("CAMERA_MODEL_D3('DEFAULT'", "CAMERA_MODEL_D3('OTHER'"), "views"},
         {"STEP: mistakes a kind of note", kStep, Replace(",'diameter')", ",'radius')"), "notes"},
         {"STEP: mistakes a letter", kStep, Replace(".F.,'B')", ".F.,'X')"), "notes"}});
}

TEST(CertifyBreaks, WhatIsHiddenAndIsNotIsCaught)
{
    Bench const bench("nist_ctc_03_ap203.stp");
    ExpectCaught(bench, {{"shows a point", kScene,
                          Replace("Label=\"\" Visibility=\"0\"", "Label=\"\" Visibility=\"1\""), "hidden"},
                         {"mistakes a unit", kScene, ReplaceAll("kUnitType_Inch", "kUnitType_Foot"), "units"},
                         {"STEP: forgets what is hidden", kStep, Replace("INVISIBILITY((", "LEGIBILITY(("), "hidden"}});
}

}  // namespace KVR::Test
