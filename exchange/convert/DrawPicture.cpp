#include "exchange/DrawPicture.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <vector>

#include "exchange/run/ChildProcess.h"
#include "exchange/run/F3d.h"
#include "exchange/run/Heard.h"
#include "exchange/run/StagePlan.h"
#include "exchange/run/WorkFolder.h"
#include "output/SafeText.h"
#include "output/ScratchFolder.h"

namespace KVR
{

namespace
{

namespace fs = std::filesystem;
using Json = nlohmann::json;
using Triple = std::array<double, 3>;

// What is done of all when the conversion is, and when the drawing begins.
constexpr double kConvertShare = 0.6;
constexpr double kDrawShare = 0.8;
// A parallel camera is one of perspective that stands so many heights of the picture away.
constexpr double kParallel = 200.0;
// Of a camera that states none, in radians.
constexpr double kViewAngle = 0.8;
constexpr double kDegrees = 57.29577951308232;

std::string TextOf(std::initializer_list<double> numbers)
{
    std::string text;
    for (double const number : numbers)
        text += (text.empty() ? "" : ",") + std::to_string(number);
    return text;
}

std::string TextOf(Triple const& numbers)
{
    return TextOf({numbers[0], numbers[1], numbers[2]});
}

// The document in a GLB that was written here.
Json DocumentOf(std::string const& path)
{
    constexpr std::size_t kHeads = 20;
    std::ifstream file(path, std::ios::binary);
    std::array<char, kHeads> head{};
    file.read(head.data(), kHeads);
    std::uint32_t size = 0;
    std::memcpy(&size, head.data() + 12, sizeof size);
    std::string text(size, ' ');
    file.read(text.data(), static_cast<std::streamsize>(size));
    return Json::parse(text, nullptr, false);
}

// The node of the view's first camera; null when the scene has no such camera that stands anywhere.
Json CameraNodeOf(Json const& document, std::string const& view)
{
    Json const views = document.value("/scenes/0/extras/views"_json_pointer, Json::array());
    for (char const* const name : {"id", "label"})
        for (Json const& one : views)
            if (one.value(name, std::string()) == view && !one["cameraNodes"].empty())
                return document["nodes"][one["cameraNodes"][0].get<std::size_t>()];
    return {};
}

// What a GLB tells of the scene that it was written of, whose axes were turned there and whose unit was made metres.
class SceneAxes
{
public:
    explicit SceneAxes(Json const& document)
        : m_metres(document.value("/scenes/0/extras/lengthUnitInMetres"_json_pointer, 1e-3))
    {
        std::vector<double> const root = MatrixOf(document["nodes"][0]);
        double const scale = std::hypot(root[0], root[1], root[2]);
        for (std::size_t i = 0; i < m_turn.size(); ++i)
            m_turn[i] = root[i / 3 * 4 + i % 3] / scale;
    }

