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
#include <system_error>
#include <vector>

#include "exchange/run/F3d.h"
#include "exchange/run/Heard.h"
#include "exchange/run/ScratchFolder.h"
#include "exchange/run/StagePlan.h"
#include "exchange/run/WorkFolder.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

namespace fs = std::filesystem;
using Json = nlohmann::json;
using Triple = std::array<double, 3>;

// The share of the conversion in the time of all.
constexpr double kConvertShare = 0.7;
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

// Where f3d's camera is to stand so that it sees what the node's does.
std::vector<std::string> CameraArguments(Json const& document, Json const& node)
{
    std::vector<double> const m =
        node.value("matrix", std::vector<double>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    Json const& camera = document["cameras"][node["camera"].get<std::size_t>()];
    Triple eye{m[12], m[13], m[14]};
    Triple const back{m[8], m[9], m[10]};
    double angle = kViewAngle;
    double distance = 1.0;
    if (camera["type"] == "perspective")
        angle = camera["perspective"]["yfov"].get<double>();
    else
    {
        double const height = 2.0 * camera["orthographic"]["ymag"].get<double>();
        distance = kParallel * height;
        angle = 2.0 * std::atan(0.5 / kParallel);
        for (std::size_t i = 0; i < 3; ++i)
            eye[i] += distance * back[i];
    }
    Triple const aim{eye[0] - distance * back[0], eye[1] - distance * back[1], eye[2] - distance * back[2]};
    return {"--camera-position=" + TextOf(eye), "--camera-focal-point=" + TextOf(aim),
            "--camera-view-up=" + TextOf({m[4], m[5], m[6]}), "--camera-view-angle=" + TextOf({angle * kDegrees})};
}

// Draws a GLB; false when f3d did not.
bool Draw(std::string const& glb, std::string const& target, PictureOptions const& options)
{
    std::vector<std::string> arguments{
        "--up=+Y",
        "--fxaa",
        "--depth-peeling",
        "--filename=false",
        "--bg-color=" + TextOf(options.background),
        "--resolution=" + std::to_string(options.width) + ',' + std::to_string(options.height),
        "--output=" + target};
    Json const document = options.view.empty() ? Json() : DocumentOf(glb);
    Json const node = document.is_object() ? CameraNodeOf(document, options.view) : Json();
    std::vector<std::string> camera{"--camera-azimuth-angle=35", "--camera-elevation-angle=28"};
    if (node.is_object())
        camera = CameraArguments(document, node);
    arguments.insert(arguments.end(), camera.begin(), camera.end());
    arguments.push_back(glb);
    std::error_code error;
    return RunF3d(arguments) && fs::file_size(target, error) > 0 && !error;
}

void DrawInto(ConvertResult& result, std::string const& source, std::string const& path, PictureOptions const& options,
              Progress const& progress)
{
    WorkFolder const folder(path, {source});
    ScratchFolder const scratch(fs::temp_directory_path(), "kvr-picture-");
    std::string const glb = (scratch.Path() / "scene.glb").string();
    ConvertOptions conversion = options.source;
    conversion.exportation.filter.view = options.view;
    result = ConvertModel(source, glb, conversion, PartOf(progress, 0.0, kConvertShare));
    if (result.outcome != Outcome::kDone)
        return;
    result.outcome = Outcome::kFailed;
    Progress const drawing = PartOf(progress, kConvertShare, 1.0);
    if (!Begin(drawing, "drawing"))
        result.outcome = Outcome::kCancelled;
    else if (!Draw(glb, folder.Inside().string(), options))
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
