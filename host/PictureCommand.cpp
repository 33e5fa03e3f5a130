#include "host/PictureCommand.h"

#include <CLI/CLI.hpp>
#include <charconv>

#include "host/CommonOptions.h"
#include "host/LongWork.h"
#include "output/SafeText.h"

namespace KVR
{

namespace
{

// All of the text as a number; false for anything else.
bool Take(std::string_view text, unsigned& number, int base = 10)
{
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return error == std::errc() && end == text.data() + text.size();
}

bool TakeSize(std::string_view text, unsigned& width, unsigned& height)
{
    std::size_t const x = text.find('x');
    auto const isSize = [](unsigned size) { return size >= 1 && size <= kLargestPicture; };
    return x != std::string_view::npos && Take(text.substr(0, x), width) && Take(text.substr(x + 1), height) &&
           isSize(width) && isSize(height);
}

bool TakeColor(std::string_view text, std::array<double, 3>& color)
{
    if (text.size() != 7 || text.front() != '#')
        return false;
    for (std::size_t i = 0; i < 3; ++i)
    {
        unsigned byte = 0;
        if (!Take(text.substr(1 + 2 * i, 2), byte, 16))
            return false;
        color[i] = byte / 255.0;
    }
    return true;
}

std::string ProblemOfPicture(std::string const& path)
{
    return path.ends_with(".png") ? std::string() : path + " does not end in .png";
}

}  // namespace

PictureCommand::PictureCommand(CLI::App& program)
    : Command(program, "picture", "Draw a scene (.xml) or a model as a PNG file, by the program f3d")
{
    Arguments().add_option("source", m_source, "The scene, or a model's file")->required()->type_name("IN");
    Arguments()
        .add_option("target", m_target, "The file to be")
        ->required()
        ->type_name("OUT.png")
        ->check(&ProblemOfPicture);
    Arguments()
        .add_option("--view", m_picture.view, "A saved view, by its id or label: what it shows, as its camera sees it")
        ->type_name("NAME");
    Arguments().add_option("--size", m_size, "Width and height in pixels")->type_name("WxH")->capture_default_str();
    Arguments()
        .add_option("--background", m_background, "The colour behind everything")
        ->type_name("#RRGGBB")
        ->capture_default_str();
    Arguments()
        .add_option("--up", m_up, "Which axis of the scene points up; that which the scene states unless given")
        ->type_name("AXIS")
        ->check(CLI::IsMember({"x", "y", "z"}));
    AddFilterOptions(Arguments(), m_picture.source.exportation.filter, "Draw");
    m_meshing.AddTo(Arguments());
    AddReadingOptions(Arguments(), m_picture.source.scene);
    AddInsecureOption(Arguments(), m_picture.source.scene);
    AddTimeoutOption(Arguments(), m_timeout);
    Arguments().add_flag("--quiet", m_isQuiet, "Say nothing but what fails");
}

ExitStatus PictureCommand::Run()
{
    PictureOptions options = m_picture;
    if (!TakeSize(m_size, options.width, options.height))
        throw ArgumentError("--size: " + m_size + " is no size such as 1280x960, with 1 to " +
                            std::to_string(kLargestPicture) + " pixels each way");
    if (!TakeColor(m_background, options.background))
        throw ArgumentError("--background: " + m_background + " is no colour such as #ffffff");
    options.source.import.quality = options.source.exportation.quality = m_meshing.Quality();
    options.source.import.timeout = options.source.exportation.timeout = m_timeout;
    if (!m_up.empty())
        options.up = static_cast<UpAxis>(m_up.front() - 'x');
    ConvertResult const result = Watched(
        !m_isQuiet, [&](Progress const& progress) { return DrawPicture(m_source, m_target, options, progress); });
    if (result.outcome != Outcome::kDone)
        return ComplainOf(result);
    if (!m_isQuiet)
        for (std::string const& remark : result.exported.remarks)
            Complain(Escaped(m_target) + ": " + remark);
    return kExit_Good;
}

}  // namespace KVR