    static std::vector<double> MatrixOf(Json const& node)
    {
        return node.value("matrix", std::vector<double>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    }

    double LengthOf(double metres) const { return metres / m_metres; }
    // Each column of the turn is where an axis of the scene went.
    Triple DirectionOf(double const* turned) const
    {
        Triple direction{};
        for (std::size_t i = 0; i < 9; ++i)
            direction[i / 3] += m_turn[i] * turned[i % 3];
        return direction;
    }

    // As f3d takes it.
    std::string Up(std::optional<UpAxis> axis) const
    {
        constexpr std::array<double, 3> kUp{0.0, 1.0, 0.0};
        Triple const up = DirectionOf(kUp.data());
        std::size_t most = 0;
        for (std::size_t i = 1; i < up.size(); ++i)
            most = std::abs(up[i]) > std::abs(up[most]) ? i : most;
        bool const isDown = !axis && up[most] < 0.0;
        return std::string(isDown ? "-" : "+") + "XYZ"[axis ? static_cast<std::size_t>(*axis) : most];
    }

private:
    double m_metres;
    std::array<double, 9> m_turn{};
};

// Where f3d's camera is to stand so that it sees of the scene what the node's does.
std::vector<std::string> CameraArguments(Json const& document, Json const& node, SceneAxes const& axes)
{
    std::vector<double> const m = SceneAxes::MatrixOf(node);
    Json const& camera = document["cameras"][node["camera"].get<std::size_t>()];
    Triple eye = axes.DirectionOf(&m[12]);
    for (double& x : eye)
        x = axes.LengthOf(x);
    Triple const back = axes.DirectionOf(&m[8]);
    double angle = kViewAngle;
    double distance = 1.0;
    if (camera["type"] == "perspective")
        angle = camera["perspective"]["yfov"].get<double>();
    else
    {
        distance = kParallel * axes.LengthOf(2.0 * camera["orthographic"]["ymag"].get<double>());
        angle = 2.0 * std::atan(0.5 / kParallel);
        for (std::size_t i = 0; i < 3; ++i)
            eye[i] += distance * back[i];
    }
    Triple const aim{eye[0] - distance * back[0], eye[1] - distance * back[1], eye[2] - distance * back[2]};
    return {"--camera-position=" + TextOf(eye), "--camera-focal-point=" + TextOf(aim),
            "--camera-view-up=" + TextOf(axes.DirectionOf(&m[4])), "--camera-view-angle=" + TextOf({angle * kDegrees})};
}

// What f3d is to be told of the axes and the camera, by the GLB of the scene: a line for each argument.
std::string LinesOfSight(std::string const& glb, PictureOptions const& options)
{
    Json const document = DocumentOf(glb);
    if (!document.is_object() || !document.contains("nodes"))
        throw std::runtime_error("the axes of its scene cannot be read");
    SceneAxes const axes(document);
    Json const node = options.view.empty() ? Json() : CameraNodeOf(document, options.view);
    std::vector<std::string> camera{"--camera-azimuth-angle=35", "--camera-elevation-angle=28"};
    if (node.is_object())
        camera = CameraArguments(document, node, axes);
    std::string lines = "--up=" + axes.Up(options.up) + '\n';
    for (std::string const& argument : camera)
        lines += argument + '\n';
    return lines;
}

// Draws an OBJ; false when f3d did not.
bool Draw(std::string const& obj, std::string_view sight, std::string const& target, PictureOptions const& options)
{
    std::vector<std::string> arguments{
        "--fxaa",
        "--depth-peeling",
        "--filename=false",
        "--bg-color=" + TextOf(options.background),
        "--resolution=" + std::to_string(options.width) + ',' + std::to_string(options.height),
        "--output=" + target};
    for (std::size_t end = sight.find('\n'); end != std::string_view::npos; end = sight.find('\n'))
    {
        arguments.emplace_back(sight.substr(0, end));
        sight.remove_prefix(end + 1);
    }
    arguments.push_back(obj);
    std::error_code error;
    return RunF3d(arguments) && fs::file_size(target, error) > 0 && !error;
}

// What of the scene glTF has no place for, but the picture neither.
void TakeRemarks(ConvertResult& result, ExportResult const& gltf)
{
    for (std::string const& remark : gltf.remarks)
        if (remark.find("section planes") != std::string::npos)
            result.exported.remarks.push_back("the section planes of its cameras are not drawn");
}

void DrawInto(ConvertResult& result, std::string const& source, std::string const& path, PictureOptions const& options,
              Progress const& progress)
{
    WorkFolder const folder(path, {source});
    ScratchFolder const scratch(fs::temp_directory_path(), "kvr-picture-");
    auto const inScratch = [&](char const* name) { return (scratch.Path() / name).string(); };
    ConvertOptions conversion = options.source;
    conversion.exportation.filter.view = options.view;
    SceneOptions scene = conversion.scene;
    scene.path = source;
    if (!IsScenePath(source))
        conversion.scenePath = scene.path = inScratch("scene.xml");
    // OBJ for the picture, since f3d draws what is transparent in glTF as if it were not; glTF for axes and cameras.
    result = ConvertModel(source, inScratch("scene.obj"), conversion, PartOf(progress, 0.0, kConvertShare));
    if (result.outcome != Outcome::kDone)
        return;
    ExportResult const gltf =
        ExportScene(scene, inScratch("scene.glb"), conversion.exportation, PartOf(progress, kConvertShare, kDrawShare));
    result.outcome = gltf.outcome;
    result.failure = gltf.failure;
    if (gltf.outcome != Outcome::kDone)
        return;
    TakeRemarks(result, gltf);
    result.outcome = Outcome::kFailed;
    Progress const drawing = PartOf(progress, kDrawShare, 1.0);
    // A document of JSON takes memory to be given back, and ends the process that has none.
    ChildResult const sight =
        RunInChild([&](ChildVoice const&) { return LinesOfSight(inScratch("scene.glb"), options); }, drawing);
    if (sight.isCancelled || !Begin(drawing, "drawing"))
        result.outcome = Outcome::kCancelled;
    else if (!sight.answer)
        result.failure =
            Escaped(path) + ": " + sight.failure.value_or("the reader of its axes ended " + sight.EndText());
    else if (!Draw(inScratch("scene.obj"), *sight.answer, folder.Inside().string(), options))
        result.failure = Escaped(path) + ": the program f3d, which draws it, is not there or failed";
    else
    {
        folder.MoveIntoPlace();
        result.outcome = Outcome::kDone;
    }
}

ConvertResult DrawHere(std::string const& source, std::string const& path, PictureOptions const& options,
                       Progress const& progress)
{
    ConvertResult result;
    auto const isSize = [](unsigned size) { return size >= 1 && size <= kLargestPicture; };
    if (!path.ends_with(".png"))
        result.failure = Escaped(path) + ": a picture ends in .png";
    else if (!isSize(options.width) || !isSize(options.height))
        result.failure = Escaped(path) + ": a picture has 1 to " + std::to_string(kLargestPicture) + " pixels each way";
    else
        try
        {
            DrawInto(result, source, path, options, progress);
        }
        catch (TargetError const& error)
        {
            result.failure = Escaped(error.what());
        }
        catch (std::system_error const& error)
        {
            result.failure =
                Escaped(path) + ": it cannot be written: " + std::generic_category().message(error.code().value());
        }
    return result;
}

}  // namespace

ConvertResult DrawPicture(std::string const& source, std::string const& path, PictureOptions const& options,
                          Progress const& progress)
{
    return Heard(progress, [&](Progress const& heard) { return DrawHere(source, path, options, heard); });
}

}  // namespace KVR
